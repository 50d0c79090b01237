#include "show/figure_page.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>

#include "edit/line_sample.h"
#include "model/refresh_model.h"
#include "show/figure_content.h"
#include "support/fit_records.h"
#include "support/recording_device.h"

namespace anomalis::show {
namespace {

constexpr double mm = chart::units_per_inch / 25.4;

/// Letters as wide and high as those of a common font.
class FontDevice : public chart::RecordingDevice {
  public:
    FontDevice() : chart::RecordingDevice(10000, 10000) {}
    chart::TextExtent measure(std::string_view text, const chart::Font& font) const override {
        const auto letters = std::count_if(
            text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; });
        const double em = font.size * 20;
        return {(font.bold ? 0.68 : 0.6) * em * static_cast<double>(letters), 0.93 * em, 0.24 * em};
    }
};

FigureContent content_of(int bodies, bool long_names, bool intervals) {
    FigureContent content;
    const std::string tail =
        long_names ? std::string(180, 'W') + " of a survey far in the north " + std::string(90, 'x') : "";
    content.title = "Dyke swarm" + tail;
    content.line = "Line 5690 of osborne.csv, EPSG:32754" + tail;
    content.facts = {{"Field", "56000 nT, inclination -65°, declination -4°; IGRF-14" + tail},
                     {"Formulas", "exact"},
                     {"Scale", "distance 1 : 25400, section with a vertical exaggeration of 2.0x"},
                     {"Magnetics", "rms 13.09 nT over 412 stations, 2.6 times the noise of 5.0 nT"},
                     {"Gravity", "rms 0.013 mGal over 412 stations"}};
    content.table.heading = "Bodies";
    for (const char* caption : {"Distance", "Elevation", "Burial", "Strike", "Dip", "Width", "Depth ext.",
                                "Length", "Suscept.", "Density c.", "Plunge", "Rem. Q", "Rem. incl."})
        content.table.columns.push_back({caption, "m"});
    for (int number = 1; number <= bodies; ++number) {
        FigureBody body{
            0x123456, std::to_string(number), "Body " + std::to_string(number) + tail, "Thick sheet", {}};
        for (std::size_t i = 0; i < content.table.columns.size(); ++i)
            body.cells.push_back({"123456.7", intervals ? "-12.5 +130.2" : ""});
        content.table.bodies.push_back(body);
    }
    content.table.notes = {"Elevation: of the top. ∞: without end." + tail};
    content.origin = "dyke_swarm.axm   Anomalis 0.1.0" + tail;
    content.date = "2026-11-22 15:40";
    return content;
}

bool overlap(const chart::Rect& a, const chart::Rect& b) {
    constexpr double touching = 0.5;
    return a.x_low < b.x_high - touching && b.x_low < a.x_high - touching && a.y_low < b.y_high - touching &&
           b.y_low < a.y_high - touching;
}

/// Every text inside the margins, and nothing over anything else.
void expect_sound(const FigureSheet& sheet, chart::SurfaceSize size) {
    std::vector<chart::Rect> boxes;
    if (sheet.charts) boxes.push_back(*sheet.charts);
    for (const Swatch& swatch : sheet.swatches) boxes.push_back(swatch.box);
    for (const PlacedText& text : sheet.texts) {
        EXPECT_GE(text.font.size, 7) << text.text;
        boxes.push_back(text.box());
    }
    constexpr double margin = 12 * mm - 1;
    for (const chart::Rect& box : boxes) {
        EXPECT_GE(box.x_low, margin);
        EXPECT_LE(box.x_high, size.width - margin);
        EXPECT_GE(box.y_low, margin);
        EXPECT_LE(box.y_high, size.height - margin);
    }
    for (std::size_t i = 0; i < boxes.size(); ++i)
        for (std::size_t j = 0; j < i; ++j) {
            const std::size_t texts = boxes.size() - sheet.texts.size();
            ASSERT_FALSE(overlap(boxes[i], boxes[j])) << sheet.texts[i - texts].text << " / "
                                                      << (j >= texts ? sheet.texts[j - texts].text : "a box");
        }
}

bool has_text(const FigureSheet& sheet, std::string_view start) {
    return std::ranges::any_of(sheet.texts,
                               [&](const PlacedText& text) { return text.text.starts_with(start); });
}

/// How many bodies a sheet lists.
std::size_t listed(const FigureSheet& sheet) {
    return sheet.swatches.size();
}

}  // namespace

