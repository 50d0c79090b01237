#include "window/shell/form_ensemble.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "chart/qt/grapher_widget.h"
#include "core/ensemble.h"
#include "core/shown_text.h"
#include "core/workspace.h"
#include "show/cross_plots.h"
#include "window/widgets/panel.h"

namespace anomalis::window {

namespace {

constexpr int margin = 12, gap = 8;  // pixels
constexpr QSize designed_size{1160, 700};
constexpr int words_width = 370, body_width = 240;

QLabel* make_label(const char* name) {
    auto* label = new QLabel;
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QVBoxLayout* make_column(QWidget* holder) {
    auto* column = new QVBoxLayout(holder);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(gap);
    return column;
}

QString summary_of(const Ensemble& ensemble) {
    const QString models = Form_ensemble::tr("%1 models explain the line within its noise.")
                               .arg(static_cast<qlonglong>(ensemble.samples.size()));
    if (!(ensemble.strike_within > 0)) return models;
    return models + " " + Form_ensemble::tr("Strikes vary by %1° to each side.").arg(ensemble.strike_within);
}

}  // namespace

Form_ensemble::Form_ensemble(QWidget* parent)
    : QDialog(parent), state_(make_label("Label_ensemble_state")), content_(new QWidget) {
    setObjectName("Form_ensemble");
    setWindowTitle(tr("Uncertainty of the model"));
    auto* parts = new QHBoxLayout(content_);
    parts->setContentsMargins(0, 0, 0, 0);
    parts->setSpacing(2 * gap);
    parts->addWidget(make_words());
    parts->addWidget(make_plots(), 1);
    auto* page = new QVBoxLayout(this);
    page->setContentsMargins(margin, margin, margin, margin);
    page->setSpacing(gap);
    page->addWidget(state_);
    page->addWidget(content_, 1);
    page->addStretch();
    page->addWidget(make_buttons());
    resize(designed_size);
}

QWidget* Form_ensemble::make_words() {
    summary_ = make_label("Label_ensemble_summary");
    words_ = new QListWidget;
    name_control(*words_, "List_ensemble_words", tr("What the models say"),
                 tr("What 90 % of the models keep to, a line a parameter"));
    words_->setWordWrap(true);
    words_->setSelectionMode(QAbstractItemView::NoSelection);
    words_->setFocusPolicy(Qt::TabFocus);
    words_->setSpacing(2);
    words_->setAlternatingRowColors(true);
    words_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* holder = new QWidget;
    holder->setFixedWidth(words_width);
    QVBoxLayout* column = make_column(holder);
    column->addWidget(summary_);
    column->addWidget(words_, 1);
    return holder;
}

QWidget* Form_ensemble::make_plots() {
    bodies_ = new QComboBox;
    name_control(*bodies_, "Combo_ensemble_body", tr("Body"), tr("Whose parameters are plotted"));
    bodies_->setMinimumWidth(body_width);
    connect(bodies_, &QComboBox::activated, this,
            [this](int entry) { emit body_wanted(bodies_->itemData(entry).toInt()); });
    product_ = make_label("Label_ensemble_product");
    auto* head = new QHBoxLayout;
    head->setSpacing(gap);
    head->addWidget(make_caption(tr("Body"), bodies_));
    head->addWidget(bodies_);
    head->addStretch();
    grid_ = new QGridLayout;
    grid_->setSpacing(gap);
    for (int i = 0; i < most_plots; ++i) {
        auto* plot = new chart::GrapherWidget;
        plot->setObjectName("vsgraph_cross_" + QString::number(i));
        plot->setToolTip(
            tr("A dot a model, the square the fitted one; along the orange curve width times "
               "susceptibility stays what it is"));
        show::set_up_cross_plot(plot->chart());
        plots_.at(static_cast<std::size_t>(i)) = plot;
    }
    auto* holder = new QWidget;
    QVBoxLayout* column = make_column(holder);
    column->addLayout(head);
    column->addLayout(grid_, 1);
    column->addWidget(product_);
    return holder;
}

QWidget* Form_ensemble::make_buttons() {
    copy_ = make_button({"Command_copy_ensemble", "Copy table", "",
                         "The models as a table to the clipboard, one row a model"});
    save_ = make_button({"Command_save_ensemble", "Save table...", "",
                         "The models as a table of values with commas, one row a model"});
    auto* run = make_button({"Command_run_ensemble", "Run again...", "", "Look for models by other choices"});
    auto* close = make_button(
        {"Command_close_ensemble", "Close", "", "Close this window; Model, Uncertainty opens it again"});
    connect(copy_, &QPushButton::clicked, this, &Form_ensemble::copy_wanted);
    connect(save_, &QPushButton::clicked, this, &Form_ensemble::save_wanted);
    connect(run, &QPushButton::clicked, this, &Form_ensemble::run_wanted);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    auto* holder = new QWidget;
    auto* row = new QHBoxLayout(holder);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(gap);
    for (QPushButton* button : {copy_, save_}) row->addWidget(button);
    row->addStretch();
    for (QPushButton* button : {run, close}) row->addWidget(button);
    for (QPushButton* button : {copy_, save_, run}) button->setAutoDefault(false);
    return holder;
}

void Form_ensemble::show_words(const QString& words) {
    state_->setText(words);
    state_->show();
    content_->hide();
    for (QPushButton* button : {copy_, save_}) button->setEnabled(false);
}

void Form_ensemble::show_ensemble(const Ensemble& ensemble, const Workspace& workspace, int body,
                                  SusceptibilityUnit unit) {
    state_->hide();
    content_->show();
    for (QPushButton* button : {copy_, save_}) button->setEnabled(true);
    summary_->setText(summary_of(ensemble));
    words_->clear();
    for (const std::string& words : ensemble.words)
        words_->addItem(QString::fromStdString(words).replace(" %)", QStringLiteral("\u00A0%)")));
    fill_bodies(ensemble, workspace, body);
    show_plots(ensemble, workspace, unit);
}

void Form_ensemble::fill_bodies(const Ensemble& ensemble, const Workspace& workspace, int body) {
    const QSignalBlocker quiet(bodies_);
    bodies_->clear();
    for (const int number : show::plotted_bodies(workspace, ensemble))
        bodies_->addItem(
            tr("%1: %2").arg(number).arg(QString::fromStdString(shown_text(workspace.body(number).name))),
            number);
    bodies_->setCurrentIndex(std::max(0, bodies_->findData(body)));
    bodies_->setEnabled(bodies_->count() > 0);
}

/// As square as they can be.
void Form_ensemble::place_plots(int count) {
    const int columns = count <= 1 ? 1 : count <= 4 ? 2 : 3;
    for (int i = 0; i < most_plots; ++i) {
        chart::GrapherWidget* plot = plots_.at(static_cast<std::size_t>(i));
        grid_->removeWidget(plot);
        grid_->addWidget(plot, i / columns, i % columns);
        plot->setVisible(i < count);
    }
}

void Form_ensemble::show_plots(const Ensemble& ensemble, const Workspace& workspace,
                               SusceptibilityUnit unit) {
    const show::CrossPlots plots =
        show::cross_plots(workspace, ensemble, bodies_->currentData().toInt(), unit);
    const auto pairs = show::cross_pairs(plots);
    place_plots(static_cast<int>(pairs.size()));
    for (std::size_t i = 0; i < pairs.size(); ++i)
        show::draw_cross_plot(plots_.at(i)->chart(), plots, pairs[i].first, pairs[i].second);
    product_->setText(pairs.empty()   ? tr("A plot needs two of depth, dip, width and susceptibility free")
                      : plots.product ? QString::fromStdString(plots.product->words)
                                      : QString());
}

}  // namespace anomalis::window
