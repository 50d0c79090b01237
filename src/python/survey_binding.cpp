#include "python/survey_binding.h"

#include <filesystem>
#include <limits>
#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>
#include <utility>
#include <variant>

#include "core/paths.h"
#include "flow/import_survey.h"
#include "intake/formats/survey_format.h"
#include "intake/survey/survey_corrections.h"
#include "python/arrays.h"
#include "python/names.h"
#include "python/workspace_binding.h"
#include "survey/plan/read_plan.h"
#include "survey/results/survey_results.h"
#include "survey/results/table_columns.h"
#include "survey/run/run_survey.h"

namespace anomalis::python {

namespace py = pybind11;

namespace {

/// Does `job` without the lock; raises what the watch heard, then what the job raised.
template <class Job>
void without_lock(Watch& watch, Job&& job) {
    std::exception_ptr failure;
    {
        const py::gil_scoped_release free;
        try {
            job();
        } catch (...) {
            failure = std::current_exception();
        }
    }
    watch.raise_if_left();
    if (failure) std::rethrow_exception(failure);
}

class WatchPacer : public TurnPacer {
  public:
    explicit WatchPacer(Watch& watch) : watch_(watch) {}

  protected:
    bool turn(double) override { return watch_.stop(); }

  private:
    Watch& watch_;
};

struct SurveyFile {
    intake::SurveyIndex index;
};

intake::ColumnChoices choices_of(const py::dict& roles, const py::dict& units, const py::dict& nulls) {
    intake::ColumnChoices choices;
    for (const auto& [name, column] : roles) {
        const auto role = intake::role_of_name(name.cast<std::string>());
        if (!role) throw py::value_error("there is no role '" + name.cast<std::string>() + "'");
        choices.roles.emplace_back(*role, py::str(column).cast<std::string>());
    }
    for (const auto& [column, name] : units) {
        const auto unit = intake::unit_of_name(name.cast<std::string>());
        if (!unit) throw py::value_error("there is no unit '" + name.cast<std::string>() + "'");
        choices.units.emplace_back(py::str(column).cast<std::string>(), *unit);
    }
    for (const auto& [column, value] : nulls)
        choices.nulls.emplace_back(py::str(column).cast<std::string>(), value.cast<double>());
    return choices;
}

SurveyFile read_survey_file(const std::filesystem::path& file, const std::string& system,
                            const std::string& file_system, const py::dict& roles, const py::dict& units,
                            const py::dict& nulls) {
    const std::string path = file.string();
    require_readable(path);
    const intake::ColumnChoices choices = choices_of(roles, units, nulls);
    SurveyFile survey;
    Watch watch;
    without_lock(watch, [&] {
        WatchPacer pacer(watch);
        intake::SurveyLayout layout = intake::recognise_survey(path);
        intake::take_choices(choices, layout);
        survey.index = intake::index_survey(layout, {.from = file_system, .to = system}, pacer);
    });
    return survey;
}

py::list survey_lines(const SurveyFile& survey) {
    py::list rows;
    for (const intake::SurveyLineInfo& line : survey.index.lines) {
        py::dict row;
        row["line"] = line.name;
        row["stations"] = line.stations;
        row["length_m"] = line.length_m;
        row["first_east_m"] = line.first_east;
        row["first_north_m"] = line.first_north;
        row["tie"] = line.tie;
        rows.append(row);
    }
    return rows;
}

std::size_t place_of(const SurveyFile& survey, const std::string& name) {
    if (const auto line = flow::find_line(survey.index, name)) return *line;
    std::string near;
    for (const std::string& one : flow::near_line_names(survey.index, name))
        near += (near.empty() ? "" : ", ") + one;
    throw Fault(file_name(survey.index.layout.path) + " has no line " + name + "; nearest in name are " +
                near);
}

py::dict read_line(const SurveyFile& survey, const std::string& name) {
    const std::size_t place = place_of(survey, name);
    intake::SurveyLine line;
    Watch watch;
    without_lock(watch, [&] {
        WatchPacer pacer(watch);
        line = intake::read_survey_line(survey.index, place, {}, pacer);
    });
    py::dict columns;
    const auto add = [&](const char* column, std::vector<double>& values) {
        if (!values.empty()) columns[column] = owning_array(std::move(values));
    };
    add("east_m", line.east);
    add("north_m", line.north);
    add(line.height_is_clearance ? "clearance_m" : "sensor_m", line.height);
    add("ground_m", line.ground);
    add("mag_nT", line.mag);
    add("grav_mGal", line.grav);
    add("longitude_deg", line.longitude);
    add("latitude_deg", line.latitude);
    add("fiducial", line.fiducial);
    return columns;
}

std::shared_ptr<WorkspaceObject> import_line(const SurveyFile& survey, const std::string& name,
                                             const std::filesystem::path& target, const std::string& date,
                                             const py::object& field, std::optional<double> sensor_height,
                                             const std::string& formulas, bool replace) {
    const std::string path = target.string();
    if (!path.ends_with(".axm")) throw py::value_error("the workspace file must end in .axm: " + path);
    require_folder_of(path);
    flow::ImportChoices choices;
    choices.date = date;
    if (!field.is_none()) {
        choices.field_choice = flow::FieldChoice::keyed;
        choices.field = field_of(field);
    }
    if (sensor_height) choices.sensor_offset = static_cast<float>(*sensor_height);
    choices.formulas = formulas_of(formulas);
    const std::size_t place = place_of(survey, name);
    if (const std::string why = flow::import_refusal(survey.index, place); !why.empty()) throw Fault(why);
    ToldPrompts prompts;
    bool written = false;
    Watch watch;
    without_lock(watch, [&] {
        WatchPacer pacer(watch);
        const flow::ImportedLine line = flow::import_line_as(survey.index, place, choices, path, pacer);
        show_faults(line.notes, prompts);
        written = flow::write_imported(
            line, flow::LeftBehind::table_and_workspace,
            replace ? flow::ReplaceExisting::agreed : flow::ReplaceExisting::refuse, prompts);
    });
    if (!written) {
        const std::string why = prompts.texts(Severity::failure);
        throw Fault(why.empty() ? "The line was not imported" : why);
    }
    warn_of(prompts.told());
    auto object = read_workspace(path);
    load_line(*object);
    return object;
}

/// Texts as a list, numbers as an array with NaN for those that nobody knows.
py::object column_of(output::GisKind kind, const std::vector<output::GisValue>& values) {
    if (kind == output::GisKind::words) {
        py::list texts;
        for (const output::GisValue& value : values) {
            const auto* text = std::get_if<std::string>(&value);
            texts.append(text ? py::object(py::str(*text)) : py::none());
        }
        return texts;
    }
    std::vector<double> numbers;
    for (const output::GisValue& value : values) {
        if (const auto* whole = std::get_if<std::int64_t>(&value)) {
            numbers.push_back(static_cast<double>(*whole));
        } else if (const auto* real = std::get_if<double>(&value)) {
            numbers.push_back(*real);
        } else {
            numbers.push_back(std::numeric_limits<double>::quiet_NaN());
        }
    }
    return owning_array(std::move(numbers));
}

template <class Columns, class EachRow>
py::dict table_of(const Columns& columns, const EachRow& each_row) {
    py::dict table;
    for (const auto& column : columns) {
        std::vector<output::GisValue> values;
        each_row([&](const auto&... row) { values.push_back(column.value(row...)); });
        table[py::str(column.field.name)] = column_of(column.field.kind, values);
    }
    return table;
}

py::dict read_results(const std::filesystem::path& folder) {
    survey::SurveyResults results;
    Watch watch;
    without_lock(watch, [&] { results = survey::read_survey_results(folder.string()); });
    py::dict all;
    all["name"] = results.identity.name;
    all["source"] = results.identity.source;
    all["lines"] = table_of(survey::line_columns(), [&](const auto& take) {
        for (const survey::LineResult& line : results.lines) take(line);
    });
    all["bodies"] = table_of(survey::body_columns(), [&](const auto& take) {
        for (const survey::LineResult& line : results.lines)
            for (const survey::BodyResult& body : line.bodies) take(line, body);
    });
    all["missing"] = results.missing;
    return all;
}

class Observer : public survey::SurveyObserver {
  public:
    explicit Observer(Watch& watch) : watch_(watch) {}
    void progress(const survey::SurveyProgress& progress) override {
        watch_.tell([&] {
            py::dict state;
            state["lines"] = progress.lines;
            state["done"] = progress.done;
            state["kept"] = progress.kept;
            state["failed"] = progress.failed;
            state["seconds"] = progress.seconds;
            state["last"] = progress.last;
            return py::make_tuple(state);
        });
    }
    bool stop() override { return watch_.stop(); }

