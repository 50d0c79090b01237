// Makes the example surveys: data calculated from a known model, with noise and a regional, and a
// workspace whose starting model is deliberately off; and a survey file of several lines for a plan. The same
// seed gives the same files.
//
//   make_examples FOLDER

#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "core/body_defaults.h"
#include "core/numbers.h"
#include "core/safe_file.h"
#include "core/settings.h"
#include "core/unattended_prompts.h"
#include "core/workspace.h"
#include "forward/driver.h"
#include "intake/load.h"
#include "surveys.h"
#include "workspace_file/axm.h"

namespace {

using namespace anomalis;
using namespace anomalis::examples;

/// Messages go to the terminal; nothing is ever asked.
class Terminal : public UnattendedPrompts {
  protected:
    void show_message(const std::string& text) override { std::cerr << text << '\n'; }
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
    workspace.formulas = Formulas::exact;
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

    Noise noise(survey.seed);
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

std::string lines_text(const Survey& line, const Values& values) {
    std::string text;
    for (std::size_t i = 0; i < line.readings.size(); ++i) {
        const Reading& r = line.readings[i];
        text += line.name + "," + fixed(r.east, 1) + "," + fixed(r.north, 1) + "," + fixed(r.sensor, 2) +
                "," + fixed(r.ground, 2) + "," + fixed(values.mag[i], 2) + "\n";
    }
    return text;
}

/// One file with all lines of a survey.
void make_lines(const std::vector<Survey>& lines, const std::string& path, Prompts& prompts) {
    std::string text = "line,easting,northing,sensor,ground,tmi\n";
    for (const Survey& line : lines) {
        const std::string stations = path + "." + line.name;
        const std::vector<double> level(line.readings.size(), 0.0);
        write_file_safely(stations, data_text(line, described(line, prompts), {level, level}));
        text += lines_text(line, observe(line, stations, prompts));
        std::filesystem::remove(stations);
    }
    write_file_safely(path, text);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: make_examples FOLDER\n";
        return 2;
    }
    try {
        Terminal prompts;
        for (const auto& offered : {surveys(), riddles()})
            for (const Survey& survey : offered) make_survey(survey, argv[1], prompts);
        make_lines(dyke_lines(), std::string(argv[1]) + "/" + dyke_lines_file, prompts);
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << '\n';
        return 1;
    }
    return 0;
}
