#include <string>

#include "core/failure.h"
#include "core/told_write.h"
#include "core/workspace.h"
#include "intake/coordinates/coordinate_system.h"
#include "output/failure_note.h"
#include "output/geopackage_rows.h"
#include "output/gis_files.h"
#include "output/gis_layers.h"
#include "output/tables.h"

namespace anomalis::output {

std::string geopackage_bytes(const Workspace& workspace, GisSystem system,
                             const std::vector<std::string>& failures) {
    const std::string& own = workspace.source.coordinate_system;
    const std::string target = system == GisSystem::of_line ? own : intake::wgs84;
    const std::vector<GisLayer> layers = gis_layers(workspace, target);
    GeoPackageRows rows;
    for (const GisLayer& layer : layers) {
        const std::size_t table = rows.add_table(layer, target, "Anomalis" + failure_note(failures));
        for (const GisFeature& feature : layer.features) rows.add(table, feature);
    }
    rows.finish();
    return rows.bytes();
}

int write_geopackage(const std::string& path, const Workspace& workspace, GisSystem system, Prompts& prompts,
                     const std::vector<std::string>& failures) {
    return report_failure(prompts, write_failure_prefix, [&] {
        write_file_telling(prompts, path, geopackage_bytes(workspace, system, failures));
    });
}

}  // namespace anomalis::output
