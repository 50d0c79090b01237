#pragma once

#include <string>
#include <vector>

#include "survey/run/run_survey.h"

namespace anomalis::batch {

class BatchSession;
class PictureWriter;

struct SurveyCommandOptions {
    std::string plan, folder;
    int jobs = 0;  ///< 0: as many as there are cores
    survey::Shard shard;
    bool merge = false, slurm = false, dry_run = false, again_failed = false;
    std::vector<std::string> from;  ///< folders with lines of the same plan, for `merge`
    int lines_a_shard = 200;        ///< for `slurm`
    std::string log = "text";
    std::string map;  ///< picture of all results, drawn at the end; "" for none
};

/// Does a survey or a part of it, gathers the parts, hands them to a cluster or tells what would be done.
/// True when all went well. `pictures` may be null: a plan with pictures is then refused.
bool run_survey_command(const SurveyCommandOptions& options, BatchSession& batch, PictureWriter* pictures);

}  // namespace anomalis::batch
