#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>

#include "batch/batch_session.h"
#include "batch/commands.h"
#include "core/failure.h"
#include "core/numbers.h"
#include "core/shown_text.h"
#include "report/json_text.h"

namespace anomalis::batch {

namespace {

using Json = nlohmann::ordered_json;
using intake::SurveyIndex;
using intake::SurveyLineInfo;

Json range_json(const std::optional<intake::ValueRange>& range) {
    return range ? Json{range->least, range->greatest} : Json(nullptr);
}

std::string lines_json(const SurveyIndex& index) {
    Json lines = Json::array();
    for (const SurveyLineInfo& line : index.lines)
        lines.push_back({{"line", line.name},
                         {"stations", line.stations},
                         {"length_m", line.length_m},
                         {"mag_nT", range_json(line.mag_nT)},
                         {"grav_mGal", range_json(line.grav_mGal)}});
    return report::json_text(Json{{"format", index.layout.format}, {"lines", std::move(lines)}}, 2);
}

using Row = std::array<std::string, 7>;

std::string range_text(const std::optional<intake::ValueRange>& range, const char* pattern) {
    return range ? format_number(range->least, pattern) + " to " + format_number(range->greatest, pattern)
                 : "-";
}

Row row_of(const SurveyLineInfo& line) {
    return {shown_text(line.name),
            line.tie ? "tie" : "line",
            std::to_string(line.stations),
            format_number(line.length_m, "0"),
            range_text(line.mag_nT, "0.0"),
            range_text(line.grav_mGal, "0.00"),
            std::to_string(line.pieces.size())};
}

std::string lines_table(const SurveyIndex& index) {
    std::vector<Row> rows{{"line", "kind", "stations", "length m", "magnetics nT", "gravity mGal", "parts"}};
    for (const SurveyLineInfo& line : index.lines) rows.push_back(row_of(line));
    std::array<std::size_t, std::tuple_size_v<Row>> widths{};
    for (const Row& row : rows)
        for (std::size_t c = 0; c < row.size(); ++c) widths[c] = std::max(widths[c], row[c].size());
    std::string text;
    for (const Row& row : rows) {
        for (std::size_t c = 0; c < row.size(); ++c) {
            const std::string fill(widths[c] - row[c].size(), ' ');
            const bool named = c < 2;
            text += (c == 0 ? "" : "  ") + (named ? row[c] + fill : fill + row[c]);
        }
        text += "\n";
    }
    return text;
}

}  // namespace

bool run_lines(const LinesOptions& options, BatchSession& batch) {
    std::string text;
    const int status = report_failure(batch.prompts, "The lines cannot be listed: ", [&] {
        const SurveyIndex index = survey_index(options.survey);
        tell_survey(index, batch);
        text = options.json ? lines_json(index) : lines_table(index);
    });
    return status == 0 && batch.write_result("", text) == 0;
}

}  // namespace anomalis::batch
