#include <gtest/gtest.h>

#include "chart_rig.h"
#include "memory_property_bag.h"

namespace anomalis::chart {
namespace {

/// A bag that writes down what it is asked.
class AskedBag : public PropertyBag {
  public:
    PropertyValue read_property(std::string_view key, const PropertyValue& fallback) const override {
        asked.emplace_back(key);
        return fallback;
    }
    void write_property(std::string_view key, const PropertyValue&, const PropertyValue* usual) override {
        written.emplace_back(key);
        always.push_back(usual == nullptr);
    }
    mutable std::vector<std::string> asked;
    std::vector<std::string> written;
    std::vector<bool> always;
};

TEST(ChartProperties, are_read_and_written_in_one_order) {
    AX_Grapher chart;
    AskedBag bag;
    chart.WriteProperties(bag);
    chart.ReadProperties(bag);
    const std::vector<std::string> keys{"BackColor",
                                        "ForeColor",
                                        "Enabled",
                                        "Font",
                                        "BackStyle",
                                        "BorderStyle",
                                        "ChartType",
                                        "DisplayLegend",
                                        "DisplayAxes",
                                        "DisplayBorder",
                                        "ZoomEnabled",
                                        "AxisLabellingLocation",
                                        "YAxisLabellingPosition",
                                        "XAxisLabellingPosition",
                                        "PlotPoints",
                                        "Title",
                                        "TitleFont",
                                        "YAxisMin",
                                        "YAxisMax",
                                        "YTickInterval",
                                        "YAxisType",
                                        "YAxisCutoff",
                                        "YAxisLabel",
                                        "YAxisTopMargin",
                                        "YAxisBottomMargin",
                                        "XAxisMin",
                                        "XAxisMax",
                                        "XTickInterval",
                                        "XAxisType",
                                        "XAxisCutoff",
                                        "XAxisLabel",
                                        "XAxisLeftMargin",
                                        "XAxisRightMargin",
                                        "DataNull",
                                        "MarkerSize",
                                        "XBaseLog",
                                        "YBaseLog"};
    EXPECT_EQ(bag.written, keys);
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const bool stored = keys[i].ends_with("AxisMin") || keys[i].ends_with("AxisMax") ||
                            keys[i].ends_with("Margin") || keys[i] == "DataNull" || keys[i] == "MarkerSize" ||
                            keys[i].ends_with("BaseLog");
        EXPECT_EQ(bag.always[i], stored) << keys[i];
    }
    ASSERT_GE(bag.asked.size(), keys.size());
    EXPECT_EQ(bag.asked[28], "xAxisType");
    EXPECT_EQ(bag.asked[29], "xAxisCutoff");
    EXPECT_EQ(bag.asked[21], "YAxisCutoff");
    EXPECT_EQ(bag.asked[0], "BackColor");
}

TEST(ChartProperties, start_at_their_defaults) {
    const AX_Grapher chart;
    EXPECT_EQ(chart.BackColor(), button_face);
    EXPECT_EQ(chart.ForeColor(), button_text);
    EXPECT_TRUE(chart.Enabled());
    EXPECT_EQ(chart.BackStyle(), 1);
    EXPECT_EQ(chart.BorderStyle(), 1);
    EXPECT_EQ(chart.ChartType(), 1);
    EXPECT_FALSE(chart.DisplayLegend());
    EXPECT_TRUE(chart.DisplayAxes());
    EXPECT_TRUE(chart.DisplayBorder());
    EXPECT_TRUE(chart.ZoomEnabled());
    EXPECT_FALSE(chart.PlotPoints());
    EXPECT_EQ(chart.AxisLabellingLocation(), 0);
    EXPECT_EQ(chart.XAxisLabellingPosition(), 2);
    EXPECT_EQ(chart.YAxisLabellingPosition(), 2);
    EXPECT_EQ(chart.XAxisMin(), -99999.0);
    EXPECT_EQ(chart.YAxisMax(), -99999.0);
    EXPECT_EQ(chart.XTickInterval(), 1.0);
    EXPECT_EQ(chart.YAxisType(), 0);
    EXPECT_EQ(chart.YAxisCutoff(), 1.0);
    EXPECT_EQ(chart.DataNull(), -999.0);
    EXPECT_EQ(chart.MarkerSize(), 35);
    EXPECT_EQ(chart.XBaseLog(), 10.0);
    EXPECT_TRUE(chart.FONT().bold);
    EXPECT_FALSE(chart.HasPlotDefined());
    EXPECT_EQ(chart.MouseMode(), 0);
}

void set_everything(AX_Grapher& chart) {
    chart.BackColor(1);
    chart.ForeColor(2);
    chart.Enabled(false);
    chart.FONT({"Serif; \"B\"", 9.5, false, true});
    chart.BackStyle(0);
    chart.BorderStyle(0);
    chart.ChartType(2);
    chart.DisplayLegend(true);
    chart.DisplayAxes(false);
    chart.DisplayBorder(false);
    chart.ZoomEnabled(false);
    chart.AxisLabellingLocation(1);
    chart.YAxisLabellingPosition(0);
    chart.XAxisLabellingPosition(1);
    chart.PlotPoints(true);
    chart.Title("Residual \xCE\x94T \\ \"x\"\n\t\x01");
    chart.TitleFont({"Mono", 12.0, true, false});
    chart.YAxisMin(-1.25e-7);
    chart.YAxisMax(3e20);
    chart.YTickInterval(0.125);
    chart.YAxisType(1);
    chart.YBaseLog(2.0);
    chart.YAxisCutoff(8.0);
    chart.YAxisLabel("nT");
    chart.YAxisTopMargin(1.5F);
    chart.YAxisBottomMargin(2.5F);
    chart.XAxisMin(0.1);
    chart.XAxisMax(7400.0);
    chart.XTickInterval(1000.0);
    chart.XAxisType(1);
    chart.XAxisCutoff(100.0);
    chart.XAxisLabel("Distance");
    chart.XAxisLeftMargin(3.5F);
    chart.XAxisRightMargin(4.5F);
    chart.DataNull(-99999.0);
    chart.MarkerSize(25);
}

void expect_everything(const AX_Grapher& chart, const std::string& font_name) {
    EXPECT_EQ(chart.BackColor(), 1);
    EXPECT_FALSE(chart.Enabled());
    EXPECT_EQ(chart.FONT(), (Font{font_name, 9.5, false, true}));
    EXPECT_EQ(chart.BackStyle(), 0);
    EXPECT_EQ(chart.ChartType(), 2);
    EXPECT_TRUE(chart.DisplayLegend());
    EXPECT_FALSE(chart.DisplayAxes());
    EXPECT_EQ(chart.XAxisLabellingPosition(), 1);
    EXPECT_TRUE(chart.PlotPoints());
    EXPECT_EQ(chart.TitleFont(), (Font{"Mono", 12.0, true, false}));
    EXPECT_EQ(chart.YAxisMin(), -1.25e-7);
    EXPECT_EQ(chart.YAxisMax(), 3e20);
    EXPECT_EQ(chart.YAxisType(), 1);
    EXPECT_EQ(chart.YBaseLog(), 2.0);
    EXPECT_EQ(chart.YAxisCutoff(), 8.0);
    EXPECT_EQ(chart.YAxisTopMargin(), 1.5F);
    EXPECT_EQ(chart.XAxisMin(), 0.1);
    EXPECT_EQ(chart.XAxisType(), 1);
    EXPECT_EQ(chart.XAxisCutoff(), 100.0);
    EXPECT_EQ(chart.XAxisLabel(), "Distance");
    EXPECT_EQ(chart.XAxisRightMargin(), 4.5F);
    EXPECT_EQ(chart.DataNull(), -99999.0);
    EXPECT_EQ(chart.MarkerSize(), 25);
}

TEST(ChartProperties, come_back_from_a_bag) {
    AX_Grapher chart;
    set_everything(chart);
    MemoryPropertyBag bag;
    chart.WriteProperties(bag);
    AX_Grapher copy;
    copy.ReadProperties(bag);
    expect_everything(copy, "Serif; \"B\"");
    EXPECT_EQ(copy.Title(), chart.Title());

    MemoryPropertyBag second;
    copy.WriteProperties(second);
    EXPECT_TRUE(second.entries() == bag.entries());
}

TEST(ChartProperties, values_at_their_default_are_left_out_and_stale_ones_removed) {
    AX_Grapher chart;
    MemoryPropertyBag bag;
    chart.Title("once");
    chart.WriteProperties(bag);
    EXPECT_TRUE(bag.has("title"));
    EXPECT_TRUE(bag.has("XAXISMIN"));
    EXPECT_FALSE(bag.has("ChartType"));
    chart.Title("");
    chart.WriteProperties(bag);
    EXPECT_FALSE(bag.has("Title"));
}

TEST(ChartProperties, a_base_of_0_in_the_bag_reads_back_as_10) {
    for (const double base : {0.0, -4.0, 1.0}) {
        MemoryPropertyBag bag;
        bag.write_property("XBaseLog", base, nullptr);
        bag.write_property("ybaselog", 2.0, nullptr);
        bag.write_property("XAXISCUTOFF", -7.0, nullptr);
        AX_Grapher chart;
        chart.XBaseLog(2.0);
        chart.ReadProperties(bag);
        EXPECT_EQ(chart.XBaseLog(), 10.0);
        EXPECT_EQ(chart.YBaseLog(), 2.0);
        EXPECT_EQ(chart.XAxisCutoff(), 1.0);
    }
}

TEST(ChartProperties, the_bag_is_told_of_each_setting_and_not_of_a_refused_base) {
    AX_Grapher chart;
    MemoryPropertyBag bag;
    chart.SetPropertyBag(&bag);
    set_everything(chart);
    for (const char* key :
         {"BackColor", "Font", "TitleFont", "YAxisCutoff", "YBaseLog", "XAxisLeftMargin", "MarkerSize"})
        EXPECT_EQ(bag.changes(key), 1) << key;
    chart.XBaseLog(0.0);
    chart.XBaseLog(1.0);
    EXPECT_EQ(bag.changes("XBaseLog"), 0);
    chart.WriteProperties(bag);
    EXPECT_EQ(bag.changes("BackColor"), 0);
}

TEST(ChartFiles, folders_of_paths) {
    EXPECT_EQ(AX_Grapher::file_dir("/data/line 5/a.emf"), "/data/line 5/");
    EXPECT_EQ(AX_Grapher::file_dir("line/a.emf"), "/line/");
    EXPECT_EQ(AX_Grapher::file_path("line/a.emf"), "line/");
    EXPECT_EQ(AX_Grapher::file_path("/a.emf"), "/");
    EXPECT_EQ(AX_Grapher::file_path("a.emf"), "");
    EXPECT_EQ(AX_Grapher::file_dir(""), "");
    EXPECT_EQ(AX_Grapher::change_dir(""), 0);
    EXPECT_EQ(AX_Grapher::change_dir("./"), 0);
    EXPECT_EQ(AX_Grapher::change_dir("a.emf"), 0);
    EXPECT_EQ(AX_Grapher::change_dir("/no such folder/a.emf"), -1);
}

}  // namespace
}  // namespace anomalis::chart
