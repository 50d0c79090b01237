#include "survey/plan/read_plan.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/failure.h"
#include "intake/formats/survey_format.h"
#include "support/survey_file.h"
#include "support/temp_folder.h"

namespace anomalis::survey {

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// A folder with a survey file and two workspaces (a plan looks only whether they are there).
class PlanFolder : public TempFolder {
  public:
    PlanFolder() {
        write("survey.csv", survey_file_text());
        write("north/a.axm", "");
        write("north/b.axm", "");
        write("south/a.axm", "");
    }

    SurveyPlan plan(const std::string& text, const std::string& name = "plan.toml") const {
        return read_survey_plan(write(name, text));
    }
    std::string refusal(const std::string& text, const std::string& name = "plan.toml") const {
        try {
            plan(text, name);
        } catch (const Fault& fault) {
            return fault.what();
        }
        return "";
    }
    intake::SurveyIndex index() const {
        return intake::index_survey(intake::recognise_survey(path("survey.csv")), {});
    }
};

constexpr const char* whole_plan = R"(
name = "Osborne"
formulas = "exact"
channel = "mag"
regional = "none"
noise-mag = 1.5
export = ["model-table", "geojson"]

[source]
file = "survey.csv"
crs = "EPSG:32754"
date = 1990-07-01
field = [51940, -53.1, 6.7]
igrf = "remove"
sensor-height = 80
roles = { mag = "tmi", line = 1 }
units = { tmi = "nT" }
nulls = { tmi = [-99999, -1] }

[find]
most = 5
kinds = "thin"
window = [100, 900]

[uncertainty]
samples = 40
strike_within = 20

[render]
format = "svg"

[[line]]
line = 5700
find.most = 2
regional = 1
noise-mag = 3

[[line]]
line = "9010"
name = "tie"
find = false
invert = true
)";

TEST(SurveyPlan, SaysSourceCommandsAndWhatIsOtherOnSomeLines) {
    const PlanFolder folder;
    const SurveyPlan plan = folder.plan(whole_plan);
    EXPECT_EQ(plan.name, "Osborne");
    ASSERT_TRUE(plan.source);
    EXPECT_EQ(plan.source->file, folder.path("survey.csv"));
    EXPECT_EQ(plan.source->system, "EPSG:32754");
    EXPECT_EQ(plan.source->choices.date, "1990-07-01");
    EXPECT_EQ(plan.source->choices.field.inclination, -53.1F);
    EXPECT_EQ(plan.source->choices.main_field, flow::MainFieldChange::removed);
    EXPECT_EQ(plan.source->choices.sensor_offset, 80);
    EXPECT_EQ(plan.source->nulls.size(), 2U);
    ASSERT_EQ(plan.source->roles.size(), 2U);
    const LineOptions& usual = *plan.options;
    EXPECT_EQ(usual.formulas, Formulas::exact);
    EXPECT_EQ(usual.fit.regional_degree, -1);
    EXPECT_EQ(usual.fit.mag_noise, 1.5F);
    EXPECT_THAT(usual.exports, ElementsAre("model-table", "geojson"));
    ASSERT_TRUE(usual.find);
    EXPECT_EQ(usual.find->most, 5);
    EXPECT_FALSE(usual.find->thick);
    EXPECT_EQ(usual.find->window->last, 900);
    EXPECT_FALSE(usual.invert);
    EXPECT_EQ(usual.uncertainty->samples, 40);
    EXPECT_EQ(usual.uncertainty->strike_within, 20);
    EXPECT_EQ(usual.render->format, "svg");

    EXPECT_TRUE(plan.all_lines);
    ASSERT_EQ(plan.lines.size(), 2U);
    EXPECT_EQ(plan.lines[0].line, "5700");
    EXPECT_EQ(plan.lines[0].options->find->most, 2);
    EXPECT_FALSE(plan.lines[0].options->find->thick) << "what is not said stays";
    EXPECT_EQ(plan.lines[0].options->fit.regional_degree, 1);
    EXPECT_EQ(plan.lines[1].name, "tie");
    EXPECT_FALSE(plan.lines[1].options->find);
    EXPECT_TRUE(plan.lines[1].options->invert);
}

