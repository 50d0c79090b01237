#include "python/workspace_binding.h"

#include <filesystem>
#include <pybind11/stl/filesystem.h>
#include <utility>

#include "model/refresh_model.h"
#include "output/clean_tables.h"
#include "output/dxf.h"
#include "output/gis_files.h"
#include "output/tables.h"
#include "python/arrays.h"
#include "python/body_object.h"
#include "python/names.h"
#include "workspace_file/axm.h"

namespace anomalis::python {

namespace py = pybind11;

namespace {

constexpr const char* workspace_doc = R"(A line with its readings and its model.

Read from a workspace file, or made of arrays (`from_arrays`, `set_line`); `load` brings stations, readings and
the calculated curves. `bodies` are the model; `find` proposes one, `fit` fits it, `uncertainty` tells how sure
it is. What is changed between is calculated by `forward`, or by the next step.

One Workspace serves one thread at a time: another one that comes meanwhile gets Error. The lock of the
interpreter is released while it works, and Ctrl+C ends the work within a moment; the model is then as far as
it came. Doubts are told as AnomalisWarning, all that was told last stands in `messages`.

>>> import anomalis
>>> ws = anomalis.Workspace.read("dyke_swarm.axm").load()
>>> len(ws.bodies), ws.formulas
(5, 'exact')
>>> ws.bodies[0].name, ws.bodies[0].top
('West dyke', 297.0)
>>> ws.bodies[0].top = 290
>>> ws.forward().rms("mag") > 1
True
)";

std::shared_ptr<WorkspaceObject> share(py::handle self) {
    return self.cast<std::shared_ptr<WorkspaceObject>>();
}

std::vector<double> column_of(const py::object& values, const char* name, std::size_t stations) {
    if (values.is_none()) return {};
    if (py::isinstance<py::float_>(values) || py::isinstance<py::int_>(values))
        return std::vector<double>(stations, values.cast<double>());
    const InputArray array(values, name);
    require_stations(array, name, stations);
    const auto span = array.span();
    return {span.begin(), span.end()};
}

LineArrays arrays_of(const py::object& east, const py::object& north, const py::object& elevation,
                     const py::object& mag, const py::object& grav, const py::object& ground,
                     const std::string& name) {
    const InputArray easts(east, "east");
    const std::size_t count = easts.size();
    LineArrays line;
    line.east.assign(easts.span().begin(), easts.span().end());
    line.north = column_of(north, "north", count);
    line.sensor = column_of(elevation, "elevation", count);
    line.mag = column_of(mag, "mag", count);
    line.grav = column_of(grav, "grav", count);
    line.ground = column_of(ground, "ground", count);
    line.name = name;
    if (line.mag.empty() && line.grav.empty())
        throw py::value_error("a line needs readings: give mag (nT), grav (mGal) or both");
    return line;
}

void set_field(Workspace& workspace, const py::object& field) {
    workspace.field = field_of(field);
    workspace.source.field_missing = false;
    workspace.source.field_origin.clear();
}

void set_line(WorkspaceObject& object, const py::object& east, const py::object& north,
              const py::object& elevation, const py::object& mag, const py::object& grav,
              const py::object& ground, const std::string& name) {
    LineArrays line = arrays_of(east, north, elevation, mag, grav, ground, name);
    const bool missing = object.workspace().source.field_missing;
    object.detach_views();
    take_arrays(line, object.workspace());
    object.workspace().source.field_missing = missing;
    object.arrays = std::move(line);
    load_line(object);
}

std::shared_ptr<WorkspaceObject> from_arrays(const py::object& east, const py::object& north,
                                             const py::object& elevation, const py::object& mag,
                                             const py::object& grav, const py::object& ground,
                                             const py::object& field, const std::string& formulas,
                                             const std::string& name) {
    auto object = std::make_shared<WorkspaceObject>();
    Workspace& workspace = object->workspace();
    forget_field(workspace);
    workspace.formulas = formulas_of(formulas);
    if (!field.is_none()) set_field(workspace, field);
    set_line(*object, east, north, elevation, mag, grav, ground, name);
    return object;
}

void write(WorkspaceObject& object, const std::filesystem::path& target) {
    const std::string path = target.string();
    require_folder_of(path);
    Watch watch;
    bool written = false;
    if (object.arrays && !path.ends_with(".axm"))
        throw py::value_error("the workspace file must end in .axm, since its table goes beside it: " + path);
    object.work(watch, [&](Session& session) {
        Workspace& workspace = session.workspace;
        written = object.arrays
                      ? write_with_table(*object.arrays, path, workspace, session.prompts)
                      : workspace_file::write_model_parameters(0, path, workspace, session.prompts) == 0;
        if (written) workspace.model_file = path;
    });
    object.settle(!written, "The workspace was not written (" + path + ")");
}

/// Brings the numbers up to date; failures are in what was told.
void refresh(WorkspaceObject& object) {
    if (object.state() == flow::OpenState::no_data)
        throw Fault("the workspace has no stations: load() reads them, set_line() gives them");
    Watch watch;
    object.work(watch, [](Session& session) { model::refresh_model(session); });
    if (object.workspace().station_count == 0)
        throw Fault("stations would now be read in another way: load() reads them again");
    object.settle(false, "");
}

void set_bodies(WorkspaceObject& object, const py::iterable& bodies) {
    const std::vector<ModelBody> copies = bodies_of(bodies);
    Workspace& workspace = object.workspace();
    workspace.body_count = 0;
    for (const ModelBody& body : copies) {
        reserve_next_body(workspace);
        ModelBody& place = workspace.body(++workspace.body_count);
        place = body;
        if (place.name.empty()) place.name = "Body " + std::to_string(workspace.body_count);
        if (workspace.station_count > 0) place.response.assign(workspace.station_count);
    }
    forget_run(object.session().inversion);
}

py::tuple handles(const py::handle self) {
    const std::shared_ptr<WorkspaceObject> object = share(self);
    const int count = object->workspace().body_count;
    py::tuple all(static_cast<std::size_t>(count));
    for (int number = 1; number <= count; ++number)
        all[static_cast<std::size_t>(number) - 1] = BodyObject(object, number);
    return all;
}

using Write = std::function<int(const std::string&, const Workspace&, Prompts&)>;

const std::vector<std::pair<std::string, Write>>& exports() {
    static const std::vector<std::pair<std::string, Write>> all{
        {"profile_table",
         [](const auto& path, const auto& workspace, auto& prompts) {
             return output::write_profile_table(path, workspace, prompts);
         }},
        {"model_table", [](const auto& path, const auto& workspace,
                           auto& prompts) { return output::write_model_table(path, workspace, prompts); }},
        {"mesh", output::write_mesh_header},
        {"clean_profile",
         [](const auto& path, const auto& workspace, auto& prompts) {
             return output::write_clean_profile_table(path, workspace, prompts);
         }},
        {"clean_model",
         [](const auto& path, const auto& workspace, auto& prompts) {
             return output::write_clean_model_table(path, workspace, prompts);
         }},
        {"dxf_3d", output::write_body_dxf},
        {"dxf_plan", output::write_plan_dxf},
        {"geojson", [](const auto& path, const auto& workspace,
                       auto& prompts) { return output::write_geojson(path, workspace, prompts); }},
        {"geopackage", [](const auto& path, const auto& workspace, auto& prompts) {
             return output::write_geopackage(path, workspace, output::GisSystem::of_line, prompts);
         }}};
    return all;
}

void export_file(WorkspaceObject& object, const std::string& kind, const std::filesystem::path& target) {
    const std::string path = target.string();
    std::string kinds;
    for (const auto& [name, one] : exports()) {
        kinds += (kinds.empty() ? "" : ", ") + name;
        if (name != kind) continue;
        require_folder_of(path);
        int status = 0;
        Watch watch;
        object.work(watch, [&, &to_file = one](Session& session) {
            if (session.workspace.station_count > 0) model::refresh_model(session);
            status = to_file(path, session.workspace, session.prompts);
        });
        return object.settle(status != 0, "The file was not written (" + path + ")");
    }
    throw py::value_error("there is no export '" + kind + "'; there are " + kinds);
}

}  // namespace

