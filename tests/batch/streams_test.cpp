#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

#include "batch/batch_runs.h"
#include "batch/standard_streams.h"
#include "core/paths.h"

namespace anomalis::batch {
namespace {

namespace fs = std::filesystem;

/// One command with something on its standard input.
BatchRun piped(const std::string& input, const std::vector<std::string>& arguments,
               PictureWriter* pictures = nullptr) {
    std::vector<std::string> all{"anomalis-batch"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& argument : all) argv.push_back(argument.data());
    std::istringstream in(input);
    std::ostringstream out;
    std::ostringstream err;
    BatchRun run;
    run.status = run_batch(static_cast<int>(argv.size()), argv.data(), out, err, pictures, &in);
    run.out = out.str();
    run.err = err.str();
    return run;
}

std::string contents(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// In the folder of the survey, as a pipeline is.
struct Streams : BatchFolder {
    Streams() : before_(current_folder()) { change_to_folder(folder.folder()); }
    ~Streams() { change_to_folder(before_); }
    Streams(const Streams&) = delete;
    Streams& operator=(const Streams&) = delete;

  private:
    std::string before_;
};

std::size_t spool_folders() {
    std::size_t count = 0;
    for (const auto& entry : fs::directory_iterator(fs::temp_directory_path()))
        if (entry.path().filename().string().starts_with("anomalis-batch-")) ++count;
    return count;
}

TEST(Streams, a_workspace_comes_in_by_a_pipe_and_finds_its_data_from_the_current_folder) {
    const Streams files;
    const BatchRun run = piped(model_text(), {"dump", "-"});
    EXPECT_EQ(run.status, 0) << run.err;
    const BatchRun named = batch({"dump", files.model});
    EXPECT_EQ(run.json()["profile"], named.json()["profile"]);
    EXPECT_EQ(run.json()["mag"], named.json()["mag"]);
}

TEST(Streams, every_command_reads_its_workspace_from_a_pipe) {
    const Streams files;
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"info", "-"},
          {"info", "-", "--json"},
          {"forward", "-"},
          {"export", "-", "--clean-model", files.folder.path("m.csv")},
          {"invert", "-", "--iterations", "2", "-o", files.folder.path("fitted.axm")}}) {
        const BatchRun run = piped(model_text(), command);
        EXPECT_EQ(run.status, 0) << command[0] << run.err;
        EXPECT_NE(run.out + contents(files.folder.path("m.csv")), "") << command[0];
    }
    EXPECT_TRUE(fs::exists(files.folder.path("fitted.axm")));
}

