#include "batch/import_json.h"

#include <nlohmann/json.hpp>

#include "batch/batch_prompts.h"
#include "batch/load_report_json.h"
#include "report/json_text.h"

namespace anomalis::batch {

namespace {

using Json = nlohmann::ordered_json;

Json text_or_null(const std::string& text) {
    return text.empty() ? Json(nullptr) : Json(text);
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
    return {{"line", text_or_null(line.report.line)},
            {"table", line.table},
            {"workspace", line.workspace},
            {"stations", line.report.stations},
            {"date", text_or_null(line.source.date)},
            {"field", field_json(line)},
            {"load", load_report_json<Json>(line.report)}};
}

}  // namespace

std::string import_json_text(const intake::SurveyIndex& index, const std::vector<WrittenLine>& lines,
                             const BatchPrompts& told) {
    Json json{{"file", index.layout.path},
              {"format", index.layout.format},
              {"coordinate_system", text_or_null(index.coordinate_system)},
              {"lines_in_file", index.lines.size()},
              {"rows", index.rows},
              {"rows_dropped", Json::array()},
              {"columns", columns_json(index)}};
    for (const intake::RowLoss& loss : index.losses) json["rows_dropped"].push_back(dropped_json<Json>(loss));
    json["lines"] = Json::array();
    for (const WrittenLine& line : lines) json["lines"].push_back(line_json(line));
    report::add_told(json, told);
    return report::json_text(json, 2);
}

}  // namespace anomalis::batch
