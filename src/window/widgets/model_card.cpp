#include "window/widgets/model_card.h"

#include <algorithm>
#include <optional>
#include <utility>

#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <QSignalBlocker>
#include <QStyle>
#include <QStyledItemDelegate>

#include "chart/qt/dark_ground.h"
#include "window/shell/look.h"

namespace anomalis::window {

namespace {

constexpr int gap = 6;       // between cards, and from a card's edge to what stands on it; pixels
constexpr int text_gap = 2;  // between its lines
constexpr double corner = 4;
constexpr QColor ground_brown{0x7A, 0x4F, 0x1E};
constexpr int outline_opacity = 130;
/// Far outside the picture, yet safe for the arithmetic of the painter.
constexpr double farthest = 50;

QPointF on(const QRectF& picture, const show::ThumbnailPoint& point) {
    return {picture.left() + std::clamp(point.x, -farthest, farthest) * picture.width(),
            picture.top() + std::clamp(point.y, -farthest, farthest) * picture.height()};
}

QPolygonF polygon_on(const QRectF& picture, const std::vector<show::ThumbnailPoint>& points) {
    QPolygonF polygon;
    for (const show::ThumbnailPoint& point : points) polygon << on(picture, point);
    return polygon;
}

QFont heading_font(QFont font) {
    font.setWeight(QFont::DemiBold);
    return font;
}

/// A heading on as many lines as it takes, two at most.
QStringList wrapped(const QString& text, const QFont& font, double width) {
    const QFontMetricsF metrics(font);
    if (metrics.horizontalAdvance(text) <= width) return {text};
    QString first, rest = text;
    while (true) {
        const QString next = first + rest.section(' ', 0, 0, QString::SectionIncludeTrailingSep);
        if (metrics.horizontalAdvance(next.trimmed()) > width || next.size() == text.size()) break;
        rest.remove(0, next.size() - first.size());
        first = next;
    }
    // Better after a comma than in the middle of a phrase.
    const qsizetype phrase = first.lastIndexOf(", ") + 2;
    if (phrase >= 2 && metrics.horizontalAdvance(text.mid(phrase)) <= width)
        return {text.left(phrase).trimmed(), text.mid(phrase)};
    if (first.isEmpty()) return {metrics.elidedText(text, Qt::ElideRight, width)};
    return {first.trimmed(), metrics.elidedText(rest, Qt::ElideRight, width)};
}

QColor ink(const std::optional<chart::ScreenPalette>& dark, const QColor& colour) {
    return dark ? shown_colour(
                      chart::shown_ink(*dark, chart::colour_of(colour.red(), colour.green(), colour.blue())))
                : colour;
}

/// As many phrases as there is room for, so that no number is cut; the tip has them all.
QString whole_phrases(QString text, const QFontMetrics& metrics, double width) {
    while (metrics.horizontalAdvance(text) > width && text.contains(", "))
        text.truncate(text.lastIndexOf(", "));
    return text;
}

class CardDelegate : public QStyledItemDelegate {
  public:
    explicit CardDelegate(ModelCards& cards) : QStyledItemDelegate(&cards), cards_(cards) {}

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override {
        const int lines = (cards_.heading_lines() + 1) * option.fontMetrics.height() + text_gap;
        return {0, ModelCards::picture_height + lines + 4 * gap};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        const ModelCard& card = cards_.card(index.row());
        const bool current = option.state & QStyle::State_Selected;
        const QRectF frame = QRectF(option.rect).adjusted(1, 1, -1, -gap);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        paint_frame(*painter, frame, option.palette, current);
        const QRectF inner = frame.adjusted(gap, gap, -gap, -gap);
        paint_section(*painter, QRectF(inner.topLeft(), QSizeF(inner.width(), ModelCards::picture_height)),
                      card.section, option.palette);
        paint_words(*painter, inner.adjusted(0, ModelCards::picture_height + gap, 0, 0), option, card);
        painter->restore();
    }

  private:
    static void paint_frame(QPainter& painter, const QRectF& frame, const QPalette& palette, bool current) {
        const QColor line = palette.color(current ? QPalette::Highlight : QPalette::Midlight);
        painter.setPen(QPen(line, current ? 2 : 1));
        painter.setBrush(palette.color(QPalette::Base));
        painter.drawRoundedRect(frame, corner, corner);
    }

