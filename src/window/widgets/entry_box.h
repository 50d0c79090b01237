#pragma once

#include <functional>
#include <string>

#include <QLineEdit>

#include "window/shell/form_guards.h"
#include "window/widgets/panel.h"

namespace anomalis::window {

/// A box of one line. One whose text was refused is marked as long as it holds that text.
class EntryBox : public QLineEdit {
    Q_OBJECT

  public:
    EntryBox(const ControlText& text, FormGuards& guards);

    /// Shows a text without acting on it.
    void fill(const std::string& text);
    bool refused() const { return refused_; }

  protected:
    void mark(bool refused);
    FormGuards& guards() { return guards_; }

  private:
    FormGuards& guards_;
    bool refused_ = false;
};

/// A box that acts at every keystroke. A text that is not accepted stays in it, marked.
class KeystrokeBox : public EntryBox {
    Q_OBJECT

  public:
    /// `accept` takes a text and says whether it was accepted.
    KeystrokeBox(const ControlText& text, FormGuards& guards, std::function<bool(const std::string&)> accept);

  private:
    std::function<bool(const std::string&)> accept_;
};

/// A box that is taken over on Enter and on leaving, and only when the person has edited it.
class CommitBox : public EntryBox {
    Q_OBJECT

  public:
    /// What becomes of a text that is not accepted: the box shows what is stored, or keeps the text, marked.
    enum class Refused { replaced, kept };
    struct Store {
        std::function<bool(const std::string&)> accept;  ///< false when the text is refused
        std::function<std::string()> stored;             ///< the text of what is stored now
        Refused refused = Refused::replaced;
    };
    CommitBox(const ControlText& text, FormGuards& guards, Store store);

    /// Shows what is stored.
    void refill() { fill(store_.stored()); }
    /// Takes an edited text over now: before a command, or before another page is shown.
    void commit();

  signals:
    void text_refused(const QString& text);

  private:
    Store store_;
    bool committing_ = false;
};

/// Commits every box below a widget.
void commit_boxes(QWidget& widget);

}  // namespace anomalis::window
