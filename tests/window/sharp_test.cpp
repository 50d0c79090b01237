#include <QImage>
#include <QStatusBar>

#include "window/form_sample.h"
#include "window/form_tests.h"
#include "window/panels/charts_panel.h"

namespace anomalis::window {

/// On a screen of double density, which the environment asks for when this test runs.
class SharpTest : public QObject {
    Q_OBJECT

  private slots:
    void charts_are_drawn_in_device_pixels();
    void nothing_needs_more_room_than_at_single_density();
};

namespace {

/// How many of the blocks of 2 x 2 pixels hold more than one colour: a picture that was blown up has none.
int mixed_blocks(const QImage& picture) {
    int mixed = 0;
    for (int y = 0; y + 1 < picture.height(); y += 2)
        for (int x = 0; x + 1 < picture.width(); x += 2) {
            const QRgb first = picture.pixel(x, y);
            mixed += picture.pixel(x + 1, y) != first || picture.pixel(x, y + 1) != first ||
                             picture.pixel(x + 1, y + 1) != first
                         ? 1
                         : 0;
        }
    return mixed;
}

struct Shown : FormSample {
    Shown() {
        form->resize(1280, 800);
        form->open_file(write_workspace(folder));
        QTest::qWait(150);
    }
    TempFolder folder;
};

}  // namespace

void SharpTest::charts_are_drawn_in_device_pixels() {
    Shown sample;
    QCOMPARE(sample.form->devicePixelRatioF(), 2.0);
    for (int i = 0; i < edit::model_chart_count; ++i) {
        chart::GrapherWidget& chart = sample.form->charts().chart_widget(i);
        const QImage picture = chart.grab().toImage();
        QCOMPARE(picture.size(), chart.size() * 2);
        QVERIFY2(mixed_blocks(picture) > 500, qPrintable(QString::number(i)));
    }
}

void SharpTest::nothing_needs_more_room_than_at_single_density() {
    Shown sample;
    const QSize least = sample.form->minimumSizeHint();
    QVERIFY2(least.width() <= 1280 && least.height() <= 760,
             qPrintable(QString("%1 x %2").arg(least.width()).arg(least.height())));
}

QObject* make_sharp_test() {
    return new SharpTest;
}

}  // namespace anomalis::window

#include "sharp_test.moc"
