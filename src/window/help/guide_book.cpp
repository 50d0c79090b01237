#include "window/help/guide_book.h"

#include <algorithm>
#include <array>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QHelpContentWidget>
#include <QHelpEngine>
#include <QRegularExpression>

namespace anomalis::window {

namespace {

struct Entity {
    const char* name;
    const char* character;
};
// An ampersand comes last: what it gives is not read again.
constexpr std::array entities{Entity{"&lt;", "<"},  Entity{"&gt;", ">"},  Entity{"&quot;", "\""},
                              Entity{"&#39;", "'"}, Entity{"&#64;", "@"}, Entity{"&nbsp;", " "},
                              Entity{"&amp;", "&"}};

QString without_entities(QString text) {
    for (const Entity& entity : entities) text.replace(entity.name, entity.character);
    return text;
}

QString title_of(const QString& html) {
    const qsizetype from = html.indexOf("<title>") + 7;
    return without_entities(html.mid(from, html.indexOf("</title>", from) - from)).trimmed();
}

QString said(const char* text) {
    return QCoreApplication::translate("Guide", text);
}

}  // namespace

// What stands in a line parts no word, everything else does.
QString words_of_page(const QString& html) {
    static const QRegularExpression in_line("</?(a|code|em|kbd|span|strong|sub|sup)\\b[^>]*>");
    static const QRegularExpression tag("<[^>]*>");
    QString words = html.mid(std::max<qsizetype>(html.indexOf("<body"), 0));
    words.remove(in_line).replace(tag, " ");
    return without_entities(words.simplified());
}

GuideBook::GuideBook(const QStringList& files) {
    const auto file = std::find_if(files.begin(), files.end(),
                                   [](const QString& each) { return QFileInfo(each).isReadable(); });
    if (file == files.end())
        failure_ =
            said(
                "It comes with the program and was looked for in\n%1\nA build makes it with the target "
                "\"guide\"; an installation without it is not whole: install it again.")
                .arg(files.join('\n'));
    else
        open(*file);
}

GuideBook::~GuideBook() = default;

void GuideBook::open(const QString& file) {
    if (!kept_.isValid()) {
        failure_ =
            said(
                "No folder for temporary files can be made in %1: %2.\nMake room there, or give TMPDIR "
                "another folder.")
                .arg(QDir::tempPath(), kept_.errorString());
        return;
    }
    engine_ = std::make_unique<QHelpEngine>(kept_.filePath("guide.qhc"));
    engine_->setReadOnly(false);
    space_ = QHelpEngineCore::namespaceName(file);
    if (!engine_->setupData() || !engine_->registerDocumentation(file) || !engine_->setupData())
        failure_ = said("%1 is no guide: %2.\nInstall it again.").arg(file, engine_->error());
}

QByteArray GuideBook::data(const QUrl& place) const {
    return is_open() ? engine_->fileData(place.adjusted(QUrl::RemoveFragment)) : QByteArray();
}

QUrl GuideBook::place_of(const QString& page) const {
    QUrl place("qthelp://" + space_ + "/doc/" + page.section('#', 0, 0) + ".html");
    if (page.contains('#')) place.setFragment(page.section('#', 1));
    return place;
}

const std::vector<GuideText>& GuideBook::texts() const {
    if (!is_open() || !texts_.empty()) return texts_;
    for (const QUrl& page : engine_->files(space_, QString(), "html")) {
        const QString html = QString::fromUtf8(engine_->fileData(page));
        texts_.push_back({page, title_of(html), words_of_page(html)});
    }
    return texts_;
}

QHelpContentWidget& GuideBook::contents() {
    return *engine_->contentWidget();
}

}  // namespace anomalis::window
