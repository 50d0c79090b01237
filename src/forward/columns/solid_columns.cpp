#include "forward/columns/solid_columns.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "core/body_parameters.h"
#include "forward/columns/field_slope.h"
#include "forward/columns/sheet_slope.h"
#include "forward/columns/solid_shape.h"
#include "forward/columns/term_weights.h"
#include "forward/exact/exact_response.h"
#include "forward/gravity_constant.h"
#include "forward/polyhedron/vector3.h"
#include "forward/shape/reference_point.h"
#include "forward/station_columns.h"

namespace anomalis::forward {

namespace {

constexpr double radian = exact_pi / 180;  ///< a degree
/// The weights are differenced over such a part of the body's size: they cost no station.
constexpr double weight_step = 1e-3;

using AllWeights = std::array<SolidSection::Weight, SolidSection::most_edges + SolidSection::most_faces>;

/// Edges, then faces.
AllWeights weights_of(const SolidSection& section) {
    AllWeights weights{};
    for (int e = 0; e < section.edges; ++e) weights[static_cast<std::size_t>(e)] = section.edge[e].weight;
    for (int f = 0; f < section.faces; ++f)
        weights[static_cast<std::size_t>(section.edges + f)] = section.face[f].weight;
    return weights;
}

/// Adds `factor` times the one to the other.
void add(const AllWeights& from, double factor, AllWeights& to) {
    for (std::size_t k = 0; k < to.size(); ++k) {
        to[k].constant += factor * from[k].constant;
        for (int axis = 0; axis < 3; ++axis) to[k].gradient[axis] += factor * from[k].gradient[axis];
    }
}

SolidTerms solid_terms(const SolidSection& section) {
    const int each = section.gradients ? 4 : 1;
    SolidTerms at{};
    at.faces = each * section.edges;
    at.corners = at.faces + each * section.faces;
    at.direction = at.corners + 3 * section.corners;
    at.turn = at.direction + 3;
    at.count = at.turn + 1;
    return at;
}

/// All that changes with a parameter.
struct SolidSlope {
    SolidCorners corners;
    FieldSlope field;
    double factor = 0;  ///< of gravity
    double turn = 0;    ///< of the axes
};

class LimitedSheet {
  public:
    LimitedSheet(const Workspace& workspace, ModelBody& body, int channel)
        : body_(body),
          frame_(exact_frame(body)),
          sheet_(sheet_shape(body)),
          corners_(corners_of(sheet_)),
          section_(section_of(corners_)) {
        const PlanSlope along = reference_point_slope(workspace, body.distance.value);
        shift_ = {along.east * frame_.cos_strike - along.north * frame_.sin_strike,
                  along.east * frame_.sin_strike + along.north * frame_.cos_strike, 0};
        factor_ = gravity_constant * static_cast<double>(body.density.value);
        if (channel == channel_mag) {
            std::optional<Tensor3> tensor;
            if (body.include_demagnetisation == 1) tensor = body_demagnetisation(body);
            field_.emplace(workspace, body, frame_, tensor ? &*tensor : nullptr);
        }
        set_weights(0, {}, section_);
        size_ = section_.edge[0].length;
        for (int e = 1; e < section_.edges; ++e)
            if (section_.edge[e].to >= 0) size_ = std::min(size_, section_.edge[e].length);
    }

    const BodyFrame& frame() const { return frame_; }
    const SolidSection& section() const { return section_; }

    void fill(int param_code, const SolidTerms& at, double* weights) const {
        const SolidSlope slope = slope_by(param_code);
        const AllWeights change = weight_slope(slope);
        for (int e = 0; e < section_.edges; ++e) {
            const SolidSection::Edge& edge = section_.edge[e];
            fill_product(edge.weight, change[static_cast<std::size_t>(e)], edge.from, slope, 1,
                         weights + at.edges + each() * e);
        }
        for (int f = 0; f < section_.faces; ++f) {
            const SolidSection::Face& face = section_.face[f];
            fill_product(face.weight, change[static_cast<std::size_t>(section_.edges + f)], face.corner[0],
                         slope, -1, weights + at.faces + each() * f);
        }
        double* to = weights + at.corners;
        for (const Point3& corner : slope.corners.corner) to = put(corner, to);
        put(slope.corners.along, to);
        weights[at.turn] = slope.turn;
    }

  private:
    int each() const { return section_.gradients ? 4 : 1; }

    static double* put(const Point3& v, double* to) {
        *to++ = v.x;
        *to++ = v.y;
        *to++ = v.z;
        return to;
    }

