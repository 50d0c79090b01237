#include <filesystem>

#include <QAbstractButton>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTabBar>

#include "flow/examples.h"
#include "window/form_sample.h"
#include "window/form_tests.h"
#include "window/panels/charts_panel.h"

namespace anomalis::window {

/// What someone does who opens the program for the first time, by clicks and keys, from an example to a saved
/// model of one's own. Pictures of the window are kept for people to look at.
class FirstWorkTest : public QObject {
    Q_OBJECT

  private slots:
    void from_an_example_to_a_saved_model_data();
    void from_an_example_to_a_saved_model();
};

namespace {

constexpr int settle_time = 200;  // ms
constexpr int held_time = 900;    // ms that a bar is held down

class FirstWork : public FormSample {
  public:
    FirstWork(const TempFolder& folder, QSize size)
        : FormSample(examples_of(folder)), folder_(folder), size_(size) {
        form->resize(size);
        form->activateWindow();
        settle();
    }

    void settle() { QTest::qWait(settle_time); }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
        QTest::keyClick(form.get(), key, modifiers);
        settle();
    }
    void push(const char* name) {
        click(name);
        settle();
    }
    void choose_entry(const char* name) {
        find<QAction>(name).trigger();
        settle();
    }
    /// Clicks on the tab itself.
    void click_tab(int index) {
        auto* bar = find<QTabWidget>("Tab_model").tabBar();
        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(index).center());
        settle();
    }
    QAbstractButton& welcome_button(const QString& text) {
        for (auto* button : find<QWidget>("Frame_welcome").findChildren<QPushButton*>())
            if (button->text() == text) return *button;
        throw std::runtime_error("no such example");
    }
    /// One of the two arrows of a bar.
    QAbstractButton& arrow(const char* bar, int which) {
        return *find<QWidget>(bar).findChildren<QAbstractButton*>().at(which);
    }
    double misfit() { return status(7).section(' ', 1, 1).toDouble(); }
    Workspace& workspace() { return session.workspace; }
    int current() { return form->workbench().view.current_body; }
    bool marked() { return form->windowTitle().endsWith("*"); }
    void keep(const QString& name) {
        settle();
        const QString path =
            QString(ANOMALIS_PICTURES) + "/" + name + "_" + QString::number(size_.width()) + ".png";
        QDir().mkpath(ANOMALIS_PICTURES);
        QVERIFY2(form->grab().save(path), qPrintable(path));
        QCOMPARE(form->size(), size_);
    }

    void open_the_example();
    void move_a_body();
    void invert_and_take_back();
    void add_and_delete();
    void look_at_the_plan();
    void save_and_reopen();

  private:
    static std::vector<flow::ExampleFile> examples_of(const TempFolder& folder) {
        return flow::find_examples(folder.folder());
    }
    const TempFolder& folder_;
    QSize size_;
};

void FirstWork::open_the_example() {
    keep("1_start");
    QTest::mouseClick(&welcome_button("Dyke swarm"), Qt::LeftButton);
    settle();
    QCOMPARE(tab(), 1);
    QVERIFY(workspace().station_count > 100);
    QVERIFY(status(7).startsWith("RMS: "));
    QVERIFY(misfit() > 0);
    QVERIFY(!marked());
    keep("2_example");
}

void FirstWork::move_a_body() {
    const chart::Point inside{workspace().body(1).distance.value + workspace().body(1).width.value / 4,
                              workspace().body(1).top.value - 5};
    chart::GrapherWidget& section = form->charts().chart_widget(edit::chart_section);
    const chart::Point surface = section.chart().UserToSurface(inside);
    QTest::mouseClick(&section, Qt::LeftButton, {},
                      {static_cast<int>(surface.x / chart::units_per_screen_pixel),
                       static_cast<int>(section.height() - surface.y / chart::units_per_screen_pixel)});
    settle();
    QCOMPARE(current(), 1);
    const float distance = workspace().body(1).distance.value;
    const double before = misfit();
    // The bar is held down until it repeats.
    QAbstractButton& more = arrow("HScroll_dist_0", 1);
    QTest::mousePress(&more, Qt::LeftButton);
    QTest::qWait(held_time);
    QTest::mouseRelease(&more, Qt::LeftButton);
    settle();
    QVERIFY2(workspace().body(1).distance.value > distance + 15, "more than one step while it is held");
    QVERIFY(misfit() != before);
    QVERIFY(marked());
    keep("3_moved");
    // One step of undo, or more on a machine so slow that the held bar paused.
    for (int step = 0; step < 20 && marked(); ++step) press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(workspace().body(1).distance.value, distance);
    QCOMPARE(misfit(), before);
    QVERIFY(!marked());
}

