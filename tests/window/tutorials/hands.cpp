#include "window/tutorials/hands.h"

#include <stdexcept>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QCompleter>
#include <QHeaderView>
#include <QKeySequence>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QScrollArea>
#include <QSpinBox>
#include <QTabBar>
#include <QTableView>
#include <QTableWidget>

#include "edit/body_grid.h"
#include "window/tutorials/eyes.h"

namespace anomalis::tutorials {

namespace {

[[noreturn]] void missing(const QString& kind, const QString& name, const QStringList& there) {
    throw std::runtime_error(QString("there is no %1 \"%2\" to work with; there are: %3")
                                 .arg(kind, name, there.join(" | "))
                                 .toStdString());
}

QString caption_of(const QWidget& widget) {
    const auto* button = qobject_cast<const QAbstractButton*>(&widget);
    return button ? plain(button->text()) : widget.accessibleName();
}

bool usable(const QWidget& widget, const QWidget& place) {
    return widget.isVisible() && widget.isEnabled() && widget.window() == place.window();
}

/// The control with a caption, in front or behind.
template <class Widget>
Widget* find_control(QWidget& form, const QString& caption, QStringList& there) {
    for (QWidget* place : places(form))
        for (Widget* widget : place->findChildren<Widget*>()) {
            if (!usable(*widget, *place)) continue;
            if (caption_of(*widget) == caption || widget->accessibleName() == caption) return widget;
            if (!caption_of(*widget).isEmpty()) there << caption_of(*widget);
        }
    return nullptr;
}

void bring_into_view(QWidget& widget) {
    for (QWidget* above = widget.parentWidget(); above; above = above->parentWidget())
        if (auto* area = qobject_cast<QScrollArea*>(above)) area->ensureWidgetVisible(&widget);
}

void press_entry(QWidget& form, const QString& name) {
    const auto* window = qobject_cast<QMainWindow*>(&form);
    const QList<QAction*> bar = window->menuBar()->actions();
    const QList<QAction*>* level = &bar;
    QList<QAction*> inner;
    QAction* found = nullptr;
    for (const QString& part : name.split(", ")) {
        QStringList there;
        found = nullptr;
        for (QAction* action : *level) {
            if (!action->isVisible() || action->isSeparator()) continue;
            there << plain(action->text());
            if (there.constLast() == plain(part)) found = action;
        }
        if (!found) missing("menu entry", part, there);
        if (!found->menu()) break;
        emit found->menu()->aboutToShow();
        inner = found->menu()->actions();
        level = &inner;
    }
    if (!found->isEnabled()) throw std::runtime_error("the entry " + name.toStdString() + " is grey");
    found->trigger();
}

bool press_tab(QWidget& form, const QString& name) {
    for (QWidget* place : places(form))
        for (QTabBar* bar : place->findChildren<QTabBar*>())
            for (int i = 0; i < bar->count(); ++i)
                if (bar->isVisible() && plain(bar->tabText(i)).simplified() == name) {
                    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(i).center());
                    return true;
                }
    return false;
}

bool press_row_of(QAbstractItemView& view, const QString& name) {
    for (int row = 0; row < view.model()->rowCount(); ++row) {
        const QModelIndex cell = view.model()->index(row, 0);
        if (cell.data().toString() != name) continue;
        view.scrollTo(cell);
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(cell).center());
        return true;
    }
    return false;
}

/// An entry of a list or a table.
bool press_row(QWidget& form, const QString& name) {
    for (QWidget* place : places(form))
        for (auto* view : place->findChildren<QAbstractItemView*>())
            if (view->isVisible() && view->model() && view->objectName() != "Grid_body" &&
                press_row_of(*view, name))
                return true;
    return false;
}

/// An entry of the menu that has popped up.
bool press_popped(const QString& name) {
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (!menu) return false;
    for (QAction* action : menu->actions()) {
        if (plain(action->text()) != name || !action->isEnabled()) continue;
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
        return true;
    }
    return false;
}

QTableView& grid_of(window::FormSample& sample) {
    return sample.find<QTableView>("Grid_body");
}

bool key_into_grid(window::FormSample& sample, const QString& caption, const QString& text) {
    QTableView& grid = grid_of(sample);
    const QStringList heads{"Property", "Value", "Vary", "Min", "Max"};
    const QString head = caption.contains(", ") ? caption.section(", ", 1) : "Value";
    const int row = grid_row(grid, caption.section(", ", 0, 0));
    if (!grid.isVisible() || row < 0 || !heads.contains(head)) return false;
    const QModelIndex cell = grid.model()->index(row, static_cast<int>(heads.indexOf(head)));
    grid.scrollTo(cell);
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.visualRect(cell).center());
    auto* editor = qobject_cast<QLineEdit*>(grid.indexWidget(grid.currentIndex()));
    if (!editor) throw std::runtime_error("nothing can be keyed into " + caption.toStdString());
    editor->selectAll();
    QTest::keyClicks(editor, text);
    QTest::keyClick(editor, Qt::Key_Return);
    return true;
}

}  // namespace

