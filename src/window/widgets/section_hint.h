#pragma once

#include <QFrame>

namespace anomalis::window {

/// How to begin, over a section without bodies: `Frame_empty_section`. It stands in the middle of the widget
/// that it lies over; clicks beside its buttons reach the chart below.
class SectionHint : public QFrame {
    Q_OBJECT

  public:
    explicit SectionHint(QWidget* over);

  signals:
    void find_wanted();
    void add_wanted();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    void place();
};

}  // namespace anomalis::window
