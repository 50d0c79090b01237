#include "flow/find_desk.h"

#include <functional>
#include <gtest/gtest.h>
#include <vector>

#include "core/body_parameters.h"
#include "edit/change.h"
#include "edit/fit_in_force.h"
#include "edit/line_sample.h"
#include "model/refresh_model.h"
#include "support/fresh_load.h"
#include "support/scripted_finder.h"
#include "workspace_file/axm.h"

namespace anomalis::flow {

namespace {

/// A line, a scripted search and a window that remembers.
struct FindSample : edit::LineSample, FindDeskObserver {
    explicit FindSample(int present = 0)
        : desk(workbench, *this,
               [this](const Workspace& w, const inversion::FindRequest& request,
                      inversion::FindObserver& observer) { return finder(w, request, observer); }) {
        load();
        for (int i = 0; i < present; ++i) add_body(1200 + 300 * i, 40);
        model::refresh_model(session);
        edit::start_history(workbench);
        before = state();
    }

    /// Everything that a file or the charts would show of the open model, bit for bit.
    std::string state() {
        std::string text = workspace_file::model_parameters_text(0, workspace());
        for (const Channel* channel : {&workspace().mag, &workspace().grav}) {
            const auto rows = channel->data.span();
            text.append(reinterpret_cast<const char*>(rows.data()), rows.size_bytes());
        }
        return text;
    }
    void expect_untouched() {
        EXPECT_EQ(state(), before);
        EXPECT_EQ(workbench.history.steps(), 0U);
        EXPECT_FALSE(workbench.unsaved);
        EXPECT_FALSE(session.inversion.running);
    }

    void panel_changed() override { ++panel_changes; }
    void run_changed() override { runs.push_back(desk.state().searching); }
    void show_model(const Workspace* model) override {
        shown = model;
        shown_bodies.push_back(model ? model->body_count : -1);
        if (!model) return;
        EXPECT_TRUE(model->bodies.at(1).mag_response_valid) << "its numbers are up to date";
    }
    void model_taken(int found, bool first_bodies) override {
        taken = found;
        first = first_bodies;
        model::refresh_model(session);
    }
    void close_wanted() override { closed = true; }

