#include "window/panels/status_panels.h"

#include <QLabel>
#include <QTimer>

#include "window/form_tests.h"
#include "window/modelled_form.h"

namespace anomalis::window {

class StatusPanelsTest : public QObject {
    Q_OBJECT

  private slots:
    void texts_of_the_status_line_go_after_their_time_and_with_the_next_action();
    void a_link_behind_a_text_goes_with_it();
};

void StatusPanelsTest::texts_of_the_status_line_go_after_their_time_and_with_the_next_action() {
    Modelled sample;
    auto& status = sample.find<StatusPanels>("StatusBar");
    auto& timer = sample.find<QTimer>("Timer_status");
    QCOMPARE(timer.interval(), 10'000);
    const auto let_it_pass = [&] {
        QVERIFY(timer.isActive() && timer.isSingleShot());
        timer.start(0);
        QTest::qWait(5);
        timer.setInterval(10'000);
    };
    status.show_text("told");
    QCOMPARE(sample.status(1), QString("told"));
    let_it_pass();
    QCOMPARE(sample.status(1), QString());
    status.show_refused("Top", "x", "the value stays");
    let_it_pass();
    QCOMPARE(sample.status(1), QString());
    status.show_text("told");
    QVERIFY2(sample.status(1) == "told", "what was refused has gone with its text");

    for (const char* action : {"menu_highlight_on", "menu_set_demag_flags_0"}) {
        status.show_text("told");
        QTest::qWait(1);
        sample.trigger(action);
        QCOMPARE(sample.status(1), QString());
    }
    status.show_text("told");
    QTest::qWait(1);
    QTest::mouseClick(&sample.half("HScroll_dip_0", 1), Qt::LeftButton);
    QCOMPARE(sample.status(1), QString());

    status.show_work("Calculating");
    QVERIFY2(!timer.isActive(), "work is told as long as it lasts");
}

void StatusPanelsTest::a_link_behind_a_text_goes_with_it() {
    Modelled sample;
    auto& status = sample.find<StatusPanels>("StatusBar");
    auto& link = sample.find<QPushButton>("StatusBar_link");
    int followed = 0;
    QVERIFY(!link.isVisible());
    status.show_text("Saved");
    status.show_link("Show in folder", [&] { ++followed; });
    QVERIFY(link.isVisible());
    QCOMPARE(link.text(), QString("Show in folder"));
    link.click();
    QCOMPARE(followed, 1);
    status.show_text("Something else");
    QVERIFY(!link.isVisible());
}

QObject* make_status_panels_test() {
    return new StatusPanelsTest;
}

}  // namespace anomalis::window

#include "status_panels_test.moc"
