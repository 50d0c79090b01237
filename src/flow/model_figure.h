#pragma once

#include <memory>
#include <string>
#include <vector>

#include "flow/model_page.h"
#include "show/figure_page.h"

namespace anomalis::flow {

/// What a figure is to hold.
struct FigureChoice {
    chart::SurfaceSize size;                 ///< of the sheet, surface units
    std::string title = {};                  ///< "": the name of the model or of the line
    std::optional<ShownView> as_shown = {};  ///< charts, zoom and plan; else the whole line with its section
    bool further_sheets = false;             ///< a long table of bodies may go on
};

/// The whole model on paper: the charts, and what a reader must know of line, field, model and fit.
class ModelFigure {
  public:
    /// Brings the model of a loaded session up to date and lays the sheets out. Raises Fault without a line
    /// and for a sheet too small.
    ModelFigure(Session& session, const FigureChoice& choice, const ModelPage::MakeSurface& make_surface);

    chart::SurfaceSize size() const { return size_; }
    const std::vector<show::FigureSheet>& sheets() const { return sheets_; }
    /// Draws one sheet, counted from 0, by the mapping of the whole sheet.
    void draw(std::size_t sheet, chart::DrawingDevice& device, chart::OutputTarget kind,
              const chart::SurfaceMapping& whole);

  private:
    chart::SurfaceSize size_;
    std::vector<show::FigureSheet> sheets_;
    std::unique_ptr<ModelPage> charts_;
};

}  // namespace anomalis::flow
