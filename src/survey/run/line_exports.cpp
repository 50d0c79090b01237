#include "survey/run/line_exports.h"

#include <algorithm>
#include <array>

#include "output/clean_tables.h"
#include "output/dxf.h"
#include "output/gis_files.h"
#include "output/tables.h"

namespace anomalis::survey {

namespace {

using Failures = std::vector<std::string>;

template <int (*writer)(const std::string&, const Workspace&, Prompts&)>
int without_failures(const std::string& path, const Workspace& workspace, Prompts& prompts, const Failures&) {
    return writer(path, workspace, prompts);
}

int write_package(const std::string& path, const Workspace& workspace, Prompts& prompts,
                  const Failures& failures) {
    return output::write_geopackage(path, workspace, output::GisSystem::of_line, prompts, failures);
}

constexpr std::array all_exports{
    LineExport{"profile-table", "-profile.txt", &output::write_profile_table},
    LineExport{"model-table", "-model.txt", &output::write_model_table},
    LineExport{"mesh", "-mesh.txt", &without_failures<&output::write_mesh_header>},
    LineExport{"clean-profile", "-profile.csv", &output::write_clean_profile_table},
    LineExport{"clean-model", "-model.csv", &output::write_clean_model_table},
    LineExport{"dxf-3d", "-bodies.dxf", &without_failures<&output::write_body_dxf>},
    LineExport{"dxf-plan", "-plan.dxf", &without_failures<&output::write_plan_dxf>},
    LineExport{"geojson", ".geojson", &output::write_geojson},
    LineExport{"geopackage", ".gpkg", &write_package}};

}  // namespace

std::span<const LineExport> line_exports() {
    return all_exports;
}

const LineExport* find_line_export(const std::string& name) {
    const auto* found =
        std::ranges::find_if(all_exports, [&](const LineExport& one) { return name == one.name; });
    return found == all_exports.end() ? nullptr : found;
}

}  // namespace anomalis::survey
