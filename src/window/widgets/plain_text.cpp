#include "window/widgets/plain_text.h"

#include <QTextDocument>

#include "core/shown_text.h"

namespace anomalis::window {

QString shown(const std::string& text) {
    return QString::fromStdString(shown_text(text));
}

QString plain_tip(const QString& text) {
    return Qt::mightBeRichText(text) ? "<span>" + text.toHtmlEscaped() + "</span>" : text;
}

QString window_caption(const std::string& text) {
    return shown(text).replace("[*]", "[*][*]");
}

}  // namespace anomalis::window
