#pragma once

#include <vector>

#include "chart/drawing_types.h"

namespace anomalis {
struct Workspace;
}  // namespace anomalis

namespace anomalis::show {

/// A point of a thumbnail: 0 to 1 from left to right, 0 to 1 from top to bottom. What leaves the picture is
/// outside.
struct ThumbnailPoint {
    double x = 0;
    double y = 0;
};

/// The section of a model at a glance: ground and bodies, without axes.
struct SectionThumbnail {
    struct Shape {
        std::vector<ThumbnailPoint> outline;  ///< closed, its last point equal to the first
        chart::Colour fill = chart::white;
    };
    std::vector<ThumbnailPoint> ground;  ///< from left to right
    std::vector<Shape> shapes;           ///< in the order of the bodies
};

/// The stations of the fit from side to side, one metre as long in depth as along the line where that shows
/// every top; `aspect` is height over width of the picture. Bodies without a section are left out. The
/// elevations of a loaded line are up to date.
SectionThumbnail section_thumbnail(const Workspace& workspace, double aspect);

}  // namespace anomalis::show
