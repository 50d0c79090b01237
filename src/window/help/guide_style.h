#pragma once

#include <QPalette>
#include <QString>

namespace anomalis::window {

/// How pages of the guide look in the viewer, in the colours of the window: what a text document of Qt knows
/// of style sheets is less than what a browser does.
QString guide_style(const QPalette& palette);

/// A page that says something in place of one of the guide.
QString guide_notice(const QString& title, const QString& words);

}  // namespace anomalis::window
