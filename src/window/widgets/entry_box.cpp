#include "window/widgets/entry_box.h"

#include <QStyle>

namespace anomalis::window {

KeystrokeBox::KeystrokeBox(const ControlText& text, FormGuards& guards,
                           std::function<bool(const std::string&)> accept)
    : guards_(guards), accept_(std::move(accept)) {
    name_control(*this, text.name, QString::fromUtf8(text.caption), QString::fromUtf8(text.tip));
    setAlignment(Qt::AlignRight);
    setAcceptDrops(false);  // a file dropped here is opened by the window
    connect(this, &QLineEdit::textEdited, this, [this](const QString& typed) {
        if (!guards_.closed()) mark(!accept_(typed.toStdString()));
    });
}

void KeystrokeBox::fill(const std::string& text) {
    const SuspendEvents suspend(guards_);
    setText(QString::fromStdString(text));
    mark(false);
}

void KeystrokeBox::mark(bool refused) {
    if (refused == refused_) return;
    refused_ = refused;
    setProperty("refused", refused);
    style()->unpolish(this);
    style()->polish(this);
}

CommitBox::CommitBox(const ControlText& text, FormGuards& guards, Store store)
    : guards_(guards), store_(std::move(store)) {
    name_control(*this, text.name, QString::fromUtf8(text.caption), QString::fromUtf8(text.tip));
    setAlignment(Qt::AlignRight);
    setAcceptDrops(false);  // a file dropped here is opened by the window
    connect(this, &QLineEdit::editingFinished, this, &CommitBox::commit);
}

void CommitBox::fill(const std::string& text) {
    const SuspendEvents suspend(guards_);
    setText(QString::fromStdString(text));
    setModified(false);
}

void CommitBox::commit() {
    if (!isModified() || committing_ || guards_.closed()) return;
    // A message about the text takes the focus away, which would commit it again.
    committing_ = true;
    const QString typed = text();
    const bool accepted = store_.accept(typed.toStdString());
    refill();
    committing_ = false;
    if (!accepted) emit text_refused(typed);
}

void commit_boxes(QWidget& widget) {
    for (CommitBox* box : widget.findChildren<CommitBox*>()) box->commit();
}

}  // namespace anomalis::window
