#include "survey/desk/survey_desk.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "core/failure.h"

namespace anomalis::survey {

namespace {

constexpr std::size_t most_steps = 200;
constexpr std::size_t at_a_time = 2000;

}  // namespace

// -- The folder.

void SurveyDesk::open(const std::string& path) {
    watch_.open(path);
    flags_.emplace(watch_.results().folder);
    steps_.clear();
    undone_at_ = 0;
    chosen_.clear();
    wanted_.clear();
    look_at_flags();
    rebuild();
}

/// Order and filter stay as they are: the next folder is often another run of the same survey.
void SurveyDesk::close() {
    watch_.close();
    flags_.reset();
    flags_trouble_.clear();
    steps_.clear();
    undone_at_ = 0;
    chosen_.clear();
    wanted_.clear();
    rebuild();
}

void SurveyDesk::look() {
    if (!is_open()) return;
    const std::string before = trouble();
    const std::size_t change = watch_.change();
    watch_.look();
    if (look_at_flags() || watch_.change() != change || trouble() != before) rebuild();
}

bool SurveyDesk::look_at_flags() {
    try {
        const bool changed = flags_->refresh();
        flags_trouble_.clear();
        return changed;
    } catch (const std::exception& failure) {
        flags_trouble_ = fault_text(failure);
        return false;
    }
}

bool SurveyDesk::read_on(std::size_t most) {
    const std::size_t change = watch_.change();
    const bool more = watch_.read_on(most);
    if (watch_.change() != change) rebuild();
    return more;
}

void SurveyDesk::refresh() {
    look();
    while (read_on(at_a_time)) continue;
}

std::string SurveyDesk::trouble() const {
    if (!is_open()) return {};
    std::string text = watch_.trouble();
    if (!flags_trouble_.empty()) text += (text.empty() ? "" : "\n") + flags_trouble_;
    if (watch_.lines().empty())
        text += (text.empty() ? "" : "\n") + survey_file(folder()) + " names no lines";
    return text;
}

std::size_t SurveyDesk::count(LineFlag flag) const {
    return static_cast<std::size_t>(std::ranges::count_if(
        watch_.lines(), [&](const WatchedLine& line) { return mark(line.line).flag == flag; }));
}

// -- The rows on show.

void SurveyDesk::sort(DeskColumn column, bool ascending) {
    sorted_by_ = column;
    ascending_ = ascending;
    rebuild();
}

void SurveyDesk::sort_as_planned() {
    sorted_by_.reset();
    rebuild();
}

void SurveyDesk::filter(const RowFilter& filter) {
    if (filter_ == filter) return;
    filter_ = filter;
    rebuild();
}

void SurveyDesk::rebuild() {
    const std::vector<DeskRow> before = std::exchange(shown_, {});
    for (const WatchedLine& line : watch_.lines()) {
        DeskRow row = desk_row(line.result ? &results().lines[*line.result] : nullptr);
        row.line = line.line;
        row.status = line.status;
        if (!line.message.empty()) row.message = line.message;
        row.mark = mark(line.line);
        if (holds(filter_, row)) shown_.push_back(std::move(row));
    }
    if (sorted_by_) sort_rows(shown_, *sorted_by_, ascending_);
    shown_at_.clear();
    for (std::size_t i = 0; i < shown_.size(); ++i) shown_at_.emplace(shown_[i].line, i);
    settle_choice(before);
    ++change_;
}

/// Whoever flags a line that a filter then leaves out goes on with the next one.
void SurveyDesk::settle_choice(const std::vector<DeskRow>& before) {
    if (shown_at_.contains(wanted_)) chosen_ = wanted_;
    if (chosen_.empty() || shown_at_.contains(chosen_)) return;
    const auto was = std::ranges::find(before, chosen_, &DeskRow::line);
    const auto is_shown = [this](const DeskRow& row) { return shown_at_.contains(row.line); };
    auto next = std::find_if(was, before.end(), is_shown);
    if (next == before.end()) {
        const auto last = std::find_if(std::make_reverse_iterator(was), before.rend(), is_shown);
        if (last != before.rend()) next = std::prev(last.base());
    }
    chosen_ = next == before.end() ? std::string() : next->line;
}

// -- The chosen line.

std::optional<std::size_t> SurveyDesk::chosen_row() const {
    const auto found = shown_at_.find(chosen_);
    return found == shown_at_.end() ? std::nullopt : std::optional(found->second);
}

bool SurveyDesk::choose(const std::string& line) {
    if (!line.empty() && !shown_at_.contains(line)) return false;
    wanted_ = chosen_ = line;
    return true;
}

bool SurveyDesk::step(int by) {
    const std::optional<std::size_t> row = chosen_row();
    const auto last = static_cast<std::ptrdiff_t>(shown_.size()) - 1;
    const std::ptrdiff_t first = by > 0 ? 0 : last;
    const std::ptrdiff_t to = row ? static_cast<std::ptrdiff_t>(*row) + by : first;
    if (to < 0 || to > last) return false;
    wanted_ = chosen_ = shown_[static_cast<std::size_t>(to)].line;
    return true;
}

// -- Flags.

void SurveyDesk::set_flag(const std::string& line, LineFlag flag) {
    set_mark(line, {flag, mark(line).note});
}

void SurveyDesk::set_note(const std::string& line, const std::string& note) {
    set_mark(line, {mark(line).flag, note});
}

void SurveyDesk::set_mark(const std::string& line, LineMark wanted) {
    if (!flags_ || !watch_.has(line)) return;
    const LineMark before = mark(line);
    if (before == wanted) return;
    flags_->set(line, std::move(wanted));
    flags_trouble_.clear();
    steps_.resize(undone_at_);
    steps_.push_back({line, before, mark(line)});
    if (steps_.size() > most_steps) steps_.erase(steps_.begin());
    undone_at_ = steps_.size();
    rebuild();
    wanted_ = chosen_;
}

std::string SurveyDesk::apply(const FlagStep& step, const LineMark& from, const LineMark& to) {
    const bool done = flags_->replace(step.line, from, to);
    if (!done) flags_->refresh();
    rebuild();
    choose(step.line);
    return done ? ""
                : "Another program has changed the flag of line " + step.line + ": it stays as it is now";
}

std::string SurveyDesk::undo() {
    if (!can_undo()) return {};
    const FlagStep step = steps_[undone_at_ - 1];
    std::string told = apply(step, step.after, step.before);
    --undone_at_;
    return told;
}

std::string SurveyDesk::redo() {
    if (!can_redo()) return {};
    const FlagStep step = steps_[undone_at_];
    std::string told = apply(step, step.before, step.after);
    ++undone_at_;
    return told;
}

}  // namespace anomalis::survey
