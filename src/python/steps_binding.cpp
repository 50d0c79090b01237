#include <algorithm>
#include <cmath>
#include <functional>
#include <pybind11/stl.h>
#include <utility>

#include "core/body_parameters.h"
#include "flow/channel_choice.h"
#include "flow/take_found.h"
#include "flow/unattended_steps.h"
#include "model/refresh_model.h"
#include "python/arrays.h"
#include "python/body_object.h"
#include "python/step_results.h"
#include "python/workspace_binding.h"
#include "report/find_json.h"
#include "report/inversion_json.h"
#include "report/uncertainty_json.h"

namespace anomalis::python {

namespace py = pybind11;

namespace {

constexpr const char* settings_doc = R"(

regional_degree: 0 to 3, -1 for none; mag_noise, grav_noise: standard deviation of a reading, nT, mGal; given,
they stand in place of what the workspace says, which holds them afterwards. channel: "mag", "grav" or "joint";
None is what the line has, magnetics first.
)";

constexpr const char* fit_doc = R"(Fits the parameters that may vary (`Body.vary`) and returns a Fit.

target: "data" or "gradient"; method: "least-squares" or "sweep"; iterations at most; body: the number of the
only one to be fitted, from 1; starts: fits from so many places. progress(iteration, limit, misfit, seconds) is
called after each iteration; what it raises ends the fit.

>>> import anomalis
>>> ws = anomalis.Workspace.read("dyke_swarm.axm").load()
>>> before = ws.rms("mag")
>>> fit = ws.fit()
>>> fit.ok, fit.rms["mag"] <= before
(True, True)
>>> sorted(fit.parameters[0])
['at_limit', 'body', 'error', 'lower', 'name', 'start', 'undetermined', 'unit', 'upper', 'value']
)";

constexpr const char* find_doc =
    R"(Proposes models of the line, takes the best into the workspace and returns a Found.

most: bodies at most; bodies: exactly so many; kinds: "thin", "thick" or "both" sheets; free_present: bodies
that stand there are fitted too; alternatives: models at most; window: (first, last) m along the profile.
progress(bodies, rms) is called when the model has grown or got better; what it raises ends the search.
)";

constexpr const char* uncertainty_doc =
    R"(Fits the model, then others that explain the data as well, and returns an Uncertainty.

samples: models to be drawn; seed: the same one gives the same models, on any number of cores; strike_within:
degrees to each side that the strikes are known to; vary_bodies: models with a body less take part;
same_regional: all have a regional of the same degree; window: (first, last) m along the profile.
progress(done, of) is called on the way; what it raises ends the run.
)";

/// What is given in place of the settings of a workspace.
struct Given {
    std::optional<std::int32_t> regional_degree;
    std::optional<double> mag_noise, grav_noise;
};

template <class Options>
void take_given(const Given& given, Options& options) {
    if (given.regional_degree && !is_regional_degree(*given.regional_degree))
        throw py::value_error("regional_degree must be 0 to 3, or -1 for none");
    options.regional_degree = given.regional_degree;
    const auto noise = [](std::optional<double> value, const char* name) -> std::optional<float> {
        if (value && !(*value > 0 && std::isfinite(*value)))
            throw py::value_error(std::string(name) + " must be above 0");
        return value ? std::optional(static_cast<float>(*value)) : std::nullopt;
    };
    options.mag_noise = noise(given.mag_noise, "mag_noise");
    options.grav_noise = noise(given.grav_noise, "grav_noise");
}

void require_word(const std::string& word, std::initializer_list<const char*> known, const char* name) {
    std::string all;
    for (const char* one : known) {
        if (word == one) return;
        all += (all.empty() ? "'" : ", '") + std::string(one) + "'";
    }
    throw py::value_error(std::string(name) + " must be one of " + all + ": " + word);
}

std::string channel_word(const std::optional<std::string>& channel) {
    if (channel) require_word(*channel, {"mag", "grav", "joint"}, "channel");
    return channel.value_or("");
}

void require_count(int value, int least, const char* name) {
    if (value < least)
        throw py::value_error(std::string(name) + " must be " + std::to_string(least) +
                              " or more: " + std::to_string(value));
}