    static void paint_words(QPainter& painter, const QRectF& room, const QStyleOptionViewItem& option,
                            const ModelCard& card) {
        const double line = option.fontMetrics.height();
        const auto words = [&](const QFont& font, const QColor& colour, double below, const QString& text) {
            painter.setFont(font);
            painter.setPen(colour);
            painter.drawText(QRectF(room.left(), room.top() + below, room.width(), line),
                             Qt::AlignLeft | Qt::AlignVCenter, text);
        };
        const QFont bold = heading_font(option.font);
        double below = 0;
        for (const QString& text : wrapped(card.kind, bold, room.width())) {
            words(bold, option.palette.color(QPalette::Text), below, text);
            below += line;
        }
        words(option.font, quiet_text(option.palette), below + text_gap,
              whole_phrases(card.numbers, option.fontMetrics, room.width()));
    }

    ModelCards& cards_;
};

}  // namespace

void paint_section(QPainter& painter, const QRectF& picture, const show::SectionThumbnail& section,
                   const QPalette& palette) {
    painter.save();
    painter.setClipRect(picture);
    const std::optional<chart::ScreenPalette> dark = chart::screen_palette(palette);
    painter.fillRect(picture, ink(dark, Qt::white));
    QColor outline = ink(dark, Qt::black);
    outline.setAlpha(outline_opacity);
    for (const show::SectionThumbnail::Shape& shape : section.shapes) {
        const QColor fill = shown_colour(shape.fill);
        painter.setPen(outline);
        painter.setBrush(fill);
        painter.drawPolygon(polygon_on(picture, shape.outline));
    }
    painter.setPen(QPen(ink(dark, ground_brown), 1));
    painter.drawPolyline(polygon_on(picture, section.ground));
    painter.restore();
    painter.setPen(palette.color(QPalette::Midlight));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(picture);
}

ModelCards::ModelCards(QWidget* parent) : QListWidget(parent) {
    setObjectName("List_found");
    setAccessibleName(tr("Models that were found"));
    setToolTip(
        tr("Each explains the line in another way, the best first. The charts show the one that is chosen; "
           "Up and Down flip through them, Enter takes it into the model"));
    setItemDelegate(new CardDelegate(*this));
    setFrameShape(QFrame::NoFrame);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setUniformItemSizes(true);
    viewport()->setAutoFillBackground(false);
    connect(this, &QListWidget::currentRowChanged, this, [this](int row) {
        if (row >= 0) emit card_shown(row);
    });
    connect(this, &QListWidget::itemDoubleClicked, this,
            [this](QListWidgetItem* item) { emit card_chosen(row(item)); });
}

void ModelCards::show_cards(std::vector<ModelCard> cards) {
    const QSignalBlocker quiet(this);
    clear();
    cards_ = std::move(cards);
    for (const ModelCard& card : cards_) {
        auto* item = new QListWidgetItem(card.kind + ", " + card.numbers, this);
        item->setToolTip(item->text());
    }
    updateGeometry();
}

int ModelCards::heading_lines() const {
    // Before the cards are laid out their width is not known, and a scroll bar may take some of it.
    const double room = picture_width - style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    const QFont bold = heading_font(font());
    const bool two = std::ranges::any_of(
        cards_, [&](const ModelCard& card) { return wrapped(card.kind, bold, room).size() > 1; });
    return two ? 2 : 1;
}

void ModelCards::show_current(int index) {
    const QSignalBlocker quiet(this);
    setCurrentRow(index, index < 0 ? QItemSelectionModel::Clear : QItemSelectionModel::ClearAndSelect);
    viewport()->update();
}

/// All cards, if there is room.
QSize ModelCards::sizeHint() const {
    int height = 2 * frameWidth();
    for (int i = 0; i < count(); ++i) height += sizeHintForRow(i);
    return {QListWidget::sizeHint().width(), height};
}

void ModelCards::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && currentRow() >= 0 && currentItem()->isSelected()) {
        emit card_chosen(currentRow());
        return event->accept();
    }
    if (enter || event->key() == Qt::Key_Escape) return event->ignore();
    QListWidget::keyPressEvent(event);
}

/// A click on the card that is the current one already shows it too.
void ModelCards::mousePressEvent(QMouseEvent* event) {
    const int before = currentRow();
    QListWidget::mousePressEvent(event);
    if (event->button() == Qt::LeftButton && before >= 0 && currentRow() == before) emit card_shown(before);
}

}  // namespace anomalis::window
