#include <memory>

#include <QApplication>
#include <QtTest>

#include "workbench/qt/form_tests.h"
#include "workbench/qt/look.h"

namespace {

int run(QObject* (*make)(), int argc, char** argv) {
    const std::unique_ptr<QObject> test(make());
    return QTest::qExec(test.get(), argc, argv);
}

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (argc == 5 && QString(argv[4]) == "dark") QApplication::setPalette(anomalis::look_palette(true));
    anomalis::apply_look(application);
    if (argc >= 4 && QString(argv[1]) == "--pictures") {
        anomalis::keep_pictures(argv[2], argv[3]);
        return 0;
    }
    if (argc > 1 && QString(argv[1]) == "--sharp") return run(anomalis::make_sharp_test, 1, argv);
    if (argc > 1 && QString(argv[1]) == "--first-work") return run(anomalis::make_first_work_test, 1, argv);
    int failed = 0;
    for (auto* make :
         {anomalis::make_form_start_test, anomalis::make_form_formulas_test, anomalis::make_form_load_test,
          anomalis::make_form_charts_test, anomalis::make_form_grid_test, anomalis::make_form_bodies_test,
          anomalis::make_form_dialogs_test, anomalis::make_form_files_test,
          anomalis::make_form_inversion_test, anomalis::make_form_layout_test, anomalis::make_form_names_test,
          anomalis::make_form_views_test, anomalis::make_look_test, anomalis::make_picture_test}) {
        const std::unique_ptr<QObject> test(make());
        failed += QTest::qExec(test.get(), argc, argv);
    }
    return failed == 0 ? 0 : 1;
}
