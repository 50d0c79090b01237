#pragma once

#include <QColor>
#include <QString>

#include "survey/desk/desk_rows.h"

class QPalette;

// How results of a survey are written and coloured on its page.
namespace anomalis::window {

QString status_words(survey::RowStatus status);
/// "no flag" for none.
QString flag_words(survey::LineFlag flag);
/// The mark of a flag beside its words: told apart by colour-blind eyes, on a light and a dark ground.
QColor flag_colour(survey::LineFlag flag);

/// As many digits as a map or a list needs: three, or all before the point.
QString number_words(double value);
/// "41 m"; "" for what nobody knows.
QString number_words(double value, const char* unit);
/// "41 (34 to 48) m"; a side that the data leave open is "?".
QString interval_words(const survey::IntervalValue& value, const char* unit);

/// The rms in its own unit.
QString rms_words(const survey::DeskRow& row);
/// "14 m", or "open".
QString interval_width_words(double width);

}  // namespace anomalis::window
