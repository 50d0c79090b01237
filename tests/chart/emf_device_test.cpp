#include "chart/emf_device.h"

#include <cmath>
#include <gtest/gtest.h>
#include <set>
#include <stdexcept>

#include "chart/emf_file.h"
#include "chart_rig.h"
#include "emf_reader.h"

namespace anomalis::chart {
namespace {

constexpr int refinement = 8;

std::string metafile_of(Rig& rig) {
    EmfDevice device(rig.device.width(), rig.device.height(), rig.device);
    device.begin_page();
    if (rig.chart.DrawTo(device, OutputTarget::metafile, device.whole(),
                         SurfaceSize{rig.device.width(), rig.device.height()}) != 0)
        throw std::runtime_error("there is no room for the chart");
    device.end_page();
    return device.bytes();
}

TEST(EmfDevice, frame_window_and_description_are_those_of_the_surface) {
    Rig rig;
    rig.make_a();
    rig.chart.DisplayChart();
    const std::string bytes = metafile_of(rig);
    const EmfReader emf(bytes);
    EXPECT_EQ(emf.i32(24), 0);
    EXPECT_EQ(emf.i32(32), 23810);
    EXPECT_EQ(emf.i32(36), 7937);
    const auto window = emf.of_kind(9);
    ASSERT_EQ(window.size(), 1U);
    EXPECT_EQ(emf.i32(window[0].at + 8), 2812 * refinement);
    EXPECT_EQ(emf.i32(window[0].at + 12), 937 * refinement);
    const auto viewport = emf.of_kind(11);
    ASSERT_EQ(viewport.size(), 1U);
    EXPECT_EQ(emf.i32(viewport[0].at + 8), 762);
    EXPECT_EQ(emf.i32(viewport[0].at + 12), 254);

    std::string description;
    for (std::uint32_t i = 0; i < emf.u32(60); ++i) {
        const char c = bytes[emf.u32(64) + 2 * i];
        description += c == '\0' ? '|' : c;
    }
    EXPECT_EQ(description, "Vistaro|EMF output||");
    EXPECT_TRUE(emf_is_whole(bytes));
}

TEST(EmfDevice, every_line_lies_in_the_frame_and_the_picture_stands_upright) {
    Rig rig;
    rig.make_a();
    rig.register_series({0.0, 3700.0, 7400.0}, {-300.0, 0.0, 700.0});
    rig.chart.DisplayChart();
    const std::string bytes = metafile_of(rig);
    const EmfReader emf(bytes);
    const double scale = 300.0 / 1440.0 * refinement;
    bool curve = false;
    for (const auto& record : emf.lines()) {
        const auto points = emf.points(record);
        for (const auto& p : points) {
            EXPECT_GE(p.x, 0);
            EXPECT_LE(p.x, 2812 * refinement + refinement);
            EXPECT_GE(p.y, 0);
            EXPECT_LE(p.y, 937 * refinement + refinement);
        }
        if (points.size() != 3) continue;
        curve = true;
        EXPECT_EQ(points[0].x, std::lround(772.5 * scale));
        EXPECT_EQ(points[0].y, std::lround((4500.0 - 577.5) * scale));
        EXPECT_EQ(points[2].x, std::lround(12727.5 * scale));
        EXPECT_EQ(points[2].y, std::lround((4500.0 - 3675.0) * scale));
    }
    EXPECT_TRUE(curve);
}

TEST(EmfDevice, texts_stand_on_their_base_line_at_the_size_of_the_screen) {
    Rig rig;
    rig.make_a();
    rig.chart.DisplayChart();
    const std::string bytes = metafile_of(rig);
    const EmfReader emf(bytes);
    std::set<std::string> words;
    const double scale = 300.0 / 1440.0 * refinement;
    for (const auto& record : emf.texts()) {
        words.insert(emf.words(record));
        if (emf.words(record) != "Residual") continue;
        const double left = (772.5 + 12727.5) / 2.0 - 4.0 * 90.0;
        const double base = 4500.0 - 1.25 * 165.0 + 0.2 * 165.0;
        EXPECT_EQ(emf.text_at(record).x, std::lround(left * scale));
        EXPECT_EQ(emf.text_at(record).y, std::lround((4500.0 - base) * scale));
    }
    for (const char* text : {"Residual", "Distance", "nT", "-200", "600", "0", "7000"})
        EXPECT_TRUE(words.contains(text)) << text;

    std::set<std::int32_t> turns;
    for (const auto& font : emf.of_kind(82)) {
        EXPECT_EQ(emf.i32(font.at + 12), -std::lround(8.0 * 20.0 * scale));
        turns.insert(emf.i32(font.at + 20));
    }
    EXPECT_EQ(turns, (std::set<std::int32_t>{-900, 0, 900}));
}

TEST(EmfDevice, letters_of_any_alphabet_go_as_utf_16) {
    RecordingDevice measure(1500.0, 1500.0);
    EmfDevice device(1500.0, 1500.0, measure);
    device.begin_page();
    device.text({100.0, 100.0}, 0.0, "\xC3\x85\xCE\xB1\xE5\x9C\xB0\xF0\x9F\x8C\x8D\xFF", Font{}, black);
    device.end_page();
    const EmfReader emf(device.bytes());
    ASSERT_EQ(emf.texts().size(), 1U);
    const auto record = emf.texts()[0];
    const std::size_t at = record.at + emf.u32(record.at + 48);
    std::vector<std::uint16_t> units(emf.u32(record.at + 44));
    std::memcpy(units.data(), device.bytes().data() + at, units.size() * 2);
    EXPECT_EQ(units, (std::vector<std::uint16_t>{0xC5, 0x3B1, 0x5730, 0xD83C, 0xDF0D, 0xFFFD}));
}

TEST(EmfDevice, every_text_tells_how_far_each_letter_moves_on) {
    RecordingDevice measure(9000.0, 1500.0);
    EmfDevice device(9000.0, 1500.0, measure);
    device.begin_page();
    const std::string text = "Residual Magnetic Field of the eastern half of the line";
    device.text({100.0, 100.0}, 0.0, text, Font{}, black);
    device.end_page();
    const EmfReader emf(device.bytes());
    ASSERT_EQ(emf.texts().size(), 1U);
    const std::vector<std::int32_t> steps = emf.advances(emf.texts()[0]);
    ASSERT_EQ(steps.size(), text.size());
    long reached = 0;
    for (std::size_t i = 0; i < steps.size(); ++i) {
        reached += steps[i];
        const double width = measure.measure(text.substr(0, i + 1), Font{}).width;
        EXPECT_EQ(reached, std::lround(width * 300.0 / 1440.0 * refinement));
    }
}

TEST(EmfDevice, a_long_curve_is_whole_though_it_is_cut_into_records) {
    Rig rig;
    rig.make_plain();
    std::vector<double> xs(20000);
    std::vector<double> ys(20000);
    for (std::size_t i = 0; i < xs.size(); ++i) {
        xs[i] = 7400.0 * static_cast<double>(i) / 19999.0;
        ys[i] = i % 2 == 0 ? 0.0 : 500.0;
    }
    rig.register_series(xs, ys);
    rig.chart.DisplayChart();
    const std::string bytes = metafile_of(rig);
    const EmfReader emf(bytes);
    std::size_t segments = 0;
    long end = -1;
    for (const auto& record : emf.lines()) {
        const auto points = emf.points(record);
        EXPECT_TRUE(end < 0 || points.front().x == end);
        end = points.back().x;
        segments += points.size() - 1;
    }
    EXPECT_EQ(segments, 19999U);
}

TEST(EmfDevice, pens_are_as_wide_as_on_screen_and_never_vanish) {
    RecordingDevice measure(1500.0, 1500.0);
    EmfDevice device(1500.0, 1500.0, measure);
    device.begin_page();
    const std::array<Point, 2> line{Point{0.0, 0.0}, Point{100.0, 100.0}};
    device.polyline(line, {black, 2.0, LineStyle::dash_dot});
    device.polyline(line, {black, 0.0, LineStyle::solid});
    device.end_page();
    const EmfReader emf(device.bytes());
    const auto pens = emf.of_kind(95);
    ASSERT_EQ(pens.size(), 2U);
    EXPECT_EQ(emf.u32(pens[0].at + 28) & 0xF, 3U);
    EXPECT_EQ(emf.u32(pens[0].at + 32), static_cast<std::uint32_t>(2.0 * 15.0 * 300.0 / 1440.0 * refinement));
    EXPECT_EQ(emf.u32(pens[1].at + 32), 1U);
}

TEST(EmfDevice, a_cut_or_changed_metafile_is_not_whole) {
    Rig rig;
    rig.make_a();
    rig.chart.DisplayChart();
    const std::string bytes = metafile_of(rig);
    ASSERT_TRUE(emf_is_whole(bytes));
    for (const std::size_t length : {std::size_t{0}, std::size_t{88}, bytes.size() / 8 * 4, bytes.size() - 4})
        EXPECT_FALSE(emf_is_whole(bytes.substr(0, length))) << length;
    std::string changed = bytes;
    changed[44 - 4] = 'X';
    EXPECT_FALSE(emf_is_whole(changed));
}

TEST(EmfDevice, a_chart_without_room_makes_no_metafile) {
    Rig rig;
    rig.make_a();
    rig.device.resize(300.0, 300.0);
    EXPECT_THROW(metafile_of(rig), std::exception);
}

TEST(EmfDevice, the_screen_is_as_it_was_after_an_export) {
    Rig rig;
    rig.make_a();
    rig.register_series({0.0, 7400.0}, {0.0, 500.0});
    rig.chart.DisplayChart();
    const Rect plot = rig.chart.PlotRect();
    const std::size_t drawn = rig.device.entries.size();
    const SurfaceMapping mapping = rig.device.mapping;
    metafile_of(rig);
    EXPECT_EQ(rig.chart.PlotRect(), plot);
    EXPECT_EQ(rig.device.entries.size(), drawn);
    EXPECT_EQ(rig.device.mapping, mapping);
}

}  // namespace
}  // namespace anomalis::chart
