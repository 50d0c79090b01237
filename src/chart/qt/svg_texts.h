#pragma once

#include <string>

namespace anomalis::chart {

/// An SVG document as Qt writes it, with texts that keep the width that was reserved for them: a reader whose
/// font is another one sets them narrower or wider to fit, and takes a font without serifs when it lacks the
/// one that is named.
std::string with_held_texts(const std::string& svg);

}  // namespace anomalis::chart
