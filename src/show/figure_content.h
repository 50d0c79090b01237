#pragma once

#include <string>

#include "show/figure_page.h"

namespace anomalis {
struct Workspace;
}  // namespace anomalis

namespace anomalis::show {

/// Surface units a metre on the sheet; 0 where there is no such chart.
struct FigureScale {
    double along = 0;  ///< the profile
    double down = 0;   ///< the section
    double plan = 0;
};

/// What a figure says of line, field, formulas, misfit, fit and bodies, of a model that is up to date. A
/// blank title is the name of the model or of the line. Names from files are made safe to show.
FigureContent figure_content(const Workspace& workspace, const FigureScale& scale, const std::string& title,
                             const std::string& date);

}  // namespace anomalis::show
