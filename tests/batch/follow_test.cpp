#include <cmath>
#include <filesystem>
#include <gtest/gtest.h>

#include "batch/find_lines.h"

namespace anomalis::batch {
namespace {

using nlohmann::json;
namespace fs = std::filesystem;

constexpr double lines_apart = 200, strike = 10, first_place = 463.7;
constexpr int stations = 61;
constexpr double spacing = 16;

/// `endless_sheet_text` at a place and of a strike, degrees.
std::string sheet_text(const std::string& data_file, double place, double sheet_strike) {
    std::string text = endless_sheet_text(data_file);
    text.replace(text.find(" 463.7  0  0 -50 "), 17, " " + format_number(place, "0.00") + "  0  0 -50 ");
    const std::string angles = " 0  80  100  0 ";
    text.replace(text.find(angles), angles.size(),
                 " " + format_number(sheet_strike, "0.0") + "  80  100  0 ");
    return text;
}

double place_on(int line) {
    return first_place + lines_apart * line * std::tan(strike * 0.017453292);
}

/// Lines 200 m apart over a sheet that strikes 10 degrees, from south to north: first.axm holds it as it was
/// fitted with a strike of 0, the others are bare.
struct NeighbourLines {
    TempFolder folder;
    std::string first, second, third, out;

    NeighbourLines() {
        for (int line = 0; line < 3; ++line) write_line(line);
        first = folder.write("first.axm", sheet_text("line0.dat", first_place, 0));
        second = folder.write("second.axm", bare_model_text("line1.dat"));
        third = folder.write("third.axm", bare_model_text("line2.dat"));
        out = folder.path("out");
        fs::create_directory(out);
    }
    void fit_first() const {
        batch({"invert", first, "--formulas", "exact", "--regional", "1", "--starts", "0", "--in-place"});
    }

