#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/formulas.h"
#include "flow/fit_window.h"
#include "flow/import_survey.h"
#include "intake/formats/survey_format.h"

// What is to be done with the lines of a survey.
namespace anomalis::survey {

/// How a fit is told regional and noises, in place of what the workspace says.
struct FitSettings {
    std::optional<std::int32_t> regional_degree;
    std::optional<float> mag_noise, grav_noise;  ///< nT, mGal
};

struct FindStep {
    std::optional<int> most, bodies;
    bool thin = true, thick = true, free_present = false;
    int alternatives = 3;
    std::optional<flow::DistanceWindow> window;
};
struct InvertStep {
    std::string target = "data", method = "least-squares";
    int iterations = 25, starts = 4;
};
struct UncertaintyStep {
    std::string target = "data";
    int samples = 300, seed = 1;
    std::optional<flow::DistanceWindow> window;
    double strike_within = 0;  ///< degrees to each side
    bool vary_bodies = false, same_regional = false;
};
struct RenderStep {
    std::string format = "png", view = "section";  ///< png, svg, pdf, emf; a name of `show::page_views`
    int width = 1600, height = 1000;               ///< pixels
};
/// Files beside the workspace, each "profile-table", "model-table", "mesh", "clean-profile", "clean-model",
/// "dxf-3d", "dxf-plan", "geojson" or "geopackage".
using ExportNames = std::vector<std::string>;

/// The commands of one line; they run in this order.
struct LineOptions {
    std::optional<Formulas> formulas;
    std::string channel;  ///< "mag", "grav", "joint"; "": what the line has
    FitSettings fit;
    std::optional<FindStep> find;
    std::optional<InvertStep> invert;
    std::optional<UncertaintyStep> uncertainty;
    std::optional<RenderStep> render;
    ExportNames exports;
};

/// A survey file, and what is said of its columns and of the import.
struct SurveySource {
    std::string file;                 ///< as it is found from the current folder
    std::string system, file_system;  ///< of the stations; of the file
    std::vector<std::pair<intake::Role, std::string>> roles;
    std::vector<std::pair<std::string, intake::Unit>> units;
    std::vector<std::pair<std::string, double>> nulls;
    flow::ImportChoices choices;
};

struct PlannedLine {
    std::string name;                            ///< of its folder: safe as a file name, no other line's
    std::string line;                            ///< of the survey file; "" for a workspace
    std::string workspace;                       ///< path; "" for a line of the survey file
    std::shared_ptr<const LineOptions> options;  ///< one for all lines that have the same
};

struct SurveyPlan {
    std::string name;
    std::string path;                    ///< of the plan, for messages
    std::optional<SurveySource> source;  ///< none: workspaces
    /// Of a survey file those that the plan names; with `all_lines` only those that it says something of.
    /// No two write to one place, whatever the case of their names; workspaces are there.
    std::vector<PlannedLine> lines;
    bool all_lines = false;                      ///< of the survey file, but for those `left_out`
    std::vector<std::string> left_out;           ///< of all lines
    std::shared_ptr<const LineOptions> options;  ///< of lines that the plan says nothing else of
};

/// A line that is to be done.
struct LineToDo {
    PlannedLine planned;
    std::size_t line = 0;  ///< its place in the index of the survey file; 0 for a workspace
};

/// The lines of a survey file as a plan wants them: those that it names in its order, else all that the file
/// has in the order of the file. Raises Fault: a line that the file does not have, with names that are like
/// it; one that is named twice; two that write to one place.
std::vector<LineToDo> lines_to_do(const SurveyPlan& plan, const intake::SurveyIndex& index);
/// The same of workspaces.
std::vector<LineToDo> lines_to_do(const SurveyPlan& plan);

}  // namespace anomalis::survey
