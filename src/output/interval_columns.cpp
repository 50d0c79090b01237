#include "output/interval_columns.h"

#include <algorithm>
#include <cmath>

#include "core/body_parameters.h"
#include "core/model_mark.h"
#include "core/workspace.h"
#include "output/csv_text.h"

namespace anomalis::output {

namespace {

bool of_wire(const Workspace& workspace, const FittedParameter& fitted) {
    return fitted.param_code == param_susc && fitted.body >= 1 && fitted.body <= workspace.body_count &&
           carries_current(workspace.body(fitted.body).type);
}

bool stands_in(const IntervalColumns& columns, const Workspace& workspace, const FittedParameter& fitted) {
    return fitted.param_code == columns.param_code && of_wire(workspace, fitted) == columns.of_wires;
}

void add_side(double value, CsvText& csv) {
    std::isfinite(value) ? csv.number(value) : csv.nothing();
}

}  // namespace

std::vector<IntervalColumns> interval_columns(const Workspace& workspace) {
    std::vector<IntervalColumns> all;
    if (!as_fitted(workspace)) return all;
    for (const ParamCode code : fit_order()) {
        for (const bool of_wires : {false, true}) {
            const TextByKind& names = body_parameter(code).column;
            const IntervalColumns columns{std::string(of_wires ? names.wire : names.sheet), code, of_wires};
            const bool fitted = std::ranges::any_of(workspace.fit->parameters, [&](const auto& parameter) {
                return stands_in(columns, workspace, parameter);
            });
            if (fitted && !columns.name.empty()) all.push_back(columns);
        }
    }
    return all;
}

void add_interval_names(const std::vector<IntervalColumns>& columns, CsvText& csv) {
    for (const IntervalColumns& one : columns) {
        csv.name(one.name + "_lower_90");
        csv.name(one.name + "_upper_90");
    }
}

void add_intervals(const std::vector<IntervalColumns>& columns, const Workspace& workspace, int body,
                   CsvText& csv) {
    for (const IntervalColumns& one : columns) {
        const auto& parameters = workspace.fit->parameters;
        const auto fitted = std::ranges::find_if(parameters, [&](const FittedParameter& parameter) {
            return parameter.body == body && stands_in(one, workspace, parameter);
        });
        const bool there = fitted != parameters.end();
        add_side(there ? fitted->lower : FittedParameter::open, csv);
        add_side(there ? fitted->upper : FittedParameter::open, csv);
    }
}

}  // namespace anomalis::output
