#pragma once

#include <cmath>
#include <functional>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include "core/workspace.h"

// The example surveys: where their stations stand, the model that is true of them and how far the starting
// model is off. What is made of them, and what their tests compare a fit with.
namespace anomalis::examples {

/// Normally distributed noise. Box and Muller (1958) by hand, since the library's distribution differs
/// between compilers.
class Noise {
  public:
    explicit Noise(unsigned seed) : engine_(seed) {}
    double operator()(double deviation) {
        const double u = 1.0 - uniform();
        return deviation * std::sqrt(-2 * std::log(u)) * std::cos(2 * std::numbers::pi * uniform());
    }

  private:
    double uniform() { return static_cast<double>(engine_() >> 11) * 0x1p-53; }
    std::mt19937_64 engine_;
};

struct Reading {
    double east = 0, north = 0, sensor = 0, ground = 0;
};

using BodyEdit = std::function<void(ModelBody&)>;

struct ExampleBody {
    BodyEdit truth;
    BodyEdit start_offset;  ///< what the starting model has wrong
};

struct Survey {
    std::string name;
    std::vector<std::string> comments;
    std::vector<Reading> readings;
    int coordinate_digits = 1;
    unsigned seed = 1967;                  ///< of the noise
    double mag_noise = 0, grav_noise = 0;  ///< nT, mGal
    std::function<double(double distance)> mag_regional = [](double) { return 0.0; };
    std::function<double(double distance)> grav_regional = [](double) { return 0.0; };
    std::function<void(Workspace&)> describe;  ///< field, columns, base levels, degrees of the regionals
    std::vector<ExampleBody> bodies;
};

/// Those that one fit explains from their starting model, in the order in which they are offered.
std::vector<Survey> surveys();

/// Those whose starting model lacks what the data tell of: no fit explains them until a person adds it.
std::vector<Survey> riddles();

/// The lines of one survey file, each named as there: two dykes that run through all of them.
std::vector<Survey> dyke_lines();
inline constexpr const char* dyke_lines_file = "dyke_lines.csv";

}  // namespace anomalis::examples