TEST(FigurePage, nothing_lies_over_anything_else_on_any_paper) {
    const FontDevice measure;
    for (const PaperName& paper : paper_names())
        for (const bool landscape : {false, true})
            for (const int bodies : {0, 1, 12, 60})
                for (const int kind : {0, 1, 2, 3}) {
                    const auto size = sheet_size(paper.paper, landscape);
                    const auto sheets = lay_out_figure(content_of(bodies, kind % 2 == 1, kind > 1), size,
                                                       bodies % 5 == 0, measure);
                    SCOPED_TRACE(testing::Message()
                                 << paper.name << (landscape ? " landscape " : " portrait ") << bodies
                                 << " bodies, kind " << kind);
                    for (const FigureSheet& sheet : sheets) expect_sound(sheet, size);
                    ASSERT_TRUE(sheets.front().charts);
                    EXPECT_GE(sheets.front().charts->height(), 0.37 * size.height);
                    EXPECT_NEAR(sheets.front().charts->width(), size.width - 24 * mm, 1);
                }
}

TEST(FigurePage, a_long_table_goes_on_to_sheets_of_its_own_and_loses_no_body) {
    const FontDevice measure;
    for (const bool landscape : {false, true}) {
        const auto sheets =
            lay_out_figure(content_of(60, false, true), sheet_size(Paper::a4, landscape), true, measure);
        ASSERT_GE(sheets.size(), 3U);
        EXPECT_EQ(listed(sheets.front()), 0U);
        EXPECT_TRUE(has_text(sheets.front(), "60, see the table that follows"));
        std::set<std::string> names;
        for (std::size_t i = 1; i < sheets.size(); ++i) {
            EXPECT_FALSE(sheets[i].charts);
            EXPECT_TRUE(has_text(sheets[i], i == 1 ? "Bodies" : "Bodies, continued"));
            EXPECT_TRUE(has_text(sheets[i], "Distance")) << "each sheet has the heads";
            for (const PlacedText& text : sheets[i].texts)
                if (text.text.starts_with("Body ")) names.insert(text.text);
        }
        EXPECT_EQ(names.size(), 60U);
        EXPECT_TRUE(
            has_text(sheets.back(), "2026-11-22 15:40   page " + std::to_string(sheets.size()) + " of "));
        EXPECT_TRUE(has_text(sheets.back(), "Elevation: of the top"));
    }
}

TEST(FigurePage, one_sheet_says_how_many_bodies_it_left_out) {
    const FontDevice measure;
    const auto sheets =
        lay_out_figure(content_of(60, false, true), sheet_size(Paper::a4, false), false, measure);
    ASSERT_EQ(sheets.size(), 1U);
    const std::size_t there = listed(sheets[0]);
    EXPECT_GT(there, 3U);
    EXPECT_TRUE(has_text(sheets[0], std::to_string(60 - there) + " more bodies, in a PDF"));
    const auto few = lay_out_figure(content_of(5, false, true), sheet_size(Paper::a4, false), false, measure);
    EXPECT_EQ(listed(few.at(0)), 5U);
    EXPECT_FALSE(has_text(few[0], "0 more"));
}

TEST(FigurePage, columns_without_room_are_named) {
    const FontDevice measure;
    FigureContent content = content_of(3, true, true);
    for (int i = 0; i < 4; ++i) {
        content.table.columns.push_back({"Column " + std::to_string(i), "m"});
        for (FigureBody& body : content.table.bodies) body.cells.push_back({"123456.7", ""});
    }
    const auto sheets = lay_out_figure(content, sheet_size(Paper::letter, false), true, measure);
    bool named = false;
    for (const FigureSheet& sheet : sheets) {
        expect_sound(sheet, sheet_size(Paper::letter, false));
        named = named || has_text(sheet, "No room here for: ");
    }
    EXPECT_TRUE(named);
}

TEST(FigurePage, long_texts_end_with_an_ellipsis_and_never_within_a_letter) {
    const FontDevice measure;
    FigureContent content = content_of(1, false, false);
    content.title = std::string();
    for (int i = 0; i < 300; ++i) content.title += "é";
    const auto sheets = lay_out_figure(content, sheet_size(Paper::a4, false), true, measure);
    std::string last;
    for (const PlacedText& text : sheets[0].texts)
        if (text.text.find("é") != std::string::npos) last = text.text;
    EXPECT_TRUE(last.ends_with("é…"));
}

TEST(FigurePage, draws_what_it_laid_out) {
    FontDevice paper;
    const auto sheets =
        lay_out_figure(content_of(2, false, false), sheet_size(Paper::a4, false), true, paper);
    draw_sheet(sheets[0], paper);
    EXPECT_EQ(paper.texts().size(), sheets[0].texts.size());
    EXPECT_EQ(paper.of_kind(chart::RecordingDevice::Kind::polygon_fill).size(), 2U);
}

