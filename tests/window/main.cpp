#include <array>
#include <memory>

#include <QApplication>
#include <QTest>

#include "window/form_tests.h"
#include "window/shell/look.h"

namespace anomalis::window {

namespace {

/// A test object under the name that `--only` takes.
struct NamedTest {
    const char* name;
    QObject* (*make)();
    bool apart = false;  ///< runs only when it is asked for: it takes its time, or another environment
};

constexpr std::array tests{NamedTest{"actions", make_actions_test},
                           NamedTest{"bodies_controller", make_bodies_controller_test},
                           NamedTest{"body_hand", make_body_hand_test},
                           NamedTest{"calculation_watch", make_calculation_watch_test},
                           NamedTest{"entry_gate", make_entry_gate_test},
                           NamedTest{"field_form", make_field_form_test},
                           NamedTest{"figure", make_figure_test},
                           NamedTest{"find", make_find_test},
                           NamedTest{"first_work", make_first_work_test, true},
                           NamedTest{"form_charts", make_form_charts_test},
                           NamedTest{"form_dialogs", make_form_dialogs_test},
                           NamedTest{"form_fit", make_form_fit_test},
                           NamedTest{"form_grid", make_form_grid_test},
                           NamedTest{"form_handles", make_form_handles_test},
                           NamedTest{"form_inversion", make_form_inversion_test},
                           NamedTest{"form_layout", make_form_layout_test},
                           NamedTest{"form_names", make_form_names_test},
                           NamedTest{"form_regional", make_form_regional_test},
                           NamedTest{"form_start", make_form_start_test},
                           NamedTest{"formulas_controller", make_formulas_controller_test},
                           NamedTest{"help", make_help_test},
                           NamedTest{"import", make_import_test},
                           NamedTest{"invert_panel", make_invert_panel_test},
                           NamedTest{"keyboard_page", make_keyboard_page_test},
                           NamedTest{"line_controller", make_line_controller_test},
                           NamedTest{"opening", make_opening_test},
                           NamedTest{"look", make_look_test},
                           NamedTest{"model_keys", make_model_keys_test},
                           NamedTest{"model_news", make_model_news_test},
                           NamedTest{"picture", make_picture_test},
                           NamedTest{"preferences", make_preferences_test},
                           NamedTest{"save_controller", make_save_controller_test},
                           NamedTest{"sharp", make_sharp_test, true},
                           NamedTest{"status_panels", make_status_panels_test},
                           NamedTest{"survey_page", make_survey_page_test},
                           NamedTest{"uncertainty", make_uncertainty_test},
                           NamedTest{"view_controller", make_view_controller_test},
                           NamedTest{"watch_controller", make_watch_controller_test},
                           NamedTest{"wrong_boxes", make_wrong_boxes_test}};

int run(const NamedTest& test, const QStringList& arguments) {
    const std::unique_ptr<QObject> object(test.make());
    return QTest::qExec(object.get(), arguments);
}

/// All tests, or the one that was named. What is behind goes to Qt Test.
int run_tests(QStringList arguments) {
    QString only;
    if (arguments.value(1) == "--only") {
        only = arguments.value(2);
        arguments.remove(1, 2);
    }
    int failed = 0, found = 0;
    for (const NamedTest& test : tests) {
        if (only.isEmpty() ? test.apart : only != test.name) continue;
        ++found;
        failed += run(test, arguments);
    }
    return failed == 0 && found > 0 ? 0 : 1;
}

}  // namespace

}  // namespace anomalis::window

int main(int argc, char** argv) {
    // A screen as people have them; that of the platform without a display is smaller than the window.
    if (qgetenv("QT_QPA_PLATFORM") == "offscreen")
        qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" ANOMALIS_SCREENS);
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.value(4) == "dark") QApplication::setPalette(anomalis::window::look_palette(true));
    anomalis::window::apply_look(application);
    if (arguments.value(1) == "--pictures") {
        anomalis::window::keep_pictures(arguments.value(2), arguments.value(3));
        return 0;
    }
    if (arguments.value(1) == "--keyboard") {
        anomalis::window::write_keyboard_page();
        return 0;
    }
    return anomalis::window::run_tests(arguments);
}
