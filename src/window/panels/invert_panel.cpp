#include "window/panels/invert_panel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QStandardItemModel>
#include <QVBoxLayout>

#include "core/numbers.h"
#include "core/session.h"
#include "core/text.h"
#include "flow/inversion_panel.h"
#include "window/shell/look.h"
#include "window/widgets/entry_box.h"
#include "window/widgets/panel.h"

namespace anomalis::window {

namespace {

constexpr int gap = 6;

void keep_room(QWidget& widget) {
    QSizePolicy policy = widget.sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    widget.setSizePolicy(policy);
}

void set_entry_enabled(QComboBox& list, int index, bool enabled) {
    if (auto* entries = qobject_cast<QStandardItemModel*>(list.model()))
        entries->item(index)->setEnabled(enabled);
}

void show_line(QLabel& label, const std::string& text, bool visible) {
    label.setText(QString::fromStdString(text));
    label.setVisible(visible);
}

void set_text(QLineEdit& box, const std::string& text) {
    const QString words = QString::fromStdString(text);
    if (box.text() != words) box.setText(words);
}

}  // namespace

InvertPanel::InvertPanel(const Session& session, FormGuards& guards)
    : session_(session), guards_(guards), status_(new QLabel), remark_(new QLabel) {
    setObjectName("Frame_invert");
    setProperty("card", true);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(12, 8, 12, 6);
    column->setSpacing(gap);
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(gap);
    add_choices(*grid);
    column->addLayout(grid);
    column->addLayout(make_counts());
    column->addWidget(make_misfits());
    column->addWidget(make_quality());
    column->addWidget(make_buttons());
    // Never both at once: a run hides the end of the one before.
    auto* ending = new QGridLayout;
    ending->addWidget(make_ending(), 0, 0, Qt::AlignTop);
    ending->addWidget(make_stop_frame(), 0, 0, Qt::AlignTop);
    column->addLayout(ending);
}

/// How the last run ended, and what its fit says of itself; as many lines as it takes.
QWidget* InvertPanel::make_ending() {
    struct EndLabel {
        QLabel* label;
        const char* name;
        QString tip;
    };
    auto* holder = new QWidget;
    auto* column = new QVBoxLayout(holder);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    for (const EndLabel& each :
         {EndLabel{status_, "Label_status", tr("How the last run ended")},
          EndLabel{remark_, "Label_fit_remark",
                   tr("What the last fit says beside its values, as long as the model is as fitted")}}) {
        each.label->setObjectName(each.name);
        each.label->setTextFormat(Qt::PlainText);
        each.label->setToolTip(each.tip);
        each.label->setWordWrap(true);
        each.label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        each.label->hide();
        column->addWidget(each.label);
    }
    make_quiet(*remark_);
    return holder;
}

/// One line a channel: how far the curves are from each other in its own unit.
QWidget* InvertPanel::make_quality() {
    auto* holder = new QWidget;
    auto* column = new QVBoxLayout(holder);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    for (std::size_t i = 0; i < rms_.size(); ++i) {
        rms_[i] = new QLabel;
        rms_[i]->setObjectName("Label_rms_" + QString::number(i));
        rms_[i]->setTextFormat(Qt::PlainText);
        rms_[i]->setWordWrap(true);
        rms_[i]->setTextInteractionFlags(Qt::TextSelectableByMouse);
        rms_[i]->setToolTip(
            tr("Root mean square of observed less regional less calculated over the stations "
               "of the fit, and the noise of a reading, keyed or estimated"));
        make_quiet(*rms_[i]);
        column->addWidget(rms_[i]);
    }
    return holder;
}

void InvertPanel::add_choices(QGridLayout& grid) {
    channel_ = make_list(
        {"Combo_invert", "Channel", "",
         "The data that the model is fitted to. Both at once needs both channels and least squares"},
        {tr("Magnetics"), tr("Gravity"), tr("Both at once")});
    method_ =
        make_list({"Combo_inversion_method", "Method", "",
                   "Sweep changes one parameter after the other. Least squares changes them together, and "
                   "tells how well the data determine each"},
                  {tr("Sweep"), tr("Least squares")});
    gradient_ = make_check({"Check_inversion_mode", "Invert Vertical Grad", "",
                            "Fit the gradient of the data in place of the data"});
    const auto place = [&](int row, int pair, QWidget* control) {
        control->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
        grid.addWidget(make_caption(control->accessibleName(), control), row, 2 * pair);
        grid.addWidget(control, row, 2 * pair + 1);
        grid.setColumnStretch(2 * pair + 1, 1);
    };
    place(0, 0, channel_);
    place(0, 1, method_);
    connect(channel_, &QComboBox::activated, this, [this](int index) {
        if (guards_.pass()) emit channel_chosen(index);
    });
    connect(method_, &QComboBox::activated, this, [this](int index) {
        if (guards_.pass()) emit method_chosen(index);
    });
    connect(gradient_, &QCheckBox::toggled, this, [this](bool on) {
        if (guards_.pass()) emit gradient_chosen(on);
    });
}

QHBoxLayout* InvertPanel::make_counts() {
    limit_ = make_limit_box();
    starts_ = make_starts_box();
    done_ = make_result_box({"Text_num_iterations", "Done", "", "Iterations of the last run"});
    auto* row = new QHBoxLayout;
    row->setSpacing(8);
    for (QLineEdit* box : std::initializer_list<QLineEdit*>{limit_, starts_, done_}) {
        box->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
        row->addWidget(make_caption(box->accessibleName(), box));
        row->addWidget(box, 1);
    }
    return row;
}

/// The same for the number of starts.
CommitBox* InvertPanel::make_starts_box() {
    const auto accept = [this](const std::string& text) {
        double value = 0;
        const bool usable = trim_blanks(text).empty() || (parse_number(text, value) && value >= 1 &&
                                                          value <= flow::InversionPanel::most_starts);
        starts_text_ = usable ? text : "";
        emit starts_typed(QString::fromStdString(starts_text_));
        return usable;
    };
    auto* box = new CommitBox(
        {"Text_starts", "Starts", "",
         "From how many places a least-squares run starts, 1 to 1000: the model as it stands, and others "
         "about what was found, so that the best of them is kept; blank for 4"},
        guards_, {accept, [this] { return starts_text_; }});
    box->setPlaceholderText(QString::number(inversion::default_starts));
    connect(box, &CommitBox::text_refused, this, [this, box](const QString& typed) {
        emit text_refused(box->accessibleName(), typed,
                          tr("%1 is taken; key a number from 1 to %2")
                              .arg(inversion::default_starts)
                              .arg(flow::InversionPanel::most_starts));
    });
    return box;
}

/// A text that is no number leaves the box blank: the usual number of iterations.
CommitBox* InvertPanel::make_limit_box() {
    const auto accept = [this](const std::string& text) {
        const bool usable = is_numeric(text) || trim_blanks(text).empty();
        limit_text_ = usable ? text : "";
        emit iterations_typed(QString::fromStdString(limit_text_));
        return usable;
    };
    auto* box = new CommitBox(
        {"Text_max_iterations", "Iterations", "", "The most iterations of a run, 1 or more; blank for 25"},
        guards_, {accept, [this] { return limit_text_; }});
    box->setPlaceholderText("25");
    connect(box, &CommitBox::text_refused, this, [this, box](const QString& typed) {
        emit text_refused(box->accessibleName(), typed, tr("25 is taken"));
    });
    return box;
}

/// Two columns, before and now, over two rows, data and gradient.
QWidget* InvertPanel::make_misfits() {
    struct MisfitBox {
        const char* name;
        const char* tip;
    };
    static constexpr std::array<MisfitBox, 4> boxes{{{"Text_MAGINV_misfit_0", "Initial Observed Data Misfit"},
                                                     {"Text_MAGINV_misfit_1", "Final Observed Data Misfit"},
                                                     {"Text_MAGINV_misfit_2", "Initial Gradient Data Misfit"},
                                                     {"Text_MAGINV_misfit_3", "Final Gradient Data Misfit"}}};
    auto* table = new QWidget;
    auto* grid = new QGridLayout(table);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(2);
    grid->addWidget(gradient_, 0, 0);
    int column = 1;
    for (const QString& text : {tr("Before"), tr("Now")}) {
        auto* heading = new QLabel(text);
        make_quiet(*heading);
        heading->setAlignment(Qt::AlignRight);
        grid->addWidget(heading, 0, column);
        grid->setColumnStretch(column++, 1);
    }
    int row = 1;
    for (const QString& text : {tr("Misfit of the data"), tr("Misfit of the gradient")})
        grid->addWidget(new QLabel(text), row++, 0);
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        misfit_[i] = make_result_box({boxes[i].name, boxes[i].tip, "", boxes[i].tip});
        misfit_[i]->setToolTip(tr(boxes[i].tip) +
                               tr(": length of the differences over the number of intervals, no unit"));
        misfit_[i]->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
        grid->addWidget(misfit_[i], 1 + static_cast<int>(i) / 2, 1 + static_cast<int>(i) % 2);
    }
    return table;
}

