#pragma once

#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>

#include "core/model_body.h"
#include "core/preferences.h"
#include "core/stale.h"

// All that the program knows of the fifteen parameters of a body, one row for each.
namespace anomalis {

struct Workspace;

/// The number of a parameter is its row in the parameter grid.
enum ParamCode : int {
    param_distance = 4,
    param_strike = 5,
    param_dip = 6,
    param_top = 7,
    param_depth_extent = 8,
    param_width = 9,
    param_length = 10,
    param_susc = 11,
    param_density = 12,
    param_plunge = 13,
    param_slope = 14,
    param_offset = 15,
    param_rem_q = 16,
    param_rem_i = 17,
    param_rem_d = 18
};
inline constexpr int first_param_code = param_distance;
inline constexpr int last_param_code = param_rem_d;

/// What differs between sheets, pipes and wires. Types without rows of their own have those of the sheets.
template <class Value>
struct ByKind {
    Value sheet, pipe, wire;

    constexpr ByKind(Value same) : sheet(same), pipe(same), wire(same) {}
    constexpr ByKind(Value of_sheet, Value of_pipe, Value of_wire)
        : sheet(of_sheet), pipe(of_pipe), wire(of_wire) {}
    constexpr const Value& of(std::int32_t type) const {
        return type == anomalis::pipe ? pipe : type == anomalis::wire ? wire : sheet;
    }
};
using TextByKind = ByKind<std::string_view>;

inline constexpr double largest_value = std::numeric_limits<float>::max();

/// The values that a person may give to a parameter. The fit has wider limits of its own.
struct ValueRange {
    double low = -largest_value;
    double high = largest_value;
    constexpr bool holds(double value) const { return value >= low && value <= high; }
    constexpr bool bounded() const { return low > -largest_value && high < largest_value; }
};

/// The parameter in the grid. A blank caption, or "N/A": the type has no such parameter.
struct GridLook {
    TextByKind caption;
    TextByKind unit;
    TextByKind format;
};

/// Two lines about the parameter.
struct ParameterTip {
    TextByKind meaning;
    TextByKind measure;  ///< unit and, where the range has no two ends, the values that it takes
    bool type_changes_meaning = false;
};

/// Where the bars stop.
enum class BarEnd {
    range,       ///< where the values end that a person may give
    above_zero,  ///< before 0
    same_sign    ///< before 0 from either side; a value of 0 may leave it
};

/// A coarse step of a bar, in the unit of the parameter.
struct BarStep {
    double fixed = 0;
    double (*rule)(const Workspace&, const ModelBody&) = nullptr;  ///< in place of `fixed`
    double of(const Workspace& workspace, const ModelBody& body) const {
        return rule ? rule(workspace, body) : fixed;
    }
};

/// The pair of bars that nudge the parameter.
struct BarRule {
    const char* control;  ///< of all members: "HScroll_dip" holds members 0 and 1
    int first_member;     ///< the coarse one; the fine one follows
    bool upright;         ///< up and down rather than right and left
    BarStep step;
    BarEnd end = BarEnd::range;
};

/// A step or limit of the inversion. A pipe is small and shallow and often has another one.
struct FitNumber {
    float pipe = 0;
    float others = 0;
    float (*rule)(const ModelBody&, const Workspace&) = nullptr;  ///< in place of both
    float of(const ModelBody& body, const Workspace& workspace) const {
        if (rule) return rule(body, workspace);
        return body.type == anomalis::pipe ? pipe : others;
    }
};

/// Which fits may change a parameter: all, those of magnetics, those of gravity.
enum class FitPart { shape, magnetic, gravity };

/// Bodies in which a fit may change a parameter that is marked to vary.
enum class FitBodies { all, not_round };

/// The parameter in the inversion.
struct FitRule {
    FitPart part;
    /// Free only if this holds, besides the mark to vary; null for always.
    bool (*may_vary)(const ModelBody&, const Workspace&);
    FitNumber step;          ///< largest change in one turn
    FitNumber lower, upper;  ///< of a parameter without limits of its own
    FitBodies bodies = FitBodies::all;
};

/// One parameter.
struct BodyParameter {
    ParamCode code;
    BodyParam ModelBody::*slot;
    std::string_view name;  ///< in reports, messages and dumps
    TextByKind column;      ///< of the clean tables, with its unit; "" where they leave it out
    GridLook grid;
    ByKind<ValueRange> range;
    double least_difference;  ///< a keyed value this near to the stored one counts as none
    Stale stale;
    BarRule bar;
    FitRule fit;
    ParameterTip tip;
    bool held_by_wires = false;  ///< the inversion never changes it of a wire
};

inline constexpr std::size_t body_parameter_count = 15;

/// All of them in the order of the record, which is that of dumps. The grid goes by the code.
std::span<const BodyParameter, body_parameter_count> body_parameters();

/// The row of a code. Raises Fault subscript for a code that is none.
const BodyParameter& body_parameter(int param_code);

/// The codes in the order in which an inversion lists its free parameters: place and shape, magnetisation,
/// density.
std::span<const ParamCode, body_parameter_count> fit_order();

/// The name of a code in reports and messages. Raises Fault subscript for a code that is none.
std::string_view param_name(int param_code);

/// The parameter of a code. Raises Fault subscript for a code that is none.
BodyParam& body_param(ModelBody& body, int param_code);
const BodyParam& body_param(const ModelBody& body, int param_code);

/// Bodies of the type have the parameter: the grid shows it and takes values for it.
bool has_parameter(std::int32_t type, int param_code);

/// The values that a person may give. Raises Fault subscript for a code that is none.
const ValueRange& value_range(std::int32_t type, int param_code);

/// Of a type that carries no current the parameter is a susceptibility, which is shown in a unit of choice.
bool is_susceptibility(std::int32_t type, int param_code);

/// What the parameter means for this type, its unit and the numbers it takes.
std::string parameter_tip(std::int32_t type, int param_code,
                          SusceptibilityUnit unit = SusceptibilityUnit::micro_si);

}  // namespace anomalis
