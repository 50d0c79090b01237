#pragma once

#include <cmath>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "batch/picture_writer.h"
#include "batch/run_batch.h"
#include "core/numbers.h"
#include "support/temp_folder.h"

namespace anomalis::batch {

/// What one command gave.
struct BatchRun {
    int status = -1;
    std::string out;
    std::string err;

    nlohmann::json json() const { return nlohmann::json::parse(out); }
};

inline BatchRun batch(const std::vector<std::string>& arguments, PictureWriter* pictures = nullptr) {
    std::vector<std::string> all{"anomalis-batch"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& argument : all) argv.push_back(argument.data());
    std::ostringstream out;
    std::ostringstream err;
    BatchRun run;
    run.status = run_batch(static_cast<int>(argv.size()), argv.data(), out, err, pictures);
    run.out = out.str();
    run.err = err.str();
    return run;
}

/// A line of 41 stations, 25 m apart, eastward, with a bell of 100 nT and 1 mGal in its middle.
inline std::string survey_text() {
    std::string text = "east north mag grav\n";
    for (int i = 0; i < 41; ++i) {
        const double bell = std::exp(-std::pow((i - 20) / 5.0, 2));
        text += format_number(500000.0 + 25 * i, "0.0") + " 6500000 " +
                format_number(56000 + 100 * bell, "0.00") + " " + format_number(bell, "0.0000") + "\n";
    }
    return text;
}

/// A workspace with one thick sheet whose distance, top and susceptibility are free.
inline std::string model_text(const std::string& data_file = "survey.dat",
                              const std::string& name = "Sheet") {
    std::string text;
    for (const std::string& line :
         {data_file,
          std::string(" 2  1  1  2  0  0  3  4  0  0  0  0 "),
          std::string(" 56000 -65 -4 "),
          std::string(" 0  5  1  0  0  0  0  0  0  0 "),
          std::string("-99999  0  10 -99999  0  0 "),
          std::string(" 0  1  1 "),
          std::string(" 0  0 "),
          std::string(" 0  0 "),
          std::string(" 1  1 "),
          std::string(" 1  1 "),
          std::string(" 0  1 "),
          std::string(" 1  7  500  0  0 "),
          " 2  0  1  255  0  " + name,
          std::string("made for a test"),
          std::string("dolerite"),
          std::string(" 463.7  0  0 -50  1 -99999 -99999  1 -99999 -99999  100  100  0  0  12  1  0 "),
          std::string(
              " 0  80  100  250  0 -99999 -99999  0 -99999 -99999  0 -99999 -99999  0 -99999 -99999 "),
          std::string(" 0  0 -99999 -99999 "),
          std::string(" 0  0 -99999 -99999 "),
          std::string(" 0  0 -99999 -99999  0  0 -99999 -99999 "),
          std::string(
              " 5000  0  0  0  1 -99999 -99999  0 -99999 -99999  0 -99999 -99999  0 -99999 -99999  0.3  1 "
              "-99999 -99999 "),
          std::string("[AXM Display Settings]"),
          std::string(" 0  1  0 No 2 "),
          std::string(" 0.25  0.5  0.625  0.75 "),
          std::string(" 9900  11500 ")})
        text += line + "\r\n";
    return text;
}

/// A folder with the survey and its model.
struct BatchFolder {
    BatchFolder() {
        folder.write("survey.dat", survey_text());
        model = folder.write("model.axm", model_text());
    }
    TempFolder folder;
    std::string model;
};

}  // namespace anomalis::batch
