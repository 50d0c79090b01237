#pragma once

#include <array>

#include <QDialog>

#include "core/preferences.h"

namespace anomalis {
struct Ensemble;
struct Workspace;
}  // namespace anomalis
namespace anomalis::chart {
class GrapherWidget;
}  // namespace anomalis::chart

class QComboBox;
class QGridLayout;
class QLabel;
class QListWidget;
class QPushButton;

namespace anomalis::window {

/// What the ensemble in force says: in words, and how depth, dip, width and susceptibility of one body hang
/// together over its models. It stands beside the window, which goes on working.
class Form_ensemble : public QDialog {
    Q_OBJECT

  public:
    static constexpr int most_plots = 6;

    explicit Form_ensemble(QWidget* parent);

    /// `body` is chosen if it has plots.
    void show_ensemble(const Ensemble& ensemble, const Workspace& workspace, int body,
                       SusceptibilityUnit unit);
    /// A sentence in its place: there is none, or the model has changed since.
    void show_words(const QString& words);

  signals:
    void body_wanted(int body);
    void copy_wanted();
    void save_wanted();
    void run_wanted();

  private:
    QWidget* make_words();
    QWidget* make_plots();
    QWidget* make_buttons();
    void fill_bodies(const Ensemble& ensemble, const Workspace& workspace, int body);
    void place_plots(int count);
    void show_plots(const Ensemble& ensemble, const Workspace& workspace, SusceptibilityUnit unit);

    QLabel* state_;
    QWidget* content_;
    QLabel* summary_ = nullptr;
    QListWidget* words_ = nullptr;
    QComboBox* bodies_ = nullptr;
    QLabel* product_ = nullptr;
    QGridLayout* grid_ = nullptr;
    std::array<chart::GrapherWidget*, most_plots> plots_{};
    QPushButton* copy_ = nullptr;
    QPushButton* save_ = nullptr;
};

}  // namespace anomalis::window
