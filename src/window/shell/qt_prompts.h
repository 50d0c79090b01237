#pragma once

#include <QElapsedTimer>
#include <QString>

#include "core/prompts.h"

class QWidget;

namespace anomalis::window {

/// Asks and tells by dialogs over the window.
class QtPrompts : public Prompts {
  public:
    /// The window that the dialogs belong to; null while there is none.
    void set_window(QWidget* window) { window_ = window; }

    /// Lets the window paint itself; the person's keys and clicks wait unless they are served. A turn that
    /// follows the last one closely is left out, so that it may be called in a fast loop.
    void yield() override;
    void serve_input(bool serve) { serve_input_ = serve; }

    /// "Text|*.a;*.b|All files (*.*)|*.*" as Qt's file dialogs want it.
    static QString dialog_filter(const std::string& filter);

  protected:
    void show_message(const std::string& text) override;
    bool show_question(const std::string& text) override;
    std::size_t show_choice(const std::string& text, const std::vector<std::string>& answers) override;
    std::optional<std::string> show_input_box(const std::string& title, const std::string& prompt,
                                              const std::string& default_text) override;
    std::optional<std::string> show_open_dialog(const FileRequest& request) override;
    std::optional<std::string> show_save_dialog(const FileRequest& request) override;

  private:
    /// What a dialog stands over: an open form of the window comes first.
    QWidget* parent() const;

    QWidget* window_ = nullptr;
    QElapsedTimer since_turn_;
    bool serve_input_ = false;
};

}  // namespace anomalis::window
