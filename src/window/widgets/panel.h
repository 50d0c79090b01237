#pragma once

#include <QFrame>
#include <QString>
#include <QStringList>

class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QWidget;

namespace anomalis::window {

/// How a control is called, captioned and explained. `tip` holds meaning, unit and range.
struct ControlText {
    const char* name;
    const char* caption;
    const char* unit;
    const char* tip;
};

/// A card with a heading over a grid of captions and controls, two pairs a row.
class Panel : public QFrame {
    Q_OBJECT

  public:
    static constexpr int wide_captions = 152;  // pixels
    static constexpr int narrow_captions = 126;

    Panel(const char* object_name, const QString& heading, QWidget* parent = nullptr,
          int caption_width = wide_captions);

    QGridLayout* grid() { return grid_; }

    /// A control with its caption before it and its unit behind; `pair` 0 is the left, 1 the right one.
    QLabel* place(int row, int pair, const ControlText& text, QWidget* control);
    /// A control that stands under those of its pair, without a caption before it.
    void place_bare(int row, int pair, QWidget* control);

  private:
    QGridLayout* grid_;
};

/// Gives a control its name and its tip, to the person and to assistive tools.
void name_control(QWidget& control, const char* name, const QString& caption, const QString& tip);

QLabel* make_caption(const QString& caption, QWidget* control);
QCheckBox* make_check(const ControlText& text);
QPushButton* make_button(const ControlText& text);
/// A list whose width is that of its place, not of its entries.
QComboBox* make_list(const ControlText& text, const QStringList& entries);
/// A box that only shows.
QLineEdit* make_result_box(const ControlText& text);

}  // namespace anomalis::window
