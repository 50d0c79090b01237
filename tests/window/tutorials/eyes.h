#pragma once

#include <QStringList>
#include <QWidget>

class QTableView;

// What a person sees of the window.
namespace anomalis::tutorials {

/// Where a person looks and works: the modal form that is open, or the one in front, or the window itself.
QWidget& place_of_work(QWidget& form);
/// That, and behind it what can still be seen and worked on.
QList<QWidget*> places(QWidget& form);

/// The text of a menu entry or a button as it is read: without marks of keys and the dots of what asks.
QString plain(QString text);

/// What each box, label, button, row of a table and title of a place says.
QStringList texts_of(QWidget& place);
/// What stands behind a caption: in a box, a row of the grid of the body, a row of a table; none is null.
QString value_of(QWidget& place, const QString& caption);

/// The row of the grid of the body with a caption, -1 for none; and its value as it is read: "285.1 ±2.5 m".
int grid_row(const QTableView& grid, const QString& caption);
QString grid_value(const QTableView& grid, int row);

}  // namespace anomalis::tutorials