void FirstWork::invert_and_take_back() {
    push("Command_toggle_invert_body");
    const double before = misfit();
    const float distance = workspace().body(1).distance.value;
    push("Command_invert_1");
    QTRY_VERIFY_WITH_TIMEOUT(!form->guards().busy(), 60000);
    settle();
    QVERIFY(!find<QLabel>("Label_status").text().isEmpty());
    const double after = misfit();
    QVERIFY2(after < before, qPrintable(QString("%1 from %2").arg(after).arg(before)));
    keep("4_inverted");
    press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(misfit(), before);
    QCOMPARE(workspace().body(1).distance.value, distance);
    press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(misfit(), after);
    if (find<QWidget>("Frame_invert").isVisible()) push("Command_toggle_invert_body");
}

void FirstWork::add_and_delete() {
    const int count = workspace().body_count;
    press(Qt::Key_B, Qt::ControlModifier);
    QCOMPARE(workspace().body_count, count + 1);
    QCOMPARE(current(), count + 1);
    keep("5_added");
    choose_entry("menu_delete_body_1");
    QCOMPARE(workspace().body_count, count);
    choose_entry("menu_delete_body_0");
    QCOMPARE(workspace().body_count, 0);
    press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(workspace().body_count, count);
}

void FirstWork::look_at_the_plan() {
    push("Command_show_plan");
    QVERIFY(find<QWidget>("Frame_plan").isVisible());
    keep("6_plan");
    push("Command_show_plan");
    QVERIFY(find<QWidget>("Frame_section").isVisible());
}

void FirstWork::save_and_reopen() {
    const std::string path = folder_.path("mine.axm");
    const double misfit_before = misfit();
    std::vector<std::string> names;
    for (int i = 1; i <= workspace().body_count; ++i) names.push_back(workspace().body(i).name);
    prompts.save_paths.push_back(path);
    press(Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    QVERIFY(std::filesystem::exists(path));
    QCOMPARE(form->windowTitle(), QString("Anomalis: mine.axm"));
    prompts.open_paths.push_back(path);
    press(Qt::Key_O, Qt::ControlModifier);
    QCOMPARE(tab(), 1);
    keep("7_reopened");
    std::vector<std::string> reopened;
    for (int i = 1; i <= workspace().body_count; ++i) reopened.push_back(workspace().body(i).name);
    QCOMPARE(reopened, names);
    QVERIFY(std::abs(misfit() - misfit_before) <= 0.002);
    QCOMPARE(prompts.messages, std::vector<std::string>());
}

}  // namespace

void FirstWorkTest::from_an_example_to_a_saved_model_data() {
    QTest::addColumn<QSize>("size");
    QTest::newRow("a laptop") << QSize(1280, 800);
    QTest::newRow("a desk") << QSize(1920, 1080);
}

void FirstWorkTest::from_an_example_to_a_saved_model() {
    QFETCH(QSize, size);
    const TempFolder folder;
    std::filesystem::copy(ANOMALIS_EXAMPLES, folder.path("examples"),
                          std::filesystem::copy_options::recursive);
    const CurrentFolder here(folder.folder());
    FirstWork work(folder, size);
    for (const auto step :
         {&FirstWork::open_the_example, &FirstWork::move_a_body, &FirstWork::invert_and_take_back,
          &FirstWork::add_and_delete, &FirstWork::look_at_the_plan, &FirstWork::save_and_reopen}) {
        (work.*step)();
        if (QTest::currentTestFailed()) return;
    }
}

QObject* make_first_work_test() {
    return new FirstWorkTest;
}

}  // namespace anomalis::window

#include "first_work_test.moc"
