#include "window/shell/form_about.h"

#include <QDialogButtonBox>
#include <QFile>
#include <QFontDatabase>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTextBrowser>
#include <QVBoxLayout>

// A resource of a library is taken in outside of any namespace.
static void take_in_notices() {
    Q_INIT_RESOURCE(notices);
}

namespace anomalis::window {

namespace {

constexpr int margin = 18;  // pixels
constexpr QSize designed_size{820, 560};

QWidget* make_words(const QString& words) {
    auto* label = new QLabel(words);
    label->setObjectName("Label_about");
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    label->setMargin(margin);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

/// What is before the texts of the licences, as a page; links go nowhere by themselves.
QWidget* make_libraries(const QString& text) {
    auto* page = new QTextBrowser;
    page->setObjectName("Text_libraries");
    page->setOpenLinks(false);
    page->setMarkdown(text);
    page->setToolTip(FormAbout::tr("What the program takes from others, and whose it is"));
    return page;
}

QWidget* make_licences(const QString& text) {
    auto* page = new QPlainTextEdit(text);
    page->setObjectName("Text_licences");
    page->setReadOnly(true);
    page->setLineWrapMode(QPlainTextEdit::NoWrap);
    page->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    page->setToolTip(FormAbout::tr("The licences of the libraries, word for word"));
    return page;
}

}  // namespace

FormAbout::FormAbout(const QString& words, QWidget* parent) : QDialog(parent) {
    setObjectName("Form_about");
    setWindowTitle(tr("About Anomalis"));
    setAttribute(Qt::WA_DeleteOnClose);
    resize(designed_size);
    const QString text = notices();
    const qsizetype licences = text.indexOf("\n## ");
    auto* pages = new QTabWidget;
    pages->setObjectName("Tab_about");
    pages->addTab(make_words(words), tr("Anomalis"));
    pages->addTab(make_libraries(text.left(licences)), tr("Libraries"));
    pages->addTab(make_licences(text.mid(licences + 1)), tr("Licences"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    buttons->button(QDialogButtonBox::Close)->setToolTip(tr("Back to the window"));
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* page = new QVBoxLayout(this);
    page->addWidget(pages);
    page->addWidget(buttons);
}

QString notices() {
    take_in_notices();
    QFile file(":/papers/NOTICES.md");
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

}  // namespace anomalis::window
