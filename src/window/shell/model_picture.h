#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace anomalis {
class Prompts;
class Session;
}  // namespace anomalis
namespace anomalis::intake {
struct SurveyIndex;
}  // namespace anomalis::intake

namespace anomalis::window {

/// Draws the model page of a loaded session into a file: png, svg, pdf or emf by its ending. Size in pixels,
/// 16 to 16384 a side; `view` is a name of `page_views`. Needs a QGuiApplication.
/// Returns 0, or -1 after a failure, which was shown; an old file then stays.
int write_model_picture(Session& session, const std::string& path, const std::string& view, int width,
                        int height);

/// Draws the map of a survey into a file likewise, with one line on top or none.
int write_survey_map(Prompts& prompts, const intake::SurveyIndex& index, std::optional<std::size_t> line,
                     const std::string& path, int width, int height);

}  // namespace anomalis::window
