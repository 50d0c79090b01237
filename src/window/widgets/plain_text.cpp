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

QString elided_at_word(const QFontMetrics& metrics, const QString& text, int room) {
    if (metrics.horizontalAdvance(text) <= room) return text;
    const QChar ellipsis(0x2026);
    QString words = text;
    while (words.contains(' ')) {
        words.truncate(words.lastIndexOf(' '));
        if (metrics.horizontalAdvance(words + ellipsis) <= room) return words + ellipsis;
    }
    return metrics.horizontalAdvance(ellipsis) <= room ? QString(ellipsis) : QString();
}

QString window_caption(const std::string& text) {
    return shown(text).replace("[*]", "[*][*]");
}

}  // namespace anomalis::window
