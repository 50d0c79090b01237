#pragma once

#include <functional>
#include <vector>

#include "output/gis_tables.h"
#include "survey/results/line_result.h"

// What stands in the tables of a survey, once for all formats.
namespace anomalis::survey {

/// A column: its name with the unit, and its value of a row.
template <class... Row>
struct TableColumn {
    output::GisField field;
    std::function<output::GisValue(const Row&...)> value;
};
using LineColumns = std::vector<TableColumn<LineResult>>;
using BodyColumns = std::vector<TableColumn<LineResult, BodyResult>>;

LineColumns line_columns();
BodyColumns body_columns();

template <class Columns>
std::vector<output::GisField> fields_of(const Columns& columns) {
    std::vector<output::GisField> fields;
    fields.reserve(columns.size());
    for (const auto& column : columns) fields.push_back(column.field);
    return fields;
}

template <class Columns, class... Row>
std::vector<output::GisValue> values_of(const Columns& columns, const Row&... row) {
    std::vector<output::GisValue> values;
    values.reserve(columns.size());
    for (const auto& column : columns) values.push_back(column.value(row...));
    return values;
}

}  // namespace anomalis::survey
