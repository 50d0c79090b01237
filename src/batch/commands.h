#pragma once

#include <optional>
#include <string>
#include <vector>

#include "batch/option_names.h"
#include "batch/option_values.h"
#include "batch/picture_writer.h"
#include "batch/survey_options.h"
#include "chart/drawing_types.h"
#include "field/main_field.h"

// One procedure a command. Each returns true when it did its work; what it could not do it has shown.
namespace anomalis::batch {

class BatchSession;

struct InfoOptions {
    std::string model;
    bool json = false;
};

struct DumpOptions {
    std::string model;
    std::string output;  ///< empty: the output stream
};

struct ForwardOptions {
    std::string model;
    std::string output;  ///< empty: the output stream
};

struct InvertCommandOptions {
    std::string model;
    std::string channel;  ///< "mag", "grav", "joint"; empty: what the line has
    std::string target = "data";
    std::string method = "least-squares";
    int iterations = 25;
    int body = 0;  ///< 0: the whole model
    FitChoice fit;
    int starts = 4;
    std::string output;
    bool in_place = false;  ///< the output may be the model itself
    std::string report;
    bool force = false;  ///< the model is replaced even if another program has changed it meanwhile
};

struct FindCommandOptions {
    std::string model;
    std::string channel;  ///< "mag", "grav", "joint"; empty: what the line has
    std::optional<int> most, bodies;
    bool thin = true, thick = true;
    FitChoice fit;
    std::optional<float> noise;  ///< nT or mGal, of the channel that is looked at
    std::optional<flow::DistanceWindow> window;
    bool free_present = false;
    int alternatives = 3;
    std::string output;
    std::string report;
};

struct FollowCommandOptions {
    std::string first;
    std::vector<std::string> next;
    std::string channel;  ///< "mag", "grav", "joint"; empty: that of the fit of the first line
    FitChoice fit;
    int iterations = 25, starts = 4;
    std::string output;  ///< a file, or a folder for several lines
    std::string report;
};
/// The workspace that is written for each of the next lines; empty without an output.
std::vector<std::string> follow_outputs(const FollowCommandOptions& options);

struct UncertaintyCommandOptions {
    std::string model;
    int samples = 300, seed = 1;
    std::string channel;  ///< "mag", "grav", "joint"; empty: what the line has
    std::string target = "data";
    FitChoice fit;
    std::optional<flow::DistanceWindow> window;
    double strike_within = 0;  ///< degrees to each side
    bool vary_bodies = false, same_regional = false;
    std::string report, table;
    std::string output;
};

struct FieldCommandOptions {
    field::Place place;
    double year = 0;
    bool json = false;
    std::string output;  ///< empty: the output stream
};

struct ExportOptions {
    std::string model;
    std::string profile_table;
    std::string model_table;
    std::string mesh;
    std::string clean_profile;
    std::string clean_model;
    std::string body_dxf;
    std::string plan_dxf;
    std::string geojson;
    std::string geopackage;
    bool wgs84 = false;  ///< the GeoPackage too
};

struct JoinedOptions {
    std::string folder;  ///< of the results of a survey
    std::string table, geojson, geopackage, dxf, vtk, obj;
};

struct RenderOptions {
    std::string model;
    PictureRequest picture;
};

struct LinesOptions {
    SurveyOptions survey;
    bool json = false;
};

struct ImportOptions {
    SurveyOptions survey;
    std::string line;  ///< empty: the only one
    int piece = 0;     ///< from 1; 0: the whole line
    bool all = false;
    flow::ImportChoices choices;
    std::string folder;
    bool force = false;
    bool json = false;
};

struct NewOptions {
    SurveyOptions survey;
    flow::ImportChoices choices;
    std::string output;
    bool force = false;
};

struct MapOptions {
    SurveyOptions survey;
    std::string line;                 ///< "" for none
    std::optional<chart::Rect> area;  ///< of the map of results, m
    MapRequest picture;
};

struct ManualOptions {
    std::string format = "markdown", page = program_name;
    std::string output;  ///< empty: the output stream
    std::string into;    ///< folder for everything; empty: one text is written
};
/// "anomalis-batch", "anomalis", "anomalis-batch-info" and so on.
std::vector<std::string> manual_page_names();

bool run_info(const InfoOptions& options, BatchSession& batch);
bool run_dump(const DumpOptions& options, BatchSession& batch);
bool run_forward(const ForwardOptions& options, BatchSession& batch);
bool run_invert(const InvertCommandOptions& options, BatchSession& batch);
bool run_find(const FindCommandOptions& options, BatchSession& batch);
bool run_follow(const FollowCommandOptions& options, BatchSession& batch);
bool run_uncertainty(const UncertaintyCommandOptions& options, BatchSession& batch);
bool run_field(const FieldCommandOptions& options, BatchSession& batch);
bool run_export(const ExportOptions& options, BatchSession& batch);
bool run_joined(const JoinedOptions& options, BatchSession& batch);
bool run_lines(const LinesOptions& options, BatchSession& batch);
bool run_import(const ImportOptions& options, BatchSession& batch);
bool run_new(const NewOptions& options, BatchSession& batch);
bool run_manual(const ManualOptions& options, BatchSession& batch);
bool run_map(const MapOptions& options, BatchSession& batch, PictureWriter* pictures);
bool run_render(const RenderOptions& options, BatchSession& batch, PictureWriter* pictures);

}  // namespace anomalis::batch
