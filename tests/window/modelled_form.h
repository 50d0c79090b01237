#pragma once

#include <QTableView>
#include <QToolButton>

#include "edit/body_grid.h"
#include "window/form_sample.h"

namespace anomalis::window {

/// A model of two sheets on show, body 1 the current one.
struct Modelled : FormSample {
    Modelled() {
        form->resize(1280, 800);
        form->open_file(write_workspace(folder));
        form->load_locations();
        choose_tab(1);
        QTest::qWait(30);
    }
    Workspace& workspace() { return session.workspace; }
    ModelBody& body(int number) { return workspace().body(number); }
    int current() { return form->workbench().view.current_body; }

    QTableView& grid() { return find<QTableView>("Grid_body"); }
    QModelIndex cell(int row, int column) { return grid().model()->index(row - 1, column); }
    QString shown(int row, int column) { return cell(row, column).data().toString(); }
    void click_cell(int row, int column) {
        QTest::mouseClick(grid().viewport(), Qt::LeftButton, {},
                          grid().visualRect(cell(row, column)).center());
    }
    QLineEdit* editor() { return qobject_cast<QLineEdit*>(grid().indexWidget(grid().currentIndex())); }
    /// Clicks a cell and keys a text over it, Enter at the end.
    void key(int row, int column, const QString& text) {
        click_cell(row, column);
        if (!editor()) throw std::runtime_error("no editor");
        editor()->selectAll();
        QTest::keyClicks(editor(), text);
        QTest::keyClick(editor(), Qt::Key_Return);
        QTest::qWait(1);
    }
    void trigger(const char* name) { find<QAction>(name).trigger(); }
    QToolButton& half(const char* bar, int which) {
        return *find<QWidget>(bar).findChildren<QToolButton*>().at(which);
    }
    TempFolder folder;
};

}  // namespace anomalis::window
