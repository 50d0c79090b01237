#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "chart/qt/picture.h"
#include "flow/model_figure.h"

namespace anomalis {
class Prompts;
class Session;
}  // namespace anomalis
namespace anomalis::intake {
struct SurveyIndex;
}  // namespace anomalis::intake
namespace anomalis::survey {
struct ResultsMapMarks;
struct SurveyResults;
}  // namespace anomalis::survey

namespace anomalis::window {

/// Draws the model page of a loaded session into a file: png, svg, pdf or emf by its ending. Size in pixels,
/// 16 to 16384 a side; `view` is a name of `page_views`. Needs a QGuiApplication.
/// Returns 0, or -1 after a failure, which was shown; an old file then stays.
int write_model_picture(Session& session, const std::string& path, const std::string& view, int width,
                        int height);

/// Draws the figure of a loaded session into a file likewise; a PDF has as many pages as its table of bodies
/// needs, a PNG 300 dots an inch.
int write_figure(Session& session, const std::string& path, flow::FigureChoice choice);

/// The sheets of a figure, each to be drawn on its own.
std::vector<chart::DrawPage> figure_pages(flow::ModelFigure& figure);

/// Measures text as every paper and picture does.
std::unique_ptr<chart::DrawingDevice> measuring_device(chart::SurfaceSize size);

/// Draws the map of a survey into a file likewise, with one line on top or none.
int write_survey_map(Prompts& prompts, const intake::SurveyIndex& index, std::optional<std::size_t> line,
                     const std::string& path, int width, int height);

/// Draws the map of a survey's results likewise.
int write_results_map(Prompts& prompts, const survey::SurveyResults& results,
                      const survey::ResultsMapMarks& marks, std::optional<std::size_t> line,
                      const std::string& path, int width, int height);

}  // namespace anomalis::window
