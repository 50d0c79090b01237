#pragma once

#include <span>
#include <string>

// Names of coordinate systems in texts beside the numbers.
namespace anomalis::intake {

/// The system that a file of metadata names (.met, .prj): its record PROJ, a code, or the whole text of a
/// projection. "" where there is none.
std::string system_of_metadata(std::span<const std::string> lines);

/// The system that comments of a table name: "EPSG:32754", "WGS 84 / UTM zone 54S". "" where none does.
std::string system_in_comments(std::span<const std::string> lines);

}  // namespace anomalis::intake
