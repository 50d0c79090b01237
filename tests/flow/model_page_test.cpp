#include "flow/model_page.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <utility>

#include "core/failure.h"
#include "edit/line_sample.h"
#include "edit/zoom.h"
#include "flow/model_figure.h"
#include "show/ensemble_shapes.h"
#include "support/ensemble_sample.h"
#include "support/recording_device.h"

namespace anomalis::flow {

namespace {

constexpr chart::SurfaceSize sheet{15000, 12000};

std::unique_ptr<chart::DrawingDevice> measuring_surface(chart::SurfaceSize size) {
    return std::make_unique<chart::RecordingDevice>(size.width, size.height);
}

/// Everything drawn, in page coordinates: a recording device keeps what it is told before the mapping.
struct Sheet : chart::RecordingDevice {
    Sheet() : chart::RecordingDevice(sheet.width, sheet.height) {}
    void set_mapping(const chart::SurfaceMapping& next) override {
        chart::RecordingDevice::set_mapping(next);
        mappings.push_back(next);
    }
    std::vector<chart::SurfaceMapping> mappings;
};

struct Page : edit::LineSample {
    Page() {
        add_body(1260, 60).name = "Dyke";
        add_body(1807, 20);
        load();
    }
    void draw(const char* view) {
        ModelPage page(session, sheet, *show::find_page_view(view), measuring_surface);
        page.draw(paper, chart::OutputTarget::metafile, chart::screen_mapping(sheet.height));
    }
    /// The text that begins so.
    std::optional<chart::RecordingDevice::Entry> caption(std::string_view start) const {
        for (const auto& entry : paper.of_kind(chart::RecordingDevice::Kind::text))
            if (entry.text.starts_with(start)) return entry;
        return std::nullopt;
    }
    Sheet paper;
};

}  // namespace

TEST(ModelPage, holds_every_chart_of_the_line) {
    Page page;
    page.draw("section");
    for (const char* title : {"Residual Magnetic Field", "Calculated Vertical Gradient", "Residual Gravity",
                              "Calculated Gravity Vertical Gradient", "Model Section", "Distance (m)"})
        EXPECT_NE(page.paper.find_text(title), nullptr) << title;
    EXPECT_EQ(page.paper.find_text("Plan"), nullptr);
    EXPECT_TRUE(page.prompts.messages.empty());
}

TEST(ModelPage, has_the_ghosts_and_the_fan_of_an_ensemble_in_force) {
    Page page;
    const auto drawn = [&] {
        page.paper.forget();
        page.draw("section");
        return std::pair(std::ranges::count_if(page.paper.entries,
                                               [](const auto& entry) {
                                                   return entry.kind ==
                                                              chart::RecordingDevice::Kind::polyline &&
                                                          entry.pen.colour == show::ghost_grey;
                                               }),
                         std::ranges::count_if(page.paper.entries, [](const auto& entry) {
                             return entry.kind == chart::RecordingDevice::Kind::polygon_fill &&
                                    entry.pen.colour == show::fan_green;
                         }));
    };
    EXPECT_EQ(drawn(), (std::pair<long, long>(0, 0)));
    page.workspace().ensemble = std::make_shared<const Ensemble>(ensemble_about(page.workspace()));
    const auto [ghosts, fans] = drawn();
    EXPECT_GE(ghosts, 30 * 3) << "the lower ends of endless bodies lie on the frame";
    EXPECT_EQ(fans, 1);
}

TEST(ModelPage, how_well_each_channel_fits_stands_below_the_charts) {
    Page page;
    page.workspace().mag.noise = 5;
    page.draw("section");
    const auto mag = page.caption("Magnetics: rms ");
    const auto grav = page.caption("Gravity: rms ");
    ASSERT_TRUE(mag && grav);
    EXPECT_NE(mag->text.find(" nT over 101 stations, "), std::string::npos) << mag->text;
    EXPECT_NE(mag->text.find(" times the noise of 5.0 nT"), std::string::npos) << mag->text;
    EXPECT_GT(mag->points.at(0).y, grav->points.at(0).y);
    Page one;
    one.workspace().definition.grav_column = 0;
    one.load();
    one.draw("curves");
    EXPECT_TRUE(one.caption("Magnetics: rms "));
    EXPECT_FALSE(one.caption("Gravity: rms "));
}

TEST(ModelPage, the_charts_stand_one_under_the_other_inside_the_sheet) {
    Page page;
    page.draw("section");
    const double page_bottom = chart::screen_mapping(sheet.height).device_offset_y;
    double last = -1e9;
    for (const chart::SurfaceMapping& mapping : page.paper.mappings) {
        EXPECT_GE(mapping.device_offset_y, last) << "from the top down";
        EXPECT_LE(mapping.device_offset_y, page_bottom);
        EXPECT_GT(mapping.device_offset_x, 0);
        last = mapping.device_offset_y;
    }
    EXPECT_GE(page.paper.mappings.size(), 5U);
}

TEST(ModelPage, no_body_is_highlighted_and_the_label_is_as_in_the_file) {
    Page page;
    page.draw("section");
    for (const auto& fill : page.paper.of_kind(chart::RecordingDevice::Kind::polygon_fill))
        EXPECT_NE(fill.pen.colour, 0xFF00FF);
    EXPECT_EQ(page.paper.find_text("Dyke"), nullptr);
    page.workspace().display.show_body_label = 1;
    page.draw("section");
    EXPECT_NE(page.paper.find_text("Dyke"), nullptr);
}

TEST(ModelPage, the_plan_stands_in_the_place_of_the_section) {
    Page page;
    page.draw("plan");
    EXPECT_NE(page.paper.find_text("Plan"), nullptr);
    EXPECT_EQ(page.paper.find_text("Model Section"), nullptr);
    EXPECT_NE(page.paper.find_text("Residual Gravity"), nullptr);
}

TEST(ModelPage, one_chart_alone_has_the_sheet_and_its_distances) {
    const std::vector<std::pair<const char*, const char*>> charts{
        {"mag", "Residual Magnetic Field"},
        {"mag-gradient", "Calculated Vertical Gradient"},
        {"grav", "Residual Gravity"},
        {"grav-gradient", "Calculated Gravity Vertical Gradient"},
        {"section-only", "Model Section"}};
    for (const auto& [view, title] : charts) {
        Page page;
        page.draw(view);
        for (const auto& [other, other_title] : charts)
            EXPECT_EQ(page.paper.find_text(other_title) != nullptr, other_title == title)
                << view << " " << other;
        EXPECT_NE(page.paper.find_text("Distance (m)"), nullptr) << view;
        EXPECT_TRUE(page.prompts.messages.empty());
    }
}

TEST(ModelPage, the_plan_stands_alone_and_the_curves_without_a_section) {
    Page plan;
    plan.draw("plan-only");
    EXPECT_NE(plan.paper.find_text("Plan"), nullptr);
    EXPECT_EQ(plan.paper.find_text("Residual Gravity"), nullptr);
    Page curves;
    curves.draw("curves");
    EXPECT_NE(curves.paper.find_text("Residual Gravity"), nullptr);
    EXPECT_EQ(curves.paper.find_text("Model Section"), nullptr);
    EXPECT_EQ(curves.paper.find_text("Plan"), nullptr);
}

TEST(ModelPage, a_chart_without_data_is_told) {
    Page page;
    page.workspace().definition.grav_column = 0;
    EXPECT_THROW(page.draw("grav"), Fault);
    EXPECT_THROW(page.draw("grav-gradient"), Fault);
    page.draw("curves");
    EXPECT_EQ(page.paper.find_text("Residual Gravity"), nullptr);
}

TEST(ModelPage, a_sheet_too_small_for_anything_is_left_blank_or_told) {
    Page page;
    ModelPage small(page.session, {240, 240}, show::page_views[0], measuring_surface);
    small.draw(page.paper, chart::OutputTarget::metafile, chart::screen_mapping(240));
    EXPECT_EQ(page.paper.find_text("Model Section"), nullptr);
}

namespace {

/// What was drawn, place by place on the sheet, whatever the mapping of its chart.
struct Paper : chart::RecordingDevice {
    Paper() : chart::RecordingDevice(1, 1) {}
    void markers(const chart::MarkerShape& shape, std::span<const chart::Point> anchors) override {
        chart::RecordingDevice::markers(shape, anchors);
        for (chart::Point& at : entries.back().points) at = mapping.to_device(at);
    }
};

struct Figure : edit::LineSample {
    Figure() {
        add_body(1260, 60).name = "Dyke";
        add_body(1807, 20);
        load();
    }
    FigureChoice choice(bool landscape = true) const {
        return {show::sheet_size(show::Paper::a4, landscape), "Dykes of the north", std::nullopt, true};
    }
    void draw(const FigureChoice& what) {
        ModelFigure figure(session, what, measuring_surface);
        // A device unit is a surface unit.
        chart::SurfaceMapping whole = chart::screen_mapping(what.size.height, 1, 1);
        paper.forget();
        figure.draw(0, paper, chart::OutputTarget::printer, whole);
    }
    /// How far apart the reference points of the two bodies are drawn, across.
    double between_bodies() const {
        std::vector<double> places;
        for (const auto& entry : paper.of_kind(chart::RecordingDevice::Kind::markers))
            if (entry.pen.colour == chart::black && entry.points.size() == 1)
                places.push_back(entry.points[0].x);
        return places.size() == 2 ? places[1] - places[0] : 0;
    }
    std::string text(std::string_view start) const {
        for (const std::string& text : paper.texts())
            if (text.starts_with(start)) return text;
        return "";
    }
    ShownView shown() {
        ShownView view{workbench.view, {}};
        edit::reset_view(workspace(), view.view, prompts);
        view.view.current_body = 1;
        view.view.highlight_on = true;
        return view;
    }
    Paper paper;
};

}  // namespace

TEST(ModelFigure, holds_charts_facts_and_table_on_one_sheet) {
    Figure figure;
    figure.draw(figure.choice());
    for (const char* words : {"Dykes of the north", "Residual Magnetic Field", "Calculated Vertical Gradient",
                              "Residual Gravity", "Model Section", "Field", "Formulas", "Scale", "Magnetics",
                              "Gravity", "Bodies", "Dyke", "Elevation"})
        EXPECT_NE(figure.paper.find_text(words), nullptr) << words;
    EXPECT_TRUE(figure.prompts.messages.empty());
}

TEST(ModelFigure, the_scale_is_that_of_the_paper) {
    for (const bool landscape : {false, true}) {
        Figure figure;
        figure.draw(figure.choice(landscape));
        const double metres = 1807 - 1260;
        const double on_paper = figure.between_bodies() / chart::units_per_inch * 0.0254;
        ASSERT_GT(on_paper, 0);
        const std::string scale = figure.text("distance 1 : ");
        EXPECT_NEAR(std::stod(scale.substr(13)), metres / on_paper, 0.006 * metres / on_paper) << scale;
        EXPECT_NE(scale.find(", section with a vertical exaggeration of "), std::string::npos);
    }
}

TEST(ModelFigure, shows_what_is_on_show_without_its_highlight) {
    Figure figure;
    FigureChoice choice = figure.choice();
    choice.as_shown = figure.shown();
    figure.draw(choice);
    const double whole = figure.between_bodies();
    EXPECT_GT(whole, 0);
    for (const auto& entry : figure.paper.entries) EXPECT_NE(entry.pen.colour, 0xFF00FF);
    edit::choose_zoom(figure.workspace(), choice.as_shown->view, 1.5F, figure.prompts);
    figure.draw(choice);
    EXPECT_NEAR(figure.between_bodies(), 1.5 * whole, 0.02 * whole);
    choice.as_shown = figure.shown();
    choice.as_shown->zooms[edit::chart_section] = {1.5, 0.6, 1, 0.5};
    figure.draw(choice);
    EXPECT_NEAR(figure.between_bodies(), 1.5 * whole, 0.02 * whole) << "zoomed by hand";
    choice.as_shown = figure.shown();
    choice.as_shown->view.show_plan = true;
    figure.draw(choice);
    EXPECT_NE(figure.paper.find_text("Plan"), nullptr);
    EXPECT_EQ(figure.paper.find_text("Model Section"), nullptr);
    EXPECT_NE(figure.text("distance 1 : ").find(", plan 1 : "), std::string::npos);
    EXPECT_EQ(figure.workbench.view.show_plan, false) << "the view of the window stays";
}

TEST(ModelFigure, a_line_of_one_channel_and_without_bodies_has_a_figure_too) {
    Figure figure;
    figure.workspace().definition.mag_column = 0;
    figure.workspace().body_count = 0;
    figure.load();
    figure.draw(figure.choice(false));
    EXPECT_EQ(figure.paper.find_text("Magnetics"), nullptr);
    EXPECT_EQ(figure.paper.find_text("Field"), nullptr);
    EXPECT_NE(figure.paper.find_text("none"), nullptr);
}

TEST(ModelFigure, without_a_line_or_on_a_scrap_of_paper_there_is_none) {
    Figure figure;
    FigureChoice choice = figure.choice();
    choice.size = {3000, 3000};
    EXPECT_THROW(figure.draw(choice), Fault);
    drop_stations(figure.workspace());
    EXPECT_THROW(figure.draw(figure.choice()), Fault);
}

}  // namespace anomalis::flow
