#include "window/shell/form_preferences.h"

#include <array>
#include <cmath>
#include <vector>

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "chart/qt/grapher_widget.h"
#include "core/threads.h"
#include "show/chart_look.h"
#include "window/shell/look.h"
#include "window/widgets/chief_button.h"
#include "window/widgets/panel.h"

namespace anomalis::window {

namespace {

constexpr int margin = 14, gap = 10, sample_height = 96, sample_width = 250;  // pixels
constexpr QSize swatch_size{36, 14};
constexpr int shortest_autosave = 10, longest_autosave = 3600;  // s
constexpr int most_threads = 256;
constexpr int widest_curve = 6;

QIcon swatch(const QWidget& widget, std::int32_t colour) {
    QPixmap picture(swatch_size * widget.devicePixelRatioF());
    picture.setDevicePixelRatio(widget.devicePixelRatioF());
    picture.fill(shown_colour(colour));
    QPainter painter(&picture);
    painter.setPen(widget.palette().color(QPalette::Mid));
    painter.drawRect(QRect(QPoint(0, 0), swatch_size).adjusted(0, 0, -1, -1));
    return picture;
}

QSpinBox* make_spin(const ControlText& text, int lowest, int highest) {
    auto* spin = new QSpinBox;
    name_control(*spin, text.name, Form_preferences::tr(text.caption), Form_preferences::tr(text.tip));
    spin->setRange(lowest, highest);
    if (*text.unit) spin->setSuffix(QString(" ") + text.unit);
    return spin;
}

QWidget* make_group(const QString& heading, QLayout* inside) {
    auto* group = new QGroupBox(heading);
    group->setLayout(inside);
    return group;
}

std::optional<std::int32_t> ask_desktop(QWidget* parent, std::int32_t colour) {
    const QColor chosen = QColorDialog::getColor(shown_colour(colour), parent);
    if (!chosen.isValid()) return {};
    return chart::colour_of(chosen.red(), chosen.green(), chosen.blue());
}

/// An anomaly and a curve that nearly explains it.
void draw_sample(chart::AX_Grapher& chart, const Preferences& preferences) {
    constexpr int points = 101, middle = points / 2;
    std::vector<double> places, observed, calculated;
    for (int i = 0; i < points; ++i) {
        const double x = 0.08 * (i - middle);
        places.push_back(i);
        observed.push_back(std::exp(-x * x) + 0.04 * std::sin(9 * x));
        calculated.push_back(0.92 * std::exp(-(x - 0.15) * (x - 0.15)) + 0.05);
    }
    const std::array rows{chart::ChartRow{chart::x_row, places},
                          chart::ChartRow{chart::line_series, observed},
                          chart::ChartRow{chart::line_series, calculated}};
    chart.RegisterData(rows);
    const auto look = [&](int series, const CurveLook& curve, const char* name) {
        chart.SetSeriesOptions(1, series, curve.colour, name, 0, -1, curve.width);
        chart.SetSeriesCasing(1, series, true);
    };
    look(1, preferences.observed, "Observed");
    look(2, preferences.calculated, "Calculated");
    chart.DisplayLegend(preferences.legend);
    chart.LightGrid(preferences.grid);
    chart.DisplayChart();
}

}  // namespace

Form_preferences::Form_preferences(const Preferences& preferences, Formulas new_line, QWidget* parent)
    : QDialog(parent), sample_(new chart::GrapherWidget) {
    setObjectName("Form_preferences");
    setWindowTitle(tr("Preferences"));
    ask_colour_ = [this](std::int32_t colour) { return ask_desktop(this, colour); };
    auto* page = new QVBoxLayout(this);
    page->setContentsMargins(margin, margin, margin, margin);
    page->setSpacing(gap);
    for (QWidget* part : {make_curves(), make_charts(), make_numbers(), make_work()}) page->addWidget(part);
    page->addStretch();
    page->addWidget(make_buttons());
    fill(preferences, new_line);
}

void Form_preferences::add_curve(QFormLayout& form, CurveBoxes& boxes, const char* name,
                                 const QString& caption) {
    boxes.colour = new QPushButton;
    name_control(*boxes.colour, (std::string("Command_colour_") + name).c_str(), tr("Colour"),
                 tr("The colour of the curve. One that is pale on white is drawn with a darker edge"));
    boxes.colour->setIconSize(swatch_size);
    boxes.colour->setAutoDefault(false);
    boxes.width = make_spin({"", "Width", "px", "How wide the curve is drawn, 1 to 6 pixels at 100 %"}, 1,
                            widest_curve);
    boxes.width->setObjectName(QString("Spin_width_") + name);
    auto* row = new QHBoxLayout;
    row->setSpacing(gap);
    row->addWidget(boxes.colour);
    row->addWidget(boxes.width);
    form.addRow(caption, row);
    connect(boxes.colour, &QPushButton::clicked, this, [this, &boxes] { choose_colour(boxes); });
    connect(boxes.width, &QSpinBox::valueChanged, this, &Form_preferences::changed);
}

QWidget* Form_preferences::make_curves() {
    auto* form = new QFormLayout;
    form->setSpacing(gap);
    add_curve(*form, observed_, "observed", tr("Observed"));
    add_curve(*form, calculated_, "calculated", tr("Calculated"));
    sample_->setObjectName("vsgraph_sample");
    sample_->setAccessibleName(tr("Sample of the curves"));
    sample_->setToolTip(tr("How the curves look on screen"));
    sample_->setFixedSize(sample_width, sample_height);
    sample_->setFocusPolicy(Qt::NoFocus);
    sample_->setAttribute(Qt::WA_TransparentForMouseEvents);
    chart::AX_Grapher& chart = sample_->chart();
    show::take_chart_look(chart);
    chart.DisplayAxes(false);
    chart.YAxisMin(-0.15);
    chart.YAxisMax(1.25);
    auto* row = new QHBoxLayout;
    row->setSpacing(2 * gap);
    row->addLayout(form);
    row->addWidget(sample_);
    return make_group(tr("Curves"), row);
}

QWidget* Form_preferences::make_charts() {
    dark_ = make_check({"Check_dark_charts", "Dark charts on a dark desktop", "",
                        "Charts on screen follow a dark desktop. Pictures and sheets stay on white"});
    legend_ = make_check({"Check_legend", "Legend in the charts", "",
                          "The names of the curves, on screen. Pictures always have them"});
    grid_ = make_check({"Check_light_grid", "Light grid in the charts", "",
                        "Faint lines at the numbers of the axes, on screen and in pictures"});
    auto* column = new QVBoxLayout;
    for (QCheckBox* check : {dark_, legend_, grid_}) {
        column->addWidget(check);
        connect(check, &QCheckBox::toggled, this, &Form_preferences::changed);
    }
    return make_group(tr("Charts"), column);
}

QWidget* Form_preferences::make_numbers() {
    formulas_ = make_list({"Combo_new_line_formulas", "Formulas of new lines", "",
                           "What a line begins with that is loaded without a workspace file, which has its "
                           "own; Model, Exact formulas changes those of the model at hand"},
                          {tr("Exact"), tr("Classic")});
    unit_ =
        make_list({"Combo_susceptibility_unit", "Susceptibility in", "",
                   "How susceptibilities are shown and keyed. Files keep micro SI; 1 SI is 1000000 micro SI "
                   "and 0.0796 cgs"},
                  {tr("micro SI"), tr("SI"), tr("cgs")});
    auto* language = new QLabel(tr(
        "Numbers have a decimal point and no thousands separators, whatever the language of the desktop."));
    language->setObjectName("Label_language_of_numbers");
    language->setWordWrap(true);
    language->setMinimumHeight(2 * language->fontMetrics().lineSpacing() + gap);
    make_quiet(*language);
    auto* form = new QFormLayout;
    form->setSpacing(gap);
    form->addRow(tr("Formulas of new lines"), formulas_);
    form->addRow(tr("Susceptibility in"), unit_);
    form->addRow(language);
    for (QComboBox* list : {formulas_, unit_})
        connect(list, &QComboBox::currentIndexChanged, this, &Form_preferences::changed);
    return make_group(tr("Model"), form);
}

QWidget* Form_preferences::make_work() {
    autosave_ = make_spin({"Spin_autosave", "Keep an unsaved model every", "s",
                           "How often the model is kept for the next start, 10 to 3600 s"},
                          shortest_autosave, longest_autosave);
    threads_ = make_spin({"Spin_threads", "Threads", "",
                          "How many threads calculations, fits and searches take, 1 to 256; 0 for all that "
                          "the machine has. Results do not hang on it"},
                         0, most_threads);
    threads_->setSpecialValueText(tr("All"));
    auto* form = new QFormLayout;
    form->setSpacing(gap);
    form->addRow(tr("Keep an unsaved model every"), autosave_);
    form->addRow(tr("Threads"), threads_);
    for (QSpinBox* spin : {autosave_, threads_})
        connect(spin, &QSpinBox::valueChanged, this, &Form_preferences::changed);
    return make_group(tr("Work"), form);
}

QWidget* Form_preferences::make_buttons() {
    auto* usual = make_button({"Command_default_preferences", "Defaults", "", "What comes with the program"});
    auto* keep = make_button({"Command_keep_preferences", "OK", "", "Keep them for the sessions to come"});
    auto* cancel = make_button({"Command_cancel_preferences", "Cancel", "", "Put everything back as it was"});
    keep->setDefault(true);
    set_chief(*keep, true);
    for (QPushButton* button : {usual, cancel}) button->setAutoDefault(false);
    connect(usual, &QPushButton::clicked, this, [this] {
        fill(Preferences(), Formulas::exact);
        emit edited();
    });
    connect(keep, &QPushButton::clicked, this, &Form_preferences::accept);
    connect(cancel, &QPushButton::clicked, this, &Form_preferences::reject);
    auto* holder = new QWidget;
    auto* row = new QHBoxLayout(holder);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(gap);
    row->addWidget(usual);
    row->addStretch();
    row->addWidget(keep);
    row->addWidget(cancel);
    return holder;
}

void Form_preferences::fill(const Preferences& preferences, Formulas new_line) {
    filling_ = true;
    const auto fill_curve = [this](CurveBoxes& boxes, const CurveLook& look) {
        boxes.chosen = look.colour;
        boxes.colour->setIcon(swatch(*this, look.colour));
        boxes.width->setValue(look.width);
    };
    fill_curve(observed_, preferences.observed);
    fill_curve(calculated_, preferences.calculated);
    dark_->setChecked(preferences.dark_charts);
    legend_->setChecked(preferences.legend);
    grid_->setChecked(preferences.grid);
    formulas_->setCurrentIndex(new_line == Formulas::exact ? 0 : 1);
    unit_->setCurrentIndex(static_cast<int>(preferences.susceptibility_unit));
    autosave_->setValue(preferences.autosave_seconds);
    threads_->setValue(preferences.threads);
    filling_ = false;
    show_sample();
}

Preferences Form_preferences::preferences() const {
    Preferences chosen;
    chosen.observed = {observed_.chosen, observed_.width->value()};
    chosen.calculated = {calculated_.chosen, calculated_.width->value()};
    chosen.dark_charts = dark_->isChecked();
    chosen.legend = legend_->isChecked();
    chosen.grid = grid_->isChecked();
    chosen.susceptibility_unit = static_cast<SusceptibilityUnit>(unit_->currentIndex());
    chosen.autosave_seconds = autosave_->value();
    chosen.threads = threads_->value();
    return chosen;
}

Formulas Form_preferences::new_line() const {
    return formulas_->currentIndex() == 0 ? Formulas::exact : Formulas::classic;
}

void Form_preferences::choose_colour(CurveBoxes& boxes) {
    const std::optional<std::int32_t> chosen = ask_colour_(boxes.chosen);
    if (!chosen) return;
    boxes.chosen = *chosen;
    boxes.colour->setIcon(swatch(*this, *chosen));
    changed();
}

void Form_preferences::show_sample() {
    draw_sample(sample_->chart(), preferences());
}

void Form_preferences::changed() {
    if (filling_) return;
    show_sample();
    emit edited();
}

}  // namespace anomalis::window
