#include "window/help/help_controller.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMainWindow>
#include <QTextDocument>
#include <QWhatsThis>
#include <QWhatsThisClickedEvent>

#include "flow/guide_file.h"
#include "window/help/form_guide.h"
#include "window/help/guide_places.h"
#include "window/shell/actions.h"
#include "window/widgets/body_grid_view.h"

namespace anomalis::window {

namespace {

/// The view whose inner area the widget is.
template <class View>
View* view_of(QWidget& widget) {
    auto* view = qobject_cast<View*>(widget.parentWidget());
    return view && view->viewport() == &widget ? view : nullptr;
}

QString as_page(const QString& words) {
    return Qt::mightBeRichText(words) ? words : "<p>" + words.toHtmlEscaped().replace('\n', "<br>") + "</p>";
}

/// Its own words, without where the guide says more.
QString words_of(QWidget& widget, const QPoint& place) {
    if (auto* grid = view_of<BodyGridView>(widget)) return as_page(grid->tip_page(place));
    if (auto* view = view_of<QAbstractItemView>(widget)) {
        const QString tip = view->indexAt(place).data(Qt::ToolTipRole).toString();
        return tip.isEmpty() ? QString() : as_page(tip);
    }
    for (const QString& words : {widget.whatsThis(), widget.toolTip(), explanation_of(widget)})
        if (!words.isEmpty()) return as_page(words);
    return {};
}

QStringList guide_files() {
    QStringList files;
    for (const std::string& place : flow::guide_file_places(QApplication::applicationDirPath().toStdString()))
        files << QString::fromStdString(place);
    return files;
}

/// Where its text is shown when the keyboard asks for it.
QPoint place_to_explain(QWidget& widget) {
    if (auto* view = view_of<QAbstractItemView>(widget); view && view->currentIndex().isValid())
        return view->visualRect(view->currentIndex()).center();
    return {widget.width() / 2, widget.height() / 2};
}

}  // namespace

QString whats_this(QWidget& widget, const QPoint& place) {
    const QString words = words_of(widget, place);
    if (words.isEmpty()) return {};
    const GuideSpot& spot = guide_spot(&widget);
    return words + QString("<p><a href=\"%1\">Guide: %2</a></p>")
                       .arg(spot.page, QString(spot.heading).toHtmlEscaped());
}

HelpController::HelpController(QMainWindow& window, Actions& actions) : QObject(&window), window_(window) {
    actions.on(ActionId::guide, [this] { show_guide(QApplication::focusWidget()); });
    actions.on(ActionId::tutorials, [this] { open_guide("tutorials/index"); });
    actions.on(ActionId::explain_focus, [this] { explain_focus(); });
    actions.on(ActionId::whats_this, [] { QWhatsThis::enterWhatsThisMode(); });
    qApp->installEventFilter(this);
}

void HelpController::show_guide(QWidget* about) {
    open_guide(guide_spot(about).page);
}

/// A form that waits for an answer would keep the guide of the window behind it closed: it has one of its
/// own.
void HelpController::open_guide(const QString& page) {
    QWidget* modal = QApplication::activeModalWidget();
    QWidget* holder = modal ? modal : &window_;
    auto* guide = holder->findChild<FormGuide*>(QString(), Qt::FindDirectChildrenOnly);
    if (!guide) guide = new FormGuide(guide_files(), holder);
    guide->open_at(page);
}

bool HelpController::is_ours(const QWidget& widget) const {
    for (const QWidget* w = &widget; w; w = w->parentWidget())
        if (w == &window_) return true;
    return false;
}

bool HelpController::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::KeyPress:
        case QEvent::QueryWhatsThis:
        case QEvent::WhatsThis:
        case QEvent::WhatsThisClicked:
            break;
        default:
            return false;
    }
    auto* widget = qobject_cast<QWidget*>(watched);
    if (!widget || !is_ours(*widget)) return false;
    if (event->type() == QEvent::KeyPress) return key_pressed(*widget, static_cast<QKeyEvent&>(*event));
    if (event->type() == QEvent::WhatsThisClicked) {
        show_guide(widget);
        return true;
    }
    const auto& asked = static_cast<const QHelpEvent&>(*event);
    if (event->type() == QEvent::WhatsThis) return show_explanation(*widget, asked.pos());
    const bool explained = !whats_this(*widget, asked.pos()).isEmpty();
    if (explained) event->accept();
    return explained;
}

/// The window itself has actions for these keys.
bool HelpController::key_pressed(QWidget& widget, const QKeyEvent& event) {
    if (event.key() != Qt::Key_F1 || widget.window() == &window_) return false;
    if (event.modifiers() == Qt::NoModifier) {
        show_guide(&widget);
        return true;
    }
    if (event.modifiers() != Qt::ShiftModifier) return false;
    explain_focus();
    return true;
}

bool HelpController::show_explanation(QWidget& widget, const QPoint& place) {
    const QString words = whats_this(widget, place);
    if (words.isEmpty()) return false;
    QWhatsThis::showText(widget.mapToGlobal(place), words, &widget);
    return true;
}

/// The nearest one around it that has something to say.
void HelpController::explain_focus() {
    QWidget* widget = QApplication::focusWidget();
    if (auto* view = qobject_cast<QAbstractScrollArea*>(widget))
        if (show_explanation(*view->viewport(), place_to_explain(*view->viewport()))) return;
    for (; widget; widget = widget->parentWidget())
        if (show_explanation(*widget, place_to_explain(*widget))) return;
}

}  // namespace anomalis::window
