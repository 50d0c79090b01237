#pragma once

#include <array>

#include <QDialog>

#include "core/preferences.h"

namespace anomalis {
struct FitRecord;
struct Workspace;
}  // namespace anomalis
namespace anomalis::chart {
class GrapherWidget;
}  // namespace anomalis::chart
namespace anomalis::show {
struct FitView;
}  // namespace anomalis::show

class QLabel;
class QTableWidget;

namespace anomalis::window {

class CorrelationPicture;

/// Model, Fit results: what the last fit found, how well each parameter is known and what is left of the
/// data. It stands beside the window, which goes on working.
class Form_fit : public QDialog {
    Q_OBJECT

  public:
    explicit Form_fit(QWidget* parent);

    /// The fit, which the model is as fitted of.
    void show_fit(const FitRecord& fit, const Workspace& workspace, SusceptibilityUnit unit);
    /// A sentence in its place: there is none, or the model has changed since.
    void show_words(const QString& words);

  private:
    QWidget* make_numbers();
    QWidget* make_correlation();
    QWidget* make_residuals();
    void show_facts(const show::FitView& view);
    void show_tables(const show::FitView& view);
    void show_residuals(const FitRecord& fit, const Workspace& workspace);

    QLabel* words_;
    QWidget* content_;
    QLabel* facts_ = nullptr;
    QTableWidget* channels_ = nullptr;
    QTableWidget* parameters_ = nullptr;
    CorrelationPicture* correlation_ = nullptr;
    QLabel* pairs_ = nullptr;
    QLabel* remarks_ = nullptr;
    std::array<chart::GrapherWidget*, 2> residuals_{};
};

}  // namespace anomalis::window