std::optional<flow::DistanceWindow> window_of(const std::optional<std::pair<double, double>>& window) {
    if (!window) return {};
    return flow::DistanceWindow{window->first, window->second};
}

Fit fit(WorkspaceObject& object, const std::optional<std::string>& channel, const std::string& target,
        const std::string& method, int iterations, std::optional<int> body, int starts,
        std::optional<int> regional_degree, std::optional<double> mag_noise, std::optional<double> grav_noise,
        const py::object& progress) {
    flow::InvertOptions options;
    require_word(target, {"data", "gradient"}, "target");
    require_word(method, {"least-squares", "sweep"}, "method");
    require_count(iterations, 1, "iterations");
    require_count(starts, 1, "starts");
    require_count(body.value_or(1), 1, "body");
    options.target = target == "gradient" ? target_gradient : target_data;
    options.method = method_of_name(method).value_or(options.method);
    options.iterations = iterations;
    options.starts = starts;
    options.body = body.value_or(0);
    take_given({regional_degree, mag_noise, grav_noise}, options);
    Watch watch(progress);
    Fit result;
    const std::string word = channel_word(channel);
    object.work(watch, [&](Session& session) {
        const auto leave = [&] {
            if (watch.stop()) session.inversion.stop_inversion = session.inversion.leave_inversion = true;
        };
        object.on_yield(leave);
        bool unused = false;
        result.report = flow::invert_on_line(
            session, word, options, unused, [&](const inversion::InversionProgress& state) {
                watch.tell([&] {
                    return py::make_tuple(state.iteration, state.iteration_limit,
                                          static_cast<double>(state.misfit[0]), state.seconds);
                });
                leave();
            });
    });
    object.settle(result.report.result.status < 0, result.report.label);
    result.told = object.told();
    result.json = report::inversion_json_text(result.report, object.prompts());
    return result;
}

Found find(WorkspaceObject& object, const std::optional<std::string>& channel, std::optional<int> most,
           std::optional<int> bodies, const std::string& kinds, bool free_present, int alternatives,
           const std::optional<std::pair<double, double>>& window, std::optional<int> regional_degree,
           std::optional<double> mag_noise, std::optional<double> grav_noise, const py::object& progress) {
    flow::FindOptions options;
    require_word(kinds, {"thin", "thick", "both"}, "kinds");
    require_count(most.value_or(1), 1, "most");
    require_count(bodies.value_or(1), 1, "bodies");
    require_count(alternatives, 1, "alternatives");
    options.request = {.most = std::max(most.value_or(flow::usual_most_bodies), bodies.value_or(1)),
                       .bodies = bodies,
                       .thin = kinds != "thick",
                       .thick = kinds != "thin",
                       .free_present = free_present,
                       .alternatives = alternatives};
    options.window = window_of(window);
    take_given({regional_degree, mag_noise, grav_noise}, options);
    Watch watch(progress);
    Found result;
    const std::string word = channel_word(channel);
    const flow::OpenState state = object.state();
    object.work(watch, [&](Session& session) {
        bool unused = false;
        result.report = flow::find_on_line(
            session, state, word, options, unused,
            [&](const inversion::FoundModel& model) {
                watch.tell([&] { return py::make_tuple(model.found, model.rms); });
            },
            [&] { return watch.stop(); });
    });
    object.settle(!result.report.refusal.empty(), result.report.refusal);
    result.told = object.told();
    result.json = report::find_json_text(result.report, object.workspace(), object.prompts());
    return result;
}

class WatchingObserver : public inversion::EnsembleObserver {
  public:
    explicit WatchingObserver(Watch& watch) : watch_(watch) {}
    bool working(double) override { return watch_.stop(); }
    void samples_done(int done, int of) override {
        watch_.tell([&] { return py::make_tuple(done, of); });
    }

  private:
    Watch& watch_;
};

