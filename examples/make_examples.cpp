// Makes the three example surveys: data calculated from a known model, with noise and a regional, and a
// workspace whose starting model is deliberately off. The same seed gives the same files.
//
//   make_examples FOLDER

#include <cmath>
#include <functional>
#include <iostream>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include "core/body_defaults.h"
#include "core/body_parameters.h"
#include "core/numbers.h"
#include "core/prompts.h"
#include "core/safe_file.h"
#include "core/settings.h"
#include "core/workspace.h"
#include "forward/driver.h"
#include "intake/load.h"
#include "workspace_file/axm.h"

namespace {

using namespace anomalis;

/// Messages go to the terminal; nothing is ever asked.
class Terminal : public Prompts {
  protected:
    void show_message(const std::string& text) override { std::cerr << text << '\n'; }
    bool show_question(const std::string&) override { return false; }
    std::optional<std::string> show_input_box(const std::string&, const std::string&,
                                              const std::string&) override {
        return {};
    }
    std::optional<std::string> show_open_dialog(const FileRequest&) override { return {}; }
    std::optional<std::string> show_save_dialog(const FileRequest&) override { return {}; }
};

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
    double mag_noise = 0, grav_noise = 0;  ///< nT, mGal
    std::function<double(double distance)> mag_regional = [](double) { return 0.0; };
    std::function<double(double distance)> grav_regional = [](double) { return 0.0; };
    std::function<void(Workspace&)> describe;  ///< field, columns, base levels
    std::vector<ExampleBody> bodies;
};

struct Values {
    std::vector<double> mag, grav;
};

std::string fixed(double value, int digits) {
    return format_number(value, "0." + std::string(static_cast<std::size_t>(digits), '0'));
}

std::string data_text(const Survey& survey, const Workspace& workspace, const Values& values) {
    std::string text;
    for (const std::string& comment : survey.comments) text += "! " + comment + "\r\n";
    text += "line east north sensor ground";
    if (workspace.has_mag()) text += " tmi";
    if (workspace.has_grav()) text += " gravity";
    text += "\r\n";
    for (std::size_t i = 0; i < survey.readings.size(); ++i) {
        const Reading& r = survey.readings[i];
        text += "100 " + fixed(r.east, survey.coordinate_digits) + " " +
                fixed(r.north, survey.coordinate_digits) + " " + fixed(r.sensor, 2) + " " +
                fixed(r.ground, 2);
        if (workspace.has_mag()) text += " " + fixed(values.mag[i], 2);
        if (workspace.has_grav()) text += " " + fixed(values.grav[i], 4);
        text += "\r\n";
    }
    return text;
}

Workspace described(const Survey& survey, Prompts& prompts) {
    Workspace workspace;
    initialise_workspace(workspace, prompts);
    workspace.definition.data_file = survey.name + ".dat";
    workspace.definition.first_data_line = static_cast<std::int32_t>(survey.comments.size()) + 2;
    workspace.definition.z_column = 4;
    workspace.definition.dtm_column = 5;
    workspace.mag.base = workspace.grav.base = unset;
    workspace.display.show_axes = workspace.display.show_body_label = 1;
    workspace.display.splitter_fraction = {0.5F, 0.6F, 0.6F, 0};
    workspace.display.tie_factor = 2;
    survey.describe(workspace);
    return workspace;
}

void add_bodies(Workspace& workspace, const Survey& survey, Prompts& prompts, bool start) {
    const Settings no_settings;
    for (const ExampleBody& example : survey.bodies) {
        reserve_next_body(workspace);
        const int number = ++workspace.body_count;
        ModelBody& body = workspace.body(number);
        body.type = thin_sheet;
        initialise_body(workspace, number, no_settings, prompts);
        example.truth(body);
        if (start) example.start_offset(body);
    }
}

/// The response of the true model at the stations of the survey, with regional and noise.
Values observe(const Survey& survey, const std::string& data_path, Prompts& prompts) {
    Workspace truth = described(survey, prompts);
    truth.definition.data_file = data_path;
    add_bodies(truth, survey, prompts, false);
    if (intake::load_locations(truth, prompts) != 0)
        throw Fault("the stations of " + survey.name + " do not load");
    if (static_cast<std::size_t>(truth.station_count) != survey.readings.size())
        throw Fault("the stations of " + survey.name + " merge");
    Faults faults;
    forward::calculate_model(truth, truth.mag.data, truth.grav.data, faults);
    show_faults(faults, prompts);

    Noise noise(1967);
    Values values;
    for (int i = 1; i <= truth.station_count; ++i) {
        const double d = truth.distances[i];
        if (truth.has_mag())
            values.mag.push_back(truth.mag.data(i, row_raw, stage_calculated) + survey.mag_regional(d) +
                                 noise(survey.mag_noise));
        if (truth.has_grav())
            values.grav.push_back(truth.grav.data(i, row_raw, stage_calculated) + survey.grav_regional(d) +
                                  noise(survey.grav_noise));
    }
    return values;
}

