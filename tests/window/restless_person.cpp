#include "window/restless_person.h"

#include <array>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QScrollBar>
#include <QTabWidget>
#include <QTableView>
#include <QTest>

#include "chart/qt/grapher_widget.h"
#include "window/form_sample.h"
#include "window/import/import_controller.h"
#include "window/shell/actions.h"
#include "window/widgets/limit_strip.h"
#include "window/widgets/stepper_bar.h"

namespace anomalis::window {

namespace {

constexpr int line_stations = 41;
constexpr int most_bodies = 7;
constexpr int most_stations = 1500;
constexpr std::size_t deeds_told = 30;
constexpr QSize usual_size(1000, 700);

constexpr std::array<const char*, 30> typed_texts{
    "0",    "1",     "2",    "5",     "12.5",       "30",     "-45", "60",  "89.9", "90",
    "100",  "250",   "1000", "-1000", "51234",      "500100", "7",   "3",   "4",    "6",
    "1e38", "-1e38", "abc",  "",      "2147483648", "1,5",    "nan", " 8 ", "-",    "1e-9"};

}  // namespace

struct RestlessPerson::Habit {
    const char* name;
    int weight;
    void (RestlessPerson::*work)();
};

const std::vector<RestlessPerson::Habit>& RestlessPerson::habits() {
    static const std::vector<Habit> all{{"type", 12, &RestlessPerson::type_into_box},
                                        {"click", 8, &RestlessPerson::click_button},
                                        {"step bar", 12, &RestlessPerson::step_bar},
                                        {"choose entry", 4, &RestlessPerson::choose_entry},
                                        {"limit bar", 3, &RestlessPerson::drag_limit_bar},
                                        {"grid", 12, &RestlessPerson::work_in_grid},
                                        {"chart", 10, &RestlessPerson::work_on_chart},
                                        {"key", 4, &RestlessPerson::press_key},
                                        {"action", 12, &RestlessPerson::choose_action},
                                        {"undo", 12, &RestlessPerson::undo},
                                        {"redo", 5, &RestlessPerson::redo},
                                        {"load", 5, &RestlessPerson::load},
                                        {"open", 2, &RestlessPerson::open_a_file},
                                        {"fit", 3, &RestlessPerson::fit_and_stop},
                                        {"add or delete", 5, &RestlessPerson::add_or_delete},
                                        {"page", 4, &RestlessPerson::change_page},
                                        {"resize", 1, &RestlessPerson::resize},
                                        {"scroll bar", 2, &RestlessPerson::move_scroll_bar}};
    return all;
}

RestlessPerson::RestlessPerson(std::uint32_t seed) : random(seed) {
    const std::string model = write_workspace(folder_, line_stations);
    const std::string text = folder_.read("line.axm");
    prompts.files = {model,
                     folder_.path("line.dat"),
                     folder_.write("cut.axm", text.substr(0, text.size() / 2)),
                     folder_.write("notes.txt", "Monday: walked the line twice.\n"),
                     folder_.write("short.dat", "line east north sensor ground mag grav\n1 1 2 3 4 5 6\n"),
                     folder_.path("missing.axm"),
                     folder_.path("saved_0.axm"),
                     folder_.path("saved_1.axm")};
    prompts.save_places = {folder_.path("saved_0.axm"), folder_.path("saved_1.axm"), folder_.path("exported"),
                           folder_.path("no/such/place")};
    prompts.on_yield = [this] {
        if (yields_to_stop_ > 0 && --yields_to_stop_ == 0) trigger("menu_stop_inversion");
        QCoreApplication::processEvents();
    };
    form_ = std::make_unique<Form_anomalis>(session, std::vector<flow::ExampleFile>{});
    form_->show();
    QObject::connect(&closer_, &QTimer::timeout, [this] { close_what_is_open(); });
    closer_.start(1);
    start_anew();
}

RestlessPerson::~RestlessPerson() = default;

void RestlessPerson::start_anew() {
    form_->resize(usual_size);
    form_->open_file(folder_.path("line.axm"));
    settle();
}

std::string RestlessPerson::last_deeds() const {
    std::string told;
    for (const std::string& deed : deeds_) told += deed + "\n";
    return told + "last message: " + prompts.last_message;
}

void RestlessPerson::note(const std::string& deed) {
    deeds_.push_back(deed);
    if (deeds_.size() > deeds_told) deeds_.pop_front();
}

bool RestlessPerson::act() {
    int total = 0;
    for (const Habit& habit : habits()) total += habit.weight;
    int drawn = below(total);
    stepped_ = false;
    for (const Habit& habit : habits()) {
        drawn -= habit.weight;
        if (drawn >= 0) continue;
        note(habit.name);
        (this->*habit.work)();
        break;
    }
    settle();
    stay_reasonable();
    return stepped_;
}

void RestlessPerson::settle() {
    for (int turn = 0; turn < 2; ++turn) QCoreApplication::processEvents();
}

/// Dialogs that are no question of the flows: colours, the transform, the list of keys; menus of the charts.
void RestlessPerson::close_what_is_open() {
    if (QWidget* popup = QApplication::activePopupWidget()) {
        popup->close();
    } else if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
        below(2) == 0 ? dialog->accept() : dialog->reject();
    }
}

