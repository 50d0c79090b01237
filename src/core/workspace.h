#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/array.h"
#include "core/ensemble.h"
#include "core/filter_scratch.h"
#include "core/fit_record.h"
#include "core/formulas.h"
#include "core/gaps.h"
#include "core/line_source.h"
#include "core/model_body.h"
#include "core/point_transform.h"
#include "core/regional.h"

namespace anomalis {

class Prompts;

/// A day number: days since 30 December 1899, as file times are stored. 0 means none.
using Date = double;

/// Values at or below this are missing; empty ranges stand at +-1E32.
inline constexpr double missing_limit = -1e30;
inline constexpr float empty_low = 1e32F;
inline constexpr float empty_high = -1e32F;

/// Filter rows of a channel.
enum FilterRow : std::int32_t {
    row_raw = 1,
    row_smoothed = 2,
    row_residual = 3,
    row_gradient = 4,
    row_horizontal = 5,
    row_total_gradient = 6
};
/// Stages of a channel.
enum Stage : std::int32_t { stage_observed = 1, stage_calculated = 2 };

/// One channel: station, filter row 1 to 6, stage 1 observed or 2 calculated. The station index runs fastest.
class ChannelTable {
  public:
    int stations() const { return values_.rows(); }
    float& operator()(int station, int row, int stage) { return values_(station, column(row, stage)); }
    const float& operator()(int station, int row, int stage) const {
        return values_(station, column(row, stage));
    }
    std::span<float> row(int row, int stage) { return values_.column(column(row, stage)); }
    std::span<const float> row(int row, int stage) const { return values_.column(column(row, stage)); }
    std::span<float> span() { return values_.span(); }
    std::span<const float> span() const { return values_.span(); }
    void assign(int stations) { values_.assign(stations); }
    void release() { values_.release(); }
    bool operator==(const ChannelTable&) const = default;

  private:
    static int column(int row, int stage) {
        check_index(row >= 1 && row <= 6 && stage >= 1 && stage <= 2);
        return (stage - 1) * 6 + row;
    }
    ColumnTable<float, 12> values_;
};

/// Station by column 0 to 4: line number, east, north, sensor elevation, ground elevation (m).
using StationTable = ColumnTable<double, 5, 0>;
enum StationColumn : int { column_line = 0, column_east, column_north, column_sensor, column_ground };

/// The observed data file and how to read it. Columns are numbered from 1; 0 means absent.
struct DataDefinition {
    std::string data_file;  ///< as it is found from the current folder
    Date data_file_date = 0;
    std::int32_t first_data_line = 2;
    std::int32_t read_increment = 1;
    std::int32_t last_data_line = 0;  ///< 0 reads the whole file
    std::int32_t spare_definition_field = 0;
    std::int32_t x_column = 2;
    std::int32_t y_column = 3;
    std::int32_t z_column = 0;
    std::int32_t dtm_column = 0;
    std::int32_t mag_column = 5;
    std::int32_t grav_column = 0;
    std::string data_file_as_named = {};  ///< in the workspace file that was read; "" for a chosen file

    bool operator==(const DataDefinition&) const = default;
};

/// Window and pane layout kept with the file; sizes in twips.
struct DisplaySettings {
    bool valid = false;  ///< set when the block was read from a file or is about to be written
    std::int32_t form_height = 0;
    std::int32_t form_width = 0;
    std::int32_t show_axes = 0;
    std::int32_t show_body_label = 0;
    std::int32_t maintain_aspect_ratio = 0;
    std::array<float, 4> splitter_fraction{};
    bool tie_pipe_depth_susc = false;
    float tie_factor = 0;

    bool operator==(const DisplaySettings&) const = default;
};

/// Memory that the forward model keeps between calculations. It is no part of the model: a copy starts
/// without.
class KeptMemory {
  public:
    KeptMemory() = default;
    KeptMemory(const KeptMemory&) noexcept {}
    KeptMemory& operator=(const KeptMemory&) noexcept { return *this; }
    KeptMemory(KeptMemory&&) noexcept = default;
    KeptMemory& operator=(KeptMemory&&) noexcept = default;
    ~KeptMemory() = default;

