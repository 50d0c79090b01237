#pragma once

#include <string>

#include "chart/qt/picture.h"

namespace anomalis {

class Session;

/// What a picture of the model page is to show.
struct ModelPageOptions {
    bool plan = false;  ///< the plan in place of the section
    int width = 1600;   ///< pixels of 1/96 inch
    int height = 1000;
};

/// The page of the model as a picture: the curves of the channels there are over the section or the plan, as
/// the window shows them at its first zoom, with no body selected. The session holds a loaded line; its
/// numbers are brought up to date first. Throws when there is no line or the page cannot be drawn.
std::string model_page_bytes(Session& session, PictureFormat format, const ModelPageOptions& options);

}  // namespace anomalis
