#include "forward/body_price.h"

#include <algorithm>
#include <array>
#include <string>

#include "core/failure.h"
#include "core/saturating.h"
#include "core/threads.h"
#include "core/workspace.h"
#include "forward/shape/body_solid.h"

namespace anomalis::forward {

namespace {

/// Of a facet in the kernel with its share of edges, vertices and terms.
constexpr std::uint64_t kernel_bytes = 500;
constexpr std::uint64_t facet_bytes = sizeof(SolidFacets::value_type);
/// As it was built and as it is placed.
constexpr std::uint64_t point_bytes = 2 * sizeof(Point3);
/// A point that shares the demagnetisation: its place and its tensor.
constexpr std::uint64_t shared_point_bytes = 9 * sizeof(double);

constexpr std::uint64_t prism_facets = 12;
/// Facets a sector that the exact solid has, with caps and hole.
constexpr std::uint64_t full_ring = 4, hollow_ring = 8;

/// Nanoseconds: a facet with its edges from a station; a station of a closed form; a facet put into the
/// kernel.
constexpr double facet_units = 7, station_units = 20, build_units = 500;

bool is_hollow(const ModelBody& body) {
    return body.shell_thickness > 0;
}

/// Facets, or edges of an endless ring, that the kernel is given.
std::uint64_t calculated_facets(const ModelBody& body, Formulas formulas, std::uint64_t sectors) {
    const bool limited = body.length.value > 0;
    if (is_sheet(body.type)) return limited ? prism_facets : 0;
    if (body.type != pipe) return 0;
    if (formulas == Formulas::classic && !limited && body.slope.value == 0) return 0;
    return saturating_product(is_hollow(body) ? hollow_ring : full_ring, sectors);
}

void refuse(const BodyPrice& price, const std::string& needs) {
    const std::string of_body = price.name.empty() ? "" : "body " + std::string(price.name) + ": ";
    throw Fault(needs + " (" + of_body + std::to_string(price.sectors) + " sectors, " +
                std::to_string(price.segments) +
                " segments; fewer of them or a larger triangle size cost less)");
}

std::string number_and_limit(std::uint64_t number, const std::string& unit, std::uint64_t limit) {
    return std::to_string(number) + " " + unit + ", the limit is " + std::to_string(limit);
}

}  // namespace

BodyPrice body_price(const ModelBody& body, Formulas formulas, std::int64_t stations) {
    BodyPrice price;
    price.name = body.name;
    const auto places = static_cast<std::uint64_t>(std::max<std::int64_t>(stations, 0));
    const SolidCounts solid = is_round(body.type) ? count_solid(body) : SolidCounts{};
    price.calculated = calculated_facets(body, formulas, solid.sectors);
    price.station_facets = saturating_product(price.calculated, places);
    const std::uint64_t kernel = saturating_product(price.calculated, kernel_bytes);
    // A drawing has no kernel.
    if (places > 0) price.bytes = kernel;
    // A pipe that is calculated as a sheet has no solid.
    if (!is_round(body.type) || (places > 0 && price.calculated == 0)) return price;
    price.sectors = solid.sectors;
    price.segments = solid.segments;
    price.facets = std::max(solid.facets, price.calculated);
    if (formulas == Formulas::classic && body.include_demagnetisation != 0)
        price.pairs = saturating_product(price.calculated, is_hollow(body) ? solid.segments : 1);
    price.bytes = saturating_sum(price.bytes, saturating_product(solid.facets, facet_bytes));
    price.bytes = saturating_sum(price.bytes, saturating_product(solid.points, point_bytes));
    price.bytes = saturating_sum(price.bytes, saturating_product(solid.segments, shared_point_bytes));
    return price;
}

void require_affordable(const BodyPrice& price) {
    if (price.facets > most_facets)
        refuse(price, "the solid would have " + number_and_limit(price.facets, "facets", most_facets));
    if (price.bytes > most_bytes)
        refuse(price, "the solid would need " + number_and_limit(price.bytes, "bytes", most_bytes));
    const std::uint64_t seen = saturating_sum(price.station_facets, price.pairs);
    if (seen > most_station_facets)
        refuse(price,
               "the stations would see " + number_and_limit(seen, "facets in all", most_station_facets));
}

double work_of(const BodyPrice& price, std::int64_t stations) {
    return facet_units * (static_cast<double>(price.station_facets) + static_cast<double>(price.pairs)) +
           station_units * static_cast<double>(stations) +
           build_units * static_cast<double>(price.calculated);
}

namespace {

/// What both channels take where they come out of one pass, of what one takes.
constexpr double shared_pass = 1.1;

double passes(const ModelBody& body, Formulas formulas, const BodyPrice& price) {
    const bool solid = price.calculated > 0 && body.length.value > 0;
    const bool shared = solid && (formulas == Formulas::exact || body.type == pipe);
    return shared ? shared_pass : 2;
}

}  // namespace

double work_of_body(const Workspace& workspace, const ModelBody& body, bool mag, bool grav) {
    if (body.turned_off == 1 || (!mag && !grav)) return 0;
    const BodyPrice price = body_price(body, workspace.formulas, workspace.station_count);
    if (price.facets > most_facets || price.bytes > most_bytes) return 0;
    const double work = work_of(price, workspace.station_count);
    return mag && grav ? passes(body, workspace.formulas, price) * work : work;
}

double work_ahead(const Workspace& workspace) {
    double work = 0;
    for (int number = 1; number <= workspace.body_count; ++number) {
        const ModelBody& body = workspace.body(number);
        work += work_of_body(workspace, body, workspace.has_mag() && !body.mag_response_valid,
                             workspace.has_grav() && !body.grav_response_valid);
    }
    return work;
}

namespace {

/// Columns that a calculation of the channels will add.
std::uint64_t new_columns(const Workspace& workspace, const ModelBody& body, bool mag, bool grav) {
    std::uint64_t columns = 0;
    const auto add = [&](int column) { columns += body.response.column(column).empty() ? 1 : 0; };
    if (mag) add(1);
    if (mag && workspace.formulas == Formulas::classic && body.include_demagnetisation < 0)
        for (const int column : {3, 4, 5}) add(column);
    if (grav && (workspace.formulas == Formulas::exact || has_classic_gravity(body.type))) add(2);
    return columns;
}

}  // namespace

std::uint64_t memory_ahead(const Workspace& workspace) {
    const auto stations = static_cast<std::uint64_t>(std::max(workspace.station_count, 0));
    std::uint64_t columns = 0, largest_solid = 0;
    for (int number = 1; number <= workspace.body_count; ++number) {
        const ModelBody& body = workspace.body(number);
        const bool mag = workspace.has_mag() && !body.mag_response_valid;
        const bool grav = workspace.has_grav() && !body.grav_response_valid;
        if (body.turned_off == 1 || (!mag && !grav)) continue;
        columns += new_columns(workspace, body, mag, grav);
        const BodyPrice price = body_price(body, workspace.formulas, workspace.station_count);
        if (price.facets <= most_facets && price.bytes <= most_bytes)
            largest_solid = std::max(largest_solid, price.bytes);
    }
    if (columns == 0) return 0;
    const std::uint64_t scratch = saturating_product(2 * sizeof(double), stations);
    const auto threads = static_cast<std::uint64_t>(thread_count());
    return saturating_sum(saturating_product(columns, sizeof(float) * stations),
                          saturating_product(threads, saturating_sum(scratch, largest_solid)));
}

}  // namespace anomalis::forward
