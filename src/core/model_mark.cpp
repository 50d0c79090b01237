#include "core/model_mark.h"

#include <array>
#include <bit>
#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>

#include "core/body_fields.h"
#include "core/body_parameters.h"
#include "core/digest.h"
#include "core/numbers.h"
#include "core/setting_fields.h"
#include "core/workspace.h"

namespace anomalis {

namespace {

constexpr char separator = '-';

/// Numbers as a workspace file writes them: what its digits drop makes no difference.
class FileDigits {
  public:
    template <class Value>
    void add(const Value& value) {
        if constexpr (std::is_enum_v<Value>) {
            text_ += number_to_text(static_cast<std::int32_t>(value));
        } else {
            text_ += number_to_text(value);
        }
    }
    const std::string& text() const { return text_; }

  private:
    std::string text_;
};

/// The station window belongs to the line.
bool of_line(std::string_view setting) {
    return setting == "first_station" || setting == "last_station";
}

/// A line without gaps bears the mark that it had before there were any.
bool says_nothing(std::string_view setting, const Workspace& workspace) {
    return setting == "gap_distance" && !(workspace.gap_distance > 0);
}

void add_settings(const Workspace& workspace, FileDigits& digits) {
    for_each_setting([&](const auto& row) {
        if constexpr (is_number_setting<decltype(row)>)
            if (row.stale.any() && row.counts(workspace) && !of_line(row.name) &&
                !says_nothing(row.name, workspace))
                digits.add(row.get(workspace));
    });
    // What the readings do not show.
    const DataDefinition& definition = workspace.definition;
    for (const std::int32_t column :
         {definition.z_column, definition.dtm_column, definition.mag_column, definition.grav_column})
        digits.add(column);
    digits.add(workspace.transform.elevation_shift);
    digits.add(workspace.transform.elevation_scale);
}

void add_body(const ModelBody& body, FileDigits& digits) {
    for (const BodyParameter& row : body_parameters())
        // A sphere takes its strike from the line.
        if (row.code != param_strike || body.type != sphere) digits.add((body.*row.slot).value);
    const auto add = [&](const auto& field) {
        if constexpr (std::is_arithmetic_v<std::remove_cvref_t<decltype(body.*field.member)>>)
            if (field.stale.any()) digits.add(body.*field.member);
    };
    std::apply([&](const auto&... field) { (add(field), ...); }, body_fields);
}

std::string mark_of_model(const Workspace& workspace) {
    FileDigits digits;
    add_settings(workspace, digits);
    for (int number = 1; number <= workspace.body_count; ++number) add_body(workspace.body(number), digits);
    return std::to_string(digest_of(digits.text()));
}

void add_bytes(float value, std::string& bytes) {
    const auto raw = std::bit_cast<std::array<char, sizeof value>>(value);
    bytes.append(raw.data(), raw.size());
}

/// Readings are singles as the load leaves them, so the same file gives the same bits.
std::string mark_of_line(const Workspace& workspace) {
    std::string bytes;
    const auto count = static_cast<std::size_t>(workspace.station_count);
    // A window over the whole line ends one station short when a file's distances find it again.
    for (const double distance : {workspace.first_distance, workspace.last_distance})
        bytes += number_to_text(distance);
    add_bytes(workspace.azimuth, bytes);
    for (const double distance : workspace.distances.span().first(count))
        add_bytes(static_cast<float>(distance), bytes);
    const auto add_readings = [&](const Channel& channel) {
        for (const float reading : channel.data.row(workspace.raw_row, stage_observed).first(count))
            add_bytes(reading, bytes);
    };
    if (workspace.has_mag()) add_readings(workspace.mag);
    if (workspace.has_grav()) add_readings(workspace.grav);
    return std::to_string(digest_of(bytes));
}

}  // namespace

std::string model_mark(const Workspace& workspace) {
    std::string mark = mark_of_model(workspace);
    if (workspace.station_count > 0) mark += separator + mark_of_line(workspace);
    return mark;
}

bool bears_mark(const Workspace& workspace, std::string_view mark) {
    const std::size_t end = mark.find(separator);
    if (mark.substr(0, end) != mark_of_model(workspace)) return false;
    if (workspace.station_count <= 0 || end == std::string_view::npos) return true;
    return mark.substr(end + 1) == mark_of_line(workspace);
}

bool as_fitted(const Workspace& workspace) {
    return workspace.fit && bears_mark(workspace, workspace.fit->model_mark);
}

}  // namespace anomalis