TEST(SurveyPlan, IsTheSameAsJson) {
    const PlanFolder folder;
    const SurveyPlan plan = folder.plan(R"({"source": {"file": "survey.csv", "roles": {"mag": "tmi"}},
        "lines": {"only": ["5690", 5710]}, "find": {"most": 3}, "invert": true,
        "line": [{"line": "5710", "find": {"most": 1}}]})",
                                        "plan.json");
    EXPECT_EQ(plan.name, "plan");
    EXPECT_FALSE(plan.all_lines);
    ASSERT_EQ(plan.lines.size(), 2U);
    EXPECT_EQ(plan.lines[0].options, plan.options);
    EXPECT_EQ(plan.lines[1].options->find->most, 1);
    EXPECT_TRUE(plan.lines[1].options->invert);
}

TEST(SurveyPlan, IsATableWithOneRowAWorkspace) {
    const PlanFolder folder;
    const SurveyPlan plan = folder.plan(
        "workspace,name,find_most,regional,noise_mag,Invert,export\n"
        "north/a.axm,first,3,1,,yes,\"geojson, mesh\"\n"
        "north/b.axm,,3,1,,yes,\"geojson, mesh\"\n\n"
        "south/a.axm,,,none,2.5,no,\n",
        "table.csv");
    EXPECT_EQ(plan.name, "table");
    EXPECT_FALSE(plan.source);
    ASSERT_EQ(plan.lines.size(), 3U);
    EXPECT_EQ(plan.lines[0].name, "first");
    EXPECT_EQ(plan.lines[0].workspace, folder.path("north/a.axm"));
    EXPECT_EQ(plan.lines[0].options, plan.lines[1].options) << "one record for what is the same";
    EXPECT_EQ(plan.lines[1].name, "b");
    EXPECT_EQ(plan.lines[1].options->find->most, 3);
    EXPECT_THAT(plan.lines[1].options->exports, ElementsAre("geojson", "mesh"));
    EXPECT_FALSE(plan.lines[2].options->find);
    EXPECT_FALSE(plan.lines[2].options->invert);
    EXPECT_EQ(plan.lines[2].options->fit.mag_noise, 2.5F);
    EXPECT_EQ(lines_to_do(plan).size(), 3U);
}

TEST(SurveyPlan, ATableOfLinesGoesBesideAPlan) {
    const PlanFolder folder;
    folder.write("lines.csv", "line;name;find.most;kinds\n");
    EXPECT_THAT(
        folder.refusal("find = true\n[source]\nfile = \"survey.csv\"\n[lines]\ntable = \"lines.csv\""),
        HasSubstr("lines.csv, line 1, column kinds: no such column; nearest is find_kinds"));
    folder.write("lines.csv", "line;name;find.most\n5690.0;west;4\n5710;;\n");
    const SurveyPlan plan =
        folder.plan("find = true\n[source]\nfile = \"survey.csv\"\n[lines]\ntable = \"lines.csv\"\n");
    ASSERT_EQ(plan.lines.size(), 2U);
    EXPECT_FALSE(plan.all_lines);
    EXPECT_EQ(plan.lines[0].options->find->most, 4);
    EXPECT_EQ(plan.lines[1].options, plan.options);
    const std::vector<LineToDo> lines = lines_to_do(plan, folder.index());
    EXPECT_EQ(lines[0].planned.name, "west");
    EXPECT_EQ(lines[0].line, 0U);
    EXPECT_EQ(lines[1].line, 2U);
}

TEST(SurveyPlan, PatternsNameWorkspaces) {
    const PlanFolder folder;
    const SurveyPlan plan = folder.plan(
        "[source]\nworkspaces = [\"north/*.axm\"]\n"
        "[[line]]\nworkspace = \"north/../north/b.axm\"\nfind.most = 2\n"
        "[[line]]\nworkspace = \"south/a.axm\"\nname = \"south\"\n");
    ASSERT_EQ(plan.lines.size(), 3U);
    EXPECT_EQ(plan.lines[0].name, "a");
    EXPECT_FALSE(plan.lines[0].options->find);
    EXPECT_EQ(plan.lines[1].options->find->most, 2);
    EXPECT_EQ(plan.lines[2].name, "south");
    EXPECT_THAT(
        folder.refusal("[source]\nworkspaces = \"west/*.axm\""),
        AllOf(HasSubstr("plan.toml, line 2, source.workspaces: no file matches"), HasSubstr("west/*.axm")));
}

