#include "window/shell/look.h"

#include <cmath>

#include <QCheckBox>
#include <QLineEdit>
#include <QTest>

#include "core/preferences.h"
#include "support/colour_sight.h"
#include "window/form_tests.h"
#include "window/shell/desktop_theme.h"
#include "window/shell/window_icon.h"

namespace anomalis::window {

class LookTest : public QObject {
    Q_OBJECT

  private slots:
    void every_text_stands_out_from_its_ground();
    void the_tints_of_the_columns_leave_the_text_legible();
    void tints_and_curves_are_told_apart_by_everybody();
    void a_dark_desktop_gets_the_dark_palette();
    void an_empty_box_can_be_seen_in_the_dark();
    void a_desktop_that_changes_is_followed();
    void the_icon_can_be_seen_in_every_size();
};

namespace {

constexpr double least_contrast = 4.5, least_outline_contrast = 3;

double luminance(const QColor& colour) {
    const auto part = [](double c) { return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
    return 0.2126 * part(colour.redF()) + 0.7152 * part(colour.greenF()) + 0.0722 * part(colour.blueF());
}

/// The ratio of the web's accessibility guidelines, 1 to 21.
double contrast(const QColor& a, const QColor& b) {
    const double first = luminance(a);
    const double second = luminance(b);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

struct Pair {
    QPalette::ColorRole text;
    QPalette::ColorRole ground;
};

/// Where which text stands: labels and boxes, buttons, chosen rows, tips, links and captions that stand back,
/// the chief button pressed and disabled.
constexpr std::array pairs{Pair{QPalette::WindowText, QPalette::Window},
                           Pair{QPalette::WindowText, QPalette::Base},
                           Pair{QPalette::Text, QPalette::Base},
                           Pair{QPalette::Text, QPalette::AlternateBase},
                           Pair{QPalette::ButtonText, QPalette::Button},
                           Pair{QPalette::HighlightedText, QPalette::Highlight},
                           Pair{QPalette::ToolTipText, QPalette::ToolTipBase},
                           Pair{QPalette::PlaceholderText, QPalette::Base},
                           Pair{QPalette::PlaceholderText, QPalette::Window},
                           Pair{QPalette::PlaceholderText, QPalette::Button},
                           Pair{QPalette::Link, QPalette::Base},
                           Pair{QPalette::Link, QPalette::Window},
                           Pair{QPalette::Base, QPalette::Text},
                           Pair{QPalette::Text, QPalette::Midlight}};

}  // namespace

void LookTest::every_text_stands_out_from_its_ground() {
    for (const bool dark : {false, true}) {
        const QPalette palette = look_palette(dark);
        for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
            for (const Pair& pair : pairs)
                QVERIFY2(contrast(palette.color(group, pair.text), palette.color(group, pair.ground)) >=
                             least_contrast,
                         qPrintable(QString("dark %1, group %2, roles %3 on %4")
                                        .arg(dark)
                                        .arg(group)
                                        .arg(pair.text)
                                        .arg(pair.ground)));
        QVERIFY(contrast(quiet_text(palette), palette.color(QPalette::Base)) >= least_contrast);
    }
}

void LookTest::the_tints_of_the_columns_leave_the_text_legible() {
    constexpr int quantities = 6;
    for (const bool dark : {false, true}) {
        const QPalette palette = look_palette(dark);
        for (int quantity = 0; quantity < quantities; ++quantity)
            QVERIFY2(
                contrast(palette.color(QPalette::Text), column_tint(palette, quantity)) >= least_contrast,
                qPrintable(QString::number(quantity)));
    }
}

void LookTest::tints_and_curves_are_told_apart_by_everybody() {
    const auto stored = [](const QColor& c) { return c.blue() << 16 | c.green() << 8 | c.red(); };
    for (const bool dark : {false, true})
        for (int i = 0; i < 6; ++i)
            for (int k = i + 1; k < 6; ++k) {
                const QPalette palette = look_palette(dark);
                const double apart =
                    least_difference(stored(column_tint(palette, i)), stored(column_tint(palette, k)));
                QVERIFY2(
                    apart >= 8,
                    qPrintable(QString("dark %1, tints %2 and %3: %4").arg(dark).arg(i).arg(k).arg(apart)));
            }
    const Preferences curves;
    QVERIFY(least_difference(curves.observed.colour, curves.calculated.colour) >= 50);
}

void LookTest::a_dark_desktop_gets_the_dark_palette() {
    QVERIFY(is_dark(look_palette(true)));
    QVERIFY(!is_dark(look_palette(false)));
    const QPalette before = QApplication::palette();
    auto& application = *static_cast<QApplication*>(QCoreApplication::instance());
    QPalette desktop;
    desktop.setColor(QPalette::Window, QColor(20, 20, 20));
    QApplication::setPalette(desktop);
    apply_look(application);
    QCOMPARE(QApplication::palette().color(QPalette::Base), look_palette(true).color(QPalette::Base));
    QApplication::setPalette(before);
    apply_look(application);
    QCOMPARE(QApplication::palette().color(QPalette::Base), before.color(QPalette::Base));
}

/// The desktop of the tests is light: a look that has come to be dark in it goes when the desktop says so.
void LookTest::a_desktop_that_changes_is_followed() {
    auto& application = *static_cast<QApplication*>(QCoreApplication::instance());
    const DesktopTheme theme(application);
    QApplication::setPalette(look_palette(true));
    QWidget window;
    QEvent change(QEvent::ThemeChange);
    QCoreApplication::sendEvent(&window, &change);
    QTRY_VERIFY(!is_dark(QApplication::palette()));
    QCOMPARE(QApplication::palette().color(QPalette::Base), look_palette(false).color(QPalette::Base));
}

void LookTest::an_empty_box_can_be_seen_in_the_dark() {
    const QPalette before = QApplication::palette();
    auto& application = *static_cast<QApplication*>(QCoreApplication::instance());
    QApplication::setPalette(look_palette(true));
    apply_look(application);
    QCheckBox mark;
    QLineEdit entry;
    for (QWidget* box : std::initializer_list<QWidget*>{&mark, &entry}) {
        box->resize(60, 24);
        const QImage picture = box->grab().toImage();
        const QColor ground = look_palette(true).color(QPalette::Base);
        double best = 0;
        for (int x = 0; x < picture.width(); ++x)
            best = std::max(best, contrast(picture.pixelColor(x, picture.height() / 2), ground));
        QVERIFY2(best >= least_outline_contrast, qPrintable(QString::number(best)));
    }
    QApplication::setPalette(before);
    apply_look(application);
}

/// Of 16 and of 256 pixels alike: filled but for its corners, with the white of the curve in it.
void LookTest::the_icon_can_be_seen_in_every_size() {
    const QIcon icon = window_icon();
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
        const QImage picture = icon.pixmap(QSize(size, size), 1).toImage();
        QCOMPARE(picture.size(), QSize(size, size));
        QCOMPARE(qAlpha(picture.pixel(0, 0)) < 160, true);
        QCOMPARE(qAlpha(picture.pixel(size / 2, size / 2)), 255);
        int white = 0;
        for (int y = 0; y < size; ++y)
            for (int x = 0; x < size; ++x) white += qGray(picture.pixel(x, y)) > 200;
        QVERIFY(white > size * size / 40);
        QVERIFY(white < size * size / 4);
    }
}

QObject* make_look_test() {
    return new LookTest;
}

}  // namespace anomalis::window

#include "look_test.moc"