/// Large models are another test's.
void RestlessPerson::stay_reasonable() {
    if (workspace().station_count > most_stations) start_anew();
    if (workspace().body_count > most_bodies) trigger("menu_delete_body_0");
}

template <class Widget>
Widget* RestlessPerson::any_visible() {
    QList<Widget*> found;
    for (Widget* widget : form_->findChildren<Widget*>())
        if (widget->isVisible() && widget->isEnabled()) found << widget;
    return found.isEmpty() ? nullptr : found.at(below(static_cast<int>(found.size())));
}

QPoint RestlessPerson::any_place(const QWidget& widget) {
    const int x = below(std::max(widget.width(), 1));
    return {x, below(std::max(widget.height(), 1))};
}

void RestlessPerson::trigger(const char* action) {
    if (auto* found = form_->findChild<QAction*>(action)) found->trigger();
}

void RestlessPerson::type_into_box() {
    auto* box = any_visible<QLineEdit>();
    if (!box) return;
    const char* text = typed_texts.at(static_cast<std::size_t>(below(typed_texts.size())));
    note("  " + box->objectName().toStdString() + " = '" + text + "'");
    box->setFocus();
    box->selectAll();
    QTest::keyClicks(box, text);
    constexpr std::array leaving{Qt::Key_Return, Qt::Key_Return, Qt::Key_Tab, Qt::Key_Escape, Qt::Key_Shift};
    QTest::keyClick(box, leaving.at(static_cast<std::size_t>(below(leaving.size()))));
}

void RestlessPerson::click_button() {
    auto* button = any_visible<QAbstractButton>();
    if (!button) return;
    note("  " + button->objectName().toStdString() + " '" + button->text().toStdString() + "'");
    QTest::mouseClick(button, Qt::LeftButton);
}

void RestlessPerson::step_bar() {
    auto* bar = any_visible<StepperBar>();
    if (!bar) return;
    note("  " + bar->objectName().toStdString());
    for (int turn = 1 + below(3); turn > 0; --turn)
        QTest::mouseClick(bar, Qt::LeftButton, {}, any_place(*bar));
    if (below(3) == 0) QTest::keyClick(bar, below(2) == 0 ? Qt::Key_Up : Qt::Key_Down);
}

void RestlessPerson::choose_entry() {
    auto* list = any_visible<QComboBox>();
    if (!list || list->count() == 0) return;
    note("  " + list->objectName().toStdString());
    list->setFocus();
    QTest::keyClick(list, below(2) == 0 ? Qt::Key_Down : Qt::Key_Up);
}

void RestlessPerson::drag_limit_bar() {
    auto* bar = any_visible<LimitBar>();
    if (!bar) return;
    const QPoint start = bar->rect().center();
    QTest::mousePress(bar, Qt::LeftButton, {}, start);
    QTest::mouseMove(bar, start + QPoint(below(400) - 200, 0));
    QTest::mouseRelease(bar, Qt::LeftButton, {}, start + QPoint(below(400) - 200, 0));
}

void RestlessPerson::work_in_grid() {
    auto* grid = form_->findChild<QTableView*>("Grid_body");
    if (!grid || !grid->isVisible() || !grid->isEnabled()) return;
    const QModelIndex cell =
        grid->model()->index(below(grid->model()->rowCount()), below(grid->model()->columnCount()));
    note("  cell " + std::to_string(cell.row() + 1) + ", " + std::to_string(cell.column() + 1));
    grid->scrollTo(cell);
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, grid->visualRect(cell).center());
    auto* editor = qobject_cast<QLineEdit*>(grid->indexWidget(grid->currentIndex()));
    if (!editor) return;
    const char* text = typed_texts.at(static_cast<std::size_t>(below(typed_texts.size())));
    note(std::string("  keyed '") + text + "'");
    editor->selectAll();
    QTest::keyClicks(editor, text);
    // One in four stays open for whatever comes next.
    constexpr std::array leaving{Qt::Key_Return, Qt::Key_Return, Qt::Key_Escape, Qt::Key_Shift};
    QTest::keyClick(editor, leaving.at(static_cast<std::size_t>(below(leaving.size()))));
}

