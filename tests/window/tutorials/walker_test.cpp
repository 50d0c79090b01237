#include "window/tutorials/walker.h"

#include <array>

#include <QTest>

#include "support/temp_folder.h"
#include "window/tutorials/told.h"

namespace anomalis::tutorials {

QObject* make_walker_test();

/// A tutorial that is wrong is not passed over, and says where.
class WalkerTest : public QObject {
    Q_OBJECT

  private slots:
    void what_is_true_passes();
    void what_is_wrong_fails_with_its_line();
    void what_nobody_looks_at_is_found_before_the_first_step();
    void numbers_are_as_exact_as_they_are_told();
};

namespace {

QStringList walked(const QString& text) {
    const TempFolder folder;
    const Lesson lesson = read_lesson(QString::fromStdString(folder.write("lesson.md", text.toStdString())));
    return Walker(lesson, Pictures::look).walk();
}

constexpr auto opening = "# A lesson\n\n1. Press **File, Examples, Dyke swarm**.\n";

}  // namespace

void WalkerTest::what_is_true_passes() {
    QCOMPARE(
        walked(QString(opening) + "2. Click **Main dyke** in the section. **Distance** shows `2545 m`.\n"),
        QStringList());
}

void WalkerTest::what_is_wrong_fails_with_its_line() {
    struct Wrong {
        const char* step;
        const char* told;
    };
    constexpr std::array all{
        Wrong{"Press **File, Examples, Gold**.", "no menu entry \"Gold\" to work with; there are: "},
        Wrong{"Press **Perform Magic**.", "\"Perform Magic\" to work with; there are: "},
        Wrong{"Click **North dyke** in the section.", "no body North dyke"},
        Wrong{"**Distance** shows `851 m`.", "Distance shows \"850.0 m\", not \"851 m\""},
        Wrong{"The window says `All is well`.", "nothing says \"All is well\""},
        Wrong{"![the window](none.png)", "there is no picture"},
        Wrong{"`line.csv` lies there.", "there is no file line.csv"},
        Wrong{"Press **Move This Body**, **Fix** under the name `line.csv`.", "nobody asked for a file"}};
    QString text = opening;
    for (const Wrong& wrong : all) text += QString("2. ") + wrong.step + "\n";
    const QStringList failures = walked(text);
    QCOMPARE(failures.size(), static_cast<qsizetype>(all.size()));
    for (std::size_t i = 0; i < all.size(); ++i) {
        const QString& failure = failures[static_cast<qsizetype>(i)];
        QVERIFY2(failure.contains(all[i].told), qPrintable(failure));
        QVERIFY2(failure.contains(QString("lesson.md:%1: ").arg(4 + i)), qPrintable(failure));
    }
}

void WalkerTest::what_nobody_looks_at_is_found_before_the_first_step() {
    const QStringList faults = walked("1. Think of `2545 m`.\n2. It is 2545 m away.\n");
    QCOMPARE(faults.size(), 2);
    QVERIFY2(faults[0].contains("lesson.md:1: nothing is done with `2545 m`"), qPrintable(faults[0]));
    QVERIFY2(faults[1].contains("lesson.md:2: nobody looks at the number in \"2545\""),
             qPrintable(faults[1]));
}

void WalkerTest::numbers_are_as_exact_as_they_are_told() {
    QVERIFY(told_in("RMS 0.967 nT, noise 0.94 nT", "RMS 0.97 nT"));
    QVERIFY(told_in("RMS 0.967 nT, noise 0.94 nT", "noise 0.9 nT"));
    QVERIFY(!told_in("RMS 0.967 nT, noise 0.94 nT", "RMS 0.96 nT"));
    QVERIFY(!told_in("RMS 0.967 nT", "RMS 0.9670 nT"));
    QVERIFY(!told_in("RMS 0.967 nT", "RMS 0.967 mGal"));
    QVERIFY(told_in("dip −12.5 °", "dip -12.5 °"));
    QVERIFY(!told_in("dip 12.5 °", "dip -12.5 °"));
    QVERIFY(!told_in("anything", ""));
    QVERIFY(begins_as_told("285.1 ±2.5 m", "285.1"));
    QVERIFY(!begins_as_told("285.1 ±2.5 m", "2.5 m"));
}

QObject* make_walker_test() {
    return new WalkerTest;
}

}  // namespace anomalis::tutorials

#include "walker_test.moc"
