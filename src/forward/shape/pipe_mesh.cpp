#include "forward/shape/pipe_mesh.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/angles.h"
#include "core/failure.h"
#include "core/saturating.h"

namespace anomalis::forward {

namespace {

/// A quarter turn, so that the ring begins at its lowest point, in the digits that a corner of single
/// precision has.
constexpr double quarter_turn = 1.57079628;

/// Sine and cosine over a circle of diameter 1, for the corners 0 to n; exact at the seam.
struct SectorTables {
    std::vector<double> sine, cosine;

    explicit SectorTables(std::size_t n) : sine(n + 1), cosine(n + 1) {
        const double step = (360.0 / static_cast<double>(n)) * radians_per_degree;
        for (std::size_t i = 0; i <= n; ++i) {
            const double angle = static_cast<double>(i) * step - quarter_turn;
            sine[i] = std::sin(angle) / 2;
            cosine[i] = std::cos(angle) / 2;
        }
        sine[0] = sine[n] = -0.5;
        sine[n / 2] = 0.5;
        cosine[0] = cosine[n / 2] = cosine[n] = 0;
    }
};

/// Where the parts of the point list begin. Caps have their own copy of the ring.
struct Layout {
    std::size_t start_centre, outer, near_cap, far_cap, end_centre, inner, inner_near_cap, inner_far_cap;
};

class MeshBuilder {
  public:
    MeshBuilder(const GraphicObject& object, const SolidCounts& counts, std::vector<Point3>& points,
                SolidFacets& facets)
        : object_(object),
          n_(static_cast<std::size_t>(counts.sectors)),
          sections_(static_cast<std::size_t>(counts.segments)),
          tables_(n_),
          points_(points),
          facets_(facets),
          reversed_(object.diameter_end == 0),
          open_shell_(object.shell > 0 && !(object.end_cap > 0)),
          start_diameter_(reversed_ ? 0 : object.diameter_start),
          has_start_ring_(start_diameter_ > 0) {
        taper_ = (object.diameter_end - object.diameter_start) / object.length;
        lay_out();
    }

    void build() {
        add_points();
        for (std::size_t section = 1; section <= sections_; ++section)
            add_section(section, layout_.outer, false);
        if (open_shell_)
            for (std::size_t section = 1; section <= sections_; ++section)
                add_section(section, layout_.inner, true);
        if (has_start_ring_ && !reversed_)
            add_cap(layout_.near_cap, layout_.inner_near_cap, layout_.start_centre, true);
        add_cap(layout_.far_cap, layout_.inner_far_cap, layout_.end_centre, false);
        if (object_.shell > 0 && object_.end_cap > 0) add_cavity();
    }

  private:
    void lay_out() {
        const std::size_t rings = sections_ + (has_start_ring_ ? 1 : 0);
        layout_.start_centre = 0;
        layout_.outer = 1;
        layout_.near_cap = layout_.outer + rings * n_;
        layout_.far_cap = layout_.near_cap + (has_start_ring_ ? n_ : 0);
        layout_.end_centre = layout_.far_cap + n_;
        layout_.inner = layout_.end_centre + 1;
        layout_.inner_near_cap = layout_.inner + rings * n_;
        layout_.inner_far_cap = layout_.inner_near_cap + n_;
    }

    /// Axial position of the far side of a section; section 0 is the start.
    double axial(std::size_t section) const {
        const double length = object_.length;
        const bool last = section == sections_;
        const double from_start =
            last ? length : length / static_cast<double>(sections_) * static_cast<double>(section);
        return reversed_ ? length - from_start : from_start;
    }

    double diameter(std::size_t section) const {
        if (section == 0) return start_diameter_;
        if (section == sections_) return reversed_ ? object_.diameter_start : object_.diameter_end;
        return object_.diameter_start + taper_ * axial(section);
    }

    Point3 on_axis(double at) const { return object_.axis_is_y ? Point3{0, at, 0} : Point3{0, 0, at}; }

    void add_ring(std::size_t first, double at, double across) {
        for (std::size_t i = 0; i < n_; ++i) {
            const double x = across * tables_.sine[i];
            const double up = across * tables_.cosine[i] * object_.z_scale;
            points_[first + i] = object_.axis_is_y ? Point3{x, at, up} : Point3{x, up, at};
        }
    }

    void add_points() {
        points_[layout_.start_centre] = on_axis(axial(0));
        points_[layout_.end_centre] = on_axis(axial(sections_));
        std::size_t ring = 0;
        for (std::size_t section = has_start_ring_ ? 0 : 1; section <= sections_; ++section, ++ring) {
            add_ring(layout_.outer + ring * n_, axial(section), diameter(section));
            if (open_shell_)
                add_ring(layout_.inner + ring * n_, axial(section), diameter(section) - object_.shell);
        }
        if (has_start_ring_) add_ring(layout_.near_cap, axial(0), start_diameter_);
        add_ring(layout_.far_cap, axial(sections_), diameter(sections_));
        if (!open_shell_) return;
        add_ring(layout_.inner_near_cap, axial(0), start_diameter_ - object_.shell);
        add_ring(layout_.inner_far_cap, axial(sections_), diameter(sections_) - object_.shell);
    }

    /// One triangle, turned over for a wall that faces inward.
    void add_facet(std::size_t a, std::size_t b, std::size_t c, bool turned) {
        // Built from the far end, or along z, the same order of corners turns the other way.
        if (turned != (reversed_ != !object_.axis_is_y)) std::swap(b, c);
        facets_[facet_++] = {static_cast<std::int32_t>(a), static_cast<std::int32_t>(b),
                             static_cast<std::int32_t>(c)};
    }

