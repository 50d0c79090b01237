#include "edit/body_rows.h"

#include <array>
#include <limits>

#include "core/failure.h"
#include "core/numbers.h"

namespace anomalis::edit {

namespace {

constexpr double any = std::numeric_limits<float>::max();

/// How one row looks for the sheets, for a pipe and for a wire. A blank caption: the type has no such row.
struct RowPlan {
    std::array<std::string_view, 3> captions;
    std::string_view format;
    std::string_view unit;
};

constexpr std::string_view not_applicable = "N/A";

constexpr std::array<RowPlan, body_row_count> plans{{
    {{"Body Type", "Body Type", "Body Type"}, "", ""},
    {{"East", "East", "East"}, "0.0", "m"},
    {{"North", "North", "North"}, "0.0", "m"},
    {{"Distance", "Distance", "Distance"}, "0.0", "m"},
    {{"Strike", "Strike", "Strike"}, "0.0", "°"},
    {{"Dip", "Dip", "Rotation"}, "0.0", "°"},
    {{"Top", "Depth", "Depth"}, "0.0", "m"},
    {{"Depth Ext", not_applicable, not_applicable}, "0.00", "m"},
    {{"Width", "Diameter", "Diameter"}, "0.00", "m"},
    {{"Length", "Length", "Length"}, "0.00", "m"},
    {{"Susc", "Susc", "Current"}, "0.0", "µSI"},
    {{"Dens", "Dens", ""}, "0.000", "g/cc"},
    {{"Plunge", "", ""}, "0.0", "°"},
    {{"Slope", "", ""}, "0.0", "°"},
    {{"Offset", "Offset", "Separation"}, "0.0", "m"},
    {{"Rem Q", "Rem Q", ""}, "0.000", ""},
    {{"Rem I", "Rem I", ""}, "0.0", "°"},
    {{"Rem D", "Rem D", ""}, "0.0", "°"},
}};

std::size_t kind_of(std::int32_t type) {
    return type == pipe ? 1 : type == wire ? 2 : 0;
}

const RowPlan& plan_of(int row) {
    if (row < 1 || row > body_row_count) throw Fault(FaultKind::subscript);
    return plans.at(static_cast<std::size_t>(row - 1));
}

/// A type change keeps the number, whatever it meant before.
constexpr std::string_view kept_number =
    "\nA change of the body type keeps the number, although its meaning changes";

/// The first line of a tip.
std::string_view meaning(std::int32_t type, int row) {
    const bool round = type >= pipe;
    switch (row) {
        case row_type:
            return "The kind of the body";
        case row_east:
            return "East of the reference point of the body, which follows from its distance";
        case row_north:
            return "North of the reference point of the body, which follows from its distance";
        case param_distance:
            return "Distance along the profile of the reference point for the body";
        case param_strike:
            return "The strike of the body";
        case param_dip:
            return type == wire ? "The rotation of the pair of wires: 0 stands upright, 90 lies level"
                                : "The dip of the body";
        case param_top:
            return round ? "The depth of the centre of the cylinder" : "The depth of the top of the body";
        case param_depth_extent:
            return "The depth extent of the  body";
        case param_width:
            return round ? "The diameter of the cylinder" : "The width of the  body";
        case param_length:
            return "The total length of the body (only used for strike limited thick bodies)";
        case param_susc:
            return type == wire ? "The current in the wire" : "The susceptibility of the  body (SI)";
        case param_density:
            return "The density of the  body (g/cc)";
        case param_plunge:
            return "The plunge of the body (only used for strike limited thick bodies)";
        case param_slope:
            return "The slope of the top of the body";
        case param_offset:
            return type == wire ? "The distance between the parallel pair o current carrying wires"
                                : "The distance of the reference point for the body from the profile (only "
                                  "used for strike limited thick bodies";
        case param_rem_q:
            return "The Koenigsburger ratio";
        case param_rem_i:
            return "The inclination of the remanent direction";
        case param_rem_d:
            return "The declination of the remanent direction";
        default:
            return "";
    }
}

/// Unit and range.
std::string measure(std::int32_t type, int row) {
    switch (row) {
        case row_type:
            return type == wire
                       ? "\nA wire has no density and no gravity, yet a gravity fit counts its density "
                         "among the free parameters"
                       : "";
        case row_east:
        case row_north:
            return "\nm";
        case param_top:
            return "\nElevation in m on the axis of the sensor, up positive; any number";
        case param_depth_extent:
            return "\nm, 0 or more; 0 is without end";
        case param_length:
            return "\nm, 0 or more; 0 is without end along the strike";
        case param_width:
            return "\nm, 0 or more" + std::string(kept_number);
        case param_susc:
            return (type == wire ? "\nmA, any number" : "\nµSI (50000 is 0.05 SI), any number") +
                   std::string(kept_number);
        case param_offset:
            return type == wire ? "\nm, any number; 0 is a single wire" : "\nm, any number";
        case param_distance:
            return "\nm, any number";
        case param_density:
            return "\ng/cc against the rock around it, any number";
        case param_rem_q:
            return "\nRemanent over induced magnetisation, any number";
        case param_rem_i:
            return "\nDegrees, down positive; any number";
        case param_rem_d:
            return "\nDegrees east of north, any number";
        default:
            break;
    }
    const ValueRange range = value_range(type, row);
    return "\nDegrees, " + format_number(range.low, "0") + " to " + format_number(range.high, "0");
}

}  // namespace

BodyRow body_row(std::int32_t type, int row) {
    const RowPlan& plan = plan_of(row);
    BodyRow result{plan.captions.at(kind_of(type)), plan.format, plan.unit};
    result.used = !result.caption.empty() && result.caption != not_applicable;
    if (type == wire && row == param_susc) result.unit = "mA";
    if (type == wire && row == param_offset) result.format = "0.000";
    return result;
}

std::string body_row_tip(std::int32_t type, int row) {
    if (!body_row(type, row).used) return {};
    return std::string(meaning(type, row)) + measure(type, row);
}

std::string parameter_text(std::int32_t type, int param_code, float value) {
    return format_number(value, body_row(type, param_code).format);
}

ValueRange value_range(std::int32_t type, int param_code) {
    switch (param_code) {
        case param_strike:
            return {-360, 360};
        case param_dip:
            return type == pipe ? ValueRange{-45, 45} : ValueRange{0, 180};
        case param_plunge:
            return {-45, 45};
        case param_slope:
            return {-80, 80};
        case param_width:
        case param_depth_extent:
        case param_length:
            return {0, any};
        default:
            return {-any, any};
    }
}

double least_difference(int param_code) {
    switch (param_code) {
        case param_density:
        case param_rem_q:
            return 0.001;
        case param_strike:
        case param_dip:
        case param_plunge:
        case param_slope:
        case param_rem_i:
        case param_rem_d:
            return 0.05;
        default:
            return 0;
    }
}

}  // namespace anomalis::edit
