#include "window/panels/find_panel.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>

#include "core/workspace.h"
#include "edit/workbench.h"
#include "flow/find_desk.h"
#include "window/shell/look.h"
#include "window/widgets/chief_button.h"
#include "window/widgets/model_card.h"
#include "window/widgets/panel.h"

namespace anomalis::window {

namespace {

constexpr int column_width = 396;  // pixels, as the column in whose place it stands
constexpr int gap = 6;
constexpr int stages = static_cast<int>(inversion::FindStage::errors) + 1;

QLabel* make_words(const char* name, const QString& tip) {
    auto* label = new QLabel;
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setToolTip(tip);
    return label;
}

QString joined(const std::vector<std::string>& sentences) {
    QString text;
    for (const std::string& sentence : sentences) {
        if (!text.isEmpty()) text += ' ';
        text += QString::fromStdString(sentence);
        if (!text.endsWith('.')) text += '.';
    }
    return text;
}

}  // namespace

FindPanel::FindPanel(FormGuards& guards) : guards_(guards) {
    setObjectName("Frame_find");
    setFixedWidth(column_width);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(4, gap, 8, gap);
    column->setSpacing(gap);
    column->addWidget(make_choices());
    column->addWidget(make_run());
    column->addWidget(make_outcome());
    cards_ = new ModelCards;
    cards_->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    column->addWidget(cards_, 1);
    column->addStretch();
    column->addWidget(make_ending());
    connect(cards_, &ModelCards::card_shown, this, [this](int index) {
        if (!guards_.closed()) emit card_shown(index);
    });
    connect(cards_, &ModelCards::card_chosen, this, &FindPanel::take_wanted);
}

QWidget* FindPanel::make_choices() {
    auto* card = new Panel("Frame_find_choices", tr("Find bodies"));
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(gap);
    grid->setColumnStretch(1, 1);
    most_ = new QSpinBox;
    name_control(*most_, "Spin_find_most", tr("Bodies at most"),
                 tr("How many bodies a model may get, 1 to %1; it gets no more than the data call for")
                     .arg(flow::FindState::most_bodies));
    most_->setRange(1, flow::FindState::most_bodies);
    kinds_ = make_list({"Combo_find_kinds", "Kinds", "",
                        "Which bodies are proposed. A thin sheet has a fixed width; what the data tell of it "
                        "is its width times its susceptibility"},
                       {tr("Thin and thick sheets"), tr("Thin sheets"), tr("Thick sheets")});
    channel_ = make_list({"Combo_find_channel", "Channel", "",
                          "The data that are explained. Both at once asks for bodies that give both"},
                         {tr("Magnetics"), tr("Gravity"), tr("Both at once")});
    present_ = make_list({"Combo_find_present", "Bodies there", "",
                          "What becomes of the bodies of the model: new ones are found beside them, and they "
                          "stay as they are or are fitted too"},
                         {tr("Keep them as they are"), tr("Fit them too")});
    window_ = make_words("Label_find_window",
                         tr("The stretch of the line that is explained, m along the profile. The two bars in "
                            "the section choose it"));
    int row = 0;
    place_choice(*grid, row++, most_);
    place_choice(*grid, row++, kinds_);
    channel_caption_ = place_choice(*grid, row++, channel_);
    present_caption_ = place_choice(*grid, row++, present_);
    window_->setAccessibleName(tr("Stations"));
    place_choice(*grid, row++, window_);
    find_ =
        make_button({"Command_find", "Find", "",
                     "Look for bodies that explain the line; the model stays as it is until one is taken"});
    find_->setProperty("chief", true);
    grid->addWidget(find_, row, 1, Qt::AlignRight);
    qobject_cast<QVBoxLayout*>(card->layout())->addLayout(grid);
    connect(most_, &QSpinBox::valueChanged, this, &FindPanel::most_chosen);
    connect(kinds_, &QComboBox::activated, this,
            [this](int index) { emit kinds_chosen(static_cast<flow::SheetKinds>(index)); });
    connect(channel_, &QComboBox::activated, this, &FindPanel::channel_chosen);
    connect(present_, &QComboBox::activated, this, [this](int index) { emit present_chosen(index == 1); });
    connect(find_, &QPushButton::clicked, this, &FindPanel::find_wanted);
    return card;
}

QLabel* FindPanel::place_choice(QGridLayout& grid, int row, QWidget* control) {
    QLabel* caption = make_caption(control->accessibleName(), control);
    grid.addWidget(caption, row, 0);
    grid.addWidget(control, row, 1);
    return caption;
}

/// How far a search is, and its two ends.
QWidget* FindPanel::make_run() {
    run_ = new QFrame;
    run_->setObjectName("Frame_find_run");
    run_->setProperty("card", true);
    auto* column = new QVBoxLayout(run_);
    column->setContentsMargins(12, 8, 12, 10);
    column->setSpacing(gap);
    progress_words_ = make_words("Label_find_progress", tr("What the search is at, and what it has found"));
    progress_ = new QProgressBar;
    name_control(*progress_, "ProgressBar_find", tr("Progress"), tr("Stages of the search"));
    progress_->setTextVisible(false);
    progress_->setFixedHeight(gap);
    progress_->setRange(0, stages);
    auto* row = new QHBoxLayout;
    keep_ = make_button({"Command_find_keep", "Keep what was found", "",
                         "End the search and show the models that it has, Esc"});
    cancel_ = make_button({"Command_find_cancel", "Cancel", "",
                           "End the search and forget what it has; the model is as it was"});
    row->addWidget(keep_);
    row->addStretch();
    row->addWidget(cancel_);
    column->addWidget(progress_words_);
    column->addWidget(progress_);
    column->addLayout(row);
    run_->hide();
    connect(keep_, &QPushButton::clicked, this, &FindPanel::keep_wanted);
    connect(cancel_, &QPushButton::clicked, this, &FindPanel::cancel_wanted);
    return run_;
}

QWidget* FindPanel::make_outcome() {
    outcome_ = new QWidget;
    auto* column = new QVBoxLayout(outcome_);
    column->setContentsMargins(gap, 0, gap, 0);
    column->setSpacing(2);
    label_ = make_words("Label_find_outcome", tr("How the last search ended"));
    remarks_ = make_words("Label_find_remarks", tr("What there is to say of the last search"));
    make_quiet(*remarks_);
    column->addWidget(label_);
    column->addWidget(remarks_);
    outcome_->hide();
    return outcome_;
}

QWidget* FindPanel::make_ending() {
    auto* ending = new QWidget;
    auto* row = new QHBoxLayout(ending);
    row->setContentsMargins(0, 0, 0, 0);
    take_ = make_button({"Command_find_take", "Take", "",
                         "Make the model that the charts show the present one, with its regional and its "
                         "intervals, Enter; undo takes it back"});
    take_->setProperty("chief", true);
    auto* close = make_button(
        {"Command_find_close", "Close", "", "Leave the model as it is and go back to the bodies, Esc"});
    row->addStretch();
    row->addWidget(take_);
    row->addWidget(close);
    connect(take_, &QPushButton::clicked, this, [this] { emit take_wanted(cards_->currentRow()); });
    connect(close, &QPushButton::clicked, this, &FindPanel::close_wanted);
    return ending;
}

void FindPanel::show_state(const flow::FindDesk& desk, const Workspace& workspace) {
    const SuspendEvents suspend(guards_);
    const flow::FindState& state = desk.state();
    show_choices(state, workspace);
    show_run(state, workspace);
    show_outcome(state);
    show_cards(desk, state.corrected_channel(workspace));
    cards_->show_current(state.previewed);
    find_->setEnabled(desk.can_find());
    set_chief(*find_, state.models.empty());
    set_chief(*take_, !state.models.empty());
    take_->setEnabled(state.previewed >= 0 && !state.searching);
}

void FindPanel::show_choices(const flow::FindState& state, const Workspace& workspace) {
    const QSignalBlocker quiet(most_);
    most_->setValue(state.most);
    kinds_->setCurrentIndex(static_cast<int>(state.kinds));
    channel_->setCurrentIndex(state.corrected_channel(workspace));
    present_->setCurrentIndex(state.free_present ? 1 : 0);
    window_->setText(QString::fromStdString(flow::find_window_text(workspace)));
    for (QWidget* part : std::initializer_list<QWidget*>{channel_caption_, channel_})
        part->setVisible(workspace.has_mag() && workspace.has_grav());
    for (QWidget* part : std::initializer_list<QWidget*>{present_caption_, present_})
        part->setVisible(workspace.body_count > 0);
}

void FindPanel::show_run(const flow::FindState& state, const Workspace& workspace) {
    run_->setVisible(state.searching);
    if (!state.searching) return;
    progress_words_->setText(QString::fromStdString(flow::find_progress_text(state, workspace)));
    progress_->setValue(static_cast<int>(state.stage) + 1);
}

void FindPanel::show_outcome(const flow::FindState& state) {
    label_->setText(QString::fromStdString(state.label));
    remarks_->setText(joined(state.remarks));
    remarks_->setVisible(!state.remarks.empty());
    outcome_->setVisible(!state.searching && !state.label.empty());
}

void FindPanel::show_cards(const flow::FindDesk& desk, std::int32_t channel) {
    const flow::FindState& state = desk.state();
    cards_->setVisible(!state.models.empty());
    if (shown_revision_ == state.revision) return;
    shown_revision_ = state.revision;
    std::vector<ModelCard> cards;
    for (int i = 0; i < static_cast<int>(state.models.size()); ++i) {
        const inversion::FoundModel& model = state.models[static_cast<std::size_t>(i)];
        cards.push_back({show::section_thumbnail(desk.model(i), ModelCards::picture_aspect),
                         QString::fromStdString(model.kind),
                         QString::fromStdString(flow::found_rms_text(model.rms, channel) + ", " +
                                                flow::criterion_text(model.criterion))});
    }
    cards_->show_cards(std::move(cards));
}

void FindPanel::take_focus() {
    if (cards_->count() > 0) {
        cards_->setFocus();
    } else {
        find_->setFocus();
    }
}

void FindPanel::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Escape:
            return emit close_wanted();
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (auto* button = qobject_cast<QPushButton*>(focusWidget())) return button->click();
            return emit find_wanted();
        default:
            QWidget::keyPressEvent(event);
    }
}

}  // namespace anomalis::window
