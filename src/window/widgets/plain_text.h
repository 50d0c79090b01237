#pragma once

#include <string>

#include <QFontMetrics>
#include <QString>

// Names and paths on labels, in tips and captions: data, never instructions.
namespace anomalis::window {

/// A name, a path or a message on one line, control characters escaped.
QString shown(const std::string& text);

/// A tip that is shown letter by letter: a name such as "<b>" would be taken for markup.
QString plain_tip(const QString& text);

/// As many whole words as `room` pixels hold, an ellipsis behind them: a number is shown or left out.
QString elided_at_word(const QFontMetrics& metrics, const QString& text, int room);

/// A caption of the window; "[*]" stands for a mark of its own there.
QString window_caption(const std::string& text);

}  // namespace anomalis::window
