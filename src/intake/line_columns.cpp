#include "intake/line_columns.h"

#include <array>
#include <cmath>
#include <limits>
#include <string>

#include "core/failure.h"
#include "core/workspace.h"
#include "intake/read_rows.h"
#include "intake/record_reader.h"

namespace anomalis::intake {

namespace {

struct NamedColumn {
    std::span<const double> values;
    Quantity quantity;
    const char* name;
    std::int32_t DataDefinition::*column;
};

std::array<NamedColumn, quantity_count> named_columns(const LineColumns& line) {
    return {{{line.east, quantity_x, "east", &DataDefinition::x_column},
             {line.north, quantity_y, "north", &DataDefinition::y_column},
             {line.sensor, quantity_z, "sensor elevation", &DataDefinition::z_column},
             {line.ground, quantity_dtm, "ground elevation", &DataDefinition::dtm_column},
             {line.mag, quantity_mag, "magnetics", &DataDefinition::mag_column},
             {line.grav, quantity_grav, "gravity", &DataDefinition::grav_column}}};
}

bool is_place(Quantity quantity) {
    return quantity == quantity_x || quantity == quantity_y;
}

[[noreturn]] void refuse(const NamedColumn& column, std::size_t row, const char* why) {
    throw Fault(std::string(column.name) + " of station " + std::to_string(row + 1) + why);
}

/// A value as a table says it.
double value_of(const NamedColumn& column, std::size_t row) {
    const double value = column.values[row];
    if (is_place(column.quantity) && !std::isfinite(value)) refuse(column, row, " is not a number");
    if (std::isnan(value) || (!is_place(column.quantity) && value <= missing_limit)) return never_read;
    if (!(std::abs(value) <= static_cast<double>(std::numeric_limits<float>::max())))
        refuse(column, row, " does not fit single precision");
    return value;
}

}  // namespace

void define_columns(const LineColumns& line, DataDefinition& definition) {
    std::int32_t count = 0;
    for (const NamedColumn& column : named_columns(line))
        definition.*column.column = column.values.empty() ? 0 : ++count;
    definition.first_data_line = 2;
    definition.read_increment = 1;
    definition.last_data_line = 0;
}

DataRows rows_of_columns(const LineColumns& line) {
    const std::size_t count = line.east.size();
    if (count > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()))
        throw Fault(FaultKind::overflow);
    std::uint8_t wanted = 0;
    for (const NamedColumn& column : named_columns(line)) {
        if (column.values.empty() && !is_place(column.quantity)) continue;
        if (column.values.size() != count)
            throw Fault(std::string(column.name) + " has " + std::to_string(column.values.size()) +
                        " values for " + std::to_string(count) + " stations");
        wanted = static_cast<std::uint8_t>(wanted | 1U << column.quantity);
    }
    RecordBlock block(wanted);
    block.reserve(count);
    DataRows rows;
    rows.notes.counted = rows.notes.to_the_end = true;
    rows.notes.records = static_cast<long>(count);
    for (const NamedColumn& column : named_columns(line)) {
        if (column.values.empty()) continue;
        for (std::size_t row = 0; row < count; ++row) {
            const double value = value_of(column, row);
            const bool missing = value == never_read;
            if (missing && column.quantity == quantity_z) ++rows.notes.missing_sensor_heights;
            if (missing && column.quantity == quantity_dtm) ++rows.notes.missing_ground_heights;
            block.add_value(column.quantity, value);
        }
    }
    block.find_ranges();
    rows.count = count;
    for (std::size_t q = 0; q < quantity_count && count > 0; ++q)
        rows.ranges[q].append(block.range(static_cast<Quantity>(q)));
    if (count > 0) rows.blocks.push_back(std::move(block));
    return rows;
}

}  // namespace anomalis::intake
