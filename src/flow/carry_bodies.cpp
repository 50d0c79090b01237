#include "flow/carry_bodies.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "core/angles.h"
#include "core/numbers.h"
#include "core/workspace.h"
#include "forward/shape/reference_point.h"
#include "inversion/line_place.h"
#include "model/burial_depth.h"

namespace anomalis::flow {

namespace {

std::string metres(double value) {
    return format_number(value, "0") + " m";
}

/// A point of the map, seen from a body: m along its strike and across it.
struct FromBody {
    double along = 0, across = 0;
};

class StrikeLine {
  public:
    explicit StrikeLine(const ModelBody& body)
        : east_(body.east),
          north_(body.north),
          sine_(std::sin(static_cast<double>(body.strike.value) * radians_per_degree)),
          cosine_(std::cos(static_cast<double>(body.strike.value) * radians_per_degree)) {}

    FromBody of(double east, double north) const {
        const double x = east - east_, y = north - north_;
        return {sine_ * x + cosine_ * y, cosine_ * x - sine_ * y};
    }

  private:
    double east_, north_, sine_, cosine_;
};

struct Crossing {
    double distance = 0;  ///< m along the profile
    double along = 0;     ///< m along strike from the body
};

/// Where the strike line crosses the profile, the crossing that is nearest to the body. Else no value, and
/// `missed_by` says how far the nearest station stays off the strike line, m.
std::optional<Crossing> crossing_of(const StrikeLine& strike, const Workspace& line, double& missed_by) {
    std::optional<Crossing> nearest;
    FromBody last;
    for (int station = 1; station <= line.station_count; ++station) {
        const FromBody here =
            strike.of(line.stations(station, column_east), line.stations(station, column_north));
        missed_by = station == 1 ? std::abs(here.across) : std::min(missed_by, std::abs(here.across));
        if (station > 1 && last.across * here.across <= 0 && last.across != here.across) {
            const double t = last.across / (last.across - here.across);
            const double from = line.distances[station - 1];
            const Crossing crossing{from + (line.distances[station] - from) * t,
                                    last.along + (here.along - last.along) * t};
            if (!nearest || std::abs(crossing.along) < std::abs(nearest->along)) nearest = crossing;
        }
        last = here;
    }
    return nearest;
}

void shift(BodyParam& param, double by) {
    for (float* value : {&param.value, &param.min, &param.max})
        if (value == &param.value || *value != unset) *value = to_single(static_cast<double>(*value) + by);
}

bool ends_along_strike(const ModelBody& body) {
    return body.type == thick_sheet && body.length.value > 0;
}

ModelBody without_responses(const ModelBody& body) {
    ModelBody copy = body;
    copy.response = {};
    copy.known_inputs.reset();
    copy.mag_response_valid = copy.grav_response_valid = false;
    return copy;
}

/// What the carrying of one model notes.
class Carrier {
  public:
    Carrier(const Workspace& first, const Workspace& next, CarriedModel& model)
        : first_(first), next_(next), model_(model) {}

    void carry(int number) {
        const ModelBody& body = first_.body(number);
        double missed_by = 0;
        const auto crossing = crossing_of(StrikeLine(body), next_, missed_by);
        if (!crossing) {
            model_.doubts.push_back("Body " + std::to_string(number) + " strikes " +
                                    format_number(body.strike.value, "0.0") + " degrees: its line passes " +
                                    metres(missed_by) + " beside " + next_.model_file +
                                    " and does not cross it. The body was not carried");
            return;
        }
        note_distance(number, body, crossing->along);
        append(number, body, *crossing);
    }

  private:
    void note_distance(int number, const ModelBody& body, double along) {
        const double length = first_.distances.last();
        if (std::abs(along) > length)
            model_.doubts.push_back(next_.model_file + " lies " + metres(std::abs(along)) +
                                    " along strike from body " + std::to_string(number) +
                                    ", farther than the first line is long (" + metres(length) +
                                    "): hardly the same body");
        const double beyond = std::abs(along - static_cast<double>(body.offset.value)) -
                              static_cast<double>(body.length.value) / 2;
        if (ends_along_strike(body) && beyond > 0)
            model_.remarks.push_back("Body " + std::to_string(number) + " ends " + metres(beyond) +
                                     " before " + next_.model_file);
    }

    void append(int number, const ModelBody& body, const Crossing& crossing) {
        CarriedBody& carried = model_.bodies.emplace_back();
        carried.first_number = number;
        carried.before = carried.body = without_responses(body);
        carried.along_strike = crossing.along;
        ModelBody& here = carried.body;
        const auto before = static_cast<double>(body.distance.value);
        shift(here.distance, crossing.distance - before);
        shift(here.top, level(next_, crossing.distance) - level(first_, before));
        if (ends_along_strike(body)) here.offset.value -= to_single(crossing.along);
        forward::update_body_reference_point(next_, crossing.distance, here.east, here.north);
    }

    /// What depths are carried below, m of elevation: the ground, or what a sensor keeps above it.
    double level(const Workspace& line, double distance) const {
        return ground_known_ ? model::ground_elevation(line, distance)
                             : inversion::elevation_at(line, distance, column_sensor);
    }

    const Workspace& first_;
    const Workspace& next_;
    CarriedModel& model_;
    const bool ground_known_ = model::ground_is_known(first_) && model::ground_is_known(next_);
};

void note_ground(const Workspace& first, const Workspace& next, CarriedModel& model) {
    for (const Workspace* line : {&first, &next}) {
        if (model::ground_is_known(*line)) continue;
        model.remarks.push_back(
            (line->model_file.empty() ? "The line" : line->model_file) +
            " names no column of the ground: bodies are carried to the same depth below the "
            "sensor");
        return;
    }
}

}  // namespace

CarriedModel carry_bodies(const Workspace& first, const Workspace& next) {
    CarriedModel model;
    Carrier carrier(first, next, model);
    for (int number = 1; number <= first.body_count; ++number)
        if (!first.body(number).turned_off) carrier.carry(number);
    if (!model.bodies.empty()) note_ground(first, next, model);
    return model;
}

void put_bodies(const std::vector<CarriedBody>& carried, Workspace& next) {
    next.body_count = 0;
    for (const CarriedBody& one : carried) {
        reserve_next_body(next);
        ModelBody& body = next.body(++next.body_count);
        body = one.body;
        body.response.assign(next.station_count);
    }
}

}  // namespace anomalis::flow
