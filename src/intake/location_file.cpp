#include "intake/location_file.h"

#include <algorithm>
#include <limits>
#include <string>

#include "core/failure.h"
#include "core/gaps.h"
#include "core/prompts.h"
#include "core/workspace.h"
#include "intake/record_reader.h"

namespace anomalis::intake {

namespace {

template <class Real>
void start_range(Real& low, Real& high, Real value) {
    low = high = value;
}

template <class Real>
void extend_range(Real& low, Real& high, Real value) {
    low = std::min(low, value);
    high = std::max(high, value);
}

/// A missing reading is in no range. One that no row had so far is, and so marks its range.
bool is_missing(const RecordReader& record, Quantity quantity) {
    return record.was_read(quantity) && !is_reading(record.values()[quantity]);
}

void start_readings(float& low, float& high, const RecordReader& record, Quantity quantity) {
    if (is_missing(record, quantity)) {
        low = empty_low;
        high = empty_high;
    } else {
        start_range(low, high, record.single(quantity));
    }
}

void extend_readings(float& low, float& high, const RecordReader& record, Quantity quantity) {
    if (!is_missing(record, quantity)) extend_range(low, high, record.single(quantity));
}

/// The first record sets every range, also those of quantities without a column.
void start_ranges(Workspace& w, const RecordReader& record) {
    start_range(w.x_min, w.x_max, record.values()[quantity_x]);
    start_range(w.y_min, w.y_max, record.values()[quantity_y]);
    start_readings(w.z_min, w.z_max, record, quantity_z);
    start_readings(w.dtm_min, w.dtm_max, record, quantity_dtm);
    start_readings(w.mag.min, w.mag.max, record, quantity_mag);
    start_readings(w.grav.min, w.grav.max, record, quantity_grav);
}

void extend_ranges(Workspace& w, const RecordReader& record) {
    const DataDefinition& d = w.definition;
    extend_range(w.x_min, w.x_max, record.values()[quantity_x]);
    extend_range(w.y_min, w.y_max, record.values()[quantity_y]);
    if (d.z_column > 0) extend_readings(w.z_min, w.z_max, record, quantity_z);
    if (d.dtm_column > 0) extend_readings(w.dtm_min, w.dtm_max, record, quantity_dtm);
    if (d.mag_column > 0) extend_readings(w.mag.min, w.mag.max, record, quantity_mag);
    if (d.grav_column > 0) extend_readings(w.grav.min, w.grav.max, record, quantity_grav);
}

void store_record(Workspace& w, int row, const RecordReader& record) {
    w.stations(row, column_line) = 0;
    w.stations(row, column_east) = record.values()[quantity_x];
    w.stations(row, column_north) = record.values()[quantity_y];
    w.stations(row, column_sensor) = record.values()[quantity_z];
    w.stations(row, column_ground) = record.values()[quantity_dtm];
    w.mag.data(row, row_raw, stage_observed) = record.reading(quantity_mag);
    w.grav.data(row, row_raw, stage_observed) = record.reading(quantity_grav);
}

void count_records(int mode, Workspace& w, RowNotes* notes) {
    RecordReader record(w.definition, w.transform);
    std::int32_t count = 0;
    while (record.next()) {
        if (count == std::numeric_limits<std::int32_t>::max()) throw Fault(FaultKind::overflow);
        ++count;
        if (mode < 0) continue;
        if (count == 1) {
            start_ranges(w, record);
        } else {
            extend_ranges(w, record);
        }
    }
    if (notes) {
        *notes = record.notes();
        notes->counted = true;
    }
    if (count == 0) return;
    w.station_count = count;
    if (mode < 0) return;
    w.stations.assign(count);
    w.mag.data.assign(count);
    w.grav.data.assign(count);
}

void fill_stations(Workspace& w) {
    RecordReader record(w.definition, w.transform);
    int row = 0;
    while (row < w.station_count && record.next()) store_record(w, ++row, record);
    if (row < w.station_count || record.next())
        throw Fault("The file changed while it was read (" + w.definition.data_file + ")");
}

}  // namespace

int read_location_file(int mode, Workspace& workspace, Prompts& prompts, RowNotes* notes) {
    return report_failure(prompts, "An error occurred while reading the location file : ", [&] {
        if (mode > 0) {
            fill_stations(workspace);
        } else {
            count_records(mode, workspace, notes);
        }
    });
}

}  // namespace anomalis::intake
