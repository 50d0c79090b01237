#include "window/tutorials/walker.h"

#include <functional>

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QTableView>
#include <QTimer>

#include "flow/examples.h"
#include "window/import/import_controller.h"
#include "window/tutorials/eyes.h"
#include "window/tutorials/hands.h"
#include "window/tutorials/told.h"
#include "window/tutorials/truth.h"

namespace anomalis::tutorials {

namespace {

constexpr int pause = 20, rest = 300;  // ms between two orders; before a picture
constexpr int most_failures = 12, most_turns = 50;
constexpr QSize window_size(1280, 800);

/// The folder of a person who has unpacked the examples into it.
std::vector<flow::ExampleFile> copied_examples(const TempFolder& folder) {
    std::filesystem::copy(ANOMALIS_EXAMPLES, folder.path("examples"),
                          std::filesystem::copy_options::recursive);
    return flow::find_examples(folder.folder());
}

QString failure_of(const std::function<void()>& deed) {
    try {
        deed();
        return {};
    } catch (const std::exception& failure) {
        return failure.what();
    }
}

}  // namespace

Walker::Walker(const Lesson& lesson, Pictures pictures)
    : inside_(folder_.folder()), lesson_(lesson), pictures_(pictures) {}

QStringList Walker::walk() {
    failures_ = lesson_.faults;
    if (!failures_.isEmpty()) return failures_;
    sample_ = std::make_unique<window::FormSample>(copied_examples(folder_));
    sample_->prompts.on_yield = [] { QCoreApplication::processEvents(); };
    sample_->form->resize(window_size);
    sample_->form->activateWindow();
    QTimer::singleShot(pause, &loop_, [this] { turn(); });
    loop_.exec();
    sample_.reset();
    return failures_;
}

/// An order may open a form and come back only when that is closed; the next order is then done meanwhile.
bool Walker::may_go_on() const {
    if (sample_->form->guards().busy() || sample_->form->import().desk().reading()) return false;
    if (at_work_.empty()) return true;
    QWidget* modal = QApplication::activeModalWidget();
    return modal && modal != at_work_.back();
}

void Walker::turn() {
    const bool still = failures_.size() >= most_failures || next_ >= lesson_.orders.size();
    if (still) {
        if (QWidget* modal = QApplication::activeModalWidget()) modal->close();
        if (at_work_.empty()) return loop_.quit();
        QTimer::singleShot(pause, &loop_, [this] { turn(); });
        return;
    }
    const bool picture = lesson_.orders[next_].deed == Deed::picture;
    QTimer::singleShot(picture ? rest : pause, &loop_, [this] { turn(); });
    if (may_go_on()) take_turn();
}

void Walker::take_turn() {
    const Order& order = lesson_.orders[next_];
    if (order.step != step_) note(order, failure_of([&] { begin_step(order.step); }));
    ++next_;
    at_work_.push_back(QApplication::activeModalWidget());
    const QString wrong = failure_of([&] { do_order(order); });
    at_work_.pop_back();
    // What is told of may need a moment to come.
    const bool look = order.deed == Deed::shows || order.deed == Deed::says;
    if (!wrong.isEmpty() && look && ++turns_waited_ < most_turns) {
        --next_;
        return;
    }
    turns_waited_ = 0;
    note(order, wrong);
    if (next_ >= lesson_.orders.size()) note(order, failure_of([&] { end_step(); }));
}

void Walker::note(const Order& order, const QString& wrong) {
    if (!wrong.isEmpty()) failures_ << QString("%1:%2: %3").arg(lesson_.path).arg(order.line).arg(wrong);
}

std::string Walker::place(const QString& name) const {
    return folder_.path(name.toStdString());
}

void Walker::fail(const QString& words) const {
    throw std::runtime_error(words.toStdString());
}

/// The names that a step tells are what its dialogs are answered with.
void Walker::begin_step(int number) {
    step_ = number;
    end_step();
    for (const Order& order : lesson_.orders) {
        if (order.step != number || number == 0) continue;
        if (order.deed == Deed::save_name) sample_->prompts.save_paths.emplace_back(place(order.value));
        if (order.deed == Deed::open_name) sample_->prompts.open_paths.emplace_back(place(order.value));
    }
}

void Walker::end_step() {
    auto& prompts = sample_->prompts;
    const bool left = !prompts.save_paths.empty() || !prompts.open_paths.empty();
    prompts.save_paths.clear();
    prompts.open_paths.clear();
    if (left) fail("nobody asked for a file in this step");
    if (prompts.messages.size() > messages_)
        fail("a message that is not told of: " + QString::fromStdString(prompts.messages.back()));
    if (!prompts.questions.empty())
        fail("a question came: " + QString::fromStdString(prompts.questions.back()));
}

/// Charts and figures ask by a dialog of the system, all else through the prompts.
void Walker::answer_dialog(const Order& order) {
    auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    if (!dialog) return;
    dialog->findChild<QLineEdit*>("fileNameEdit")->setText(QString::fromStdString(place(order.value)));
    QMetaObject::invokeMethod(dialog, "accept", Qt::QueuedConnection);
    sample_->prompts.save_paths.pop_front();
}

void Walker::do_order(const Order& order) {
    for (int i = 0; i < order.times; ++i) {
        do_once(order);
        if (i + 1 < order.times) QTest::qWait(pause);
    }
}

void Walker::do_once(const Order& order) {
    window::FormSample& sample = *sample_;
    switch (order.deed) {
        case Deed::press:
            return press(sample, order.what);
        case Deed::keys:
            return press_key(sample, order.value);
        case Deed::key_in:
            return key_in(sample, order.what, order.value);
        case Deed::choose:
            return choose(sample, order.what, order.value);
        case Deed::tick:
        case Deed::clear:
            return set_tick(sample, order.what, order.deed == Deed::tick);
        case Deed::step:
            return step_bar(sample, order);
        case Deed::drag:
            return drag_body(sample, order.what, order.value);
        case Deed::click_head:
            return click_head(sample, order.what);
        case Deed::click_body:
            return click_body(sample, order.what, order.manner == "plan");
        case Deed::save_name:
            return answer_dialog(order);
        case Deed::open_name:
            return;
        case Deed::shows:
            return check_shown(order);
        case Deed::says:
            return check_said(order);
        case Deed::lies_there:
            if (QFileInfo(QString::fromStdString(place(order.value))).size() > 0) return;
            fail("there is no file " + order.value);
        case Deed::only:
            part_ = order.what;
            return;
        case Deed::picture:
            return take_picture(order);
        case Deed::value:
        case Deed::truth:
            return check_table(order);
    }
}

void Walker::check_shown(const Order& order) {
    QStringList values;
    for (QWidget* place : places(*sample_->form)) {
        const QString value = value_of(*place, order.what);
        if (begins_as_told(value, order.value)) return;
        if (!value.isNull()) values << value;
    }
    fail(values.isEmpty()
             ? "there is no \"" + order.what + "\" to read"
             : order.what + " shows \"" + values.join("\" and \"") + "\", not \"" + order.value + "\"");
}

void Walker::check_said(const Order& order) {
    QStringList all;
    for (std::size_t i = messages_; i < sample_->prompts.messages.size(); ++i)
        if (told_in(QString::fromStdString(sample_->prompts.messages[i]), order.value)) {
            messages_ = i + 1;
            return;
        }
    for (QWidget* place : places(*sample_->form)) all << texts_of(*place);
    for (const QString& text : all)
        if (told_in(text, order.value)) return;
    fail("nothing says \"" + order.value + "\"; there is: " + all.join(" | "));
}

void Walker::check_table(const Order& order) {
    QString value;
    if (order.deed == Deed::truth) {
        value = QString::number(true_value(lesson_.example, order.what, order.manner), 'f', 6);
    } else {
        choose_body(*sample_, order.what);
        auto& grid = sample_->find<QTableView>("Grid_body");
        value = grid_value(grid, grid_row(grid, order.manner));
    }
    if (!begins_as_told(value, order.value))
        fail(order.manner + " of " + order.what + " is \"" + value + "\", not \"" + order.value + "\"");
}

void Walker::take_picture(const Order& order) {
    const QString path = QFileInfo(lesson_.path).path() + "/" + order.what;
    const QString wrong = handle_picture(
        picture_of(place_of_work(*sample_->form), part_, QString::fromStdString(folder_.folder())), path,
        pictures_);
    part_.clear();
    if (!wrong.isEmpty()) fail(wrong);
}

}  // namespace anomalis::tutorials
