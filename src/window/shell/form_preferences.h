#pragma once

#include <functional>
#include <optional>

#include <QDialog>

#include "core/formulas.h"
#include "core/preferences.h"

class QCheckBox;
class QComboBox;
class QFormLayout;
class QGroupBox;
class QPushButton;
class QSpinBox;

namespace anomalis::chart {
class GrapherWidget;
}  // namespace anomalis::chart

namespace anomalis::window {

/// What a person likes, with a sample of the curves. Nothing is kept here: whoever shows the form hears of
/// every change at once and takes them back where it is rejected.
class Form_preferences : public QDialog {
    Q_OBJECT

  public:
    /// Asks for a colour in place of another; none where the person chose none.
    using AskColour = std::function<std::optional<std::int32_t>(std::int32_t colour)>;

    Form_preferences(const Preferences& preferences, Formulas new_line, QWidget* parent = nullptr);

    Preferences preferences() const;
    /// Of lines that are loaded without a workspace file.
    Formulas new_line() const;
    void set_ask_colour(AskColour ask) { ask_colour_ = std::move(ask); }

  signals:
    void edited();

  private:
    struct CurveBoxes {
        QPushButton* colour = nullptr;
        QSpinBox* width = nullptr;
        std::int32_t chosen = 0;
    };
    QWidget* make_curves();
    QWidget* make_charts();
    QWidget* make_numbers();
    QWidget* make_work();
    QWidget* make_buttons();
    void add_curve(QFormLayout& form, CurveBoxes& boxes, const char* name, const QString& caption);
    void fill(const Preferences& preferences, Formulas new_line);
    void choose_colour(CurveBoxes& boxes);
    void show_sample();
    void changed();

    AskColour ask_colour_;
    CurveBoxes observed_, calculated_;
    QCheckBox* dark_ = nullptr;
    QCheckBox* legend_ = nullptr;
    QCheckBox* grid_ = nullptr;
    QComboBox* formulas_ = nullptr;
    QComboBox* unit_ = nullptr;
    QSpinBox* autosave_ = nullptr;
    QSpinBox* threads_ = nullptr;
    chart::GrapherWidget* sample_;
    bool filling_ = false;
};

}  // namespace anomalis::window
