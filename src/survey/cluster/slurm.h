#pragma once

#include <cstddef>
#include <functional>
#include <string>

// A survey as jobs of a Slurm cluster: an array of shards, and one that gathers them.
namespace anomalis::survey {

struct SlurmSurvey {
    std::string program;       ///< path of the batch program, as the nodes of the cluster find it
    std::string plan, folder;  ///< paths from the root, on a file system that all nodes share
    std::string name;          ///< of the survey
    std::size_t lines = 0;
    int cores = 1;  ///< that a shard works on
    std::size_t lines_a_shard = 200;
};

/// Of so many lines, at least one; never more than an array of jobs may have where nobody changed the limit
/// of Slurm (1000).
int slurm_shards(const SlurmSurvey& survey);

/// A script of bash that submits both jobs when a person runs it, and is what they run. A shard that was
/// killed, or that had no room, is put into the queue again and does what is missing; the tables are made
/// when all shards have ended.
std::string slurm_script(const SlurmSurvey& survey);

/// FOLDER/survey.sbatch.sh
std::string slurm_script_file(const std::string& folder);

/// Writes the script and runs it; what it says goes to `tell`, a line at a time. Raises Fault when the jobs
/// were not submitted, with what to do; the script stays. FileFault.
void submit_to_slurm(const SlurmSurvey& survey, const std::function<void(const std::string&)>& tell);

}  // namespace anomalis::survey
