#pragma once

#include <QWidget>

#include "flow/find_state.h"
#include "window/shell/form_guards.h"

class QComboBox;
class QFrame;
class QGridLayout;
class QLabel;
class QProgressBar;
class QPushButton;
class QSpinBox;

namespace anomalis::flow {
class FindDesk;
}  // namespace anomalis::flow

namespace anomalis::window {

class ModelCards;

/// The right column while bodies are looked for: what is chosen, how far the search is, and the models that
/// it proposes as cards.
class FindPanel : public QWidget {
    Q_OBJECT

  public:
    explicit FindPanel(FormGuards& guards);

    /// Shows choices, texts and alternatives; nothing is told.
    void show_state(const flow::FindDesk& desk, const Workspace& workspace);
    QPushButton& keep_button() { return *keep_; }
    QPushButton& cancel_button() { return *cancel_; }
    /// The keys go to the cards, or, without any, to the button that begins.
    void take_focus();

  signals:
    void most_chosen(int most);
    void kinds_chosen(anomalis::flow::SheetKinds kinds);
    void channel_chosen(int channel);
    void present_chosen(bool free);
    void find_wanted();
    void keep_wanted();
    void cancel_wanted();
    void card_shown(int index);
    void take_wanted(int index);
    void close_wanted();

  protected:
    /// Enter begins a search, or presses the button that has the focus; Esc closes the panel.
    void keyPressEvent(QKeyEvent* event) override;

  private:
    QWidget* make_choices();
    QWidget* make_run();
    QWidget* make_outcome();
    QWidget* make_ending();
    QLabel* place_choice(QGridLayout& grid, int row, QWidget* control);
    void show_choices(const flow::FindState& state, const Workspace& workspace);
    void show_run(const flow::FindState& state, const Workspace& workspace);
    void show_outcome(const flow::FindState& state);
    void show_cards(const flow::FindDesk& desk, std::int32_t channel);

    FormGuards& guards_;
    QSpinBox* most_ = nullptr;
    QComboBox* kinds_ = nullptr;
    QComboBox* channel_ = nullptr;
    QComboBox* present_ = nullptr;
    QLabel* channel_caption_ = nullptr;
    QLabel* present_caption_ = nullptr;
    QLabel* window_ = nullptr;
    QPushButton* find_ = nullptr;
    QFrame* run_ = nullptr;
    QLabel* progress_words_ = nullptr;
    QProgressBar* progress_ = nullptr;
    QPushButton* keep_ = nullptr;
    QPushButton* cancel_ = nullptr;
    QWidget* outcome_ = nullptr;
    QLabel* label_ = nullptr;
    QLabel* remarks_ = nullptr;
    ModelCards* cards_ = nullptr;
    QPushButton* take_ = nullptr;
    int shown_revision_ = 0;  ///< of the alternatives whose cards are on show
};

}  // namespace anomalis::window
