#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <zlib.h>

#include "intake/formats/byte_source.h"
#include "intake/formats/line_stream.h"
#include "intake/formats/survey_file.h"

namespace anomalis::intake {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

std::string packed(std::string_view text) {
    z_stream stream{};
    deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY);
    std::string result(deflateBound(&stream, static_cast<uLong>(text.size())) + 32, '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = reinterpret_cast<Bytef*>(result.data());
    stream.avail_out = static_cast<uInt>(result.size());
    deflate(&stream, Z_FINISH);
    result.resize(stream.total_out);
    deflateEnd(&stream);
    return result;
}

std::string table(int rows) {
    std::string text = "line,east,north,mag\n";
    for (int i = 0; i < rows; ++i)
        text +=
            "10," + std::to_string(450000 + 7 * i) + ",7550000," + std::to_string((i * 7919) % 1000) + "\n";
    return text;
}

std::vector<std::string> lines_of(const std::string& path, Encoding encoding = Encoding::utf8) {
    LineStream stream(path, encoding);
    std::vector<std::string> lines;
    for (std::string_view line; stream.next(line);) lines.emplace_back(line);
    return lines;
}

TEST(SurveyBytes, packed_files_are_read_as_plain_ones_whatever_their_name) {
    const SurveyOf plain(table(3000)), zipped(packed(table(3000)), "survey.csv.gz"),
        unnamed(packed(table(3000)), "a.csv");
    EXPECT_TRUE(zipped.layout.packed);
    EXPECT_TRUE(unnamed.layout.packed);
    EXPECT_EQ(zipped.read()[Role::mag], plain.read()[Role::mag]);
    EXPECT_EQ(unnamed.read().rows(), 3000U);
}

TEST(SurveyBytes, each_of_a_pair_may_be_packed_and_its_endings_be_capitals) {
    const TempFolder folder;
    folder.write("a.DFN.gz", packed("DEFN 1 ST=RECD,RT=;LINE:I3;EAST:F9.1;NORTH:F10.1;MAG:F5.1\n"));
    const std::string rows =
        folder.write("a.Dat.GZ", packed(" 10 450000.0 7550000.0  5.0\n 10 450010.0 7550000.0  6.0\n"));
    folder.write("b.dfn", "DEFN 1 ST=RECD,RT=;OTHER:I3\n");
    folder.write("a.des", "COMM by hand\n");
    for (const char* name : {"a.DFN.gz", "a.Dat.GZ", "a.des"}) {
        const SurveyLayout layout = recognise_survey(folder.path(name));
        EXPECT_EQ(layout.format, "ASEG-GDF2") << name;
        EXPECT_EQ(layout.path, rows);
        EXPECT_TRUE(layout.packed);
        EXPECT_THAT(read_all(layout)[Role::mag], ElementsAre(5, 6));
    }
}

TEST(SurveyBytes, several_packed_parts_in_one_file_are_one_text) {
    const SurveyOf joined(packed(table(100)) + packed("10,460000,7550000,5\n") + std::string(512, '\0'),
                          "a.csv.gz");
    EXPECT_EQ(joined.read().rows(), 101U);
}

TEST(SurveyBytes, a_packed_file_that_ends_in_the_middle_or_is_broken_is_told) {
    const TempFolder folder;
    const std::string whole = packed(table(20000));
    const std::string cut = folder.write("cut.csv.gz", std::string_view(whole).substr(0, whole.size() / 2));
    std::string damaged = whole;
    for (std::size_t i = damaged.size() / 2; i < damaged.size() / 2 + 200; ++i) damaged[i] = '\x55';
    const std::string broken = folder.write("broken.csv.gz", damaged);
    EXPECT_THAT(fault_of(folder.write("none.csv.gz", "\x1f\x8b not packed at all")), HasSubstr("is broken"));
    const auto fault_of_reading = [](const std::string& path) -> std::string {
        try {
            lines_of(path);
        } catch (const Fault& fault) {
            return fault.what();
        }
        return "";
    };
    EXPECT_THAT(fault_of_reading(cut), HasSubstr("cut.csv.gz ends in the middle"));
    EXPECT_THAT(fault_of_reading(broken), HasSubstr("broken.csv.gz is broken"));
}

TEST(SurveyBytes, what_is_appended_while_a_file_is_read_is_not_read) {
    const SurveyOf survey(table(15000));
    const std::vector<std::size_t> wanted{3};
    const auto reader = open_rows(survey.layout, wanted);
    RowBlock block;
    ASSERT_TRUE(reader->next(block));
    std::size_t rows = block.rows;
    std::ofstream(survey.layout.path, std::ios::app) << "10,1,2,3\n10,4,5,6\n";
    while (reader->next(block)) rows += block.rows;
    EXPECT_EQ(rows, 15000U);
    EXPECT_EQ(survey.read().rows(), 15002U) << "the next reading finds them";
}

TEST(SurveyBytes, a_file_that_becomes_shorter_is_told) {
    const SurveyOf survey(table(24000));
    const std::vector<std::size_t> wanted{3};
    const auto reader = open_rows(survey.layout, wanted);
    RowBlock block;
    ASSERT_TRUE(reader->next(block));
    std::filesystem::resize_file(survey.layout.path, 100);
    std::string what;
    try {
        while (reader->next(block)) {
        }
    } catch (const Fault& fault) {
        what = fault.what();
    }
    EXPECT_THAT(what, HasSubstr("became shorter while it was read"));
}

TEST(SurveyBytes, lines_over_the_ends_of_buffers_are_whole) {
    const TempFolder folder;
    for (const std::string end : {"\n", "\r\n", "\r"}) {
        std::string text;
        std::vector<std::string> expected;
        for (int i = 0; i < 25000; ++i) {
            expected.push_back(std::string(static_cast<std::size_t>(i % 23), 'a') + std::to_string(i));
            text += expected.back() + end;
        }
        EXPECT_EQ(lines_of(folder.write("a.txt", text)), expected);
    }
    const std::string wide(300000, 'b');
    EXPECT_THAT(lines_of(folder.write("a.txt", wide + "\n\n\rc")), ElementsAre(wide, "", "", "c"));
}

TEST(SurveyBytes, characters_of_utf16_beyond_ascii) {
    const TempFolder folder;
    const std::string text(
        "\xFF\xFE"
        "H\0\xF6\0h\0e\0\n\0\x3D\xD8\x00\xDE\n\0",
        18);
    EXPECT_THAT(lines_of(folder.write("a.txt", text), Encoding::utf16_little),
                ElementsAre("H\xC3\xB6he", "\xF0\x9F\x98\x80"));
    EXPECT_EQ(text_of_bytes("a\xFF", Encoding::utf8), "a\xEF\xBF\xBD");
    EXPECT_EQ(encoding_of("caf\xC3\xA9"), Encoding::utf8);
    EXPECT_EQ(encoding_of("caf\xC3"), Encoding::utf8) << "the head may end within a character";
    EXPECT_EQ(encoding_of("caf\xE9 noir"), Encoding::latin1);
}

TEST(SurveyBytes, a_pipe_is_refused) {
    const TempFolder folder;
    ASSERT_EQ(::mkfifo(folder.path("pipe").c_str(), 0600), 0);
    EXPECT_THAT(fault_of(folder.path("pipe")), HasSubstr("Not a regular file"));
}

}  // namespace
}  // namespace anomalis::intake