  private:
    Watch& watch_;
};

py::dict run_survey(const std::filesystem::path& plan_file, const std::filesystem::path& folder, int jobs,
                    bool again_failed, const std::optional<std::pair<int, int>>& shard,
                    const py::object& progress) {
    require_readable(plan_file.string());
    survey::RunOptions options;
    options.folder = folder.string();
    options.jobs = jobs;
    options.again_failed = again_failed;
    if (jobs < 0) throw py::value_error("jobs must be 0 or more");
    if (shard) options.shard = {shard->first, shard->second};
    survey::RunResult result;
    Watch watch(progress);
    without_lock(watch, [&] {
        const survey::SurveyPlan plan = survey::read_survey_plan(plan_file.string());
        Observer observer(watch);
        result = survey::run_survey(plan, options, observer);
    });
    if (result.outcome == survey::RunOutcome::try_again) throw FileTrouble(result.why);
    py::dict state;
    state["outcome"] = result.outcome == survey::RunOutcome::all_done ? "all done" : "some failed";
    state["lines"] = result.progress.lines;
    state["done"] = result.progress.done;
    state["kept"] = result.progress.kept;
    state["failed"] = result.progress.failed;
    state["seconds"] = result.progress.seconds;
    return state;
}

void define_survey_file(py::module_& module) {
    py::class_<SurveyFile> type(module, "SurveyFile",
                                "A survey file and its lines: `read_survey_file` gives one.");
    type.def_property_readonly(
        "lines", &survey_lines,
        "One dict a line, rows for a DataFrame: line, stations, length_m, first_east_m, "
        "first_north_m, tie.");
    type.def_property_readonly(
        "coordinate_system", [](const SurveyFile& survey) { return survey.index.coordinate_system; },
        "Of the stations, \"EPSG:32754\"; \"\" where nobody knows.");
    type.def_property_readonly(
        "remarks", [](const SurveyFile& survey) { return survey.index.layout.remarks; },
        "What there is to say of the file, a list of str.");
    type.def(
        "read", &read_line, py::arg("line"),
        "The columns of a line, a dict of float64 arrays with units in their names; NaN where there is no "
        "value.");
    type.def(
        "import_line", &import_line, py::arg("line"), py::arg("path"), py::kw_only(), py::arg("date") = "",
        py::arg("field") = py::none(), py::arg("sensor_height") = py::none(), py::arg("formulas") = "exact",
        py::arg("replace") = false,
        "Makes the workspace of a line at `path` (.axm) with its table beside it, and returns it loaded. "
        "date: of the survey, \"1990-07-01\" or a decimal year, else that of the file; field: (nT, "
        "inclination, declination), else IGRF at the middle of the line on that date; sensor_height: m "
        "above ground, for a file that tells only one height. Files with other contents that are there "
        "are replaced only with replace=True.");
}

}  // namespace

void define_surveys(py::module_& module) {
    define_survey_file(module);
    module.def("read_survey_file", &read_survey_file, py::arg("path"), py::kw_only(), py::arg("crs") = "",
               py::arg("file_crs") = "", py::arg("roles") = py::dict(), py::arg("units") = py::dict(),
               py::arg("nulls") = py::dict(),
               R"(Reads what lines a survey file has and returns a SurveyFile.

crs: coordinate system of the stations, file_crs: of the file, such as "EPSG:32754". roles: what columns are,
{"mag": "tmi"}; units: {"gravity": "um/s2"}; nulls: values that stand for none, {"mag": -99999}; a column by its
name or its number from 1.

>>> import anomalis
>>> survey = anomalis.read_survey_file("dyke_swarm.dat")
>>> survey.lines[0]["line"]
'100'
>>> sorted(survey.read("100"))
['east_m', 'ground_m', 'mag_nT', 'north_m']
)");
    module.def(
        "read_results", &read_results, py::arg("folder"),
        R"(The results of a survey: a dict with "name", "source", "missing" (lines not done yet), "lines" and "bodies".

The last two are tables, dicts of columns with the names and units of lines.csv and bodies.csv, as
pandas.DataFrame takes them: float64 arrays, NaN where nothing is known, and lists of str.
)");
    module.def("run_survey", &run_survey, py::arg("plan"), py::arg("folder"), py::kw_only(),
               py::arg("jobs") = 0, py::arg("again_failed") = false, py::arg("shard") = py::none(),
               py::arg("progress") = py::none(),
               R"(Does the lines of a plan (TOML, JSON or CSV) that are not done yet, all cores at a time.

The results are in `folder`, as the command line leaves them but for pictures, which need the programs: a plan
with a picture is refused line by line. jobs: lines at a time, 0 for as many as there are cores; shard: (part,
of parts) from 1; again_failed: lines that failed are tried again. progress(state) gets a dict: lines, done,
kept (from before), failed, seconds, last. Returns that dict with "outcome": "all done" or "some failed".
Raises Error for what is wrong before anything runs, FileError when there is no room or no access; Ctrl+C
finishes what is being written. The next call goes on.
)");
}

}  // namespace anomalis::python
