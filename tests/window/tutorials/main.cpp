#include <cstdio>

#include <QApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTest>

#include "window/shell/look.h"
#include "window/tutorials/walker.h"

// test_tutorials FILE...            does what each tutorial says and looks at all that it tells
// test_tutorials --compare FILE...  and at every point of its pictures
// test_tutorials --pictures FILE... makes its pictures anew
// test_tutorials --self             the tests of the walker
namespace anomalis::tutorials {

QObject* make_walker_test();

namespace {

int walk_through(const QString& path, Pictures pictures) {
    QElapsedTimer time;
    time.start();
    const Lesson lesson = read_lesson(QFileInfo(path).absoluteFilePath());
    const QStringList failures = Walker(lesson, pictures).walk();
    for (const QString& failure : failures) std::fprintf(stderr, "%s\n", qPrintable(failure));
    std::printf("%s: %d steps, %zu orders, %.1f s, %s\n", qPrintable(path), lesson.steps,
                lesson.orders.size(), static_cast<double>(time.elapsed()) / 1000,
                failures.isEmpty() ? "all true" : "FAILED");
    return failures.isEmpty() ? 0 : 1;
}

int run(QStringList arguments) {
    Pictures pictures = Pictures::look;
    if (arguments.value(1) == "--self") {
        arguments.removeAt(1);
        const std::unique_ptr<QObject> test(make_walker_test());
        return QTest::qExec(test.get(), arguments);
    }
    if (arguments.removeAll("--compare") > 0) pictures = Pictures::compare;
    if (arguments.removeAll("--pictures") > 0) pictures = Pictures::write;
    int failed = arguments.size() < 2 ? 1 : 0;
    for (const QString& path : arguments.mid(1)) failed += walk_through(path, pictures);
    return failed == 0 ? 0 : 1;
}

}  // namespace

}  // namespace anomalis::tutorials

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" ANOMALIS_SCREENS);
    qputenv("TZ", "UTC");
    QApplication application(argc, argv);
    QApplication::setCursorFlashTime(0);  // pictures know no half of a second
    anomalis::window::apply_look(application);
    return anomalis::tutorials::run(QApplication::arguments());
}
