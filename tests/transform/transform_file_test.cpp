#include <gtest/gtest.h>
#include <string>

#include "support/scripted_prompts.h"
#include "support/temp_folder.h"
#include "transform/transform.h"

namespace anomalis::transform {
namespace {

class TransformFile : public ::testing::Test {
  protected:
    int load(const std::string& contents) {
        return load_transform_file(transform, folder.write("points.crd", contents), prompts);
    }

    TempFolder folder;
    ScriptedPrompts prompts;
    PointTransform transform;
};

TEST_F(TransformFile, is_written_line_by_line) {
    transform.x_origin = 1.5;
    transform.y_origin = -2;
    transform.x_offset = 500000.25;
    transform.new_y2 = 1e20;
    transform.elevation_shift = -0.5;
    EXPECT_EQ(save_transform_file(transform, folder.path("points.crd"), prompts), 0);
    EXPECT_EQ(folder.read("points.crd"),
              "     Station        Depth      East       North\r\n"
              " 1.5 -2  500000.25  0\r\n"
              " 1  1  1  1E+20\r\n"
              "-0.5  1\r\n");
}

TEST_F(TransformFile, what_was_written_reads_back) {
    ASSERT_EQ(define_transform_from_points({1, 2, 300, 400, 11, 7, 250, 444.5, 5, 4}, transform, prompts), 0);
    ASSERT_EQ(save_transform_file(transform, folder.path("a.crd"), prompts), 0);
    PointTransform read;
    ASSERT_EQ(load_transform_file(read, folder.path("a.crd"), prompts), 0);
    EXPECT_EQ(read, transform);
}

TEST_F(TransformFile, five_tokens_lose_the_first) {
    ASSERT_EQ(load("title\r\n1 10 20 100 200\r\n2 20 20 120 200\r\n7 8\r\n"), 0);
    EXPECT_EQ(transform.x_origin, 10);
    EXPECT_EQ(transform.y_offset, 200);
    EXPECT_EQ(transform.original_x2, 20);
    EXPECT_EQ(transform.x_scale, 2);
    EXPECT_EQ(transform.elevation_shift, 0);  // the third line has a station number: the fourth is not read
    EXPECT_EQ(transform.elevation_scale, 0);
}

TEST_F(TransformFile, each_line_is_counted_by_itself) {
    ASSERT_EQ(load("title\n1 10 20 100 200\n20 20 120 200\n7 8\n"), 0);
    EXPECT_EQ(transform.x_origin, 10);
    EXPECT_EQ(transform.original_x2, 20);
    EXPECT_EQ(transform.elevation_shift, 7);
    EXPECT_EQ(transform.elevation_scale, 8);
}

TEST_F(TransformFile, tabs_and_commas_split_too) {
    ASSERT_EQ(load("title\n10,20\t100;200\n20 20 120 200\n7, 8"), 0);
    EXPECT_EQ(transform.y_offset, 200);
    EXPECT_EQ(transform.elevation_scale, 8);
}

TEST_F(TransformFile, original_points_less_than_a_metre_apart_are_refused) {
    const PointTransform before = transform;
    EXPECT_EQ(load("t\n0 0 0 0\n0.5 0 100 0\n0 1\n"), -1);
    EXPECT_EQ(prompts.messages,
              std::vector<std::string>{"The start and end grid coordinates cannot be identical"});
    EXPECT_EQ(transform, before);
}

TEST_F(TransformFile, new_points_less_than_a_metre_apart_are_refused) {
    EXPECT_EQ(load("t\n0 0 0 0\n100 0 0.5 0\n0 1\n"), -1);
    EXPECT_EQ(prompts.messages,
              std::vector<std::string>{"The start and end map coordinates cannot be identical"});
    EXPECT_EQ(transform, PointTransform{});
}

TEST_F(TransformFile, a_truncated_file_is_refused_at_every_line) {
    for (const char* contents : {"", "t\n", "t\n0 0 0 0\n", "t\n0 0 0 0", "\x89PNG\r\n\x1a\n"}) {
        prompts.messages.clear();
        EXPECT_EQ(load(contents), -1) << contents;
        EXPECT_EQ(prompts.messages.size(), 1U) << contents;
        EXPECT_EQ(transform, PointTransform{});
    }
}

TEST_F(TransformFile, a_number_out_of_range_tells_file_and_line) {
    EXPECT_EQ(load("t\n0 0 0 0\n1e999 0 100 0\n0 1\n"), -1);
    EXPECT_EQ(prompts.messages,
              std::vector<std::string>{"An error occurred while reading the transform file: Overflow (" +
                                       folder.path("points.crd") + ", line 3)"});
}

TEST_F(TransformFile, a_missing_file_and_a_folder_are_told) {
    EXPECT_EQ(load_transform_file(transform, folder.path("none.crd"), prompts), -1);
    EXPECT_TRUE(
        prompts.told("An error occurred while reading the transform file: No such file or directory"));
    EXPECT_EQ(load_transform_file(transform, folder.folder(), prompts), -1);
    EXPECT_TRUE(prompts.told("Is a directory"));
    EXPECT_EQ(save_transform_file(transform, folder.path("none/a.crd"), prompts), -1);
    EXPECT_TRUE(prompts.told("An error occurred while saving the transform file: "));
}

TEST_F(TransformFile, cut_anywhere_it_is_read_or_refused_and_never_half_taken) {
    ASSERT_EQ(define_transform_from_points({1, 2, 300, 400, 11, 7, 250, 444.5, 5, 4}, transform, prompts), 0);
    const std::string whole = transform_file_text(transform);
    const PointTransform before;
    for (std::size_t size = 0; size < whole.size(); ++size) {
        PointTransform read;
        prompts.messages.clear();
        const int status = load_transform_file(read, folder.write("cut.crd", whole.substr(0, size)), prompts);
        EXPECT_EQ(status == 0, prompts.messages.empty()) << size;
        EXPECT_TRUE(status == 0 || read == before) << size;
    }
}

TEST_F(TransformFile, bytes_that_are_no_text_are_refused) {
    for (const std::string& contents :
         {std::string(1000, '\0'), std::string(100'000, '\xFF'),
          std::string("\x7F"
                      "ELF\x02\x01\x01\n\n\n\n"),
          std::string("t\n\"\n\"\n\"\n"), std::string("t\nnan inf nan inf\n-inf nan 1e5x 0x1\n1 1\n")}) {
        prompts.messages.clear();
        EXPECT_EQ(load(contents), -1);
        EXPECT_EQ(prompts.messages.size(), 1U);
        EXPECT_EQ(transform, PointTransform{});
    }
}

}  // namespace
}  // namespace anomalis::transform
