#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/faults.h"

namespace anomalis {

/// What a file dialog needs to know. `filter` is pairs of text and pattern split by "|".
struct FileRequest {
    std::string title;
    std::string filter;
    std::string default_name;
    std::string default_extension;
    bool confirm_overwrite = false;  ///< the dialog asks; otherwise the flow that saves does, or nobody
};

/// The one door to the person at the keyboard. The window answers with dialogs, the batch tool with
/// stderr, tests with a script.
class Prompts {
  public:
    virtual ~Prompts() = default;

    /// Shows a text. Inside a `MessageScope` a text that repeats is shown once, with its count behind it.
    void message(const std::string& text);
    /// Asks a question with Yes and No.
    bool ask_yes_no(const std::string& text);
    /// Asks a question whose answers stand on the buttons, the one that Enter means first and the one that
    /// changes nothing last: Esc and closing the question mean it too. Returns the place of the answer.
    std::size_t choose(const std::string& text, const std::vector<std::string>& answers);
    /// Asks for a line of text; no value after a cancel.
    std::optional<std::string> input_box(const std::string& title, const std::string& prompt,
                                         const std::string& default_text);
    /// Asks for a path; no value after a cancel.
    std::optional<std::string> open_file(const FileRequest& request);
    std::optional<std::string> save_file(const FileRequest& request);
    /// Lets the event loop run: painting and the stop button during long work.
    virtual void yield() {}
    /// One turn of a calculation, which has done `units` more (see core/pacer.h): lets the event loop run.
    /// True when the person wants the calculation left.
    virtual bool turn(double /*units*/) {
        yield();
        return false;
    }

  protected:
    virtual void show_message(const std::string& text) = 0;
    virtual bool show_question(const std::string& text) = 0;
    /// Where nobody is asked nothing is changed.
    virtual std::size_t show_choice(const std::string& text, const std::vector<std::string>& answers);
    virtual std::optional<std::string> show_input_box(const std::string& title, const std::string& prompt,
                                                      const std::string& default_text) = 0;
    virtual std::optional<std::string> show_open_dialog(const FileRequest& request) = 0;
    virtual std::optional<std::string> show_save_dialog(const FileRequest& request) = 0;

  private:
    friend class MessageScope;
    friend void show_faults(const Faults& faults, Prompts& prompts);
    void flush();

    int depth_ = 0;
    Faults pending_;  ///< what the messages of the scope said
};

/// Shows what a calculation noted as one command does: each text once, a repeated one with its count.
void show_faults(const Faults& faults, Prompts& prompts);

/// One command: while it lives, messages are gathered; the outermost shows each text once when it ends,
/// in the order of first occurrence, a repeated one as "text (n times)".
class MessageScope {
  public:
    explicit MessageScope(Prompts& prompts) : prompts_(prompts) { ++prompts_.depth_; }
    ~MessageScope();
    MessageScope(const MessageScope&) = delete;
    MessageScope& operator=(const MessageScope&) = delete;

  private:
    Prompts& prompts_;
};

}  // namespace anomalis
