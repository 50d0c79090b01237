#include "window/panels/processing_panel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>

#include "window/shell/look.h"

namespace anomalis::window {

namespace {

constexpr int base_row = 3;
constexpr int regional_row = 4;
constexpr int noise_row = 5;
constexpr int elevation_row = 6;

}  // namespace

ProcessingPanel::ProcessingPanel(edit::Workbench& workbench, FormGuards& guards, ModelNews& news)
    : SettingsPanel(
          "Frame_data_processing_parameters",
          tr("Data Processing Parameters: Changing these values does not require reloading the data"),
          workbench, guards, news) {
    add_filters();
    add_gradient();
    add_base_levels(base_row);
    add_regionals(regional_row);
    add_noise(noise_row);
    show_filter_tips();
    add_box(elevation_row, 0, edit::SettingsBox::surface_elevation,
            {"Text_MAGINV_topo", "Surface elevation", "m",
             "Elevation of the ground, m, where the data file has no DTM column"});
    add_box(elevation_row, 1, edit::SettingsBox::sensor_offset,
            {"Text_MAGINV_sensor_offset", "Sensor offset", "m",
             "Height of the sensor above the ground, m (0 or more), where the file lacks one of the two"});
}

void ProcessingPanel::add_filters() {
    const ControlText type{"Combo_smooth_filter_type", "Smoothing filter", "",
                           "Kernel of the smoothing filter and of the residual filter"};
    smooth_type_ = new QComboBox;
    name_control(*smooth_type_, type.name, tr(type.caption), tr(type.tip));
    smooth_type_->addItems({"Triangular", "Sinc^2", "Hanning", "Hamming", "Boxcar"});
    place(0, 0, type, smooth_type_);
    connect(smooth_type_, &QComboBox::currentIndexChanged, this, [this](int index) {
        if (!this->guards().pass()) return;
        edit::change_smooth_filter_type(this->workbench(), index);
        tell();
    });
    add_box(0, 1, edit::SettingsBox::smooth_filter_width,
            {"Text_smooth_filter_width", "Half-width", "stations", ""});
    add_box(1, 0, edit::SettingsBox::residual_filter_width,
            {"Text_residual_filter_width", "Residual half-width", "stations", ""});
}

void ProcessingPanel::add_gradient() {
    const ControlText width{"Text_VG_filter_width", "VG Filter Half-Width", "taps", ""};
    const ControlText step{"Text_VG_filter_step", "VG filter spacing", "stations", ""};
    total_gradient_ = make_check({"Check_display_total_gradient", "Use the total gradient", "",
                                  "Build and chart the total gradient in place of the vertical gradient"});
    place_bare(1, 1, total_gradient_);
    gradient_labels_[0] = place(2, 0, width, make_box(edit::SettingsBox::vg_filter_width, width));
    gradient_labels_[1] = place(2, 1, step, make_box(edit::SettingsBox::vg_filter_step, step));
    gradient_labels_[0]->setObjectName("Label_VG_0");
    gradient_labels_[1]->setObjectName("Label_VG_1");
    connect(total_gradient_, &QCheckBox::toggled, this, [this](bool total) {
        show_gradient_captions();
        if (!this->guards().pass()) return;
        edit::change_total_gradient(this->workbench(), total);
        tell();
    });
}

void ProcessingPanel::add_base_levels(int row) {
    auto* frame = new Panel("Frame_base_levels", QString());
    frame->setProperty("card", false);
    frame->layout()->setContentsMargins(0, 0, 0, 0);
    QSizePolicy policy = frame->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    frame->setSizePolicy(policy);
    const std::array texts{
        ControlText{"Text_MAGINV_basemag", "Mag base level", "nT",
                    "Background level taken off the magnetic data, nT (blank takes the mean)"},
        ControlText{"Text_MAGINV_basegrav", "Gravity base level", "mGal",
                    "Background level taken off the gravity data, mGal (blank takes the mean)"}};
    const std::array floats{
        ControlText{"Check_float_base_0", "Float mag base", "",
                    "Let the base level float: observed and calculated curves have the same mean"},
        ControlText{"Check_float_base_1", "Float gravity base", "",
                    "Let the base level float: observed and calculated curves have the same mean"}};
    for (int channel = 0; channel < 2; ++channel) {
        const auto i = static_cast<std::size_t>(channel);
        base_boxes_[i] =
            make_box(channel == 0 ? edit::SettingsBox::mag_base : edit::SettingsBox::grav_base, texts[i]);
        frame->place(0, channel, texts[i], base_boxes_[i]);
        float_checks_[i] = make_check(floats[i]);
        frame->place_bare(1, channel, float_checks_[i]);
        connect(float_checks_[i], &QCheckBox::toggled, this, [this, channel](bool on) {
            if (!this->guards().pass()) return;
            edit::change_float_base(this->workbench(), channel, on);
            tell();
        });
    }
    base_frame_ = frame;
    filtered_note_ = new QLabel(tr("Base levels and regionals are off under a residual filter"));
    filtered_note_->setObjectName("Label_residual_filter");
    make_quiet(*filtered_note_);
    auto* holder = new QWidget;
    auto* either = new QGridLayout(holder);
    either->setContentsMargins(0, 0, 0, 0);
    either->addWidget(frame, 0, 0);
    either->addWidget(filtered_note_, 0, 0, Qt::AlignTop);
    grid()->addWidget(holder, row, 0, 1, grid()->columnCount());
}

void ProcessingPanel::add_regionals(int row) {
    const std::array texts{ControlText{"Combo_mag_regional", "Mag regional", "nT", ""},
                           ControlText{"Combo_grav_regional", "Gravity regional", "mGal", ""}};
    for (int channel = 0; channel < 2; ++channel) {
        const auto i = static_cast<std::size_t>(channel);
        auto* list = new QComboBox;
        name_control(*list, texts[i].name, tr(texts[i].caption), QString());
        list->addItems({tr("none"), tr("level"), tr("slope"), tr("bend"), tr("cubic")});
        regionals_[i] = list;
        place(row, channel, texts[i], list);
        connect(list, &QComboBox::currentIndexChanged, this, [this, channel](int index) {
            if (!this->guards().pass()) return;
            edit::change_regional(this->workbench(), channel, index);
            tell();
        });
    }
}

void ProcessingPanel::add_noise(int row) {
    add_box(row, 0, edit::SettingsBox::mag_noise,
            {"Text_mag_noise", "Mag noise", "nT",
             "Standard deviation of a magnetic reading, nT (above 0), by which a fit weighs the residuals; "
             "blank lets the fit estimate it from the line"});
    add_box(row, 1, edit::SettingsBox::grav_noise,
            {"Text_grav_noise", "Gravity noise", "mGal",
             "Standard deviation of a gravity reading, mGal (above 0), by which a fit weighs the residuals; "
             "blank lets the fit estimate it from the line"});
    for (const edit::SettingsBox setting : {edit::SettingsBox::mag_noise, edit::SettingsBox::grav_noise})
        box(setting)->setPlaceholderText(tr("estimated"));
}

void ProcessingPanel::fill() {
    SettingsPanel::fill();
    const SuspendEvents suspend(guards());
    const Workspace& workspace = workbench().session.workspace;
    smooth_type_->setCurrentIndex(edit::smooth_filter_index(workspace));
    total_gradient_->setChecked(workspace.processing.display_total_gradient == 1);
    float_checks_[0]->setChecked(workspace.mag.float_base == 1);
    float_checks_[1]->setChecked(workspace.grav.float_base == 1);
    for (int channel = 0; channel < 2; ++channel)
        regionals_.at(static_cast<std::size_t>(channel))
            ->setCurrentIndex(edit::regional_index(workspace, channel));
    show_gradient_captions();
    show_filter_tips();
    update_base_frame();
}

void ProcessingPanel::show_base_texts(const std::optional<std::string>& mag,
                                      const std::optional<std::string>& grav) {
    if (mag) base_boxes_[0]->fill(*mag);
    if (grav) base_boxes_[1]->fill(*grav);
}

void ProcessingPanel::show_noise_estimates(const std::array<std::string, 2>& texts) {
    constexpr std::array settings{edit::SettingsBox::mag_noise, edit::SettingsBox::grav_noise};
    for (std::size_t i = 0; i < settings.size(); ++i)
        box(settings.at(i))
            ->setPlaceholderText(texts.at(i).empty()
                                     ? tr("estimated")
                                     : tr("est. %1").arg(QString::fromStdString(texts.at(i))));
}

void ProcessingPanel::update_base_frame() {
    const bool filtered = workbench().session.workspace.processing.residual_filter_width > 0;
    base_frame_->setVisible(!filtered);
    filtered_note_->setVisible(filtered);
    const QString tip =
        filtered ? tr("Off under a residual filter, which takes the long wavelengths off already")
                 : tr("What comes from far beyond the line: a polynomial along the profile, in the unit of "
                      "the channel, found with the bodies and taken off the observed curve. A level floats "
                      "the base; slope, bend and cubic are degrees 1 to 3");
    for (QComboBox* list : regionals_) {
        list->setEnabled(!filtered);
        list->setToolTip(tip);
        list->setAccessibleDescription(tip);
    }
}

edit::DisplayTexts ProcessingPanel::display_texts() const {
    const auto text = [this](edit::SettingsBox setting) { return box(setting)->text().toStdString(); };
    return {text(edit::SettingsBox::residual_filter_width), text(edit::SettingsBox::vg_filter_width),
            text(edit::SettingsBox::mag_base), text(edit::SettingsBox::surface_elevation),
            text(edit::SettingsBox::sensor_offset)};
}

void ProcessingPanel::show_gradient_captions() {
    const edit::GradientCaptions captions = edit::gradient_captions(total_gradient_->isChecked());
    gradient_labels_[0]->setText(QString::fromUtf8(captions.width_label.data()));
    gradient_labels_[1]->setText(QString::fromUtf8(captions.step_label.data()));
}

void ProcessingPanel::show_filter_tips() {
    for (const edit::SettingsBox setting :
         {edit::SettingsBox::smooth_filter_width, edit::SettingsBox::residual_filter_width,
          edit::SettingsBox::vg_filter_width, edit::SettingsBox::vg_filter_step}) {
        const QString tip = QString::fromStdString(edit::filter_tip(workbench().session.workspace, setting));
        box(setting)->setToolTip(tip);
        box(setting)->setAccessibleDescription(tip);
    }
    for (std::size_t i = 0; i < gradient_labels_.size(); ++i)
        gradient_labels_[i]->setToolTip(gradient_labels_[i]->buddy()->toolTip());
}

}  // namespace anomalis::window
