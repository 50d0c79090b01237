#include "window/help/form_guide.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QShortcut>
#include <QSplitter>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "window/help/guide_page.h"
#include "window/shell/look.h"
#include "window/widgets/panel.h"

namespace anomalis::window {

namespace {

constexpr int margin = 10;  // pixels
constexpr int contents_width = 230, page_width = 700;
constexpr QSize designed_size{960, 720};
constexpr int chapter_level = 2;
constexpr int anchor_role = Qt::UserRole;

QToolButton* make_step(const char* name, const QString& text, const QString& tip, QTextBrowser& page,
                       void (QTextBrowser::*step)(), void (QTextBrowser::*available)(bool)) {
    auto* button = new QToolButton;
    button->setText(text);
    name_control(*button, name, tip, tip);
    button->setEnabled(false);
    QObject::connect(button, &QToolButton::clicked, &page, step);
    QObject::connect(&page, available, button, &QToolButton::setEnabled);
    return button;
}

}  // namespace

FormGuide::FormGuide(QWidget* parent)
    : QDialog(parent),
      page_(new GuidePage),
      contents_(new QTreeWidget),
      words_(new QLineEdit),
      answer_(new QLabel) {
    setObjectName("Form_guide");
    setWindowTitle(tr("Guide"));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    resize(designed_size);
    name_control(*page_, "Text_guide", tr("Guide"),
                 tr("A link leads to its place; Alt and the left arrow key back"));
    name_control(*contents_, "List_guide_contents", tr("Contents"), tr("Chapters and sections of the guide"));
    contents_->setHeaderHidden(true);
    page_->setToolTip({});  // it would lie on the text
    auto* halves = new QSplitter;
    halves->addWidget(contents_);
    halves->addWidget(page_);
    halves->setStretchFactor(1, 1);
    halves->setSizes({contents_width, page_width});
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->addWidget(make_bar());
    column->addWidget(halves, 1);
    wire();
    fill_contents();
    page_->setFocus();
}

QWidget* FormGuide::make_bar() {
    auto* bar = new QWidget;
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(make_step("Command_guide_back", "←", tr("Back to where the guide was before"), *page_,
                             &QTextBrowser::backward, &QTextBrowser::backwardAvailable));
    row->addWidget(make_step("Command_guide_forward", "→", tr("Forward again"), *page_,
                             &QTextBrowser::forward, &QTextBrowser::forwardAvailable));
    row->addStretch(1);
    make_quiet(*answer_);
    row->addWidget(answer_);
    name_control(*words_, "Text_guide_find", tr("Find"),
                 tr("A text to look for in the guide; Enter or F3 goes to its next place"));
    words_->setPlaceholderText(tr("Find in the guide"));
    words_->setClearButtonEnabled(true);
    row->addWidget(words_);
    return bar;
}

void FormGuide::wire() {
    connect(words_, &QLineEdit::returnPressed, this, &FormGuide::find);
    connect(new QShortcut(QKeySequence::FindNext, this), &QShortcut::activated, this, &FormGuide::find);
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, [this] {
        words_->setFocus();
        words_->selectAll();
    });
    connect(page_, &QTextBrowser::sourceChanged, this, [this] {
        if (page_->place().adjusted(QUrl::RemoveFragment) != listed_) fill_contents();
        show_contents_place();
    });
    connect(contents_, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) {
        page_->setSource(page_->place().resolved(QUrl("#" + item->data(0, anchor_role).toString())));
    });
    connect(contents_, &QTreeWidget::itemClicked, contents_, &QTreeWidget::itemActivated);
}

void FormGuide::fill_contents() {
    listed_ = page_->place().adjusted(QUrl::RemoveFragment);
    contents_->clear();
    QTreeWidgetItem* chapter = nullptr;
    for (const GuideHeading& heading : page_->headings()) {
        if (heading.level < chapter_level) continue;
        const bool section = heading.level > chapter_level && chapter;
        auto* item = section ? new QTreeWidgetItem(chapter) : new QTreeWidgetItem(contents_);
        item->setText(0, heading.text);
        item->setData(0, anchor_role, heading.anchor);
        if (!section) chapter = item;
    }
    contents_->expandAll();
}

void FormGuide::show_contents_place() {
    for (QTreeWidgetItemIterator item(contents_); *item; ++item)
        if ((*item)->data(0, anchor_role).toString() == page_->place().fragment())
            contents_->setCurrentItem(*item);
}

void FormGuide::open_at(const QString& heading) {
    show();  // a page that was never laid out has no place to scroll to
    page_->open_at(heading);
    raise();
    activateWindow();
}

void FormGuide::find() {
    const bool found = page_->find_next(words_->text());
    answer_->setText(found || words_->text().isEmpty() ? QString() : tr("Not in the guide"));
}

}  // namespace anomalis::window
