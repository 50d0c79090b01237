#include "window/widgets/body_grid_view.h"

#include <QComboBox>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScrollBar>
#include <QToolTip>

#include "core/formulas.h"
#include "edit/body_form.h"
#include "edit/body_grid.h"
#include "edit/workbench.h"
#include "window/widgets/body_cells.h"
#include "window/widgets/body_grid_model.h"
#include "window/widgets/panel.h"
#include "window/widgets/sketch_tip.h"

namespace anomalis::window {

namespace {

constexpr int property_width = 80;  // pixels
constexpr int vary_width = 36;
constexpr int limit_width = 56;
constexpr int line_spacing = 3;
constexpr int least_row_height = 17;

}  // namespace

BodyGridView::BodyGridView(edit::Workbench& workbench, FormGuards& guards, ModelNews& news, QWidget* parent)
    : QTableView(parent),
      workbench_(workbench),
      guards_(guards),
      news_(news),
      cells_(new BodyGridModel(workbench, guards, news, this)),
      types_(new QComboBox(viewport())) {
    name_control(*this, "Grid_body", tr("Parameters of the current body"),
                 tr("The parameters of the current body, whether the inversion may change them, and its "
                    "limits"));
    setModel(cells_);
    setItemDelegate(new BodyCells(this));
    name_control(*types_, "Combo_model_type", tr("Body Type"),
                 tr("The kind of the current body; the numbers of its parameters stay, a pipe or a wire "
                    "counts its dip from another direction"));
    types_->hide();
    lay_out();
    connect(this, &QTableView::clicked, this, &BodyGridView::cell_clicked);
    connect(types_, &QComboBox::activated, this, &BodyGridView::choose_type);
    connect(cells_, &BodyGridModel::text_refused, this, &BodyGridView::text_refused);
    fill_types();
}

void BodyGridView::lay_out() {
    const int row_height = std::max(least_row_height, fontMetrics().height() + line_spacing);
    verticalHeader()->hide();
    verticalHeader()->setMinimumSectionSize(row_height);
    verticalHeader()->setDefaultSectionSize(row_height);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    QHeaderView& header = *horizontalHeader();
    header.setHighlightSections(false);
    header.setSectionsClickable(false);
    header.setFixedHeight(row_height + 2);
    header.setMinimumSectionSize(vary_width);
    header.setSectionResizeMode(QHeaderView::Fixed);
    header.setSectionResizeMode(edit::grid_value, QHeaderView::Stretch);
    setColumnWidth(edit::grid_property, property_width);
    setColumnWidth(edit::grid_vary, vary_width);
    setColumnWidth(edit::grid_min, limit_width);
    setColumnWidth(edit::grid_max, limit_width);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFixedHeight(header.height() + edit::body_row_count * row_height + 2 * frameWidth());
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setShowGrid(false);
}

void BodyGridView::fill() {
    cells_->refresh();
    setEnabled(edit::current_body(workbench_) != nullptr);
    fill_types();
}

void BodyGridView::fill_types() {
    const SuspendEvents suspend(guards_);
    types_->clear();
    for (const BodyType type : body_types_offered(workbench_.session.workspace)) {
        const std::string_view name = body_type_name(type);
        types_->addItem(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())),
                        static_cast<int>(type));
    }
    const ModelBody* body = edit::current_body(workbench_);
    if (!body) types_->hide();
    // A type that comes from files only is shown although it is not on the list.
    const std::string_view present = body ? body_type_name(body->type) : std::string_view();
    types_->setPlaceholderText(QString::fromUtf8(present.data(), static_cast<qsizetype>(present.size())));
    types_->setCurrentIndex(body ? types_->findData(body->type) : -1);
}

bool BodyGridView::edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) {
    return !guards_.closed() && QTableView::edit(index, trigger, event);
}

void BodyGridView::mousePressEvent(QMouseEvent* event) {
    commit_editor();
    QTableView::mousePressEvent(event);
}

void BodyGridView::cell_clicked(const QModelIndex& index) {
    if (!guards_.pass() || !edit::current_body(workbench_)) return;
    const int row = index.row() + 1;
    if (row == edit::row_type && index.column() == edit::grid_value) {
        show_types();
    } else if (index.column() == edit::grid_vary) {
        cells_->toggle_vary(index);
    } else if (edit::grid_editable(workbench_, row, index.column())) {
        edit(index);
    }
}

void BodyGridView::show_types() {
    fill_types();
    types_->setGeometry(visualRect(cells_->index(edit::row_type - 1, edit::grid_value)));
    types_->show();
    types_->setFocus();
    types_->showPopup();
}

void BodyGridView::choose_type(int entry) {
    if (entry < 0 || !types_->isEnabled()) return;
    const int type = types_->itemData(entry).toInt();
    if (!guards_.pass()) return;
    types_->setEnabled(false);
    const bool changed = edit::change_body_type(workbench_, type);
    types_->hide();
    types_->setEnabled(true);
    setFocus();
    if (changed) news_.tell(News::bodies);
}

void BodyGridView::commit_editor() {
    types_->hidePopup();
    types_->hide();
    // Not that of the current cell alone: the current cell can be another one by now.
    for (auto* editor : viewport()->findChildren<QLineEdit*>("Text_edit", Qt::FindDirectChildrenOnly)) {
        if (editor->isHidden()) continue;  // closed, and about to be deleted
        commitData(editor);
        closeEditor(editor, QAbstractItemDelegate::NoHint);
    }
}

void BodyGridView::keyPressEvent(QKeyEvent* event) {
    if (state() == EditingState) return QTableView::keyPressEvent(event);  // the editor passed it on
    const QModelIndex cell = currentIndex();
    const bool enters = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool acts = event->key() == Qt::Key_Space && cell.column() == edit::grid_vary;
    if (cell.isValid() && (enters || acts)) {
        cell_clicked(cell);
        return;
    }
    QTableView::keyPressEvent(event);
}

bool BodyGridView::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::ToolTip && show_tip(static_cast<const QHelpEvent&>(*event))) return true;
    return QTableView::viewportEvent(event);
}

bool BodyGridView::show_tip(const QHelpEvent& event) {
    const QModelIndex cell = indexAt(event.pos());
    if (!cell.isValid()) return false;
    QToolTip::showText(event.globalPos(), tip_page(event.pos()), viewport(), visualRect(cell));
    return true;
}

QString BodyGridView::tip_page(const QPoint& place) const {
    const QModelIndex cell = indexAt(place);
    const QString words = cell.data(Qt::ToolTipRole).toString();
    if (cell.column() > edit::grid_value) return words;
    return sketch_tip(workbench_.session.workspace, edit::current_body(workbench_), cell.row() + 1, words,
                      QToolTip::palette(), devicePixelRatioF());
}

void BodyGridView::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    if (types_->isVisible())
        types_->setGeometry(visualRect(cells_->index(edit::row_type - 1, edit::grid_value)));
}

}  // namespace anomalis::window
