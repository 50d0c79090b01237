#pragma once

#include <string>

#include "batch/option_values.h"
#include "batch/picture_writer.h"

// One procedure a command. Each returns true when it did its work; what it could not do it has shown.
namespace anomalis::batch {

class BatchSession;

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

struct ExportOptions {
    std::string model;
    std::string profile_table;
    std::string model_table;
    std::string mesh;
    std::string clean_profile;
    std::string clean_model;
    std::string body_dxf;
    std::string plan_dxf;
};

struct RenderOptions {
    std::string model;
    PictureRequest picture;
};

/// Takes "WIDTHxHEIGHT", each 16 to 16384; false when the text is none.
bool parse_picture_size(const std::string& text, PictureRequest& picture);

bool run_info(const std::string& model, BatchSession& batch);
bool run_dump(const DumpOptions& options, BatchSession& batch);
bool run_forward(const ForwardOptions& options, BatchSession& batch);
bool run_invert(const InvertCommandOptions& options, BatchSession& batch);
bool run_export(const ExportOptions& options, BatchSession& batch);
bool run_render(const RenderOptions& options, BatchSession& batch, PictureWriter* pictures);

}  // namespace anomalis::batch
