#pragma once

#include <QPlainTextEdit>

#include "show/data_head.h"

namespace anomalis::window {

class DataHeadMargin;

/// The head of the data file in a fixed-width view: line numbers at the left, a column ruler on top that
/// names the columns in use, tints behind them. Lines that are not read are grey, comments in italics.
class DataHeadView : public QPlainTextEdit {
    Q_OBJECT

  public:
    explicit DataHeadView(QWidget* parent = nullptr);

    void show_head(const show::DataHead& head);
    const show::DataHead& head() const { return head_; }
    /// The caption of a column in the ruler: its number, and the names of what it feeds.
    QString ruler_text(int column) const;

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    friend class DataHeadMargin;
    void fit_margins();
    void paint_lines();
    void paint_ruler(QPainter& painter) const;
    void paint_numbers(QPainter& painter) const;
    double character_x(int position) const;

    show::DataHead head_;
    DataHeadMargin* ruler_;
    DataHeadMargin* numbers_;
};

}  // namespace anomalis::window
