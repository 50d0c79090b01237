#include "survey/plan/dry_run.h"

#include "survey/cluster/shards.h"
#include "survey/run/folder_claim.h"
#include "survey/run/line_store.h"
#include "survey/run/survey_input.h"

namespace anomalis::survey {

namespace {

std::string counted(int count, const std::string& one) {
    return std::to_string(count) + " " + one + (count == 1 ? "" : "s");
}

std::string find_words(const FindStep& find) {
    if (find.bodies) return "find (" + counted(*find.bodies, "body") + ")";
    return find.most ? "find (at most " + std::to_string(*find.most) + ")" : "find";
}

LineState state_of(const std::string& folder, const SurveyPlan& plan, const SurveyInput& input,
                   const LineToDo& line) {
    const std::optional<LineResult> kept = kept_line(folder, line.planned.name);
    if (!kept) return LineState::missing;
    if (kept->digest != line_digest(plan, input, line)) return LineState::changed;
    return kept->status == LineStatus::failed ? LineState::failed : LineState::kept;
}

}  // namespace

std::string steps_text(const LineOptions& options, bool imported) {
    std::string text;
    const auto add = [&](const std::string& step) { text += (text.empty() ? "" : ", ") + step; };
    if (options.find) add(find_words(*options.find));
    if (options.invert) add("invert");
    if (options.uncertainty) add("uncertainty (" + counted(options.uncertainty->samples, "model") + ")");
    if (!options.exports.empty())
        add("export (" + counted(static_cast<int>(options.exports.size()), "file") + ")");
    if (options.render) add("render (" + options.render->format + ")");
    if (text.empty()) return imported ? "import" : "read";
    return text;
}

void list_planned_work(const SurveyPlan& plan, const RunOptions& options,
                       const std::function<void(const PlannedWork&)>& take) {
    const SurveyInput input = open_input(plan);
    refuse_other_survey(options.folder, identity_of(plan, input));
    for (std::size_t i = 0; i < input.lines.size(); ++i) {
        if (!in_shard(i, options.shard)) continue;
        PlannedWork work{.line = &input.lines[i],
                         .state = state_of(options.folder, plan, input, input.lines[i])};
        work.to_do = work.state == LineState::missing || work.state == LineState::changed ||
                     (work.state == LineState::failed && options.again_failed);
        take(work);
    }
}

}  // namespace anomalis::survey
