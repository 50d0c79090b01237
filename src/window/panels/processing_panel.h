#pragma once

#include <array>

#include "edit/display_check.h"
#include "window/panels/settings_panels.h"

class QLabel;

namespace anomalis::window {

/// Filters, base levels and elevations.
class ProcessingPanel : public SettingsPanel {
    Q_OBJECT

  public:
    ProcessingPanel(edit::Workbench& workbench, FormGuards& guards, ModelNews& news);

    void fill() override;
    /// Shows a base level that was found by loading or floating.
    void show_base_texts(const std::optional<std::string>& mag, const std::optional<std::string>& grav);
    /// Base levels and regionals have no meaning while a residual filter is on: the frame of the levels gives
    /// way to a line that says so, the lists of the regionals are off.
    void update_base_frame();
    /// Shows what a fit would take for a noise that is not keyed, "" where the readings tell none.
    void show_noise_estimates(const std::array<std::string, 2>& texts);
    /// What the filters' half-widths are in m hangs on the line, and their words on the kind of gradient.
    void show_filter_tips();
    /// What the boxes show that a display of the model depends on.
    edit::DisplayTexts display_texts() const;

  private:
    void add_filters();
    void add_gradient();
    void add_base_levels(int row);
    void add_regionals(int row);
    void add_noise(int row);
    void show_gradient_captions();

    QComboBox* smooth_type_ = nullptr;
    QCheckBox* total_gradient_ = nullptr;
    std::array<QLabel*, 2> gradient_labels_{};
    QWidget* base_frame_ = nullptr;
    QLabel* filtered_note_ = nullptr;
    std::array<QComboBox*, 2> regionals_{};
    std::array<CommitBox*, 2> base_boxes_{};
    std::array<QCheckBox*, 2> float_checks_{};
};

}  // namespace anomalis::window
