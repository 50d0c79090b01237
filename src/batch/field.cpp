#include <nlohmann/json.hpp>
#include <string>

#include "batch/batch_session.h"
#include "batch/commands.h"
#include "core/failure.h"
#include "core/numbers.h"
#include "report/json_text.h"

namespace anomalis::batch {

namespace {

std::string field_json(const field::MainField& field) {
    return report::json_text(nlohmann::ordered_json{{"total_nT", field.total_nT},
                                                    {"inclination_deg", field.inclination_deg},
                                                    {"declination_deg", field.declination_deg},
                                                    {"north_nT", field.north_nT},
                                                    {"east_nT", field.east_nT},
                                                    {"down_nT", field.down_nT}},
                             2);
}

std::string field_text(const field::MainField& field) {
    const auto line = [](const char* label, double value, const char* pattern, const char* unit) {
        return label + format_number(value, pattern) + " " + unit + "\n";
    };
    return line("intensity    ", field.total_nT, "0.0", "nT") +
           line("inclination  ", field.inclination_deg, "0.000", "degrees, down positive") +
           line("declination  ", field.declination_deg, "0.000", "degrees, east positive") +
           line("north        ", field.north_nT, "0.0", "nT") +
           line("east         ", field.east_nT, "0.0", "nT") +
           line("down         ", field.down_nT, "0.0", "nT");
}

}  // namespace

bool run_field(const FieldCommandOptions& options, BatchSession& batch) {
    std::string text;
    const int failure = report_failure(batch.prompts, "", [&] {
        const field::MainField field = field::main_field(options.place, options.year);
        text = options.json ? field_json(field) : field_text(field);
    });
    return failure == 0 && batch.write_result(options.output, text) == 0;
}

}  // namespace anomalis::batch
