#include "find_lines.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "../tests/inversion/noisy_line.h"
#include "forward/driver.h"
#include "intake/profile.h"
#include "inversion/line_place.h"
#include "model/refresh_model.h"

namespace anomalis {

namespace {

constexpr EarthField fields[] = {
    {58000, -64.5F, 11}, {35000, -20, -14}, {51900, -53, 6.7F}, {48000, 60, -3}, {56500, 74, 2}};
constexpr double spacings[] = {7, 10, 20, 25}, noises[] = {0.2, 0.5, 1, 2}, clearances[] = {60, 100};
constexpr double geologies[] = {2, 5}, geology_lengths[] = {60, 100, 200};  // nT, m
constexpr unsigned second_stream = 1000003;

class Drawing {
  public:
    Drawing(unsigned seed, Prompts& prompts) : seed_(seed), prompts_(prompts), normal_(seed) {}

    FindLine line() {
        line_.session = std::make_unique<Session>(prompts_, Settings());
        line_.spacing = one_of(spacings);
        noise_ = one_of(noises);
        line_.geology = normal_.uniform() < 0.5;
        clearance_ = one_of(clearances);
        place_sheets();
        lay_line();
        add_anomalies();
        add_noise();
        Workspace& w = workspace();
        w.body_count = 0;
        invalidate_filtered_data(0, w);
        model::refresh_model(*line_.session);
        return std::move(line_);
    }

  private:
    Workspace& workspace() { return line_.session->workspace; }
    double between(double low, double high) { return low + (high - low) * normal_.uniform(); }
    template <class Values>
    double one_of(const Values& values) {
        return values[static_cast<std::size_t>(normal_.uniform() * static_cast<double>(std::size(values)))];
    }
    bool apart() const;
    void place_sheets();
    void lay_line();
    ModelBody sheet(const BuriedSheet& place);
    void add_anomalies();
    void add_noise();

