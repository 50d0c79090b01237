#include "window/import/import_preview.h"

#include <algorithm>
#include <optional>

#include <QHeaderView>
#include <QScrollBar>

#include "flow/import_desk.h"
#include "flow/import_words.h"
#include "window/import/column_menu.h"
#include "window/shell/look.h"
#include "window/widgets/panel.h"
#include "window/widgets/plain_text.h"

namespace anomalis::window {

namespace {

constexpr int preview_row_height = 20;  // pixels
constexpr int least_column = 84, most_column = 160, room_beside = 8;

/// The tint of the head of the data file, where a role has one.
std::optional<int> tint_of(intake::Role role) {
    using intake::Role;
    switch (role) {
        case Role::easting:
        case Role::longitude:
            return 0;
        case Role::northing:
        case Role::latitude:
            return 1;
        case Role::sensor_height:
        case Role::clearance:
            return 2;
        case Role::terrain:
            return 3;
        case Role::mag:
            return 4;
        case Role::grav:
            return 5;
        default:
            return std::nullopt;
    }
}

QString joined(const std::vector<std::string>& lines) {
    QStringList all;
    for (const std::string& line : lines) all << shown(line);
    return all.join('\n');
}

}  // namespace

ImportPreview::ImportPreview(flow::ImportDesk& desk, QWidget* parent) : QTableWidget(parent), desk_(desk) {
    name_control(
        *this, "Table_import_preview", tr("First rows"),
        tr("The first rows of the file. A click on the head of a column chooses what it is, its unit "
           "and which values stand for none"));
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionMode(QAbstractItemView::NoSelection);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setShowGrid(false);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    verticalHeader()->setDefaultSectionSize(preview_row_height);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setSectionsClickable(true);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignTop);
    connect(horizontalHeader(), &QHeaderView::sectionClicked, this, &ImportPreview::open_menu);
}

void ImportPreview::show_layout() {
    if (desk_.layout())
        fill_columns();
    else
        fill_head();
}

void ImportPreview::fill_columns() {
    const auto& preview = desk_.preview();
    const int across = horizontalScrollBar()->value();
    clear();
    setColumnCount(static_cast<int>(desk_.layout()->columns.size()));
    setRowCount(static_cast<int>(preview.rows.size()));
    for (int column = 0; column < columnCount(); ++column) fill_column(column);
    QStringList numbers;
    for (const long line : preview.file_line) numbers << QString::number(line);
    setVerticalHeaderLabels(numbers);
    resizeColumnsToContents();
    for (int c = 0; c < columnCount(); ++c)
        setColumnWidth(c, std::clamp(columnWidth(c) + room_beside, least_column, most_column));
    horizontalScrollBar()->setValue(across);
}

void ImportPreview::fill_column(int number) {
    const auto at = static_cast<std::size_t>(number);
    const intake::SurveyColumn& column = desk_.layout()->columns[at];
    auto* head = new QTableWidgetItem(joined(flow::column_heading(column)));
    head->setToolTip(plain_tip(column.description.empty() ? tr("Click: role, unit and nulls of this column")
                                                          : shown(column.description)));
    const auto tint = tint_of(column.role);
    QFont bold = font();
    bold.setBold(column.role != intake::Role::none);
    head->setFont(bold);
    if (tint) head->setBackground(column_tint(palette(), *tint));
    head->setTextAlignment(Qt::AlignLeft | Qt::AlignTop);
    setHorizontalHeaderItem(number, head);
    const auto& rows = desk_.preview().rows;
    for (std::size_t r = 0; r < rows.size(); ++r) {
        if (at >= rows[r].size()) continue;
        auto* cell = new QTableWidgetItem(shown(rows[r][at]));
        cell->setTextAlignment(Qt::AlignVCenter | (column.text ? Qt::AlignLeft : Qt::AlignRight));
        if (tint)
            cell->setBackground(column_tint(palette(), *tint));
        else if (column.role == intake::Role::none)
            cell->setForeground(quiet_text(palette()));
        setItem(static_cast<int>(r), number, cell);
    }
}

/// A file that was not recognised, as it stands.
void ImportPreview::fill_head() {
    clear();
    setColumnCount(1);
    setRowCount(static_cast<int>(desk_.head().size()));
    setHorizontalHeaderItem(0, new QTableWidgetItem(tr("The file begins")));
    for (std::size_t r = 0; r < desk_.head().size(); ++r)
        setItem(static_cast<int>(r), 0, new QTableWidgetItem(shown(desk_.head()[r])));
    resizeColumnsToContents();
}

void ImportPreview::open_menu(int column) {
    if (!desk_.layout()) return;
    auto* menu = new ColumnMenu(desk_, static_cast<std::size_t>(column), this);
    connect(menu, &ColumnMenu::refused, this, &ImportPreview::refused);
    const QHeaderView* header = horizontalHeader();
    menu->popup(header->mapToGlobal(QPoint(header->sectionViewportPosition(column), header->height())));
}

}  // namespace anomalis::window
