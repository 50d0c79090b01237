#pragma once

#include <chrono>
#include <exception>
#include <functional>
#include <pybind11/pybind11.h>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "core/faults.h"
#include "core/pacer.h"
#include "core/recording_prompts.h"

// What the program has to say, as Python hears it: exceptions, warnings, and the stop of long work by Ctrl+C.
namespace anomalis::python {

/// Error, FileError and AnomalisWarning of the module, and how faults become them.
void define_errors(pybind11::module_& module);

/// Files that kept work from being done; FileError in Python.
class FileTrouble : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Raises Python's own error for a file that cannot be opened for reading: FileNotFoundError and so on.
void require_readable(const std::string& path);
/// The same for the folder of a file that is to be written.
void require_folder_of(const std::string& path);

/// Keeps what is told while one command works, in order.
class ToldPrompts : public RecordingPrompts {
  public:
    using Told = std::vector<std::pair<std::string, Severity>>;

    /// Forgets what earlier commands told.
    void begin();
    const Told& told() const { return told_; }
    /// Texts of this severity, a line each.
    std::string texts(Severity severity) const;

  protected:
    void show_text(const std::string& text, Severity severity) override;

  private:
    Told told_;
};

/// All texts, as a list of str.
pybind11::list texts_of(const ToldPrompts::Told& told);
/// Doubts and failures as AnomalisWarning; may raise, where warnings are errors.
void warn_of(const ToldPrompts::Told& told);
void warn_of(const Faults& faults);

/// Listens to Ctrl+C and calls back into Python while long work goes on without the lock of the interpreter.
/// What either raises ends the work and is raised at its end. All calls come from the thread that began the
/// work.
class Watch : public CalculationWatcher {
  public:
    /// `progress` is called by `tell`; None for nobody.
    explicit Watch(pybind11::object progress = pybind11::none()) : progress_(std::move(progress)) {}

    /// Asked often, without the lock. True: the work is to be left.
    bool stop();
    /// Calls `progress` with what `arguments` makes, under the lock.
    void tell(const std::function<pybind11::tuple()>& arguments);
    /// At the end, with the lock: raises what ended the work.
    void raise_if_left();
    bool left() const { return failure_ != nullptr; }

    void begins(double) override {}
    bool turn(double) override { return stop(); }
    void ended() override {}

  private:
    using Clock = std::chrono::steady_clock;

    pybind11::object progress_;
    std::exception_ptr failure_;
    Clock::time_point asked_{};
};

}  // namespace anomalis::python
