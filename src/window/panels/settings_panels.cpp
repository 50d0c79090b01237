#include "window/panels/settings_panels.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

#include "window/shell/look.h"
#include "window/widgets/plain_text.h"

namespace anomalis::window {

SettingsPanel::SettingsPanel(const char* object_name, const QString& heading, edit::Workbench& workbench,
                             FormGuards& guards, ModelNews& news, int caption_width)
    : Panel(object_name, heading, nullptr, caption_width),
      workbench_(workbench),
      guards_(guards),
      news_(news) {}

CommitBox* SettingsPanel::make_box(edit::SettingsBox box, const ControlText& text) {
    const auto accept = [this, box](const std::string& typed) {
        const edit::SettingsChange change = edit::change_settings_box(workbench_, box, typed);
        if (change == edit::SettingsChange::stored) tell();
        return change != edit::SettingsChange::refused;
    };
    const auto stored = [this, box] { return edit::settings_box_text(workbench_.session.workspace, box); };
    auto* entry = new CommitBox(text, guards_, {accept, stored, CommitBox::Refused::kept});
    const QString caption = tr(text.caption);
    connect(entry, &CommitBox::text_refused, this, [this, caption, box](const QString& typed) {
        const std::string_view rule = edit::settings_box_rule(box);
        emit text_refused(caption, typed,
                          rule.empty() ? tr("the value stays") : QString::fromUtf8(rule.data(), rule.size()));
    });
    boxes_[box] = entry;
    return entry;
}

void SettingsPanel::add_box(int row, int pair, edit::SettingsBox box, const ControlText& text) {
    place(row, pair, text, make_box(box, text));
}

void SettingsPanel::fill() {
    for (const auto& [setting, entry] : boxes_) entry->refill();
}

CommitBox* SettingsPanel::box(edit::SettingsBox setting) const {
    const auto found = boxes_.find(setting);
    return found == boxes_.end() ? nullptr : found->second;
}

FieldPanel::FieldPanel(edit::Workbench& workbench, FormGuards& guards, ModelNews& news)
    : SettingsPanel("Frame_field", tr("Magnetic Field"), workbench, guards, news) {
    const ControlText intensity{"Text_mag_intensity", "Intensity", "nT",
                                "Strength of the ambient field, nT (above 0)"};
    const ControlText inclination{"Text_mag_inclination", "Inclination", "°",
                                  "Inclination of the ambient field in degrees, down positive"};
    const ControlText declination{"Text_mag_declination", "Declination", "°",
                                  "Declination of the ambient field in degrees, east of north positive"};
    field_boxes_ = {make_box(edit::SettingsBox::mag_intensity, intensity),
                    make_box(edit::SettingsBox::mag_inclination, inclination),
                    make_box(edit::SettingsBox::mag_declination, declination)};
    place(0, 0, intensity, field_boxes_[0]);
    place(1, 0, inclination, field_boxes_[1]);
    place(1, 1, declination, field_boxes_[2]);
    QPushButton* from_place =
        make_button({"Command_field_from_place", "From place and date...", "",
                     "Find the field by IGRF-14 for the place and the day of the survey"});
    place_bare(0, 1, from_place);
    connect(from_place, &QPushButton::clicked, this, &FieldPanel::place_and_date_wanted);
    remark_ = new QLabel;
    remark_->setObjectName("Label_field_origin");
    remark_->setTextFormat(Qt::PlainText);
    remark_->setWordWrap(true);
    make_quiet(*remark_);
    grid()->addWidget(remark_, 2, 0, 1, grid()->columnCount());
    remark_->hide();
}

void FieldPanel::fill() {
    SettingsPanel::fill();
    show_source();
}

void FieldPanel::show_source() {
    for (CommitBox* box : field_boxes_)
        if (!box->isModified() && !box->refused()) box->refill();
    const QString remark = shown(edit::field_remark(workbench().session.workspace));
    remark_->setText(remark);
    remark_->setVisible(!remark.isEmpty());
}

std::array<std::string, 3> FieldPanel::texts() const {
    return {field_boxes_[0]->text().toStdString(), field_boxes_[1]->text().toStdString(),
            field_boxes_[2]->text().toStdString()};
}

GraphOptionsPanel::GraphOptionsPanel(edit::Workbench& workbench, FormGuards& guards, ModelNews& news)
    : SettingsPanel("Frame_graph_display_options",
                    tr("Graph Display Parameters: Changing these values does not require reloading the data"),
                    workbench, guards, news, narrow_captions) {
    add_box(0, 0, edit::SettingsBox::profile_grid_spacing,
            {"Text_profile_grid_spacing", "Profile grid spacing", "m",
             "Step of the section's grid along the profile, m (0 draws none)"});
    add_box(0, 1, edit::SettingsBox::depth_grid_spacing,
            {"Text_depth_grid_spacing", "Depth grid spacing", "m",
             "Step of the section's grid in depth, m (0 draws none)"});
    add_box(1, 0, edit::SettingsBox::infinite_body_length,
            {"Text_infinite_body_length", "Infinite body length", "m",
             "Drawn length in the plan of a body without a strike limit, m (0 draws it across the plan)"});
    add_box(2, 0, edit::SettingsBox::finite_body_left_clip,
            {"Text_finite_body_left_clip", "Finite body left clip", "m",
             "Drawn length in the plan of a strike limited body before the profile, m (0 draws all of it)"});
    add_box(2, 1, edit::SettingsBox::finite_body_right_clip,
            {"Text_finite_body_right_clip", "Finite body right clip", "m",
             "Drawn length in the plan of a strike limited body beyond the profile, m (0 draws all of it)"});
    label_check_ = make_check({"Check_show_body_label", "Show body label", "",
                               "Write name and burial depth of the selected body into the section"});
    aspect_check_ =
        make_check({"Check_maintain_aspect_ratio", "Keep aspect ratio", "",
                    "Keep one metre across as long as one metre down while the section is zoomed"});
    place_bare(3, 0, label_check_);
    place_bare(3, 1, aspect_check_);
    connect(label_check_, &QCheckBox::toggled, this, [this](bool on) {
        if (!this->guards().pass()) return;
        edit::change_show_body_label(this->workbench(), on);
        tell();
    });
    connect(aspect_check_, &QCheckBox::toggled, this, [this](bool on) {
        if (!this->guards().pass()) return;
        edit::change_maintain_aspect_ratio(this->workbench(), on);
        tell();
    });
}

void GraphOptionsPanel::fill() {
    SettingsPanel::fill();
    const SuspendEvents suspend(guards());
    const DisplaySettings& display = workbench().session.workspace.display;
    label_check_->setChecked(display.show_body_label == 1);
    aspect_check_->setChecked(display.maintain_aspect_ratio == 1);
}

void GraphOptionsPanel::take_usual_values() {
    for (const auto& [setting, box] : boxes()) {
        if (!box->refused()) continue;
        const QString typed = box->text();
        edit::change_settings_box(workbench(), setting, "");
        box->refill();
        emit text_refused(box->accessibleName(), typed, tr("%1 is taken").arg(box->text()));
        tell();
    }
}

}  // namespace anomalis::window