TEST(SurveyPlan, AllLinesAreThoseOfTheFileInItsOrder) {
    const PlanFolder folder;
    const SurveyPlan plan = folder.plan(
        "[source]\nfile = \"survey.csv\"\n[lines]\nleave-out = [5700, \"9010\"]\n"
        "[[line]]\nline = \"5720\"\nname = \"last\"\n");
    const std::vector<LineToDo> lines = lines_to_do(plan, folder.index());
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0].planned.name, "5690");
    EXPECT_EQ(lines[1].planned.line, "5710");
    EXPECT_EQ(lines[2].planned.name, "last");
    EXPECT_EQ(lines[2].line, 3U);
}

std::string lines_refusal(const SurveyPlan& plan, const intake::SurveyIndex& index) {
    try {
        lines_to_do(plan, index);
    } catch (const Fault& fault) {
        return fault.what();
    }
    return "";
}

TEST(SurveyPlan, ALineThatTheFileDoesNotHaveIsToldWithThoseLikeIt) {
    const PlanFolder folder;
    const intake::SurveyIndex index = folder.index();
    const std::string file = "[source]\nfile = \"survey.csv\"\n";
    EXPECT_THAT(lines_refusal(folder.plan(file + "[lines]\nonly = [\"5691\"]"), index),
                AllOf(HasSubstr("survey.csv has no line 5691; nearest in name are 5690")));
    EXPECT_THAT(lines_refusal(folder.plan(file + "[lines]\nleave-out = [\"L1\"]"), index),
                HasSubstr("has no line L1"));
    EXPECT_THAT(lines_refusal(folder.plan(file + "[[line]]\nline = \"5700\"\nname = \"5690\""), index),
                HasSubstr("lines 5690 and 5700 would be written to one folder, 5690"));
}

TEST(SurveyPlan, LinesOfAFileWhoseNamesBecomeOneAreRefused) {
    const PlanFolder folder;
    std::string text = "line,easting,northing,tmi\n";
    for (const char* line : {"L 1", "L/1"})
        for (int i = 0; i < 3; ++i)
            text += std::string(line) + "," + std::to_string(500000 + i) + ",7000000,5\n";
    folder.write("odd.csv", text);
    const auto index = intake::index_survey(intake::recognise_survey(folder.path("odd.csv")), {});
    EXPECT_THAT(lines_refusal(folder.plan("[source]\nfile = \"odd.csv\"\n"), index),
                HasSubstr("lines L 1 and L/1 would be written to one folder, L_1"));
}

struct BadPlan {
    const char* text;
    const char* why;
};

