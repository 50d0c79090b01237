#pragma once

#include <optional>
#include <string>

#include "show/section_thumbnail.h"

namespace anomalis::survey {

/// The section of a workspace at a glance, `aspect` height over width. It is read and its data are loaded;
/// nothing is calculated, asked or told. No value for one that has no line.
std::optional<show::SectionThumbnail> line_thumbnail(const std::string& workspace, double aspect);

}  // namespace anomalis::survey
