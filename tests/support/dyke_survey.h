#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include "survey/results/survey_results.h"

// Results of a survey over dykes that are known.
namespace anomalis {

/// What a survey over dykes by chance is like.
struct DykeSurveyRange {
    int lines = 20;
    double spacing = 200, line_length = 6000;  ///< m
    double uneven = 0.1;                       ///< part of the spacing that a line lies off
    double azimuth = 90;                       ///< of the lines, degrees
    int dykes = 8;
    double crossing_low = 60, crossing_high = 90;  ///< degrees between strikes and lines
    double apart = 0;                ///< m between parallel dykes that are alike; 0: dykes by chance
    double errors = 1;               ///< true errors over those that the intervals say
    double shown = 0.95;             ///< part of the dykes under a line that it finds
    double made_up = 0.3;            ///< bodies a line that are none
    double missing = 0, failed = 0;  ///< part of the lines
    double bend = 2;                 ///< degrees that a dyke turns from line to line
};

struct KnownDyke {
    double east = 0, north = 0;  ///< its middle, m
    double strike = 0, length = 0, depth = 0, dip = 0, width = 0, susceptibility = 0;
};

struct DykeSurvey {
    survey::SurveyResults results;
    std::vector<KnownDyke> dykes;
    std::vector<std::vector<int>> dyke_of;                ///< by line and body, -1 for one that is made up
    std::vector<std::vector<survey::TrackPoint>> places;  ///< the same: where its top truly is, m
};

/// The same survey for the same seed on every machine.
class DykeSurveyMaker {
  public:
    DykeSurveyMaker(unsigned seed, const DykeSurveyRange& range) : range_(range), engine_(seed) {}

    DykeSurvey make() {
        for (int i = 0; i < range_.dykes; ++i) add_dyke();
        survey_.results.identity = {.name = "dykes", .source = "dykes.csv", .plan_digest = "1", .lines = {}};
        for (int i = 0; i < range_.lines; ++i) add_line(i);
        return std::move(survey_);
    }

  private:
    static constexpr double degree = std::numbers::pi / 180;

    double uniform() { return static_cast<double>(engine_() >> 11U) * 0x1p-53; }
    double between(double low, double high) { return low + (high - low) * uniform(); }
    double normal() {
        return std::sqrt(-2 * std::log(1 - uniform())) * std::cos(2 * std::numbers::pi * uniform());
    }

    double side() const { return range_.spacing * range_.lines; }

    /// From along the lines and across them, about the middle.
    survey::TrackPoint place(double along, double across) const {
        const double s = std::sin(range_.azimuth * degree), c = std::cos(range_.azimuth * degree);
        return {450000 + s * along - c * across, 7550000 + c * along + s * across};
    }

    void add_dyke() {
        const bool again = range_.apart > 0 && !survey_.dykes.empty();
        KnownDyke dyke;
        if (again) {
            dyke = survey_.dykes.front();
            const double count = static_cast<double>(survey_.dykes.size());
            dyke.east += range_.apart * count * std::cos(dyke.strike * degree);
            dyke.north -= range_.apart * count * std::sin(dyke.strike * degree);
            dyke.depth *= between(0.8, 1.25);
            dyke.susceptibility *= between(0.7, 1.4);
        } else {
            const double crossing = between(range_.crossing_low, range_.crossing_high);
            dyke.strike = range_.azimuth - (uniform() < 0.5 ? crossing : -crossing);
            const survey::TrackPoint middle =
                place(between(-0.4, 0.4) * range_.line_length, between(-0.4, 0.4) * side());
            dyke.east = middle.east, dyke.north = middle.north;
            dyke.depth = std::exp(between(std::log(30.0), std::log(250.0)));
            dyke.dip = between(45, 135);
            dyke.width = between(5, 60);
            dyke.susceptibility = std::exp(between(std::log(3000.0), std::log(60000.0)));
            dyke.length = between(0.25, 1) * side();
        }
        survey_.dykes.push_back(dyke);
    }