    SolidSlope slope_by(int param_code) const {
        SolidSlope slope;
        const SheetShape change = sheet_slope(body_, sheet_, param_code);
        slope.corners = corner_slopes(sheet_, change);
        Point3 shift;
        if (param_code == param_distance) shift = shift_;
        if (param_code == param_top) shift.z = 1;
        for (Point3& corner : slope.corners.corner) corner = corner + shift;
        if (param_code == param_strike) slope.turn = radian;
        if (param_code == param_density) slope.factor = gravity_constant;
        if (!field_) return slope;
        slope.field = field_->slope(param_code);
        if (field_->demagnetised())
            slope.field.magnetisation =
                slope.field.magnetisation + field_->change_by(sheet_tensor_slope(sheet_, change));
        return slope;
    }

    /// Those of the body changed by `by` times a slope.
    void set_weights(double by, const SolidSlope& slope, SolidSection& section) const {
        if (!field_) return set_gravity_weights(factor_ + slope.factor * by, section);
        ExactField field = field_->field();
        field.direction = field.direction + slope.field.direction * by;
        field.magnetisation = field.magnetisation + slope.field.magnetisation * by;
        set_anomaly_weights(field, section);
    }

    AllWeights weights_at(double by, const SolidSlope& slope) const {
        SolidSection section = section_;
        place_corners(moved(corners_, slope.corners, by), section);
        set_weights(by, slope, section);
        return weights_of(section);
    }

    AllWeights weight_slope(const SolidSlope& slope) const {
        double rate = length(slope.corners.along);
        for (const Point3& corner : slope.corners.corner) rate = std::max(rate, length(corner) / size_);
        if (field_) {
            const double moment = length(slope.field.magnetisation);
            rate = std::max(
                {rate, length(slope.field.direction),
                 moment == 0 ? 0 : moment / std::max(moment, length(field_->field().magnetisation))});
        } else if (slope.factor != 0) {
            rate = std::max(rate, slope.factor / std::max(slope.factor, std::abs(factor_)));
        }
        AllWeights change{};
        if (rate == 0) return change;
        const double step = weight_step / rate;
        add(weights_at(step, slope), 8 / (12 * step), change);
        add(weights_at(-step, slope), -8 / (12 * step), change);
        add(weights_at(2 * step, slope), -1 / (12 * step), change);
        add(weights_at(-2 * step, slope), 1 / (12 * step), change);
        return change;
    }

    /// The change of weight = constant + gradient . (corner - station), as factors of 1 and of the station.
    void fill_product(const SolidSection::Weight& weight, const SolidSection::Weight& change, int corner,
                      const SolidSlope& slope, double sign, double* to) const {
        to[0] = sign * change.constant;
        if (!section_.gradients) return;
        const Point3 place = corners_.corner[static_cast<std::size_t>(corner)];
        const Point3 move = slope.corners.corner[static_cast<std::size_t>(corner)];
        const auto along = [](const double* gradient, const Point3& v) {
            return gradient[0] * v.x + gradient[1] * v.y + gradient[2] * v.z;
        };
        to[0] += sign * (along(change.gradient, place) + along(weight.gradient, move));
        for (int axis = 0; axis < 3; ++axis) to[1 + axis] = -sign * change.gradient[axis];
    }

    const ModelBody& body_;
    BodyFrame frame_;
    SheetShape sheet_;
    SolidCorners corners_;
    SolidSection section_;
    Point3 shift_;  ///< of the reference point, a metre of distance
    double factor_ = 0;
    std::optional<BodyField> field_;  ///< of magnetics
    double size_ = 0;                 ///< the shortest edge
};

constexpr double units_a_station = 400, units_a_term = 0.3;
constexpr std::size_t stretch = 1024;

}  // namespace

bool is_limited_sheet(const ModelBody& body) {
    if (!is_sheet(body.type)) return false;
    const SheetShape sheet = sheet_shape(body);
    return sheet.meets && !sheet.empty() && sheet.limited;
}

void solid_columns(const Workspace& workspace, ModelBody& body, int channel, const StationView& stations,
                   std::span<const int> param_codes, std::span<double> columns, Pacer& pacer) {
    const LimitedSheet sheet(workspace, body, channel);
    const SolidTerms at = solid_terms(sheet.section());
    TermWeights weights;
    for (const int code : param_codes) {
        std::array<double, most_solid_terms> column{};
        sheet.fill(code, at, column.data());
        weights.add_column(std::span(column).first(static_cast<std::size_t>(at.count)));
    }
    const auto kernel = solid_columns_at(vector::widest_vector_level());
    for (std::size_t from = 0; from < stations.count; from += stretch) {
        const StationView part = part_of(stations, from, std::min(stretch, stations.count - from));
        kernel(part, sheet.frame(), sheet.section(), weights.columns(columns.data() + from, stations.count));
        pacer.done(static_cast<double>(part.count) *
                   (units_a_station + units_a_term * static_cast<double>(weights.size())));
    }
}

}  // namespace anomalis::forward
