#include "window/tutorials/eyes.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QSpinBox>
#include <QTableView>

#include "edit/body_grid.h"
#include "window/widgets/body_grid_model.h"
#include "window/widgets/model_card.h"

namespace anomalis::tutorials {

namespace {

QString row_text(const QTableView& table, int row, int from = 0) {
    QStringList cells;
    for (int column = from; column < table.model()->columnCount(); ++column)
        cells << table.model()->index(row, column).data().toString();
    return cells.join("  ");
}

bool is_grid(const QTableView& table) {
    return table.objectName() == "Grid_body";
}

QStringList rows_of(const QTableView& table) {
    QStringList rows;
    for (int row = 0; row < table.model()->rowCount(); ++row)
        rows << row_text(table, row) + (is_grid(table) ? " " + grid_value(table, row) : QString());
    return rows;
}

QStringList entries_of(const QListWidget& list) {
    QStringList entries;
    for (int i = 0; i < list.count(); ++i) entries << list.item(i)->text();
    if (const auto* cards = qobject_cast<const window::ModelCards*>(&list))
        for (int i = 0; i < cards->count(); ++i)
            entries << cards->card(i).kind + "  " + cards->card(i).numbers;
    return entries;
}

/// What a control says for itself.
QString text_of(const QWidget& widget) {
    if (const auto* box = qobject_cast<const QLineEdit*>(&widget))
        return box->text().isEmpty() ? box->placeholderText() : box->text();
    if (const auto* label = qobject_cast<const QLabel*>(&widget)) return label->text();
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) return plain(button->text());
    if (const auto* list = qobject_cast<const QComboBox*>(&widget)) return list->currentText();
    if (const auto* number = qobject_cast<const QSpinBox*>(&widget)) return number->text();
    return {};
}

}  // namespace

QWidget& place_of_work(QWidget& form) {
    return *places(form).constFirst();
}

QList<QWidget*> places(QWidget& form) {
    if (QWidget* modal = QApplication::activeModalWidget()) return {modal};
    QList<QWidget*> all;
    if (auto* front = qobject_cast<QDialog*>(QApplication::activeWindow()); front && front->isVisible())
        all << front;
    for (QDialog* dialog : form.findChildren<QDialog*>())
        if (dialog->isVisible() && !all.contains(dialog)) all << dialog;
    return all << &form;
}

QString plain(QString text) {
    const bool asks = text.endsWith("...");
    text.replace("&&", "\x01").remove('&').replace("\x01", "&");
    return asks ? text.chopped(3) : text;
}

QStringList texts_of(QWidget& place) {
    QStringList all{place.windowTitle()};
    for (const QWidget* widget : place.findChildren<QWidget*>()) {
        if (!widget->isVisible() || widget->window() != place.window()) continue;
        if (const auto* table = qobject_cast<const QTableView*>(widget))
            all << rows_of(*table);
        else if (const auto* list = qobject_cast<const QListWidget*>(widget))
            all << entries_of(*list);
        else
            all << text_of(*widget);
    }
    all.removeAll(QString());
    return all;
}

int grid_row(const QTableView& grid, const QString& caption) {
    for (int row = 0; row < grid.model()->rowCount(); ++row)
        if (grid.model()->index(row, edit::grid_property).data().toString() == caption) return row;
    return -1;
}

QString grid_value(const QTableView& grid, int row) {
    const QModelIndex cell = grid.model()->index(row, edit::grid_value);
    QStringList parts{cell.data().toString()};
    for (const int role : {window::BodyGridModel::error_role, window::BodyGridModel::unit_role})
        parts << cell.data(role).toString();
    parts.removeAll(QString());
    return parts.join(' ');
}

QString value_of(QWidget& place, const QString& caption) {
    for (const QWidget* widget : place.findChildren<QWidget*>()) {
        if (!widget->isVisible() || widget->window() != place.window()) continue;
        if (widget->accessibleName() == caption && !text_of(*widget).isNull()) return text_of(*widget);
        const auto* table = qobject_cast<const QTableView*>(widget);
        if (!table) continue;
        if (is_grid(*table)) {
            if (const int row = grid_row(*table, caption); row >= 0) return grid_value(*table, row);
            continue;
        }
        for (int row = 0; row < table->model()->rowCount(); ++row)
            if (table->model()->index(row, 0).data().toString() == caption) return row_text(*table, row, 1);
    }
    return {};
}

}  // namespace anomalis::tutorials
