#include "window/widgets/body_cells.h"

#include <algorithm>

#include <QApplication>
#include <QLineEdit>
#include <QPainter>
#include <QStyleOptionButton>

#include "core/fitting_number.h"
#include "core/numbers.h"
#include "edit/body_grid.h"
#include "window/shell/look.h"
#include "window/widgets/body_grid_model.h"

namespace anomalis::window {

namespace {

constexpr int margin = 4;  // pixels
constexpr int unit_width = 30;
constexpr int mark_size = 13;
constexpr double selected_tint = 0.14;
constexpr int band_margin = 10;
constexpr double band_height = 2, band_tint = 0.38;
constexpr double arrow_length = 6, arrow_half = 2, mark_half = 2, mark_height = 4;

QColor mixed(const QColor& ground, const QColor& tint, double part) {
    const auto mix = [&](int a, int b) { return static_cast<int>(a + (b - a) * part); };
    return {mix(ground.red(), tint.red()), mix(ground.green(), tint.green()),
            mix(ground.blue(), tint.blue())};
}

void paint_ground(QPainter& painter, const QStyleOptionViewItem& option) {
    const QPalette& palette = option.palette;
    if (option.state.testFlag(QStyle::State_Selected)) {
        painter.fillRect(option.rect, mixed(palette.color(QPalette::Base), palette.color(QPalette::Highlight),
                                            selected_tint));
        painter.setPen(palette.color(QPalette::Highlight));
        if (option.state.testFlag(QStyle::State_HasFocus))
            painter.drawRect(option.rect.adjusted(0, 0, -1, -1));
    }
    painter.setPen(palette.color(QPalette::Midlight));
    painter.drawLine(option.rect.bottomLeft(), option.rect.bottomRight());
}

void paint_mark(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) {
    const QVariant state = index.data(Qt::CheckStateRole);
    if (!state.isValid()) return;
    QStyleOptionButton mark;
    mark.palette = option.palette;
    mark.rect = QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, {mark_size, mark_size}, option.rect);
    const bool usable =
        option.state.testFlag(QStyle::State_Enabled) && index.flags().testFlag(Qt::ItemIsUserCheckable);
    mark.state = usable ? QStyle::State_Enabled : QStyle::State_None;
    mark.state |= state.toInt() == Qt::Checked ? QStyle::State_On : QStyle::State_Off;
    QApplication::style()->drawPrimitive(QStyle::PE_IndicatorCheckBox, &mark, &painter);
}

/// Paints a text at the right end of `room` and takes its width off.
void paint_behind(QPainter& painter, QRect& room, int width, Qt::Alignment side, const QString& text) {
    const QRect place(room.right() - width + 1, room.top(), width, room.height());
    painter.drawText(place, static_cast<int>(side | Qt::AlignVCenter), text);
    room.setRight(room.right() - width);
}

/// What there is to say beside a text, at the right end of its room; left out where it has none.
void paint_note(QPainter& painter, QRect& room, const QModelIndex& index) {
    const QString note = index.data(BodyGridModel::note_role).toString();
    if (note.isEmpty()) return;
    const QFontMetrics& metrics = painter.fontMetrics();
    const int width = metrics.horizontalAdvance(note) + margin;
    if (metrics.horizontalAdvance(index.data().toString()) + 2 * margin + width > room.width()) return;
    paint_behind(painter, room, width, Qt::AlignRight, note);
}

/// Where the value stands in its 90 % band: a line below it from end to end with a mark, an arrow in place of
/// an end that the data leave open. Beside the value there is no room: the interval of the fit stands there.
void paint_band(QPainter& painter, const QRect& cell, const QVariantList& band, const QPalette& palette) {
    const double place = band[0].toDouble();
    const bool open_below = band[1].toBool(), open_above = band[2].toBool();
    // On the line under the row, clear of the digits.
    const double below = cell.bottom() + 1, middle = below - arrow_half;
    const double from = cell.left() + band_margin, to = cell.right() + 1 - band_margin;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor accent = palette.color(QPalette::Highlight);
    const QColor bar = mixed(palette.color(QPalette::Base), accent, band_tint);
    painter.fillRect(QRectF(from, below - band_height, to - from, band_height), bar);
    painter.setPen(Qt::NoPen);
    painter.setBrush(bar);
    const auto arrow = [&](double end, double tip) {
        painter.drawPolygon(QPolygonF{{end, middle - arrow_half}, {tip, middle}, {end, middle + arrow_half}});
    };
    if (open_below) arrow(from, from - arrow_length);
    if (open_above) arrow(to, to + arrow_length);
    // A value that stands beside its band is seen to.
    const double at = std::clamp(from + place * (to - from), from - arrow_length, to + arrow_length);
    painter.fillRect(QRectF(at - mark_half, below - mark_height, 2 * mark_half, mark_height), accent);
    painter.restore();
}

}  // namespace

