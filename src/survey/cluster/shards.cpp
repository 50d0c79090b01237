#include "survey/cluster/shards.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>

#include "core/failure.h"
#include "core/numbers.h"
#include "core/paths.h"
#include "core/safe_file.h"
#include "report/json_text.h"
#include "survey/results/json_fields.h"

namespace anomalis::survey {

namespace {

namespace fs = std::filesystem;

std::string shards_folder(const std::string& folder) {
    return folder + "/shards";
}

std::optional<int> whole_part(const std::string& text) {
    double value = 0;
    constexpr double most = 1e6;
    const bool digits = !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
    if (!digits || !parse_number(text, value) || value > most) return {};
    return static_cast<int>(value);
}

std::string record_json(const ShardRecord& record) {
    const Json json = {{"shard", record.shard.number},
                       {"of", record.shard.count},
                       {"plan_digest", record.plan_digest},
                       {"lines", record.lines},
                       {"failed", record.failed}};
    return report::json_text(json, 1);
}

std::optional<ShardRecord> record_in(const std::string& path) {
    try {
        return read_json_file(read_whole_file(path), path, [](const Json& json) {
            return ShardRecord{.shard = {json.at("shard").get<int>(), json.at("of").get<int>()},
                               .plan_digest = json.at("plan_digest").get<std::string>(),
                               .lines = json.at("lines").get<std::size_t>(),
                               .failed = json.at("failed").get<std::size_t>()};
        });
    } catch (const Fault&) {  // damaged: the part is done again
        return {};
    }
}

void raise_if(const std::error_code& error, const std::string& path) {
    if (error) throw FileFault(error.value(), path);
}

}  // namespace

Shard read_shard(const std::string& text) {
    const auto slash = text.find('/');
    const std::optional<int> number = whole_part(text.substr(0, slash));
    const std::optional<int> count =
        slash == std::string::npos ? std::nullopt : whole_part(text.substr(slash + 1));
    if (!number || !count)
        throw Fault("A shard is I/N, such as 2/5 for the second of five parts, and not \"" + text + "\"");
    if (*count < 1 || *number < 1 || *number > *count)
        throw Fault("There is no shard " + text + ": of " + std::to_string(*count) + " parts I is 1 to " +
                    std::to_string(std::max(*count, 1)));
    return {*number, *count};
}

std::string shard_text(const Shard& shard) {
    return std::to_string(shard.number) + "/" + std::to_string(shard.count);
}

bool in_shard(std::size_t line, const Shard& shard) {
    return line % static_cast<std::size_t>(shard.count) == static_cast<std::size_t>(shard.number - 1);
}

std::string shard_file(const std::string& folder, const Shard& shard) {
    return shards_folder(folder) + "/" + std::to_string(shard.number) + "-of-" + std::to_string(shard.count) +
           ".json";
}

void remove_shard_record(const std::string& folder, const Shard& shard) {
    std::error_code error;
    fs::remove(shard_file(folder, shard), error);
    raise_if(error, shard_file(folder, shard));
}

void write_shard_record(const std::string& folder, const ShardRecord& record) {
    std::error_code error;
    fs::create_directories(shards_folder(folder), error);
    raise_if(error, shards_folder(folder));
    write_file_safely(shard_file(folder, record.shard), record_json(record));
}

std::vector<ShardRecord> read_shard_records(const std::string& folder) {
    const std::string shards = shards_folder(folder);
    if (!folder_exists(shards)) return {};
    std::error_code error;
    std::vector<std::string> paths;
    for (fs::directory_iterator entry(shards, error); !error && entry != fs::directory_iterator();
         entry.increment(error))
        if (entry->path().extension() == ".json") paths.push_back(entry->path().string());
    raise_if(error, shards);
    std::ranges::sort(paths);
    std::vector<ShardRecord> records;
    for (const std::string& path : paths)
        if (auto record = record_in(path)) records.push_back(std::move(*record));
    return records;
}

std::vector<Shard> open_shards(const std::vector<ShardRecord>& records, const std::string& plan_digest) {
    int count = 0;
    for (const ShardRecord& record : records)
        if (record.plan_digest == plan_digest) count = std::max(count, record.shard.count);
    std::vector<Shard> open;
    for (int number = 1; number <= count; ++number)
        if (std::ranges::none_of(records, [&](const ShardRecord& record) {
                return record.plan_digest == plan_digest && record.shard.number == number &&
                       record.shard.count == count;
            }))
            open.push_back({number, count});
    return open;
}

}  // namespace anomalis::survey
