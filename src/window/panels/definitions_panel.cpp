#include "window/panels/definitions_panel.h"

#include <utility>

#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>

#include "core/paths.h"
#include "flow/open_flow.h"
#include "window/widgets/chief_button.h"
#include "window/widgets/plain_text.h"

namespace anomalis::window {

namespace {

struct BoxPlace {
    edit::DefinitionBox box;
    int row;
    int pair;
    ControlText text;
};

const std::array box_places{
    BoxPlace{
        edit::DefinitionBox::first_data_line,
        1,
        0,
        {"Text_MAGINV_nhead", "First data line", "", "First line in file containing valid data (1 or more)"}},
    BoxPlace{edit::DefinitionBox::read_increment,
             1,
             1,
             {"Text_MAGINV_nstep", "Data read step", "",
              "Line read increment (starting at first data line; 1 or more)"}},
    BoxPlace{
        edit::DefinitionBox::last_data_line,
        2,
        0,
        {"Text_MAGINV_nLast", "Final Data Line", "",
         "Enter the final data line in the file to read (0 to read the entire file). "
         "It is counted from the first data line on; the head of the file shows which lines are in use"}},
    BoxPlace{edit::DefinitionBox::x_column,
             3,
             0,
             {"Text_MAGINV_xpos", "X column", "", "Column containing reading x location (1 or more)"}},
    BoxPlace{edit::DefinitionBox::y_column,
             3,
             1,
             {"Text_MAGINV_ypos", "Y column", "", "Column containing reading y location (0 if not used)"}},
    BoxPlace{edit::DefinitionBox::z_column,
             4,
             0,
             {"Text_MAGINV_zpos", "Sensor Height", "",
              "Column containing reading elevation (set to 0 if absent)"}},
    BoxPlace{edit::DefinitionBox::dtm_column,
             4,
             1,
             {"Text_MAGINV_dtm", "DTM column", "",
              "Column containing the surface elevation (set to 0 if absent)"}},
    BoxPlace{edit::DefinitionBox::mag_column,
             5,
             0,
             {"Text_MAGINV_magpos", "Mag column", "",
              "Column containing observed mag data value (set to 0 if absent)"}},
    BoxPlace{edit::DefinitionBox::grav_column,
             5,
             1,
             {"Text_MAGINV_gravpos", "Grav Column", "",
              "Column containing observed gravity data value (set to 0 if absent)"}},
    BoxPlace{edit::DefinitionBox::station_spacing,
             6,
             0,
             {"Text_maginv_station_spacing", "Interpolation spacing", "m",
              "Distance to use for resampling the profile (set to 0 to use the locations read from the data "
              "file)"}},
    BoxPlace{edit::DefinitionBox::min_station_spacing,
             6,
             1,
             {"Text_maginv_minimum_station_spacing", "Minimum Station Spacing", "m",
              "Minimum spacing permitted between consecutive locations. Closer locations are averaged."}}};

constexpr const char* length_tip = "Length of the profile in metres";
constexpr const char* spacing_tip = "Length divided by the number of data, m";
constexpr int number_row = 7;
constexpr int length_row = 8;
constexpr int find_row = 9;

}  // namespace

DefinitionsPanel::DefinitionsPanel(edit::Workbench& workbench, FormGuards& guards, ModelNews& news,
                                   QWidget* parent)
    : Panel("Frame_axm_data_file_definitions", tr("Observed Data"), parent),
      workbench_(workbench),
      guards_(guards),
      news_(news) {
    add_file_row();
    for (const BoxPlace& place : box_places) add_box(place.row, place.pair, place.box, place.text);
    load_button_ = make_button({"Command_load_locations", "Load locations", "",
                                "Read the data file and lay its stations on the profile"});
    load_button_->setProperty("chief", true);
    connect(load_button_, &QPushButton::clicked, this, &DefinitionsPanel::load_wanted);
    grid()->addWidget(load_button_, number_row, 5, 1, 2);
    add_results();
    find_button_ = make_button({"Command_find_first", "Find bodies", "",
                                "Look for bodies that explain the line, with what is usual, and show them "
                                "(Ctrl+F on the page of the model asks first)"});
    find_button_->hide();
    connect(find_button_, &QPushButton::clicked, this, &DefinitionsPanel::find_wanted);
    grid()->addWidget(find_button_, find_row, 5, 1, 2);
}

void DefinitionsPanel::add_file_row() {
    const ControlText text{"Text_data_locations", "Data File", "",
                           "The file with the observed data. Click, Enter or Space chooses another one"};
    file_box_ = new QLineEdit;
    name_control(*file_box_, text.name, tr(text.caption), tr(text.tip));
    file_box_->setReadOnly(true);
    file_box_->setPlaceholderText(tr("none chosen"));
    file_box_->installEventFilter(this);

    auto* button = make_button(
        {"Command_select_data_location_file", "...", "", "Choose the file with the observed data"});
    button->setFixedWidth(36);
    connect(button, &QPushButton::clicked, this, &DefinitionsPanel::data_file_wanted);

    grid()->addWidget(make_caption(tr(text.caption), file_box_), 0, 0);
    grid()->addWidget(file_box_, 0, 1, 1, 5);
    grid()->addWidget(button, 0, 6, Qt::AlignRight);
}

void DefinitionsPanel::add_box(int row, int pair, edit::DefinitionBox box, const ControlText& text) {
    auto* entry =
        new KeystrokeBox(text, guards_, [this, box](const std::string& typed) { return take(box, typed); });
    boxes_.at(static_cast<std::size_t>(box)) = entry;
    place(row, pair, text, entry);
}

void DefinitionsPanel::add_results() {
    const ControlText number{"Text_number_locations", "Number of Data", "",
                             "How many stations the profile has; blank while nothing is loaded"};
    const ControlText length{"Text_line_length", "Length/Spacing", "m", length_tip};
    const ControlText spacing{"Text_line_spacing", "", "m", spacing_tip};
    number_box_ = make_result_box(number);
    length_box_ = make_result_box(length);
    spacing_box_ = make_result_box(spacing);
    place(number_row, 0, number, number_box_);
    place(length_row, 0, length, length_box_);
    place(length_row, 1, spacing, spacing_box_);
}

bool DefinitionsPanel::take(edit::DefinitionBox box, const std::string& text) {
    switch (edit::change_definition_box(workbench_, box, text)) {
        case edit::DefinitionChange::unchanged:
            return true;
        case edit::DefinitionChange::refused:
            return false;
        case edit::DefinitionChange::accepted_keep_length:
            number_box_->clear();
            mark_extent(false);
            break;
        case edit::DefinitionChange::accepted:
            blank_results();
            break;
    }
    news_.tell(News::definition | News::line);
    return true;
}

void DefinitionsPanel::fill(bool with_final_line) {
    show_file_name();
    for (const edit::DefinitionBox box : edit::all_definition_boxes)
        if (with_final_line || box != edit::DefinitionBox::last_data_line)
            boxes_.at(static_cast<std::size_t>(box))
                ->fill(edit::definition_box_text(workbench_.session.workspace, box));
}

void DefinitionsPanel::show_file_name() {
    const std::string& path = workbench_.session.workspace.definition.data_file;
    file_box_->setText(shown(file_name(path)));
    file_box_->setToolTip(path.empty() ? file_box_->accessibleDescription() : plain_tip(shown(path)));
}

void DefinitionsPanel::show_result(const flow::LoadResult& result) {
    number_box_->setText(QString::fromStdString(result.number_of_locations));
    length_box_->setText(QString::fromStdString(result.line_length));
    spacing_box_->setText(QString::fromStdString(result.line_spacing));
    mark_extent(true);
}

/// The button that matters is the one of the next step.
void DefinitionsPanel::offer_find(bool offer) {
    find_button_->setVisible(offer);
    set_chief(*load_button_, !offer);
    set_chief(*find_button_, offer);
}

/// A change of the columns of Y, heights or ground leaves the two numbers: they are grey then, and say whose
/// they are.
void DefinitionsPanel::mark_extent(bool present) {
    const QString whose =
        present ? QString()
                : tr("\nOf the line as it was loaded before the change; Load locations finds it anew");
    for (const auto& [box, tip] :
         {std::pair{length_box_, length_tip}, std::pair{spacing_box_, spacing_tip}}) {
        box->setEnabled(present);
        box->setToolTip(tr(tip) + whose);
        box->setAccessibleDescription(box->toolTip());
    }
}

void DefinitionsPanel::blank_results() {
    number_box_->clear();
    length_box_->clear();
    spacing_box_->clear();
    mark_extent(true);
}

bool DefinitionsPanel::eventFilter(QObject* watched, QEvent* event) {
    if (watched != file_box_) return Panel::eventFilter(watched, event);
    bool chosen = event->type() == QEvent::MouseButtonRelease;
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        chosen = key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space;
    }
    if (!chosen || guards_.closed()) return Panel::eventFilter(watched, event);
    emit data_file_wanted();
    return true;
}

}  // namespace anomalis::window