    void add_line(int number) {
        const double across =
            (number - (range_.lines - 1) / 2.0 + range_.uneven * between(-1, 1)) * range_.spacing;
        const bool missing = uniform() < range_.missing, failed = uniform() < range_.failed;
        const bool reversed = uniform() < 0.5;
        survey::LineResult line;
        line.line = "L" + std::to_string(1000 + 10 * number);
        line.coordinate_system = "EPSG:32754";
        line.track = {place(-range_.line_length / 2, across), place(range_.line_length / 2, across)};
        if (reversed) std::ranges::reverse(line.track);
        std::vector<int> of;
        std::vector<survey::TrackPoint> places;
        for (std::size_t i = 0; i < survey_.dykes.size(); ++i)
            if (const double at = crossing_of(survey_.dykes[i], across);
                std::isfinite(at) && uniform() < range_.shown) {
                line.bodies.push_back(seen(survey_.dykes[i], at, across, reversed));
                of.push_back(static_cast<int>(i));
                places.push_back(place(at, across));
            }
        for (double rest = range_.made_up; rest > 0; rest -= 1)
            if (uniform() < rest) {
                line.bodies.push_back(made_up(across, reversed));
                of.push_back(-1);
                places.push_back(place(0, across));
            }
        if (missing) return;
        if (failed) {
            line.status = survey::LineStatus::failed;
            line.bodies.clear();
            of.clear();
            places.clear();
        }
        for (std::size_t i = 0; i < line.bodies.size(); ++i) line.bodies[i].number = static_cast<int>(i) + 1;
        survey_.results.identity.lines.push_back(line.line);
        survey_.results.lines.push_back(std::move(line));
        survey_.dyke_of.push_back(std::move(of));
        survey_.places.push_back(std::move(places));
    }

    /// m along the line; NaN where a dyke does not reach it.
    double crossing_of(const KnownDyke& dyke, double across) {
        const survey::TrackPoint origin = place(0, across);
        const double ls = std::sin(range_.azimuth * degree), lc = std::cos(range_.azimuth * degree);
        const double ds = std::sin(dyke.strike * degree), dc = std::cos(dyke.strike * degree);
        const double east = dyke.east - origin.east, north = dyke.north - origin.north;
        const double turning = ls * dc - lc * ds;
        const double along = (east * dc - north * ds) / turning;
        const double on_dyke = (lc * east - ls * north) / turning;
        // A gentle wave, no straight line.
        const double wave = std::tan(range_.bend * degree) * range_.spacing *
                            std::sin(on_dyke / (3 * range_.spacing) + dyke.depth);
        const bool reached = std::abs(on_dyke) <= dyke.length / 2;
        const double at = along + wave;
        return reached && std::abs(at) < range_.line_length / 2 ? at : survey::unknown;
    }

    survey::IntervalValue told(double truth, double error) {
        const double value = truth + range_.errors * error * normal();
        return {value, value - 1.645 * error, value + 1.645 * error};
    }
    survey::IntervalValue told_factor(double truth, double error) {
        const survey::IntervalValue log = told(std::log(truth), error);
        return {std::exp(log.value), std::exp(log.lower), std::exp(log.upper)};
    }

    survey::BodyResult seen(const KnownDyke& dyke, double along, double across, bool reversed) {
        survey::BodyResult body;
        body.name = "Body";
        body.type = "Thick Sheet";
        const double place_error = 0.05 * dyke.depth + 2;
        const double at = along + range_.errors * place_error * normal();
        const survey::TrackPoint top = place(at, across);
        body.east = top.east, body.north = top.north;
        body.profile_azimuth = range_.azimuth + (reversed ? 180 : 0);
        const double distance = range_.line_length / 2 + (reversed ? -at : at);
        body.distance = {distance, distance - 1.645 * place_error, distance + 1.645 * place_error};
        body.depth_below_ground = told_factor(dyke.depth, 0.1);
        const double down = 60;
        const survey::IntervalValue& depth = body.depth_below_ground;
        body.depth_below_sensor = {depth.value + down, depth.lower + down, depth.upper + down};
        body.top_elevation = 300 - depth.value;
        // A line models what it finds as square to it.
        body.strike.value = body.profile_azimuth - 90;
        const double own =
            std::cos((body.strike.value - dyke.strike) * degree) < 0 ? 180 - dyke.dip : dyke.dip;
        body.dip = told(own, 5);
        body.width = told_factor(dyke.width, 0.3);
        const survey::IntervalValue product = told_factor(dyke.susceptibility * dyke.width, 0.12);
        const double w = body.width.value;
        body.susceptibility = {product.value / w, product.value / w / 1.6, product.value / w * 1.6};
        return body;
    }

    survey::BodyResult made_up(double across, bool reversed) {
        KnownDyke chance;
        chance.strike = range_.azimuth - 90;
        chance.depth = std::exp(between(std::log(30.0), std::log(400.0)));
        chance.dip = between(35, 145);
        chance.width = between(5, 100);
        chance.susceptibility = std::exp(between(std::log(1000.0), std::log(60000.0)));
        return seen(chance, between(-0.5, 0.5) * range_.line_length, across, reversed);
    }

    DykeSurveyRange range_;
    std::mt19937_64 engine_;
    DykeSurvey survey_;
};

inline DykeSurvey dyke_survey(unsigned seed, const DykeSurveyRange& range = {}) {
    return DykeSurveyMaker(seed, range).make();
}

}  // namespace anomalis