    void add_section(std::size_t section, std::size_t rings, bool turned) {
        if (section == 1 && !has_start_ring_) {
            for (std::size_t j = 0; j < n_; ++j)
                add_facet(layout_.start_centre, rings + (j + 1) % n_, rings + j, turned);
            return;
        }
        const std::size_t far = rings + (section - (has_start_ring_ ? 0 : 1)) * n_;
        const std::size_t near = far - n_;
        const std::size_t toggle = (section - 1) % 2;
        for (std::size_t j = 0; j < n_; ++j) {
            const std::size_t next = (j + 1) % n_;
            // Diagonals alternate round the ring and from section to section: no long parallel ones.
            if ((j + toggle) % 2 == 0) {
                add_facet(near + j, near + next, far + next, turned);
                add_facet(near + j, far + next, far + j, turned);
            } else {
                add_facet(near + next, far + next, far + j, turned);
                add_facet(near + next, far + j, near + j, turned);
            }
        }
    }

    /// A fan round the centre, or the ring between both walls of an open shell.
    void add_cap(std::size_t outer, std::size_t inner, std::size_t centre, bool near_end) {
        for (std::size_t j = 0; j < n_; ++j) {
            const std::size_t next = (j + 1) % n_;
            if (!open_shell_) {
                add_facet(centre, outer + j, outer + next, near_end);
            } else if (near_end) {
                add_facet(outer + j, inner + j, inner + next, false);
                add_facet(outer + j, inner + next, outer + next, false);
            } else {
                add_facet(outer + j, inner + next, inner + j, false);
                add_facet(outer + j, outer + next, inner + next, false);
            }
        }
    }

    /// The closed hollow of a shell with caps: the outside drawn in, facing inward.
    void add_cavity() {
        const std::size_t count = points_.size() / 2;
        const double shrink = (object_.length - 2 * object_.end_cap) / object_.length;
        for (std::size_t i = 0; i < count; ++i) {
            Point3 p = points_[i];
            double& along = object_.axis_is_y ? p.y : p.z;
            const double from = along;
            along = object_.end_cap + from * shrink;
            const double scale = (diameter_at(along) - object_.shell) / diameter_at(from);
            p.x *= scale;
            (object_.axis_is_y ? p.z : p.y) *= scale;
            points_[count + i] = p;
        }
        const std::size_t outside = facet_;
        const auto shift = static_cast<std::int32_t>(count);
        for (std::size_t i = 0; i < outside; ++i) {
            const auto [a, b, c] = facets_[i];
            facets_[facet_++] = {a + shift, c + shift, b + shift};
        }
    }

    double diameter_at(double at) const { return object_.diameter_start + taper_ * at; }

    const GraphicObject& object_;
    std::size_t n_, sections_;
    SectorTables tables_;
    std::vector<Point3>& points_;
    SolidFacets& facets_;
    bool reversed_;  ///< a cone whose tip is at the far end is built from there
    bool open_shell_;
    double start_diameter_;
    bool has_start_ring_;
    double taper_ = 0;
    Layout layout_{};
    std::size_t facet_ = 0;
};

bool can_be(const GraphicObject& object) {
    if (object.diameter_start == 0 && object.diameter_end == 0) return false;
    if (object.shell > 0) {
        if (!(object.diameter_start > object.shell && object.diameter_end > object.shell)) return false;
        if (object.end_cap > 0 && !(object.length / 2 > object.end_cap)) return false;
    }
    return true;
}

}  // namespace

SolidCounts count_solid(const GraphicObject& object) {
    SolidCounts counts;
    const auto typed = static_cast<std::uint64_t>(std::max<std::int64_t>(object.sectors, 0));
    const std::uint64_t n = typed + typed % 2;
    counts.sectors = n < 4 ? 12 : n;
    counts.segments = static_cast<std::uint64_t>(std::max<std::int64_t>(object.segments, 1));
    if (!can_be(object)) return counts;
    const std::uint64_t ring = counts.sectors;
    const std::uint64_t wall = saturating_product(counts.segments, ring);
    const std::uint64_t caps = saturating_sum(saturating_product(2, ring), 2);
    const auto add = [](std::uint64_t& to, std::uint64_t more) { to = saturating_sum(to, more); };
    if (object.diameter_start == 0 || object.diameter_end == 0) {
        counts.points = saturating_sum(wall - ring, caps);
        counts.facets = saturating_product(2, wall);
        return counts;
    }
    const std::uint64_t rings = saturating_sum(wall, ring);
    counts.points = saturating_sum(rings, caps);
    counts.facets = saturating_product(2, rings);
    if (object.shell > 0 && object.end_cap > 0) {
        counts.points = saturating_product(2, counts.points);
        counts.facets = saturating_product(2, counts.facets);
    } else if (object.shell > 0) {
        add(counts.points, saturating_sum(rings, saturating_product(4, ring)));
        add(counts.facets, saturating_product(2, rings));
    }
    return counts;
}

void build_mesh(const GraphicObject& object, const SolidCounts& counts, std::vector<Point3>& points,
                SolidFacets& facets) {
    points.assign(static_cast<std::size_t>(counts.points), Point3{});
    facets.assign(static_cast<std::size_t>(counts.facets), {});
    if (counts.facets == 0) return;
    if (object.length == 0) throw Fault(FaultKind::division_by_zero);
    MeshBuilder(object, counts, points, facets).build();
}

}  // namespace anomalis::forward
