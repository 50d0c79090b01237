#include "window/shell/form_keyboard_shortcuts.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "window/shell/shortcut_list.h"

namespace anomalis::window {

namespace {

constexpr int margin = 18, column_gap = 32, group_gap = 14, line_gap = 5;  // pixels
constexpr int most_columns = 3;

QWidget* make_group(const ShortcutGroup& group) {
    auto* holder = new QWidget;
    auto* grid = new QGridLayout(holder);
    grid->setContentsMargins(0, 0, 0, group_gap);
    grid->setHorizontalSpacing(margin);
    grid->setVerticalSpacing(line_gap);
    auto* heading = new QLabel(group.heading);
    heading->setProperty("heading", true);
    grid->addWidget(heading, 0, 0, 1, 2);
    int row = 1;
    for (const ShortcutLine& line : group.lines) {
        auto* keys = new QLabel(line.keys);
        auto* words = new QLabel(line.words);
        grid->addWidget(keys, row, 0);
        grid->addWidget(words, row++, 1);
    }
    grid->setColumnMinimumWidth(0, heading->fontMetrics().horizontalAdvance("Ctrl+Shift+Tab"));
    grid->setColumnStretch(1, 1);
    return holder;
}

qsizetype line_count(const QList<ShortcutGroup>& groups) {
    qsizetype count = 0;
    for (const ShortcutGroup& group : groups) count += group.lines.size() + 2;
    return count;
}

}  // namespace

Form_keyboard_shortcuts::Form_keyboard_shortcuts(QWidget* parent) : QDialog(parent) {
    setObjectName("Form_keyboard_shortcuts");
    setWindowTitle(tr("Keyboard shortcuts"));
    const QList<ShortcutGroup> groups = shortcut_groups();
    auto* columns = new QHBoxLayout;
    columns->setSpacing(column_gap);
    QVBoxLayout* column = nullptr;
    const qsizetype share = (line_count(groups) + most_columns - 1) / most_columns;
    qsizetype lines = 0;
    for (const ShortcutGroup& group : groups) {
        if (!column || (columns->count() < most_columns && lines >= share * columns->count())) {
            column = new QVBoxLayout;
            column->setSpacing(0);
            columns->addLayout(column);
        }
        column->addWidget(make_group(group));
        lines += group.lines.size() + 2;
    }
    for (int i = 0; i < columns->count(); ++i)
        if (auto* each = qobject_cast<QVBoxLayout*>(columns->itemAt(i)->layout())) each->addStretch(1);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    buttons->button(QDialogButtonBox::Close)->setToolTip(tr("Back to the window"));
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* page = new QVBoxLayout(this);
    page->setContentsMargins(margin, margin, margin, margin);
    page->addLayout(columns, 1);
    page->addWidget(buttons);
}

}  // namespace anomalis::window
