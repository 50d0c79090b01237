#include "survey/results/results_watch.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "core/failure.h"
#include "core/paths.h"
#include "core/safe_file.h"
#include "survey/results/results_folder.h"

namespace anomalis::survey {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t shown_after = 2000;  ///< results read, until the rows show them
constexpr int quiet_enough = 2;            ///< the clock of a file system may tick once in two seconds

constexpr const char* which_folder = ". Choose the folder that the survey was told to write to";

/// The folder that a person means by it, without a separator at its end.
std::string meant_folder(std::string path) {
    if (file_name(path) == file_name(survey_file("")) && !folder_exists(path)) path = folder_name(path);
    while (path.size() > 1 && path.ends_with('/')) path.pop_back();
    return path.empty() ? "." : path;
}

SurveyIdentity identity_of(const std::string& folder) {
    if (!folder_exists(folder)) throw Fault("There is no folder " + folder + which_folder);
    std::optional<SurveyIdentity> identity = read_survey_identity(folder);
    if (identity) return *std::move(identity);
    std::error_code ignored;
    if (fs::is_empty(folder, ignored))
        throw Fault(folder + " is empty: no survey has written to it yet" + which_folder);
    throw Fault(folder + " holds no results of a survey: there is no survey.json in it" + which_folder);
}

}  // namespace

void ResultsWatch::open(const std::string& path) {
    const std::string folder = meant_folder(path);
    const FileStamp stamp = stamp_file(survey_file(folder));
    SurveyIdentity identity = identity_of(folder);
    close();
    results_.folder = folder;
    identity_stamp_ = stamp;
    take_plan(std::move(identity));
    look_for_lines();
}

void ResultsWatch::close() {
    const std::size_t change = change_;
    *this = {};
    change_ = change + 1;
}

void ResultsWatch::look() {
    if (!is_open()) return;
    look_at_plan();
    if (trouble_.empty()) look_for_lines();
}

void ResultsWatch::look_at_plan() {
    const std::string& folder = results_.folder;
    const std::string path = survey_file(folder);
    const FileFate fate = fate_of(identity_stamp_, path);
    if (fate == FileFate::gone) {
        trouble_ = (folder_exists(folder) ? path + " is gone" : "The folder " + folder + " is gone") +
                   ": what is shown is what was read before. It is read on when it is there again";
        return;
    }
    trouble_.clear();
    if (fate == FileFate::same) return;
    try {
        const FileStamp stamp = stamp_file(path);
        take_plan(identity_of(folder));
        identity_stamp_ = stamp;
    } catch (const std::exception& failure) {
        trouble_ = fault_text(failure);
    }
}

/// Lines that both plans name keep their results until they are read anew.
void ResultsWatch::take_plan(SurveyIdentity identity) {
    std::vector<WatchedLine> former = std::exchange(lines_, {});
    const std::unordered_map<std::string, std::size_t> former_at = std::exchange(line_at_, {});
    std::vector<LineResult> lines = std::exchange(results_.lines, {});
    to_read_.clear();
    pending_.clear();
    for (const std::string& line : identity.lines) {
        const std::size_t at = lines_.size();
        if (!line_at_.emplace(line, at).second) continue;
        WatchedLine& slot = lines_.emplace_back();
        slot.line = line;
        const auto found = former_at.find(line);
        if (found == former_at.end()) continue;
        slot = std::move(former[found->second]);
        if (!slot.result) continue;
        pending_.emplace(at, Reading{slot.status, slot.message, std::move(lines[*slot.result])});
        slot.result.reset();
    }
    results_.identity = std::move(identity);
    quiet_looks_ = 0;
    take_over();
}

/// A line comes, or comes anew, by a rename in the folder of the lines, which changes the folder's time.
/// While that stands still there is nothing to look for.
void ResultsWatch::look_for_lines() {
    std::error_code error;
    const auto changed = fs::last_write_time(results_.folder + "/lines", error);
    quiet_looks_ = !error && changed == lines_changed_ ? quiet_looks_ + 1 : 0;
    lines_changed_ = changed;
    if (quiet_looks_ > quiet_enough) return;
    to_read_.clear();
    bool gone = false;
    for (std::size_t i = lines_.size(); i-- > 0;) {
        WatchedLine& slot = lines_[i];
        const std::string path = line_result_file(results_.folder, slot.line);
        switch (fate_of(slot.stamp, path)) {
            case FileFate::same:
                break;
            case FileFate::changed:
                to_read_.push_back(i);
                break;
            case FileFate::gone:
                slot = {.line = slot.line,
                        .status = RowStatus::waiting,
                        .message = {},
                        .stamp = {},
                        .result = {}};
                pending_.erase(i);
                gone = true;
        }
    }
    if (gone) take_over();
}

bool ResultsWatch::read_on(std::size_t most) {
    for (std::size_t i = 0; i < most && !to_read_.empty(); ++i) {
        const std::size_t slot = to_read_.back();
        to_read_.pop_back();
        read_line(slot);
    }
    if (!pending_.empty() && (to_read_.empty() || pending_.size() >= shown_after)) take_over();
    return !to_read_.empty();
}

void ResultsWatch::read_line(std::size_t at) {
    WatchedLine& slot = lines_[at];
    const std::string path = line_result_file(results_.folder, slot.line);
    slot.stamp = stamp_file(path, StampDepth::times);
    Reading reading;
    try {
        reading.result = read_line_result(read_whole_file(path), path);
        reading.status = reading.result.status == LineStatus::done ? RowStatus::done : RowStatus::failed;
    } catch (const std::exception& failure) {
        reading.message = fault_text(failure);
    }
    pending_.insert_or_assign(at, std::move(reading));
}

/// What was read takes its place in the order of the plan.
void ResultsWatch::take_over() {
    std::vector<LineResult> lines;
    results_.missing.clear();
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        WatchedLine& slot = lines_[i];
        LineResult* result = slot.result ? &results_.lines[*slot.result] : nullptr;
        if (const auto read = pending_.find(i); read != pending_.end()) {
            slot.status = read->second.status;
            slot.message = std::move(read->second.message);
            result = slot.status == RowStatus::damaged ? nullptr : &read->second.result;
        }
        slot.result.reset();
        if (result) {
            slot.result = lines.size();
            lines.push_back(std::move(*result));
        } else {
            results_.missing.push_back(slot.line);
        }
    }
    results_.lines = std::move(lines);
    pending_.clear();
    ++change_;
}

const LineResult* ResultsWatch::result(const std::string& line) const {
    const auto found = line_at_.find(line);
    if (found == line_at_.end() || !lines_[found->second].result) return nullptr;
    return &results_.lines[*lines_[found->second].result];
}

std::size_t ResultsWatch::count(RowStatus status) const {
    return static_cast<std::size_t>(
        std::ranges::count_if(lines_, [=](const WatchedLine& slot) { return slot.status == status; }));
}

std::string ResultsWatch::workspace_of(const std::string& line) const {
    const fs::path folder = line_folder(results_.folder, line);
    const std::string usual = (folder / (line + ".axm")).string();
    if (!file_exists(usual).empty()) return usual;
    std::string first;
    std::error_code none;
    for (const auto& entry : fs::directory_iterator(folder, none))
        if (entry.path().extension() == ".axm" && (first.empty() || entry.path().string() < first))
            first = entry.path().string();
    return first;
}

}  // namespace anomalis::survey
