#pragma once

#include <array>
#include <string>

#include <QStatusBar>

class QLabel;
class QProgressBar;

namespace anomalis::show {
struct PointerPanels;
}  // namespace anomalis::show

namespace anomalis::window {

/// The status bar `StatusBar`: message, chart, X, Y, east, north, misfit, numbered 1 to 7.
class StatusPanels : public QStatusBar {
    Q_OBJECT

  public:
    explicit StatusPanels(QWidget* parent = nullptr);

    void show_text(const QString& text);
    /// Behind what is shown.
    void add_text(const QString& text);
    void show_pointer(const show::PointerPanels& panels);
    void show_misfit(double data_norm, double gradient_norm);
    /// The misfit in the units of the channels, for its tip; blank texts are left out.
    void explain_misfit(const std::array<std::string, 2>& words);
    void clear_line();
    /// A text that was not accepted, and what holds in its place. It stands beside what the command that
    /// took the text has to tell, so that neither is lost.
    void show_refused(const QString& caption, const QString& text, const QString& instead);
    /// Another command begins: what was refused before it has been read.
    void forget_refused();
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
    void show_geographic(const QString& place);

    void show_message(const QString& words);

    QString refused_;
    bool just_refused_ = false;  ///< by the command that is still under way
    std::array<QLabel*, 7> panels_{};
    QLabel* geographic_ = nullptr;  ///< of the place under the pointer
    QProgressBar* progress_;
};

}  // namespace anomalis::window