    /// The memory, made on the first call. It is asked for with one and the same type.
    template <class Memory>
    Memory& get() {
        if (!held_) held_ = std::make_shared<Memory>();
        return *static_cast<Memory*>(held_.get());
    }

  private:
    std::shared_ptr<void> held_;
};

/// Where the stations stand and along which line.
struct LineGeometry {
    double direction_x = 0;  ///< east component of the unit normal of the profile line
    double direction_y = 0;  ///< north component
    double line_constant = 0;
    double origin_east = 0;
    double origin_north = 0;
    float azimuth = 0;  ///< radians, bearing of the line less 180 degrees
    double x_min = empty_low, x_max = empty_high;
    double y_min = empty_low, y_max = empty_high;
    float z_min = empty_low, z_max = empty_high;
    float dtm_min = 0, dtm_max = 0;
    std::int32_t station_count = 0;
    std::int32_t allocated_stations = 0;
    StationTable stations;
    Array1<float> station_spare;
    Array1<double> distances;
    /// The stations that the inversion uses, and the same window in m, which outlives a resampling.
    std::int32_t first_station = 0, last_station = 0;
    double first_distance = 0, last_distance = 0;
};

/// `channel_joint` fits both channels at once; only the least-squares method can.
enum ChannelCode : std::int32_t { channel_mag = 0, channel_grav = 1, channel_joint = 2 };

/// What magnetics (nT) and gravity (mGal) each have.
struct Channel {
    float min = 0, max = 0;  ///< of the column
    float base = 0;          ///< unset takes the mean at the load
    float mean = 0;
    float mean_at_load = 0;                      ///< of the readings: what a base that is unset becomes
    std::int32_t float_base = 0;                 ///< 1 when the base level follows the data
    float range_min = 0, range_max = 0;          ///< plotted
    float calc_base = 0, calc_mean = 0;          ///< of the calculated curve
    std::int32_t regional_degree = no_regional;  ///< of the polynomial that joins observed to calculated
    float noise = unset;  ///< standard deviation of a reading; unset lets the fit estimate it from the line
    Regional regional;    ///< in force, as it was last found
    ChannelTable data;
    ChannelTable work;                                            ///< what a run tries
    bool observed_filtered = false, calculated_filtered = false;  ///< the rows are up to date
    std::vector<std::uint64_t> summed;  ///< the calculations that the calculated raw row is the sum of
    ChannelGaps gaps;                   ///< that the filtered rows stay within
};

/// The range of a magnetic column starts empty, and its base level is the mean until somebody says otherwise.
inline Channel magnetic_channel() {
    Channel channel;
    channel.min = channel.range_min = empty_low;
    channel.max = channel.range_max = empty_high;
    channel.base = unset;
    return channel;
}

/// The field that induces.
struct EarthField {
    float intensity = 56000;  ///< nT
    float inclination = -65;  ///< degrees, down positive
    float declination = -4;   ///< degrees

    bool operator==(const EarthField&) const = default;
};

/// How a channel becomes the rows that charts and fit read. Widths count stations on each side.
struct Processing {
    std::int32_t smooth_filter_width = 0;
    std::int32_t smooth_filter_type = 0;
    std::int32_t residual_filter_width = 0;
    /// 1: the total gradient is built, charted, fitted and exported; 0: the vertical gradient.
    std::int32_t display_total_gradient = 0;
    std::int32_t vg_filter_width = 5;
    std::int32_t vg_filter_step = 1;

    bool operator==(const Processing&) const = default;
};

/// How section and plan are drawn, m.
struct DrawingSettings {
    float profile_grid_spacing = 0;
    float depth_grid_spacing = 0;
    float infinite_body_length = 500;
    float finite_body_left_clip = 0;
    float finite_body_right_clip = 0;

