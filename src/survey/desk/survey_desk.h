#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "survey/desk/desk_rows.h"
#include "survey/results/line_flags.h"
#include "survey/results/results_watch.h"

// The results of a survey as a person goes through them, without a window: the lines as rows that are sorted
// and filtered, the one that is chosen, the flags. A survey that still runs is read on.
namespace anomalis::survey {

class SurveyDesk {
  public:
    // -- The folder.

    /// As `ResultsWatch::open`; the flags come with it.
    void open(const std::string& path);
    void close();
    bool is_open() const { return watch_.is_open(); }
    const std::string& folder() const { return results().folder; }

    /// Looks at plan, lines and flags; what has come is read by `read_on`. Raises nothing.
    void look();
    /// Reads so many results at most. True while there are more.
    bool read_on(std::size_t most);
    /// Both, to the end.
    void refresh();
    /// Counts every change of the results and the rows.
    std::size_t change() const { return change_; }
    const ResultsWatch& watch() const { return watch_; }
    const SurveyResults& results() const { return watch_.results(); }
    /// What the folder or its flags are like that keeps this page from being right, and what to do; "" for
    /// nothing.
    std::string trouble() const;
    std::size_t count(LineFlag flag) const;

    // -- The rows on show.

    const std::vector<DeskRow>& rows() const { return shown_; }
    void sort(DeskColumn column, bool ascending);
    /// In the order of the plan.
    void sort_as_planned();
    void filter(const RowFilter& filter);
    const RowFilter& filter() const { return filter_; }

    // -- The chosen line.

    /// "" for none. It stays the chosen one while it is shown; when it no longer is, the one behind it that
    /// is, until it is shown again.
    const std::string& chosen() const { return chosen_; }
    /// Where it stands, of the rows on show.
    std::optional<std::size_t> chosen_row() const;
    /// False for a line that is not on show.
    bool choose(const std::string& line);
    /// The row so many further; false at the end.
    bool step(int by);

    // -- Flags.

    /// Writes at once. Raises Fault, FileFault: nothing has changed then.
    void set_flag(const std::string& line, LineFlag flag);
    void set_note(const std::string& line, const std::string& note);
    LineMark mark(const std::string& line) const { return flags_ ? flags_->of(line) : LineMark{}; }
    bool can_undo() const { return undone_at_ > 0; }
    bool can_redo() const { return undone_at_ < steps_.size(); }
    /// Takes the last flag or note back, or gives it again, and chooses its line. What another program has
    /// changed since is left as it is: the returned sentence says so, "" otherwise. Raises as `set_flag`.
    std::string undo();
    std::string redo();

  private:
    struct FlagStep {
        std::string line;
        LineMark before, after;
    };

    bool look_at_flags();
    void rebuild();
    void settle_choice(const std::vector<DeskRow>& before);
    void set_mark(const std::string& line, LineMark mark);
    std::string apply(const FlagStep& step, const LineMark& from, const LineMark& to);

    ResultsWatch watch_;
    std::optional<LineFlags> flags_;
    std::string flags_trouble_;
    std::vector<DeskRow> shown_;
    std::unordered_map<std::string, std::size_t> shown_at_;
    std::optional<DeskColumn> sorted_by_;
    bool ascending_ = true;
    RowFilter filter_;
    std::string chosen_;
    std::string wanted_;  ///< by the person, last; a filter may hide it for a while
    std::vector<FlagStep> steps_;
    std::size_t undone_at_ = 0;
    std::size_t change_ = 0;
};

}  // namespace anomalis::survey
