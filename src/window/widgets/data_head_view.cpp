#include "window/widgets/data_head_view.h"

#include <QApplication>
#include <QFontDatabase>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>

#include "window/shell/look.h"

namespace anomalis::window {

namespace {

constexpr int margin_gap = 6;  // pixels

int tint_of(const show::HeadColumn& column) {
    return static_cast<int>(column.quantities.front());
}

}  // namespace

/// A strip beside the text that the view paints.
class DataHeadMargin : public QWidget {
  public:
    using Paint = void (DataHeadView::*)(QPainter&) const;
    DataHeadMargin(DataHeadView* view, Paint paint) : QWidget(view), view_(view), paint_(paint) {}

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setFont(view_->font());
        painter.fillRect(rect(), palette().color(QPalette::AlternateBase));
        (view_->*paint_)(painter);
    }

  private:
    DataHeadView* view_;
    Paint paint_;
};

DataHeadView::DataHeadView(QWidget* parent)
    : QPlainTextEdit(parent),
      ruler_(new DataHeadMargin(this, &DataHeadView::paint_ruler)),
      numbers_(new DataHeadMargin(this, &DataHeadView::paint_numbers)) {
    setObjectName("Text_data_file");
    setAccessibleName(tr("Head of the data file"));
    setToolTip(
        tr("The first lines of the data file. Columns in use are tinted and named; grey lines are not read"));
    setReadOnly(true);
    setAcceptDrops(false);
    setLineWrapMode(NoWrap);
    setTabChangesFocus(true);
    setFrameShape(StyledPanel);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    connect(horizontalScrollBar(), &QScrollBar::valueChanged, ruler_, [this] { ruler_->update(); });
    connect(verticalScrollBar(), &QScrollBar::valueChanged, numbers_, [this] { numbers_->update(); });
    fit_margins();
}

void DataHeadView::show_head(const show::DataHead& head) {
    head_ = head;
    std::u16string text;
    for (const show::HeadLine& line : head.lines) {
        if (&line != &head.lines.front()) text += u'\n';
        text += line.text;
    }
    setPlainText(QString::fromStdU16String(text));
    paint_lines();
    fit_margins();
    ruler_->update();
    numbers_->update();
}

QString DataHeadView::ruler_text(int column) const {
    QStringList names;
    for (const show::HeadQuantity quantity :
         head_.columns.at(static_cast<std::size_t>(column - 1)).quantities)
        names << QString::fromStdString(show::head_quantity_name(quantity));
    return names.isEmpty() ? QString::number(column) : QString::number(column) + '\n' + names.join('+');
}

void DataHeadView::paint_lines() {
    QTextCharFormat grey, italic;
    grey.setForeground(quiet_text(palette()));
    italic = grey;
    italic.setFontItalic(true);
    QTextBlock block = document()->firstBlock();
    for (const show::HeadLine& line : head_.lines) {
        QTextCursor cursor(block);
        if (line.kind != show::HeadLineKind::record) {
            cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
            cursor.mergeCharFormat(line.kind == show::HeadLineKind::comment ? italic : grey);
        } else {
            for (std::size_t i = 0; i < line.cells.size() && i < head_.columns.size(); ++i) {
                if (head_.columns[i].quantities.empty()) continue;
                cursor.setPosition(block.position() + line.cells[i].begin);
                cursor.setPosition(block.position() + line.cells[i].end, QTextCursor::KeepAnchor);
                QTextCharFormat tint;
                tint.setBackground(column_tint(palette(), tint_of(head_.columns[i])));
                cursor.mergeCharFormat(tint);
            }
        }
        block = block.next();
    }
}

void DataHeadView::fit_margins() {
    const QFontMetrics metrics(font());
    const int left = metrics.horizontalAdvance("000") + 2 * margin_gap;
    const int top = 2 * metrics.height() + margin_gap;
    setViewportMargins(left, top, 0, 0);
    const QRect inside = contentsRect();
    numbers_->setGeometry(inside.left(), inside.top() + top, left, inside.height() - top);
    ruler_->setGeometry(inside.left() + left, inside.top(), inside.width() - left, top);
}

void DataHeadView::resizeEvent(QResizeEvent* event) {
    QPlainTextEdit::resizeEvent(event);
    fit_margins();
}

void DataHeadView::changeEvent(QEvent* event) {
    QPlainTextEdit::changeEvent(event);
    if (event->type() != QEvent::PaletteChange && event->type() != QEvent::FontChange) return;
    fit_margins();
    paint_lines();
}

double DataHeadView::character_x(int position) const {
    const double width = QFontMetricsF(font()).horizontalAdvance(QLatin1Char('0'));
    return contentOffset().x() + document()->documentMargin() + position * width;
}

void DataHeadView::paint_ruler(QPainter& painter) const {
    QFont narrow = QApplication::font();
    narrow.setPointSizeF(narrow.pointSizeF() * 0.9);
    painter.setFont(narrow);
    const int line = QFontMetrics(font()).height();
    const int height = ruler_->height();
    for (std::size_t i = 0; i < head_.columns.size(); ++i) {
        const show::HeadColumn& column = head_.columns[i];
        const double left = character_x(column.begin);
        // A column's caption may be wider than its numbers; it has the room up to the next column.
        const double right = i + 1 < head_.columns.size()
                                 ? character_x(head_.columns[i + 1].begin) - margin_gap
                                 : left + 8 * line;
        const double own = character_x(column.end);
        const QString text = ruler_text(static_cast<int>(i) + 1);
        if (!column.quantities.empty()) {
            const double words = painter.fontMetrics().size(0, text).width() + 4;
            painter.fillRect(QRectF(left, 2, std::max(own - left, words), height - 4),
                             column_tint(palette(), tint_of(column)));
            painter.setPen(palette().color(QPalette::Text));
        } else {
            painter.setPen(quiet_text(palette()));
            painter.drawLine(QPointF(left, height - 2.5), QPointF(own, height - 2.5));
        }
        painter.drawText(QRectF(left + 2, 2, std::max(right, own) - left, height - 2),
                         Qt::AlignLeft | Qt::AlignTop, text);
    }
}

void DataHeadView::paint_numbers(QPainter& painter) const {
    painter.setPen(quiet_text(palette()));
    QTextBlock block = firstVisibleBlock();
    double top = blockBoundingGeometry(block).translated(contentOffset()).top();
    while (block.isValid() && top <= numbers_->height() && !head_.lines.empty()) {
        const double height = blockBoundingRect(block).height();
        painter.drawText(QRectF(0, top, numbers_->width() - margin_gap, height),
                         Qt::AlignRight | Qt::AlignTop, QString::number(block.blockNumber() + 1));
        top += height;
        block = block.next();
    }
}

}  // namespace anomalis::window
