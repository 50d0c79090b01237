#include <algorithm>
#include <gtest/gtest.h>
#include <iostream>

#include "batch/batch_runs.h"
#include "batch/batch_session.h"
#include "batch/dump_json.h"
#include "core/threads.h"
#include "report/json_text.h"

namespace anomalis::batch {
namespace {

using nlohmann::json;

TEST(Dump, what_is_missing_is_null) {
    const BatchFolder files;
    std::string text = survey_text();
    for (int i = 10; i < 15; ++i) {
        const std::size_t row = text.find("\n" + format_number(500000.0 + 25 * i, "0.0") + " ");
        const std::size_t mag = text.find(" 56", row);
        text.replace(mag, text.find(' ', mag + 1) - mag, " -1e32");
    }
    files.folder.write("survey.dat", text);
    const BatchRun run = batch({"dump", files.model});
    ASSERT_EQ(run.status, 0) << run.err;
    const json dump = run.json();
    const json& mag = dump["mag_data"];
    for (const char* row : {"raw", "smoothed", "residual", "gradient"}) {
        EXPECT_TRUE(mag["observed"][row][12].is_null()) << row;
        EXPECT_TRUE(mag["observed"][row][15].is_number()) << row;
    }
    EXPECT_TRUE(mag["calculated"]["residual"][12].is_null());
    EXPECT_TRUE(mag["calculated"]["raw"][12].is_number());
    EXPECT_TRUE(dump["grav_data"]["observed"]["raw"][12].is_number());
    EXPECT_LT(dump["misfit"]["mag"][0], 1e4);
}

TEST(Dump, the_object_holds_the_whole_session) {
    const BatchFolder files;
    const BatchRun run = batch({"dump", files.model});
    ASSERT_EQ(run.status, 0) << run.err;
    const json dump = run.json();
    EXPECT_EQ(dump["workspace"]["station_count"], 41);
    EXPECT_EQ(dump["workspace"]["field_intensity"], 56000.0);
    EXPECT_EQ(dump["workspace"]["definition"]["grav_column"], 4);
    EXPECT_EQ(dump["workspace"]["transform"]["x_scale"], 1.0);
    EXPECT_EQ(dump["workspace"]["display"]["form_width"], 9900);
    EXPECT_EQ(dump["stations"].size(), 41U);
    EXPECT_EQ(dump["stations"][40], json::parse("[0.0, 501000.0, 6500000.0, 10.0, 0.0]"));
    EXPECT_EQ(dump["distances"][40], 1000.0);
    for (const char* channel : {"mag_data", "grav_data"}) {
        for (const char* stage : {"observed", "calculated"}) {
            for (const char* row :
                 {"raw", "smoothed", "residual", "gradient", "horizontal", "total_gradient"})
                EXPECT_EQ(dump[channel][stage][row].size(), 41U) << channel << stage << row;
        }
    }
    const json& body = dump["bodies"].at(0);
    EXPECT_EQ(body["name"], "Sheet");
    EXPECT_EQ(body["params"].size(), 15U);
    EXPECT_EQ(body["params"]["susc"],
              json::parse(R"({"value": 5000, "vary": 1, "min": -99999, "max": -99999})"));
    EXPECT_EQ(body["response"].size(), 41U);
    EXPECT_EQ(body["response"][0].size(), 5U);
    EXPECT_GT(dump["misfit"]["mag"][0], 0.0);
    EXPECT_GT(dump["misfit"]["grav"][1], 0.0);
    for (const char* kind : {"messages", "failures", "remarks"}) EXPECT_EQ(dump[kind], json::array()) << kind;
}

TEST(Dump, every_number_of_a_record_has_its_unit_beside_it) {
    const BatchFolder files;
    const json all = batch({"dump", files.model}).json();
    const json& units = all["units_of"];
    EXPECT_EQ(units["workspace"]["field_intensity"], "nT");
    EXPECT_EQ(units["workspace"]["azimuth"], "radians");
    EXPECT_EQ(units["mag_data"]["gradient"], "nT per station");
    EXPECT_EQ(units["grav_data"]["raw"], "mGal");
    EXPECT_EQ(units["stations"].size(), all["stations"][0].size());
    EXPECT_EQ(units["bodies"]["response"].size(), all["bodies"][0]["response"][0].size());
    for (const auto& [name, param] : all["bodies"][0]["params"].items())
        EXPECT_TRUE(units["bodies"]["params"].contains(name)) << name;
    for (const auto& [name, unit] : units["workspace"].items())
        EXPECT_TRUE(all["workspace"].contains(name) || all["workspace"]["definition"].contains(name) ||
                    all["workspace"]["display"].contains(name))
            << name << " is told a unit and does not stand there";
}

TEST(Dump, a_regional_is_told_with_its_axis_and_its_values) {
    const BatchFolder files;
    const json plain = batch({"dump", files.model}).json();
    EXPECT_EQ(plain["workspace"]["mag_regional_degree"], -1);
    EXPECT_EQ(plain["workspace"]["mag_noise"], -99999);
    EXPECT_TRUE(plain["mag_regional"].is_null());
    EXPECT_TRUE(plain["last_fit"].is_null());
    files.folder.write("slope.axm", model_text() + "[AXM Extensions]\r\nmag_regional 1\r\nmag_noise 2.5\r\n");
    const json dump = batch({"dump", files.folder.path("slope.axm")}).json();
    EXPECT_EQ(dump["workspace"]["mag_regional_degree"], 1);
    EXPECT_EQ(dump["workspace"]["grav_regional_degree"], -1);
    EXPECT_EQ(dump["workspace"]["mag_noise"], 2.5);
    const json& regional = dump["mag_regional"];
    EXPECT_EQ(regional["degree"], 1);
    EXPECT_EQ(regional["centre"], 500.0);
    EXPECT_EQ(regional["half_width"], 500.0);
    ASSERT_EQ(regional["coefficients"].size(), 2U);
    ASSERT_EQ(regional["values"].size(), 41U);
    const double level = regional["coefficients"][0], slope = regional["coefficients"][1];
    EXPECT_NE(slope, 0);
    EXPECT_NEAR(regional["values"][0].get<double>(), level - slope, 1e-9);
    EXPECT_NEAR(regional["values"][40].get<double>(), level + slope, 1e-9);
    const double taken_off = plain["mag_data"]["observed"]["residual"][7].get<double>() -
                             dump["mag_data"]["observed"]["residual"][7].get<double>();
    EXPECT_NEAR(regional["values"][7].get<double>(), taken_off, 1e-3);
}

TEST(Dump, numbers_come_back_to_the_last_bit) {
    const BatchFolder files;
    const json dump = batch({"dump", files.model}).json();
    EXPECT_EQ(dump["mag_data"]["observed"]["raw"][10].get<float>(), static_cast<float>(56001.83));
    EXPECT_EQ(dump["bodies"][0]["params"]["density"]["value"].get<double>(), double{0.3F});
}

TEST(Dump, a_channel_without_a_column_is_null) {
    const BatchFolder files;
    std::string text = model_text();
    text.replace(text.find("3  4  0  0  0  0"), 16, "0  4  0  0  0  0");
    const json dump = batch({"dump", files.folder.write("grav.axm", text)}).json();
    EXPECT_TRUE(dump["mag_data"].is_null());
    EXPECT_TRUE(dump["misfit"]["mag"].is_null());
    EXPECT_FALSE(dump["grav_data"].is_null());
    EXPECT_EQ(dump["misfit"]["grav"].size(), 2U);
}

TEST(Dump, each_channel_has_the_misfit_scale_of_its_own) {
    const BatchFolder files;
    const json dump = batch({"dump", files.model}).json();
    const json& rows = dump["grav_data"];
    double sum = 0;
    for (std::size_t i = 0; i < 41; ++i)
        sum += std::pow(
            rows["calculated"]["residual"][i].get<double>() - rows["observed"]["residual"][i].get<double>(),
            2);
    EXPECT_NEAR(dump["misfit"]["grav"][0].get<double>(), std::sqrt(sum) / 40 / 10, 1e-7);
}

TEST(Dump, without_its_data_file_the_object_holds_what_could_be_read) {
    const BatchFolder files;
    const std::string model = files.folder.write("moved.axm", model_text("vanished.dat"));
    const BatchRun run = batch({"dump", model});
    EXPECT_EQ(run.status, 1);
    const json dump = run.json();
    EXPECT_EQ(dump["stations"], json::array());
    EXPECT_EQ(dump["distances"], json::array());
    EXPECT_TRUE(dump["mag_data"].is_null());
    EXPECT_TRUE(dump["misfit"]["mag"].is_null());
    EXPECT_EQ(dump["bodies"].size(), 1U);
    EXPECT_EQ(dump["messages"],
              json::parse(R"(["Could not find profile data file please specify its location",
                                                "The specified data file does not exist"])"));
}

TEST(Dump, a_cut_workspace_gives_its_whole_bodies_and_the_message) {
    const BatchFolder files;
    const std::string text = model_text();
    const std::string model = files.folder.write("cut.axm", text.substr(0, text.find(" 0  80  100")));
    const BatchRun run = batch({"dump", model});
    EXPECT_EQ(run.status, 1);
    const json dump = run.json();
    EXPECT_EQ(dump["bodies"], json::array());
    EXPECT_EQ(dump["workspace"]["definition"]["mag_column"], 3);
    EXPECT_EQ(dump["messages"],
              json::array({"An error occurred while reading the location file : Input past end of file (" +
                           model + ", line 17)"}));
    EXPECT_EQ(run.err, dump["messages"][0].get<std::string>() + "\n");
}

TEST(Dump, a_line_without_length_is_dumped_without_misfits) {
    const BatchFolder files;
    files.folder.write("survey.dat", "head\n1 2 3 4\n1 2 5 6\n1 2 7 8\n");
    const BatchRun run = batch({"dump", files.model});
    EXPECT_EQ(run.status, 1);
    const json dump = run.json();
    EXPECT_EQ(dump["messages"], json::array({"The data profile is not long enough to model"}));
    EXPECT_EQ(dump["stations"].size(), 3U);
    EXPECT_TRUE(dump["misfit"]["mag"].is_null());
}

TEST(Dump, bytes_that_are_no_letters_do_not_break_the_object) {
    const BatchFolder files;
    const std::string model = files.folder.write("latin.axm", model_text("survey.dat", "B\xF6ller"));
    const BatchRun run = batch({"dump", model});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.json()["bodies"][0]["name"], "B\xEF\xBF\xBDller");
}

TEST(Dump, the_object_goes_to_a_file_when_one_is_named) {
    const BatchFolder files;
    const BatchRun plain = batch({"dump", files.model});
    const BatchRun run = batch({"dump", files.model, "-o", files.folder.path("dump.json")});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(files.folder.read("dump.json"), plain.out);
}

TEST(Dump, a_target_that_cannot_be_written_is_told) {
    const BatchFolder files;
    const BatchRun run = batch({"dump", files.model, "-o", files.folder.folder()});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.err.starts_with("An error occurred while writing the file: "));
}

