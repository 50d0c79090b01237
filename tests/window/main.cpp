#include <memory>

#include <QApplication>
#include <QtTest>

#include "window/form_tests.h"
#include "window/shell/look.h"

namespace {

int run(QObject* (*make)(), int argc, char** argv) {
    const std::unique_ptr<QObject> test(make());
    return QTest::qExec(test.get(), argc, argv);
}

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (argc == 5 && QString(argv[4]) == "dark") QApplication::setPalette(anomalis::window::look_palette(true));
    anomalis::window::apply_look(application);
    if (argc >= 4 && QString(argv[1]) == "--pictures") {
        anomalis::window::keep_pictures(argv[2], argv[3]);
        return 0;
    }
    if (argc > 1 && QString(argv[1]) == "--sharp") return run(anomalis::window::make_sharp_test, 1, argv);
    if (argc > 1 && QString(argv[1]) == "--first-work") return run(anomalis::window::make_first_work_test, 1, argv);
    int failed = 0;
    for (auto* make :
         {anomalis::window::make_form_start_test, anomalis::window::make_form_formulas_test, anomalis::window::make_form_load_test,
          anomalis::window::make_form_charts_test, anomalis::window::make_form_grid_test, anomalis::window::make_form_bodies_test,
          anomalis::window::make_form_dialogs_test, anomalis::window::make_form_files_test,
          anomalis::window::make_form_inversion_test, anomalis::window::make_form_layout_test, anomalis::window::make_form_names_test,
          anomalis::window::make_form_views_test, anomalis::window::make_look_test, anomalis::window::make_picture_test}) {
        const std::unique_ptr<QObject> test(make());
        failed += QTest::qExec(test.get(), argc, argv);
    }
    return failed == 0 ? 0 : 1;
}
