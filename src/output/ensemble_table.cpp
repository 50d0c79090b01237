#include "output/ensemble_table.h"

#include "core/body_parameters.h"
#include "core/ensemble.h"
#include "core/failure.h"
#include "core/told_write.h"
#include "core/workspace.h"
#include "output/csv_text.h"
#include "output/tables.h"

namespace anomalis::output {

namespace {

/// Parameters that the table of bodies leaves out go by their names.
std::string column_of(const Workspace& workspace, const EnsembleParameter& parameter) {
    const BodyParameter& row = body_parameter(parameter.param_code);
    const bool there = parameter.body >= 1 && parameter.body <= workspace.body_count;
    const TextByKind& columns = row.column;
    const bool of_wire = there && carries_current(workspace.body(parameter.body).type);
    const std::string_view column = of_wire ? columns.wire : columns.sheet;
    return "body_" + std::to_string(parameter.body) + "_" + std::string(column.empty() ? row.name : column);
}

void add_header(const Workspace& workspace, const Ensemble& ensemble, CsvText& csv) {
    csv.name("sample");
    if (workspace.has_mag()) {
        csv.name("mag_regional_degree");
        csv.name("mag_rms_nT");
    }
    if (workspace.has_grav()) {
        csv.name("grav_regional_degree");
        csv.name("grav_rms_mGal");
    }
    for (const EnsembleParameter& parameter : ensemble.parameters) csv.name(column_of(workspace, parameter));
    csv.end_row();
}

/// A channel that was not fitted has neither.
void add_channel(std::int32_t degree, double rms, CsvText& csv) {
    degree == no_regional ? csv.nothing() : csv.whole(degree);
    rms > 0 ? csv.number(rms) : csv.nothing();
}

}  // namespace

std::string ensemble_table_text(const Workspace& workspace, const Ensemble& ensemble) {
    CsvText csv;
    add_header(workspace, ensemble, csv);
    int number = 0;
    for (const EnsembleSample& sample : ensemble.samples) {
        csv.whole(++number);
        if (workspace.has_mag()) add_channel(sample.mag_degree, sample.mag_rms, csv);
        if (workspace.has_grav()) add_channel(sample.grav_degree, sample.grav_rms, csv);
        for (std::size_t i = 0; i < ensemble.parameters.size(); ++i)
            i < sample.values.size() ? csv.number(sample.values[i]) : csv.nothing();
        csv.end_row();
    }
    return csv.text();
}

int write_ensemble_table(const std::string& path, const Workspace& workspace, const Ensemble& ensemble,
                         Prompts& prompts) {
    return report_failure(prompts, write_failure_prefix, [&] {
        write_file_telling(prompts, path, ensemble_table_text(workspace, ensemble));
    });
}

}  // namespace anomalis::output