void load_line(WorkspaceObject& object) {
    object.detach_views();
    Watch watch;
    object.work(watch, [&](Session& session) {
        object.opened = object.arrays ? flow::load_unattended(session, object.arrays->columns())
                                      : flow::load_unattended(session);
    });
    const bool failed = object.opened.state == flow::OpenState::no_data;
    object.settle(failed, object.opened.report.problem.empty() ? "There is no line in the data"
                                                               : object.opened.report.problem);
}

std::shared_ptr<WorkspaceObject> read_workspace(const std::string& path) {
    require_readable(path);
    auto object = std::make_shared<WorkspaceObject>();
    Watch watch;
    int status = 0;
    object->work(watch, [&](Session& session) {
        status = workspace_file::read_model_parameters(0, session.workspace, path, session.settings,
                                                       session.prompts);
    });
    object->settle(status != 0, "The workspace cannot be read (" + path + ")");
    return object;
}

WorkspaceClass define_workspace(py::module_& module) {
    WorkspaceClass type(module, "Workspace", workspace_doc);
    type.def(py::init([] {
                 auto object = std::make_shared<WorkspaceObject>();
                 forget_field(object->workspace());
                 return object;
             }),
             "An empty workspace with the exact formulas: `set_line` gives it a line.");
    type.def_static(
        "read", [](const std::filesystem::path& path) { return read_workspace(path.string()); },
        py::arg("path"),
        "Reads a workspace file (.axm), not its data: `load` does that. Raises FileNotFoundError and other "
        "OSErrors for the file, Error for what stands in it.");
    type.def_static("from_arrays", &from_arrays, py::arg("east"), py::arg("north"),
                    py::arg("elevation") = py::none(), py::kw_only(), py::arg("mag") = py::none(),
                    py::arg("grav") = py::none(), py::arg("ground") = py::none(),
                    py::arg("field") = py::none(), py::arg("formulas") = "exact", py::arg("name") = "line",
                    R"(A workspace for a line in memory, loaded.

east, north, elevation (of the sensors) and ground (elevations) in m, mag in nT, grav in mGal: n numbers each,
or one for all; readings and heights that are NaN are missing there. `field` is (nT, inclination, declination),
which magnetics need. The arrays are copied, coordinates in double precision, readings in single.

>>> import anomalis, pandas
>>> table = pandas.read_csv("dyke_swarm.dat", sep=r"\s+", comment="!")
>>> ws = anomalis.Workspace.from_arrays(table["east"], table["north"], table["sensor"], ground=table["ground"],
...                                     mag=table["tmi"], field=(51940, -53.1, 6.7))
>>> len(ws.distances) == len(table)
True
)");
    type.def(
        "set_line", &set_line, py::arg("east"), py::arg("north"), py::arg("elevation") = py::none(),
        py::kw_only(), py::arg("mag") = py::none(), py::arg("grav") = py::none(),
        py::arg("ground") = py::none(), py::arg("name") = "line",
        "Puts a line in memory in place of the present one, as `from_arrays` takes it; bodies, field and "
        "settings stay.");
    type.def(
        "load",
        [](const py::object& self) {
            load_line(*share(self));
            return self;
        },
        "Reads the data of the line and calculates the model; returns the workspace. Views that were taken "
        "before keep what they show.");
    type.def("write", &write, py::arg("path"),
             "Writes the workspace file, in place of one that is there. A line in memory gets a table of the "
             "same name (.csv) beside it, both or none.");
    type.def(
        "forward",
        [](const py::object& self) {
            refresh(*share(self));
            return self;
        },
        "Brings all numbers up to date with bodies and settings, and only what is not; returns the "
        "workspace.");
    type.def_property(
        "bodies", &handles,
        [](WorkspaceObject& object, const py::iterable& bodies) { set_bodies(object, bodies); },
        "The bodies of the model, a tuple of Body: a change of one is a change of the model. Set with any "
        "sequence of Body, which is copied.");
    type.def("export", &export_file, py::arg("kind"), py::arg("path"),
             "Writes a table or drawing for other programs: profile_table, model_table, mesh, clean_profile, "
             "clean_model, dxf_3d, dxf_plan, geojson or geopackage.");
    type.def_property_readonly(
        "messages",
        [](WorkspaceObject& object) {
            object.session();
            return texts_of(object.told());
        },
        "All that the last step told, a list of str.");
    return type;
}

}  // namespace anomalis::python
