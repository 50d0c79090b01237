#include "intake/record_columns.h"

#include <bit>
#include <set>

#include "core/text.h"
#include "core/token_scan.h"
#include "core/workspace.h"

namespace anomalis::intake {

std::uint8_t quantities_of_column(const DataDefinition& d, std::int32_t column) {
    if (column <= 0) return 0;
    unsigned quantities = 0;
    const auto add = [&](Quantity quantity) { quantities |= 1U << quantity; };
    if (column == d.x_column) {
        add(quantity_x);
    } else if (column == d.y_column) {
        add(quantity_y);
    } else if (column == d.z_column) {
        add(quantity_z);
    }
    if (column == d.dtm_column) add(quantity_dtm);
    if (column == d.mag_column) add(quantity_mag);
    if (column == d.grav_column) add(quantity_grav);
    return static_cast<std::uint8_t>(quantities);
}

RecordColumns::RecordColumns(const DataDefinition& d) {
    for (const std::int32_t column :
         std::set{d.x_column, d.y_column, d.z_column, d.dtm_column, d.mag_column, d.grav_column})
        if (column > 0) wanted_[wanted_count_++] = {column, quantities_of_column(d, column)};
    for (const WantedColumn& wanted : wanted_) quantities_ |= wanted.quantities;
}

namespace {

bool ends_with_separator(std::string_view row) {
    const auto last = row.find_last_not_of(" \t");
    return last != std::string_view::npos && (row[last] == ',' || row[last] == ';');
}

}  // namespace

RowReading RecordColumns::read(std::string_view line, RecordValues& values) const {
    const std::string_view row = line;
    std::int32_t column = 1;
    std::uint8_t taken = 0;
    for (std::size_t i = 0; i < wanted_count_; ++i) {
        for (; column < wanted_[i].column && !line.empty(); ++column) next_token(line);
        if (line.empty()) {
            const bool empty_field = column == wanted_[i].column && ends_with_separator(row);
            return {empty_field ? RowReading::no_number : RowReading::too_short, {}, taken, column};
        }
        double value = 0;
        std::string_view at = line;
        if (!scan_number(line, value)) return {RowReading::no_number, next_token(at), taken, column};
        ++column;
        for (unsigned bits = wanted_[i].quantities; bits != 0; bits &= bits - 1)
            values[static_cast<std::size_t>(std::countr_zero(bits))] = value;
        taken |= wanted_[i].quantities;
    }
    return {RowReading::whole, {}, taken};
}

}  // namespace anomalis::intake
