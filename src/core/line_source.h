#pragma once

#include <cstdint>
#include <string>

namespace anomalis {

/// What a load does with the magnetic readings of the file: IGRF at each station's place and the day of the
/// survey is taken out of them or put back.
enum IgrfChange : std::int32_t { igrf_removed = -1, igrf_kept = 0, igrf_added = 1 };

/// Where the numbers of a line came from; kept with its workspace.
struct LineSource {
    std::string file;               ///< name of the survey file that it was imported from
    std::string line;               ///< its line there
    std::string coordinate_system;  ///< of the stations: "EPSG:32754"; "" where nobody said it
    std::string date;               ///< of the survey: "1990-07-01" or a decimal year; "" where not known
    /// Whence the earth's field came: "IGRF-14 at the middle of the line, 1990-07-01"; "" for a keyed one.
    std::string field_origin;
    /// Nobody gave the field of this line yet: its intensity is 0, and magnetics cannot be modelled.
    bool field_missing = false;
    std::int32_t igrf_change = igrf_kept;

    bool operator==(const LineSource&) const = default;
};

}  // namespace anomalis
