#include "survey/run/line_answer.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "core/body_parameters.h"
#include "core/body_types.h"
#include "core/failure.h"
#include "core/model_mark.h"
#include "core/workspace.h"
#include "flow/channel_choice.h"
#include "inversion/line_place.h"
#include "model/burial_depth.h"
#include "output/body_place.h"
#include "show/fit_quality.h"
#include "survey/run/line_track.h"

namespace anomalis::survey {

namespace {

/// A parameter of a body and what the fit says of it.
class FittedBody {
  public:
    FittedBody(const ModelBody& body, int number, const FitRecord* fit)
        : body_(body), number_(number), fit_(fit) {}

    IntervalValue value(std::int32_t code) const {
        IntervalValue value{static_cast<double>(body_param(body_, code).value), unknown, unknown};
        if (const FittedParameter* fitted = of(code)) {
            value.lower = fitted->lower;
            value.upper = fitted->upper;
        }
        return value;
    }
    /// A length of 0 goes on without end.
    IntervalValue extent(std::int32_t code) const {
        return body_param(body_, code).value > 0 ? value(code) : IntervalValue{};
    }
    /// Of the top below an elevation; `higher_by`: how far the highest point is above the parameter.
    IntervalValue depth_below(double elevation, double higher_by) const {
        const IntervalValue top = value(param_top);
        const double from = elevation - higher_by;
        return {from - top.value, from - top.upper, from - top.lower};
    }

  private:
    const FittedParameter* of(std::int32_t code) const {
        if (!fit_) return nullptr;
        const auto found = std::ranges::find_if(fit_->parameters, [&](const FittedParameter& p) {
            return p.body == number_ && p.param_code == code;
        });
        return found == fit_->parameters.end() ? nullptr : &*found;
    }

    const ModelBody& body_;
    int number_;
    const FitRecord* fit_;
};

/// What is round has its parameter on its axis.
double top_above_parameter(const ModelBody& body) {
    return body.type == pipe || body.type == sphere ? body.width.value / 2.0 : 0;
}

void add_places(const ModelBody& body, const std::string& system, GeographicPlaces& places,
                BodyResult& result) {
    const output::BodyPlace top = output::top_place(body);
    result.east = top.east;
    result.north = top.north;
    const TrackPoint geographic = places.of(system, {top.east, top.north});
    result.longitude = geographic.east;
    result.latitude = geographic.north;
    result.top_elevation = body.top.value + top_above_parameter(body);
}

void add_values(const Workspace& workspace, const ModelBody& body, const FittedBody& fitted,
                BodyResult& result) {
    const auto distance = static_cast<double>(body.distance.value);
    const double above = top_above_parameter(body);
    result.distance = fitted.value(param_distance);
    if (model::ground_is_known(workspace))
        result.depth_below_ground = fitted.depth_below(model::ground_elevation(workspace, distance), above);
    result.depth_below_sensor =
        fitted.depth_below(inversion::elevation_at(workspace, distance, column_sensor), above);
    result.strike = fitted.value(param_strike);
    result.dip = fitted.value(param_dip);
    result.width = fitted.value(param_width);
    result.length = fitted.extent(param_length);
    result.depth_extent = fitted.extent(param_depth_extent);
    if (workspace.has_mag() && !carries_current(body.type)) result.susceptibility = fitted.value(param_susc);
    if (workspace.has_grav()) result.density_contrast = fitted.value(param_density);
}

BodyResult body_result(const Workspace& workspace, int number, const FitRecord* fit, double azimuth,
                       GeographicPlaces& places) {
    const ModelBody& body = workspace.body(number);
    BodyResult result;
    result.number = number;
    result.name = body.name;
    result.type = body_type_name(body.type);
    if (result.type.empty()) result.type = "Type " + std::to_string(body.type);
    result.profile_azimuth = azimuth;
    add_places(body, workspace.source.coordinate_system, places, result);
    add_values(workspace, body, FittedBody(body, number, fit), result);
    return result;
}

}  // namespace

TrackPoint GeographicPlaces::of(const std::string& system, TrackPoint place) {
    if (system.empty()) return {unknown, unknown};
    auto [found, is_new] = changes_.try_emplace(system);
    if (is_new) {
        try {
            found->second.emplace(system, intake::wgs84);
        } catch (const Fault&) {  // not known: nobody can say where it is
        }
    }
    if (!found->second) return {unknown, unknown};
    found->second->forward({&place.east, 1}, {&place.north, 1});
    return place;
}

void add_answer(const Workspace& workspace, std::int32_t channel, const intake::LoadReport& load,
                GeographicPlaces& places, LineResult& result) {
    result.coordinate_system = workspace.source.coordinate_system;
    result.track = line_track(workspace);
    result.stations = workspace.station_count;
    result.length_m = load.length_m;
    result.channel = flow::channel_name(channel);
    for (const auto& [code, rms, noise] :
         {std::tuple{channel_mag, &LineResult::rms_nT, &LineResult::noise_nT},
          std::tuple{channel_grav, &LineResult::rms_mGal, &LineResult::noise_mGal}}) {
        if (channel != channel_joint && channel != code) continue;
        const auto quality = show::fit_quality(workspace, code);
        if (!quality) continue;
        result.*rms = quality->rms;
        if (quality->noise.source != show::NoiseSource::none) result.*noise = quality->noise.value;
    }
    result.regional_degree =
        workspace.channel(channel == channel_grav ? channel_grav : channel_mag).regional.degree;
    const FitRecord* fit = as_fitted(workspace) ? &*workspace.fit : nullptr;
    for (int number = 1; number <= workspace.body_count; ++number)
        if (workspace.body(number).turned_off != 1)
            result.bodies.push_back(body_result(workspace, number, fit, load.direction_deg, places));
}

}  // namespace anomalis::survey