namespace {

struct Model : edit::LineSample {
    Model() {
        add_body(1260, 60).name = "Dyke";
        load();
        model::refresh_model(session);
    }
    FigureContent content(const FigureScale& scale = {1, 2, 0}) {
        return figure_content(workspace(), scale, "", "today");
    }
    std::string fact(const std::string& caption) {
        for (const FigureFact& fact : content().facts)
            if (fact.caption == caption) return fact.text;
        return "";
    }
    std::string cell(const std::string& column, bool interval = false) {
        const FigureTable table = content().table;
        for (std::size_t i = 0; i < table.columns.size(); ++i)
            if (table.columns[i].caption == column)
                return interval ? table.bodies.at(0).cells.at(i).interval
                                : table.bodies.at(0).cells.at(i).value;
        return "no such column";
    }
};

}  // namespace

TEST(FigureContent, tells_line_field_formulas_misfit_and_scale) {
    Model model;
    model.workspace().source = {
        "osborne.csv", "5690",   "EPSG:32754", "1990-07-01", "IGRF-14 at the middle of the line",
        false,         igrf_kept};
    model.workspace().mag.noise = 5;
    EXPECT_EQ(model.content().title, "Line 5690");
    EXPECT_EQ(model.content().line,
              "Line 5690 of osborne.csv, EPSG:32754, 1990-07-01, 101 stations over 2.50 km");
    EXPECT_EQ(model.fact("Field"),
              "56000 nT, inclination -65°, declination -4°; IGRF-14 at the middle of the line");
    EXPECT_EQ(model.fact("Formulas"), formulas_name(model.workspace().formulas));
    EXPECT_TRUE(model.fact("Magnetics").starts_with("rms ")) << model.fact("Magnetics");
    EXPECT_TRUE(model.fact("Magnetics").ends_with(" times the noise of 5.0 nT"));
    EXPECT_TRUE(model.fact("Gravity").starts_with("rms "));
    // 1 surface unit is 1/1440 inch.
    const auto scale = figure_content(model.workspace(), {2.25, 4.5, 0}, "", "").facts.at(2);
    EXPECT_EQ(scale.text, "distance 1 : 25200, section with a vertical exaggeration of 2.0x");
    const auto plan = figure_content(model.workspace(), {2.25, 0, 0.5}, "", "").facts.at(2);
    EXPECT_EQ(plan.text, "distance 1 : 25200, plan 1 : 113000");
    model.workspace().source.field_origin.clear();
    EXPECT_TRUE(model.fact("Field").ends_with("; given by hand"));
    model.workspace().model_file = "/survey/north.axm";
    EXPECT_EQ(model.content().title, "north");
    EXPECT_TRUE(model.content().origin.starts_with("north.axm   Anomalis "));
}

TEST(FigureContent, the_table_has_what_the_bodies_have) {
    Model model;
    model.workspace().body(1).length.value = 0;
    EXPECT_EQ(model.cell("Length"), "∞");
    EXPECT_EQ(model.cell("Elevation"), "60.0");
    EXPECT_EQ(model.cell("Plunge"), "no such column");
    EXPECT_EQ(model.cell("Rem. Q"), "no such column");
    model.workspace().body(1).plunge.value = 12;
    model.workspace().body(1).rem_q.value = 0.5;
    EXPECT_EQ(model.cell("Plunge"), "12.0");
    EXPECT_EQ(model.cell("Rem. Q"), "0.500");
    model.workspace().definition.grav_column = 0;
    EXPECT_EQ(model.cell("Density c."), "no such column");
    EXPECT_EQ(model.fact("Gravity"), "");
    model.workspace().body_count = 0;
    EXPECT_EQ(model.fact("Bodies"), "none");
    EXPECT_TRUE(model.content().table.bodies.empty());
}

TEST(FigureContent, intervals_stand_under_the_values_of_the_fit_in_force_alone) {
    Model model;
    ModelBody& body = model.workspace().body(1);
    model.workspace().fit = sample_fit(model.workspace());
    EXPECT_TRUE(model.cell("Elevation", true).starts_with("±5.")) << model.cell("Elevation", true);
    EXPECT_EQ(model.cell("Width", true), "<140");
    EXPECT_EQ(model.cell("Dip", true), "at limit");
    EXPECT_EQ(model.cell("Strike", true), "");
    EXPECT_TRUE(model.fact("Fit").starts_with("least squares over 0 to 4321 m, 2026-11-22 06:30:15"));
    body.top.value += 1;
    EXPECT_EQ(model.cell("Elevation", true), "");
    EXPECT_EQ(model.fact("Fit"), "none: the model was changed since the fit of 2026-11-22 06:30:15");
}

TEST(FigureContent, names_from_files_steer_nothing) {
    Model model;
    model.workspace().body(1).name = "Dyke\x1B[2J\n";
    EXPECT_EQ(model.content().table.bodies.at(0).name, "Dyke\\u{1B}[2J\\n");
}

}  // namespace anomalis::show