TEST(Streams, an_output_goes_to_the_stream_alone_and_words_elsewhere) {
    const Streams files;
    const std::string table = files.folder.path("table.csv");
    ASSERT_EQ(batch({"export", files.model, "--clean-profile", table}).status, 0);
    const BatchRun run = batch({"export", files.model, "--clean-profile", "-"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, contents(table));
    const BatchRun report = batch({"invert", files.model, "--iterations", "2", "--report", "-"});
    EXPECT_EQ(report.status, 0) << report.err;
    EXPECT_TRUE(report.json().contains("outcome") || !report.json().empty());
    EXPECT_NE(report.err, "") << "the summary for a person";
}

TEST(Streams, a_fitted_workspace_goes_through_a_pipe_and_names_its_data_as_from_here) {
    const Streams files;
    const BatchRun run = piped(model_text(), {"invert", "-", "--iterations", "2", "-o", "-"});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_TRUE(run.out.starts_with("survey.dat\r\n")) << run.out.substr(0, 80);
    const BatchRun again = piped(run.out, {"info", "-", "--json"});
    EXPECT_EQ(again.status, 0) << again.err;
    EXPECT_EQ(again.json()["load"]["stations"], 41);
    EXPECT_FALSE(fs::exists("-")) << "no file of that name";
}

TEST(Streams, a_survey_comes_in_by_a_pipe) {
    const Streams files;
    std::string survey = "line,easting,northing,mag\n";
    for (const char* line : {"10", "20"})
        for (int i = 0; i < 30; ++i)
            survey += std::string(line) + "," + std::to_string(500000 + 25 * i) + ",65000" + line + "," +
                      std::to_string(55000 + i % 7) + "\n";
    const BatchRun run = piped(survey, {"lines", "-", "--json"});
    EXPECT_EQ(run.status, 0) << run.err;
    ASSERT_EQ(run.json()["lines"].size(), 2U) << run.out;
    EXPECT_EQ(run.json()["lines"][1]["stations"], 30);
    const BatchRun named = piped(survey, {"new", "-", "-o", "-"});
    EXPECT_EQ(named.status, 1);
    EXPECT_NE(named.err.find("has 2 lines"), std::string::npos) << named.err;
    EXPECT_EQ(named.out, "");
}

TEST(Streams, what_cannot_be_had_together_is_refused) {
    const Streams files;
    const BatchRun outputs = batch({"export", files.model, "--clean-profile", "-", "--clean-model", "-"});
    EXPECT_EQ(outputs.status, 2);
    EXPECT_NE(outputs.err.find("Only one output can be the standard output"), std::string::npos);
    EXPECT_EQ(outputs.out, "");
    const BatchRun inputs = piped(model_text(), {"follow", "-", "-"});
    EXPECT_EQ(inputs.status, 2);
    EXPECT_NE(inputs.err.find("Only one file can be the standard input"), std::string::npos);
}

/// Writes the name of what it should draw.
class NamingWriter : public PictureWriter {
  public:
    int write(Session&, const PictureRequest& request) override { return write_name(request.path); }
    int write_map(Prompts&, const intake::SurveyIndex&, const MapRequest& request) override {
        return write_name(request.path);
    }
    int write_results_map(Prompts&, const survey::SurveyResults&, const survey::ResultsMapMarks&,
                          const MapRequest& request) override {
        return write_name(request.path);
    }

  private:
    static int write_name(const std::string& path) {
        std::ofstream(path) << "picture" << fs::path(path).extension().string();
        return 0;
    }
};

TEST(Streams, a_picture_goes_to_the_stream_as_png) {
    const Streams files;
    NamingWriter pictures;
    const BatchRun run = piped(model_text(), {"render", "-", "-o", "-"}, &pictures);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "picture.png");
    EXPECT_EQ(piped(model_text(), {"render", "-", "-o", "x.doc"}, &pictures).status, 2);
}

TEST(Streams, after_a_failure_the_stream_gets_nothing_and_no_file_is_left) {
    const Streams files;
    const std::size_t before = spool_folders();
    const BatchRun run = piped("words and nothing else\n", {"export", "-", "--clean-model", "-"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_NE(run.err, "");
    const BatchRun empty = piped("", {"info", "-"});
    EXPECT_EQ(empty.status, 1);
    EXPECT_EQ(spool_folders(), before);
}

TEST(Info, tells_the_load_as_text_and_as_json) {
    const BatchFolder files;
    std::string data = survey_text();
    data.replace(data.find(" 56000.00 0.0000\n"), 17, " * 0.0000\n");
    files.folder.write("survey.dat", data);
    const BatchRun text = batch({"info", files.model});
    EXPECT_EQ(text.status, 0) << text.err;
    EXPECT_NE(text.out.find("Load            40 stations, 975 m, spacing 25 m; 1 row dropped\n"),
              std::string::npos)
        << text.out;
    EXPECT_NE(
        text.out.find("  Rows dropped        1: \"*\" stands where a number is wanted, column 3, line 2"),
        std::string::npos)
        << text.out;
    const BatchRun run = batch({"info", files.model, "--json"});
    EXPECT_EQ(run.status, 0) << run.err;
    const nlohmann::json load = run.json()["load"];
    EXPECT_EQ(load["stations"], 40);
    EXPECT_EQ(load["length_m"], 975);
    EXPECT_EQ(load["direction_deg"], 90);
    EXPECT_EQ(load["rows_dropped"][0]["first_line"], 2);
    EXPECT_EQ(load["rows_dropped"][0]["rows"], 1);
    EXPECT_TRUE(load["problem"].is_null());
    EXPECT_TRUE(load["check"].empty());
    EXPECT_EQ(run.json()["field"]["intensity_nT"], 56000);
    EXPECT_EQ(run.json()["bodies"][0]["name"], "Sheet");
}

TEST(Info, says_as_json_why_nothing_was_loaded) {
    const BatchFolder files;
    files.folder.write("survey.dat", "east north mag grav\nnone of them is a number\n");
    const BatchRun run = batch({"info", files.model, "--json"});
    EXPECT_EQ(run.status, 1);
    const nlohmann::json load = run.json()["load"];
    EXPECT_EQ(load["stations"], 0);
    EXPECT_NE(load["problem"].get<std::string>().find("in line 2, column 1"), std::string::npos);
}

}  // namespace
}  // namespace anomalis::batch