QWidget* InvertPanel::make_buttons() {
    auto* buttons = new QWidget;
    auto* grid = new QGridLayout(buttons);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(gap);
    invert_[0] = make_button({"Command_invert_0", "Invert Current Body", "",
                              "Fit the free parameters of the current body (Vary ticked)"});
    invert_[1] = make_button({"Command_invert_1", "Invert Entire Model", "",
                              "Fit the free parameters of all bodies (Vary ticked), Ctrl+I"});
    restore_ = make_button({"Command_restore_best", "Restore Best Model", "",
                            "Go back to the best model of the runs so far; the present one is written to "
                            "latest.axm"});
    reject_ = make_button({"Command_reject_changes", "Reject Changes", "",
                           "Put back the values that the last run started with"});
    for (std::size_t i = 0; i < invert_.size(); ++i) {
        grid->addWidget(invert_[i], 0, static_cast<int>(i));
        connect(invert_[i], &QPushButton::clicked, this,
                [this, i] { emit invert_wanted(static_cast<int>(i)); });
    }
    grid->addWidget(restore_, 1, 0);
    grid->addWidget(reject_, 1, 1);
    connect(restore_, &QPushButton::clicked, this, &InvertPanel::restore_wanted);
    connect(reject_, &QPushButton::clicked, this, &InvertPanel::reject_wanted);
    return buttons;
}

