#include "window/shell/form_sizes.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QScreen>

#include "core/settings.h"

namespace anomalis::window {

namespace {

constexpr const char* section = "FormSizes";
constexpr const char* size_as_shown = "size_as_shown";

/// "960 x 720"; an invalid size for a text of no sense.
QSize size_of_text(const QString& text) {
    const QStringList sides = text.split(" x ");
    return sides.size() == 2 ? QSize(sides[0].toInt(), sides[1].toInt()) : QSize();
}

}  // namespace

FormSizes::FormSizes(QWidget& window, Settings& settings)
    : QObject(&window), window_(window), settings_(settings) {
    qApp->installEventFilter(this);
}

bool FormSizes::eventFilter(QObject* watched, QEvent* event) {
    const bool shown = event->type() == QEvent::Show;
    if ((!shown && event->type() != QEvent::Hide) || event->spontaneous()) return false;
    auto* form = qobject_cast<QDialog*>(watched);
    if (!form || !is_kept(*form)) return false;
    shown ? restore(*form) : keep(*form);
    return false;
}

bool FormSizes::is_kept(const QDialog& form) const {
    const QString name = form.objectName();
    if (!name.startsWith("Form_") || name == "Form_define_point_transform") return false;
    if (form.minimumSize() == form.maximumSize()) return false;
    for (const QWidget* w = &form; w; w = w->parentWidget())
        if (w == &window_) return true;
    return false;
}

void FormSizes::restore(QDialog& form) const {
    const std::string text = settings_.get(section, form.objectName().toStdString(), "");
    const QSize kept = size_of_text(QString::fromStdString(text));
    if (!kept.isEmpty()) form.resize(kept.boundedTo(form.screen()->availableSize()));
    form.setProperty(size_as_shown, form.size());
}

/// Only what a person changed: another version may open its forms at another size.
void FormSizes::keep(QDialog& form) {
    const QSize size = form.size();
    if (form.isMaximized() || form.property(size_as_shown).toSize() == size) return;
    settings_.set(section, form.objectName().toStdString(),
                  QString("%1 x %2").arg(size.width()).arg(size.height()).toStdString());
}

}  // namespace anomalis::window
