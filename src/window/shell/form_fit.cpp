#include "window/shell/form_fit.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include "chart/qt/grapher_widget.h"
#include "core/workspace.h"
#include "show/fit_view.h"
#include "show/residual_chart.h"
#include "window/shell/look.h"
#include "window/widgets/correlation_picture.h"

namespace anomalis::window {

namespace {

constexpr int margin = 12, gap = 8;  // pixels
constexpr QSize designed_size{1000, 700};
constexpr int chart_height = 150;

QString text(const std::string& words) {
    return QString::fromStdString(words);
}

QLabel* make_words(const char* name, const QString& tip) {
    auto* label = new QLabel;
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setToolTip(tip);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QLabel* make_heading(const QString& words) {
    auto* label = new QLabel(words);
    label->setProperty("heading", true);
    return label;
}

QTableWidget* make_table(const char* name, const QString& tip, const QStringList& headings) {
    auto* table = new QTableWidget(0, static_cast<int>(headings.size()));
    table->setObjectName(name);
    table->setAccessibleName(tip);
    table->setToolTip(tip);
    table->setHorizontalHeaderLabels(headings);
    table->verticalHeader()->hide();
    table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() + 6);
    table->horizontalHeader()->setHighlightSections(false);
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    table->horizontalHeader()->setStretchLastSection(true);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setShowGrid(false);
    table->setAlternatingRowColors(true);
    return table;
}

void set_row(QTableWidget& table, int row, const std::vector<std::string>& cells) {
    for (int column = 0; column < static_cast<int>(cells.size()); ++column) {
        auto* cell = new QTableWidgetItem(text(cells[static_cast<std::size_t>(column)]));
        cell->setTextAlignment(Qt::AlignVCenter | (column == 1 ? Qt::AlignRight : Qt::AlignLeft));
        table.setItem(row, column, cell);
    }
}

/// All rows without a bar of its own.
void take_height_of_rows(QTableWidget& table) {
    int height = table.horizontalHeader()->sizeHint().height() + 2 * table.frameWidth();
    for (int row = 0; row < table.rowCount(); ++row) height += table.rowHeight(row);
    table.setFixedHeight(height);
}

}  // namespace

Form_fit::Form_fit(QWidget* parent)
    : QDialog(parent),
      words_(make_words("Label_fit_state", tr("Whether there is a fit of the model as it stands"))),
      content_(new QWidget) {
    setObjectName("Form_fit");
    setWindowTitle(tr("Fit results"));
    auto* upper = new QHBoxLayout;
    upper->setSpacing(2 * gap);
    upper->addWidget(make_numbers(), 3);
    upper->addWidget(make_correlation(), 2);
    auto* column = new QVBoxLayout(content_);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(gap);
    column->addLayout(upper, 1);
    column->addWidget(make_residuals());
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    buttons->button(QDialogButtonBox::Close)->setToolTip(tr("Close this window; the fit is kept"));
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* page = new QVBoxLayout(this);
    page->setContentsMargins(margin, margin, margin, margin);
    page->setSpacing(gap);
    page->addWidget(words_);
    page->addWidget(content_, 1);
    page->addStretch();
    page->addWidget(buttons);
    resize(designed_size);
}

QWidget* Form_fit::make_numbers() {
    facts_ = make_words("Label_fit_facts", tr("Which fit it was"));
    channels_ = make_table("Table_fit_channels",
                           tr("What is left of each channel: root mean square, the noise that it was weighed "
                              "by, chi-square (near 1 when what is left is noise) and the distance over "
                              "which what is left is correlated"),
                           {tr("Channel"), tr("Stations"), tr("RMS"), tr("Noise"), tr("Chi-square"),
                            tr("Correlated"), tr("Regional")});
    channels_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    channels_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    parameters_ = make_table("Table_fit_parameters",
                             tr("The parameters that were free, with the interval that holds the truth in 9 "
                                "of 10 cases"),
                             {tr("Parameter"), tr("Value"), tr("90 % interval"), tr("Unit")});
    remarks_ = make_words("Label_fit_remarks", tr("What the fit says of itself"));
    auto* holder = new QWidget;
    auto* column = new QVBoxLayout(holder);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(gap);
    for (QWidget* part : std::initializer_list<QWidget*>{facts_, remarks_, channels_})
        column->addWidget(part);
    column->addWidget(parameters_, 1);
    return holder;
}

QWidget* Form_fit::make_correlation() {
    correlation_ = new CorrelationPicture;
    pairs_ = make_words("Label_fit_pairs", tr("The pairs that the data tell apart least"));
    auto* holder = new QWidget;
    auto* column = new QVBoxLayout(holder);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(gap);
    column->addWidget(make_heading(tr("Correlations")));
    column->addWidget(correlation_, 1);
    column->addWidget(pairs_);
    return holder;
}

QWidget* Form_fit::make_residuals() {
    auto* holder = new QWidget;
    auto* column = new QVBoxLayout(holder);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(gap);
    for (std::size_t i = 0; i < residuals_.size(); ++i) {
        residuals_[i] = new chart::GrapherWidget;
        residuals_[i]->setObjectName("vsgraph_residual_" + QString::number(i));
        residuals_[i]->setFixedHeight(chart_height);
        residuals_[i]->setToolTip(
            tr("Observed less regional less calculated; the dashed lines are twice the "
               "noise above and below 0"));
        show::set_up_residual_chart(residuals_[i]->chart());
        column->addWidget(residuals_[i]);
    }
    return holder;
}

void Form_fit::show_words(const QString& words) {
    words_->setText(words);
    words_->show();
    content_->hide();
}

void Form_fit::show_fit(const FitRecord& fit, const Workspace& workspace, SusceptibilityUnit unit) {
    const show::FitView view = show::fit_view(fit, workspace, unit);
    words_->hide();
    content_->show();
    show_facts(view);
    show_tables(view);
    correlation_->show_table(view.correlation);
    show_residuals(fit, workspace);
}

void Form_fit::show_facts(const show::FitView& view) {
    QStringList lines;
    for (const show::FitFact& fact : view.facts) lines << text(fact.caption) + ": " + text(fact.text);
    facts_->setText(lines.join("\n"));
    QStringList remarks;
    for (const std::string& remark : view.remarks) remarks << text(remark);
    remarks_->setText(remarks.join("\n"));
    remarks_->setVisible(!remarks.isEmpty());
    QStringList pairs;
    for (const std::string& pair : view.strongest) pairs << text(pair);
    pairs_->setText(pairs.isEmpty() ? tr("No two parameters hang together closely")
                                    : tr("Hang together most:") + "\n" + pairs.join("\n"));
}

void Form_fit::show_tables(const show::FitView& view) {
    channels_->setRowCount(static_cast<int>(view.channels.size()));
    int row = 0;
    for (const show::FitChannelRow& c : view.channels)
        set_row(*channels_, row++,
                {c.channel, c.stations, c.rms, c.noise, c.chi_square, c.correlation, c.regional});
    take_height_of_rows(*channels_);
    parameters_->setRowCount(static_cast<int>(view.parameters.size()));
    row = 0;
    for (const show::FitParameterRow& p : view.parameters)
        set_row(*parameters_, row++, {p.name, p.value, p.interval, p.unit});
}

void Form_fit::show_residuals(const FitRecord& fit, const Workspace& workspace) {
    for (const int channel : {channel_mag, channel_grav}) {
        chart::GrapherWidget& widget = *residuals_.at(static_cast<std::size_t>(channel));
        const show::ResidualCurve curve = show::residual_curve(fit, workspace, channel);
        widget.setVisible(!curve.distance.empty());
        show::draw_residuals(widget.chart(), curve,
                             channel == channel_mag ? "Residual of the magnetics" : "Residual of the gravity",
                             show::residual_unit(fit, workspace, channel));
    }
}

}  // namespace anomalis::window