/// A line of many stations below one body, nothing of it calculated.
Workspace long_line(int stations) {
    BatchSession batch(std::cout, std::cerr);
    Workspace workspace = batch.session.workspace;
    workspace.definition.mag_column = 3;
    workspace.station_count = stations;
    workspace.stations.assign(stations);
    workspace.distances.assign(stations);
    workspace.mag.data.assign(stations);
    workspace.bodies.resize(2);
    workspace.body_count = workspace.body_capacity = 1;
    ModelBody& body = workspace.body(1);
    body.name = "B\xF6ller \"1\"";
    for (int i = 1; i <= stations; ++i) {
        workspace.distances[i] = i / 3.0;
        workspace.mag.data(i, row_raw, stage_observed) = i % 5 == 0 ? -1e32F : static_cast<float>(i) / 7;
    }
    return workspace;
}

std::string dump_of(const Workspace& workspace, std::size_t& greatest_piece) {
    std::ostringstream told;
    const BatchPrompts prompts(told);
    return whole_text([&](const TextSink& put) {
        put_dump(workspace, {}, prompts, [&](std::string_view piece) {
            greatest_piece = std::max(greatest_piece, piece.size());
            put(piece);
        });
    });
}

TEST(Dump, comes_in_pieces_that_do_not_grow_with_the_line) {
    std::size_t greatest = 0;
    const std::string text = dump_of(long_line(12'000), greatest);
    EXPECT_LT(greatest, 600'000U);
    EXPECT_GT(text.size(), 2 * greatest);
    const json dump = json::parse(text);
    EXPECT_EQ(dump["stations"].size(), 12'000U);
    EXPECT_EQ(dump["distances"][11'999], 4000.0);
    const json& raw = dump["mag_data"]["observed"]["raw"];
    ASSERT_EQ(raw.size(), 12'000U);
    for (std::size_t i = 0; i < raw.size(); ++i) {
        ASSERT_EQ(raw[i].is_null(), i % 5 == 4) << i;
        ASSERT_TRUE(raw[i].is_null() || raw[i].get<float>() == static_cast<float>(i + 1) / 7) << i;
    }
}

TEST(Dump, its_bytes_are_those_of_the_whole_object) {
    const BatchFolder files;
    std::size_t greatest = 0;
    for (const std::string& text :
         {batch({"dump", files.model}).out, dump_of(long_line(3), greatest), dump_of(long_line(0), greatest)})
        EXPECT_EQ(text, report::json_text(nlohmann::ordered_json::parse(text), -1));
}

TEST(Dump, many_bodies_stand_in_their_order_whatever_the_count_of_threads) {
    Workspace workspace = long_line(10);
    constexpr int count = 400;
    workspace.bodies.resize(count + 1);
    workspace.body_count = workspace.body_capacity = count;
    for (int number = 1; number <= count; ++number) {
        workspace.body(number).name = "Body " + std::to_string(number);
        workspace.body(number).response.assign(number % 3 == 0 ? 0 : 10);
    }
    std::string texts[2];
    std::size_t greatest = 0;
    for (const int threads : {1, 3}) {
        limit_threads(threads);
        texts[threads / 3] = dump_of(workspace, greatest);
    }
    limit_threads(0);
    EXPECT_TRUE(texts[0] == texts[1]);
    EXPECT_EQ(texts[0], report::json_text(nlohmann::ordered_json::parse(texts[0]), -1));
    const json bodies = json::parse(texts[0])["bodies"];
    ASSERT_EQ(bodies.size(), static_cast<std::size_t>(count));
    EXPECT_EQ(bodies[399]["name"], "Body 400");
    EXPECT_EQ(bodies[398]["response"], json::array());
    EXPECT_EQ(bodies[399]["response"].size(), 10U);
}

}  // namespace
}  // namespace anomalis::batch
