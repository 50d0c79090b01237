#include "intake/location_file.h"

#include <algorithm>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

#include "core/failure.h"
#include "core/pacer.h"
#include "core/prompts.h"
#include "core/shared_pieces.h"
#include "core/workspace.h"
#include "intake/read_rows.h"
#include "intake/record_reader.h"

namespace anomalis::intake {

namespace {

constexpr const char* reading_failed = "An error occurred while reading the location file : ";
constexpr double nanoseconds_per_row = 20;

/// What a row has goes where its quantity is kept; a quantity that was not read is missing in every row.
template <class Real>
void place(const std::vector<Real>& from, std::size_t rows, std::span<Real> target) {
    if (from.empty()) {
        std::fill_n(target.begin(), rows, static_cast<Real>(never_read));
    } else {
        std::copy(from.begin(), from.end(), target.begin());
    }
}

void place_block(const RecordBlock& block, std::size_t first, Workspace& w) {
    const auto stations = [&](StationColumn column) { return w.stations.column(column).subspan(first); };
    place(block.place(quantity_x), block.rows(), stations(column_east));
    place(block.place(quantity_y), block.rows(), stations(column_north));
    place(block.place(quantity_z), block.rows(), stations(column_sensor));
    place(block.place(quantity_dtm), block.rows(), stations(column_ground));
    place(block.readings(quantity_mag), block.rows(), w.mag.data.row(row_raw, stage_observed).subspan(first));
    place(block.readings(quantity_grav), block.rows(),
          w.grav.data.row(row_raw, stage_observed).subspan(first));
}

/// Each block is given back as soon as it is copied, so that the rows are not kept twice.
void place_blocks(DataRows& rows, Workspace& w) {
    std::vector<std::size_t> first;
    std::size_t count = 0;
    for (const RecordBlock& block : rows.blocks) {
        first.push_back(count);
        count += block.rows();
    }
    const int workers = worker_count(nanoseconds_per_row * static_cast<double>(count), rows.blocks.size());
    for_each_piece(rows.blocks.size(), workers, no_pace(), [&](PieceWorker&, std::size_t i) {
        place_block(rows.blocks[i], first[i], w);
        rows.blocks[i].release();
    });
}

void set_ranges(const DataRows& rows, Workspace& w) {
    const auto set = [&](Quantity quantity, auto& low, auto& high) {
        using Real = std::remove_reference_t<decltype(low)>;
        low = static_cast<Real>(rows.ranges[quantity].low());
        high = static_cast<Real>(rows.ranges[quantity].high());
    };
    set(quantity_x, w.x_min, w.x_max);
    set(quantity_y, w.y_min, w.y_max);
    set(quantity_z, w.z_min, w.z_max);
    set(quantity_dtm, w.dtm_min, w.dtm_max);
    set(quantity_mag, w.mag.min, w.mag.max);
    set(quantity_grav, w.grav.min, w.grav.max);
}

}  // namespace

void take_rows(const DataRows& rows, Workspace& w) {
    if (rows.count == 0) return;
    w.station_count = static_cast<std::int32_t>(rows.count);
    set_ranges(rows, w);
}

int read_location_file(Workspace& w, DataRows& rows, Prompts& prompts, RowNotes* notes) {
    return report_failure(prompts, reading_failed, [&] {
        rows = read_rows(w.definition, w.transform);
        if (notes) *notes = rows.notes;
        take_rows(rows, w);
    });
}

int fill_stations(DataRows& rows, Workspace& w, Prompts& prompts) {
    return report_failure(prompts, reading_failed, [&] {
        if (rows.misfit_line > 0)
            throw Fault(FaultKind::overflow,
                        w.definition.data_file + ", line " + std::to_string(rows.misfit_line));
        const auto count = static_cast<int>(rows.count);
        w.stations.assign(count);
        w.mag.data.assign(count);
        w.grav.data.assign(count);
        place_blocks(rows, w);
        rows = {};
    });
}

}  // namespace anomalis::intake
