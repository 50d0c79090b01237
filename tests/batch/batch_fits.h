#pragma once

#include <random>

#include "batch/batch_runs.h"

namespace anomalis::batch {

/// A run of `invert` with its report.
struct Inverted {
    BatchRun run;
    nlohmann::json report;
};

inline Inverted invert(const BatchFolder& files, std::vector<std::string> more = {}) {
    std::vector<std::string> arguments{"invert", files.model, "--report", files.folder.path("report.json")};
    arguments.insert(arguments.end(), more.begin(), more.end());
    Inverted result{batch(arguments), {}};
    result.report = nlohmann::json::parse(files.folder.read("report.json"));
    return result;
}

/// A survey whose readings are the curve of the sheet of `model_text`, with noise of 0.5 nT and a slope of 8
/// nT from end to end; the sheet of its workspace stands 20 m beside and 10 m below.
struct FitFolder : BatchFolder {
    static constexpr int stations = 81;

    FitFolder() {
        write_survey(std::vector<double>(stations, 0.0));
        std::vector<double> readings = batch({"dump", model}).json()["mag_data"]["calculated"]["raw"];
        std::mt19937 random(12345);
        for (int i = 0; i < stations; ++i)
            readings[static_cast<std::size_t>(i)] += 8.0 * i / (stations - 1) + 0.5 * nearly_normal(random);
        write_survey(readings);
        std::string text = model_text();
        text.replace(text.find(" 463.7  0  0 -50 "), 17, " 443.7  0  0 -60 ");
        folder.write("model.axm", text);
    }

  private:
    void write_survey(const std::vector<double>& readings) {
        std::string text = "east north mag grav\n";
        for (int i = 0; i < stations; ++i)
            text += format_number(500000.0 + 12.5 * i, "0.0") + " 6500000 " +
                    format_number(56000 + readings[static_cast<std::size_t>(i)], "0.00") + " 0\n";
        folder.write("survey.dat", text);
    }
    /// The sum of twelve even numbers between 0 and 1, less its mean.
    static double nearly_normal(std::mt19937& random) {
        double sum = -6;
        for (int k = 0; k < 12; ++k) sum += random() / 4294967296.0;
        return sum;
    }
};

}  // namespace anomalis::batch