void make_survey(const Survey& survey, const std::string& folder, Prompts& prompts) {
    const std::string data_path = folder + "/" + survey.name + ".dat";
    Workspace start = described(survey, prompts);
    // The stations must stand in a file before anything can be calculated at them.
    const std::vector<double> level(survey.readings.size(), 0.0);
    write_file_safely(data_path, data_text(survey, start, {level, level}));
    write_file_safely(data_path, data_text(survey, start, observe(survey, data_path, prompts)));
    add_bodies(start, survey, prompts, true);
    workspace_file::write_model_parameters(0, folder + "/" + survey.name + ".axm", start, prompts);
}

void free_only(ModelBody& body, std::initializer_list<BodyParam ModelBody::*> slots) {
    for (const BodyParameter& row : body_parameters()) (body.*row.slot).vary = 0;
    for (const auto slot : slots) (body.*slot).vary = 1;
}

struct Sheet {
    std::string name;
    BodyType type = thin_sheet;
    float distance = 0, top = 0, dip = 90, width = 0, depth_extent = 0;  ///< m, degrees
    float susc = 0, density = 2.67F;                                     ///< micro SI, g/cc
    int colour = 0;
};

/// A sheet of unlimited strike, square across an east-west line.
BodyEdit sheet(const Sheet& sheet) {
    return [sheet](ModelBody& body) {
        body.type = sheet.type;
        body.name = sheet.name;
        body.distance.value = sheet.distance;
        body.top.value = sheet.top;
        body.dip.value = sheet.dip;
        body.width.value = sheet.width;
        body.depth_extent.value = sheet.depth_extent;
        body.length.value = 0;
        body.susc.value = sheet.susc;
        body.density.value = sheet.density;
        body.colour = sheet.colour;
    };
}

/// The starting model of a sheet: moved, raised, turned, of the wrong strength.
BodyEdit off_by(float distance, float top, float dip, float strength) {
    return [=](ModelBody& body) {
        body.distance.value += distance;
        body.top.value += top;
        body.dip.value += dip;
        body.susc.value *= strength;
        free_only(body, {&ModelBody::distance, &ModelBody::top, &ModelBody::dip, &ModelBody::susc});
        body.susc.max = 4 * body.susc.value;
    };
}

/// The same for a block that both channels see.
BodyEdit block_off_by(float distance, float top, float dip, float strength, float density) {
    return [=](ModelBody& body) {
        off_by(distance, top, dip, strength)(body);
        body.density.value += density;
        body.density.vary = 1;
    };
}

Survey dyke_swarm() {
    Survey survey;
    survey.name = "dyke_swarm";
    survey.comments = {"Airborne magnetic line over a swarm of dolerite dykes, 12.5 m between readings",
                       "Noise 1 nT, a regional of 4 nT a kilometre"};
    Noise wander(7);
    for (int i = 0; i <= 400; ++i) {
        const double d = 12.5 * i;
        const double ground = 312 + 14 * std::sin(d / 900) + 5 * std::sin(d / 310 + 1);
        survey.readings.push_back({412300 + d, 7641800 + wander(1.5), ground + 60 + wander(0.8), ground});
    }
    survey.mag_noise = 1;
    survey.mag_regional = [](double d) { return 51940 + 0.004 * d; };
    survey.describe = [](Workspace& w) {
        w.definition.mag_column = 6;
        w.field.intensity = 51940;
        w.field.inclination = -53.1F;
        w.field.declination = 6.7F;
        w.mag.float_base = 1;
    };
    survey.bodies = {{sheet({"West dyke", thin_sheet, 820, 285, 72, 18, 0, 42000, 2.95F, 0xB4761F}),
                      off_by(30, 12, 12, 0.75F)},
                     {sheet({"Twin dyke", thin_sheet, 1730, 270, 98, 12, 0, 60000, 2.95F, 0x0E7FFF}),
                      off_by(-25, -18, -14, 1.3F)},
                     {sheet({"Main dyke", thick_sheet, 2510, 255, 64, 110, 600, 33000, 2.95F, 0x2CA02C}),
                      off_by(35, 20, 15, 1.25F)},
                     {sheet({"East dyke", thin_sheet, 3620, 290, 120, 25, 900, 38000, 2.95F, 0xBD6794}),
                      off_by(-40, -12, -16, 0.8F)},
                     {sheet({"Buried plug", thick_sheet, 4350, 120, 80, 240, 450, 21000, 2.95F, 0x4B568C}),
                      off_by(30, 22, 10, 0.8F)}};
    return survey;
}

