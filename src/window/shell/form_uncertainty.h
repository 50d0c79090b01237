#pragma once

#include <QDialog>

#include "flow/uncertainty_desk.h"

class QCheckBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QSpinBox;

namespace anomalis::window {

/// Model, Uncertainty: what is asked for, and how far the run is. While one goes on it can be stopped, which
/// keeps the models that are there, or cancelled.
class Form_uncertainty : public QDialog {
    Q_OBJECT

  public:
    explicit Form_uncertainty(QWidget* parent);

    flow::UncertaintyChoice choice() const;
    /// The choices are open, or a run goes on.
    void show_running(bool running);
    void show_progress(const flow::UncertaintyProgress& progress);
    /// What stands in the way, or how the last run ended; a start that cannot be is switched off.
    void show_words(const QString& words, bool can_start);

    void accept() override;
    void reject() override;

  signals:
    void start_wanted();
    void stop_wanted();
    void cancel_wanted();

  private:
    QWidget* make_choices();
    QWidget* make_buttons();

    QSpinBox* samples_;
    QSpinBox* strike_;
    QCheckBox* regional_;
    QCheckBox* bodies_;
    QWidget* choices_;
    QProgressBar* bar_;
    QLabel* words_;
    QPushButton* start_ = nullptr;
    QPushButton* stop_ = nullptr;
    QPushButton* close_ = nullptr;
    bool running_ = false;
};

}  // namespace anomalis::window
