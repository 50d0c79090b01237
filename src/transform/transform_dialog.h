#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "core/file_use.h"
#include "core/point_transform.h"

namespace anomalis {
class Prompts;
class Settings;
}  // namespace anomalis

// The definition of a transform as someone edits it: by origin, scale and rotation (tab 0), or by two points
// known in both systems (tab 1). What the dialog shows and accepts, without its window.
namespace anomalis::transform {

enum class TransformBox : std::size_t {
    rotang,
    xorigin,
    yorigin,
    xoffset,
    yoffset,
    xscale,
    yscale,
    elevation_shift_0,
    elevation_scale_0,
    original_x1,
    original_y1,
    new_x1,
    new_y1,
    original_x2,
    original_y2,
    new_x2,
    new_y2,
    elevation_shift_1,
    elevation_scale_1
};
inline constexpr std::size_t transform_box_count = 19;

class TransformDialog {
  public:
    /// Edits a copy of `record`. `folder` is where the file dialogs start, "" for nowhere in particular.
    /// `kept` are the files that a coordinate file must not be written over.
    TransformDialog(const PointTransform& record, int tab, std::string folder, Prompts& prompts,
                    std::vector<FileUse> kept = {});

    int tab() const { return tab_; }
    const PointTransform& transform() const { return transform_; }
    const std::string& folder() const { return folder_; }
    /// Of the present tab; the other tab's are out of date.
    const std::string& text(TransformBox box) const { return texts_.at(static_cast<std::size_t>(box)); }
    /// The boxes of a tab, in the order in which they are checked.
    static std::vector<TransformBox> boxes_of(int tab);

    /// What was typed into a box.
    void edit(TransformBox box, const std::string& typed);
    /// Takes the present tab over. False, with a message, when its texts do not define a transform: they stay
    /// as typed and the record as it was. A tab that nobody edited is not stored, since tab 1 would make one
    /// mean scale of two, and a box that nobody edited keeps all digits of its value.
    bool validate();
    /// Shows the other tab, unless the present one is not valid.
    bool choose_tab(int tab);
    void reset();
    /// Makes the transform lead the other way. False when the present tab is not valid.
    bool invert();
    /// Ask for a coordinate file (.crd). After a cancel, or a failure, which is told, nothing has changed.
    bool save_file();
    bool load_file();

  private:
    void fill();
    bool edited() const;
    double value_of(std::size_t rule) const;
    bool texts_are_sound() const;
    PointTransform by_origins() const;
    std::optional<PointTransform> by_points() const;
    void remember_folder(const std::string& path);

    PointTransform transform_;
    int tab_;
    std::string folder_;
    Prompts& prompts_;
    std::vector<FileUse> kept_;
    std::array<std::string, transform_box_count> texts_;
    std::array<std::string, transform_box_count> filled_;
    bool rebuild_ = false;  ///< the points were exchanged: rotation and scales must be formed from them again
};

/// Width and height of the form, twips; no value when the settings hold none that is large enough.
struct TransformFormSize {
    double width = 0, height = 0;
};
inline constexpr TransformFormSize least_transform_form{6280, 7080};
std::optional<TransformFormSize> stored_transform_form_size(const Settings& settings);
void store_transform_form_size(const TransformFormSize& size, Settings& settings);

/// Where coordinate files were last read or written; "" when that is not kept or the folder is gone.
std::string stored_transform_folder(const Settings& settings);
void store_transform_folder(const std::string& folder, Settings& settings);

}  // namespace anomalis::transform
