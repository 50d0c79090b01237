#pragma once

#include <QScrollBar>
#include <QWidget>

namespace anomalis::window {

/// Two small arrows in the place of a scroll bar used as a stepper: up and down, or in and out. The arrow
/// keys up and down, plus and minus step it while it has the focus.
class StepperBar : public QWidget {
    Q_OBJECT

  public:
    struct Side {
        QString text;
        QString tip;
        int direction;  ///< +1 or -1
    };
    StepperBar(const QString& object_name, const Side& upper, const Side& lower, QWidget* parent = nullptr);

  signals:
    void stepped(int direction);

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    int upper_;
    int lower_;
};

/// A horizontal scroll bar that the keyboard reaches. The arrow keys right and up raise it, left and down
/// lower it; of a scroll bar as it comes they do the opposite.
class RisingBar : public QScrollBar {
    Q_OBJECT

  public:
    explicit RisingBar(QWidget* parent = nullptr);

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    /// How far one arrow key moves it; `shift` is held or not.
    virtual int key_step(bool /*shift*/) const { return singleStep(); }
};

/// One whose arrow keys move it by a tenth of its way, with Shift by one step.
class PanBar : public RisingBar {
    Q_OBJECT

  public:
    using RisingBar::RisingBar;

  protected:
    int key_step(bool shift) const override;
};

}  // namespace anomalis::window
