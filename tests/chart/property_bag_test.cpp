#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "chart/memory_property_bag.h"
#include "chart_rig.h"

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

TEST(ChartProperties, come_back_from_a_bag_and_from_its_json) {
    AX_Grapher chart;
    set_everything(chart);
    MemoryPropertyBag bag;
    chart.WriteProperties(bag);
    AX_Grapher copy;
    copy.ReadProperties(bag);
    expect_everything(copy, "Serif; \"B\"");
    EXPECT_EQ(copy.Title(), chart.Title());

    MemoryPropertyBag restored;
    ASSERT_EQ(restored.from_json(bag.to_json()), 0);
    AX_Grapher third;
    third.ReadProperties(restored);
    expect_everything(third, "Serif; \"B\"");
    EXPECT_EQ(third.Title(), chart.Title());
    EXPECT_EQ(restored.to_json(), bag.to_json());
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

TEST(ChartProperties, entries_of_the_wrong_kind_are_as_none) {
    MemoryPropertyBag bag;
    ASSERT_EQ(bag.from_json(R"({"ChartType": "two", "MarkerSize": 2.5, "Title": 7, "Enabled": 1, "Font": "x",
                               "XAxisLeftMargin": 1e300, "BackColor": 99999999999, "YAxisMin": true})"),
              0);
    AX_Grapher chart;
    chart.ReadProperties(bag);
    EXPECT_EQ(chart.ChartType(), 1);
    EXPECT_EQ(chart.MarkerSize(), 35);
    EXPECT_EQ(chart.Title(), "");
    EXPECT_TRUE(chart.Enabled());
    EXPECT_EQ(chart.FONT(), Font{});
    EXPECT_EQ(chart.XAxisLeftMargin(), 0.0F);
    EXPECT_EQ(chart.BackColor(), button_face);
    EXPECT_EQ(chart.YAxisMin(), -99999.0);
}

TEST(MemoryPropertyBag, reads_json_as_others_write_it) {
    MemoryPropertyBag bag;
    ASSERT_EQ(
        bag.from_json(
            " {\t\"title\" :\"a\\u00e9\\ud83c\\udf0d\\/\\n\" ,\r\n\"ChartType\":2,\"YAxisMin\":-1.5e3,"
            "\"Enabled\":false,\"Font\":{\"size\":9,\"name\":\"Mono\",\"bold\":false},\"none\":null}\n"),
        0);
    AX_Grapher chart;
    chart.ReadProperties(bag);
    EXPECT_EQ(chart.Title(), "a\xC3\xA9\xF0\x9F\x8C\x8D/\n");
    EXPECT_EQ(chart.ChartType(), 2);
    EXPECT_EQ(chart.YAxisMin(), -1500.0);
    EXPECT_FALSE(chart.Enabled());
    EXPECT_EQ(chart.FONT().name, "Mono");
    EXPECT_FALSE(bag.has("none"));
    EXPECT_EQ(bag.from_json("{}"), 0);
    EXPECT_FALSE(bag.has("Title"));
}

TEST(MemoryPropertyBag, refuses_what_is_no_such_object_and_keeps_what_it_has) {
    MemoryPropertyBag bag;
    ASSERT_EQ(bag.from_json(R"({"Title": "kept"})"), 0);
    for (const char* text : {"",
                             "   ",
                             "[]",
                             "{",
                             "}",
                             "{\"a\"}",
                             "{\"a\":}",
                             "{\"a\":1,}",
                             "{\"a\":1}x",
                             "{\"a\":1 \"b\":2}",
                             "{a:1}",
                             "{\"a\":nul}",
                             "{\"a\":+1}",
                             "{\"a\":1e999}",
                             "{\"a\":nan}",
                             "{\"a\":\"x}",
                             "{\"a\":\"\\q\"}",
                             "{\"a\":\"\\u12\"}",
                             "{\"a\":\"\\ud83cx\"}",
                             "{\"a\":\"\\udf0d\"}",
                             "{\"a\":[1]}",
                             "{\"a\":{\"size\":0}}",
                             "{\"a\":{\"b\":{}}}",
                             "{\"a\":\"\x01\"}",
                             "{\"a\":\"\\"}) {
        EXPECT_EQ(bag.from_json(text), -1) << text;
        EXPECT_TRUE(bag.has("Title")) << text;
    }
}

TEST(PropertyText, values_go_to_lines_of_text_and_back) {
    for (const PropertyValue& value :
         {PropertyValue{true}, PropertyValue{false}, PropertyValue{-2147483633}, PropertyValue{0.1F},
          PropertyValue{-99999.0}, PropertyValue{1.0 / 3.0}, PropertyValue{std::string("a;b")},
          PropertyValue{Font{"Noto Sans", 9.5, false, true}}}) {
        const std::string text = property_to_text(value);
        const PropertyValue back = property_from_text(text, value);
        if (std::holds_alternative<double>(value))
            EXPECT_NEAR(std::get<double>(back), std::get<double>(value), 1e-14);
        else
            EXPECT_TRUE(back == value) << text;
    }
    EXPECT_EQ(property_to_text(Font{"a;b", 8.0, true, false}), "a b;8;Yes;No");
}

TEST(PropertyText, text_that_does_not_fit_gives_the_fallback) {
    const Font font;
    for (const char* text : {"", "x", "Mono;9", "Mono;0;Yes;No", ";9;Yes;No", "Mono;nine;Yes;No"})
        EXPECT_TRUE(property_from_text(text, font) == PropertyValue{font}) << text;
    for (const char* text : {"", "x", "1e999", "nan", "2.5", "99999999999"})
        EXPECT_TRUE(property_from_text(text, 7) == PropertyValue{7}) << text;
    EXPECT_TRUE(property_from_text("", true) == PropertyValue{true});
    EXPECT_TRUE(property_from_text("1e300", 2.0F) == PropertyValue{2.0F});
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
