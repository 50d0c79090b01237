#include "window/shell/form_uncertainty.h"

#include <cmath>

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "window/shell/look.h"
#include "window/widgets/panel.h"

namespace anomalis::window {

namespace {

constexpr int margin = 14, gap = 10, box_width = 96;  // pixels
constexpr int width_of_form = 460;

QSpinBox* make_number(const char* name, const QString& caption, const QString& tip, int low, int high,
                      int step) {
    auto* box = new QSpinBox;
    name_control(*box, name, caption, tip);
    box->setRange(low, high);
    box->setSingleStep(step);
    box->setFixedWidth(box_width);
    box->setAlignment(Qt::AlignRight);
    return box;
}

QString time_words(double seconds) {
    const int whole = static_cast<int>(std::ceil(seconds));
    if (whole < 100) return Form_uncertainty::tr("about %1 s left").arg(whole);
    return Form_uncertainty::tr("about %1 min left").arg((whole + 59) / 60);
}

}  // namespace

Form_uncertainty::Form_uncertainty(QWidget* parent) : QDialog(parent) {
    setObjectName("Form_uncertainty");
    setWindowTitle(tr("Uncertainty"));
    setWindowModality(Qt::ApplicationModal);
    auto* purpose =
        new QLabel(tr("Fits the model, then looks for other models that explain the line as well: how far do "
                      "the data let each value move?"));
    purpose->setWordWrap(true);
    choices_ = make_choices();
    bar_ = new QProgressBar;
    name_control(*bar_, "Progress_uncertainty", tr("Progress"), tr("How many of the models are there"));
    bar_->setTextVisible(false);
    words_ = new QLabel;
    words_->setObjectName("Label_uncertainty");
    words_->setTextFormat(Qt::PlainText);
    words_->setWordWrap(true);
    words_->setMinimumHeight(2 * words_->fontMetrics().lineSpacing());
    words_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    auto* page = new QVBoxLayout(this);
    page->setContentsMargins(margin, margin, margin, margin);
    page->setSpacing(gap);
    page->addWidget(purpose);
    page->addWidget(choices_);
    page->addWidget(bar_);
    page->addWidget(words_);
    page->addStretch();
    page->addWidget(make_buttons());
    show_running(false);
    resize(width_of_form, sizeHint().height());
}

QWidget* Form_uncertainty::make_choices() {
    using Choice = flow::UncertaintyChoice;
    const Choice usual;
    samples_ = make_number("Text_samples", tr("Models"),
                           tr("How many models are looked for, %1 to %2. 300 place the ends of a 90 % band "
                              "to about a tenth of its width")
                               .arg(Choice::least_samples)
                               .arg(Choice::most_samples),
                           Choice::least_samples, Choice::most_samples, 50);
    samples_->setValue(usual.samples);
    strike_ =
        make_number("Text_strike_within", tr("Strike known within"),
                    tr("Degrees to each side, 0 to 90, by which the strikes may be wrong; one line does "
                       "not tell them. 0 takes them as they are"),
                    0, static_cast<int>(Choice::widest_strike), 5);
    strike_->setSuffix(QString::fromUtf8(" °"));
    regional_ = make_check({"Check_vary_regional", "Regionals of other degrees take part", "",
                            "Checked: a level, slope, bend or cubic takes the place of the regional where it "
                            "explains the line as well"});
    regional_->setChecked(usual.vary_regional);
    bodies_ = make_check({"Check_vary_bodies", "Models with a body less take part", "",
                          "Checked: models that lack one of the bodies take part where they explain the line "
                          "as well"});
    bodies_->setChecked(usual.vary_bodies);
    auto* holder = new QWidget;
    auto* grid = new QGridLayout(holder);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(gap);
    grid->setVerticalSpacing(gap - 2);
    grid->addWidget(make_caption(tr("Models"), samples_), 0, 0);
    grid->addWidget(samples_, 0, 1);
    grid->addWidget(make_caption(tr("Strike known within"), strike_), 1, 0);
    grid->addWidget(strike_, 1, 1);
    grid->addWidget(regional_, 2, 0, 1, 3);
    grid->addWidget(bodies_, 3, 0, 1, 3);
    grid->setColumnStretch(2, 1);
    return holder;
}

QWidget* Form_uncertainty::make_buttons() {
    start_ = make_button({"Command_start_uncertainty", "Start", "",
                          "Fit the model and look for the others; both can be taken back in one step"});
    stop_ = make_button({"Command_stop_uncertainty", "Stop", "",
                         "End the run with the models that are there; 20 are enough for a band"});
    close_ = make_button({"Command_close_uncertainty", "Close", "",
                          "Close this window; a run that goes on is cancelled, the model stays as it was"});
    start_->setDefault(true);
    for (QPushButton* button : {stop_, close_}) button->setAutoDefault(false);
    connect(start_, &QPushButton::clicked, this, &Form_uncertainty::start_wanted);
    connect(stop_, &QPushButton::clicked, this, &Form_uncertainty::stop_wanted);
    connect(close_, &QPushButton::clicked, this, &Form_uncertainty::reject);
    auto* holder = new QWidget;
    auto* row = new QHBoxLayout(holder);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(gap);
    row->addStretch();
    for (QPushButton* button : {start_, stop_, close_}) row->addWidget(button);
    return holder;
}

flow::UncertaintyChoice Form_uncertainty::choice() const {
    return {.samples = samples_->value(),
            .vary_regional = regional_->isChecked(),
            .vary_bodies = bodies_->isChecked(),
            .strike_within = static_cast<double>(strike_->value())};
}

void Form_uncertainty::show_running(bool running) {
    running_ = running;
    choices_->setEnabled(!running);
    start_->setEnabled(!running);
    stop_->setEnabled(running);
    close_->setText(running ? tr("Cancel") : tr("Close"));
    QSizePolicy kept = bar_->sizePolicy();
    kept.setRetainSizeWhenHidden(true);
    bar_->setSizePolicy(kept);
    bar_->setVisible(running);
    if (running) {
        show_progress({});
        stop_->setFocus();
    }
}

void Form_uncertainty::show_progress(const flow::UncertaintyProgress& progress) {
    bar_->setRange(0, progress.of);
    bar_->setValue(progress.done);
    if (progress.of == 0) {
        words_->setText(tr("The model is fitted first"));
        return;
    }
    const QString done = tr("%1 of %2 models").arg(progress.done).arg(progress.of);
    words_->setText(progress.seconds_left ? done + ", " + time_words(*progress.seconds_left) : done);
}

void Form_uncertainty::show_words(const QString& words, bool can_start) {
    words_->setText(words);
    start_->setEnabled(can_start);
}

void Form_uncertainty::accept() {
    if (running_)
        emit stop_wanted();
    else
        QDialog::accept();
}

void Form_uncertainty::reject() {
    if (running_)
        emit cancel_wanted();
    else
        QDialog::reject();
}

}  // namespace anomalis::window
