#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "survey/run/run_survey.h"

// A survey in parts that know nothing of each other: each on its own machine, all of them in one results
// folder or each in its own.
namespace anomalis::survey {

/// "2/5". Raises Fault: no such pair of whole numbers, or a part beyond the last.
Shard read_shard(const std::string& text);
std::string shard_text(const Shard& shard);  ///< "2/5"

/// Whether a line of the plan, counted from 0, is of a part. Every line is of exactly one; neighbours, which
/// are about as long, are of different ones, so that all parts take about as long.
bool in_shard(std::size_t line, const Shard& shard);

/// What is left of a part that has ended.
struct ShardRecord {
    Shard shard;
    std::string plan_digest;
    std::size_t lines = 0, failed = 0;
};

/// FOLDER/shards/2-of-5.json
std::string shard_file(const std::string& folder, const Shard& shard);
/// At the start of a part: it has not ended. Nothing where there was none. Raises FileFault.
void remove_shard_record(const std::string& folder, const Shard& shard);
/// At its end, when all of its lines are in their places: the one thing that a part writes besides them.
/// Raises FileFault.
void write_shard_record(const std::string& folder, const ShardRecord& record);
/// By their names; those that cannot be read are not there. Raises FileFault.
std::vector<ShardRecord> read_shard_records(const std::string& folder);
/// Of the parts of a plan, as many as the largest count says, those that have not ended; none when no part
/// ever began.
std::vector<Shard> open_shards(const std::vector<ShardRecord>& records, const std::string& plan_digest);

}  // namespace anomalis::survey
