#include "intake/read_rows.h"

#include <bit>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <vector>

#include "core/failure.h"
#include "intake/plain_reader.h"
#include "intake/random_data_file.h"
#include "support/survey.h"
#include "transform/transform.h"

namespace anomalis::intake {
namespace {

using ::testing::ElementsAre;

/// The very bits, as one text: the sign of a zero counts too.
std::string bits_of(const std::vector<double>& values) {
    std::string text;
    for (const double value : values) text += std::to_string(std::bit_cast<std::uint64_t>(value)) + " ";
    return text;
}

std::vector<double> column_of(const DataRows& rows, Quantity quantity) {
    std::vector<double> column;
    for (const RecordBlock& block : rows.blocks) {
        const std::size_t before = column.size();
        if (quantity < quantity_mag) {
            const auto& place = block.place(quantity);
            column.insert(column.end(), place.begin(), place.end());
        } else {
            const auto& readings = block.readings(quantity);
            column.insert(column.end(), readings.begin(), readings.end());
        }
        const double none = quantity < quantity_mag ? -1e32 : static_cast<double>(-1e32F);
        if (column.size() == before) column.resize(before + block.rows(), none);
    }
    return column;
}

void expect_as_plain(const DataRows& rows, const PlainReading& plain) {
    ASSERT_EQ(rows.count, plain.rows.size());
    for (const Quantity q : {quantity_x, quantity_y, quantity_z, quantity_dtm, quantity_mag, quantity_grav}) {
        std::vector<double> column;
        for (const auto& row : plain.rows) column.push_back(row[q]);
        EXPECT_EQ(bits_of(column_of(rows, q)), bits_of(column)) << "quantity " << q;
        if (plain.rows.empty()) continue;
        EXPECT_EQ(bits_of({rows.ranges[q].low(), rows.ranges[q].high()}),
                  bits_of({plain.ranges[q].first, plain.ranges[q].second}))
            << "quantity " << q;
    }
    const RowNotes& notes = rows.notes;
    EXPECT_EQ(notes.records, static_cast<long>(plain.rows.size()));
    EXPECT_EQ(std::tuple(notes.dropped, notes.first_dropped_line, notes.short_rows, notes.first_short_line),
              std::tuple(plain.dropped, plain.first_dropped_line, plain.short_rows, plain.first_short_line));
    EXPECT_EQ(std::tuple(notes.cut_line, notes.last_line, notes.to_the_end),
              std::tuple(plain.cut_line, plain.last_line, plain.to_the_end));
    EXPECT_EQ(std::tuple(notes.missing_sensor_heights, notes.missing_ground_heights),
              std::tuple(plain.missing_sensor_heights, plain.missing_ground_heights));
    EXPECT_EQ(rows.misfit_line, plain.misfit_line);
}

std::string failure_of(const Workspace& w, const ReadingShares& shares) {
    try {
        read_rows(w.definition, w.transform, shares);
    } catch (const Fault& fault) {
        return fault.what();
    }
    return "no failure";
}

/// One thread with the usual blocks, and threads that share blocks of some lines and of less than one.
const ReadingShares all_shares[] = {{}, {.block_size = 700, .threads = 3}, {.block_size = 40, .threads = 2}};

PlainReading expect_as_plain_in_all_shares(const Survey& survey, std::string_view text) {
    const Workspace& w = survey.workspace;
    const PlainReading plain = PlainReader(text, w.definition, w.transform).read();
    for (const ReadingShares& shares : all_shares) {
        SCOPED_TRACE(std::to_string(shares.threads) + " threads");
        if (plain.overflow_line > 0) {
            EXPECT_EQ(failure_of(w, shares), "Overflow (" + w.definition.data_file + ", line " +
                                                 std::to_string(plain.overflow_line) + ")");
        } else {
            expect_as_plain(read_rows(w.definition, w.transform, shares), plain);
        }
    }
    return plain;
}

TEST(ReadRows, random_files_are_read_as_a_plain_reader_reads_them_whoever_shares_them) {
    Survey survey;
    int with_rows = 0, refused = 0;
    for (unsigned seed = 1; seed <= 500; ++seed) {
        SCOPED_TRACE("file " + std::to_string(seed));
        RandomDataFile file(seed, 40);
        survey.workspace = {};
        initialise_workspace(survey.workspace, survey.prompts);
        file.define(survey.workspace);
        transform::update_transform(survey.workspace.transform);
        survey.set_file(file.text());
        const PlainReading plain = expect_as_plain_in_all_shares(survey, file.text());
        with_rows += !plain.rows.empty() && plain.overflow_line == 0;
        refused += plain.overflow_line > 0;
        if (HasFailure()) break;
    }
    EXPECT_GT(with_rows, 350) << "the files are to be such that most are read";
    EXPECT_GT(refused, 3);
}

TEST(ReadRows, lines_longer_than_a_block_are_cut_as_ever) {
    for (const std::size_t length : {11263U, 11264U, 11265U, 22528U, 30000U})
        for (const char* behind :
             {"\n1 2 3\n", "\r1 2 3\r", std::string_view("\x01\n4 5 6").data(), "", " 7 8\n"}) {
            SCOPED_TRACE(std::to_string(length) + behind);
            const std::string text =
                "1 2 3\n" + std::string(600, ' ') + "\n" + std::string(length, '7') + behind;
            Survey survey(text);
            expect_as_plain_in_all_shares(survey, text);
        }
}

TEST(ReadRows, zeros_without_an_end_are_one_empty_line_of_any_block) {
    const std::string text = "1 2 3\n" + std::string(70000, '\0') + "4 5 6\n" + std::string(3000, '\0');
    Survey survey(text);
    expect_as_plain_in_all_shares(survey, text);
}

TEST(ReadRows, blocks_that_hang_on_rows_before_are_read_in_their_turn) {
    std::string text = "1 2 3\n";
    for (int i = 0; i < 200; ++i)
        text += i % 7 == 0 ? std::to_string(i) + "\n" : std::to_string(i) + " 5 6\n";
    Survey survey(text);
    expect_as_plain_in_all_shares(survey, text);
    text = "1 2 3\n";
    for (int i = 0; i < 200; ++i) text += std::to_string(i) + "\n";
    survey.set_file(text);
    expect_as_plain_in_all_shares(survey, text);
}

TEST(ReadRows, the_first_failure_in_the_file_is_told_whoever_meets_which_first) {
    std::string text;
    for (int i = 0; i < 300; ++i) text += i == 120 || i > 200 ? "1 2 1e39\n" : "1 2 3\n";
    Survey survey(text);
    expect_as_plain_in_all_shares(survey, text);
    survey.workspace.definition.last_data_line = 100;
    expect_as_plain_in_all_shares(survey, text);
}

TEST(ReadRows, more_kinds_of_dropped_rows_than_are_told_of_are_counted_in_the_order_of_the_file) {
    std::string text = "1 2 3\n";
    for (int i = 0; i < 300; ++i) text += "1 2 word" + std::to_string(i / 10 % 9) + "\n";
    Survey survey(text);
    const auto kinds = [&](const ReadingShares& shares) {
        std::vector<std::string> found;
        const DataRows rows = read_rows(survey.workspace.definition, survey.workspace.transform, shares);
        for (const DroppedRows& kind : rows.notes.kinds)
            found.push_back(kind.token + " " + std::to_string(kind.count) + " from " +
                            std::to_string(kind.first_line));
        return found;
    };
    for (const ReadingShares& shares : all_shares)
        EXPECT_THAT(kinds(shares), ElementsAre("word0 40 from 2", "word1 40 from 12", "word2 40 from 22",
                                               "word3 30 from 32", "word4 30 from 42", "word5 30 from 52"));
}

TEST(ReadRows, a_file_too_large_for_memory_is_refused_before_it_is_read) {
    std::string text;
    for (int i = 0; i < 10000; ++i) text += "100000 200000 55000\n";
    Survey survey(text);
    const Workspace& w = survey.workspace;
    const ReadingShares small{.block_size = 2000, .threads = 1, .memory = 1'000'000};
    EXPECT_EQ(failure_of(w, small), "Out of memory (about 10000 rows of " + w.definition.data_file +
                                        " need 1 MB, 1 MB are free: give a greater Data read step or a Final "
                                        "Data Line)");
    survey.workspace.definition.last_data_line = 8000;
    EXPECT_EQ(failure_of(w, small), "no failure");
    survey.workspace.definition.last_data_line = 0;
    EXPECT_EQ(failure_of(w, {.block_size = 2000, .threads = 1, .memory = 1'210'000}), "no failure");
}

}  // namespace
}  // namespace anomalis::intake
