#pragma once

#include <array>
#include <functional>
#include <string>

#include <QStatusBar>

class QLabel;
class QProgressBar;
class QPushButton;
class QTimer;

namespace anomalis::show {
struct PointerPanels;
}  // namespace anomalis::show

namespace anomalis::window {

/// The status bar `StatusBar`: message, chart, X, Y, east, north, misfit, numbered 1 to 7.
class StatusPanels : public QStatusBar {
    Q_OBJECT

  public:
    explicit StatusPanels(QWidget* parent = nullptr);

    /// What a command has to tell. It goes after `text_time`, or with the next action.
    void show_text(const QString& text);
    /// What goes on: stays until another text takes its place.
    void show_work(const QString& text);
    /// Behind what is shown.
    void add_text(const QString& text);
    /// Words behind the message that can be clicked, "Show in folder"; they go with it.
    void show_link(const QString& words, std::function<void()> follow);
    void show_pointer(const show::PointerPanels& panels);
    void show_misfit(double data_norm, double gradient_norm);
    /// The misfit in the units of the channels, for its tip; blank texts are left out.
    void explain_misfit(const std::array<std::string, 2>& words);
    void clear_line();
    /// A text that was not accepted, and what holds in its place. It stands beside what the command that
    /// took the text has to tell, so that neither is lost.
    void show_refused(const QString& caption, const QString& text, const QString& instead);
    /// Another action begins: what was told before it has been read. What was told by the action itself,
    /// before events were served again, stays.
    void begin_action();
    /// Shows the bar of a long calculation at once, in percent; below 0 hides it.
    void show_progress(int percent);

  signals:
    /// The message was clicked: who has more to tell shows it.
    void message_clicked();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QLabel* panel(int number) { return panels_.at(static_cast<std::size_t>(number - 1)); }
    QProgressBar* make_progress_bar();
    void add_geographic();
    void show_units(const QString& of_value);
    void show_geographic(const QString& place);

    QPushButton* make_link();
    void show_message(const QString& words);
    void time_message();
    void end_message();

    static constexpr int text_time = 10'000;  // ms

    QString refused_;
    bool just_told_ = false;     ///< by the action that is still under way
    bool just_refused_ = false;  ///< the same of a text that was not accepted
    bool work_shown_ = false;
    QTimer* told_timer_;
    QPushButton* link_;
    std::function<void()> follow_link_;
    std::array<QLabel*, 7> panels_{};
    std::array<QLabel*, 7> units_{};  ///< null for a panel without one
    QLabel* geographic_ = nullptr;    ///< of the place under the pointer
    QProgressBar* progress_;
};

}  // namespace anomalis::window
