#include "window/shell/model_news.h"

#include <QCheckBox>
#include <QPushButton>
#include <QSignalSpy>

#include "window/form_tests.h"
#include "window/modelled_form.h"
#include "window/panels/charts_panel.h"
#include "window/panels/model_side.h"

namespace anomalis::window {

class ModelNewsTest : public QObject {
    Q_OBJECT

  private slots:
    void what_is_told_meanwhile_goes_out_afterwards();
    void a_step_of_a_bar_touches_only_what_it_changed();
    void a_begin_goes_back_to_the_section_and_the_bars_data();
    void a_begin_goes_back_to_the_section_and_the_bars();
    void check_boxes_of_a_file_before_are_cleared();
};

namespace {

/// Counts events of a kind that reach widgets below one.
class EventCounter : public QObject {
  public:
    EventCounter(QWidget& root, QEvent::Type type) : root_(root), type_(type) {
        qApp->installEventFilter(this);
    }
    int count() const { return count_; }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        const auto* widget = qobject_cast<QWidget*>(watched);
        if (event->type() == type_ && widget && (widget == &root_ || root_.isAncestorOf(widget))) ++count_;
        return false;
    }

  private:
    QWidget& root_;
    QEvent::Type type_;
    int count_ = 0;
};

}  // namespace

void ModelNewsTest::what_is_told_meanwhile_goes_out_afterwards() {
    ModelNews news;
    std::vector<int> heard;
    const auto listen = [&](int number) {
        connect(&news, &ModelNews::model_changed, this, [&heard, &news, number](WhatChanged what) {
            heard.push_back(10 * number + (what & News::line ? 1 : 2));
            if (number == 1 && what & News::line) news.tell(News::view);
        });
    };
    listen(1);
    listen(2);
    news.tell(News::line);
    QCOMPARE(heard, (std::vector<int>{11, 21, 12, 22}));
}

void ModelNewsTest::a_step_of_a_bar_touches_only_what_it_changed() {
    Modelled sample;
    QTest::mouseClick(&sample.half("HScroll_dip_0", 1), Qt::LeftButton);
    QTest::qWait(500);  // the classic formulas are compared when it rests
    QSignalSpy caption(sample.form.get(), &QWidget::windowTitleChanged);
    QSignalSpy recent(&sample.find<QAction>("menu_file_list_0"), &QAction::changed);
    QSignalSpy entry(&sample.find<QAction>("menu_add_body_0"), &QAction::changed);
    const EventCounter styles(*sample.form, QEvent::StyleChange);
    const bool other_before = sample.body(2).mag_response_valid;
    sample.body(2).mag_response_valid = true;
    const QString misfit = sample.status(7);
    for (int step = 0; step < 4; ++step) QTest::mouseClick(&sample.half("HScroll_dip_0", 1), Qt::LeftButton);
    QVERIFY(other_before);
    QVERIFY(sample.status(7) != misfit);
    QCOMPARE(caption.count(), 0);
    QCOMPARE(recent.count(), 0);
    QCOMPARE(entry.count(), 0);
    QCOMPARE(styles.count(), 0);
}

void ModelNewsTest::a_begin_goes_back_to_the_section_and_the_bars_data() {
    QTest::addColumn<QString>("begin");
    for (const char* begin : {"load", "open", "delete all", "first add"})
        QTest::newRow(begin) << QString(begin);
}

void ModelNewsTest::a_begin_goes_back_to_the_section_and_the_bars() {
    QFETCH(QString, begin);
    Modelled sample;
    if (begin == "first add") sample.trigger("menu_delete_body_0");
    sample.click("Command_show_plan");
    sample.click("Command_toggle_invert_body");
    QVERIFY(sample.form->workbench().view.show_plan);
    if (begin == "load") sample.form->load_locations();
    if (begin == "open") sample.form->open_file(sample.folder.path("line.axm"));
    if (begin == "delete all") sample.trigger("menu_delete_body_0");
    if (begin == "first add") sample.trigger("menu_add_body_0");
    QVERIFY(!sample.form->workbench().view.show_plan);
    QVERIFY(!sample.form->side().invert_view());
    QVERIFY(sample.find<QAction>("menu_view_mode_0").isChecked());
    QCOMPARE(sample.find<QPushButton>("Command_show_plan").text(), QString("Show Plan"));
    QVERIFY(sample.find<QWidget>("Frame_section").isVisible());
    QVERIFY(!sample.find<QWidget>("Frame_plan").isVisible());
    QVERIFY(sample.form->charts().chart_widget(edit::chart_section).chart().HasPlotDefined());
}

void ModelNewsTest::check_boxes_of_a_file_before_are_cleared() {
    Modelled sample;
    sample.choose_tab(0);
    for (const char* name : {"Check_show_body_label", "Check_maintain_aspect_ratio"})
        sample.find<QCheckBox>(name).setChecked(true);
    QCOMPARE(sample.workspace().display.show_body_label, 1);
    std::string text = sample.folder.read("line.axm");
    text.resize(text.find("[AXM Display Settings]"));
    sample.form->open_file(sample.folder.write("plain.axm", text));
    for (const char* name : {"Check_show_body_label", "Check_maintain_aspect_ratio"})
        QVERIFY2(!sample.find<QCheckBox>(name).isChecked(), name);
    QCOMPARE(sample.workspace().display.maintain_aspect_ratio, 0);
    sample.trigger("menu_undo");
    QVERIFY(sample.find<QCheckBox>("Check_show_body_label").isChecked());
}

QObject* make_model_news_test() {
    return new ModelNewsTest;
}

}  // namespace anomalis::window

#include "model_news_test.moc"