Survey fault_block() {
    Survey survey;
    survey.name = "fault_block";
    survey.comments = {
        "Draped magnetic and gravity line over a downfaulted basement block, 25 m between readings",
        "Ground from the digital terrain model; densities are contrasts to the cover"};
    Noise wander(11);
    for (int i = 0; i <= 320; ++i) {
        const double d = 25.0 * i;
        const double hill = 45 * std::exp(-std::pow((d - 2600) / 1300, 2));
        const double ground = 640 + hill - 0.006 * d + 6 * std::sin(d / 480);
        survey.readings.push_back({598150 + d, 6255400 + wander(2), ground + 80 + wander(1.5), ground});
    }
    survey.mag_noise = 0.8;
    survey.grav_noise = 0.02;
    survey.mag_regional = [](double) { return 58120.0; };
    survey.grav_regional = [](double) { return -31.4; };
    survey.describe = [](Workspace& w) {
        w.definition.mag_column = 6;
        w.definition.grav_column = 7;
        w.field.intensity = 58120;
        w.field.inclination = -64.5F;
        w.field.declination = 11.2F;
        w.mag.float_base = w.grav.float_base = 1;
    };
    survey.bodies = {
        {sheet({"West basement", thick_sheet, 507, 380, 62, 2310, 1500, 9000, 0.28F, 0xB4761F}),
         block_off_by(91, 60, 12, 0.8F, -0.07F)},
        {sheet({"East basement", thick_sheet, 5210, 240, 112, 2380, 1500, 12000, 0.28F, 0x2CA02C}),
         block_off_by(-107, -50, -15, 1.25F, 0.08F)},
        {sheet({"Fault dyke", thick_sheet, 3153, 470, 62, 95, 800, 45000, 0.35F, 0x0E7FFF}),
         block_off_by(46, -30, 14, 0.75F, 0.06F)}};
    return survey;
}

Survey buried_cable() {
    Survey survey;
    survey.name = "buried_cable";
    survey.comments = {"Walked line across a two-core cable under direct current, 0.25 m between readings",
                       "Sensor 1.2 m over the ground"};
    Noise wander(3);
    for (int i = 0; i <= 240; ++i) {
        const double d = 0.25 * i;
        const double ground = 18 + 0.25 * std::sin(d / 14);
        survey.readings.push_back({733104 + d, 5812660 + wander(0.02), ground + 1.2 + wander(0.02), ground});
    }
    survey.coordinate_digits = 2;
    survey.mag_noise = 0.3;
    survey.mag_regional = [](double) { return 49310.0; };
    survey.describe = [](Workspace& w) {
        w.definition.mag_column = 6;
        w.field.intensity = 49310;
        w.field.inclination = 66.8F;
        w.field.declination = 3.1F;
        w.mag.float_base = 1;
        w.sensor_offset = 1.2F;
    };
    survey.bodies = {
        {[](ModelBody& body) {
             body.type = wire;
             body.name = "Cable";
             body.distance.value = 31.4F;
             body.top.value = 16.9F;
             body.strike.value = 12;
             body.dip.value = 35;
             body.width.value = 0.6F;
             body.offset.value = 0.35F;
             body.susc.value = 6500;
             body.colour = 0x0E7FFF;
         },
         [](ModelBody& body) {
             body.distance.value = 29.8F;
             body.top.value = 17.3F;
             body.dip.value = 55;
             body.susc.value = 5200;
             free_only(body, {&ModelBody::distance, &ModelBody::top, &ModelBody::dip, &ModelBody::susc});
             body.susc.max = 20000;
         }}};
    return survey;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: make_examples FOLDER\n";
        return 2;
    }
    try {
        Terminal prompts;
        for (const Survey& survey : {dyke_swarm(), fault_block(), buried_cable()})
            make_survey(survey, argv[1], prompts);
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << '\n';
        return 1;
    }
    return 0;
}