    bool operator==(const DrawingSettings&) const = default;
};

/// How the stations were read: with other values the data file must be read again.
struct LineInputs {
    DataDefinition definition;
    float station_spacing = 0;
    float min_station_spacing = 0;
    PointTransform transform;
    float gap_distance = 0;        ///< where stations are merged or resampled, which stop at a gap
    std::string igrf_change = {};  ///< with what it hangs on; "" where the readings stay as they are
    bool operator==(const LineInputs&) const = default;
};

/// The settings that derived values hang on, in the order of core/setting_fields.h.
using SettingInputs = std::array<double, 21>;

/// The one session record: what the data are, where the stations stand, what the model is.
struct Workspace : LineGeometry {
    std::string model_file;
    Date model_file_date = 0;
    DataDefinition definition;
    float station_spacing = 0;      ///< m; 0 keeps the stations of the file
    float min_station_spacing = 0;  ///< m; closer stations are merged
    float gap_distance = 0;         ///< m; stations farther apart bound a gap; 0 knows of none
    LineSource source;
    PointTransform transform;
    float surface_elevation = 0;  ///< m
    float sensor_offset = 10;     ///< m
    EarthField field;
    Processing processing;
    Channel mag = magnetic_channel();
    Channel grav;
    DrawingSettings drawing;
    DisplaySettings display;
    Formulas formulas = Formulas::classic;

    std::optional<FitRecord> fit;  ///< the last one, which the present model need not be that of
    /// Models that explain the line as well, about the model that bears its mark; not kept in files.
    std::shared_ptr<const Ensemble> ensemble;

    std::int32_t body_count = 0;
    std::int32_t body_capacity = 32;
    std::vector<ModelBody> bodies;  ///< 0 to body_capacity; element 0 is never used

    bool elevations_ready = false;
    /// Of the stations that are there: as the load found the way of reading, and as it left it.
    std::optional<LineInputs> read_from, read_as;
    std::optional<SettingInputs> known_settings;  ///< that the derived values were last compared with
    std::uint64_t calculations = 0;               ///< of responses, so far
    std::int32_t raw_row = row_raw;
    std::int32_t smoothed_row = row_smoothed;
    std::int32_t residual_row = row_residual;
    std::int32_t gradient_row = row_gradient;
    std::int32_t horizontal_row = row_horizontal;
    std::int32_t total_gradient_row = row_total_gradient;
    FilterScratch filter_scratch;
    KeptMemory forward_memory;

    /// The row of the gradient that charts, fit and tables use.
    std::int32_t gradient_row_in_use() const {
        return processing.display_total_gradient == 1 ? total_gradient_row : gradient_row;
    }
    Channel& channel(int code) { return code == channel_mag ? mag : grav; }
    const Channel& channel(int code) const { return code == channel_mag ? mag : grav; }
    bool has_mag() const { return definition.mag_column > 0; }
    bool has_grav() const { return definition.grav_column > 0; }
    ModelBody& body(int number) { return bodies.at(static_cast<std::size_t>(number)); }
    const ModelBody& body(int number) const { return bodies.at(static_cast<std::size_t>(number)); }
};

/// Sets every default, resets the transform and gives room for 32 bodies. What has no default stays.
void initialise_workspace(Workspace& workspace, Prompts& prompts);

/// Makes room for body `body_count + 1`: the capacity grows by steps of 16, the bodies stay.
void reserve_next_body(Workspace& workspace);

/// All bodies, also those above the count, lose their cached responses.
void reset_calculated_data(Workspace& workspace, Prompts& prompts);

/// Clears the filter marks of the calculated stage; with mode 0 also of the observed one.
void invalidate_filtered_data(int mode, Workspace& workspace);

/// How the definition would have the stations read now.
LineInputs line_inputs(const Workspace& workspace);
/// Takes them over, but the change of the readings, which the source of the line tells; the stations are
/// those of before until somebody looks.
void set_line_inputs(Workspace& workspace, const LineInputs& inputs);

/// The field of a line that nobody gave one yet.
void forget_field(Workspace& workspace);

/// All that a file holds of a workspace but its bodies and its name goes from one to the other.
void copy_definitions(const Workspace& from, Workspace& to);

/// A station window that the line cannot hold becomes the whole line. Does nothing without stations.
void settle_station_window(LineGeometry& line);

/// The stations are gone until the next load: the count is 0 and the elevations are out of date.
void drop_stations(Workspace& workspace);

}  // namespace anomalis
