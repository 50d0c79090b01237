#pragma once

#include <span>
#include <vector>

#include "window/help/guide_book.h"

namespace anomalis::window {

/// A page on which something was found.
struct GuideFind {
    QUrl page;
    QString title;
    QString around;  ///< the words about its first place, cut at words
    QString marked;  ///< what to mark on the page: the text that was asked for, or its first word
};

/// The pages that hold a text, whatever its case; where none holds it as it stands, those that hold all its
/// words. Pages with it in their title come first, then those that speak most of it.
std::vector<GuideFind> search_guide(std::span<const GuideText> texts, const QString& asked);

}  // namespace anomalis::window
