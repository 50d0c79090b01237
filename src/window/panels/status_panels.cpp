#include "window/panels/status_panels.h"

#include <algorithm>
#include <utility>

#include <QEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>

#include "core/numbers.h"
#include "show/pointer_panels.h"
#include "window/shell/look.h"
#include "window/widgets/plain_text.h"

namespace anomalis::window {

namespace {

constexpr int progress_width = 120, least_message = 60;  // pixels

struct PanelPlan {
    const char* caption;
    const char* widest;  ///< the panel keeps this width, so that nothing jumps
    const char* tip;
    const char* unit = "";  ///< behind the number; of the value under the pointer its widest
};

constexpr std::size_t value_panel = 3, north_panel = 5;  // of the plans

constexpr std::array<PanelPlan, 7> plans{
    {{"", "", "What happened last; a click shows the report of the load"},
     {"", "Model (Vertical stretch 00.00)", "The chart under the pointer"},
     {"X", "000000.00", "Distance along the profile under the pointer, m", "m"},
     {"Y", "-000000.00", "Value under the pointer, in the chart's unit", "mGal"},
     {"E", "000000.00", "East of the nearest station, m", "m"},
     {"N", "0000000.00", "North of the nearest station, m", "m"},
     {"", "RMS: 0000.000 0000.00",
      "Misfit of data and of gradient: length of the differences between observed and calculated over "
      "the number of intervals, no unit"}}};

/// Shows as much of its text as there is room for, so that a long one never widens the window.
class ElidedLabel : public QLabel {
  public:
    QSize minimumSizeHint() const override { return {least_message, QLabel::minimumSizeHint().height()}; }
    QSize sizeHint() const override { return minimumSizeHint(); }

  protected:
    void paintEvent(QPaintEvent*) override {
        const QRect room = contentsRect();
        QPainter(this).drawText(room, Qt::AlignLeft | Qt::AlignVCenter,
                                elided_at_word(fontMetrics(), text(), room.width()));
    }
};

}  // namespace

bool StatusPanels::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonRelease && watched == panel(1)) emit message_clicked();
    return QStatusBar::eventFilter(watched, event);
}

StatusPanels::StatusPanels(QWidget* parent)
    : QStatusBar(parent), told_timer_(new QTimer(this)), link_(make_link()) {
    setObjectName("StatusBar");
    told_timer_->setObjectName("Timer_status");
    told_timer_->setSingleShot(true);
    told_timer_->setInterval(text_time);
    connect(told_timer_, &QTimer::timeout, this, &StatusPanels::end_message);
    setSizeGripEnabled(false);
    for (std::size_t i = 0; i < plans.size(); ++i) {
        auto* holder = new QWidget;
        auto* row = new QHBoxLayout(holder);
        row->setContentsMargins(i == 0 ? 8 : 0, 2, 4, 2);
        row->setSpacing(6);
        if (i > 0) {
            auto* line = new QFrame;
            line->setFrameShape(QFrame::VLine);
            line->setForegroundRole(QPalette::Mid);
            row->addWidget(line);
        }
        if (plans[i].caption[0] != '\0') {
            auto* caption = new QLabel(tr(plans[i].caption));
            make_quiet(*caption);
            row->addWidget(caption);
        }
        panels_[i] = i == 0 ? new ElidedLabel : new QLabel;
        panels_[i]->setTextFormat(Qt::PlainText);
        panels_[i]->setObjectName("StatusBar_" + QString::number(i + 1));
        panels_[i]->setMinimumWidth(fontMetrics().horizontalAdvance(plans[i].widest));
        holder->setToolTip(tr(plans[i].tip));
        row->addWidget(panels_[i], i == 0 ? 1000 : 0);
        if (plans[i].unit[0] != '\0') {
            auto* unit = new QLabel(tr(plans[i].unit));
            make_quiet(*unit);
            unit->setMinimumWidth(fontMetrics().horizontalAdvance(plans[i].unit));
            row->addWidget(unit);
            unit->clear();
            units_[i] = unit;
        }
        if (i == 0) {
            panels_[i]->installEventFilter(this);
            row->addWidget(link_);
            row->addStretch(1);
            row->addWidget(make_progress_bar());
            addWidget(holder, 1);
        } else {
            addPermanentWidget(holder);
        }
        if (i == north_panel) add_geographic();
    }
}

void StatusPanels::add_geographic() {
    auto* holder = new QWidget;
    auto* row = new QHBoxLayout(holder);
    row->setContentsMargins(0, 2, 4, 2);
    geographic_ = new QLabel;
    geographic_->setTextFormat(Qt::PlainText);
    geographic_->setObjectName("StatusBar_geographic");
    geographic_->setMinimumWidth(fontMetrics().horizontalAdvance("000.00000 W, 00.00000 S"));
    holder->setToolTip(tr("Longitude and latitude of the same place, WGS 84 degrees"));
    row->addWidget(geographic_);
    addPermanentWidget(holder);
    holder->hide();
}