QString fitting_error(const QFontMetrics& metrics, const QString& error, const QString& value, int room) {
    const int left = room - metrics.horizontalAdvance(error) - 2 * margin;
    const bool fits = metrics.horizontalAdvance(fitting_text(metrics, value, left)) <= left;
    return fits ? error : QStringLiteral("±…");
}

QString fitting_text(const QFontMetrics& metrics, const QString& text, int room) {
    const auto fits = [&](const std::string& shorter) {
        return metrics.horizontalAdvance(QString::fromStdString(shorter)) <= room;
    };
    const QString number = QString::fromStdString(fitting_number(text.toStdString(), fits));
    // Words are cut where they must be; a number that has no room at all stands in the tip.
    return is_numeric(text.toStdString()) ? number : metrics.elidedText(text, Qt::ElideRight, room);
}

void BodyCells::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    painter->save();
    painter->setFont(option.font);
    paint_ground(*painter, option);
    QRect room = option.rect.adjusted(margin, 0, -margin, 0);
    if (index.column() == edit::grid_vary) {
        paint_mark(*painter, option, index);
        painter->restore();
        return;
    }
    if (index.column() == edit::grid_value) {
        const QVariantList band = index.data(BodyGridModel::band_role).toList();
        if (!band.isEmpty()) paint_band(*painter, option.rect, band, option.palette);
        const QString error = index.data(BodyGridModel::error_role).toString();
        painter->setPen(quiet_text(option.palette));
        const bool type = index.row() + 1 == edit::row_type && !index.data().toString().isEmpty();
        paint_behind(*painter, room, unit_width, Qt::AlignLeft,
                     type ? QStringLiteral("▾") : index.data(BodyGridModel::unit_role).toString());
        if (!error.isEmpty()) {
            const QFontMetrics& metrics = painter->fontMetrics();
            const QString shown = fitting_error(metrics, error, index.data().toString(), room.width());
            paint_behind(*painter, room, metrics.horizontalAdvance(shown) + margin, Qt::AlignLeft, shown);
        } else {
            paint_note(*painter, room, index);
        }
        room.setRight(room.right() - margin);
    }
    const QString limit = index.data(BodyGridModel::limit_role).toString();
    if (!limit.isEmpty()) {
        painter->setPen(quiet_text(option.palette));
        painter->drawText(room, static_cast<int>(Qt::AlignRight | Qt::AlignVCenter),
                          fitting_text(painter->fontMetrics(), limit, room.width()));
        painter->restore();
        return;
    }
    const bool caption = index.column() == edit::grid_property;
    if (caption) {
        painter->setPen(quiet_text(option.palette));
        paint_note(*painter, room, index);
    }
    painter->setPen(option.state.testFlag(QStyle::State_Enabled) ? option.palette.color(QPalette::Text)
                                                                 : quiet_text(option.palette));
    painter->drawText(room, static_cast<int>((caption ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter),
                      fitting_text(painter->fontMetrics(), index.data().toString(), room.width()));
    painter->restore();
}

QWidget* BodyCells::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                 const QModelIndex& index) const {
    auto* editor = new QLineEdit(parent);
    editor->setObjectName("Text_edit");
    editor->setFrame(false);
    editor->setAlignment(Qt::AlignRight);
    editor->setToolTip(index.data(Qt::ToolTipRole).toString());
    editor->setAccessibleName(index.siblingAtColumn(edit::grid_property).data().toString());
    editor->setAcceptDrops(false);
    editor->setAutoFillBackground(true);
    return editor;
}

void BodyCells::setEditorData(QWidget* editor, const QModelIndex& index) const {
    auto* line = qobject_cast<QLineEdit*>(editor);
    if (!line || line->isModified()) return;  // a redraw leaves what is being typed
    line->setText(index.data(Qt::EditRole).toString());
    line->selectAll();
}

void BodyCells::setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const {
    auto* line = qobject_cast<QLineEdit*>(editor);
    if (!line || !line->isModified()) return;
    line->setModified(false);  // the editor is asked again when it closes
    model->setData(index, line->text(), Qt::EditRole);
}

}  // namespace anomalis::window
