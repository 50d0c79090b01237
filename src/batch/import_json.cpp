#include "batch/import_json.h"

#include <nlohmann/json.hpp>

#include "batch/json_text.h"

namespace anomalis::batch {

namespace {

using Json = nlohmann::ordered_json;

Json text_or_null(const std::string& text) {
    return text.empty() ? Json(nullptr) : Json(text);
}

Json losses_json(const std::vector<intake::RowLoss>& losses) {
    Json all = Json::array();
    for (const intake::RowLoss& loss : losses)
        all.push_back({{"why", loss.why},
                       {"column", text_or_null(loss.column)},
                       {"rows", loss.count},
                       {"first_line", loss.first_line}});
    return all;
}

Json columns_json(const intake::SurveyIndex& index) {
    Json columns = Json::array();
    for (std::size_t i = 0; i < index.layout.columns.size(); ++i) {
        const intake::SurveyColumn& column = index.layout.columns[i];
        if (column.role == intake::Role::none) continue;
        columns.push_back({{"name", column.name},
                           {"role", role_name(column.role)},
                           {"unit", text_or_null(std::string(unit_name(column.unit)))},
                           {"nulls", index.nulls[i]}});
    }
    return columns;
}

Json field_json(const WrittenLine& line) {
    if (line.source.field_missing) return nullptr;
    return {{"total_nT", line.field.intensity},
            {"inclination_deg", line.field.inclination},
            {"declination_deg", line.field.declination},
            {"origin", text_or_null(line.source.field_origin)}};
}

Json line_json(const WrittenLine& line) {
    Json nulls = Json::object();
    for (const intake::ChannelNulls& channel : line.report.nulls) nulls[channel.channel] = channel.count;
    return {{"line", text_or_null(line.report.line)},
            {"table", line.table},
            {"workspace", line.workspace},
            {"stations", line.report.stations},
            {"length_m", line.report.length_m},
            {"typical_spacing_m", line.report.typical_spacing_m},
            {"nulls", std::move(nulls)},
            {"date", text_or_null(line.source.date)},
            {"field", field_json(line)}};
}

}  // namespace

std::string import_json_text(const intake::SurveyIndex& index, const std::vector<WrittenLine>& lines,
                             const BatchPrompts& told) {
    Json json{{"file", index.layout.path},
              {"format", index.layout.format},
              {"coordinate_system", text_or_null(index.coordinate_system)},
              {"lines_in_file", index.lines.size()},
              {"rows", index.rows},
              {"dropped", losses_json(index.losses)},
              {"columns", columns_json(index)}};
    json["lines"] = Json::array();
    for (const WrittenLine& line : lines) json["lines"].push_back(line_json(line));
    add_told(json, told);
    return json_text(json, 2);
}

}  // namespace anomalis::batch
