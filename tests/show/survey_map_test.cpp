#include "show/survey_map.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <set>

#include "chart/ax_grapher.h"
#include "edit/colour_ramp.h"
#include "intake/survey/survey_index.h"
#include "show/survey_map_page.h"
#include "support/recording_device.h"

namespace anomalis::show {

namespace {

using Kind = chart::RecordingDevice::Kind;
constexpr float none = std::numeric_limits<float>::quiet_NaN();

/// Lines to the east, 200 m apart, of 101 places 10 m apart; the field rises with the place.
intake::SurveyIndex survey(int lines) {
    intake::SurveyIndex index;
    index.layout.path = "some/where/survey.csv";
    index.coordinate_system = "EPSG:32754";
    index.origin_east = 450000;
    index.origin_north = 7550000;
    for (int i = 0; i < lines; ++i) {
        intake::SurveyLineInfo line;
        line.name = std::to_string(5000 + 10 * i);
        line.stations = 101;
        line.length_m = 1000;
        line.mag_nT = intake::ValueRange{0, 100};
        line.pieces = {{0, 100}};
        for (int p = 0; p <= 100; ++p)
            line.track.push_back(
                {static_cast<float>(10 * p), static_cast<float>(200 * i), static_cast<float>(p)});
        index.lines.push_back(std::move(line));
    }
    return index;
}

struct MapSample {
    MapSample() {
        map.SetSurface(&map_device);
        bar.SetSurface(&bar_device);
        set_up_survey_map(map, bar);
    }
    chart::Point place(double east, double north) {
        return map.UserToSurface({450000 + east, 7550000 + north});
    }
    std::set<chart::Colour> colours(double width) const {
        std::set<chart::Colour> found;
        for (const auto& entry : map_device.of_kind(Kind::polyline))
            if (entry.pen.width == width) found.insert(entry.pen.colour);
        return found;
    }

