#include "window/import/column_menu.h"

#include <algorithm>

#include <QActionGroup>
#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QTimer>
#include <QWidgetAction>

#include "flow/import_desk.h"
#include "flow/import_words.h"
#include "window/widgets/panel.h"
#include "window/widgets/plain_text.h"

namespace anomalis::window {

namespace {

constexpr int least_null_width = 190, most_null_width = 420, box_frame = 16;  // pixels

QString words(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

ColumnMenu::ColumnMenu(flow::ImportDesk& desk, std::size_t column, QWidget* parent)
    : QMenu(parent), desk_(desk), column_(column) {
    setObjectName("Menu_import_column");
    setAttribute(Qt::WA_DeleteOnClose);
    add_roles();
    add_units();
    add_nulls();
}

/// What is chosen changes the table that the menu stands on: it is done when the menu is gone.
void ColumnMenu::add_roles() {
    auto* group = new QActionGroup(this);
    const intake::Role own = desk_.layout()->columns[column_].role;
    for (const intake::Role role : intake::all_roles) {
        QAction* action = addAction(role == intake::Role::none ? tr("Not used") : words(role_title(role)));
        action->setObjectName("role_" + words(role_name(role)));
        action->setCheckable(true);
        action->setChecked(role == own);
        group->addAction(action);
        connect(action, &QAction::triggered, this, [&desk = desk_, column = column_, role] {
            QTimer::singleShot(0, qApp, [&desk, column, role] { desk.choose_role(column, role); });
        });
        if (role == intake::Role::none) addSeparator();
    }
}

void ColumnMenu::add_units() {
    const intake::SurveyColumn& own = desk_.layout()->columns[column_];
    const std::vector<intake::Unit> units = intake::units_of_role(own.role);
    if (units.empty()) return;
    addSeparator();
    QMenu* menu = addMenu(tr("Unit"));
    menu->setObjectName("Menu_import_unit");
    auto* group = new QActionGroup(menu);
    for (const intake::Unit unit : units) {
        QAction* action = menu->addAction(words(unit_name(unit)));
        action->setCheckable(true);
        action->setChecked(unit == own.unit);
        group->addAction(action);
        connect(action, &QAction::triggered, this, [&desk = desk_, column = column_, unit] {
            QTimer::singleShot(0, qApp, [&desk, column, unit] { desk.choose_unit(column, unit); });
        });
    }
}

void ColumnMenu::add_nulls() {
    addSeparator();
    auto* box = new QLineEdit;
    name_control(*box, "Text_import_nulls", tr("Nulls"),
                 tr("Values of this column that stand for none, split by blanks, in the unit of the file"));
    box->setText(QString::fromStdString(flow::nulls_text(desk_.layout()->columns[column_].nulls)));
    // The usual nulls are seen whole; a longer list scrolls.
    box->setMinimumWidth(std::clamp(box->fontMetrics().horizontalAdvance(box->text()) + box_frame,
                                    least_null_width, most_null_width));
    box->setCursorPosition(0);
    box->setPlaceholderText(tr("-99999 -1e32"));
    auto* holder = new QWidget;
    auto* row = new QHBoxLayout(holder);
    row->setContentsMargins(24, 4, 12, 4);
    row->addWidget(make_caption(tr("Nulls"), box));
    row->addWidget(box, 1);
    auto* action = new QWidgetAction(this);
    action->setDefaultWidget(holder);
    addAction(action);
    connect(box, &QLineEdit::returnPressed, this, [this, box] {
        const std::string text = box->text().toStdString();
        close();
        QTimer::singleShot(0, qApp, [this, &desk = desk_, column = column_, text, self = QPointer(this)] {
            const std::string why = desk.choose_nulls(column, text);
            if (!why.empty() && self) emit refused(shown(why));
        });
    });
}

}  // namespace anomalis::window
