#include "window/panels/move_panel.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QToolTip>

#include "core/body_parameters.h"
#include "edit/body_form.h"
#include "edit/body_rows.h"
#include "edit/parameter_bars.h"
#include "edit/workbench.h"
#include "window/shell/look.h"
#include "window/widgets/panel.h"
#include "window/widgets/parameter_stepper.h"
#include "window/widgets/sketch_tip.h"

namespace anomalis::window {

namespace {

constexpr int bars_in_left_half = 8;
constexpr int columns_a_half = 4;  // caption, coarse, fine, gap
constexpr int gap = 14;            // pixels

QString caption_of(const ModelBody* body, ParamCode code) {
    edit::BodyRow row = edit::body_row(body ? body->type : thick_sheet, code);
    if (!row.used) row = edit::body_row(thick_sheet, code);
    return QString::fromUtf8(row.caption.data(), static_cast<qsizetype>(row.caption.size()));
}

}  // namespace

MovePanel::MovePanel(edit::Workbench& workbench, FormGuards& guards, ModelNews& news)
    : workbench_(workbench), guards_(guards), news_(news) {
    setObjectName("Frame_move_body");
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(6);
    grid->setVerticalSpacing(1);
    for (const int first : {0, columns_a_half}) add_headings(*grid, first);
    for (const edit::ParameterBar& bar : edit::parameter_bars()) {
        const int number = static_cast<int>(rows_.size());
        const int first = number < bars_in_left_half ? 0 : columns_a_half;
        const int line = 1 + number % bars_in_left_half;
        rows_.push_back({&bar, new QLabel, make_stepper(bar, false), make_stepper(bar, true)});
        grid->addWidget(rows_.back().caption, line, first);
        grid->addWidget(rows_.back().coarse, line, first + 1);
        grid->addWidget(rows_.back().fine, line, first + 2);
    }
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(columns_a_half, 1);
    grid->setColumnMinimumWidth(columns_a_half - 1, gap);
    // The finer steps stand beside the coarse ones; this box is found by its name but not seen.
    auto* small_step = make_check({"Check_small_step", "Use small step", "", "Has no effect"});
    small_step->setParent(this);
    small_step->hide();
}

void MovePanel::add_headings(QGridLayout& grid, int first_column) {
    for (const bool fine : {false, true}) {
        auto* heading = new QLabel(fine ? tr("fine") : tr("coarse"));
        make_quiet(*heading);
        grid.addWidget(heading, 0, first_column + (fine ? 2 : 1), Qt::AlignHCenter);
    }
}

ParameterStepper* MovePanel::make_stepper(const edit::ParameterBar& bar, bool fine) {
    const int member = bar.first_member + (fine ? 1 : 0);
    auto* stepper = new ParameterStepper(QString("%1_%2").arg(bar.control).arg(member), fine);
    stepper->set_tip(
        [this, &bar, fine] { return QString::fromStdString(edit::bar_tip(workbench_, bar, fine)); });
    stepper->set_tip_page([this, &bar, stepper](const QString& words) {
        return sketch_tip(workbench_.session.workspace, edit::current_body(workbench_), bar.code, words,
                          QToolTip::palette(), stepper->devicePixelRatioF());
    });
    connect(stepper, &ParameterStepper::stepped, this,
            [this, &bar](bool fine_step, int direction) { step(bar, fine_step, direction); });
    return stepper;
}

void MovePanel::step(const edit::ParameterBar& bar, bool fine, int direction) {
    if (!guards_.pass()) return;
    if (edit::step_parameter(workbench_, bar, fine, direction)) news_.tell(News::parameters);
}

void MovePanel::fill() {
    const ModelBody* body = edit::current_body(workbench_);
    for (const Row& row : rows_) {
        const QString caption = caption_of(body, row.bar->code);
        if (row.caption->text() != caption) row.caption->setText(caption);
        const bool usable = edit::bar_usable(workbench_, row.bar->code);
        for (ParameterStepper* stepper : {row.coarse, row.fine}) {
            if (stepper->toolTip().isEmpty() || stepper->accessibleName() != caption)
                stepper->setToolTip(
                    QString::fromStdString(edit::bar_tip(workbench_, *row.bar, stepper == row.fine)));
            stepper->setAccessibleName(caption);
            stepper->setEnabled(usable);
        }
        row.caption->setEnabled(usable);
    }
}

}  // namespace anomalis::window