void RestlessPerson::work_on_chart() {
    auto* chart = any_visible<chart::GrapherWidget>();
    if (!chart) return;
    const QPoint place = any_place(*chart);
    const int what = below(6);
    note("  way " + std::to_string(what));
    if (what == 0) QTest::mouseClick(chart, Qt::LeftButton, {}, place);
    if (what == 1) QTest::mouseDClick(chart, Qt::LeftButton, {}, place);
    if (what == 2) QTest::mouseClick(chart, Qt::RightButton, {}, place);
    if (what == 3) {
        const auto button = below(2) == 0 ? Qt::LeftButton : Qt::MiddleButton;
        QTest::mousePress(chart, button, below(2) == 0 ? Qt::ShiftModifier : Qt::NoModifier, place);
        QTest::mouseMove(chart, any_place(*chart));
        QTest::mouseRelease(chart, button, {}, any_place(*chart));
    }
    if (what == 4) {
        QWheelEvent turn(place, chart->mapToGlobal(place), {}, {0, below(2) == 0 ? 120 : -240}, Qt::NoButton,
                         Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(chart, &turn);
    }
    if (what == 5) QTest::mouseMove(chart, place);
}

void RestlessPerson::press_key() {
    constexpr std::array keys{Qt::Key_Left, Qt::Key_Right,  Qt::Key_Up, Qt::Key_Down,
                              Qt::Key_Plus, Qt::Key_Minus,  Qt::Key_0,  Qt::Key_PageDown,
                              Qt::Key_Tab,  Qt::Key_PageUp, Qt::Key_F5, Qt::Key_Escape};
    QWidget* target = QApplication::focusWidget() ? QApplication::focusWidget() : form_.get();
    const Qt::Key key = keys.at(static_cast<std::size_t>(below(keys.size())));
    note("  " + QKeySequence(key).toString().toStdString());
    QTest::keyClick(target, key, below(5) == 0 ? Qt::ShiftModifier : Qt::NoModifier);
}

void RestlessPerson::choose_action() {
    const auto rows = action_rows();
    const ActionRow& row = rows[static_cast<std::size_t>(below(static_cast<int>(rows.size())))];
    // The first ends the work, the second looks through the whole system, the others have habits of their
    // own.
    for (const ActionId other : {ActionId::leave, ActionId::find_file, ActionId::undo, ActionId::redo,
                                 ActionId::invert_all, ActionId::invert_current, ActionId::example})
        if (row.id == other) return;
    note(std::string("  ") + row.name);
    const auto& members = form_->actions().family(row.id);
    members.at(static_cast<std::size_t>(below(static_cast<int>(members.size()))))->trigger();
}

void RestlessPerson::undo() {
    for (int turn = 1 + below(4); turn > 0; --turn) trigger("menu_undo");
    stepped_ = true;
}

void RestlessPerson::redo() {
    for (int turn = 1 + below(3); turn > 0; --turn) trigger("menu_redo");
    stepped_ = true;
}

void RestlessPerson::load() {
    form_->load_locations();
}

void RestlessPerson::open_a_file() {
    const std::string& path =
        prompts.files.at(static_cast<std::size_t>(below(static_cast<int>(prompts.files.size()))));
    note("  " + path);
    form_->open_file(path);
    if (auto* page = form_->findChild<QDialog*>("Form_import"); page && page->isVisible()) {
        form_->import().desk().finish_reading();
        if (below(2) == 0) page->accept();
        page->reject();
    }
    if (below(2) == 0) form_->load_locations();
}

void RestlessPerson::fit_and_stop() {
    yields_to_stop_ = 1 + below(60);
    trigger(below(2) == 0 ? "menu_invert_0" : "menu_invert_1");
    yields_to_stop_ = 0;
}

void RestlessPerson::add_or_delete() {
    constexpr std::array entries{"menu_add_body_0",    "menu_add_body_0",    "menu_add_body_1",
                                 "menu_add_body_2",    "menu_delete_body_1", "menu_sort_bodies_0",
                                 "menu_sort_bodies_3", "menu_add_body_0"};
    const char* entry = entries.at(static_cast<std::size_t>(below(entries.size())));
    note(std::string("  ") + entry);
    trigger(entry);
}

void RestlessPerson::change_page() {
    auto* tabs = form_->findChild<QTabWidget*>("Tab_model");
    tabs->setCurrentIndex(below(3) == 0 ? 0 : 1);
}

void RestlessPerson::resize() {
    const int width = 600 + below(700);
    form_->resize(width, 400 + below(500));
}

void RestlessPerson::move_scroll_bar() {
    auto* bar = any_visible<QScrollBar>();
    if (!bar) return;
    bar->setValue(bar->minimum() + below(bar->maximum() - bar->minimum() + 1));
}

}  // namespace anomalis::window
