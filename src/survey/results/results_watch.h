#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "core/file_stamp.h"
#include "survey/results/survey_results.h"

namespace anomalis::survey {

enum class RowStatus : std::int32_t {
    done,
    failed,   ///< its row says why
    waiting,  ///< of the plan, and not done yet
    damaged   ///< there, and cannot be read
};

/// One line of the plan.
struct WatchedLine {
    std::string line;
    RowStatus status = RowStatus::waiting;
    std::string message;                ///< of a damaged one
    FileStamp stamp;                    ///< of its result when that was read
    std::optional<std::size_t> result;  ///< in the results
};

/// The results of a survey that may still run: what has come is read on, a piece at a time, and nothing is
/// read twice.
class ResultsWatch {
  public:
    /// Turns to the folder; its lines are read by `read_on`. A survey.json in the place of the folder stands
    /// for the folder that it is in. Raises Fault (no folder, no survey there, damaged), FileFault; the
    /// folder before stays then.
    void open(const std::string& path);
    void close();
    bool is_open() const { return !results_.folder.empty(); }

    /// Looks which lines are done by now or were done again, and at the plan. Raises nothing.
    void look();
    /// Reads results that `look` left to be read, so many at most. True while there are more. They are taken
    /// over when it ends, and now and then on the way.
    bool read_on(std::size_t most);
    /// Counts every change of the results and the lines.
    std::size_t change() const { return change_; }
    std::size_t lines_to_read() const { return to_read_.size(); }
    /// What became of the folder, and what to do; "" for nothing.
    const std::string& trouble() const { return trouble_; }

    const SurveyResults& results() const { return results_; }
    /// In the order of the plan.
    const std::vector<WatchedLine>& lines() const { return lines_; }
    bool has(const std::string& line) const { return line_at_.contains(line); }
    /// Null for a line that has none.
    const LineResult* result(const std::string& line) const;
    std::size_t count(RowStatus status) const;
    /// The workspace in the folder of a line; "" where there is none.
    std::string workspace_of(const std::string& line) const;

  private:
    /// Of one line, until it is taken over.
    struct Reading {
        RowStatus status = RowStatus::damaged;
        std::string message;
        LineResult result;
    };

    void look_at_plan();
    void look_for_lines();
    void take_plan(SurveyIdentity identity);
    void read_line(std::size_t at);
    void take_over();

    SurveyResults results_;
    std::vector<WatchedLine> lines_;
    std::unordered_map<std::string, std::size_t> line_at_;
    FileStamp identity_stamp_;
    std::filesystem::file_time_type lines_changed_;  ///< the folder of the lines, when it was looked at
    int quiet_looks_ = 0;                            ///< that found it as it was
    std::vector<std::size_t> to_read_;               ///< the next one last
    std::map<std::size_t, Reading> pending_;
    std::string trouble_;
    std::size_t change_ = 0;
};

}  // namespace anomalis::survey