TEST(SurveyPlan, BadPlansSayWhereAndWhat) {
    const PlanFolder folder;
    const std::string file = "[source]\nfile = \"survey.csv\"\n";
    for (const BadPlan& bad : std::initializer_list<BadPlan>{
             {"", "plan.toml names no line: [source] with file"},
             {"find = true\n", "plan.toml names no line"},
             {"[source]\n", "plan.toml, line 1, source: names neither a file nor workspaces"},
             {"[sorce]\nfile = \"survey.csv\"", "line 1, sorce: no such key; nearest is source"},
             {"[source]\nfil = \"survey.csv\"", "line 2, source.fil: no such key; nearest is file"},
             {"[source]\nfile = \"survy.csv\"", "line 2, source.file: there is no file"},
             {"[source]\nfile = \"north\"", "is a folder"},
             {"[source]\nfile = 3", "source.file: must be a text in quotes, not 3"},
             {"[source]\nfile = \"survey.csv\"\nworkspaces = \"north/a.axm\"", "not of both"},
             {"[source]\nworkspaces = \"north/a.axm\"\ncrs = \"EPSG:32754\"", "source.crs: no such key"},
             {"[source]\nworkspaces = [\"north/a.axm\", \"west.axm\"]",
              "source.workspaces[2]: there is no file"},
             {"[source]\nworkspaces = [\"north/a.axm\", \"north/a.axm\"]", "is named twice"},
             {"[source]\nworkspaces = [\"north/a.axm\", \"south/a.axm\"]",
              "would be written to the folder a, as is the workspace"},
             {"[source]\nworkspaces = []", "names no line"},
             {"name = \"x\nfind = true", "line 1, column 10: this is no TOML"},
             {"find = true\nfind = false", "this is no TOML"},
             {"name = \"x\"\n[\nfind = true", "line 2"}})
        EXPECT_THAT(folder.refusal(bad.text), HasSubstr(bad.why)) << bad.text;
    for (const BadPlan& bad : std::initializer_list<BadPlan>{
             {"date = \"July\"", "line 3, source.date: "},
             {"field = [1, 2]", "source.field: must be \"none\", or [F, I, D] in nT and degrees"},
             {"igrf = \"take\"", "source.igrf: must be remove or add, not \"take\""},
             {"roles = { mga = \"tmi\" }", "source.roles.mga: no such key; nearest is mag"},
             {"units = { tmi = \"T\" }", "source.units.tmi: must be m, ft, nT"},
             {"nulls = { tmi = \"none\" }", "source.nulls.tmi: must be a number, not \"none\""},
             {"[find]\nmots = 3", "line 4, find.mots: no such key; nearest is most"},
             {"[find]\nmost = 3.5", "line 4, find.most: must be a whole number from 1 to 100, not 3.5"},
             {"[find]\nmost = 0", "find.most: must be a whole number from 1 to 100"},
             {"[find]\nmost = \"3\"", "find.most: must be a whole number from 1 to 100, not \"3\""},
             {"[find]\nmost = 2\nbodies = 3", "line 5, find.bodies: asks for more bodies than most allows"},
             {"[find]\nkinds = \"thin,wide\"", "find.kinds: must be thin, thick or both"},
             {"[find]\nwindow = [9, 1]", "find.window: must be two distances"},
             {"[find]\nfree-present = 1", "find.free-present: must be true or false, not 1"},
             {"[invert]\nmethod = \"newton\"", "invert.method: must be least-squares or sweep"},
             {"[invert]\niterations = nan", "invert.iterations: must be a whole number from 1"},
             {"[uncertainty]\nstrike-within = 91", "uncertainty.strike-within: must be from 0 to 90 degrees"},
             {"[uncertainty]\nseed = -1", "uncertainty.seed: must be a whole number from 0"},
             {"[render]\nwidth = 8", "render.width: must be a whole number from 16 to 16384"},
             {"[render]\nview = \"top\"", "render.view: must be section, plan"},
             {"[lines]\nonly = []", "line 4, lines.only: names no line"},
             {"[lines]\nonly = [\"5690\", 5690.0]", "lines.only: line 5690 is named twice"},
             {"[lines]\nonly = [\"L1\", \"l1\"]", "is named twice"},
             {"[lines]\nonly = [\"L 1\", \"L/1\"]",
              "line L/1 would be written to the folder L_1, as is line L 1"},
             {"[lines]\nonly = [\"a b\", \"A_B\"]", "would be written to the folder A_B"},
             {"[lines]\nonly = [\"5690\"]\nleave-out = [\"5700\"]", "leave-out: is for a plan of all lines"},
             {"[lines]\ntable = \"none.csv\"", "lines.table: there is no file"},
             {"[lines]\nonly = [\"5690\"]\n[[line]]\nline = \"5691\"",
              "line 6, line[1].line: line 5691 is not among lines.only; nearest is 5690"},
             {"[[line]]\nfind = true", "line 3, line[1]: names no line"},
             {"[[line]]\nworkspace = \"a.axm\"", "line[1].workspace: no such key"},
             {"[[line]]\nline = 5690\n[[line]]\nline = 5690", "line 5690 is named twice"},
             {"[[line]]\nline = 5690\nname = \"../up\"",
              "line 5, line[1].name: must be the name of a folder"},
             {"[[line]]\nline = 5690\nname = \"x\"\n[[line]]\nline = 5700\nname = \"X\"",
              "line 5700 would be written to the folder X, as is line 5690"},
             {"[[line]]\nline = 5690\nfind = 3", "line[1].find: must be true, false or a table of options"},
             {"line = 3", "no such key"}})
        EXPECT_THAT(folder.refusal(file + bad.text), HasSubstr(bad.why)) << bad.text;
    for (const BadPlan& bad : std::initializer_list<BadPlan>{
             {"regional = 4", "plan.toml, line 1, regional: must be \"none\", 0 (level)"},
             {"noise-mag = 0", "noise-mag: must be a number of nT above 0"},
             {"mag-noise = 1", "mag-noise: no such key; nearest is noise-mag"},
             {"channel = \"mga\"", "channel: must be mag, grav or joint, not \"mga\""},
             {"formulas = \"new\"", "formulas: must be classic or exact"},
             {"channel = \"joint\"\ninvert.method = \"sweep\"", "invert.method: the channel joint needs"},
             {"export = [\"mesh\", \"dxf\"]", "export: must be profile-table, model-table, mesh"},
             {"export = [\"mesh\", \"mesh\"]", "export: names mesh twice"},
             {"name = \" \"", "name: must not be empty"}})
        EXPECT_THAT(folder.refusal(std::string(bad.text) + "\n" + file), HasSubstr(bad.why)) << bad.text;
}

