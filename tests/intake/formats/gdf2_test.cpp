#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "intake/formats/gdf2_definition.h"
#include "intake/formats/survey_file.h"

namespace anomalis::intake {
namespace {

using ::testing::DoubleEq;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::IsNan;

const std::string definition =
    "DEFN   ST=RECORD,RT=COMM;RT:A4;COMMENTS:A76\n"
    "DEFN 1 ST=RECD,RT=DATA;Line:I6\n"
    "DEFN  2 ST=RECD,RT=;EASTING:F10.1:UNIT=metres,NULL=-99999.9,NAME=Easting\n"
    "DEFN 3 ST=RECORD,RT=; NORTHING : f11.1 :UNIT=metres:NULL=-99999.9:NAME=Northing\n"
    "DEFN 4 ST=RECD,RT=DATA;MAG_RAW:F10.2:UNIT=nT,NULL=-99999.99;MAG_FINAL:F10.2:UNIT=nT,NULL=-99999.99\n"
    "DEFN 5 ST=RECD,RT=DATA;GRAV:F8.2,UNIT=um/s2\n"
    "DEFN 6 ST=RECD,RT=;END DEFN";

const std::string rows =
    "    10  450000.0  7550000.0  52000.50  51999.50  -12.50\n"
    "    10  450010.0  7550000.0 -99999.99 -99999.99  -12.75\n"
    "    20  450020.0  7550000.0          -99999.99  -13.00\n"
    "    20  450030.0  7550000.0  52003.50  52002.50  -13.25\n";

struct Gdf2Pair {
    explicit Gdf2Pair(std::string_view dat, std::string_view dfn = definition) {
        folder.write("survey.DFN", dfn);
        folder.write("survey.dat", dat);
    }
    SurveyLayout recognise(std::string_view name = "survey.dat") const {
        return recognise_survey(folder.path(name));
    }
    ReadSurvey read() const { return read_all(recognise()); }
    TempFolder folder;
};

bool has_remark(const SurveyLayout& layout, std::string_view part) {
    return std::any_of(layout.remarks.begin(), layout.remarks.end(),
                       [part](const std::string& remark) { return remark.find(part) != std::string::npos; });
}

void expect_rows(const ReadSurvey& read) {
    EXPECT_THAT(read.line, ElementsAre("10", "10", "20", "20"));
    EXPECT_THAT(read[Role::easting], ElementsAre(450000, 450010, 450020, 450030));
    EXPECT_THAT(read[Role::mag], ElementsAre(51999.5, IsNan(), IsNan(), 52002.5));
    EXPECT_THAT(read[Role::grav],
                ElementsAre(DoubleEq(-1.25), DoubleEq(-1.275), DoubleEq(-1.3), DoubleEq(-1.325)));
}

TEST(Gdf2, either_file_of_the_pair_gives_the_same) {
    const Gdf2Pair pair(rows);
    const SurveyLayout by_data = pair.recognise("survey.dat"), by_definition = pair.recognise("survey.DFN");
    EXPECT_EQ(by_data, by_definition);
    EXPECT_EQ(by_data.format, "ASEG-GDF2");
    EXPECT_TRUE(by_data.fixed_width);
    EXPECT_EQ(by_data.columns[2].width, 11U);
    expect_rows(read_all(by_data));
}

TEST(Gdf2, separated_rows_whose_widths_are_not_as_declared) {
    const std::string tabs =
        "10\t450000.0\t7550000.0\t52000.50\t51999.50\t-12.50\n10\t450010.0\t7550000.0\t-99999.99\t-99999."
        "99\t-12.75\n"
        "20\t450020.0\t7550000.0\t\t-99999.99\t-13.00\n20\t450030.0\t7550000.0\t52003.50\t52002.50\t-13.25\n";
    std::string commas = tabs;
    for (char& c : commas)
        if (c == '\t') c = ',';
    for (const std::string& text : {tabs, commas}) {
        const Gdf2Pair pair(text);
        EXPECT_FALSE(pair.recognise().fixed_width);
        EXPECT_TRUE(has_remark(pair.recognise(), "do not have the widths"));
        expect_rows(pair.read());
    }
}

TEST(Gdf2, rows_without_the_blanks_in_front_of_their_first_number) {
    std::string trimmed;
    for (std::size_t at = 0; at < rows.size(); at = rows.find('\n', at) + 1)
        trimmed += rows.substr(at + 4, rows.find('\n', at) + 1 - at - 4);
    const Gdf2Pair pair(trimmed);
    EXPECT_TRUE(has_remark(pair.recognise(), "begin elsewhere"));
    expect_rows(pair.read());
}

TEST(Gdf2, a_declared_record_type_may_stand_in_the_rows_or_not) {
    const std::string typed_definition =
        "DEFN ST=RECD,RT=COMM;RT:A4;COMMENTS:A76\nDEFN 1 ST=RECD,RT=DATA;RT:A4;LINE:I6\n"
        "DEFN 2 ST=RECD,RT=;EAST:F10.1;NORTH:F11.1;MAG:F9.1\nDEFN 3 ST=RECD,RT=;END DEFN\n";
    const std::string without =
        "    10  450000.0  7550000.0  52000.5\n    10  450010.0  7550000.0  52001.5\n"
        "    20  450020.0  7550000.0  52002.5\n";
    std::string with = "COMM flown at noon\n", blanks;
    for (std::size_t at = 0; at < without.size(); at = without.find('\n', at) + 1) {
        const std::string row = without.substr(at, without.find('\n', at) + 1 - at);
        with += "DATA" + row;
        blanks += "    " + row;
    }
    for (const std::string& text : {without, with, blanks}) {
        const ReadSurvey read = Gdf2Pair(text, typed_definition).read();
        EXPECT_THAT(read.line, ElementsAre("10", "10", "20")) << text;
        EXPECT_THAT(read[Role::mag], ElementsAre(52000.5, 52001.5, 52002.5));
        EXPECT_THAT(read.losses, IsEmpty());
    }
}

TEST(Gdf2, of_several_record_types_that_of_the_data_is_read) {
    const std::string types =
        "DEFN ST=RECD,RT=COMM;RT:A4;COMMENTS:A76\nDEFN 1 ST=RECD,RT=HEAD;RT:A4;JOB:I5\n"
        "DEFN 2 ST=RECD,RT=SURV;RT:A4;LINE:I6;EAST:F10.1;NORTH:F11.1;MAG:F9.1\n";
    const std::string text =
        "COMM by air\nHEAD   12\nSURV    10  450000.0  7550000.0  52000.5\nHEAD   13\n"
        "SURV    10  450010.0  7550000.0  52001.5\nODDS 1\nSURV    10  450020.0  7550000.0  52002.5\n";
    const Gdf2Pair pair(text, types);
    EXPECT_EQ(pair.recognise().record_type, "SURV");
    const ReadSurvey read = pair.read();
    EXPECT_THAT(read.file_line, ElementsAre(3, 5, 7));
    ASSERT_EQ(read.losses.size(), 1U);
    EXPECT_EQ(read.losses[0].why, "no record of type \"ODDS\" is defined");
    EXPECT_EQ(read.losses[0].first_line, 6);
}

TEST(Gdf2, rows_of_another_type_alone_are_refused_with_the_line) {
    const Gdf2Pair pair("COMM x\nMAGN    10  450000.0  7550000.0  52000.5\n",
                        "DEFN 1 ST=RECD,RT=DATA;RT:A4;LINE:I6;EAST:F10.1;NORTH:F11.1;MAG:F9.1\n");
    const std::string fault = fault_of(pair.folder.path("survey.dat"));
    EXPECT_THAT(fault, HasSubstr("survey.dat, line 2: a record of type \"MAGN\""));
    EXPECT_THAT(fault, HasSubstr("of type \"DATA\""));
}

TEST(Gdf2, a_cut_last_row_is_dropped_with_a_word) {
    for (const char* cut : {"    20  45", "    20  450040.0  7550000.0  52003.50  52002.50  -1"}) {
        const ReadSurvey read = Gdf2Pair(rows + cut).read();
        EXPECT_EQ(read.rows(), 4U);
        ASSERT_EQ(read.losses.size(), 1U);
        EXPECT_EQ(read.losses[0].why, "the row is cut at the end of the file");
        EXPECT_EQ(read.losses[0].first_line, 5);
    }
}

TEST(Gdf2, more_than_is_defined_is_passed_over_with_a_remark) {
    std::string more = rows;
    for (std::size_t at = 0; (at = more.find('\n', at)) != std::string::npos; at += 3) more.insert(at, " *");
    const Gdf2Pair pair(more);
    EXPECT_TRUE(has_remark(pair.recognise(), "more than the definition says"));
    expect_rows(pair.read());
}

TEST(Gdf2, rows_that_hold_something_else_are_read_as_a_table_of_their_own) {
    const Gdf2Pair pair(
        "450000.0 7550000.0 52000.5\n450010.0 7550000.0 52001.5\n450020.0 7550000.0 52002.5\n");
    const SurveyLayout layout = pair.recognise();
    EXPECT_EQ(layout.format, "Text table");
    EXPECT_TRUE(has_remark(layout, "do not hold what"));
    EXPECT_EQ(read_all(layout).rows(), 3U);
}

TEST(Gdf2, a_definition_without_data_and_data_without_a_definition) {
    const TempFolder folder;
    const std::string alone = folder.write("alone.dfn", definition);
    EXPECT_THAT(fault_of(alone),
                HasSubstr("alone.dfn defines the columns of a .dat file, but there is none"));
    const SurveyLayout bare = recognise_survey(folder.write("bare.dat", rows));
    EXPECT_EQ(bare.format, "Text table");
    EXPECT_TRUE(has_remark(bare, "no .dfn file"));
    EXPECT_EQ(read_all(bare).rows(), 4U);
}

TEST(Gdf2, fields_of_one_name_or_of_none_are_told_apart) {
    const Gdf2Pair pair("10 450000.0 7550000.0 5.0 6.0\n10 450010.0 7550000.0 6.0 7.0\n",
                        "DEFN 1 ST=RECD,RT=;LINE:I2;EAST:F9.1;NORTH:F10.1;MAG:F4.1;MAG:F4.1;:F1.0\n");
    const Gdf2Pair unnamed("10 450000.0 7550000.0 5.0\n10 450010.0 7550000.0 6.0\n",
                           "DEFN 1 ST=RECD,RT=;:I2;EAST:F9.1;NORTH:F10.1;MAG:F4.1\n");
    EXPECT_EQ(unnamed.recognise().columns[0].name, "Column 1");
    EXPECT_EQ(pair.recognise().columns[4].name, "MAG (2)");
}

TEST(Gdf2, a_system_beside_the_data) {
    const Gdf2Pair pair(rows);
    pair.folder.write(
        "survey.met",
        "PROJGDA94 / Map Grid of Australia zone 55     GDA94      6378137 0.08\nTRNSGDA94 to WGS 84 (1)\n");
    EXPECT_EQ(pair.recognise().coordinate_system, "GDA94 / MGA zone 55");
    pair.folder.write(
        "survey.PRJ",
        "PROJCS[\"x\",GEOGCS[\"y\",AUTHORITY[\"EPSG\",\"4283\"]],AUTHORITY[\"EPSG\",\"28354\"]]");
    EXPECT_EQ(pair.recognise().coordinate_system, "EPSG:28354");
}

TEST(Gdf2, a_zone_that_longitudes_contradict_gives_way) {
    const Gdf2Pair pair(
        "10 142.13067 -29.99336 609061.5 6681400.5 57143.8\n10 142.13074 -29.99336 609068.7 6681400.3 "
        "57144.1\n",
        "DEFN 1 ST=RECD,RT=;LINE:I5;LONGITUDE:F10.5;LATITUDE:F10.5;EASTING:F9.1;NORTHING:F10.1;MAG:F8.1\n");
    pair.folder.write("survey.met", "PROJGDA94 / Map Grid of Australia zone 55     GDA94\n");
    EXPECT_EQ(pair.recognise().coordinate_system, "GDA94 / MGA zone 54");
    EXPECT_TRUE(has_remark(pair.recognise(), "agree in zone 54"));
}

std::vector<std::string> split(std::string_view text) {
    std::vector<std::string> lines(1);
    for (const char c : text) c == '\n' ? lines.emplace_back() : lines.back() += c;
    return lines;
}

TEST(Gdf2Definition, fields_formats_and_attributes_in_all_spellings) {
    const auto parsed = parse_gdf2_definition(
        split("DEFN ST=RECD,RT=COMM;RT:A4;COMMENTS:A76\nDEFN 1 ST=RECD,RT=DATA;RT:A4;LINE:A8,NAME=Line\n"
              "defn  2 ST=RECD,RT=;SPEC:3F10.2:UNIT=cps,NULL=-1,NAME=Spectrum;E:E12.4:NULL=-1.0E+32:counts, "
              "by hand\n"
              "DEFN 3 ST=RECORD,RT=;D:D15.6;G:G10.3;END DEFN\nDEFN 4 ST=RECD,RT=;never:F1.0"),
        "a.dfn");
    const Gdf2Record* data = parsed.data();
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(data->type, "DATA");
    EXPECT_TRUE(data->type_field);
    std::vector<std::string> names;
    std::vector<std::size_t> widths;
    for (const Gdf2Field& field : data->fields) {
        names.push_back(field.name);
        widths.push_back(field.width);
    }
    EXPECT_THAT(names, ElementsAre("LINE", "SPEC[1]", "SPEC[2]", "SPEC[3]", "E", "D", "G", "never"));
    EXPECT_THAT(widths, ElementsAre(8, 10, 10, 10, 12, 15, 10, 1));
    EXPECT_EQ(data->fields[0].long_name, "Line");
    EXPECT_EQ(data->fields[2].unit, "cps");
    EXPECT_THAT(data->fields[2].nulls, ElementsAre(-1));
    EXPECT_THAT(data->fields[4].nulls, ElementsAre(-1e32));
}

TEST(Gdf2Definition, what_cannot_be_understood_is_told_with_its_line) {
    const auto fault = [](std::string_view text) -> std::string {
        try {
            parse_gdf2_definition(split(text), "a.dfn");
        } catch (const Fault& what) {
            return what.what();
        }
        return "";
    };
    EXPECT_THAT(fault("DEFN 1 ST=RECD,RT=;LINE:I5\nDEFN 2 ST=RECD,RT=;EAST:Q10\n"),
                HasSubstr("a.dfn, line 2: \"Q10\" is no format of the field \"EAST\""));
    EXPECT_THAT(fault("DEFN 1 ST=RECD,RT=;LINE:F\n"), HasSubstr("line 1"));
    EXPECT_THAT(fault("DEFN 1 ST=RECD,RT=;LINE:999999999F5.1\n"), HasSubstr("line 1"));
    EXPECT_THAT(fault("DEFN ST=RECD,RT=COMM;RT:A4;COMMENTS:A76\n"), HasSubstr("no line \"DEFN"));
    EXPECT_THAT(fault(""), HasSubstr("no line \"DEFN"));
}

}  // namespace
}  // namespace anomalis::intake