  private:
    void write_line(int line) const {
        const std::string name = "line" + std::to_string(line) + ".dat";
        const double north = 6500000 + lines_apart * line;
        folder.write(name, line_text(stations, spacing, nothing, nothing, north));
        const std::string model = folder.write("made.axm", sheet_text(name, place_on(line), strike));
        const std::vector<double> curve =
            batch({"dump", model, "--formulas", "exact"}).json()["mag_data"]["calculated"]["raw"];
        const Curve mag = [&](int i) {
            return curve[static_cast<std::size_t>(i)] + 0.5 * chance(i + 1000 * line) + 0.1 * i;
        };
        folder.write(name, line_text(stations, spacing, mag, nothing, north));
        fs::remove(model);
    }
};

struct Followed {
    BatchRun run;
    json report;
};

Followed follow(const NeighbourLines& lines, const std::vector<std::string>& next,
                const std::vector<std::string>& more = {}) {
    const std::string report = lines.folder.path("report.json");
    std::vector<std::string> arguments{"follow", lines.first};
    arguments.insert(arguments.end(), next.begin(), next.end());
    arguments.insert(arguments.end(), {"--report", report, "--starts", "0"});
    arguments.insert(arguments.end(), more.begin(), more.end());
    Followed followed{batch(arguments), {}};
    if (fs::exists(report)) followed.report = json::parse(lines.folder.read("report.json"));
    return followed;
}

TEST(Follow, a_model_is_refitted_on_the_next_line_and_the_report_says_what_changed) {
    NeighbourLines lines;
    lines.fit_first();
    const std::string output = lines.folder.path("fitted.axm");
    const Followed followed = follow(lines, {lines.second}, {"-o", output});
    ASSERT_EQ(followed.run.status, 0) << followed.run.err;
    const json& line = followed.report["lines"][0];
    EXPECT_EQ(line["model"], lines.second);
    EXPECT_EQ(line["output"], output);
    EXPECT_LT(line["rms"], 1.0);
    const json& body = line["bodies"][0];
    EXPECT_EQ(body["first_body"], 1);
    EXPECT_NEAR(body["carried_along_strike_m"].get<double>(), lines_apart, 0.1);
    EXPECT_NEAR(body["distance"].get<double>(), place_on(1), 10);
    const json& change = body["changes"][0];
    EXPECT_EQ(change["name"], "distance");
    EXPECT_NEAR(change["before"].get<double>(), first_place, 10);
    EXPECT_NEAR(change["carried"].get<double>(), change["before"].get<double>(), 0.1) << "by a strike of 0";
    EXPECT_EQ(change["fitted"], body["distance"]);
    EXPECT_EQ(change["interval"].size(), 2U);
    EXPECT_TRUE(body["intervals"].contains("depth_below_ground"));
    const json dump = batch({"dump", output}).json();
    EXPECT_EQ(dump["workspace"]["formulas"], "exact") << "those of the first line";
    EXPECT_NEAR(dump["bodies"][0]["params"]["distance"]["value"].get<double>(), place_on(1), 10);
    EXPECT_NE(batch({"info", output}).out.find("Last fit"), std::string::npos);
    EXPECT_EQ(lines.folder.read("second.axm"), bare_model_text("line1.dat"));
}

TEST(Follow, several_lines_give_the_strike_with_its_error_and_every_output_has_it) {
    NeighbourLines lines;
    lines.fit_first();
    const Followed followed = follow(lines, {lines.second, lines.third}, {"-o", lines.out});
    ASSERT_EQ(followed.run.status, 0) << followed.run.err;
    ASSERT_EQ(followed.report["strikes"].size(), 1U);
    const json& found = followed.report["strikes"][0];
    EXPECT_EQ(found["body"], 1);
    EXPECT_EQ(found["before_deg"], 0.0);
    EXPECT_EQ(found["lines"], 3);
    EXPECT_EQ(found["taken"], true);
    EXPECT_GT(found["error_deg"], 0.0);
    EXPECT_LT(found["error_deg"], 2.0);
    EXPECT_NEAR(found["strike_deg"].get<double>(), strike, 3 * found["error_deg"].get<double>());
    EXPECT_LT(found["interval_deg"][0], found["strike_deg"]);
    for (const char* name : {"second.axm", "third.axm"}) {
        const json dump = batch({"dump", lines.out + "/" + name}).json();
        EXPECT_NEAR(dump["bodies"][0]["params"]["strike"]["value"].get<double>(),
                    found["strike_deg"].get<double>(), 1e-3);
        EXPECT_NE(dump["last_fit"]["remarks"].dump().find("The strike of body 1 is"), std::string::npos)
            << name;
        EXPECT_NE(batch({"info", lines.out + "/" + name}).out.find("Last fit"), std::string::npos);
    }
    EXPECT_NE(followed.run.out.find("Strike of body 1: "), std::string::npos) << followed.run.out;
}

TEST(Follow, a_first_line_that_was_not_fitted_is_told_and_followed) {
    NeighbourLines lines;
    const Followed followed = follow(lines, {lines.second}, {"--formulas", "exact", "--regional", "1"});
    EXPECT_EQ(followed.run.status, 0) << followed.run.err;
    EXPECT_NE(followed.run.err.find("Note: No fit says how well"), std::string::npos) << followed.run.err;
    EXPECT_EQ(followed.report["lines"][0]["output"], nullptr);
}

TEST(Follow, bodies_of_the_next_line_give_way_and_that_is_told) {
    NeighbourLines lines;
    lines.folder.write("second.axm", sheet_text("line1.dat", 100, 0));
    const Followed followed = follow(lines, {lines.second});
    EXPECT_EQ(followed.run.status, 0) << followed.run.err;
    EXPECT_NE(followed.run.err.find("give way to those that are carried"), std::string::npos);
    EXPECT_EQ(followed.report["lines"][0]["bodies"].size(), 1U);
}

TEST(Follow, a_line_that_the_strike_does_not_cross_is_told_and_not_written) {
    NeighbourLines lines;
    std::string data = lines.folder.read("line1.dat");
    for (std::size_t at = data.find("\n50"); at != std::string::npos; at = data.find("\n50", at + 1))
        data[at + 2] = '9';
    lines.folder.write("line1.dat", data);
    const std::string output = lines.folder.path("fitted.axm");
    const Followed followed = follow(lines, {lines.second}, {"-o", output});
    EXPECT_EQ(followed.run.status, 1);
    EXPECT_NE(followed.run.err.find("does not cross it"), std::string::npos) << followed.run.err;
    EXPECT_FALSE(fs::exists(output));
    EXPECT_TRUE(followed.report["lines"][0]["bodies"].empty());
    // The others are followed to all the same, and written on demand.
    const Followed both = follow(lines, {lines.second, lines.third}, {"-o", lines.out, "--keep-going"});
    EXPECT_EQ(both.report["lines"][1]["bodies"].size(), 1U);
    EXPECT_FALSE(fs::exists(lines.out + "/second.axm"));
    EXPECT_TRUE(fs::exists(lines.out + "/third.axm"));
}

TEST(Follow, another_field_is_told) {
    NeighbourLines lines;
    lines.folder.write("second.axm", bare_model_text("line1.dat", {.field = " 30000 -20 -4 "}));
    const Followed followed = follow(lines, {lines.second});
    EXPECT_EQ(followed.run.status, 1);
    EXPECT_NE(followed.run.err.find("is not that of"), std::string::npos) << followed.run.err;
    EXPECT_EQ(followed.report["lines"][0]["bodies"].size(), 1U) << "fitted all the same";
}

TEST(Follow, what_cannot_be_followed_is_told) {
    NeighbourLines lines;
    EXPECT_EQ(follow(lines, {lines.folder.path("missing.axm")}).run.status, 1);
    lines.folder.write("line1.dat", "");
    const Followed empty = follow(lines, {lines.second});
    EXPECT_EQ(empty.run.status, 1);
    EXPECT_NE(empty.run.err.find("No stations were found"), std::string::npos) << empty.run.err;
    EXPECT_EQ(empty.report["lines"][0]["label"], lines.second + " gives no line to fit on");
    lines.folder.write("third.axm", bare_model_text("line2.dat", {.mag_column = 0}));
    const Followed other = follow(lines, {lines.third});
    EXPECT_EQ(other.run.status, 1);
    EXPECT_NE(other.run.err.find("needs a magnetic column"), std::string::npos) << other.run.err;
    lines.folder.write("first.axm", bare_model_text("line0.dat"));
    const Followed none = follow(lines, {lines.third});
    EXPECT_EQ(none.run.status, 1);
    EXPECT_NE(none.run.err.find("has no body that could be followed"), std::string::npos) << none.run.err;
    EXPECT_TRUE(none.report["lines"].empty());
}

TEST(Follow, a_model_with_nothing_free_is_told) {
    NeighbourLines lines;
    std::string text = sheet_text("line0.dat", first_place, 0);
    text.replace(text.find(" 2  0  1  255"), 13, " 2  0  0  255");
    lines.folder.write("first.axm", text);
    const Followed followed = follow(lines, {lines.second});
    EXPECT_EQ(followed.run.status, 1);
    EXPECT_NE(followed.run.err.find("There are no parameters free to invert on"), std::string::npos);
}

TEST(Follow, outputs_go_over_no_input_and_not_over_each_other) {
    NeighbourLines lines;
    const auto status = [&](const std::vector<std::string>& arguments) {
        std::vector<std::string> all{"follow"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return batch(all).status;
    };
    EXPECT_EQ(status({lines.first}), 2) << "no next line";
    EXPECT_EQ(status({lines.first, lines.second, "-o", lines.second}), 2);
    EXPECT_EQ(status({lines.first, lines.second, "-o", lines.first}), 2);
    EXPECT_EQ(status({lines.first, lines.second, "-o", lines.folder.path("line1.dat")}), 2);
    EXPECT_EQ(status({lines.first, lines.second, lines.third, "-o", lines.folder.path("new.axm")}), 2)
        << "several lines need a folder";
    EXPECT_EQ(status({lines.first, lines.second, lines.third, "-o", lines.folder.folder()}), 2)
        << "that of the lines themselves";
    EXPECT_EQ(status({lines.first, lines.second, lines.second, "-o", lines.out}), 2) << "one name twice";
    EXPECT_EQ(lines.folder.read("second.axm"), bare_model_text("line1.dat"));
}

}  // namespace
}  // namespace anomalis::batch