    chart::RecordingDevice map_device{12000, 9000}, bar_device{1380, 9000};
    chart::AX_Grapher map, bar;
    SurveyMap survey_map{map, bar};
};

constexpr chart::Colour chosen_red = 0x2827D6;

std::size_t drawn_in(const chart::RecordingDevice& device, chart::Colour colour) {
    std::size_t count = 0;
    for (const auto& entry : device.of_kind(Kind::polyline)) count += entry.pen.colour == colour ? 1 : 0;
    return count;
}

}  // namespace

TEST(SurveyMap, a_metre_is_as_long_to_the_east_as_to_the_north) {
    MapSample sample;
    const auto index = survey(3);
    sample.survey_map.show(&index);
    EXPECT_NEAR(sample.map.XAxisScale() / sample.map.YAxisScale(), 1, 1e-9);
    const chart::Rect shown = sample.map.ViewLimits();
    EXPECT_LE(shown.x_low, 450000);
    EXPECT_GE(shown.x_high, 451000);
    EXPECT_GE(shown.y_high, 7550400);
}

TEST(SurveyMap, the_colours_run_over_the_field_without_its_spikes) {
    auto index = survey(2);
    index.lines[0].track[50].value = 1e6F;
    const MapColours colours = map_colours(index);
    EXPECT_NEAR(colours.low, 2, 1);
    EXPECT_NEAR(colours.high, 98, 1);
    EXPECT_EQ(colours.unit, "nT");
    EXPECT_TRUE(colours.cut);
}

TEST(SurveyMap, a_field_of_one_value_has_colours) {
    auto index = survey(1);
    for (auto& point : index.lines[0].track) point.value = 7;
    const MapColours colours = map_colours(index);
    EXPECT_LT(colours.low, 7);
    EXPECT_GT(colours.high, 7);
    EXPECT_FALSE(colours.cut);
}

TEST(SurveyMap, places_without_a_reading_are_grey_and_make_no_ramp) {
    auto index = survey(1);
    for (auto& point : index.lines[0].track) point.value = none;
    EXPECT_EQ(map_colours(index).unit, "");
    MapSample sample;
    sample.survey_map.show(&index);
    EXPECT_GT(drawn_in(sample.map_device, 0xB4B4B4), 0U);
    EXPECT_TRUE(sample.bar_device.of_kind(Kind::polygon_fill).empty());
}

TEST(SurveyMap, the_ramp_stands_beside_the_map_with_its_unit) {
    MapSample sample;
    auto index = survey(1);
    for (auto& line : index.lines) line.mag_nT.reset();
    sample.survey_map.show(&index);
    EXPECT_TRUE(sample.bar_device.find_text("mGal"));
    const auto fills = sample.bar_device.of_kind(Kind::polygon_fill);
    ASSERT_GE(fills.size(), 2U);
    EXPECT_EQ(fills.front().pen.colour, edit::ramp_colour(0));
    EXPECT_EQ(fills.back().pen.colour, edit::ramp_colour(1));
}

TEST(SurveyMap, ties_are_thinner_than_lines) {
    MapSample sample;
    auto index = survey(3);
    index.lines[1].tie = true;
    for (auto& point : index.lines[1].track) point.value = 0;
    sample.survey_map.show(&index);
    EXPECT_TRUE(sample.colours(1).contains(edit::ramp_colour(0)));
    EXPECT_TRUE(sample.colours(3).contains(edit::ramp_colour(1)));
    EXPECT_FALSE(sample.colours(1).contains(edit::ramp_colour(1)));
}

TEST(SurveyMap, a_track_stays_open_where_nobody_measured) {
    MapSample sample;
    auto index = survey(1);
    for (auto& point : index.lines[0].track) point.value = 1;
    for (std::size_t p = 50; p <= 100; ++p) index.lines[0].track[p].east += 5000;
    sample.survey_map.show(&index);
    for (const auto& entry : sample.map_device.of_kind(Kind::polyline))
        if (entry.pen.width == 3) {
            EXPECT_LT(entry.points.back().x - entry.points.front().x, 1000 * sample.map.XAxisScale());
        }
}

TEST(SurveyMap, choosing_a_line_draws_it_on_top_and_the_tracks_not_again) {
    MapSample sample;
    const auto index = survey(3);
    sample.survey_map.show(&index);
    EXPECT_EQ(drawn_in(sample.map_device, chosen_red), 0U);
    sample.map_device.forget();
    sample.survey_map.choose(1);
    EXPECT_GT(drawn_in(sample.map_device, chosen_red), 0U);
    EXPECT_EQ(drawn_in(sample.map_device, edit::ramp_colour(1)), 0U);
    EXPECT_FALSE(sample.map_device.of_kind(Kind::copy).empty());
}

TEST(SurveyMap, of_a_line_in_pieces_the_chosen_one_is_drawn_on_top) {
    MapSample sample;
    auto index = survey(1);
    index.lines[0].pieces = {{0, 50}, {51, 100}};
    sample.survey_map.show(&index);
    sample.map_device.forget();
    sample.survey_map.choose(0, 1);
    for (const auto& entry : sample.map_device.of_kind(Kind::polyline))
        if (entry.pen.colour == chosen_red) {
            EXPECT_GE(entry.points.front().x, sample.place(500, 0).x - 1);
        }
}

TEST(SurveyMap, a_click_chooses_the_nearest_line_within_reach) {
    MapSample sample;
    const auto index = survey(3);
    sample.survey_map.show(&index);
    const double metre = sample.map.XAxisScale();
    chart::Point at = sample.place(505, 200);
    EXPECT_EQ(sample.survey_map.line_at(at), 1U);
    at.y += 8 * 15;
    EXPECT_EQ(sample.survey_map.line_at(at), 1U);
    at.y += 92 * metre;
    EXPECT_FALSE(sample.survey_map.line_at(at).has_value());
    EXPECT_FALSE(sample.survey_map.line_at({-5, -5}).has_value());
}

TEST(SurveyMap, names_stand_where_there_is_room) {
    MapSample sample;
    const auto few = survey(3);
    sample.survey_map.show(&few);
    EXPECT_EQ(sample.survey_map.named().size(), 3U);
    const auto many = survey(400);
    sample.survey_map.show(&many);
    EXPECT_GT(sample.survey_map.named().size(), 3U);
    EXPECT_LT(sample.survey_map.named().size(), 400U);
    sample.survey_map.choose(123);
    EXPECT_EQ(sample.survey_map.named().front(), 123U);
}

TEST(SurveyMap, a_closer_look_finds_room_for_more_names) {
    MapSample sample;
    const auto index = survey(400);
    sample.survey_map.show(&index);
    const auto in_view = [&](std::size_t line) {
        return sample.map.ViewLimits().contains({450000, 7550000 + 200 * static_cast<double>(line)});
    };
    sample.map.SetZoomValues(8, 0.5, 8, 0.5);
    sample.survey_map.view_changed();
    std::size_t seen = 0;
    for (std::size_t i = 0; i < index.lines.size(); ++i) seen += in_view(i) ? 1 : 0;
    EXPECT_GT(sample.survey_map.named().size() * 3, seen);
}

TEST(SurveyMap, on_a_raster_places_in_one_pixel_are_one) {
    auto index = survey(1);
    auto& track = index.lines[0].track;
    track.clear();
    for (int i = 0; i < 100000; ++i) track.push_back({0.01F * static_cast<float>(i), 0, 1});
    MapSample sample;
    sample.map_device.raster = true;
    sample.survey_map.show(&index);
    std::size_t points = 0;
    for (const auto& entry : sample.map_device.of_kind(Kind::polyline)) points += entry.points.size();
    EXPECT_LT(points, 4000U);
}

TEST(SurveyMap, a_survey_of_one_place_or_none_is_shown) {
    MapSample sample;
    auto index = survey(1);
    index.lines[0].track.resize(1);
    sample.survey_map.show(&index, 0);
    EXPECT_TRUE(sample.map.HasPlotDefined());
    index.lines.clear();
    sample.survey_map.show(&index);
    sample.survey_map.show(nullptr);
    EXPECT_FALSE(sample.survey_map.line_at({6000, 4500}).has_value());
}

TEST(SurveyMapPage, the_caption_says_what_is_shown) {
    const auto index = survey(3);
    EXPECT_EQ(map_caption(index, 1), "survey.csv: 3 lines, 303 stations, EPSG:32754; line 5010");
    const auto one = survey(1);
    EXPECT_EQ(map_caption(one, {}), "survey.csv: 1 line, 101 stations, EPSG:32754");
}

TEST(SurveyMapPage, map_ramp_and_caption_stand_on_one_page) {
    const auto index = survey(3);
    SurveyMapPage page(index, 1, {24000, 15000}, [](chart::SurfaceSize size) {
        return std::make_unique<chart::RecordingDevice>(size.width, size.height);
    });
    chart::RecordingDevice device(24000, 15000);
    page.draw(device, chart::OutputTarget::metafile, chart::screen_mapping(15000));
    EXPECT_TRUE(device.find_text("nT"));
    EXPECT_TRUE(device.find_text("5010"));
    EXPECT_TRUE(device.find_text("survey.csv: 3 lines, 303 stations, EPSG:32754; line 5010"));
    EXPECT_GT(drawn_in(device, chosen_red), 0U);
}

}  // namespace anomalis::show
