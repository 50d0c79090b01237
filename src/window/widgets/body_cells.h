#pragma once

#include <QFontMetrics>
#include <QString>
#include <QStyledItemDelegate>

namespace anomalis::window {

/// The error that stands behind a value in `room` pixels. A value gives way in a shorter form alone: an
/// interval that leaves it no room stands as a sign that there is one, and the tip tells it.
QString fitting_error(const QFontMetrics& metrics, const QString& error, const QString& value, int room);

/// A cell's text in `room` pixels: words are elided, a number never is (core/fitting_number.h).
QString fitting_text(const QFontMetrics& metrics, const QString& text, int room);

/// Draws the cells of the parameter grid: the unit stands quietly behind the value, a standard error of the
/// last fit between them, below them the 90 % band where an ensemble knows one, the mark in the
/// middle of its cell. Edits texts in `Text_edit`.
class BodyCells : public QStyledItemDelegate {
    Q_OBJECT

  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    /// Only a text that the person has touched is taken over.
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
    bool editorEvent(QEvent*, QAbstractItemModel*, const QStyleOptionViewItem&, const QModelIndex&) override {
        return false;  // marks change by the view, wherever in the cell the click is
    }
};

}  // namespace anomalis::window
