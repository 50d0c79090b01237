#include "python/step_results.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <pybind11/stl.h>

#include "core/body_parameters.h"
#include "flow/channel_choice.h"
#include "python/arrays.h"
#include "python/body_object.h"
#include "python/names.h"

namespace anomalis::python {

namespace py = pybind11;

namespace {

py::object number(double value) {
    return std::isfinite(value) ? py::object(py::float_(value)) : py::none();
}

py::object report_dict(const StepResult& result) {
    return py::module_::import("json").attr("loads")(result.json);
}

/// What the record of a fit says of a parameter; null where it says nothing.
const FittedParameter* fitted(const Fit& fit, const flow::ReportedParameter& parameter) {
    if (!fit.report.result.record) return nullptr;
    for (const FittedParameter& one : fit.report.result.record->parameters)
        if (one.body == parameter.body && one.param_code == parameter.param_code) return &one;
    return nullptr;
}

py::list fit_parameters(const Fit& fit) {
    py::list rows;
    for (const flow::ReportedParameter& parameter : fit.report.parameters) {
        const FittedParameter* const found = fitted(fit, parameter);
        py::dict row;
        row["body"] = parameter.body;
        row["name"] = parameter.name;
        row["unit"] = parameter.unit;
        row["start"] = static_cast<double>(parameter.start);
        row["value"] = static_cast<double>(parameter.final);
        row["error"] = found ? number(found->error) : py::none();
        row["lower"] = found ? number(found->lower) : py::none();
        row["upper"] = found ? number(found->upper) : py::none();
        row["undetermined"] = found && found->undetermined;
        row["at_limit"] = found && found->at_limit;
        rows.append(row);
    }
    return rows;
}

py::dict fit_rms(const Fit& fit) {
    py::dict values;
    for (const flow::ReportedChannel& channel : fit.report.channels)
        if (channel.fitted || channel.quality)
            values[py::str(flow::channel_name(channel.channel))] =
                channel.fitted ? channel.fitted->rms : channel.quality->rms;
    return values;
}

std::vector<std::string> fit_remarks(const Fit& fit) {
    return fit.report.result.record ? fit.report.result.record->remarks : std::vector<std::string>();
}

py::list ensemble_parameters(const Uncertainty& result) {
    py::list rows;
    for (std::size_t i = 0; i < result.ensemble->parameters.size(); ++i) {
        const EnsembleParameter& parameter = result.ensemble->parameters[i];
        py::dict row;
        row["body"] = parameter.body;
        row["name"] = std::string(param_name(parameter.param_code));
        row["unit"] = result.units[i];
        row["value"] = static_cast<double>(parameter.value);
        row["median"] = number(parameter.median);
        row["lower"] = number(parameter.lower);
        row["upper"] = number(parameter.upper);
        row["profile_lower"] = number(parameter.profile_lower);
        row["profile_upper"] = number(parameter.profile_upper);
        rows.append(row);
    }
    return rows;
}

py::array_t<float> ensemble_samples(const Uncertainty& result) {
    const std::size_t width = result.ensemble->parameters.size();
    std::vector<float> values;
    values.reserve(width * result.ensemble->samples.size());
    for (const EnsembleSample& sample : result.ensemble->samples)
        values.insert(values.end(), sample.values.begin(), sample.values.end());
    return owning_array(std::move(values), {static_cast<py::ssize_t>(result.ensemble->samples.size()),
                                            static_cast<py::ssize_t>(width)});
}

py::tuple fan(const Uncertainty& result, const std::string& channel) {
    const int code = channel_of(channel);
    for (const EnsembleFan& one : result.ensemble->fans) {
        if (one.channel != code) continue;
        const auto first = result.distances.begin() + (one.first_station - 1);
        const auto side = [](const std::vector<float>& from) {
            std::vector<float> values = from;
            for (float& value : values)
                if (value <= static_cast<float>(missing_limit))
                    value = std::numeric_limits<float>::quiet_NaN();
            return owning_array(std::move(values));
        };
        const auto end = first + static_cast<std::ptrdiff_t>(one.lower.size());
        return py::make_tuple(owning_array(std::vector<double>(first, end)), side(one.lower),
                              side(one.upper));
    }
    throw Fault("the models were not fitted to " +
                std::string(code == channel_mag ? "magnetics" : "gravity"));
}

template <class Type>
void define_common(py::class_<Type>& type) {
    type.def(
        "to_dict", [](const Type& result) { return report_dict(result); },
        "The whole report, as the command line writes it in JSON: a dict.");
    type.def_property_readonly(
        "messages", [](const Type& result) { return texts_of(result.told); },
        "All that was told on the way, a list of str.");
}

void define_fit(py::module_& module) {
    py::class_<Fit> type(module, "Fit", "What `Workspace.fit` gives.");
    type.def_property_readonly(
        "ok", [](const Fit& fit) { return fit.report.result.status == inversion::run_succeeded; },
        "It ended by itself, neither at the limit of iterations nor without getting better.");
    type.def_property_readonly(
        "label", [](const Fit& fit) { return fit.report.label; },
        "How it ended, in the words of the program.");
    type.def_property_readonly(
        "iterations", [](const Fit& fit) { return fit.report.result.iterations; },
        "Iterations that were made.");
    type.def_property_readonly(
        "evaluations", [](const Fit& fit) { return fit.report.result.evaluations; },
        "Models that were calculated.");
    type.def_property_readonly(
        "seconds", [](const Fit& fit) { return fit.report.seconds; },
        "That it took, with other starts and errors.");
    type.def_property_readonly("rms", &fit_rms,
                               "Root mean square of the residuals, a dict by channel: nT, mGal.");
    type.def_property_readonly(
        "parameters", &fit_parameters,
        "One dict a parameter that was fitted, rows for a DataFrame: body, name, unit, start, value, error "
        "(standard), lower and upper (90 % interval; None for a side that the data leave open), "
        "undetermined, "
        "at_limit.");
    type.def_property_readonly("remarks", &fit_remarks, "What there is to say of it, a list of str.");
    define_common(type);
    type.def("__repr__", [](const Fit& fit) {
        return "<anomalis.Fit: " + fit.report.label + " after " +
               std::to_string(fit.report.result.iterations) + " iterations>";
    });
}

void define_found(py::module_& module) {
    using inversion::FoundModel;
    py::class_<FoundModel> model(module, "FoundModel", "A model that `Workspace.find` proposes.");
    model.def_readonly("kind", &FoundModel::kind, "What sets it apart: \"3 thick sheets\".");
    model.def_readonly("rms", &FoundModel::rms,
                       "Of the channel that was looked at (joint: of magnetics), nT or mGal.");
    model.def_readonly("criterion", &FoundModel::criterion, "Information criterion: the lower the better.");
    model.def_readonly("found", &FoundModel::found, "How many of the bodies are new: the last ones.");
    model.def_property_readonly(
        "bodies", [](const FoundModel& one) { return as_tuple(one.bodies); },
        "Its bodies, a tuple of Body: those that stood there, then those found.");
    model.def("__repr__", [](const FoundModel& one) {
        return "<anomalis.FoundModel: " + one.kind + ", rms " + std::string(py::str(py::float_(one.rms))) +
               ">";
    });

    py::class_<Found> type(module, "Found", "What `Workspace.find` gives.");
    type.def_property_readonly(
        "label", [](const Found& found) { return found.report.result.label; },
        "How it ended, in the words of the program.");
    type.def_property_readonly(
        "models", [](const Found& found) { return py::tuple(py::cast(found.report.result.models)); },
        "The models, best first, a tuple of FoundModel; the workspace has the first.");
    type.def_property_readonly(
        "channel", [](const Found& found) { return flow::channel_name(found.report.channel); },
        "That was looked at: \"mag\", \"grav\" or \"joint\".");
    type.def_property_readonly(
        "rms_of_none", [](const Found& found) { return found.report.rms_of_none; },
        "Root mean square of the model as it stood before, nT or mGal.");
    type.def_property_readonly(
        "seconds", [](const Found& found) { return found.report.result.seconds; }, "That it took.");
    type.def_property_readonly(
        "remarks", [](const Found& found) { return found.report.result.remarks; },
        "What there is to say of it, a list of str.");
    define_common(type);
    type.def("__repr__",
             [](const Found& found) { return "<anomalis.Found: " + found.report.result.label + ">"; });
}

void define_uncertainty(py::module_& module) {
    py::class_<Uncertainty> type(module, "Uncertainty", "What `Workspace.uncertainty` gives.");
    type.def_property_readonly(
        "parameters", &ensemble_parameters,
        "One dict a parameter, rows for a DataFrame: body, name, unit, value, median, lower and upper (90 % "
        "of "
        "the models), profile_lower and profile_upper (90 % by the profile likelihood); None for a side that "
        "the data leave open.");
    type.def_property_readonly(
        "samples", &ensemble_samples,
        "The models, a float32 array of models x parameters; not a number where a model lacks the body.");
    type.def("fan", &fan, py::arg("channel") = "mag",
             "Where the calculated curve runs in 90 % of the models: (distances in m, lower, upper in nT or "
             "mGal), arrays of the stations of the fit.");
    type.def_property_readonly(
        "words", [](const Uncertainty& result) { return result.ensemble->words; },
        "What it says, a sentence each: a list of str.");
    type.def_property_readonly(
        "seconds", [](const Uncertainty& result) { return result.report.result.seconds; }, "That it took.");
    define_common(type);
    type.def("__repr__", [](const Uncertainty& result) {
        return "<anomalis.Uncertainty: " + std::to_string(result.ensemble->samples.size()) + " models>";
    });
}

}  // namespace

void take_units(const Workspace& workspace, Uncertainty& result) {
    for (const EnsembleParameter& parameter : result.ensemble->parameters)
        result.units.emplace_back(
            body_parameter(parameter.param_code).grid.unit.of(workspace.body(parameter.body).type));
    const auto distances = workspace.distances.span();
    result.distances.assign(distances.begin(), distances.end());
}

void define_results(py::module_& module) {
    define_fit(module);
    define_found(module);
    define_uncertainty(module);
}

}  // namespace anomalis::python
