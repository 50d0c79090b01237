#include "window/help/guide_page.h"

#include <QAbstractTextDocumentLayout>
#include <QImage>
#include <QTextBlock>
#include <QTextFrame>
#include <QTextTable>

/// The pages stand in a static library, which a program takes in only as far as it is asked for.
static void hold_pages() {
    Q_INIT_RESOURCE(guide);
}

namespace anomalis::window {

namespace {

const QUrl first_page("qrc:/guide/guide.md");
constexpr int margin = 16;  // pixels
constexpr int cell_padding = 4;
constexpr int widest_picture = 640;

}  // namespace

QString guide_anchor(const QString& heading) {
    QString anchor;
    for (const QChar c : heading.toLower()) {
        if (c.isLetterOrNumber() || c == '-' || c == '_') anchor += c;
        if (c == ' ') anchor += '-';
    }
    return anchor;
}

GuidePage::GuidePage(QWidget* parent) : QTextBrowser(parent) {
    hold_pages();
    setOpenExternalLinks(true);
    document()->setDocumentMargin(margin);
    connect(this, &QTextBrowser::sourceChanged, this, &GuidePage::take_place);
    setSource(first_page);
}

/// Before anybody else hears of it; the source itself is still that of before. A page that was dressed counts
/// as changed: Qt loads it anew on every way to it, also on the one back.
void GuidePage::take_place(const QUrl& place) {
    place_ = place;
    mark_headings();
    dress_tables();
    if (!place.hasFragment()) return;
    document()->documentLayout()->documentSize();  // laid out to its end: else there is nowhere to scroll to
    scrollToAnchor(place.fragment());
}

void GuidePage::mark_headings() {
    headings_.clear();
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        const int level = block.blockFormat().headingLevel();
        if (level < 1) continue;
        headings_.push_back({level, block.text(), guide_anchor(block.text())});
        QTextCursor cursor(block);
        cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
        QTextCharFormat anchor;
        anchor.setAnchor(true);
        anchor.setAnchorNames({headings_.back().anchor});
        cursor.mergeCharFormat(anchor);
    }
}

void GuidePage::dress_tables() {
    for (QTextFrame* frame : document()->rootFrame()->childFrames()) {
        auto* table = qobject_cast<QTextTable*>(frame);
        if (!table) continue;
        QTextTableFormat format = table->format();
        format.setBorderCollapse(true);
        format.setBorder(1);
        format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
        format.setBorderBrush(palette().color(QPalette::Mid));
        format.setCellPadding(cell_padding);
        format.setCellSpacing(0);
        table->setFormat(format);
    }
}

bool GuidePage::open_at(const QString& heading) {
    QUrl place = first_page;
    place.setFragment(guide_anchor(heading));
    setSource(place);
    for (const GuideHeading& known : headings_)
        if (known.text == heading) return true;
    return false;
}

bool GuidePage::find_next(const QString& words) {
    if (words.isEmpty()) return false;
    if (find(words)) return true;
    const QTextCursor present = textCursor();
    moveCursor(QTextCursor::Start);
    if (find(words)) return true;
    setTextCursor(present);
    return false;
}

QVariant GuidePage::loadResource(int type, const QUrl& name) {
    const QVariant found = QTextBrowser::loadResource(type, name);
    if (type != QTextDocument::ImageResource) return found;
    const QImage picture = QImage::fromData(found.toByteArray());
    if (picture.width() <= widest_picture) return picture.isNull() ? found : QVariant(picture);
    return picture.scaledToWidth(widest_picture, Qt::SmoothTransformation);
}

}  // namespace anomalis::window