/// It stands in the room of the message.
QProgressBar* StatusPanels::make_progress_bar() {
    progress_ = new QProgressBar;
    progress_->setObjectName("ProgressBar_load");
    progress_->setToolTip(tr("How far the work has come, percent"));
    progress_->setFixedWidth(progress_width);
    progress_->setRange(0, 100);
    progress_->hide();
    return progress_;
}

QPushButton* StatusPanels::make_link() {
    auto* link = new QPushButton;
    link->setObjectName("StatusBar_link");
    link->setProperty("link", true);
    link->setToolTip(tr("What the message offers"));
    link->setCursor(Qt::PointingHandCursor);
    link->setFocusPolicy(Qt::TabFocus);
    link->hide();
    connect(link, &QPushButton::clicked, this, [this] {
        if (const auto follow = follow_link_) follow();
    });
    return link;
}

void StatusPanels::show_link(const QString& words, std::function<void()> follow) {
    follow_link_ = std::move(follow);
    link_->setText(shown(words.toStdString()).replace("&", "&&"));
    link_->setToolTip(plain_tip(panel(1)->text()));
    link_->show();
    // Beside its message, not at the end of the room for one.
    panel(1)->setMaximumWidth(panel(1)->fontMetrics().horizontalAdvance(panel(1)->text()) + 2);
}

void StatusPanels::show_message(const QString& words) {
    const QString text = shown(words.toStdString());
    panel(1)->setText(text);
    panel(1)->setToolTip(plain_tip(text));
    link_->hide();
    panel(1)->setMaximumWidth(QWIDGETSIZE_MAX);
    work_shown_ = false;
    told_timer_->stop();
}

/// The message has been told, and its time runs.
void StatusPanels::time_message() {
    told_timer_->start();
    just_told_ = true;
    QTimer::singleShot(0, this, [this] { just_told_ = just_refused_ = false; });
}

/// Whoever has the pointer on it is still reading, or aims at the link.
void StatusPanels::end_message() {
    if (panel(1)->parentWidget()->underMouse()) return told_timer_->start();
    refused_.clear();
    show_message(QString());
}

void StatusPanels::add_text(const QString& text) {
    const QString before = panel(1)->text();
    show_message(before.isEmpty() ? text : before + ". " + text);
    time_message();
}

void StatusPanels::show_text(const QString& text) {
    show_message(refused_.isEmpty() || text.isEmpty() ? refused_ + text : refused_ + ". " + text);
    time_message();
}

void StatusPanels::show_work(const QString& text) {
    show_text(text);
    told_timer_->stop();
    work_shown_ = true;
}

void StatusPanels::show_refused(const QString& caption, const QString& text, const QString& instead) {
    const QString words =
        tr("%1: “%2” is not accepted, %3").arg(caption, text.left(40).simplified(), instead);
    refused_ = refused_.isEmpty() ? words : refused_ + ". " + words;
    show_message(refused_);
    time_message();
    just_refused_ = true;
}

void StatusPanels::begin_action() {
    if (!just_refused_) refused_.clear();
    if (!just_told_ && !work_shown_) show_message(QString());
}

void StatusPanels::show_pointer(const show::PointerPanels& panels) {
    panel(2)->setText(QString::fromStdString(panels.chart));
    panel(3)->setText(QString::fromStdString(panels.x));
    panel(4)->setText(QString::fromStdString(panels.y));
    panel(5)->setText(QString::fromStdString(panels.east));
    panel(6)->setText(QString::fromStdString(panels.north));
    show_units(QString::fromStdString(panels.y_unit));
    show_geographic(QString::fromStdString(panels.geographic));
}

/// A unit stands behind a number alone.
void StatusPanels::show_units(const QString& of_value) {
    for (std::size_t i = 0; i < plans.size(); ++i)
        if (units_[i])
            units_[i]->setText(panels_[i]->text().isEmpty() ? QString()
                               : i == value_panel           ? of_value
                                                            : tr(plans[i].unit));
}

/// It takes no room where no coordinate system is known; where one is it keeps its place.
void StatusPanels::show_geographic(const QString& place) {
    geographic_->setText(place);
    if (!place.isEmpty()) geographic_->parentWidget()->show();
}

void StatusPanels::show_misfit(double data_norm, double gradient_norm) {
    panel(7)->setText("RMS: " + QString::fromStdString(format_number(data_norm, "0.000")) + " " +
                      QString::fromStdString(format_number(gradient_norm, "0.00")));
}

void StatusPanels::explain_misfit(const std::array<std::string, 2>& words) {
    QString tip = tr(plans.back().tip);
    for (const std::string& line : words)
        if (!line.empty()) tip += "\n" + QString::fromStdString(line);
    panel(7)->parentWidget()->setToolTip(tip);
}

void StatusPanels::show_progress(int percent) {
    progress_->setVisible(percent >= 0);
    progress_->setValue(std::max(percent, 0));
    if (percent < 0 || !isVisible()) return;
    // The work that follows lets no event through.
    progress_->parentWidget()->layout()->activate();
    repaint();
}

void StatusPanels::clear_line() {
    for (int number = 2; number <= 7; ++number) panel(number)->clear();
    show_units({});
    geographic_->clear();
    geographic_->parentWidget()->hide();
}

}  // namespace anomalis::window
