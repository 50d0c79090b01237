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

/// Who shows the person how far a calculation has come, and may have it left. Units are those of
/// core/pacer.h.
class CalculationWatcher {
  public:
    virtual ~CalculationWatcher() = default;
    /// A calculation of about `units` begins.
    virtual void begins(double units) = 0;
    /// `units` more are done. True: the calculation is to be left.
    virtual bool turn(double units) = 0;
    /// The calculation has ended, on whatever way.
    virtual void ended() = 0;
};

/// The one door to the person at the keyboard. The window answers with dialogs, the batch tool with
/// stderr, tests with a script.
class Prompts {
  public:
    virtual ~Prompts() = default;

    /// Shows a text: a failure, unless it says otherwise. Inside a `MessageScope` a text that repeats is
    /// shown once, with its count behind it.
    void message(const std::string& text, Severity severity = Severity::failure);
    /// The same for a text that tells of no failure.
    void remark(const std::string& text) { message(text, Severity::remark); }
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
    /// Shows calculations and has them left; null for nobody, who only lets the event loop run at their
    /// turns.
    void set_watcher(CalculationWatcher* watcher) { watcher_ = watcher; }
    CalculationWatcher* watcher() const { return watcher_; }

  protected:
    virtual void show_message(const std::string& text) = 0;
    /// Whoever keeps the kinds apart does so here.
    virtual void show_text(const std::string& text, Severity) { show_message(text); }
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

    CalculationWatcher* watcher_ = nullptr;
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