QWidget* InvertPanel::make_stop_frame() {
    stop_frame_ = new QFrame;
    stop_frame_->setObjectName("Frame_stop_inversion");
    auto* grid = new QGridLayout(stop_frame_);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(3);
    progress_words_ = new QLabel;
    progress_words_->setObjectName("Label_inversion_progress");
    make_quiet(*progress_words_);
    progress_ = new QProgressBar;
    name_control(*progress_, "ProgressBar_inversion", tr("Progress"), tr("Iterations of those allowed"));
    progress_->setTextVisible(false);
    progress_->setFixedHeight(6);
    stop_ = make_button({"Command_stop_inversion", "Stop Inversion", "",
                         "End the run after the iteration that it is in, Esc"});
    grid->addWidget(progress_words_, 0, 0);
    grid->addWidget(progress_, 1, 0);
    grid->addWidget(stop_, 0, 1, 2, 1);
    grid->setColumnStretch(0, 1);
    keep_room(*stop_frame_);
    stop_frame_->hide();
    connect(stop_, &QPushButton::clicked, this, &InvertPanel::stop_wanted);
    return stop_frame_;
}

void InvertPanel::show_choices(const flow::InversionPanel& panel) {
    const Workspace& workspace = session_.workspace;
    const bool least_squares = panel.method == inversion::InversionMethod::least_squares;
    set_entry_enabled(*channel_, channel_mag, workspace.has_mag());
    set_entry_enabled(*channel_, channel_grav, workspace.has_grav());
    set_entry_enabled(*channel_, channel_joint, least_squares && workspace.has_mag() && workspace.has_grav());
    channel_->setCurrentIndex(panel.channel_index);
    method_->setCurrentIndex(least_squares ? 1 : 0);
    gradient_->setChecked(session_.inversion.inversion_target == target_gradient);
    gradient_->setText(workspace.processing.display_total_gradient == 1 ? tr("Invert Total Grad")
                                                                        : tr("Invert Vertical Grad"));
}

void InvertPanel::show_panel(const flow::InversionPanel& panel) {
    const SuspendEvents suspend(guards_);
    show_choices(panel);
    for (std::size_t i = 0; i < misfit_.size(); ++i) set_text(*misfit_[i], panel.misfit[i]);
    if (limit_text_ != panel.max_iterations_text) {
        limit_text_ = panel.max_iterations_text;
        limit_->refill();
    }
    if (starts_text_ != panel.starts_text) {
        starts_text_ = panel.starts_text;
        starts_->refill();
    }
    starts_->setEnabled(panel.method == inversion::InversionMethod::least_squares && !guards_.busy());
    set_text(*done_, panel.num_iterations_text);
    show_line(*status_, panel.status_text, panel.status_visible);
    show_line(*remark_, panel.remark_text, !panel.remark_text.empty() && !panel.stop_frame);
    for (std::size_t i = 0; i < rms_.size(); ++i)
        show_line(*rms_[i], panel.quality[i].line, !panel.quality[i].line.empty());
    stop_frame_->setVisible(panel.stop_frame);
    restore_->setEnabled(panel.restore_best_enabled && !guards_.busy());
    reject_->setEnabled(panel.reject_changes_enabled && !guards_.busy());
}

void InvertPanel::show_progress(int iteration, int limit, const QString& words) {
    progress_->setRange(0, limit);
    progress_->setValue(iteration);
    progress_words_->setText(words);
}

}  // namespace anomalis::window
