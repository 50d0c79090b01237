#include "window/survey/survey_list.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>

#include "survey/desk/survey_desk.h"
#include "window/shell/look.h"
#include "window/survey/survey_words.h"
#include "window/widgets/panel.h"
#include "window/widgets/plain_text.h"

namespace anomalis::window {

namespace {

using survey::DeskColumn;

constexpr int row_height = 22;  // pixels
constexpr int dot = 9;          // of a flag

struct ColumnWords {
    const char* head;
    const char* tip;
    int width;  ///< pixels
};

constexpr std::array<ColumnWords, SurveyRows::columns> column_words{{
    {"Line", "The name of the line in the plan", 84},
    {"Status", "Done, failed, not done yet, or a result that cannot be read", 64},
    {"Bodies", "How many bodies the model has", 58},
    {"rms", "What the model leaves of the readings: root of the mean square, in nT or mGal", 72},
    {"Depth",
     "Below the ground to the top of the shallowest body, m; * below the sensor, where the ground is not "
     "known",
     64},
    {"Interval", "Width of the 90 % interval of that depth, m; open where the data do not bound it", 70},
    {"Criterion", "Information criterion of the model: of one line, the lower of two models is the better",
     76},
    {"  Flag", "What a person thinks of the line, with the note", 92},
}};

bool is_number(int column) {
    return column >= static_cast<int>(DeskColumn::bodies) &&
           column <= static_cast<int>(DeskColumn::criterion);
}

QString cell_text(const survey::DeskRow& row, DeskColumn column) {
    switch (column) {
        case DeskColumn::line:
            return shown(row.line);
        case DeskColumn::status:
            return status_words(row.status);
        case DeskColumn::bodies:
            return row.status == survey::RowStatus::done ? QString::number(row.bodies) : QString();
        case DeskColumn::rms:
            return rms_words(row);
        case DeskColumn::depth:
            return number_words(row.least_depth, "m") + (row.below_sensor ? "*" : "");
        case DeskColumn::depth_interval:
            return interval_width_words(row.depth_interval);
        case DeskColumn::criterion:
            return std::isnan(row.criterion) ? QString() : QString::number(row.criterion, 'f', 1);
        case DeskColumn::flag:
            break;
    }
    const QString flag = row.mark.flag == survey::LineFlag::none ? QString() : flag_words(row.mark.flag);
    if (row.mark.note.empty()) return flag;
    return flag.isEmpty() ? shown(row.mark.note) : flag + ": " + shown(row.mark.note);
}

QPixmap flag_dot(survey::LineFlag flag) {
    QPixmap picture(2 * dot, 2 * dot);  // sharp at double density too
    picture.setDevicePixelRatio(2);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(flag_colour(flag));
    painter.drawEllipse(0, 0, dot, dot);
    return picture;
}

}  // namespace

SurveyRows::SurveyRows(const survey::SurveyDesk& desk, QObject* parent)
    : QAbstractTableModel(parent), desk_(desk) {}

void SurveyRows::show_rows() {
    beginResetModel();
    shown_ = static_cast<int>(desk_.rows().size());
    endResetModel();
}

const survey::DeskRow& SurveyRows::row(int at) const {
    return desk_.rows().at(static_cast<std::size_t>(at));
}

int SurveyRows::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : shown_;
}

int SurveyRows::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columns;
}

QVariant SurveyRows::data(const QModelIndex& at, int role) const {
    if (!at.isValid()) return {};
    const survey::DeskRow& row = this->row(at.row());
    const auto column = static_cast<DeskColumn>(at.column());
    switch (role) {
        case Qt::DisplayRole:
            return cell_text(row, column);
        case Qt::TextAlignmentRole:
            return QVariant(Qt::AlignVCenter | (is_number(at.column()) ? Qt::AlignRight : Qt::AlignLeft));
        case Qt::DecorationRole:
            if (column == DeskColumn::flag && row.mark.flag != survey::LineFlag::none)
                return flag_dot(row.mark.flag);
            return {};
        case Qt::ToolTipRole:
            if (column == DeskColumn::flag && !row.mark.note.empty())
                return plain_tip(cell_text(row, column));
            return row.message.empty() ? QVariant() : plain_tip(shown(row.message));
        default:
            return {};
    }
}

QVariant SurveyRows::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal) return {};
    const ColumnWords& words = column_words.at(static_cast<std::size_t>(section));
    if (role == Qt::DisplayRole) return tr(words.head);
    if (role == Qt::ToolTipRole) return tr(words.tip);
    if (role == Qt::TextAlignmentRole)
        return QVariant(Qt::AlignVCenter | (is_number(section) ? Qt::AlignRight : Qt::AlignLeft));
    return {};
}

SurveyList::SurveyList(const survey::SurveyDesk& desk, QWidget* parent)
    : QTableView(parent), desk_(desk), model_(new SurveyRows(desk, this)) {
    name_control(
        *this, "Table_survey_lines", tr("Lines of the survey"),
        tr("The lines of the survey. A click on a heading sorts, a third one takes the order of the plan; "
           "Enter or a double click opens the line in the workbench"));
    setModel(model_);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setShowGrid(false);
    setAlternatingRowColors(true);
    setWordWrap(false);
    setTabKeyNavigation(false);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(row_height);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setStretchLastSection(true);
    horizontalHeader()->setSortIndicatorClearable(true);
    horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    setSortingEnabled(true);
    for (int column = 0; column < SurveyRows::columns; ++column)
        setColumnWidth(column, std::max(column_words.at(static_cast<std::size_t>(column)).width,
                                        horizontalHeader()->sectionSizeHint(column)));
    connect(selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this](const QModelIndex& at) {
        if (!showing_ && at.isValid()) emit line_chosen(QString::fromStdString(model_->row(at.row()).line));
    });
    connect(this, &QTableView::doubleClicked, this, &SurveyList::line_wanted);
    connect(model_, &SurveyRows::sort_wanted, this, &SurveyList::sort_wanted);
}

void SurveyList::show_rows() {
    showing_ = true;
    const int scrolled = verticalScrollBar()->value();
    model_->show_rows();
    executeDelayedItemsLayout();
    verticalScrollBar()->setValue(scrolled);
    showing_ = false;
}

void SurveyList::show_chosen(bool seen) {
    showing_ = true;
    if (const auto row = desk_.chosen_row()) {
        const int at = static_cast<int>(*row);
        const QModelIndex index = model_->index(at, 0);
        if (at != currentIndex().row() || !selectionModel()->isRowSelected(at))
            selectionModel()->setCurrentIndex(
                index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        if (seen) scrollTo(index);
    } else {
        selectionModel()->clear();
    }
    showing_ = false;
}

/// Letters belong to the page: they flag the line.
void SurveyList::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        emit line_wanted();
        return event->accept();
    }
    if (event->key() >= Qt::Key_A && event->key() <= Qt::Key_Z && event->modifiers() == Qt::NoModifier)
        return event->ignore();
    QTableView::keyPressEvent(event);
}

}  // namespace anomalis::window
