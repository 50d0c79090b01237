#include "batch/command.h"
#include "batch/commands.h"

namespace anomalis::batch {

namespace {

class ExportCommand : public Command {
  public:
    std::string name() const override { return "export"; }
    std::string purpose() const override { return "Write tables and drawings for other programs"; }
    std::vector<manual::Example> examples() const override {
        return {{"anomalis-batch export line_1030.axm --clean-profile profile.csv --clean-model bodies.csv",
                 "Write tables for data-frame libraries"},
                {"anomalis-batch export line_1030.axm --dxf-3d bodies.dxf --geopackage bodies.gpkg --wgs84",
                 "Take the bodies to CAD and to a map"}};
    }
    void declare(OptionList& options) override {
        options.file(workspace_form("MODEL"), options_.model, model_file_purpose);
        options.flag("--wgs84", options_.wgs84, "The GeoPackage in WGS 84 longitude and latitude too");
        options.any_of("outputs");
        options.output("--profile-table", options_.profile_table, manual::file("FILE", {".csv"}),
                       "One line a station");
        options.output("--model-table", options_.model_table, manual::file("FILE", {".csv"}),
                       "One line a body");
        options.output("--mesh", options_.mesh, manual::file("FILE", {".msh"}),
                       "Header of a rectilinear mesh around the line");
        options.output("--clean-profile", options_.clean_profile, manual::file("FILE", {".csv"}),
                       "One row a station for data-frame libraries: one header row, units in the names");
        options.output("--clean-model", options_.clean_model, manual::file("FILE", {".csv"}),
                       "The same, one row a body");
        options.output("--dxf-3d", options_.body_dxf, manual::file("FILE", {".dxf"}),
                       "The bodies as 3D faces, for CAD");
        options.output("--dxf-plan", options_.plan_dxf, manual::file("FILE", {".dxf"}),
                       "Profile line and outlines of the bodies, for CAD");
        options.output("--geojson", options_.geojson, manual::file("FILE", {".geojson"}),
                       "Stations, outlines and tops of the bodies in WGS 84, for maps (GeoJSON)");
        options.output("--geopackage", options_.geopackage, manual::file("FILE", {".gpkg"}),
                       "The same in the coordinate system of the line (GeoPackage)");
    }
    CommandFiles files() const override {
        return {.model = options_.model,
                .writes = {{"--profile-table", options_.profile_table},
                           {"--model-table", options_.model_table},
                           {"--mesh", options_.mesh},
                           {"--clean-profile", options_.clean_profile},
                           {"--clean-model", options_.clean_model},
                           {"--dxf-3d", options_.body_dxf},
                           {"--dxf-plan", options_.plan_dxf},
                           {"--geojson", options_.geojson},
                           {"--geopackage", options_.geopackage}}};
    }
    bool run(BatchSession& batch) const override { return run_export(options_, batch); }

  private:
    ExportOptions options_;
};

}  // namespace

std::unique_ptr<Command> export_command() {
    return std::make_unique<ExportCommand>();
}

}  // namespace anomalis::batch
