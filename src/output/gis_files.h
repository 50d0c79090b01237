#pragma once

#include <string>
#include <vector>

namespace anomalis {
class Prompts;
struct Workspace;
}  // namespace anomalis

// Stations and bodies for geographic information systems. Both need to know the coordinate system of the
// line.
namespace anomalis::output {

/// Raises Fault, with what to do, when the coordinate system of the line is not known.
void require_coordinate_system(const Workspace& workspace);

/// GeoJSON (RFC 7946) in WGS 84: one collection, each feature with its layer among its properties: stations,
/// outlines of the bodies on the ground, and their tops. Heights are properties, since nobody says above
/// what. `failures` (see model::calculation_failures) stand beside the features. Raises Fault.
std::string geojson_text(const Workspace& workspace, const std::vector<std::string>& failures = {});

enum class GisSystem { of_line, geographic };
/// OGC GeoPackage 1.3, the bytes of the file: the same layers as tables. Raises Fault.
std::string geopackage_bytes(const Workspace& workspace, GisSystem system,
                             const std::vector<std::string>& failures = {});

/// As files; an existing one survives a failure. Return 0, or -1 after a failure, which was shown.
int write_geojson(const std::string& path, const Workspace& workspace, Prompts& prompts,
                  const std::vector<std::string>& failures = {});
int write_geopackage(const std::string& path, const Workspace& workspace, GisSystem system, Prompts& prompts,
                     const std::vector<std::string>& failures = {});

}  // namespace anomalis::output
