#include "window/help/guide_places.h"

#include <array>

#include <QCoreApplication>
#include <QWidget>

namespace anomalis::window {

namespace {

constexpr const char* heading_of_the_rest = "The window";

constexpr std::array places{
    GuidePlace{"Form_define_point_transform", "Coordinate transform"},
    GuidePlace{"Command_define_observed_transform", "Coordinate transform"},
    GuidePlace{"Form_find_file", "When something is wrong"},
    GuidePlace{"Form_import", "A survey of many lines"},
    GuidePlace{"Form_survey", "The survey page"},
    GuidePlace{"vsgraph_results", "The survey page"},
    GuidePlace{"Form_field", "Place, date and the earth's field"},
    GuidePlace{"Frame_field", "Place, date and the earth's field"},
    GuidePlace{"Form_fit", "Noise, and what the errors are"},
    GuidePlace{"Form_ensemble", "How sure a model is"},
    GuidePlace{"Form_uncertainty", "How sure a model is"},
    GuidePlace{"Form_load_report", "The data file"},
    GuidePlace{"Frame_axm_data_file_definitions", "The data file"},
    GuidePlace{"Text_data_file", "The data file"},
    GuidePlace{"Frame_data_processing_parameters", "Curves"},
    GuidePlace{"Frame_base_levels", "Curves"},
    GuidePlace{"Frame_find", "Finding bodies"},
    GuidePlace{"List_found", "Finding bodies"},
    GuidePlace{"Check_include_demagnetisation", "Demagnetisation"},
    GuidePlace{"Grid_body", "Bodies"},
    GuidePlace{"Frame_cylinder", "Bodies"},
    GuidePlace{"Frame_body", "Editing"},
    GuidePlace{"Frame_move_body", "Editing"},
    GuidePlace{"Frame_invert", "Fitting"},
    GuidePlace{"Frame_model_misfit", "Fitting"},
    GuidePlace{"Picture_inversion_limits", "Fitting"},
    GuidePlace{"vsgraph_survey", "A survey of many lines"},
    GuidePlace{"vsgraph_", "Charts"},
    GuidePlace{"Dialog_print_preview", "Charts"},
    GuidePlace{"Form_preferences", "Preferences"},
    GuidePlace{"Form_guide", "Help"},
    GuidePlace{"Form_keyboard_shortcuts", "Help"},
    GuidePlace{"Form_anomalis", heading_of_the_rest},
};

struct Explanation {
    const char* name;
    const char* words;
};

constexpr std::array explanations{
    Explanation{
        "vsgraph_plan",
        "The plan: stations, outlines of the bodies on the ground and their reference points, east and "
        "north in m. A click on a body makes it the current one, its handles change it"},
    Explanation{
        "vsgraph_model_4",
        "The section: ground, sensors and bodies over the distance along the line, m. A click on a body "
        "makes it the current one, its handles change it; the right button adds one"},
    Explanation{"vsgraph_model",
                "Observed and calculated values over the distance along the line, m. The wheel zooms, a drag "
                "with the right button pans, a double click shows everything again"},
    Explanation{"vsgraph_survey", "The lines of the survey on the map. A click chooses one, the wheel zooms"},
    Explanation{"vsgraph_results_key", "What the signs of the map mean: depth, size, intervals, flags"},
    Explanation{"vsgraph_results",
                "The lines of the survey with the tops of the bodies. A click chooses a line, a double click "
                "opens it, the wheel zooms"},
    Explanation{"vsgraph_", "A chart: the wheel zooms, a double click shows everything again"},
    Explanation{"Tab_model",
                "The pages of the window: the data and how they are processed, the model, and the survey "
                "whose results "
                "are open"},
    Explanation{"Image_splitter", "The bar between two charts: a drag gives one of them more room"},
    Explanation{"StatusBar",
                "What was done last, where the pointer is, and how well the model explains the line"},
};

template <class Row, std::size_t count>
const Row* row_of(const std::array<Row, count>& rows, const QString& name) {
    if (name.isEmpty()) return nullptr;
    for (const Row& row : rows)
        if (name.startsWith(QLatin1String(row.name))) return &row;
    return nullptr;
}

}  // namespace

std::span<const GuidePlace> guide_places() {
    return places;
}

QString guide_heading(const QWidget* widget) {
    for (; widget; widget = widget->parentWidget())
        if (const GuidePlace* place = row_of(places, widget->objectName())) return place->heading;
    return heading_of_the_rest;
}

QString explanation_of(const QWidget& widget) {
    const Explanation* found = row_of(explanations, widget.objectName());
    return found ? QCoreApplication::translate("Help", found->words) : QString();
}

}  // namespace anomalis::window
