#include "window/widgets/entry_box.h"

#include <QStyle>

namespace anomalis::window {

EntryBox::EntryBox(const ControlText& text, FormGuards& guards) : guards_(guards) {
    name_control(*this, text.name, QString::fromUtf8(text.caption), QString::fromUtf8(text.tip));
    setAlignment(Qt::AlignRight);
    setAcceptDrops(false);  // a file dropped here is opened by the window
}

void EntryBox::fill(const std::string& text) {
    const SuspendEvents suspend(guards_);
    setText(QString::fromStdString(text));
    setModified(false);
    mark(false);
}

void EntryBox::mark(bool refused) {
    if (refused == refused_) return;
    refused_ = refused;
    setProperty("refused", refused);
    style()->unpolish(this);
    style()->polish(this);
}

KeystrokeBox::KeystrokeBox(const ControlText& text, FormGuards& guards,
                           std::function<bool(const std::string&)> accept)
    : EntryBox(text, guards), accept_(std::move(accept)) {
    connect(this, &QLineEdit::textEdited, this, [this](const QString& typed) {
        if (!this->guards().closed()) mark(!accept_(typed.toStdString()));
    });
}

CommitBox::CommitBox(const ControlText& text, FormGuards& guards, Store store)
    : EntryBox(text, guards), store_(std::move(store)) {
    connect(this, &QLineEdit::editingFinished, this, &CommitBox::commit);
}

void CommitBox::commit() {
    if (!isModified() || committing_ || guards().closed()) return;
    // A message about the text takes the focus away, which would commit it again.
    committing_ = true;
    const QString typed = text();
    const bool accepted = store_.accept(typed.toStdString());
    refill();
    if (!accepted && store_.refused == Refused::kept) {
        setText(typed);
        mark(true);
    }
    committing_ = false;
    if (!accepted) emit text_refused(typed);
}

void commit_boxes(QWidget& widget) {
    for (CommitBox* box : widget.findChildren<CommitBox*>()) box->commit();
}

}  // namespace anomalis::window
