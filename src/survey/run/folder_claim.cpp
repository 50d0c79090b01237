#include "survey/run/folder_claim.h"

#include <optional>

#include "core/failure.h"
#include "core/paths.h"
#include "core/safe_file.h"
#include "survey/run/line_digest.h"
#include "survey/run/line_store.h"
#include "survey/run/machine_failure.h"

namespace anomalis::survey {

SurveyInput open_input(const SurveyPlan& plan) {
    // A survey file that is not there is a matter of the plan.
    try {
        return open_survey(plan);
    } catch (const FileFault& failure) {
        if (!plan.source || file_exists(plan.source->file).empty()) throw;
        throw MachineFailure(failure.what());
    }
}

SurveyIdentity identity_of(const SurveyPlan& plan, const SurveyInput& input) {
    SurveyIdentity identity{.name = plan.name,
                            .source = plan.source ? file_name(plan.source->file) : "workspaces",
                            .plan_digest = plan_digest(plan, input.lines),
                            .lines = {}};
    for (const LineToDo& line : input.lines) identity.lines.push_back(line.planned.name);
    return identity;
}

void refuse_other_survey(const std::string& folder, const SurveyIdentity& own) {
    const std::optional<SurveyIdentity> there = read_survey_identity(folder);
    if (!there || (there->name == own.name && there->source == own.source)) return;
    throw Fault(folder + " holds the results of another survey, " + there->name + " (" + there->source +
                "), and this is " + own.name + " (" + own.source + "): name another folder");
}

void prepare_folder(const std::string& folder, const SurveyIdentity& identity) {
    prepare_lines(folder);
    const std::string text = survey_identity_json(identity), path = survey_file(folder);
    on_machine([&] {
        if (file_exists(path).empty() || read_whole_file(path) != text) write_file_safely(path, text);
    });
}

}  // namespace anomalis::survey
