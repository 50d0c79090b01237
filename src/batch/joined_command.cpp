#include "batch/command.h"
#include "batch/commands.h"
#include "survey/results/results_folder.h"

namespace anomalis::batch {

namespace {

class JoinedCommand : public Command {
  public:
    std::string name() const override { return "joined"; }
    std::string purpose() const override {
        return "Write the bodies that neighbouring lines of a survey share, for other programs";
    }
    std::vector<manual::Example> examples() const override {
        return {{"anomalis-batch joined results --table bodies.csv --geopackage bodies.gpkg --vtk sheets.vtk",
                 "Write the joined bodies as table, map and surfaces"}};
    }
    void declare(OptionList& options) override {
        options.file(manual::folder("FOLDER"), options_.folder, "Results of a survey (survey -o FOLDER)");
        options.any_of("outputs");
        options.output("--table", options_.table, manual::file("FILE", {".csv"}),
                       "One row a joined body for data-frame libraries: one header row, units in the names");
        options.output("--geojson", options_.geojson, manual::file("FILE", {".geojson"}),
                       "Lines along strike, and their tops, in WGS 84 for maps (GeoJSON)");
        options.output("--geopackage", options_.geopackage, manual::file("FILE", {".gpkg"}),
                       "The same in the coordinate system of the lines (GeoPackage)");
        options.output("--dxf", options_.dxf, manual::file("FILE", {".dxf"}),
                       "Tops as lines and sheets as 3D faces, for CAD");
        options.output("--vtk", options_.vtk, manual::file("FILE", {".vtk"}),
                       "Sheets in space with their values (legacy VTK)");
        options.output("--obj", options_.obj, manual::file("FILE", {".obj"}),
                       "Sheets in space (Wavefront OBJ)");
    }
    CommandFiles files() const override {
        return {.model = "",
                .writes = {{"--table", options_.table},
                           {"--geojson", options_.geojson},
                           {"--geopackage", options_.geopackage},
                           {"--dxf", options_.dxf},
                           {"--vtk", options_.vtk},
                           {"--obj", options_.obj}},
                .data = {survey::survey_file(options_.folder)}};
    }
    bool run(BatchSession& batch) const override { return run_joined(options_, batch); }

  private:
    JoinedOptions options_;
};

}  // namespace

std::unique_ptr<Command> joined_command() {
    return std::make_unique<JoinedCommand>();
}

}  // namespace anomalis::batch