    unsigned seed_;
    Prompts& prompts_;
    inversion::NormalNumbers normal_;
    FindLine line_;
    int stations_ = 0;
    double length_ = 0, noise_ = 0, clearance_ = 0;
    Eigen::VectorXd readings_;
};

/// Nearer sheets are one to whoever measures them.
bool Drawing::apart() const {
    for (const BuriedSheet& a : line_.truth)
        for (const BuriedSheet& b : line_.truth)
            if (&a != &b && std::abs(a.distance - b.distance) < 3.1 * std::max(a.depth, b.depth))
                return false;
    return true;
}

void Drawing::place_sheets() {
    const int sheets = 1 + static_cast<int>(5 * normal_.uniform());
    for (int tries = 0; tries == 0 || !apart(); ++tries) {
        constexpr int tries_a_line = 200;
        if (tries % tries_a_line == 0) stations_ = static_cast<int>(between(250, 900));
        length_ = (stations_ - 1) * line_.spacing;
        line_.truth.clear();
        for (int i = 0; i < sheets; ++i) {
            const double depth =
                std::exp(between(std::log(std::max(60.0, 4 * line_.spacing)), std::log(40 * line_.spacing)));
            BuriedSheet place{between(0.08, 0.92) * length_, std::max(depth, clearance_ + 2), 0};
            const bool narrow = normal_.uniform() < 2.0 / 3;
            place.width = place.depth * (narrow ? between(0.08, 0.5) : between(0.75, 2.4));
            line_.truth.push_back(place);
        }
    }
}

void Drawing::lay_line() {
    Workspace& w = workspace();
    initialise_workspace(w, prompts_);
    w.definition.data_file = "line.dat";
    w.definition.x_column = 1;
    w.definition.y_column = 2;
    w.definition.z_column = 3;
    w.definition.dtm_column = 4;
    w.definition.mag_column = 5;
    w.field = fields[static_cast<std::size_t>(normal_.uniform() * static_cast<double>(std::size(fields)))];
    w.formulas = Formulas::exact;
    w.mag.base = 0;
    w.mag.regional_degree = 2;
    w.station_count = stations_;
    w.stations.assign(stations_);
    w.mag.data.assign(stations_);
    w.grav.data.assign(stations_);
    const double bearing = between(-0.05, 0.05), level = between(0, 500), relief = between(5, 40);
    const double wave = between(0.2, 0.6) * length_, phase = between(0, 6);
    for (int i = 1; i <= stations_; ++i) {
        const double distance = (i - 1) * line_.spacing;
        w.stations(i, column_east) = 300000 + distance * std::cos(bearing);
        w.stations(i, column_north) = 7000000 + distance * std::sin(bearing);
        w.stations(i, column_ground) =
            level + relief * std::sin(2 * std::numbers::pi * distance / wave + phase);
        w.stations(i, column_sensor) = w.stations(i, column_ground) + clearance_;
    }
    intake::setup_profile_coordinates(w, prompts_);
    intake::setup_graphics_arrays(w, prompts_);
    w.elevations_ready = true;
    w.first_station = 1;
    w.last_station = stations_;
    w.first_distance = 0;
    w.last_distance = w.distances[stations_];
    model::finish_load(*line_.session);
}

ModelBody Drawing::sheet(const BuriedSheet& place) {
    ModelBody body;
    body.type = thick_sheet;
    body.distance.value = static_cast<float>(place.distance);
    body.top.value =
        static_cast<float>(inversion::elevation_at(workspace(), place.distance, column_sensor) - place.depth);
    body.width.value = static_cast<float>(place.width);
    body.dip.value = static_cast<float>(between(35, 145));
    body.strike.value = static_cast<float>(between(-25, 25));
    constexpr double limited_part = 0.3, limited_depths = 6;
    if (normal_.uniform() < limited_part)
        body.depth_extent.value = static_cast<float>(limited_depths * place.depth);
    body.susc.value = 10000;
    body.response.assign(stations_);
    return body;
}

/// Each sheet has the susceptibility that gives an anomaly of 7 to 220 nT, if rocks have it.
void Drawing::add_anomalies() {
    Workspace& w = workspace();
    readings_ = Eigen::VectorXd::Zero(stations_);
    reserve_next_body(w);
    for (const BuriedSheet& place : line_.truth) {
        w.body_count = 1;
        w.body(1) = sheet(place);
        reset_calculated_data(w, prompts_);
        Faults faults;
        forward::calculate_model(w, w.mag.data, w.grav.data, faults);
        const auto row = w.mag.data.row(row_raw, stage_calculated);
        const Eigen::VectorXd anomaly =
            Eigen::Map<const Eigen::VectorXf>(row.data(), stations_).cast<double>();
        const double wanted = std::max(std::exp(between(std::log(7.0), std::log(220.0))), 3 * noise_);
        constexpr double most_factor = 25;
        readings_ += std::min(wanted / (anomaly.maxCoeff() - anomaly.minCoeff()), most_factor) * anomaly;
    }
}

void Drawing::add_noise() {
    const Eigen::VectorXd distance = inversion::equal_spacing(stations_, line_.spacing);
    readings_ += inversion::white_noise(stations_, noise_, seed_ + second_stream);
    const double size = one_of(geologies), length = one_of(geology_lengths);
    const auto kind =
        normal_.uniform() < 0.5 ? inversion::NoiseKind::exponential : inversion::NoiseKind::gaussian;
    if (line_.geology)
        readings_ += inversion::correlated_noise(distance, kind, size, length, seed_ + 2 * second_stream);
    const Eigen::ArrayXd t = 2 * distance.array() / length_ - 1;
    const double level = between(-400, 400), slope = 40 * normal_(), bend = 15 * normal_();
    readings_.array() += level + slope * t + bend * t.square();
    for (int i = 1; i <= stations_; ++i)
        workspace().mag.data(i, row_raw, stage_observed) =
            static_cast<float>(std::round(100 * readings_[i - 1]) / 100);
}

}  // namespace

FindLine find_line(unsigned seed, Prompts& prompts) {
    return Drawing(seed, prompts).line();
}

}  // namespace anomalis
