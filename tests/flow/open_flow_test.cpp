#include "flow/open_flow.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "core/paths.h"
#include "edit/change.h"
#include "edit/line_sample.h"
#include "model/refresh_model.h"
#include "workspace_file/axm.h"

namespace anomalis::flow {

namespace {

struct Flow : edit::LineSample {
    Flow() {
        add_body(1260, 60);
        model_path = folder.path("line.axm");
        workspace_file::write_model_parameters(0, model_path, workspace(), prompts);
    }
    std::string model_path;
};

/// What must be as before where nothing was opened.
struct Remembered {
    std::string model, name, undo, redo;
    Date date = 0, data_date = 0;
    std::size_t steps = 0;
    bool changed = false, unsaved = false;
    int stations = 0, current_body = 0, list_revision = 0;
    float zoom = 0;
    std::array<bool, 2> base_from_mean{};
    ChannelTable mag, grav;
    std::vector<std::string> head, recent_files;
    std::string folder;
    bool operator==(const Remembered&) const = default;
};

Remembered remember(Flow& flow) {
    const Workspace& w = flow.workspace();
    const edit::Workbench& b = flow.workbench;
    return {workspace_file::model_parameters_text(0, w),
            w.model_file,
            b.history.undo_name(),
            b.history.redo_name(),
            w.model_file_date,
            w.definition.data_file_date,
            b.history.steps(),
            flow.session.model_changed,
            b.unsaved,
            w.station_count,
            b.view.current_body,
            b.list_revision,
            b.view.zoom_factor,
            b.base_from_mean,
            w.mag.data,
            w.grav.data,
            b.head.lines,
            b.recent_files,
            current_folder()};
}

/// Cut within the definitions and within the bodies, and of other kinds.
std::vector<std::string> files_without_whole_bodies(const TempFolder& folder, const std::string& whole) {
    return {folder.write("cut1.axm", whole.substr(0, 120)), folder.write("cut2.axm", whole.substr(0, 300)),
            folder.write("readme.axm", "words and nothing else\n"),
            folder.write("picture.axm", "\x89PNG\r\n\x1a\n\1\1\1\rIHDR"), folder.write("empty.axm", "")};
}

/// Cut within the display block, and out of range.
std::vector<std::string> files_with_whole_bodies(const TempFolder& folder, const std::string& whole) {
    std::string overflow = whole;
    overflow.replace(overflow.find("56000"), 5, "1e999");
    return {folder.write("cut3.axm", whole.substr(0, whole.find("[AXM") + 30)),
            folder.write("overflow.axm", overflow)};
}

}  // namespace

TEST(OpenFlow, a_read_drops_the_stations_and_needs_no_data) {
    Flow flow;
    flow.load();
    std::filesystem::remove(flow.data_path);
    flow.folder.write("other.dat", "");
    EXPECT_EQ(open_model_file(flow.workbench, ReadMode::everything, flow.model_path), OpenOutcome::opened);
    EXPECT_EQ(flow.workspace().station_count, 0);
    EXPECT_EQ(flow.workspace().body_count, 1);
    EXPECT_EQ(flow.workspace().model_file, flow.model_path);
    EXPECT_EQ(flow.workbench.view.current_body, 1);
    EXPECT_FALSE(flow.session.model_changed);
    EXPECT_TRUE(flow.workbench.head.lines.empty());
}

TEST(OpenFlow, a_missing_file_changes_nothing) {
    Flow flow;
    flow.load();
    EXPECT_EQ(open_model_file(flow.workbench, ReadMode::everything, flow.folder.path("no.axm")),
              OpenOutcome::missing);
    EXPECT_EQ(open_model_file(flow.workbench, ReadMode::everything, flow.folder.folder()),
              OpenOutcome::missing);
    EXPECT_EQ(flow.prompts.messages,
              (std::vector<std::string>{"That file does not exist", "That file does not exist"}));
    EXPECT_EQ(flow.workspace().station_count, edit::LineSample::stations);
}

TEST(OpenFlow, a_read_that_fails_leaves_everything_as_it_was) {
    Flow flow;
    open_model_file(flow.workbench, ReadMode::everything, flow.model_path);
    flow.load();
    flow.add_body(900, 30);
    edit::note_change(flow.workbench, {"add body", "", true});
    flow.workspace().sensor_offset = 33;
    edit::note_change(flow.workbench, {"elevation", "", false});
    edit::undo_change(flow.workbench);
    flow.workbench.view.current_body = 2;
    flow.workbench.view.zoom_factor = 4;
    model::refresh_model(flow.session);
    const Remembered before = remember(flow);
    const std::string whole = flow.folder.read("line.axm");
    const auto expect_nothing_opened = [&](ReadMode mode, const std::vector<std::string>& paths) {
        for (const std::string& path : paths) {
            SCOPED_TRACE(path);
            flow.prompts.messages.clear();
            EXPECT_EQ(open_model_file(flow.workbench, mode, path), OpenOutcome::failed);
            // One failure; of the line that was cut also the number that is missing there is told.
            EXPECT_EQ(std::ranges::count_if(
                          flow.prompts.messages,
                          [&](const std::string& told) { return !told.starts_with(path + ", line "); }),
                      1);
            EXPECT_TRUE(remember(flow) == before);
        }
    };
    expect_nothing_opened(ReadMode::bodies_alone, files_without_whole_bodies(flow.folder, whole));
    expect_nothing_opened(ReadMode::everything, files_without_whole_bodies(flow.folder, whole));
    expect_nothing_opened(ReadMode::everything, files_with_whole_bodies(flow.folder, whole));
}

TEST(OpenFlow, a_type_without_a_name_is_repaired_by_the_read_and_by_no_step_of_its_own) {
    for (const std::int32_t type : {-1, 0, 7, 8, 9, 10, 11, 12, 13, 14, 15, 18, 99}) {
        SCOPED_TRACE(type);
        Flow flow;
        flow.load();
        edit::start_history(flow.workbench);
        flow.workspace().body(1).type = type;
        const std::string path = flow.folder.path("nameless.axm");
        workspace_file::write_model_parameters(0, path, flow.workspace(), flow.prompts);
        flow.workspace().body(1).type = thick_sheet;
        for (const ReadMode mode : {ReadMode::everything, ReadMode::bodies_alone}) {
            ASSERT_EQ(open_model_file(flow.workbench, mode, path), OpenOutcome::opened);
            EXPECT_EQ(flow.workspace().body(1).type, thin_sheet);
            EXPECT_EQ(flow.workbench.history.steps(), 1U);
            flow.load();
            model::refresh_model(flow.session);
            edit::note_change(flow.workbench, {"nothing", "", false});
            EXPECT_EQ(flow.workbench.history.steps(), 1U) << "neither load nor display changed anything";
            edit::undo_change(flow.workbench);
            EXPECT_EQ(flow.workspace().body(1).type, thick_sheet);
            EXPECT_FALSE(flow.workbench.history.can_undo());
            flow.load();
            model::refresh_model(flow.session);
            edit::note_change(flow.workbench, {"nothing", "", false});
            EXPECT_TRUE(flow.workbench.history.can_redo());
        }
    }
}

TEST(OpenFlow, the_strike_that_a_sphere_takes_from_the_line_is_no_step) {
    Flow flow;
    flow.add_body(900, 30, sphere);
    edit::start_history(flow.workbench);
    flow.workspace().sensor_offset = 12;
    edit::note_change(flow.workbench, {"elevation", "", false});
    edit::undo_change(flow.workbench);
    flow.load();
    const float before = flow.workspace().body(2).strike.value;
    model::refresh_model(flow.session);
    ASSERT_NE(flow.workspace().body(2).strike.value, before);
    edit::note_change(flow.workbench, {"nothing", "", false});
    EXPECT_FALSE(flow.workbench.history.can_undo());
    EXPECT_TRUE(flow.workbench.history.can_redo());
}

TEST(OpenFlow, a_pipe_without_a_writer_is_not_waited_for) {
    Flow flow;
    flow.load();
    const Remembered before = remember(flow);
    const std::string pipe = flow.folder.path("pipe.axm");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    for (const ReadMode mode : {ReadMode::everything, ReadMode::bodies_alone})
        EXPECT_NE(open_model_file(flow.workbench, mode, pipe), OpenOutcome::opened);
    EXPECT_TRUE(remember(flow) == before);
}

TEST(OpenFlow, a_model_that_cannot_be_brought_back_leaves_everything_as_it_was) {
    Flow flow;
    flow.load();
    const Remembered before = remember(flow);
    const std::string cut = flow.folder.read("line.axm").substr(0, 300);
    EXPECT_EQ(bring_back_model(flow.workbench, cut, "other.axm"), OpenOutcome::failed);
    EXPECT_TRUE(remember(flow) == before);
}

TEST(OpenFlow, a_file_of_another_kind_is_told_as_such_before_anything_is_asked) {
    Flow flow;
    const TempFolder folder;
    for (const std::string& path :
         {folder.write("readme.axm", "# A program\n\nIt explains anomalies.\n\nSee the guide.\n"),
          folder.write("empty.axm", ""), flow.data_path, std::string("/bin/ls")}) {
        SCOPED_TRACE(path);
        flow.prompts.messages.clear();
        EXPECT_EQ(open_model_file(flow.workbench, ReadMode::everything, path), OpenOutcome::failed);
        EXPECT_EQ(flow.prompts.messages,
                  std::vector<std::string>{
                      "An error occurred while reading the location file : Not a workspace file (" + path +
                      "). Choose one that was saved by this program (.axm)"});
        EXPECT_TRUE(flow.prompts.open_requests.empty());
        EXPECT_TRUE(flow.prompts.questions.empty());
    }
}

TEST(OpenFlow, bodies_alone_keep_the_name_of_the_model) {
    Flow flow;
    flow.workspace().model_file = "mine.axm";
    EXPECT_EQ(open_model_file(flow.workbench, ReadMode::bodies_alone, flow.model_path), OpenOutcome::opened);
    EXPECT_EQ(flow.workspace().model_file, "mine.axm");
    EXPECT_TRUE(flow.session.model_changed);
}

TEST(OpenFlow, a_full_read_is_no_unsaved_change_and_bodies_alone_are_one) {
    Flow flow;
    flow.add_body(900, 30);
    const std::string other = flow.folder.path("other.axm");
    workspace_file::write_model_parameters(0, other, flow.workspace(), flow.prompts);
    flow.workbench.unsaved = true;
    open_model_file(flow.workbench, ReadMode::everything, flow.model_path);
    EXPECT_FALSE(flow.workbench.unsaved);
    open_model_file(flow.workbench, ReadMode::bodies_alone, other);
    EXPECT_TRUE(flow.workbench.unsaved);
}

TEST(OpenFlow, only_a_full_read_goes_to_the_recent_files) {
    Flow flow;
    open_model_file(flow.workbench, ReadMode::bodies_alone, flow.model_path);
    EXPECT_TRUE(flow.workbench.recent_files.empty());
    const std::string cut = flow.folder.write("cut.axm", flow.folder.read("line.axm").substr(0, 300));
    open_model_file(flow.workbench, ReadMode::everything, cut);
    EXPECT_TRUE(flow.workbench.recent_files.empty());
    open_model_file(flow.workbench, ReadMode::everything, flow.model_path);
    EXPECT_EQ(flow.workbench.recent_files, std::vector<std::string>{flow.model_path});
}

TEST(OpenFlow, a_recent_file_moves_to_the_top_and_its_folder_becomes_the_current_one) {
    Flow flow;
    const TempFolder elsewhere;
    const CurrentFolder here(elsewhere.folder());
    const std::string other = elsewhere.write("other.axm", flow.folder.read("line.axm"));
    open_model_file(flow.workbench, ReadMode::everything, flow.model_path);
    open_model_file(flow.workbench, ReadMode::everything, other);
    EXPECT_EQ(open_recent_file(flow.workbench, 1), OpenOutcome::opened);
    EXPECT_EQ(flow.workbench.recent_files, (std::vector<std::string>{flow.model_path, other}));
    EXPECT_EQ(flow.workspace().model_file, flow.model_path);
    EXPECT_EQ(current_folder(), flow.folder.folder());
    EXPECT_EQ(open_recent_file(flow.workbench, 2), OpenOutcome::cancelled) << "no such entry";
}

TEST(OpenFlow, a_recent_file_that_vanished_is_told_and_stays_in_the_list) {
    Flow flow;
    open_model_file(flow.workbench, ReadMode::everything, flow.model_path);
    flow.load();
    std::filesystem::remove(flow.model_path);
    EXPECT_EQ(open_recent_file(flow.workbench, 0), OpenOutcome::missing);
    EXPECT_EQ(flow.prompts.messages, std::vector<std::string>{"That file does not exist"});
    EXPECT_EQ(flow.workbench.recent_files.size(), 1U);
    EXPECT_EQ(flow.workspace().station_count, edit::LineSample::stations);
}

TEST(OpenFlow, a_recent_file_that_is_no_workspace_any_more_is_told) {
    Flow flow;
    const TempFolder elsewhere;
    const CurrentFolder here(elsewhere.folder());
    open_model_file(flow.workbench, ReadMode::everything, flow.model_path);
    flow.folder.write("line.axm", flow.folder.read("line.axm").substr(0, 300));
    EXPECT_EQ(open_recent_file(flow.workbench, 0), OpenOutcome::failed);
    EXPECT_EQ(flow.prompts.messages.size(), 2U);
    EXPECT_EQ(flow.prompts.messages.back(), "The specified file did not have the correct format");
    EXPECT_EQ(current_folder(), flow.folder.folder());
}

TEST(OpenFlow, the_dialog_leaves_the_current_folder) {
    Flow flow;
    const TempFolder elsewhere;
    const CurrentFolder here(elsewhere.folder());
    flow.prompts.open_paths = {flow.model_path, std::nullopt};
    EXPECT_EQ(open_model(flow.workbench, ReadMode::everything), OpenOutcome::opened);
    EXPECT_EQ(current_folder(), elsewhere.folder());
    EXPECT_EQ(open_model(flow.workbench, ReadMode::everything), OpenOutcome::cancelled);
    EXPECT_EQ(flow.prompts.open_requests[0].filter,
              "Anomalis definition Files(*.axm)|*.axm|All files (*.*)|*.*");
}

TEST(OpenFlow, the_first_data_file_of_a_session_chooses_the_working_folder) {
    Flow flow;
    const TempFolder elsewhere;
    const CurrentFolder here(elsewhere.folder());
    const TempFolder third;
    flow.session.first_dialog = true;
    flow.prompts.open_paths = {flow.data_path, third.write("b.dat", edit::east_line_text(3)), std::nullopt};
    EXPECT_TRUE(choose_data_file(flow.workbench));
    EXPECT_EQ(current_folder(), flow.folder.folder());
    EXPECT_TRUE(choose_data_file(flow.workbench));
    EXPECT_EQ(current_folder(), flow.folder.folder());
    EXPECT_EQ(flow.workspace().definition.data_file, third.path("b.dat"));
    EXPECT_EQ(flow.workbench.head.lines.size(), 4U);
    EXPECT_FALSE(choose_data_file(flow.workbench));
    EXPECT_EQ(flow.workspace().definition.data_file, third.path("b.dat"));
}

TEST(OpenFlow, a_base_level_that_was_the_mean_of_the_file_before_is_taken_anew) {
    Flow flow;
    ASSERT_EQ(flow.workspace().mag.base, unset);
    flow.load();
    const float mean = flow.workspace().mag.base;
    ASSERT_NE(mean, unset);
    set_data_file(flow.workbench, flow.folder.write("b.dat", edit::east_line_text(3)));
    EXPECT_EQ(flow.workspace().mag.base, unset);
    flow.workspace().mag.base = 123;
    flow.load();
    set_data_file(flow.workbench, flow.data_path);
    EXPECT_EQ(flow.workspace().mag.base, 123) << "a typed level stays";
}

TEST(OpenFlow, a_missing_data_file_leaves_no_head_of_another) {
    Flow flow;
    refresh_data_head(flow.workbench);
    EXPECT_EQ(flow.workbench.head.lines.size(), 64U);
    set_data_file(flow.workbench, flow.folder.path("gone.dat"));
    EXPECT_TRUE(flow.workbench.head.lines.empty());
    EXPECT_TRUE(flow.prompts.messages.empty());
}

TEST(OpenFlow, a_load_tells_number_length_spacing_and_base_levels) {
    Flow flow;
    const LoadResult result = flow.load();
    EXPECT_TRUE(result.loaded);
    EXPECT_EQ(result.number_of_locations, "101");
    EXPECT_EQ(result.line_length, "2500.00");
    EXPECT_EQ(result.line_spacing, "24.752");
    EXPECT_TRUE(result.mag_base.has_value());
    EXPECT_EQ(flow.session.inversion.inversion_channel, channel_mag);
    flow.workspace().definition.mag_column = 0;
    EXPECT_FALSE(flow.load().mag_base.has_value());
    EXPECT_EQ(flow.session.inversion.inversion_channel, channel_grav);
}

TEST(OpenFlow, a_line_without_length_counts_its_stations_and_is_not_loaded) {
    Flow flow;
    flow.workspace().definition.data_file =
        flow.folder.write("point.dat", "h\n1 5 5 1 1 9 9\n1 8 8 1 1 9 9\n1 5 5 1 1 9 9\n");
    const LoadResult result = flow.load();
    EXPECT_FALSE(result.loaded);
    EXPECT_EQ(result.number_of_locations, "3");
    EXPECT_EQ(result.line_length, "0.00");
    EXPECT_EQ(result.line_spacing, "0.000");
    EXPECT_EQ(flow.prompts.messages,
              std::vector<std::string>{"The data profile is not long enough to model"});
}

TEST(OpenFlow, a_load_that_stops_leaves_everything_blank) {
    Flow flow;
    flow.load();
    flow.workspace().definition.mag_column = 0;
    flow.workspace().definition.grav_column = 0;
    const LoadResult result = flow.load();
    EXPECT_FALSE(result.loaded);
    EXPECT_EQ(result.number_of_locations + result.line_length + result.line_spacing, "");
    EXPECT_EQ(flow.workspace().station_count, 0);
}

TEST(OpenFlow, the_caption_names_the_file) {
    Flow flow;
    EXPECT_EQ(window_caption(flow.workbench), "Anomalis");
    open_model_file(flow.workbench, ReadMode::everything, flow.model_path);
    EXPECT_EQ(window_caption(flow.workbench), "Anomalis: line.axm");
}

}  // namespace anomalis::flow