TEST(SurveyPlan, BadTablesSayTheLineAndTheColumn) {
    const PlanFolder folder;
    for (const BadPlan& bad : std::initializer_list<BadPlan>{
             {"", "table.csv is empty: its first row names the columns"},
             {"workspace,find_most\n", "table.csv names no workspace"},
             {"workspace,find_mots\nnorth/a.axm,3\n",
              "table.csv, line 1, column find_mots: no such column; nearest is find_most"},
             {"workspace,mag_noise\nnorth/a.axm,3\n",
              "column mag_noise: no such column; nearest is noise_mag"},
             {"name,find_most\na,3\n", "table.csv, line 1: there is no column workspace"},
             {"workspace,line\nnorth/a.axm,5690\n", "column line: a table alone is of workspaces"},
             {"workspace,find,Find\nnorth/a.axm,yes,no\n", "line 1, column Find: stands twice"},
             {"workspace,\nnorth/a.axm,\n", "line 1, column 2: has no name"},
             {"workspace,find_most\nnorth/a.axm\n", "line 2: has 1 field where the first row names 2"},
             {"workspace,find_most\nnorth/a.axm,many\n",
              "line 2, column find_most: must be a whole number from 1 to 100, not \"many\""},
             {"workspace,find\nnorth/a.axm,perhaps\n", "line 2, column find: must be yes or no"},
             {"workspace,find,find_most\nnorth/a.axm,no,3\n", "is said of a command that is not to be done"},
             {"workspace,find\n\nnorth/a.axm,yes\n\nnorth/c.axm,no\n",
              "line 5, column workspace: there is no file"},
             {"workspace,find\nnorth/a.axm,yes\nnorth/../north/a.axm,no\n",
              "line 3, column workspace: the workspace"},
             {"workspace,name\nnorth/a.axm,x\nnorth/b.axm,X\n", "line 3, column workspace: the workspace"},
             {"workspace,name\nnorth/a.axm,\nsouth/a.axm,\n",
              "first in line 2: give one of them another name"},
             {"workspace,name\n,x\n", "line 2: names no workspace"},
             {"workspace,name\n\"north/a.axm,x\n", "line 2: a quoted text has no end"}})
        EXPECT_THAT(folder.refusal(bad.text, "table.csv"), HasSubstr(bad.why)) << bad.text;
}

TEST(SurveyPlan, BadJsonSaysWhere) {
    const PlanFolder folder;
    for (const BadPlan& bad : std::initializer_list<BadPlan>{
             {"{\"source\": {\"file\": \"survey.csv\"},\n \"find\": }",
              "plan.json: this is no JSON: parse error at line 2"},
             {"{\"source\": {\"file\": \"survey.csv\"}, \"find\": {\"most\": 0}}",
              "plan.json, find.most: must be"},
             {"{\"find\": true, \"find\": false}", "plan.json: the key find stands twice"},
             {"{\"source\": null}", "plan.json, source: is null"},
             {"[1]", "plan.json: must be a table, not a list"}})
        EXPECT_THAT(folder.refusal(bad.text, "plan.json"), HasSubstr(bad.why)) << bad.text;
    EXPECT_THAT(folder.refusal(std::string(5000, '[') + std::string(5000, ']'), "plan.json"),
                HasSubstr("nested too deep"));
}

TEST(SurveyPlan, AMissingPlanIsTold) {
    const PlanFolder folder;
    EXPECT_THROW(read_survey_plan(folder.path("none.toml")), FileFault);
    EXPECT_THROW(read_survey_plan(folder.path("north")), FileFault);
}

}  // namespace

}  // namespace anomalis::survey
