#include "transform/transform_dialog.h"

#include <cmath>

#include "core/failure.h"
#include "core/numbers.h"
#include "core/paths.h"
#include "core/prompts.h"
#include "core/save_question.h"
#include "core/settings.h"
#include "core/text.h"
#include "transform/transform.h"

namespace anomalis::transform {

namespace {

constexpr double degrees_per_radian = 57.29577951;
constexpr double least_scale = 0.0001;
constexpr double least_distance = 0.1;  // m between two points
constexpr double second_point_east = 100;
constexpr std::string_view section = "TLX2024";
constexpr std::string_view size_key = "DefinePointTransformFormSize";
constexpr std::string_view folder_key = "DefinePointTransformCWD";

/// How a box is shown and checked. A box without a text for zero may hold it.
struct BoxRule {
    int tab;
    double PointTransform::*field;
    const char* pattern;
    const char* not_numeric;
    const char* is_zero;
};

constexpr const char* degrees = "0.000000";
constexpr const char* scale = "0.00000000";
constexpr const char* place = "0.0000";

/// In the order of TransformBox, which is that of the checks.
constexpr std::array<BoxRule, transform_box_count> rules{{
    {0, &PointTransform::rotation, degrees, "Rotation angle must be numeric", nullptr},
    {0, &PointTransform::x_origin, place, "Grid x origin must be numeric", nullptr},
    {0, &PointTransform::y_origin, place, "Grid y origin must be numeric", nullptr},
    {0, &PointTransform::x_offset, place, "New x origin must be numeric", nullptr},
    {0, &PointTransform::y_offset, place, "New y origin must be numeric", nullptr},
    {0, &PointTransform::x_scale, scale, "Scale for current x axis must be numeric",
     "Scale for current x axis must be non-zero"},
    {0, &PointTransform::y_scale, scale, "Scale for current y axis must be numeric",
     "Scale for current y axis must be non-zero"},
    {0, &PointTransform::elevation_shift, place, "Elevation shift must be numeric", nullptr},
    {0, &PointTransform::elevation_scale, scale, "Elevation scale must be numeric",
     "Elevation scale must be non-zero"},
    {1, &PointTransform::x_origin, place, "Original X1 must be numeric", nullptr},
    {1, &PointTransform::y_origin, place, "Original Y1 must be numeric", nullptr},
    {1, &PointTransform::x_offset, place, "New X1 must be numeric", nullptr},
    {1, &PointTransform::y_offset, place, "New Y1 must be numeric", nullptr},
    {1, &PointTransform::original_x2, place, "Original X2 must be numeric", nullptr},
    {1, &PointTransform::original_y2, place, "Original Y2 must be numeric", nullptr},
    {1, &PointTransform::new_x2, place, "New X2 must be numeric", nullptr},
    {1, &PointTransform::new_y2, place, "New Y2 must be numeric", nullptr},
    {1, &PointTransform::elevation_shift, place, "Elevation shift must be numeric", nullptr},
    // A scale of 0 passes here and becomes 1 when the record is brought up to date.
    {1, &PointTransform::elevation_scale, scale, "Elevation scale must be numeric", nullptr},
}};

const FileRequest save_request{"Save Transformation To File",
                               "Coordinate files (*.crd)|*.crd|All files (*.*)|*.*", "", "crd"};
const FileRequest load_request{"Load Transformation From File",
                               "Coordinate files (*.crd)|*.crd|All files (*.*)|*.*", "", "crd"};

double checked(double value) {
    if (!std::isfinite(value)) throw Fault(FaultKind::overflow);
    return value;
}

}  // namespace

TransformDialog::TransformDialog(const PointTransform& record, int tab, std::string folder, Prompts& prompts,
                                 std::vector<FileUse> kept)
    : transform_(record),
      tab_(tab == 1 ? 1 : 0),
      folder_(std::move(folder)),
      prompts_(prompts),
      kept_(std::move(kept)) {
    fill();
}

std::vector<TransformBox> TransformDialog::boxes_of(int tab) {
    std::vector<TransformBox> boxes;
    for (std::size_t i = 0; i < rules.size(); ++i)
        if (rules[i].tab == tab) boxes.push_back(static_cast<TransformBox>(i));
    return boxes;
}

void TransformDialog::fill() {
    for (std::size_t i = 0; i < rules.size(); ++i)
        texts_[i] = format_number(transform_.*rules[i].field, rules[i].pattern);
    filled_ = texts_;
}

void TransformDialog::edit(TransformBox box, const std::string& typed) {
    texts_.at(static_cast<std::size_t>(box)) = typed;
}

bool TransformDialog::edited() const {
    return rebuild_ || texts_ != filled_;
}

double TransformDialog::value_of(std::size_t rule) const {
    double value = transform_.*rules[rule].field;
    if (texts_[rule] != filled_[rule]) parse_number(texts_[rule], value);
    return value;
}

bool TransformDialog::texts_are_sound() const {
    for (std::size_t i = 0; i < rules.size(); ++i) {
        if (rules[i].tab != tab_) continue;
        const char* wrong = nullptr;
        if (!is_numeric(texts_[i])) {
            wrong = rules[i].not_numeric;
        } else if (rules[i].is_zero && std::abs(value_of(i)) < least_scale) {
            wrong = rules[i].is_zero;
        }
        if (!wrong) continue;
        prompts_.message(wrong);
        return false;
    }
    return true;
}

/// The second pair of points is made to agree, so that the other tab shows the same transform.
PointTransform TransformDialog::by_origins() const {
    PointTransform t = transform_;
    for (std::size_t i = 0; i < rules.size(); ++i)
        if (rules[i].tab == 0) t.*rules[i].field = value_of(i);
    if (!t.two_point_defined) {
        t.two_point_defined = true;
        t.original_x2 = checked(t.x_origin + second_point_east);
        t.original_y2 = t.y_origin;
    }
    const double turn = t.rotation / degrees_per_radian;
    const double dx = (t.original_x2 - t.x_origin) * t.x_scale;
    const double dy = (t.original_y2 - t.y_origin) * t.y_scale;
    t.new_x2 = checked(std::cos(turn) * dx + t.x_offset + std::sin(turn) * dy);
    t.new_y2 = checked(t.y_offset - std::sin(turn) * dx + std::cos(turn) * dy);
    return t;
}

std::optional<PointTransform> TransformDialog::by_points() const {
    const auto value = [&](TransformBox box) { return value_of(static_cast<std::size_t>(box)); };
    using Box = TransformBox;
    const TransformPoints p{
        value(Box::original_x1),       value(Box::original_y1),      value(Box::new_x1), value(Box::new_y1),
        value(Box::original_x2),       value(Box::original_y2),      value(Box::new_x2), value(Box::new_y2),
        value(Box::elevation_shift_1), value(Box::elevation_scale_1)};
    PointTransform t = transform_;
    if (std::hypot(p.original_x2 - p.original_x1, p.original_y2 - p.original_y1) < least_distance) {
        prompts_.message("First and second original points must be distinct");
    } else if (std::hypot(p.new_x2 - p.new_x1, p.new_y2 - p.new_y1) < least_distance) {
        prompts_.message("First and second new points must be distinct");
    } else if (define_transform_from_points(p, t, prompts_) != 0) {
        prompts_.message("The specified points cannot be used to define a meaningful transform");
    } else {
        return t;
    }
    return {};
}

bool TransformDialog::validate() {
    if (!edited()) return true;
    const MessageScope scope(prompts_);
    bool sound = false;
    report_failure(prompts_, "An error orrurred while calculating the transform: ", [&] {
        if (!texts_are_sound()) return;
        const std::optional<PointTransform> found = tab_ == 0 ? std::optional(by_origins()) : by_points();
        if (!found) return;
        transform_ = *found;
        rebuild_ = false;
        fill();
        sound = true;
    });
    return sound;
}

bool TransformDialog::choose_tab(int tab) {
    if (tab == tab_) return true;
    if (!validate()) return false;
    tab_ = tab;
    return true;
}

void TransformDialog::reset() {
    reset_transform(transform_);
    rebuild_ = false;
    fill();
}

bool TransformDialog::invert() {
    if (!validate()) return false;
    invert_transform(tab_, transform_);
    rebuild_ = tab_ == 1;
    fill();
    return true;
}

void TransformDialog::remember_folder(const std::string& path) {
    folder_ = folder_name(path);
}

bool TransformDialog::save_file() {
    if (!validate()) return false;
    FileRequest request = save_request;
    request.default_name = folder_;
    const auto path = ask_save_path(prompts_, request);
    if (!path) return false;
    const std::string refusal = overwrite_refusal({"The coordinate file", *path}, kept_);
    if (!refusal.empty()) {
        prompts_.message(refusal);
        return false;
    }
    remember_folder(*path);
    return save_transform_file(transform_, *path, prompts_) == 0;
}

bool TransformDialog::load_file() {
    FileRequest request = load_request;
    request.default_name = folder_;
    const auto path = prompts_.open_file(request);
    if (!path) return false;
    remember_folder(*path);
    if (load_transform_file(transform_, *path, prompts_) != 0) return false;
    rebuild_ = false;
    fill();
    return true;
}

std::optional<TransformFormSize> stored_transform_form_size(const Settings& settings) {
    const std::string text = settings.get(section, size_key);
    std::string_view rest = text;
    TransformFormSize size;
    if (!next_number(rest, size.width) || !next_number(rest, size.height)) return {};
    if (size.width < least_transform_form.width || size.height < least_transform_form.height) return {};
    return size;
}

void store_transform_form_size(const TransformFormSize& size, Settings& settings) {
    settings.set(section, size_key, number_to_text(size.width) + ";" + number_to_text(size.height));
}

std::string stored_transform_folder(const Settings& settings) {
    const std::string folder = settings.get(section, folder_key);
    return folder_exists(folder) ? folder : "";
}

void store_transform_folder(const std::string& folder, Settings& settings) {
    settings.set(section, folder_key, folder);
}

}  // namespace anomalis::transform
