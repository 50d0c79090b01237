#pragma once

#include <QObject>

class QDialog;
class QWidget;

namespace anomalis {
class Settings;
}  // namespace anomalis

namespace anomalis::window {

/// Every form of a window opens at the size that a person gave it last, also in an earlier session, cut to
/// what the screen has. Forms of a fixed size, and the one that keeps its size itself, are left alone.
class FormSizes : public QObject {
    Q_OBJECT

  public:
    FormSizes(QWidget& window, Settings& settings);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    bool is_kept(const QDialog& form) const;
    void restore(QDialog& form) const;
    void keep(QDialog& form);

    QWidget& window_;
    Settings& settings_;
};

}  // namespace anomalis::window
