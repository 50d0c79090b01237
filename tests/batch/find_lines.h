#pragma once

#include <algorithm>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "batch/batch_runs.h"

namespace anomalis::batch {

/// A number that looks like chance, -1 to 1, the same everywhere.
inline double chance(int number) {
    std::uint32_t bits = static_cast<std::uint32_t>(number) * 2654435761U + 12345U;
    bits ^= bits >> 16;
    bits *= 0x45d9f3bU;
    bits ^= bits >> 16;
    return bits / 2147483648.0 - 1;
}

/// Columns and field of a survey file: east, north, magnetics, gravity (0 for a column that is not named).
struct BareLine {
    int mag_column = 3, grav_column = 4;
    std::string field = " 56000 -65 -4 ";
};

/// A workspace with formulas, columns and field, and no body.
inline std::string bare_model_text(const std::string& data_file, const BareLine& line = {}) {
    std::string text;
    for (const std::string& row :
         {data_file,
          " 2  1  1  2  0  0  " + std::to_string(line.mag_column) + "  " + std::to_string(line.grav_column) +
              "  0  0  0  0 ",
          line.field, std::string(" 0  5  1  0  0  0  0  0  0  0 "),
          std::string("-99999  0  10 -99999  0  0 "), std::string(" 0  1  1 "), std::string(" 0  0 "),
          std::string(" 0  0 "), std::string(" 1  1 "), std::string(" 1  1 "), std::string(" 0  1 "),
          std::string(" 0  7  500  0  0 ")})
        text += row + "\r\n";
    return text;
}

using Curve = std::function<double(int)>;

/// Stations `spacing` m apart, eastward at a north of `north`; those that `kept` refuses are left out.
inline std::string line_text(int stations, double spacing, const Curve& mag, const Curve& grav,
                             double north = 6500000, const std::function<bool(int)>& kept = {}) {
    std::string text = "east north mag grav\n";
    for (int i = 0; i < stations; ++i)
        if (!kept || kept(i))
            text += format_number(500000.0 + spacing * i, "0.0") + " " + format_number(north, "0.0") + " " +
                    format_number(mag(i), "0.000") + " " + format_number(grav(i), "0.00000") + "\n";
    return text;
}

inline double nothing(int) {
    return 0;
}

/// A folder with a line and a workspace without bodies. With exact formulas throughout.
struct FindFolder {
    explicit FindFolder(const std::string& text, const BareLine& line = {}) {
        folder.write("line.dat", text);
        model = folder.write("line.axm", bare_model_text("line.dat", line));
    }
    TempFolder folder;
    std::string model;
};

/// `model_text` with a sheet that goes down without end.
inline std::string endless_sheet_text(const std::string& data_file) {
    std::string text = model_text(data_file);
    text.replace(text.find(" 0  80  100  250 "), 17, " 0  80  100  0 ");
    return text;
}

/// What the sheet of `endless_sheet_text` gives at stations 16 m apart, exact: 463.7 m along the line, top at
/// -50 m under a sensor at 10 m, 100 m wide, dip 80 (magnetics in nT, gravity in mGal, of 0.3 g/cc).
struct SheetCurves {
    static constexpr int stations = 61;
    static constexpr double spacing = 16, place = 463.7, depth = 60;
    std::vector<double> mag, grav;

    SheetCurves() {
        TempFolder folder;
        folder.write("survey.dat", line_text(stations, spacing, nothing, nothing));
        const std::string model = folder.write("model.axm", endless_sheet_text("survey.dat"));
        const nlohmann::json dump = batch({"dump", model, "--formulas", "exact"}).json();
        mag = dump["mag_data"]["calculated"]["raw"].get<std::vector<double>>();
        grav = dump["grav_data"]["calculated"]["raw"].get<std::vector<double>>();
    }
    /// With a little chance and a slope.
    Curve mag_curve() const {
        return [this](int i) { return mag[static_cast<std::size_t>(i)] + 0.5 * chance(i) + 0.1 * i; };
    }
    Curve grav_curve() const {
        return [this](int i) { return grav[static_cast<std::size_t>(i)] + 0.002 * chance(i + 7000); };
    }
};

/// Made once for all tests.
inline const SheetCurves& sheet_curves() {
    static const SheetCurves curves;
    return curves;
}

inline std::string sheet_line(double north = 6500000) {
    const SheetCurves& curves = sheet_curves();
    return line_text(SheetCurves::stations, SheetCurves::spacing, curves.mag_curve(), curves.grav_curve(),
                     north);
}

/// A run of `find` with exact formulas for one proposal, unless `more` asks for others, and its report.
struct Found {
    BatchRun run;
    nlohmann::json report;
    const nlohmann::json& best() const { return report["alternatives"].at(0); }
    const nlohmann::json& bodies() const { return best()["bodies"]; }
};

inline Found find(const FindFolder& files, std::vector<std::string> more = {}) {
    const std::string report = files.folder.path("report.json");
    std::vector<std::string> arguments{"find", files.model, "--formulas", "exact", "--report", report};
    if (std::ranges::find(more, "--alternatives") == more.end())
        arguments.insert(arguments.end(), {"--alternatives", "1"});
    arguments.insert(arguments.end(), more.begin(), more.end());
    Found found{batch(arguments), {}};
    if (std::filesystem::exists(report))
        found.report = nlohmann::json::parse(files.folder.read("report.json"));
    return found;
}

}  // namespace anomalis::batch
