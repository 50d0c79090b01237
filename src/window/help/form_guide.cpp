#include "window/help/form_guide.h"

#include <QHBoxLayout>
#include <QHelpContentModel>
#include <QHelpContentWidget>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QShortcut>
#include <QSplitter>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

#include "window/help/guide_page.h"
#include "window/shell/look.h"
#include "window/widgets/panel.h"

namespace anomalis::window {

namespace {

constexpr int margin = 10;  // pixels
constexpr int side_width = 250, page_width = 680;
constexpr int found_gap = 3;  // pixels
constexpr QSize designed_size{960, 720};

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

FormGuide::FormGuide(const QStringList& files, QWidget* parent)
    : QDialog(parent),
      book_(files),
      page_(new GuidePage(book_)),
      side_(new QStackedWidget),
      found_list_(new QListWidget),
      words_(new QLineEdit),
      answer_(new QLabel) {
    setObjectName("Form_guide");
    setWindowTitle(tr("Guide"));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    resize(designed_size);
    name_control(*page_, "Text_guide", tr("Guide"),
                 tr("A link leads to its place; Alt and the left arrow key back"));
    page_->setToolTip({});  // it would lie on the text
    auto* halves = new QSplitter;
    halves->addWidget(make_side());
    halves->addWidget(page_);
    halves->setStretchFactor(1, 1);
    halves->setSizes({side_width, page_width});
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->addWidget(make_bar());
    column->addWidget(halves, 1);
    wire();
    page_->setFocus();
}

/// The widgets that show the book go before it.
FormGuide::~FormGuide() {
    delete page_;
    delete side_;
}

QWidget* FormGuide::make_side() {
    name_control(*found_list_, "List_guide_found", tr("Found"), tr("Pages that hold what was looked for"));
    found_list_->setWordWrap(true);
    found_list_->setSpacing(found_gap);
    found_list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    if (book_.is_open()) {
        QHelpContentWidget& contents = book_.contents();
        name_control(contents, "List_guide_contents", tr("Contents"),
                     tr("Chapters, pages and sections of the guide"));
        contents.setHeaderHidden(true);
        side_->addWidget(&contents);
    } else {
        side_->addWidget(new QWidget);
    }
    side_->addWidget(found_list_);
    return side_;
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
    answer_->setObjectName("Label_guide_answer");
    row->addWidget(answer_);
    name_control(*words_, "Text_guide_find", tr("Find"),
                 tr("A text to look for on all pages: Enter lists the pages that have it, F3 goes from place "
                    "to place"));
    words_->setPlaceholderText(tr("Find in the guide"));
    words_->setClearButtonEnabled(true);
    row->addWidget(words_);
    return bar;
}

void FormGuide::wire() {
    connect(words_, &QLineEdit::returnPressed, this, &FormGuide::find);
    connect(words_, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (text.isEmpty()) end_search();
    });
    connect(new QShortcut(QKeySequence::FindNext, this), &QShortcut::activated, this, &FormGuide::find_next);
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, [this] {
        words_->setFocus();
        words_->selectAll();
    });
    connect(found_list_, &QListWidget::currentRowChanged, this, &FormGuide::open_found);
    if (book_.is_open()) wire_contents();
}

void FormGuide::wire_contents() {
    QHelpContentWidget& contents = book_.contents();
    const auto open = [this, &contents](const QModelIndex& index) {
        const auto* model = qobject_cast<QHelpContentModel*>(contents.model());
        if (const QHelpContentItem* item = model ? model->contentItemAt(index) : nullptr)
            page_->setSource(item->url());
    };
    connect(&contents, &QTreeView::clicked, this, open);
    connect(&contents, &QTreeView::activated, this, open);
    connect(qobject_cast<QHelpContentModel*>(contents.model()), &QHelpContentModel::contentsCreated, this,
            &FormGuide::show_contents_place);
    connect(page_, &QTextBrowser::sourceChanged, this, &FormGuide::show_contents_place);
}

/// The section, or the page where the contents have no such section. What is around it opens.
void FormGuide::show_contents_place() {
    QHelpContentWidget& contents = book_.contents();
    const auto& model = static_cast<const QHelpContentModel&>(*contents.model());
    contents.expand(model.index(0, 0));
    QModelIndex place = contents.indexOf(page_->place());
    if (!place.isValid()) return;
    for (int row = 0; row < model.rowCount(place); ++row)
        if (const QModelIndex section = model.index(row, 0, place);
            model.contentItemAt(section)->url() == page_->place()) {
            place = section;
            break;
        }
    contents.setCurrentIndex(place);
    contents.expand(place);
    contents.scrollTo(place);
}

void FormGuide::open_at(const QString& page) {
    show();  // a page that was never laid out has no place to scroll to
    page_->open_at(page);
    raise();
    activateWindow();
}

/// Asked for the same again it goes on.
void FormGuide::find() {
    if (words_->text().trimmed().isEmpty()) return end_search();
    if (!found_.empty() && words_->text() == asked_) return find_next();
    asked_ = words_->text();
    found_ = search_guide(book_.texts(), words_->text());
    answer_->setText(found_.empty() ? tr("Not in the guide") : tr("Pages: %1").arg(found_.size()));
    show_found();
}

void FormGuide::show_found() {
    const QSignalBlocker quiet(found_list_);
    found_list_->clear();
    for (const GuideFind& find : found_) found_list_->addItem(find.title + "\n" + find.around);
    side_->setCurrentWidget(found_list_);
    if (found_.empty()) return page_->mark({});
    found_list_->setCurrentRow(0);
    open_found(0);
}

void FormGuide::open_found(int row) {
    if (row < 0 || row >= static_cast<int>(found_.size())) return;
    const GuideFind& find = found_[static_cast<std::size_t>(row)];
    page_->mark(find.marked);
    page_->setSource(find.page);
    page_->moveCursor(QTextCursor::Start);
    page_->find_next();
}

/// From place to place on the page, then on the next page that has it, from the last one to the first.
void FormGuide::find_next() {
    if (found_.empty()) return find();
    if (page_->find_next()) return;
    const int next = (found_list_->currentRow() + 1) % found_list_->count();
    if (next == found_list_->currentRow())
        open_found(next);
    else
        found_list_->setCurrentRow(next);
}

void FormGuide::end_search() {
    found_.clear();
    answer_->clear();
    page_->mark({});
    side_->setCurrentIndex(0);
}

}  // namespace anomalis::window
