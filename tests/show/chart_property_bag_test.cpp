#include "show/chart_property_bag.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <limits>

#include "chart/ax_grapher.h"
#include "core/settings.h"
#include "support/scripted_prompts.h"
#include "support/temp_folder.h"

namespace anomalis::show {
namespace {

TEST(ChartPropertyBag, a_chart_comes_back_from_the_file) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    {
        chart::AX_Grapher chart;
        chart.Title("  Residual = \"raw\"\\1, \xCE\xB3 ");
        chart.XAxisType(1);
        chart.XBaseLog(2.0);
        chart.XAxisCutoff(0.25);
        chart.YAxisMin(-0.1);
        chart.YAxisMax(1.0 / 3.0);
        chart.XAxisLeftMargin(82.5F);
        chart.MarkerSize(10);
        chart.DisplayAxes(false);
        chart.FONT(chart::Font{"Liberation Sans", 7.5, false, true});
        Settings settings(folder.path("chart.conf"), prompts);
        ChartPropertyBag bag(settings, "Section chart");
        chart.WriteProperties(bag);
        EXPECT_EQ(bag.status(), 0);
    }
    Settings settings(folder.path("chart.conf"), prompts);
    chart::AX_Grapher chart;
    chart.ReadProperties(ChartPropertyBag(settings, "Section chart"));
    EXPECT_EQ(chart.Title(), "  Residual = \"raw\"\\1, \xCE\xB3 ");
    EXPECT_EQ(chart.XAxisType(), 1);
    EXPECT_EQ(chart.XBaseLog(), 2.0);
    EXPECT_EQ(chart.XAxisCutoff(), 0.25);
    EXPECT_EQ(chart.YAxisMin(), -0.1);
    EXPECT_NEAR(chart.YAxisMax(), 1.0 / 3.0, 1e-15);
    EXPECT_EQ(chart.XAxisLeftMargin(), 82.5F);
    EXPECT_EQ(chart.MarkerSize(), 10);
    EXPECT_FALSE(chart.DisplayAxes());
    EXPECT_EQ(chart.FONT(), (chart::Font{"Liberation Sans", 7.5, false, true}));
    EXPECT_TRUE(prompts.messages.empty());
}

TEST(ChartPropertyBag, keys_are_found_in_any_letters) {
    Settings settings;
    settings.set("Plan", "XAXISTYPE", "1");
    ChartPropertyBag bag(settings, "Plan");
    EXPECT_EQ(bag.read_property("xAxisType", chart::PropertyValue(0)), chart::PropertyValue(1));
    bag.write_property("XAxisType", chart::PropertyValue(0), nullptr);
    EXPECT_EQ(settings.keys("Plan"), std::vector<std::string>{"XAXISTYPE"});
    EXPECT_EQ(bag.read_property("XAxisType", chart::PropertyValue(7)), chart::PropertyValue(0));
}

TEST(ChartPropertyBag, charts_with_sections_of_their_own_do_not_meet) {
    Settings settings;
    chart::AX_Grapher first, second;
    first.Title("first");
    second.Title("second");
    ChartPropertyBag one(settings, "Chart 1"), two(settings, "Chart 2");
    first.WriteProperties(one);
    second.WriteProperties(two);
    chart::AX_Grapher again;
    again.ReadProperties(one);
    EXPECT_EQ(again.Title(), "first");
    again.ReadProperties(two);
    EXPECT_EQ(again.Title(), "second");
}

TEST(ChartPropertyBag, a_default_is_left_out_but_never_hides_behind_an_older_value) {
    Settings settings;
    ChartPropertyBag bag(settings, "Chart");
    const chart::PropertyValue usual(true);
    bag.write_property("DisplayAxes", usual, &usual);
    EXPECT_TRUE(settings.keys("Chart").empty());
    bag.write_property("DisplayAxes", chart::PropertyValue(false), &usual);
    bag.write_property("DisplayAxes", usual, &usual);
    EXPECT_EQ(bag.read_property("DisplayAxes", chart::PropertyValue(false)), usual);
    bag.write_property("MarkerSize", chart::PropertyValue(35), nullptr);
    EXPECT_EQ(settings.get("Chart", "MarkerSize"), "35") << "values without a default are always stored";
}

TEST(ChartPropertyBag, an_entry_of_the_wrong_kind_counts_as_none) {
    Settings settings;
    settings.set("Chart", "XAxisMin", "far west");
    settings.set("Chart", "ChartType", "1.5");
    settings.set("Chart", "Font", ";0;;");
    settings.set("Chart", "XBaseLog", "0");
    ChartPropertyBag bag(settings, "Chart");
    const chart::Font usual;
    EXPECT_EQ(bag.read_property("XAxisMin", chart::PropertyValue(-99999.0)), chart::PropertyValue(-99999.0));
    EXPECT_EQ(bag.read_property("ChartType", chart::PropertyValue(1)), chart::PropertyValue(1));
    EXPECT_EQ(bag.read_property("Font", chart::PropertyValue(usual)), chart::PropertyValue(usual));
    chart::AX_Grapher chart;
    chart.ReadProperties(bag);
    EXPECT_EQ(chart.XBaseLog(), 10.0);
}

TEST(ChartPropertyBag, an_unchanged_chart_leaves_the_file_alone) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    Settings settings(folder.path("chart.conf"), prompts);
    ChartPropertyBag bag(settings, "Chart");
    const chart::AX_Grapher chart;
    chart.WriteProperties(bag);
    const std::string before = folder.read("chart.conf");
    ASSERT_FALSE(before.empty());
    std::filesystem::remove(folder.path("chart.conf"));
    chart.WriteProperties(bag);
    EXPECT_FALSE(std::filesystem::exists(folder.path("chart.conf")));
}

TEST(ChartPropertyBag, a_file_that_cannot_be_written_is_told_once_and_the_session_goes_on) {
    const TempFolder folder;
    folder.write("file", "in the way");
    ScriptedPrompts prompts;
    Settings settings(folder.path("file/chart.conf"), prompts);
    ChartPropertyBag bag(settings, "Chart");
    chart::AX_Grapher chart;
    chart.Title("kept in memory");
    chart.WriteProperties(bag);
    EXPECT_EQ(bag.status(), -1);
    EXPECT_EQ(prompts.messages.size(), 1U);
    chart::AX_Grapher again;
    again.ReadProperties(bag);
    EXPECT_EQ(again.Title(), "kept in memory");
}

}  // namespace
}  // namespace anomalis::show
