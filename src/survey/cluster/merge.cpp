#include "survey/cluster/merge.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <utility>

#include "core/failure.h"
#include "survey/cluster/shards.h"
#include "survey/results/results_folder.h"
#include "survey/run/folder_claim.h"
#include "survey/run/line_store.h"
#include "survey/run/machine_failure.h"
#include "survey/run/survey_input.h"

namespace anomalis::survey {

namespace {

namespace fs = std::filesystem;

std::string described(const SurveyIdentity& identity) {
    return "survey \"" + identity.name + "\", plan " + identity.plan_digest;
}

void refuse_other_plan(const std::string& folder, const SurveyIdentity& own) {
    const std::optional<SurveyIdentity> there = read_survey_identity(folder);
    if (!there) throw Fault(no_survey_text(folder));
    if (there->name == own.name && there->plan_digest == own.plan_digest && there->lines == own.lines) return;
    throw Fault("Only parts of one plan are merged: this is " + described(own) + ", and " + folder +
                " holds " + described(*there) + ". Run its part again with this plan");
}

/// Where a line is had.
struct LineSource {
    static constexpr int nowhere = -1;
    int folder = nowhere;  ///< in the list of folders, of which the first is the target
    bool failed = false;
    std::string digest;
};

/// Looks into all folders, the target first.
class LineSearch {
  public:
    LineSearch(std::vector<std::string> folders, const LineIsCurrent& is_current)
        : folders_(std::move(folders)), is_current_(is_current) {}

    LineSource find(std::size_t number, const std::string& line) const {
        LineSource best;
        for (std::size_t i = 0; i < folders_.size(); ++i) {
            const std::optional<LineResult> kept = kept_line(folders_[i], line);
            if (!kept || (is_current_ && !is_current_(number, *kept))) continue;
            const bool failed = kept->status == LineStatus::failed;
            if (best.folder != LineSource::nowhere) refuse_difference(line, best, i, kept->digest);
            // One that failed here may have been done there.
            if (best.folder == LineSource::nowhere || (best.failed && !failed))
                best = {static_cast<int>(i), failed, kept->digest};
        }
        return best;
    }

  private:
    void refuse_difference(const std::string& line, const LineSource& best, std::size_t other,
                           const std::string& digest) const {
        if (best.digest == digest) return;
        throw Fault("The line " + line + " is in " + folders_[static_cast<std::size_t>(best.folder)] + " (" +
                    best.digest + ") and in " + folders_[other] + " (" + digest +
                    "), made from different input, options or versions. Remove its folder where it is not " +
                    "wanted");
    }

    std::vector<std::string> folders_;
    const LineIsCurrent& is_current_;
};

void take_line(const std::string& from, const std::string& folder, const std::string& line) {
    std::optional<LineResult> result = kept_line(from, line);
    if (!result)
        throw MachineFailure("The line " + line + " went away from " + from + " while it was copied");
    const LineFolder copy(folder, line);
    for (const LineFile& file : result->files)
        on_machine([&] {
            fs::copy_file(line_folder(from, line) + "/" + file.name, copy.path() + file.name,
                          fs::copy_options::overwrite_existing);
        });
    copy.deliver(*result);
}

void take_shard_records(const std::string& from, const std::string& folder, const std::string& plan_digest) {
    for (const ShardRecord& record : read_shard_records(from))
        if (record.plan_digest == plan_digest) write_shard_record(folder, record);
}

/// "L1, L2, L3 and 9 more"
template <class List, class Text>
std::string some_of(const List& list, Text&& text) {
    constexpr std::size_t most = 5;
    std::string names;
    for (std::size_t i = 0; i < std::min(most, list.size()); ++i)
        names += (i > 0 ? ", " : "") + text(list[i]);
    if (list.size() > most) names += " and " + std::to_string(list.size() - most) + " more";
    return names;
}

std::string missing_text(const std::string& folder, const SurveyIdentity& identity,
                         const std::vector<std::string>& missing) {
    std::string text = std::to_string(missing.size()) + " of " + std::to_string(identity.lines.size()) +
                       " lines are not done in " + folder + ": " +
                       some_of(missing, [](const std::string& name) { return name; });
    const std::vector<Shard> open = open_shards(read_shard_records(folder), identity.plan_digest);
    if (open.empty()) return text + ". Run the survey again, which does what is missing, then merge";
    return text + ". Shards that have not ended: " + some_of(open, shard_text) +
           ". Run them again, which does what is missing, then merge";
}

}  // namespace

MergeResult merge_lines(const SurveyIdentity& identity, const std::string& folder,
                        const std::vector<std::string>& others, const LineIsCurrent& is_current) {
    refuse_other_survey(folder, identity);
    for (const std::string& other : others) refuse_other_plan(other, identity);
    std::vector<std::string> folders{folder};
    folders.insert(folders.end(), others.begin(), others.end());
    const LineSearch search(folders, is_current);
    MergeResult result;
    std::vector<std::pair<std::size_t, int>> to_take;
    for (std::size_t i = 0; i < identity.lines.size(); ++i) {
        const LineSource source = search.find(i, identity.lines[i]);
        if (source.folder == LineSource::nowhere) result.missing.push_back(identity.lines[i]);
        if (source.folder > 0) to_take.emplace_back(i, source.folder);
    }
    prepare_folder(folder, identity);
    for (const auto& [line, from] : to_take)
        take_line(folders[static_cast<std::size_t>(from)], folder, identity.lines[line]);
    result.taken = to_take.size();
    on_machine([&] {
        for (const std::string& other : others) take_shard_records(other, folder, identity.plan_digest);
    });
    if (!result.missing.empty()) {
        result.outcome = MergeOutcome::lines_missing;
        result.why = missing_text(folder, identity, result.missing);
        return result;
    }
    result.counts = on_machine([&] { return write_survey_tables(folder); });
    if (result.counts.failed > 0) result.outcome = MergeOutcome::some_failed;
    return result;
}

MergeResult merge_survey(const SurveyPlan& plan, const std::string& folder,
                         const std::vector<std::string>& others) {
    const SurveyInput input = open_input(plan);
    return merge_lines(identity_of(plan, input), folder, others,
                       [&](std::size_t line, const LineResult& kept) {
                           return kept.digest == line_digest(plan, input, input.lines[line]);
                       });
}

}  // namespace anomalis::survey
