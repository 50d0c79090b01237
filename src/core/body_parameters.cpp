#include "core/body_parameters.h"

#include <array>

#include "core/failure.h"
#include "core/numbers.h"

namespace anomalis {

namespace {

constexpr std::string_view not_applicable = "N/A";

/// A change of the type keeps the number, whatever it meant before.
constexpr std::string_view kept_number =
    "\nA change of the body type keeps the number, although its meaning changes";

std::string_view susceptibility_measure(SusceptibilityUnit unit) {
    return unit == SusceptibilityUnit::si ? "SI (0.05 is 50000 µSI), any number"
                                          : "cgs (that of SI over 4 pi: 0.004 is 0.05 SI), any number";
}

/// The place of each code in the table.
const std::array<std::size_t, body_parameter_count>& places() {
    static const auto result = [] {
        std::array<std::size_t, body_parameter_count> places{};
        std::size_t place = 0;
        for (const BodyParameter& row : body_parameters())
            places.at(static_cast<std::size_t>(row.code - first_param_code)) = place++;
        return places;
    }();
    return result;
}

}  // namespace

const BodyParameter& body_parameter(int param_code) {
    if (param_code < first_param_code || param_code > last_param_code) throw Fault(FaultKind::subscript);
    return body_parameters()[places()[static_cast<std::size_t>(param_code - first_param_code)]];
}

std::span<const ParamCode, body_parameter_count> fit_order() {
    static constexpr std::array<ParamCode, body_parameter_count> order{
        param_distance, param_top,   param_strike,       param_dip,    param_plunge,
        param_slope,    param_width, param_depth_extent, param_length, param_offset,
        param_susc,     param_rem_q, param_rem_i,        param_rem_d,  param_density};
    return order;
}

std::string_view param_name(int param_code) {
    return body_parameter(param_code).name;
}

const BodyParam& body_param(const ModelBody& body, int param_code) {
    return body.*(body_parameter(param_code).slot);
}

BodyParam& body_param(ModelBody& body, int param_code) {
    return body.*(body_parameter(param_code).slot);
}

bool has_parameter(std::int32_t type, int param_code) {
    const std::string_view caption = body_parameter(param_code).grid.caption.of(type);
    return !caption.empty() && caption != not_applicable;
}

const ValueRange& value_range(std::int32_t type, int param_code) {
    return body_parameter(param_code).range.of(type);
}

bool is_susceptibility(std::int32_t type, int param_code) {
    return param_code == param_susc && !carries_current(type);
}

std::string parameter_tip(std::int32_t type, int param_code, SusceptibilityUnit unit) {
    const BodyParameter& row = body_parameter(param_code);
    std::string text = std::string(row.tip.meaning.of(type)) + "\n";
    const bool other_unit = is_susceptibility(type, param_code) && unit != SusceptibilityUnit::micro_si;
    text += other_unit ? susceptibility_measure(unit) : row.tip.measure.of(type);
    const ValueRange& range = row.range.of(type);
    if (range.bounded())
        text += ", " + format_number(range.low, "0") + " to " + format_number(range.high, "0");
    if (row.tip.type_changes_meaning) text += kept_number;
    return text;
}

}  // namespace anomalis
