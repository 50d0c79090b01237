#pragma once

#include <functional>

#include <QWidget>

namespace anomalis::window {

/// A bar that steps a parameter down and up: two buttons that repeat while they are held. While it has the
/// focus the arrow keys take the same steps as its buttons, with Shift always fine ones.
class ParameterStepper : public QWidget {
    Q_OBJECT

  public:
    ParameterStepper(const QString& object_name, bool fine, QWidget* parent = nullptr);

    /// What the tip says is found when it is shown, since it speaks of the present body.
    void set_tip(std::function<QString()> tip) { tip_ = std::move(tip); }
    /// What is shown in place of the tip's words, made from them: a picture above them.
    void set_tip_page(std::function<QString(const QString& words)> page) { tip_page_ = std::move(page); }

  signals:
    /// `direction` is +1 or -1.
    void stepped(bool fine, int direction);

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    bool fine_;
    std::function<QString()> tip_;
    std::function<QString(const QString&)> tip_page_;
};

}  // namespace anomalis::window
