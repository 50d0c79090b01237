#pragma once

#include <memory>

#include <QDialog>

#include "flow/model_figure.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QSpinBox;

namespace anomalis::chart {
class ChartDialogs;
}  // namespace anomalis::chart

namespace anomalis::window {

/// The figure of the model as it will come out, what may be chosen of it, and the ways out: a file or a
/// printer. It closes when one of them is done.
class Form_figure : public QDialog {
    Q_OBJECT

  public:
    Form_figure(QWidget* parent, Session& session, const flow::ShownView& shown,
                chart::ChartDialogs& dialogs);
    ~Form_figure() override;

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    QWidget* make_choices();
    void take_last_choices();
    void keep_choices();
    flow::FigureChoice choice(chart::SurfaceSize size, bool further_sheets) const;
    chart::SurfaceSize sheet_size() const;
    /// The figure of the choices, and its picture.
    void lay_out();
    void show_sheet();
    void export_figure();
    void print_figure();

    Session& session_;
    const flow::ShownView shown_;
    chart::ChartDialogs& dialogs_;
    std::unique_ptr<flow::ModelFigure> figure_;
    QLabel* picture_;
    QLineEdit* title_ = nullptr;
    QComboBox* paper_ = nullptr;
    QComboBox* orientation_ = nullptr;
    QComboBox* format_ = nullptr;
    QSpinBox* sheet_ = nullptr;
    QLabel* sheets_ = nullptr;
};

}  // namespace anomalis::window
