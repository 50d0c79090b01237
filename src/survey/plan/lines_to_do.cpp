#include <unordered_map>
#include <unordered_set>

#include "core/failure.h"
#include "core/near_names.h"
#include "core/paths.h"
#include "survey/plan/plan.h"
#include "survey/plan/plan_names.h"

namespace anomalis::survey {

namespace {

/// The lines of an index by their names: as they are spelled, else as they are meant ("5690.0" is 5690).
class LinePlaces {
  public:
    explicit LinePlaces(const intake::SurveyIndex& index) : index_(index) {
        for (std::size_t i = 0; i < index.lines.size(); ++i) {
            spelled_.try_emplace(index.lines[i].name, i);
            meant_.try_emplace(meant_name(index.lines[i].name), i);
        }
    }

    std::size_t of(const std::string& name, const std::string& plan) const {
        if (const auto found = spelled_.find(name); found != spelled_.end()) return found->second;
        if (const auto found = meant_.find(meant_name(name)); found != meant_.end()) return found->second;
        std::string near;
        for (const std::string& one : flow::near_line_names(index_, name))
            near += (near.empty() ? "" : ", ") + one;
        throw Fault(file_name(plan) + ": " + file_name(index_.layout.path) + " has no line " + name +
                    "; nearest in name are " + near);
    }

  private:
    const intake::SurveyIndex& index_;
    std::unordered_map<std::string, std::size_t> spelled_, meant_;
};

/// What the plan says of some lines of a file.
class SaidOfLines {
  public:
    SaidOfLines(const SurveyPlan& plan, const LinePlaces& places) : plan_(plan) {
        for (std::size_t i = 0; i < plan.lines.size(); ++i) {
            const PlannedLine& planned = plan.lines[i];
            if (!said_.try_emplace(places.of(planned.line, plan.path), i).second)
                throw Fault(file_name(plan.path) + " names line " + planned.line + " twice");
        }
        for (const std::string& name : plan.left_out) left_out_.insert(places.of(name, plan.path));
    }

    bool left_out(std::size_t line) const { return left_out_.contains(line); }
    LineToDo to_do(std::size_t line, const std::string& name) const {
        const auto found = said_.find(line);
        if (found != said_.end()) return {plan_.lines[found->second], line};
        return {{.name = folder_name_of_line(name), .line = name, .workspace = "", .options = plan_.options},
                line};
    }

  private:
    const SurveyPlan& plan_;
    std::unordered_map<std::size_t, std::size_t> said_;
    std::unordered_set<std::size_t> left_out_;
};

void refuse_one_place(const SurveyPlan& plan, const std::vector<LineToDo>& lines) {
    std::unordered_map<std::string, const LineToDo*> places;
    for (const LineToDo& line : lines) {
        const auto [there, is_new] = places.try_emplace(lower_case(line.planned.name), &line);
        if (is_new) continue;
        throw Fault(file_name(plan.path) + ": lines " + there->second->planned.line + " and " +
                    line.planned.line + " would be written to one folder, " + line.planned.name +
                    ": give one of them another name ([[line]] with line and name)");
    }
}

}  // namespace

std::vector<LineToDo> lines_to_do(const SurveyPlan& plan, const intake::SurveyIndex& index) {
    const LinePlaces places(index);
    const SaidOfLines said(plan, places);
    std::vector<LineToDo> lines;
    if (plan.all_lines) {
        for (std::size_t i = 0; i < index.lines.size(); ++i)
            if (!said.left_out(i)) lines.push_back(said.to_do(i, index.lines[i].name));
        if (lines.empty()) throw Fault(file_name(plan.path) + " leaves all lines out");
    } else {
        for (const PlannedLine& planned : plan.lines)
            lines.push_back({planned, places.of(planned.line, plan.path)});
    }
    refuse_one_place(plan, lines);
    return lines;
}

std::vector<LineToDo> lines_to_do(const SurveyPlan& plan) {
    std::vector<LineToDo> lines;
    for (const PlannedLine& planned : plan.lines) lines.push_back({planned, 0});
    return lines;
}

}  // namespace anomalis::survey
