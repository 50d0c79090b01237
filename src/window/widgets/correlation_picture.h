#pragma once

#include <optional>

#include <QImage>
#include <QWidget>

#include "show/fit_view.h"

namespace anomalis::window {

/// The correlation coefficients of a fit as a square of coloured cells: one hue below 0, another above, the
/// ground where two parameters are independent. Names stand at the sides while they fit; a tip tells a cell.
class CorrelationPicture : public QWidget {
    Q_OBJECT

  public:
    explicit CorrelationPicture(QWidget* parent = nullptr);

    void show_table(const show::CorrelationTable& table);
    /// The words of the cell at a place of the widget; "" beside the square.
    QString cell_words(QPoint place) const;
    /// The colour of a coefficient on this widget's ground.
    QColor cell_colour(double coefficient) const;
    /// The middle of a cell, counted from 0.
    QPoint cell_middle(int row, int column) const;

    QSize minimumSizeHint() const override { return {240, 240}; }
    QSize sizeHint() const override { return {320, 320}; }

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    int count() const { return static_cast<int>(table_.size()); }
    bool names_shown() const;
    QRect square() const;
    void colour_cells();
    void paint_names(QPainter& painter, const QRect& room) const;

    show::CorrelationTable table_;
    QImage cells_;
};

}  // namespace anomalis::window
