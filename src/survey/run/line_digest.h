#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "survey/plan/plan.h"

// What a result hangs on, as a digest: where it stays the same, the line need not be done again.
namespace anomalis::survey {

/// All that options say, as a text.
std::string options_text(const LineOptions& options);
/// All that an import is told, as a text.
std::string choices_text(const SurveySource& source);

/// 16 hexadecimal digits of texts, one after the other, each apart from the next.
std::string digest_of_texts(const std::vector<std::string_view>& texts);

/// Of all that a plan says of these lines, with the version of the program.
std::string plan_digest(const SurveyPlan& plan, const std::vector<LineToDo>& lines);

}  // namespace anomalis::survey
