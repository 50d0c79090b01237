#include "window/help/guide_page.h"

#include <algorithm>
#include <cstdlib>

#include <QAbstractTextDocumentLayout>
#include <QDesktopServices>
#include <QImage>
#include <QScrollBar>
#include <QTextBlock>

#include "window/help/guide_book.h"
#include "window/help/guide_style.h"

namespace anomalis::window {

namespace {

constexpr int margin = 16;         // pixels
constexpr int least_room = 320;    // pixels, for a picture
constexpr int resize_pause = 200;  // ms
constexpr int resize_told = 24;    // pixels that a picture may be off by

bool is_picture(const QUrl& name) {
    return name.path().endsWith(".png") || name.path().endsWith(".svg");
}

}  // namespace

GuidePage::GuidePage(const GuideBook& book, QWidget* parent) : QTextBrowser(parent), book_(book) {
    setOpenLinks(false);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);  // pictures keep their room
    document()->setDocumentMargin(margin);
    connect(this, &QTextBrowser::anchorClicked, this, &GuidePage::go);
    connect(this, &QTextBrowser::sourceChanged, this, &GuidePage::take_page);
    resized_.setSingleShot(true);
    resized_.setInterval(resize_pause);
    connect(&resized_, &QTimer::timeout, this, [this] {
        if (cut_ && std::abs(room() - room_then_) > resize_told) show_anew();
    });
}

void GuidePage::go(const QUrl& place) {
    const QUrl target = source().resolved(place);
    if (target.scheme().startsWith("http"))
        QDesktopServices::openUrl(target);
    else
        setSource(target);
}

void GuidePage::open_at(const QString& page) {
    setSource(book_.place_of(page));
}

/// A line that holds a picture needs no more height than that.
void GuidePage::fit_pictures() {
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next())
        for (auto part = block.begin(); !part.atEnd(); ++part) {
            if (!part.fragment().charFormat().isImageFormat()) continue;
            QTextBlockFormat line = block.blockFormat();
            line.setLineHeight(0, QTextBlockFormat::SingleHeight);
            QTextCursor(block).setBlockFormat(line);
            break;
        }
}

/// Before anybody else hears of it; the source itself is still that of before. The page is laid out to its
/// end before anything is scrolled to.
void GuidePage::take_page(const QUrl& place) {
    place_ = place;
    fit_pictures();
    document()->documentLayout()->documentSize();
    if (place.hasFragment()) scrollToAnchor(place.fragment());
    show_marks();
}

void GuidePage::mark(const QString& words) {
    marked_ = words;
    show_marks();
}

void GuidePage::show_marks() {
    QList<QTextEdit::ExtraSelection> marks;
    QTextCharFormat look;
    look.setBackground(palette().color(QPalette::Highlight));
    look.setForeground(palette().color(QPalette::HighlightedText));
    if (!marked_.isEmpty())
        for (QTextCursor place = document()->find(marked_); !place.isNull();
             place = document()->find(marked_, place))
            marks.append({place, look});
    setExtraSelections(marks);
}

bool GuidePage::find_next() {
    return !marked_.isEmpty() && find(marked_);
}

/// Keeps its place by the share of the page above it: widths of pictures change heights.
void GuidePage::show_anew() {
    QScrollBar& bar = *verticalScrollBar();
    const double share = bar.maximum() > 0 ? static_cast<double>(bar.value()) / bar.maximum() : 0;
    reload();
    document()->documentLayout()->documentSize();
    bar.setValue(static_cast<int>(share * bar.maximum()));
}

void GuidePage::resizeEvent(QResizeEvent* event) {
    QTextBrowser::resizeEvent(event);
    resized_.start();
}

void GuidePage::changeEvent(QEvent* event) {
    QTextBrowser::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && source().isValid()) show_anew();
}

/// Pictures stand in lists too, which are indented.
int GuidePage::room() const {
    const int indent = static_cast<int>(document()->indentWidth());
    return std::max(viewport()->width() - 2 * margin - indent, least_room);
}

QVariant GuidePage::picture(const QByteArray& bytes) const {
    QImage image = QImage::fromData(bytes);
    if (image.isNull()) return {};
    const int widest = room();
    if (image.width() <= widest) return image;
    cut_ = true;
    const int pixels = std::min(static_cast<int>(widest * devicePixelRatioF()), image.width());
    image = image.scaledToWidth(pixels, Qt::SmoothTransformation);
    image.setDevicePixelRatio(static_cast<qreal>(pixels) / widest);
    return image;
}

QVariant GuidePage::loadResource(int type, const QUrl& name) {
    if (type == QTextDocument::StyleSheetResource) return guide_style(palette());
    const QByteArray bytes = book_.data(source().resolved(name));
    if (type == QTextDocument::ImageResource) return picture(bytes);
    cut_ = false;
    room_then_ = room();
    if (!book_.is_open()) return guide_notice(tr("The guide is not there"), book_.failure());
    if (bytes.isEmpty())
        return guide_notice(tr("Not in the guide"), tr("It has no page %1.").arg(name.path()));
    if (is_picture(name)) return QString("<html><body><img src=\"%1\"></body></html>").arg(name.toString());
    if (!name.path().endsWith(".html")) return "<pre>" + QString::fromUtf8(bytes).toHtmlEscaped() + "</pre>";
    return bytes;
}

}  // namespace anomalis::window