Uncertainty uncertainty(WorkspaceObject& object, int samples, int seed,
                        const std::optional<std::string>& channel, const std::string& target,
                        double strike_within, bool vary_bodies, bool same_regional,
                        const std::optional<std::pair<double, double>>& window,
                        std::optional<int> regional_degree, std::optional<double> mag_noise,
                        std::optional<double> grav_noise, const py::object& progress) {
    flow::UncertaintyOptions options;
    require_word(target, {"data", "gradient"}, "target");
    require_count(samples, 1, "samples");
    require_count(seed, 0, "seed");
    constexpr double any_strike = 90;
    if (!(strike_within >= 0 && strike_within <= any_strike))
        throw py::value_error("strike_within must be 0 to 90 degrees");
    options.request.target = target == "gradient" ? target_gradient : target_data;
    options.request.samples = samples;
    options.request.seed = static_cast<std::uint32_t>(seed);
    options.request.vary_regional = !same_regional;
    options.request.vary_bodies = vary_bodies;
    options.request.strike_within = strike_within;
    options.window = window_of(window);
    take_given({regional_degree, mag_noise, grav_noise}, options);
    Watch watch(progress);
    Uncertainty result;
    const std::string word = channel_word(channel);
    const flow::OpenState state = object.state();
    if (state == flow::OpenState::no_data)
        throw Fault("the workspace has no stations: load() reads them, set_line() gives them");
    object.work(watch, [&](Session& session) {
        bool unused = false;
        WatchingObserver observer(watch);
        result.report = flow::uncertainty_on_line(session, state, word, options, unused, observer);
    });
    const Workspace& workspace = object.workspace();
    result.ensemble = workspace.ensemble;
    object.settle(!result.ensemble, "The model has nothing that may vary");
    result.told = object.told();
    result.json = report::uncertainty_json_text(workspace, result.report.request, result.report.result,
                                                result.ensemble.get(), object.prompts());
    take_units(workspace, result);
    return result;
}

void take(WorkspaceObject& object, const inversion::FoundModel& model) {
    const int present = static_cast<int>(model.bodies.size()) - model.found;
    if (present > object.workspace().body_count)
        throw Fault("the model was found beside " + std::to_string(present) +
                    " bodies that stood there, and the workspace has " +
                    std::to_string(object.workspace().body_count));
    Watch watch;
    object.work(watch, [&](Session& session) {
        flow::take_found(session.workspace, model);
        model::refresh_model(session);
    });
    object.settle(false, "");
}

}  // namespace

void define_steps(py::module_& module, WorkspaceClass& type) {
    define_results(module);
    const auto doc = [](const char* text) { return std::string(text) + settings_doc; };
    type.def("fit", &fit, py::kw_only(), py::arg("channel") = py::none(), py::arg("target") = "data",
             py::arg("method") = "least-squares", py::arg("iterations") = inversion::default_iterations,
             py::arg("body") = py::none(), py::arg("starts") = inversion::default_starts,
             py::arg("regional_degree") = py::none(), py::arg("mag_noise") = py::none(),
             py::arg("grav_noise") = py::none(), py::arg("progress") = py::none(), doc(fit_doc).c_str());
    type.def("find", &find, py::kw_only(), py::arg("channel") = py::none(), py::arg("most") = py::none(),
             py::arg("bodies") = py::none(), py::arg("kinds") = "both", py::arg("free_present") = false,
             py::arg("alternatives") = 3, py::arg("window") = py::none(),
             py::arg("regional_degree") = py::none(), py::arg("mag_noise") = py::none(),
             py::arg("grav_noise") = py::none(), py::arg("progress") = py::none(), doc(find_doc).c_str());
    constexpr int usual_samples = 300;
    type.def("uncertainty", &uncertainty, py::kw_only(), py::arg("samples") = usual_samples,
             py::arg("seed") = 1, py::arg("channel") = py::none(), py::arg("target") = "data",
             py::arg("strike_within") = 0.0, py::arg("vary_bodies") = false, py::arg("same_regional") = false,
             py::arg("window") = py::none(), py::arg("regional_degree") = py::none(),
             py::arg("mag_noise") = py::none(), py::arg("grav_noise") = py::none(),
             py::arg("progress") = py::none(), doc(uncertainty_doc).c_str());
    type.def("take", &take, py::arg("model"),
             "Puts a model that `find` proposed for this line into the workspace, and calculates it.");
}

}  // namespace anomalis::python
