#include <gtest/gtest.h>
#include <set>

#include "chart/emf_device.h"
#include "chart/gallery.h"
#include "chart_rig.h"

namespace anomalis {
namespace {

constexpr double page_width = 18000.0;
constexpr double page_height = 20000.0;

TEST(Gallery, shows_every_marker_and_every_kind_of_axis) {
    RecordingDevice page(page_width, page_height);
    ASSERT_EQ(draw_gallery(page, OutputTarget::screen, screen_mapping(page_height)), 0);
    std::set<int> styles;
    for (const auto& entry : page.of_kind(Kind::markers)) styles.insert(entry.style);
    EXPECT_EQ(styles, (std::set<int>{1, 2, 3, 4, 5, 6, 7, 8}));
    std::set<std::string> texts;
    for (const std::string& text : page.texts()) texts.insert(text);
    for (const char* text : {"A", "Z", "1x10^4", "-1000", "1x2^4", "0.001", "0.25", "turned text"})
        EXPECT_TRUE(texts.contains(text)) << text;
    EXPECT_FALSE(page.of_kind(Kind::polygon_fill).empty());
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
}  // namespace anomalis
