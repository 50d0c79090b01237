#include "core/session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/body_defaults.h"
#include "core/paths.h"
#include "support/scripted_prompts.h"
#include "support/temp_folder.h"

namespace anomalis {
namespace {

using ::testing::IsEmpty;

/// A session in a folder of its own, with a settings file there.
class SessionTest : public ::testing::Test {
  protected:
    TempFolder folder;
    CurrentFolder here{folder.folder()};
    EnvironmentVariable data{"XDG_DATA_HOME", folder.folder().c_str()};
    ScriptedPrompts prompts;

    Settings settings() { return Settings(folder.path("anomalis.conf"), prompts); }
    void keep(std::string_view key, std::string_view value) {
        Settings store = settings();
        store.set(settings_section, key, value);
    }
    std::string kept(std::string_view key) { return settings().get(settings_section, key); }
};

TEST_F(SessionTest, without_settings_it_starts_with_the_defaults) {
    Session session(prompts, settings());
    const StartSettings read = session.start();
    EXPECT_EQ(session.workspace.field.intensity, 56000);
    EXPECT_EQ(session.workspace.field.inclination, -65);
    EXPECT_EQ(session.workspace.field.declination, -4);
    EXPECT_EQ(session.workspace.station_count, 0);
    EXPECT_EQ(session.workspace.bodies.size(), 33U);
    EXPECT_FALSE(read.mag_intensity || read.mag_inclination || read.mag_declination);
    EXPECT_EQ(read.display_axes, std::nullopt);
    EXPECT_FALSE(read.form_size);
    EXPECT_EQ(current_folder(), folder.folder());
    EXPECT_TRUE(session.system.done);
    EXPECT_TRUE(session.first_dialog);
    EXPECT_FALSE(session.model_changed);
    EXPECT_FALSE(session.log.on());
    EXPECT_THAT(prompts.messages, IsEmpty());
}

TEST_F(SessionTest, the_inversion_starts_with_no_best_model) {
    Session session(prompts, settings());
    session.inversion.best_model_available = true;
    session.inversion.best_misfit = {1, 1};
    session.start();
    EXPECT_FALSE(session.inversion.best_model_available);
    EXPECT_EQ(session.inversion.best_misfit, (MisfitPair{-99999.0F, -99999.0F}));
    EXPECT_EQ(session.inversion.inversion_params.count(), 1);
    EXPECT_EQ(session.inversion.best_params.count(), 1);
}

TEST_F(SessionTest, the_field_comes_from_the_settings) {
    keep("MagIntensity", "48000");
    keep("MagInclination", " 62.5");
    keep("MagDeclination", "-1e1");
    Session session(prompts, settings());
    const StartSettings read = session.start();
    EXPECT_EQ(session.workspace.field.intensity, 48000);
    EXPECT_EQ(session.workspace.field.inclination, 62.5F);
    EXPECT_EQ(session.workspace.field.declination, -10);
    EXPECT_TRUE(read.mag_intensity && read.mag_inclination && read.mag_declination);
}

TEST_F(SessionTest, a_field_without_strength_is_ignored) {
    for (const char* text : {"0", "-50000", "strong", "", "1e-60", "1e300", "1e999", "nan"}) {
        keep("MagIntensity", text);
        Session session(prompts, settings());
        EXPECT_FALSE(session.start().mag_intensity) << text;
        EXPECT_EQ(session.workspace.field.intensity, 56000) << text;
    }
    EXPECT_THAT(prompts.messages, IsEmpty());
}

TEST_F(SessionTest, an_inclination_that_is_no_number_is_ignored) {
    keep("MagInclination", "down");
    keep("MagDeclination", "1,5");
    Session session(prompts, settings());
    session.start();
    EXPECT_EQ(session.workspace.field.inclination, -65);
    EXPECT_EQ(session.workspace.field.declination, -4);
}

TEST_F(SessionTest, the_axes_are_shown_unless_the_setting_is_zero) {
    const auto axes = [&](std::string_view text) {
        keep("DisplayAxes", text);
        return Session(prompts, settings()).start().display_axes;
    };
    EXPECT_EQ(axes("1"), true);
    EXPECT_EQ(axes("-1"), true);
    EXPECT_EQ(axes("0"), false);
    EXPECT_EQ(axes("yes"), std::nullopt);
}

TEST_F(SessionTest, only_a_size_above_the_least_one_is_restored) {
    const auto size = [&](std::string_view text) {
        keep("FormSize", text);
        return Session(prompts, settings()).start().form_size;
    };
    EXPECT_FALSE(size(" 9630; 11220")) << "both must exceed the limits";
    EXPECT_FALSE(size(" 9631; 11220"));
    EXPECT_FALSE(size(" 9630; 11221"));
    EXPECT_FALSE(size("wide; 20000"));
    EXPECT_FALSE(size("20000"));
    EXPECT_FALSE(size(""));
    const auto restored = size(" 9631; 11220.5");
    ASSERT_TRUE(restored);
    EXPECT_EQ(restored->width, 9631);
    EXPECT_EQ(restored->height, 11220.5);
}

TEST_F(SessionTest, goes_to_the_working_folder) {
    folder.write("survey/x", "");
    keep("WorkingDirectory", folder.path("survey"));
    Session(prompts, settings()).start();
    EXPECT_EQ(current_folder(), folder.path("survey"));
}

TEST_F(SessionTest, a_working_folder_that_is_gone_leaves_the_current_one) {
    folder.write("survey/x", "");
    keep("WorkingDirectory", folder.path("survey/gone"));
    Session(prompts, settings()).start();
    EXPECT_EQ(current_folder(), folder.folder()) << "not the folder above it either";
    keep("WorkingDirectory", "");
    Session(prompts, settings()).start();
    EXPECT_EQ(current_folder(), folder.folder());
}

TEST_F(SessionTest, the_exit_keeps_what_the_next_start_reads) {
    {
        Session session(prompts, settings());
        session.start();
        folder.write("survey/x", "");
        change_to_folder(folder.path("survey"));
        session.save_at_exit({"47000", "60", "2.5", 12000, 13005, false});
    }
    EXPECT_EQ(settings().get(settings_section, "FormSize"), "12000; 13005");
    change_to_folder(folder.folder());
    Session next(prompts, settings());
    const StartSettings read = next.start();
    EXPECT_EQ(next.workspace.field.intensity, 47000);
    EXPECT_EQ(next.workspace.field.inclination, 60);
    EXPECT_EQ(next.workspace.field.declination, 2.5F);
    EXPECT_EQ(read.display_axes, false);
    ASSERT_TRUE(read.form_size);
    EXPECT_EQ(read.form_size->width, 12000);
    EXPECT_EQ(read.form_size->height, 13005);
    EXPECT_EQ(current_folder(), folder.path("survey"));
}

TEST_F(SessionTest, a_blank_inclination_keeps_no_field) {
    Session session(prompts, settings());
    session.start();
    session.save_at_exit({"47000", "  ", "2.5", 12000, 13000, true});
    EXPECT_EQ(kept("MagIntensity"), "<no value>");
    EXPECT_EQ(kept("MagInclination"), "<no value>");
    EXPECT_EQ(kept("MagDeclination"), "<no value>");
    EXPECT_EQ(kept("DisplayAxes"), "1");
}

TEST_F(SessionTest, a_restored_working_folder_is_the_sessions_own) {
    Session without(prompts, settings());
    without.start();
    without.restore_directory();
    EXPECT_TRUE(without.first_dialog) << "there is none to go back to";
    prompts.open_paths = {"/a.axm"};
    without.open_file_dialog({});
    EXPECT_TRUE(without.first_dialog) << "only a data file sets the folder";
    without.save_directory();
    without.restore_directory();
    EXPECT_FALSE(without.first_dialog);

    Session with(prompts, settings());
    with.start();
    EXPECT_FALSE(with.first_dialog) << "the start went back to the folder";
}

TEST_F(SessionTest, the_values_of_a_body_become_the_defaults_of_new_ones) {
    Session session(prompts, settings());
    session.start();
    Workspace& workspace = session.workspace;
    workspace.body_count = 2;
    ModelBody& body = workspace.body(1);
    body.type = pipe;
    body.dip.value = 62.25F;
    body.width.value = 80.005F;
    body.depth_extent.value = 120;
    body.length.value = 1e6F;
    body.density.value = 2.8F;
    body.susc.value = 12345.6F;
    body.colour = 255;
    session.save_body_defaults(1);
    EXPECT_EQ(kept("Type"), "16");
    EXPECT_EQ(kept("Dip"), "62.3");
    EXPECT_EQ(kept("Thick"), "80.01");
    EXPECT_EQ(kept("Depth"), "120.00");
    EXPECT_EQ(kept("StrikeLength"), "1000000.00");
    EXPECT_EQ(kept("Density"), "2.800");
    EXPECT_EQ(kept("Susc"), "12345.600");
    EXPECT_EQ(kept("Colour"), "255");

    workspace.body(2).type = thick_sheet;
    initialise_body(workspace, 2, session.settings, prompts);
    EXPECT_EQ(workspace.body(2).type, pipe);
    EXPECT_EQ(workspace.body(2).density.value, 2.8F);
    EXPECT_EQ(workspace.body(2).colour, 255);
}

TEST_F(SessionTest, without_a_current_body_no_defaults_are_kept) {
    Session session(prompts, settings());
    session.start();
    session.save_body_defaults(0);
    session.save_body_defaults(1);
    EXPECT_EQ(kept("Type"), "<no value>");
}

TEST_F(SessionTest, the_working_folder_is_kept_and_returned_to_by_command) {
    Session session(prompts, settings());
    session.start();
    session.save_directory();
    folder.write("survey/x", "");
    change_to_folder(folder.path("survey"));
    session.restore_directory();
    EXPECT_EQ(current_folder(), folder.folder());
}

TEST(ZoomFactors, rise_from_the_whole_to_ten_times) {
    EXPECT_EQ(zoom_factors.front(), 1);
    EXPECT_EQ(zoom_factors.back(), 10);
    for (std::size_t i = 1; i < zoom_factors.size(); ++i) EXPECT_GT(zoom_factors[i], zoom_factors[i - 1]);
}

}  // namespace
}  // namespace anomalis
