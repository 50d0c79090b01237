#pragma once

#include <memory>
#include <pybind11/pybind11.h>
#include <string>
#include <vector>

#include "flow/unattended_steps.h"
#include "python/told.h"

// What the steps of a workspace give, as Python sees it.
namespace anomalis::python {

struct StepResult {
    ToldPrompts::Told told;
    std::string json;  ///< the report, as the command line gives it
};

struct Fit : StepResult {
    flow::InversionReport report;
};

struct Found : StepResult {
    flow::FindReport report;
};

struct Uncertainty : StepResult {
    flow::UncertaintyReport report;
    std::shared_ptr<const Ensemble> ensemble;
    std::vector<std::string> units;  ///< of its parameters
    std::vector<double> distances;   ///< of the stations, m
};

/// What an ensemble needs of the workspace that it was found for.
void take_units(const Workspace& workspace, Uncertainty& result);

void define_results(pybind11::module_& module);

}  // namespace anomalis::python
