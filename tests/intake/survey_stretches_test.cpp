#include <algorithm>
#include <bit>
#include <cstdint>
#include <gtest/gtest.h>
#include <zlib.h>

#include "intake/indexed_survey.h"
#include "intake/survey/survey_corrections.h"
#include "support/step_pacer.h"
#include "support/survey_lines.h"

// Where the lines of a survey file lie in it, and what their rows are as one number.
namespace anomalis::intake {
namespace {

std::vector<std::uint64_t> bits_of(const std::vector<double>& values) {
    std::vector<std::uint64_t> bits;
    for (const double value : values) bits.push_back(std::bit_cast<std::uint64_t>(value));
    return bits;
}

void expect_same(const SurveyLine& one, const SurveyLine& other) {
    SCOPED_TRACE(one.name);
    EXPECT_EQ(one.name, other.name);
    EXPECT_EQ(one.file_line, other.file_line);
    EXPECT_EQ(one.year, other.year);
    for (const auto column :
         {&SurveyLine::east, &SurveyLine::north, &SurveyLine::height, &SurveyLine::ground, &SurveyLine::mag,
          &SurveyLine::grav, &SurveyLine::fiducial, &SurveyLine::longitude, &SurveyLine::latitude})
        EXPECT_EQ(bits_of(one.*column), bits_of(other.*column));
}

/// Every line by itself is what the pass over all gives, and costs so many stretches at most.
void expect_read_by_stretches(const SurveyIndex& index, std::size_t most_stretches = 1) {
    Taken taken;
    read_survey_lines(index, taken);
    EXPECT_EQ(taken.numbers.size(), index.lines.size());
    for (std::size_t line = 0; line < index.lines.size(); ++line) {
        EXPECT_GE(index.lines[line].stretches.size(), 1U);
        EXPECT_LE(index.lines[line].stretches.size(), most_stretches);
        const auto place = std::ranges::find(taken.numbers, line) - taken.numbers.begin();
        expect_same(read_survey_line(index, line), taken.lines.at(static_cast<std::size_t>(place)));
    }
}

SurveyIndex expect_read_by_stretches(const SurveyFile& file, std::size_t most_stretches = 1) {
    SurveyIndex index = file.index();
    expect_read_by_stretches(index, most_stretches);
    return index;
}

std::string with_ends(const std::string& text, const std::string& end) {
    std::string changed;
    for (const char letter : text) changed += letter == '\n' ? end : std::string(1, letter);
    return changed;
}

TEST(SurveyStretches, give_a_line_as_the_pass_over_all_lines_does) {
    for (const char* end : {"\n", "\r\n", "\r"}) {
        expect_read_by_stretches(SurveyFile(with_ends(survey_table(), end)));
        expect_read_by_stretches(SurveyFile("\xEF\xBB\xBF" + with_ends(survey_table(), end)));
        // Nobody named the lines, and the last row has no end.
        std::string unnamed = with_ends(survey_table({.line_column = false}), end);
        unnamed.erase(unnamed.find_last_not_of("\r\n") + 1);
        expect_read_by_stretches(SurveyFile(unnamed));
    }
}

TEST(SurveyStretches, hold_the_headers_of_lines) {
    std::string text = "/ exported\n";
    for (const char* part : {"Line 5690\nX Y MAG\n", "Tie 9010\n", "Line 5690\n", "Line 5700\n"}) {
        text += part;
        text += "482000 * 1\n";  // lost, so that the first row is not the first one below the header
        for (int i = 0; i < 3; ++i)
            text += std::to_string(482000 + 10 * i) + " " + std::to_string(7553000 + text.size()) + " 10" +
                    std::to_string(i) + "\n";
    }
    for (const char* end : {"\n", "\r\n"})
        EXPECT_EQ(expect_read_by_stretches(SurveyFile(with_ends(text, end), "survey.xyz")).lines.size(), 3U);
}

TEST(SurveyStretches, are_of_the_data_of_a_pair) {
    const SurveyFile file("DEFN 1 ST=RECD,RT=;LINE:I3;EAST:F9.1;NORTH:F10.1;MAG:F7.1:UNIT=nT,NULL=-999.9\n",
                          "survey.dfn");
    std::string rows;
    for (int line = 1; line <= 3; ++line)
        for (int i = 0; i < 5; ++i)
            rows += "  " + std::to_string(line) + " 45000" + std::to_string(i) + ".0 7550" +
                    std::to_string(line) + "00.0" + (i == 2 ? " -999.9" : "   51." + std::to_string(i)) +
                    "\n";
    for (const char* end : {"\n", "\r\n"}) {
        file.folder.write("survey.dat", with_ends(rows, end));
        EXPECT_EQ(expect_read_by_stretches(file).lines.size(), 3U);
    }
}

TEST(SurveyStretches, of_a_line_that_comes_again_far_away_are_two) {
    SurveyShape shape{.lines = 3, .stations = 2000};
    std::string text = survey_table(shape);
    for (int i = 0; i < 20; ++i) text += "100," + std::to_string(502000 + 10 * i) + ",7553000,300,240,5,0\n";
    const SurveyFile file(text);
    const SurveyIndex index = expect_read_by_stretches(file, 2);
    EXPECT_EQ(index.lines[0].stretches.size(), 2U);
    EXPECT_EQ(index.lines[1].stretches.size(), 1U);
    StepPacer pacer(0, 1);
    read_survey_line(index, 0, {}, pacer);
    const double bytes = static_cast<double>(text.size());
    EXPECT_LT(pacer.units, 0.36 * bytes) << "a third of the file and 20 rows";
    EXPECT_GT(pacer.units, 0.3 * bytes);
}

TEST(SurveyStretches, of_rows_in_turns_are_one_that_all_lines_share) {
    std::string text = "line,east,north,tmi\n";
    for (int i = 0; i < 60; ++i)
        text += std::to_string(1 + i % 3) + "," + std::to_string(482000 + 10 * i) + "," +
                std::to_string(7553000 + 100 * (i % 3)) + ",5" + std::to_string(i) + "\n";
    const SurveyFile file(text);
    SurveyLayout layout = recognise_survey(file.path);
    give_role(layout, 0, Role::line);
    const SurveyIndex index = index_survey(layout, {});
    EXPECT_EQ(index.lines.size(), 3U);
    expect_read_by_stretches(index);
}

TEST(SurveyStretches, cost_the_bytes_of_their_line_alone) {
    const std::string text = survey_table({.lines = 50, .stations = 100});
    const SurveyFile file(text);
    const SurveyIndex index = file.index();
    for (const std::size_t line : {0U, 25U, 49U}) {
        StepPacer pacer(0, 1);
        read_survey_line(index, line, {}, pacer);
        EXPECT_LT(pacer.units, 1.05 * static_cast<double>(text.size()) / 50) << line;
    }
}

TEST(SurveyStretches, are_none_where_a_file_can_only_be_read_from_its_beginning) {
    std::string wide;
    for (const char letter : survey_table()) wide += std::string(1, letter) + std::string(1, '\0');
    const SurveyFile plain(survey_table()), packed("", "packed.csv.gz"), utf16("\xFF\xFE" + wide);
    gzFile zip = ::gzopen(packed.path.c_str(), "wb");
    ASSERT_GT(::gzputs(zip, survey_table().c_str()), 0);
    ::gzclose(zip);
    const SurveyIndex whole = plain.index();
    for (const SurveyFile* file : {&packed, &utf16}) {
        const SurveyIndex index = file->index();
        ASSERT_EQ(index.lines.size(), 3U);
        EXPECT_TRUE(index.lines[1].stretches.empty());
        EXPECT_EQ(index.lines[1].digest, whole.lines[1].digest);
        expect_same(read_survey_line(index, 1), read_survey_line(whole, 1));
    }
}

TEST(SurveyDigest, is_of_the_rows_of_a_line_and_of_nothing_else) {
    const SurveyShape shape{.lines = 3, .stations = 40};
    const auto digests = [](const std::string& text, const CoordinateChoice& system = {}) {
        std::vector<std::uint64_t> all;
        for (const SurveyLineInfo& line : SurveyFile(text).index(system).lines) all.push_back(line.digest);
        return all;
    };
    const std::string text = survey_table(shape);
    const std::vector<std::uint64_t> whole = digests(text);
    EXPECT_NE(whole[0], whole[1]);
    EXPECT_EQ(digests(with_ends(text, "\r\n")), whole) << "how lines end is not in it";
    const auto second = text.find("\n110,") + 1, third = text.find("\n120,") + 1;
    const std::string without_first = text.substr(0, text.find("\n100,") + 1) + text.substr(second);
    EXPECT_EQ(digests(without_first), (std::vector{whole[1], whole[2]}));
    std::string changed = text;
    changed[third - 2] ^= 1;  // the last digit of the gravity of the last row of the second line
    const std::vector<std::uint64_t> other = digests(changed);
    EXPECT_EQ(other[0], whole[0]);
    EXPECT_NE(other[1], whole[1]);
    EXPECT_EQ(other[2], whole[2]);
    EXPECT_NE(digests(text, {.from = "", .to = "EPSG:32754"})[0], whole[0]) << "the system is part of it";
    std::string swapped = text;
    swapped.replace(swapped.find("tmi,bouguer"), 11, "bouguer,tmi");
    EXPECT_NE(digests(swapped)[0], whole[0]) << "what a column is, too";
}

}  // namespace
}  // namespace anomalis::intake
