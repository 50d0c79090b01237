#pragma once

#include <array>

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
    void clear_line();
    /// A text that was not accepted.
    void show_refused(const QString& caption, const QString& text);
    /// Shows the bar of a long calculation at once, in percent; below 0 hides it.
    void show_progress(int percent);

  private:
    QLabel* panel(int number) { return panels_.at(static_cast<std::size_t>(number - 1)); }
    QProgressBar* make_progress_bar();

    std::array<QLabel*, 7> panels_{};
    QProgressBar* progress_;
};

}  // namespace anomalis::window
