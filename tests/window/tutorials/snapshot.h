#pragma once

#include <QImage>
#include <QString>
#include <QWidget>

namespace anomalis::tutorials {

/// What becomes of a picture of a tutorial.
enum class Pictures {
    look,     ///< it must be there, and of the size that the window gives now
    compare,  ///< and be the same picture
    write     ///< it is made anew
};

/// The window, or a part of it by its object name, as it stands; the folder of the walk, which has another
/// name every time, is shown as "~".
QImage picture_of(QWidget& place, const QString& part, const QString& folder);

/// Compares or writes; says what is wrong, "" for nothing.
QString handle_picture(const QImage& picture, const QString& path, Pictures what);

}  // namespace anomalis::tutorials
