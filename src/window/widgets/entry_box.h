#pragma once

#include <functional>
#include <string>

#include <QLineEdit>

#include "window/shell/form_guards.h"
#include "window/widgets/panel.h"

namespace anomalis::window {

/// A box that acts at every keystroke. A text that is not accepted stays in it, marked.
class KeystrokeBox : public QLineEdit {
    Q_OBJECT

  public:
    /// `accept` takes a text and says whether it was accepted.
    KeystrokeBox(const ControlText& text, FormGuards& guards, std::function<bool(const std::string&)> accept);

    /// Shows a text without acting on it.
    void fill(const std::string& text);
    bool refused() const { return refused_; }

  private:
    void mark(bool refused);

    FormGuards& guards_;
    std::function<bool(const std::string&)> accept_;
    bool refused_ = false;
};

/// A box that is taken over on Enter and on leaving, and only when the person has edited it. A text that is
/// not accepted is replaced by what is stored.
class CommitBox : public QLineEdit {
    Q_OBJECT

  public:
    struct Store {
        std::function<bool(const std::string&)> accept;  ///< false when the text is refused
        std::function<std::string()> stored;             ///< the text of what is stored now
    };
    CommitBox(const ControlText& text, FormGuards& guards, Store store);

    void fill(const std::string& text);
    /// Shows what is stored.
    void refill() { fill(store_.stored()); }
    /// Takes an edited text over now: before a command, or before another page is shown.
    void commit();

  signals:
    void text_refused(const QString& text);

  private:
    FormGuards& guards_;
    Store store_;
    bool committing_ = false;
};

/// Commits every box below a widget.
void commit_boxes(QWidget& widget);

}  // namespace anomalis::window