void press(window::FormSample& sample, const QString& name) {
    QStringList there;
    if (press_popped(name)) return;
    if (name.contains(", ")) return press_entry(*sample.form, name);
    if (auto* button = find_control<QAbstractButton>(*sample.form, plain(name), there)) {
        bring_into_view(*button);
        return QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(10, button->height() / 2));
    }
    if (!press_tab(*sample.form, name) && !press_row(*sample.form, name))
        missing("button, tab or row", name, there);
}

void click_head(window::FormSample& sample, const QString& name) {
    for (QWidget* place : places(*sample.form))
        for (auto* table : place->findChildren<QTableWidget*>())
            for (int column = 0; table->isVisible() && column < table->columnCount(); ++column) {
                if (table->horizontalHeaderItem(column)->text().section('\n', 0, 0) != name) continue;
                QHeaderView* head = table->horizontalHeader();
                table->scrollToItem(table->item(0, column));
                return QTest::mouseClick(
                    head->viewport(), Qt::LeftButton, {},
                    QPoint(head->sectionViewportPosition(column) + 12, head->height() / 2));
            }
    throw std::runtime_error("no table has a column " + name.toStdString());
}

void press_key(window::FormSample& sample, const QString& name) {
    const QKeySequence keys(name);
    if (keys.count() != 1) throw std::runtime_error("there is no key " + name.toStdString());
    QWidget& place = place_of_work(*sample.form);
    place.activateWindow();
    if (!QTest::qWaitForWindowActive(&place)) throw std::runtime_error("the window does not take keys");
    QTest::keyClick(&place, keys[0].key(), keys[0].keyboardModifiers());
}

void key_in(window::FormSample& sample, const QString& caption, const QString& text) {
    QStringList there;
    if (auto* number = find_control<QSpinBox>(*sample.form, caption, there)) {
        number->setFocus();
        number->selectAll();
        QTest::keyClicks(number, text);
        return QTest::keyClick(number, Qt::Key_Tab);
    }
    if (auto* box = find_control<QLineEdit>(*sample.form, caption, there)) {
        bring_into_view(*box);
        box->setFocus();
        box->selectAll();
        QTest::keyClicks(box, text);
        if (box->completer()) box->completer()->popup()->hide();
        return QTest::keyClick(box, Qt::Key_Return);
    }
    if (!key_into_grid(sample, caption, text)) missing("box", caption, there);
}

void choose(window::FormSample& sample, const QString& caption, const QString& entry) {
    QStringList there;
    auto* list = find_control<QComboBox>(*sample.form, caption, there);
    if (!list) missing("list", caption, there);
    there.clear();
    for (int i = 0; i < list->count(); ++i) there << list->itemText(i);
    const auto wanted = there.indexOf(entry);
    if (wanted < 0) missing("entry in " + caption, entry, there);
    bring_into_view(*list);
    list->setFocus();
    // By keys, which the list takes as the person's choice.
    for (int turn = 0; list->currentIndex() != wanted && turn < list->count(); ++turn)
        QTest::keyClick(list, list->currentIndex() < wanted ? Qt::Key_Down : Qt::Key_Up);
    if (list->currentText() != entry) throw std::runtime_error(entry.toStdString() + " cannot be chosen");
}

void set_tick(window::FormSample& sample, const QString& caption, bool on) {
    QStringList there;
    if (auto* box = find_control<QCheckBox>(*sample.form, caption, there)) {
        bring_into_view(*box);
        if (box->isChecked() == on) throw std::runtime_error(caption.toStdString() + " stands so already");
        return QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
    }
    QTableView& grid = grid_of(sample);
    const int row = grid_row(grid, caption.section(", ", 0, 0));
    if (row < 0 || caption.section(", ", 1) != "Vary") missing("box to tick", caption, there);
    const QModelIndex cell = grid.model()->index(row, edit::grid_vary);
    if ((cell.data(Qt::CheckStateRole).toInt() == Qt::Checked) == on)
        throw std::runtime_error(caption.toStdString() + " stands so already");
    grid.scrollTo(cell);
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.visualRect(cell).center());
}

}  // namespace anomalis::tutorials
