#include "gallery.h"

#include <gtest/gtest.h>
#include <set>

#include "chart/emf_device.h"
#include "chart/emf_file.h"
#include "chart_rig.h"

namespace anomalis::chart {
namespace {

constexpr double page_width = 18000.0;
constexpr double page_height = 24000.0;

TEST(Gallery, shows_every_marker_and_every_kind_of_axis) {
    RecordingDevice page(page_width, page_height);
    ASSERT_EQ(draw_gallery(page, OutputTarget::screen, screen_mapping(page_height)), 0);
    std::set<int> styles;
    for (const auto& entry : page.of_kind(Kind::markers)) styles.insert(entry.style);
    EXPECT_EQ(styles, (std::set<int>{1, 2, 3, 4, 5, 6, 7, 8}));
    std::set<std::string> texts;
    for (const std::string& text : page.texts()) texts.insert(text);
    for (const char* text :
         {"A", "Z", "1x10^4", "-1000", "1x2^4", "0.001", "0.25", "turned text", "\u0394T (nT)"})
        EXPECT_TRUE(texts.contains(text)) << text;
    EXPECT_FALSE(page.of_kind(Kind::polygon_fill).empty());
}

TEST(Gallery, its_charts_can_be_shown_one_by_one) {
    ASSERT_GE(gallery_chart_count(), 12);
    std::set<std::string> titles;
    for (int number = 1; number <= gallery_chart_count(); ++number) {
        Rig rig;
        fill_gallery_chart(number, rig.chart);
        EXPECT_EQ(rig.chart.DisplayChart(), 0) << number;
        titles.insert(rig.chart.Title());
    }
    EXPECT_EQ(static_cast<int>(titles.size()), gallery_chart_count());
    Rig rig;
    const std::string before = rig.chart.Title();
    for (const int number : {-1, 0, gallery_chart_count() + 1}) fill_gallery_chart(number, rig.chart);
    EXPECT_EQ(rig.chart.Title(), before);
}

TEST(Gallery, is_one_whole_metafile) {
    const RecordingDevice measure(page_width, page_height);
    EmfDevice page(page_width, page_height, measure);
    page.begin_page();
    ASSERT_EQ(draw_gallery(page, OutputTarget::metafile, page.whole()), 0);
    page.end_page();
    EXPECT_TRUE(emf_is_whole(page.bytes()));
}

TEST(Gallery, a_page_without_room_is_told) {
    RecordingDevice page(300.0, 300.0);
    EXPECT_EQ(draw_gallery(page, OutputTarget::screen, screen_mapping(300.0)), -1);
}

}  // namespace
}  // namespace anomalis::chart
