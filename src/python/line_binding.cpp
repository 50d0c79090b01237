#include <cmath>
#include <pybind11/stl.h>

#include "core/regional.h"
#include "flow/fit_window.h"
#include "python/arrays.h"
#include "python/names.h"
#include "python/workspace_binding.h"
#include "show/fit_quality.h"

namespace anomalis::python {

namespace py = pybind11;

namespace {

Workspace& with_stations(WorkspaceObject& object) {
    Workspace& workspace = object.workspace();
    if (workspace.station_count < 1)
        throw Fault("the workspace has no stations: load() reads them, set_line() gives them");
    return workspace;
}

const Channel& channel_in(WorkspaceObject& object, const std::string& name) {
    const Workspace& workspace = with_stations(object);
    const int code = channel_of(name);
    if (!(code == channel_mag ? workspace.has_mag() : workspace.has_grav()))
        throw Fault(std::string("the line has no ") + (code == channel_mag ? "magnetics" : "gravity"));
    return workspace.channel(code);
}

py::array_t<double> station_column(WorkspaceObject& object, int column) {
    const Workspace& workspace = with_stations(object);
    const auto count = static_cast<std::size_t>(workspace.station_count);
    return read_only_view(workspace.stations.column(column).first(count), object.held());
}

py::array_t<double> distances(WorkspaceObject& object) {
    const Workspace& workspace = with_stations(object);
    return read_only_view(workspace.distances.span(), object.held());
}

py::array_t<float> row_view(WorkspaceObject& object, const std::string& channel, const std::string& row,
                            int stage) {
    const ChannelTable& data = channel_in(object, channel).data;
    return read_only_view(data.row(row_of(row), stage), object.held());
}

py::array_t<double> regional(WorkspaceObject& object, const std::string& channel) {
    const Regional& found = channel_in(object, channel).regional;
    std::vector<double> values;
    for (const double distance : object.workspace().distances.span()) values.push_back(found.at(distance));
    return owning_array(std::move(values));
}

py::object number_or_none(double value, bool there) {
    return there ? py::object(py::float_(value)) : py::none();
}

py::object rms(WorkspaceObject& object, const std::string& channel) {
    channel_in(object, channel);
    const auto quality = show::fit_quality(object.workspace(), channel_of(channel));
    return number_or_none(quality ? quality->rms : 0, quality.has_value());
}

py::object noise(WorkspaceObject& object, const std::string& channel) {
    channel_in(object, channel);
    const show::ChannelNoise noise = show::channel_noise(object.workspace(), channel_of(channel));
    return number_or_none(noise.value, noise.source != show::NoiseSource::none);
}

void set_noise(WorkspaceObject& object, const std::string& channel, std::optional<double> value) {
    if (value && !(*value > 0 && std::isfinite(*value)))
        throw py::value_error("noise must be above 0, or None to have it estimated");
    object.workspace().channel(channel_of(channel)).noise = value ? static_cast<float>(*value) : unset;
}

py::object regional_degree(WorkspaceObject& object, const std::string& channel) {
    const std::int32_t degree = object.workspace().channel(channel_of(channel)).regional_degree;
    return degree == no_regional ? py::object(py::none()) : py::int_(degree);
}

void set_regional_degree(WorkspaceObject& object, const std::string& channel, std::optional<int> degree) {
    if (degree && (*degree < 0 || *degree > most_regional_degree))
        throw py::value_error("the degree of a regional must be 0 to 3, or None");
    object.workspace().channel(channel_of(channel)).regional_degree = degree.value_or(no_regional);
}

py::dict source(WorkspaceObject& object) {
    const LineSource& from = object.workspace().source;
    py::dict values;
    values["file"] = from.file;
    values["line"] = from.line;
    values["coordinate_system"] = from.coordinate_system;
    values["date"] = from.date;
    values["field_origin"] = from.field_origin;
    return values;
}

void set_window(WorkspaceObject& object, const std::optional<std::pair<double, double>>& window) {
    Workspace& workspace = with_stations(object);
    const double last = workspace.distances.last();
    const auto [from, to] = window.value_or(std::pair(0.0, last));
    const std::string why = flow::choose_fit_window(workspace, {from, to});
    if (!why.empty()) throw Fault(why);
}

py::dict load_report(WorkspaceObject& object) {
    object.session();
    py::dict texts;
    for (const intake::ReportItem& item : intake::report_items(object.opened.report))
        texts[py::str(item.label)] = item.text;
    return texts;
}

/// A setting of single precision, m.
template <class Member>
void define_length(WorkspaceClass& type, const char* name, Member member, const char* doc) {
    type.def_property(
        name, [member](WorkspaceObject& object) { return static_cast<double>(object.workspace().*member); },
        [member, name](WorkspaceObject& object, double value) {
            if (!std::isfinite(static_cast<float>(value)))
                throw py::value_error(std::string(name) + " must be a finite number of m");
            object.workspace().*member = static_cast<float>(value);
        },
        doc);
}

void define_views(WorkspaceClass& type) {
    type.def_property_readonly("distances", &distances,
                               "Distances of the stations along the profile, m, rising from 0: a read-only "
                               "float64 view of n numbers.");
    type.def_property_readonly(
        "east", [](WorkspaceObject& object) { return station_column(object, column_east); },
        "East coordinates of the stations, m: a read-only float64 view of n numbers.");
    type.def_property_readonly(
        "north", [](WorkspaceObject& object) { return station_column(object, column_north); },
        "North coordinates of the stations, m: a read-only float64 view of n numbers.");
    type.def_property_readonly(
        "elevation", [](WorkspaceObject& object) { return station_column(object, column_sensor); },
        "Elevations of the sensor, m: a read-only float64 view of n numbers.");
    type.def_property_readonly(
        "ground", [](WorkspaceObject& object) { return station_column(object, column_ground); },
        "Elevations of the ground, m: a read-only float64 view of n numbers.");
    type.def(
        "observed",
        [](WorkspaceObject& object, const std::string& channel, const std::string& row) {
            return row_view(object, channel, row, stage_observed);
        },
        py::arg("channel") = "mag", py::arg("row") = "residual",
        R"(A row of what was observed: "mag" in nT, "grav" in mGal, a read-only float32 view of n numbers.

row: "raw" as they were read, "smoothed", "residual" less base level and regional, as a fit compares it,
"gradient", "horizontal" or "total_gradient" (the unit a station). A missing reading is below -1e30. The view
shows what stands there, also after the next `forward`; after the next `load` it keeps the old numbers.

>>> import anomalis
>>> ws = anomalis.Workspace.read("dyke_swarm.axm").load()
>>> row = ws.observed("mag", "raw")
>>> row.dtype.name, row.flags.writeable, row.shape == ws.distances.shape
('float32', False, True)
)");
    type.def(
        "calculated",
        [](WorkspaceObject& object, const std::string& channel, const std::string& row) {
            return row_view(object, channel, row, stage_calculated);
        },
        py::arg("channel") = "mag", py::arg("row") = "residual",
        "The same row of what the model gives, as of the last calculation; \"raw\" is the sum of the "
        "bodies.");
    type.def(
        "regional", &regional, py::arg("channel") = "mag",
        "The regional in force at the stations, nT or mGal: a float64 array of n numbers, 0 without one.");
}

void define_settings(WorkspaceClass& type) {
    type.def_property(
        "field",
        [](WorkspaceObject& object) -> py::object {
            const Workspace& workspace = object.workspace();
            if (workspace.source.field_missing) return py::none();
            const EarthField& field = workspace.field;
            return py::make_tuple(static_cast<double>(field.intensity),
                                  static_cast<double>(field.inclination),
                                  static_cast<double>(field.declination));
        },
        [](WorkspaceObject& object, const py::object& field) {
            Workspace& workspace = object.workspace();
            workspace.field = field_of(field);
            workspace.source.field_missing = false;
            workspace.source.field_origin.clear();
        },
        "The field that induces: (nT, inclination, declination in degrees, down and east positive); None "
        "while nobody gave it. Kept in single precision.");
    type.def_property(
        "formulas",
        [](WorkspaceObject& object) { return std::string(formulas_name(object.workspace().formulas)); },
        [](WorkspaceObject& object, const std::string& name) {
            object.workspace().formulas = formulas_of(name);
        },
        "\"exact\" or \"classic\".");
    type.def_property_readonly("source", &source, "Whence the numbers of the line came, a dict of str.");
    type.def_property_readonly(
        "path", [](WorkspaceObject& object) { return object.workspace().model_file; },
        "The workspace file that was read or written last; \"\" for none.");
    type.def_property_readonly(
        "data_file", [](WorkspaceObject& object) { return object.workspace().definition.data_file; },
        "The file with the readings; of a line in memory the name of its table to be.");
    type.def_property_readonly("load_report", &load_report, "What the last load did, a dict of str.");
    type.def_property(
        "window",
        [](WorkspaceObject& object) {
            const Workspace& workspace = with_stations(object);
            return py::make_tuple(workspace.distances[workspace.first_station],
                                  workspace.distances[workspace.last_station]);
        },
        &set_window,
        "The stretch that a fit uses, (first, last) m along the profile; set None for all of it.");
    define_length(type, "sensor_offset", &Workspace::sensor_offset,
                  "Height of the sensor above ground, m, where the data tell only one of them.");
    define_length(type, "surface_elevation", &Workspace::surface_elevation,
                  "Elevation of the ground, m, where the data tell none.");
    define_length(type, "station_spacing", &Workspace::station_spacing,
                  "Spacing that the next `load` resamples the line to, m; 0 keeps the stations.");
    define_length(type, "min_station_spacing", &Workspace::min_station_spacing,
                  "Stations closer than this are merged by the next `load`, m.");
    define_length(type, "gap_distance", &Workspace::gap_distance,
                  "Stations farther apart than this bound a gap, m; 0 knows of none.");
}

}  // namespace

void define_line(WorkspaceClass& type) {
    define_views(type);
    define_settings(type);
    type.def(
        "rms", &rms, py::arg("channel") = "mag",
        "Root mean square of observed less regional less calculated over the window, nT or mGal, a float.");
    type.def(
        "noise", &noise, py::arg("channel") = "mag",
        "Standard deviation of a reading, nT or mGal: as set, as fitted, or estimated from the line; None "
        "where the readings tell none.");
    type.def("set_noise", &set_noise, py::arg("channel"), py::arg("value"),
             "Standard deviation of a reading, nT or mGal, for fits; None has it estimated.");
    type.def("regional_degree", &regional_degree, py::arg("channel") = "mag",
             "Degree of the regional, 0 to 3; None without one.");
    type.def("set_regional_degree", &set_regional_degree, py::arg("channel"), py::arg("degree"),
             "Degree of the regional that a fit finds, 0 to 3; None for none.");
}

}  // namespace anomalis::python
