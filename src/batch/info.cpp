#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

#include "batch/batch_session.h"
#include "batch/commands.h"
#include "batch/info_json.h"
#include "core/body_parameters.h"
#include "core/model_mark.h"
#include "core/numbers.h"
#include "core/shown_text.h"
#include "model/misfit.h"
#include "show/fit_quality.h"

namespace anomalis::batch {

namespace {

constexpr std::size_t label_width = 16;
constexpr const char* no_number = "beyond all numbers";

template <class Number>
std::string value_text(Number value) {
    return std::isfinite(value) ? shortest_text(value) : no_number;
}

template <class Number>
std::string value_text(Number value, const char* pattern) {
    return std::isfinite(value) ? format_number(value, pattern) : no_number;
}

std::string padded(std::string text, std::size_t width) {
    text.resize(std::max(width, text.size()), ' ');
    return text;
}

std::string line(const std::string& label, const std::string& value) {
    return padded(label, label_width) + value + "\n";
}

std::string columns_text(const DataDefinition& d) {
    std::string text;
    for (const auto& [name, column] : {std::pair{"x", d.x_column},
                                       {"y", d.y_column},
                                       {"sensor", d.z_column},
                                       {"terrain", d.dtm_column},
                                       {"mag", d.mag_column},
                                       {"grav", d.grav_column}}) {
        if (column > 0) text += (text.empty() ? "" : ", ") + std::string(name) + " " + std::to_string(column);
    }
    return text.empty() ? "none" : text;
}

std::string field_text(const Workspace& w) {
    if (w.source.field_missing) return "not set";
    return value_text(w.field.intensity) + " nT, inclination " + value_text(w.field.inclination) +
           "°, declination " + value_text(w.field.declination) + "°";
}

/// Where the line came from, as far as the workspace knows.
std::string source_text(const Workspace& w) {
    const LineSource& source = w.source;
    std::string text;
    const auto add = [&](const char* label, const std::string& value) {
        if (!value.empty()) text += line(label, shown_text(value));
    };
    add("  origin", source.field_origin);
    if (source.igrf_change != igrf_kept)
        add("  IGRF",
            source.igrf_change == igrf_removed ? "removed from the readings" : "added to the readings");
    add("Coordinates", source.coordinate_system);
    add("Survey", source.file.empty() || source.line.empty() ? source.file + source.line
                                                             : source.file + ", line " + source.line);
    add("  date", source.date);
    return text;
}

std::string definition_text(const Workspace& w) {
    const DataDefinition& d = w.definition;
    std::string rows = "from line " + std::to_string(d.first_data_line);
    if (d.last_data_line > 0) rows += " to " + std::to_string(d.last_data_line);
    if (d.read_increment != 1) rows += ", one of every " + std::to_string(d.read_increment);
    return line("Workspace", shown_text(w.model_file)) + line("Data file", shown_text(d.data_file)) +
           line("  read", rows) + line("  columns", columns_text(d)) + line("Field", field_text(w)) +
           source_text(w);
}

std::string filter_text(const Workspace& w) {
    constexpr std::array names{"triangular", "sinc^2", "Hanning", "Hamming", "boxcar"};
    const auto type = static_cast<std::size_t>(std::clamp(w.processing.smooth_filter_type, 0, 4));
    return "smoothing " + std::to_string(w.processing.smooth_filter_width) + " (" + names[type] +
           "), residual " + std::to_string(w.processing.residual_filter_width) + " stations, " +
           (w.processing.display_total_gradient == 1 ? "total gradient " : "vertical gradient ") +
           std::to_string(w.processing.vg_filter_width) + " taps, " +
           std::to_string(w.processing.vg_filter_step) +
           (w.processing.vg_filter_step == 1 ? " station apart" : " stations apart");
}

std::string regional_text(const Workspace& w, int channel) {
    constexpr std::array names{"level", "slope", "bend", "cubic"};
    const std::int32_t degree = w.channel(channel).regional_degree;
    if (degree == no_regional || !is_regional_degree(degree)) return {};
    const bool off = w.processing.residual_filter_width > 0;
    return std::string(", regional ") + names[static_cast<std::size_t>(degree)] +
           (off ? " (off under the residual filter)" : "");
}

std::string channel_text(const Workspace& w, int channel) {
    const Channel& c = w.channel(channel);
    return value_text(c.min) + " to " + value_text(c.max) + " " + std::string(show::channel_unit(channel)) +
           ", base " + value_text(c.base) + " " + std::string(show::channel_unit(channel)) +
           regional_text(w, channel);
}

std::string last_fit_text(const Workspace& w) {
    if (!as_fitted(w)) return {};
    return line("Last fit", w.fit->date + ", " + std::to_string(w.fit->parameters.size()) +
                                " parameters: " + shown_text(w.fit->outcome));
}

std::string profile_text(const Workspace& w) {
    if (w.station_count == 0) return line("Stations", "none");
    const double length = w.distances[w.station_count];
    std::string text =
        line("Stations", std::to_string(w.station_count) + " over " + value_text(length, "0.00") + " m, " +
                             value_text(length / w.station_count, "0.000") + " m each");
    text += line("Ground", value_text(w.z_min) + " to " + value_text(w.z_max) + " m");
    if (w.has_mag()) text += line("Magnetics", channel_text(w, channel_mag));
    if (w.has_grav()) text += line("Gravity", channel_text(w, channel_grav));
    text += line("Formulas", std::string(formulas_name(w.formulas)));
    return text + line("Filters", filter_text(w)) +
           line("Fit window",
                "stations " + std::to_string(w.first_station) + " to " + std::to_string(w.last_station));
}

std::string misfit_text(const MisfitPair& misfit) {
    return "data " + value_text(misfit[0], "0.00000") + ", gradient " + value_text(misfit[1], "0.00000") +
           " (no unit)";
}

/// What the load has to say beside the numbers above.
std::string load_text(const intake::LoadReport& report) {
    constexpr std::size_t width = 22;
    std::string text = line("Load", intake::report_summary(report));
    for (const intake::ReportItem& item : intake::report_items(report))
        if (item.label != "Data file" && item.label != "Stations")
            text += padded("  " + item.label, width) + item.text + "\n";
    return text;
}

using Row = std::vector<std::string>;

/// What the list of the bodies shows of each.
constexpr std::array<std::pair<ParamCode, const char*>, 9> parameter_columns{
    {{param_distance, "Distance m"},
     {param_top, "Top m"},
     {param_strike, "Strike deg"},
     {param_dip, "Dip deg"},
     {param_width, "Width m"},
     {param_depth_extent, "Depth ext m"},
     {param_length, "Length m"},
     {param_susc, "Susc uSI"},  // a wire's current in mA
     {param_density, "Contrast g/cc"}}};

Row body_row(int number, const ModelBody& b) {
    Row row{std::to_string(number), std::string(body_type_name(b.type)),
            b.turned_off ? "off"
            : b.vary     ? ""
                         : "fixed"};
    if (row[1].empty()) row[1] = "type " + std::to_string(b.type);
    for (const auto& [code, caption] : parameter_columns)
        row.push_back(value_text(body_param(b, code).value));
    row.push_back(shown_text(b.name));
    return row;
}

std::string bodies_text(const Workspace& w) {
    std::string text = line("Bodies", std::to_string(w.body_count));
    if (w.body_count == 0) return text;
    std::vector<Row> rows{{"No.", "Type", ""}};
    for (const auto& [code, caption] : parameter_columns) rows[0].emplace_back(caption);
    rows[0].emplace_back("Name");
    for (int number = 1; number <= w.body_count; ++number) rows.push_back(body_row(number, w.body(number)));
    std::vector<std::size_t> widths(rows[0].size(), 0);
    for (const Row& row : rows) {
        for (std::size_t i = 0; i + 1 < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
    }
    for (const Row& row : rows) {
        for (std::size_t i = 0; i + 1 < row.size(); ++i) text += padded(row[i], widths[i]) + "  ";
        text += row.back() + "\n";
    }
    return text;
}

}  // namespace

bool run_info(const InfoOptions& options, BatchSession& batch) {
    const OpenState state = batch.open(options.model);
    if (state == OpenState::unread) return false;
    const bool ready = state == OpenState::ready;
    if (options.json) return batch.write_result("", info_json_text(batch, ready)) == 0 && ready;
    const Workspace& workspace = batch.session.workspace;
    std::string text = definition_text(workspace) + profile_text(workspace) + load_text(batch.report);
    if (state == OpenState::ready) {
        const auto misfit = [&](const char* label, const ChannelTable& data, int channel) {
            Faults faults;
            const MisfitPair pair =
                model::channel_misfit(workspace, data, model::misfit_scale_of(channel), faults);
            show_faults(faults, batch.prompts);
            text += line(label, misfit_text(pair));
            if (const auto quality = show::fit_quality(workspace, channel))
                text += line("", show::fit_quality_text(*quality, channel));
        };
        if (workspace.has_mag()) misfit("Magnetic misfit", workspace.mag.data, channel_mag);
        if (workspace.has_grav()) misfit("Gravity misfit", workspace.grav.data, channel_grav);
        text += last_fit_text(workspace);
    }
    return batch.write_result("", text + bodies_text(workspace)) == 0 && state == OpenState::ready;
}

}  // namespace anomalis::batch
