#pragma once

#include <array>
#include <string>

#include <QFrame>

#include "window/shell/form_guards.h"

class QCheckBox;
class QComboBox;
class QGridLayout;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;

namespace anomalis {
class Session;
}  // namespace anomalis
namespace anomalis::flow {
struct InversionPanel;
}  // namespace anomalis::flow

namespace anomalis::window {

class CommitBox;

/// The controls of the inversion, `Frame_invert`.
class InvertPanel : public QFrame {
    Q_OBJECT

  public:
    InvertPanel(const Session& session, FormGuards& guards);

    /// Shows texts and states; nothing is told.
    void show_panel(const flow::InversionPanel& panel);
    /// How far a run is.
    void show_progress(int iteration, int limit, const QString& words);
    QPushButton& stop_button() { return *stop_; }

  signals:
    void invert_wanted(int index);
    void stop_wanted();
    void restore_wanted();
    void reject_wanted();
    void channel_chosen(int index);
    void method_chosen(int index);
    void gradient_chosen(bool gradient);
    void iterations_typed(const QString& text);
    void starts_typed(const QString& text);
    void text_refused(const QString& caption, const QString& text, const QString& instead);

  private:
    void add_choices(QGridLayout& grid);
    CommitBox* make_limit_box();
    CommitBox* make_starts_box();
    QHBoxLayout* make_counts();
    QWidget* make_quality();
    QWidget* make_ending();
    QWidget* make_misfits();
    QWidget* make_buttons();
    QWidget* make_stop_frame();
    void show_choices(const flow::InversionPanel& panel);

    const Session& session_;
    FormGuards& guards_;
    QComboBox* channel_;
    QComboBox* method_;
    CommitBox* limit_;
    QLineEdit* done_;
    QCheckBox* gradient_;
    std::array<QLineEdit*, 4> misfit_{};
    std::array<QPushButton*, 2> invert_{};
    QPushButton* restore_ = nullptr;
    QPushButton* reject_ = nullptr;
    QLabel* status_;
    std::string limit_text_, starts_text_;
    CommitBox* starts_;
    std::array<QLabel*, 2> rms_{};
    QLabel* remark_;
    QFrame* stop_frame_ = nullptr;
    QProgressBar* progress_ = nullptr;
    QLabel* progress_words_ = nullptr;
    QPushButton* stop_ = nullptr;
};

}  // namespace anomalis::window
