#include "window/widgets/correlation_picture.h"

#include <algorithm>
#include <cmath>

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include "window/shell/look.h"

namespace anomalis::window {

namespace {

constexpr int most_names = 24;
constexpr int gap = 4;  // pixels

/// Blue and orange are told apart by colour-blind eyes too.
struct Hues {
    const char *below, *above;
};
constexpr Hues on_light{"#2166ac", "#b35806"}, on_dark{"#6aaee8", "#f0a350"};

QColor mixed(const QColor& ground, const QColor& tint, double part) {
    const auto mix = [&](int a, int b) { return static_cast<int>(std::lround(a + (b - a) * part)); };
    return {mix(ground.red(), tint.red()), mix(ground.green(), tint.green()),
            mix(ground.blue(), tint.blue())};
}

QString name_text(const show::CorrelationTable& table, int number) {
    return QString::fromStdString(table.names[static_cast<std::size_t>(number)]);
}

}  // namespace

CorrelationPicture::CorrelationPicture(QWidget* parent) : QWidget(parent) {
    setObjectName("Picture_correlation");
    setAccessibleName(tr("Correlations"));
    setToolTip(
        tr("How the parameters hang together: -1 or 1 where the data tell only a sum or a ratio of "
           "the two, 0 where each is known by itself"));
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setSizePolicy(policy);
}

void CorrelationPicture::show_table(const show::CorrelationTable& table) {
    table_ = table;
    colour_cells();
    update();
}

QColor CorrelationPicture::cell_colour(double coefficient) const {
    const QColor ground = palette().color(QPalette::Base);
    if (!std::isfinite(coefficient)) return palette().color(QPalette::Midlight);
    const Hues& hues = is_dark(palette()) ? on_dark : on_light;
    return mixed(ground, QColor(coefficient < 0 ? hues.below : hues.above),
                 std::min(std::abs(coefficient), 1.0));
}

void CorrelationPicture::colour_cells() {
    const int n = count();
    cells_ = n > 0 ? QImage(n, n, QImage::Format_RGB32) : QImage();
    for (int row = 0; row < n; ++row)
        for (int column = 0; column < n; ++column)
            cells_.setPixelColor(
                column, row,
                cell_colour(table_.at(static_cast<std::size_t>(row), static_cast<std::size_t>(column))));
}

bool CorrelationPicture::names_shown() const {
    return count() > 0 && count() <= most_names;
}

/// Whole pixels a cell while there are fewer cells than pixels.
QRect CorrelationPicture::square() const {
    int left = 0;
    if (names_shown())
        for (int i = 0; i < count(); ++i)
            left = std::max(left, fontMetrics().horizontalAdvance(name_text(table_, i)) + gap);
    const int below = names_shown() ? left : 0;
    const int room = std::max(std::min(width() - left, height() - below), 0) - 1;
    const int side = count() > 0 && room > count() ? room / count() * count() : room;
    return {left, 0, side, side};
}

void CorrelationPicture::paint_names(QPainter& painter, const QRect& room) const {
    painter.setPen(palette().color(QPalette::Text));
    const int n = count();
    for (int i = 0; i < n; ++i) {
        const int from = i * room.height() / n, to = (i + 1) * room.height() / n;
        painter.drawText(QRect(0, room.top() + from, room.left() - gap, to - from),
                         Qt::AlignRight | Qt::AlignVCenter, name_text(table_, i));
        painter.save();
        painter.translate(room.left() + (from + to) / 2.0, room.bottom() + gap);
        painter.rotate(90);
        painter.drawText(QRect(0, -(to - from) / 2, height() - room.bottom(), to - from),
                         Qt::AlignLeft | Qt::AlignVCenter, name_text(table_, i));
        painter.restore();
    }
}

void CorrelationPicture::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRect room = square();
    if (cells_.isNull() || room.width() < 1) return;
    QFont names = font();
    const int line = room.height() / count();
    if (names_shown() && QFontMetrics(names).height() > line) names.setPixelSize(std::max(line - 1, 6));
    painter.setFont(names);
    painter.drawImage(room, cells_);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(room.adjusted(0, 0, 0, 0));
    if (names_shown()) paint_names(painter, room);
}

QPoint CorrelationPicture::cell_middle(int row, int column) const {
    const QRect room = square();
    const int n = std::max(count(), 1);
    return {room.left() + (2 * column + 1) * room.width() / (2 * n),
            room.top() + (2 * row + 1) * room.height() / (2 * n)};
}

QString CorrelationPicture::cell_words(QPoint place) const {
    const QRect room = square();
    if (count() == 0 || room.width() < 1 || !room.contains(place)) return {};
    const int row = (place.y() - room.top()) * count() / room.height();
    const int column = (place.x() - room.left()) * count() / room.width();
    if (row == column) return name_text(table_, row);
    const double coefficient = table_.at(static_cast<std::size_t>(row), static_cast<std::size_t>(column));
    const QString number =
        std::isfinite(coefficient) ? QString::number(coefficient, 'f', 2) : tr("not determined");
    return tr("%1 and %2: %3").arg(name_text(table_, row), name_text(table_, column), number);
}

bool CorrelationPicture::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QWidget::event(event);
    const auto& help = static_cast<QHelpEvent&>(*event);
    const QString words = cell_words(help.pos());
    QToolTip::showText(help.globalPos(), words.isEmpty() ? toolTip() : words, this);
    return true;
}

void CorrelationPicture::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) colour_cells();
}

}  // namespace anomalis::window
