#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace anomalis {
class Session;
class Prompts;
}  // namespace anomalis
namespace anomalis::intake {
struct SurveyIndex;
}  // namespace anomalis::intake
namespace anomalis::survey {
struct ResultsMapMarks;
struct SurveyResults;
}  // namespace anomalis::survey

namespace anomalis::batch {

/// What `render` is asked for.
struct PictureRequest {
    std::string path;              ///< the ending chooses the format: png, svg, pdf, emf
    std::string view = "section";  ///< a name of `page_views`
    int width = 1600;              ///< pixels
    int height = 1000;
    /// The view "page": a sheet of paper in place of so many pixels.
    std::string paper = "a4";  ///< a name of `show::paper_names`
    bool landscape = false;
    std::string title;  ///< "": the name of the model
};
inline constexpr const char* page_view = "page";

/// What `map` is asked for.
struct MapRequest {
    std::string path;  ///< the ending chooses the format: png, svg, pdf, emf
    int width = 1600;  ///< pixels
    int height = 1000;
    std::optional<std::size_t> line;  ///< that is drawn on top
};

/// Draws what the window shows. The batch tool itself knows no window system; its main program hands it one.
class PictureWriter {
  public:
    virtual ~PictureWriter() = default;
    /// Starts what draws on the thread of the caller, who may then draw on any, one picture at a time. Else
    /// the first picture does it. Raises Fault.
    virtual void prepare() {}
    /// Draws a loaded and calculated session. Returns 0, or -1 after a failure, which was shown.
    virtual int write(Session& session, const PictureRequest& request) = 0;
    /// Draws the map of a survey. Returns 0, or -1 after a failure, which was shown.
    virtual int write_map(Prompts& prompts, const intake::SurveyIndex& index, const MapRequest& request) = 0;
    /// Draws the map of its results, with what is to be marked on it, likewise.
    virtual int write_results_map(Prompts& prompts, const survey::SurveyResults& results,
                                  const survey::ResultsMapMarks& marks, const MapRequest& request) = 0;
};

}  // namespace anomalis::batch
