#include "survey/joined/joined_exports.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <type_traits>
#include <utility>
#include <variant>

#include "core/body_parameters.h"
#include "core/failure.h"
#include "output/csv_text.h"
#include "survey/joined/joined_values.h"
#include "survey/joined/line_families.h"
#include "survey/results/table_columns.h"

namespace anomalis::survey {

namespace {

using output::gis_number;
using output::GisKind;
using output::GisValue;
using JoinedColumns = std::vector<TableColumn<SurveyResults, JoinedBody>>;

std::string line_names(const SurveyResults& results, const std::vector<std::size_t>& lines) {
    std::string text;
    for (const std::size_t line : lines) text += (text.empty() ? "" : " | ") + results.lines[line].line;
    return text;
}

/// "L1000:2 | L1010:1", the line and the number of the body there.
std::string member_names(const SurveyResults& results, const JoinedBody& joined) {
    std::string text;
    for (const JoinedMember& member : joined.members) {
        const LineResult& line = results.lines[member.line];
        text +=
            (text.empty() ? "" : " | ") + line.line + ":" + std::to_string(line.bodies[member.body].number);
    }
    return text;
}

void add_number(JoinedColumns& columns, const std::string& name, auto value) {
    columns.push_back({{name, GisKind::real}, [value](const SurveyResults&, const JoinedBody& joined) {
                           return gis_number(value(joined));
                       }});
}

/// A mean with its standard error and interval.
void add_value(JoinedColumns& columns, const std::string& name, JoinedValue JoinedBody::*value) {
    add_number(columns, name, [=](const JoinedBody& joined) { return (joined.*value).value; });
    add_number(columns, name + "_error", [=](const JoinedBody& joined) { return (joined.*value).error; });
    add_number(columns, name + "_lower_90", [=](const JoinedBody& joined) { return (joined.*value).lower; });
    add_number(columns, name + "_upper_90", [=](const JoinedBody& joined) { return (joined.*value).upper; });
}

std::vector<std::pair<std::string, JoinedValue JoinedBody::*>> joined_value_names() {
    const auto name = [](ParamCode code) { return std::string(body_parameter(code).column.sheet); };
    return {{"depth_below_ground_m", &JoinedBody::depth_below_ground},
            {"depth_below_sensor_m", &JoinedBody::depth_below_sensor},
            {name(param_top), &JoinedBody::top_elevation},
            {name(param_dip), &JoinedBody::dip},
            {name(param_width), &JoinedBody::width},
            {name(param_susc), &JoinedBody::susceptibility},
            {name(param_density), &JoinedBody::density_contrast}};
}

JoinedColumns joined_columns() {
    JoinedColumns columns;
    const auto whole = [&](const char* name, auto count) {
        columns.push_back(
            {{name, GisKind::whole}, [count](const SurveyResults&, const JoinedBody& joined) -> GisValue {
                 return static_cast<std::int64_t>(count(joined));
             }});
    };
    const auto place = [&](const std::string& name, TrackPoint JoinedBody::*point) {
        add_number(columns, name + "_east_m", [=](const JoinedBody& joined) { return (joined.*point).east; });
        add_number(columns, name + "_north_m",
                   [=](const JoinedBody& joined) { return (joined.*point).north; });
    };
    whole("joined_body", [](const JoinedBody& joined) { return joined.number; });
    whole("lines", [](const JoinedBody& joined) { return joined.members.size(); });
    place("start", &JoinedBody::start);
    place("end", &JoinedBody::end);
    place("centre", &JoinedBody::centre);
    columns.push_back({{"coordinate_system", GisKind::words},
                       [](const SurveyResults&, const JoinedBody& joined) -> GisValue {
                           return joined.coordinate_system;
                       }});
    add_number(columns, "strike_deg", [](const JoinedBody& joined) { return joined.strike; });
    add_number(columns, "strike_deg_error", [](const JoinedBody& joined) { return joined.strike_error; });
    add_number(columns, "birge_ratio", [](const JoinedBody& joined) { return joined.birge_ratio; });
    add_number(columns, "length_m", [](const JoinedBody& joined) { return joined.length.value; });
    add_number(columns, "length_m_error", [](const JoinedBody& joined) { return joined.length_error; });
    add_number(columns, "length_m_lower_90", [](const JoinedBody& joined) { return joined.length.lower; });
    add_number(columns, "length_m_upper_90", [](const JoinedBody& joined) { return joined.length.upper; });
    whole("open_start", [](const JoinedBody& joined) { return joined.open_start ? 1 : 0; });
    whole("open_end", [](const JoinedBody& joined) { return joined.open_end ? 1 : 0; });
    for (const auto& [name, value] : joined_value_names()) add_value(columns, name, value);
    columns.push_back(
        {{"bodies", GisKind::words}, [](const SurveyResults& results, const JoinedBody& joined) -> GisValue {
             return member_names(results, joined);
         }});
    columns.push_back({{"lines_without", GisKind::words},
                       [](const SurveyResults& results, const JoinedBody& joined) -> GisValue {
                           return line_names(results, joined.lines_without);
                       }});
    return columns;
}

/// The tops that a body was joined from.
output::GisLayer tops_layer(const SurveyResults& results, const std::vector<const JoinedBody*>& joined) {
    output::GisLayer layer;
    layer.name = "joined_tops";
    layer.fields = {{"joined_body", GisKind::whole},
                    {"line", GisKind::words},
                    {"body", GisKind::whole},
                    {"along_strike_m", GisKind::real},
                    {"off_in_errors", GisKind::real}};
    for (const JoinedBody* body : joined)
        for (const JoinedMember& member : body->members) {
            const LineResult& line = results.lines[member.line];
            layer.features.push_back(
                {{{member.place.east, member.place.north}},
                 {std::int64_t{body->number}, line.line, std::int64_t{line.bodies[member.body].number},
                  gis_number(member.along), gis_number(member.off)}});
        }
    return layer;
}

std::vector<output::GisLayer> layers_of(const SurveyResults& results,
                                        const std::vector<const JoinedBody*>& joined) {
    const JoinedColumns columns = joined_columns();
    output::GisLayer bodies;
    bodies.name = "joined_bodies";
    bodies.shape = output::GisShape::line;
    bodies.fields = fields_of(columns);
    for (const JoinedBody* body : joined)
        bodies.features.push_back({{{body->start.east, body->start.north}, {body->end.east, body->end.north}},
                                   values_of(columns, results, *body)});
    return {std::move(bodies), tops_layer(results, joined)};
}

/// m that a body goes down from its top: the mean of the lines that find an end of it, when most do.
double extent_of(const SurveyResults& results, const JoinedBody& joined) {
    std::vector<Measured> extents;
    for (const JoinedMember& member : joined.members) {
        const IntervalValue& extent = results.lines[member.line].bodies[member.body].depth_extent;
        if (extent.value > 0) extents.push_back(measured(extent));
    }
    constexpr double depths_of_endless = 5;
    if (2 * extents.size() > joined.members.size()) return joined_value(extents, MeanOf::logarithms).value;
    return depths_of_endless * joined.depth_below_sensor.value;
}

output::SheetSurface sheet_of(const SurveyResults& results, const JoinedBody& joined) {
    constexpr double flattest = 5;  // degrees; a level sheet would have no bottom
    const double extent = extent_of(results, joined);
    const double dip = std::clamp(joined.dip.value, flattest, 180 - flattest);
    const double across = extent / std::tan(dip * degree_in_radians);
    const double strike = joined.strike * degree_in_radians;
    output::SheetSurface sheet;
    sheet.name = "Joined " + std::to_string(joined.number);
    const auto elevation = [&](const JoinedMember& member) {
        const double own = results.lines[member.line].bodies[member.body].top_elevation;
        return std::isfinite(own) ? own : joined.top_elevation.value;
    };
    const auto add = [&](const TrackPoint& place, double top) {
        sheet.top.push_back({place.east, place.north, top});
        sheet.bottom.push_back(
            {place.east + across * std::cos(strike), place.north - across * std::sin(strike), top - extent});
    };
    if (!joined.open_start) add(joined.start, elevation(joined.members.front()));
    for (const JoinedMember& member : joined.members) add(member.place, elevation(member));
    if (!joined.open_end) add(joined.end, elevation(joined.members.back()));
    return sheet;
}

}  // namespace

std::string joined_table(const SurveyResults& results, const std::vector<JoinedBody>& joined) {
    const JoinedColumns columns = joined_columns();
    output::CsvText csv;
    for (const output::GisField& field : fields_of(columns)) csv.name(field.name);
    csv.end_row();
    const auto put = [&](const auto& held) {
        using Held = std::decay_t<decltype(held)>;
        if constexpr (std::is_same_v<Held, std::monostate>) csv.nothing();
        if constexpr (std::is_same_v<Held, double>) csv.number(held);
        if constexpr (std::is_same_v<Held, std::int64_t>) csv.whole(static_cast<int>(held));
        if constexpr (std::is_same_v<Held, std::string>) csv.words(held);
    };
    for (const JoinedBody& body : joined) {
        for (const GisValue& value : values_of(columns, results, body)) std::visit(put, value);
        csv.end_row();
    }
    return csv.text();
}

std::string joined_system(const std::vector<JoinedBody>& joined) {
    for (const JoinedBody& body : joined)
        if (!body.coordinate_system.empty()) return body.coordinate_system;
    return {};
}

std::vector<output::GisLayer> joined_layers(const SurveyResults& results,
                                            const std::vector<JoinedBody>& joined,
                                            const std::string& target) {
    std::map<std::string, std::vector<const JoinedBody*>> systems;
    for (const JoinedBody& body : joined) systems[body.coordinate_system].push_back(&body);
    std::vector<output::GisLayer> all = layers_of(results, {});
    for (const auto& [system, bodies] : systems) {
        std::vector<output::GisLayer> layers = layers_of(results, bodies);
        if (system.empty() && !target.empty())
            throw Fault("The coordinate system of joined body " + std::to_string(bodies.front()->number) +
                        " is not known. Give it when the survey is imported (--crs)");
        if (system != target) output::change_system(layers, system, target);
        for (std::size_t i = 0; i < layers.size(); ++i)
            std::ranges::move(layers[i].features, std::back_inserter(all[i].features));
    }
    return all;
}

JoinedSheets joined_sheets(const SurveyResults& results, const std::vector<JoinedBody>& joined) {
    JoinedSheets drawn;
    for (const char* name : {"joined_body", "lines", "strike_deg", "length_m"})
        drawn.names.emplace_back(name);
    for (const auto& [name, value] : joined_value_names()) drawn.names.push_back(name);
    const std::string system = joined_system(joined);
    for (const JoinedBody& body : joined) {
        const double needed =
            body.top_elevation.value + body.dip.value + body.depth_below_sensor.value + body.strike;
        if (body.coordinate_system != system || !std::isfinite(needed)) continue;
        output::SheetSurface sheet = sheet_of(results, body);
        sheet.values = {static_cast<double>(body.number), static_cast<double>(body.members.size()),
                        body.strike, body.length.value};
        for (const auto& [name, value] : joined_value_names()) sheet.values.push_back((body.*value).value);
        drawn.sheets.push_back(std::move(sheet));
    }
    return drawn;
}

}  // namespace anomalis::survey
