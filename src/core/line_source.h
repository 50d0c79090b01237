#pragma once

#include <string>

namespace anomalis {

/// Where the numbers of a line came from; kept with its workspace.
struct LineSource {
    std::string file;               ///< name of the survey file that it was imported from
    std::string line;               ///< its line there
    std::string coordinate_system;  ///< of the stations: "EPSG:32754"; "" where nobody said it
    std::string date;               ///< of the survey: "1990-07-01" or a decimal year; "" where not known
    /// Whence the earth's field came: "IGRF-14 at the middle of the line, 1990-07-01"; "" for a keyed one.
    std::string field_origin;
    /// Nobody gave the field of this line yet: magnetics cannot be modelled.
    bool field_missing = false;

    bool operator==(const LineSource&) const = default;
};

}  // namespace anomalis
