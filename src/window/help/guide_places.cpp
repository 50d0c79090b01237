#include "window/help/guide_places.h"

#include <array>

#include <QCoreApplication>
#include <QWidget>

namespace anomalis::window {

namespace {

constexpr GuideSpot the_window{"reference/window", "The window"};
constexpr GuideSpot transform{"reference/transform", "Coordinate transform"};
constexpr GuideSpot wrong{"reference/wrong", "When something is wrong"};
constexpr GuideSpot import{"reference/import", "A survey of many lines"};
constexpr GuideSpot survey_page{"reference/survey_page", "The survey page"};
constexpr GuideSpot field{"reference/place_and_field", "Place, date and the earth's field"};
constexpr GuideSpot errors{"reference/errors#noise-and-what-the-errors-are",
                           "Noise, and what the errors are"};
constexpr GuideSpot how_sure{"reference/errors#how-sure-a-model-is", "How sure a model is"};
constexpr GuideSpot data_file{"reference/data_file", "The data file"};
constexpr GuideSpot curves{"reference/curves", "Curves"};
constexpr GuideSpot finding{"reference/finding", "Finding bodies"};
constexpr GuideSpot demagnetisation{"reference/bodies#demagnetisation", "Demagnetisation"};
constexpr GuideSpot bodies{"reference/bodies", "Bodies"};
constexpr GuideSpot editing{"reference/editing", "Editing"};
constexpr GuideSpot fitting{"reference/fitting", "Fitting"};
constexpr GuideSpot charts{"reference/charts", "Charts"};
constexpr GuideSpot preferences{"reference/window#preferences", "Preferences"};
constexpr GuideSpot help{"reference/help", "Help"};
constexpr GuideSpot keyboard{"reference/keyboard", "Keyboard and mouse"};

constexpr std::array places{
    GuidePlace{"Form_define_point_transform", transform},
    GuidePlace{"Command_define_observed_transform", transform},
    GuidePlace{"Form_find_file", wrong},
    GuidePlace{"Form_import", import},
    GuidePlace{"Form_survey", survey_page},
    GuidePlace{"vsgraph_results", survey_page},
    GuidePlace{"Form_field", field},
    GuidePlace{"Frame_field", field},
    GuidePlace{"Form_fit", errors},
    GuidePlace{"Form_ensemble", how_sure},
    GuidePlace{"Form_uncertainty", how_sure},
    GuidePlace{"Form_load_report", data_file},
    GuidePlace{"Frame_axm_data_file_definitions", data_file},
    GuidePlace{"Text_data_file", data_file},
    GuidePlace{"Frame_data_processing_parameters", curves},
    GuidePlace{"Frame_base_levels", curves},
    GuidePlace{"Frame_find", finding},
    GuidePlace{"List_found", finding},
    GuidePlace{"Check_include_demagnetisation", demagnetisation},
    GuidePlace{"Grid_body", bodies},
    GuidePlace{"Frame_cylinder", bodies},
    GuidePlace{"Frame_body", editing},
    GuidePlace{"Frame_move_body", editing},
    GuidePlace{"Frame_invert", fitting},
    GuidePlace{"Frame_model_misfit", fitting},
    GuidePlace{"Picture_inversion_limits", fitting},
    GuidePlace{"vsgraph_survey", import},
    GuidePlace{"vsgraph_", charts},
    GuidePlace{"Dialog_print_preview", charts},
    GuidePlace{"Form_preferences", preferences},
    GuidePlace{"Form_guide", help},
    GuidePlace{"Form_keyboard_shortcuts", keyboard},
    GuidePlace{"Form_anomalis", the_window},
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

const GuideSpot& guide_spot(const QWidget* widget) {
    for (; widget; widget = widget->parentWidget())
        if (const GuidePlace* place = row_of(places, widget->objectName())) return place->spot;
    return the_window;
}

QString explanation_of(const QWidget& widget) {
    const Explanation* found = row_of(explanations, widget.objectName());
    return found ? QCoreApplication::translate("Help", found->words) : QString();
}

}  // namespace anomalis::window
