#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <sys/stat.h>
#include <unistd.h>

#include "intake/load.h"
#include "support/survey.h"

namespace anomalis::intake {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

const char* const reading = "An error occurred while reading the location file : ";

/// Whatever the file holds, the load ends, says at most one thing, and leaves equal counts.
void expect_orderly(Survey& survey) {
    Workspace& w = survey.workspace;
    const int status = load_locations(w, survey.prompts);
    EXPECT_LE(survey.prompts.messages.size(), 1U);
    EXPECT_EQ(w.station_count == 0, status == -1);
    if (status == -1) return;
    EXPECT_EQ(w.stations.rows(), w.station_count);
    EXPECT_EQ(w.mag.data.stations(), w.station_count);
    EXPECT_EQ(w.distances.count(), w.station_count);
}

TEST(BadDataFile, missing) {
    Survey survey;
    survey.workspace.definition.data_file = survey.folder.path("none.dat");
    EXPECT_EQ(load_locations(survey.workspace, survey.prompts), -1);
    EXPECT_THAT(survey.prompts.messages, ElementsAre("The specified data file does not exist"));
}

TEST(BadDataFile, a_folder) {
    Survey survey;
    survey.workspace.definition.data_file = survey.folder.folder();
    EXPECT_EQ(load_locations(survey.workspace, survey.prompts), -1);
    EXPECT_THAT(survey.prompts.messages, ElementsAre("The specified data file does not exist"));
}

TEST(BadDataFile, a_device_or_a_pipe) {
    Survey survey;
    ASSERT_EQ(::mkfifo(survey.folder.path("pipe").c_str(), 0600), 0);
    for (const std::string& path : {std::string("/dev/zero"), survey.folder.path("pipe")}) {
        survey.prompts.messages.clear();
        survey.workspace.definition.data_file = path;
        EXPECT_EQ(load_locations(survey.workspace, survey.prompts), -1);
        EXPECT_THAT(survey.prompts.messages, ElementsAre(reading + ("Not a regular file (" + path + ")")));
    }
}

TEST(BadDataFile, unreadable) {
    Survey survey("0 0 1\n10 0 2\n");
    const std::string& path = survey.workspace.definition.data_file;
    ASSERT_EQ(::chmod(path.c_str(), 0), 0);
    EXPECT_NO_THROW(load_locations(survey.workspace, survey.prompts));
    if (::geteuid() == 0) {  // nothing is unreadable for the superuser
        EXPECT_THAT(survey.prompts.messages, IsEmpty());
    } else {
        EXPECT_THAT(survey.prompts.messages, ElementsAre(reading + ("Permission denied (" + path + ")")));
        EXPECT_EQ(survey.workspace.station_count, 0);
    }
}

TEST(BadDataFile, binary) {
    std::mt19937 random(11);
    for (int round = 0; round < 20; ++round) {
        std::string bytes(20000, '\0');
        for (char& byte : bytes) byte = static_cast<char>(random());
        Survey survey(bytes);
        expect_orderly(survey);
    }
    Survey zeros(std::string(100000, '\0'));
    expect_orderly(zeros);
    EXPECT_EQ(zeros.workspace.station_count, 0);
}

TEST(BadDataFile, digits_and_separators_at_random) {
    std::mt19937 random(5);
    const std::string_view alphabet = "0123456789.-+eE \t,;'\"!\\\r\n*";
    for (int round = 0; round < 300; ++round) {
        std::string text(400, ' ');
        for (char& c : text) c = alphabet[random() % alphabet.size()];
        Survey survey(text);
        survey.workspace.definition.mag_column = 2;
        survey.workspace.definition.read_increment = 1 + static_cast<std::int32_t>(random() % 2);
        survey.workspace.station_spacing = round % 2 == 0 ? 0.0F : 10.0F;
        expect_orderly(survey);
    }
}

TEST(BadDataFile, a_line_of_ten_million_characters_without_an_end) {
    for (const std::string& start : {std::string(), std::string("0 0 1\r"), std::string("0 0 1\n10 0 2\n")}) {
        Survey survey(start + std::string(10'000'000, '7'));
        expect_orderly(survey);
        EXPECT_TRUE(survey.prompts.messages.empty() || start == "0 0 1\r") << survey.prompts.messages.front();
    }
}

TEST(BadDataFile, ten_million_fields_on_one_line) {
    std::string line;
    for (int i = 0; i < 5'000'000; ++i) line += "1 ";
    Survey survey("0 0 1\r10 0 2\r" + line + "\r20 0 4");
    survey.workspace.definition.mag_column = 3;
    EXPECT_EQ(load_locations(survey.workspace, survey.prompts), 0);
    EXPECT_EQ(survey.workspace.station_count, 3);  // the long line's station at 1, 1 merges with the last
}

TEST(BadDataFile, that_ends_in_the_middle_of_a_line) {
    Survey cut_number("0 0 1\n10 0 2\n20 0 3.");
    EXPECT_EQ(load_locations(cut_number.workspace, cut_number.prompts), 0);
    EXPECT_EQ(cut_number.workspace.station_count, 3);
    Survey cut_row("0 0 1\n10 0 2\n20");
    EXPECT_EQ(load_locations(cut_row.workspace, cut_row.prompts), 0);
    EXPECT_EQ(cut_row.workspace.station_count, 2);
    Survey short_row("0 0 1\n10 0 2\n20\n");
    EXPECT_EQ(load_locations(short_row.workspace, short_row.prompts), 0);
    EXPECT_EQ(short_row.workspace.station_count, 3);
    EXPECT_EQ(short_row.workspace.mag.data(3, row_raw, stage_observed),
              2);  // a short row keeps the earlier value
    Survey cut_sign("0 0 1\n10 0 2\n20 0 -");
    EXPECT_EQ(load_locations(cut_sign.workspace, cut_sign.prompts), 0);
    EXPECT_EQ(cut_sign.workspace.station_count, 2);
}

TEST(BadDataFile, numbers_out_of_range) {
    Survey survey("0 0 1\n5 0 1e999\n6 0 nan\n7 0 inf\n10 0 2\n");
    EXPECT_EQ(load_locations(survey.workspace, survey.prompts), 0);
    EXPECT_EQ(survey.workspace.station_count, 2);
    Survey single("0 0 1\n5 0 -1e300\n10 0 2\n");
    EXPECT_EQ(load_locations(single.workspace, single.prompts), -1);
    EXPECT_THAT(single.prompts.messages,
                ElementsAre(reading + ("Overflow (" + single.workspace.definition.data_file + ", line 2)")));
    Survey coordinate("0 0 1\n1e300 0 2\n");
    EXPECT_EQ(load_locations(coordinate.workspace, coordinate.prompts), 1);
    EXPECT_THAT(
        coordinate.prompts.messages,
        ElementsAre(StartsWith("An error occurred while setting up the profile coordinates : Overflow")));
}

TEST(BadDataFile, a_byte_order_mark) {
    for (const std::string end : {"\n", "\r\n", "\r"}) {
        Survey survey(
            "\xEF\xBB\xBF"
            "0 0 1" +
            end + "10 0 2" + end);
        EXPECT_EQ(load_locations(survey.workspace, survey.prompts), 0);
        EXPECT_EQ(survey.workspace.station_count, 2);
        EXPECT_EQ(survey.workspace.mag.max, 2);
    }
}

TEST(BadDataFile, absurd_definitions_end) {
    const auto with = [](std::int32_t DataDefinition::*field, std::int32_t value) {
        Survey survey("0 0 1\n10 0 2\n");
        survey.workspace.definition.*field = value;
        expect_orderly(survey);
    };
    for (const std::int32_t value : {2147483647, -2147483647 - 1, 0, -1}) {
        for (std::int32_t DataDefinition::*field :
             {&DataDefinition::first_data_line, &DataDefinition::read_increment,
              &DataDefinition::last_data_line, &DataDefinition::x_column, &DataDefinition::y_column,
              &DataDefinition::z_column, &DataDefinition::dtm_column, &DataDefinition::mag_column,
              &DataDefinition::grav_column})
            with(field, value);
    }
}

}  // namespace
}  // namespace anomalis::intake
