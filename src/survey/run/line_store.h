#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "survey/results/line_result.h"

// The folders of the lines of a survey: each is there as a whole or not at all, whatever ends the program.
namespace anomalis::survey {

/// Makes the folder of a survey and that of its lines where they are missing, and removes what processes that
/// have ended left half done. Raises MachineFailure.
void prepare_lines(const std::string& folder);

/// What is kept of a line. No value where there is nothing, or where what is there is not what was written: a
/// damaged result, a file that is gone or another. Raises MachineFailure where it cannot be looked at.
std::optional<LineResult> kept_line(const std::string& folder, const std::string& line);

/// A line while it is made: a hidden folder beside its place that tells which process writes it. It goes at
/// the end of the scope, unless it was delivered.
class LineFolder {
  public:
    /// Raises MachineFailure, as all of it does.
    LineFolder(const std::string& folder, const std::string& line);
    ~LineFolder();
    LineFolder(const LineFolder&) = delete;
    LineFolder& operator=(const LineFolder&) = delete;

    /// With its separator. Others may write there as well.
    const std::string& path() const { return path_; }
    /// Writes a file anew. Nothing waits for the disk: `kept_line` finds out what a power cut left.
    void write(const std::string& name, std::string_view contents) const;
    /// Notes the files in `result`, adds it and puts the folder in its place.
    void deliver(LineResult& result) const;

  private:
    std::string place_, path_;
};

}  // namespace anomalis::survey
