#pragma once

#include <QObject>

class QHelpEvent;
class QKeyEvent;
class QMainWindow;
class QPoint;
class QWidget;

namespace anomalis::window {

class Actions;

/// What stands at a place of a widget, as rich text for "What's this?": its tip, of a parameter its sketch,
/// and where the guide says more. Empty where there is nothing to say.
QString whats_this(QWidget& widget, const QPoint& place);

/// F1 opens the guide at what has the focus, in every form of the window; Shift+F1 explains it; the menu lets
/// one point at what is to be explained. All of it leaves alone what is half typed.
class HelpController : public QObject {
    Q_OBJECT

  public:
    HelpController(QMainWindow& window, Actions& actions);

    void show_guide(QWidget* about);
    /// The guide at "reference/fitting#limits".
    void open_guide(const QString& page);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    bool is_ours(const QWidget& widget) const;
    bool key_pressed(QWidget& widget, const QKeyEvent& event);
    bool show_explanation(QWidget& widget, const QPoint& place);
    void explain_focus();

    QMainWindow& window_;
};

}  // namespace anomalis::window
