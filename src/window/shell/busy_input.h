#pragma once

#include <functional>
#include <vector>

#include <QObject>
#include <QPointer>

class QAction;
class QMainWindow;
class QWidget;

namespace anomalis::window {

/// While a run serves the window at its yields: only its own buttons, the key Esc and a request to close get
/// through. Everything else is switched off, and what was held down is let go.
class BusyInput : public QObject {
    Q_OBJECT

  public:
    /// `turned_away` hears of each key that is not served, so that one that means much can be answered.
    BusyInput(QMainWindow& window, QWidget& stop_button, QAction& stop_action, std::function<void()> stop,
              std::function<void(QKeyCombination)> turned_away);

    /// A second button that gets through.
    void serve(QWidget& button) { second_button_ = &button; }
    /// A run begins, or has ended.
    void follow(bool running);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void switch_off();
    void switch_on();
    bool is_served(const QObject* watched) const;
    bool lets_through(const QObject* watched) const;

    QMainWindow& window_;
    QWidget& stop_button_;
    QWidget* second_button_ = nullptr;
    QAction& stop_action_;
    std::function<void()> stop_;
    std::function<void(QKeyCombination)> turned_away_;
    std::vector<QPointer<QWidget>> widgets_;
    std::vector<QPointer<QAction>> actions_;
    QPointer<QWidget> focus_;
};

}  // namespace anomalis::window