    ScriptedFinder finder;
    FindDesk desk;
    std::string before;
    const Workspace* shown = nullptr;
    std::vector<int> shown_bodies;  ///< of the models on show, -1 for the open one
    std::vector<bool> runs;
    int panel_changes = 0, taken = -1;
    bool first = false, closed = false;
};

}  // namespace

TEST(FindDesk, a_search_grows_in_the_charts_and_leaves_the_open_model_alone) {
    FindSample sample;
    sample.finder.on_turn = [&](int bodies) {
        EXPECT_TRUE(sample.session.inversion.running);
        EXPECT_EQ(sample.workspace().body_count, 0);
        EXPECT_EQ(sample.desk.state().bodies, bodies);
        if (bodies == 1) {
            ASSERT_NE(sample.shown, nullptr);
            EXPECT_EQ(sample.shown->body_count, 1);
            EXPECT_EQ(find_progress_text(sample.desk.state(), sample.workspace()),
                      "Looking for sources: 1 body so far, rms 10.0 nT");
        }
    };
    sample.desk.command_find();
    EXPECT_EQ(sample.runs, (std::vector<bool>{true, false}));
    EXPECT_EQ(sample.desk.state().models.size(), 3U);
    EXPECT_EQ(sample.desk.state().label, "Found 3 thick sheets");
    EXPECT_EQ(sample.desk.state().previewed, 0) << "the best one is on show";
    EXPECT_EQ(sample.shown->body_count, 3);
    sample.expect_untouched();
}

TEST(FindDesk, alternatives_are_flipped_through_and_put_back_bit_for_bit) {
    FindSample sample(2);
    sample.desk.command_find();
    for (const int index : {1, 2, 0, 2}) {
        sample.desk.preview(index);
        EXPECT_EQ(sample.desk.state().previewed, index);
        EXPECT_EQ(sample.shown, &sample.desk.model(index));
        EXPECT_EQ(sample.shown->body_count, 2 + 3 - index);
        sample.expect_untouched();
    }
    sample.desk.put_back();
    EXPECT_EQ(sample.shown, nullptr);
    EXPECT_EQ(sample.desk.state().previewed, -1);
    EXPECT_EQ(sample.desk.state().models.size(), 3U) << "they can be looked at again";
    sample.desk.preview(7);
    sample.desk.preview(-1);
    EXPECT_EQ(sample.desk.state().previewed, -1);
    sample.desk.forget();
    EXPECT_TRUE(sample.desk.state().models.empty());
    sample.expect_untouched();
}

TEST(FindDesk, taking_one_is_one_step_with_bodies_regional_and_fit) {
    FindSample sample(1);
    sample.desk.command_find();
    sample.desk.preview(1);
    sample.desk.take(1);
    EXPECT_EQ(sample.taken, 2);
    EXPECT_FALSE(sample.first);
    EXPECT_EQ(sample.shown, nullptr) << "the charts are those of the open model";
    EXPECT_TRUE(sample.desk.state().models.empty());
    const Workspace& w = sample.workspace();
    EXPECT_EQ(w.body_count, 3);
    EXPECT_EQ(sample.workbench.view.current_body, 2 + ScriptedFinder::strongest)
        << "the strongest of the new ones";
    EXPECT_EQ(w.body(2).distance.value, ScriptedFinder::first_distance);
    EXPECT_EQ(w.mag.regional_degree, 1);
    ASSERT_NE(edit::fit_in_force(sample.workbench), nullptr);
    EXPECT_NE(edit::fitted_parameter(sample.workbench, 2, param_distance), nullptr);
    EXPECT_TRUE(sample.workbench.unsaved);
    EXPECT_EQ(sample.workbench.history.steps(), 1U);
    EXPECT_EQ(sample.workbench.history.undo_name(), "finding bodies");
    EXPECT_EQ(difference_from_fresh_load(w), "");

    edit::undo_change(sample.workbench);
    model::refresh_model(sample.session);
    EXPECT_EQ(w.body_count, 1);
    EXPECT_EQ(w.mag.regional_degree, no_regional);
    EXPECT_EQ(difference_from_fresh_load(w), "");
    EXPECT_EQ(edit::fit_in_force(sample.workbench), nullptr);
    edit::redo_change(sample.workbench);
    EXPECT_EQ(w.body_count, 3);
    EXPECT_NE(edit::fit_in_force(sample.workbench), nullptr) << "the model is as fitted again";
}

TEST(FindDesk, the_first_bodies_of_a_line_are_told_as_such) {
    FindSample sample;
    sample.desk.command_find();
    sample.desk.take(0);
    EXPECT_EQ(sample.taken, 3);
    EXPECT_TRUE(sample.first);
    EXPECT_EQ(sample.workbench.view.current_body, 1 + ScriptedFinder::strongest);
}

TEST(FindDesk, a_stop_keeps_what_was_found) {
    for (const bool by_run : {false, true}) {
        FindSample sample;
        sample.finder.on_turn = [&](int) {
            if (by_run) sample.session.inversion.stop_inversion = true;
            sample.desk.command_keep();
        };
        sample.desk.command_find();
        EXPECT_EQ(sample.finder.grown, 1);
        EXPECT_EQ(sample.desk.state().models.size(), 1U);
        EXPECT_EQ(sample.desk.state().remarks, std::vector<std::string>{"The search was stopped"});
        EXPECT_FALSE(sample.session.inversion.stop_inversion) << "the next run is not stopped by it";
        sample.expect_untouched();
    }
}

TEST(FindDesk, a_cancel_at_any_moment_leaves_the_model_as_it_was) {
    for (const int moment : {1, 2, 3}) {
        FindSample sample(1);
        sample.finder.on_turn = [&](int bodies) {
            if (bodies == moment) sample.desk.command_cancel();
        };
        sample.desk.command_find();
        EXPECT_EQ(sample.finder.grown, moment);
        EXPECT_TRUE(sample.desk.state().models.empty());
        EXPECT_EQ(sample.desk.state().label, "Cancelled: the model is as it was");
        EXPECT_EQ(sample.shown, nullptr);
        sample.expect_untouched();
    }
}

TEST(FindDesk, a_request_to_close_leaves_the_search_first) {
    FindSample sample;
    EXPECT_TRUE(sample.desk.may_close());
    bool may_close = true;
    sample.finder.on_turn = [&](int) { may_close = sample.desk.may_close(); };
    sample.desk.command_find();
    EXPECT_FALSE(may_close);
    EXPECT_TRUE(sample.closed);
    EXPECT_EQ(sample.finder.grown, 1);
    EXPECT_TRUE(sample.desk.state().models.empty());
    sample.expect_untouched();
}

TEST(FindDesk, meanwhile_nothing_else_is_served) {
    FindSample sample;
    sample.finder.on_turn = [&](int) {
        sample.desk.command_find();
        sample.desk.choose_most(2);
        sample.desk.choose_kinds(SheetKinds::thin);
        sample.desk.preview(0);
        sample.desk.take(0);
        sample.desk.forget();
        EXPECT_FALSE(sample.desk.can_find());
    };
    sample.desk.command_find();
    EXPECT_EQ(sample.finder.searches, 1);
    EXPECT_EQ(sample.desk.state().most, 8);
    EXPECT_EQ(sample.desk.state().kinds, SheetKinds::both);
    EXPECT_EQ(sample.taken, -1);
    EXPECT_EQ(sample.desk.state().models.size(), 3U);
    sample.expect_untouched();
}

TEST(FindDesk, the_request_is_what_was_chosen) {
    FindSample sample;
    sample.desk.choose_most(3);
    sample.desk.choose_kinds(SheetKinds::thin);
    sample.desk.choose_channel(channel_joint);
    sample.desk.choose_present(true);
    sample.desk.command_find();
    EXPECT_EQ(sample.finder.request.most, 3);
    EXPECT_TRUE(sample.finder.request.thin);
    EXPECT_FALSE(sample.finder.request.thick);
    EXPECT_EQ(sample.finder.request.channel, channel_joint);
    EXPECT_FALSE(sample.finder.request.free_present) << "there are no bodies to be fitted";
    sample.desk.take(0);
    sample.desk.choose_most(900);
    sample.desk.choose_kinds(SheetKinds::thick);
    sample.workspace().definition.grav_column = 0;
    sample.desk.command_find();
    EXPECT_EQ(sample.finder.request.most, FindState::most_bodies);
    EXPECT_FALSE(sample.finder.request.thin);
    EXPECT_EQ(sample.finder.request.channel, channel_mag) << "the line has no gravity";
    EXPECT_TRUE(sample.finder.request.free_present);
}

TEST(FindDesk, nothing_found_is_said_and_nothing_is_proposed) {
    FindSample sample;
    sample.finder.bodies = 0;
    sample.finder.fault = "the field is 0 nT";
    sample.desk.command_find();
    EXPECT_EQ(sample.desk.state().label, "Nothing stands out of the noise");
    EXPECT_EQ(sample.desk.state().previewed, -1);
    EXPECT_EQ(sample.shown, nullptr);
    EXPECT_TRUE(sample.prompts.told("the field is 0 nT"));
    sample.desk.take(0);
    sample.expect_untouched();
}

TEST(FindDesk, another_search_begins_from_the_open_model) {
    FindSample sample;
    sample.desk.command_find();
    const int revision = sample.desk.state().revision;
    sample.finder.on_turn = [&](int) { EXPECT_TRUE(sample.desk.state().models.empty()); };
    sample.desk.command_find();
    EXPECT_EQ(sample.finder.searches, 2);
    EXPECT_GT(sample.desk.state().revision, revision);
    EXPECT_EQ(sample.desk.model(0).body_count, 3);
    sample.expect_untouched();
}

TEST(FindDesk, without_a_line_there_is_nothing_to_search) {
    FindSample sample;
    drop_stations(sample.workspace());
    EXPECT_FALSE(sample.desk.can_find());
    sample.desk.command_find();
    EXPECT_EQ(sample.finder.searches, 0);
    EXPECT_EQ(find_window_text(sample.workspace()), "");
}

TEST(FindDesk, a_search_that_fails_tells_why_and_ends) {
    FindSample sample;
    sample.desk.set_finder(
        [](const Workspace&, const inversion::FindRequest&,
           inversion::FindObserver&) -> inversion::FindResult { throw Fault("no memory for the matrix"); });
    sample.desk.command_find();
    EXPECT_TRUE(sample.prompts.told("An error occurred while looking for bodies: no memory for the matrix"));
    EXPECT_EQ(sample.runs, (std::vector<bool>{true, false}));
    sample.expect_untouched();
}

TEST(FindDesk, the_window_of_the_fit_is_told_in_metres) {
    FindSample sample;
    EXPECT_EQ(find_window_text(sample.workspace()), "0 to 2500 m, 101 stations");
    sample.workspace().first_station = 11;
    sample.workspace().last_station = 31;
    EXPECT_EQ(find_window_text(sample.workspace()), "250 to 750 m, 21 of 101 stations");
}

TEST(FindDesk, numbers_carry_their_units) {
    EXPECT_EQ(found_rms_text(4.2134, channel_mag), "rms 4.21 nT");
    EXPECT_EQ(found_rms_text(0.04213, channel_grav), "rms 0.0421 mGal");
    EXPECT_EQ(found_rms_text(4.2134, channel_joint), "rms 4.21 nT");
    EXPECT_EQ(criterion_text(-12.34), "criterion -12.3");
}

}  // namespace anomalis::flow
