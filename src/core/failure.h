#pragma once

#include <exception>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace anomalis {

class Faults;
class Prompts;

/// The faults that arithmetic and reading can meet. Each has its usual text.
enum class FaultKind { division_by_zero, subscript, overflow, invalid_call, out_of_memory, input_past_end };

/// A fault that was tested for before it was done. `what()` is the usual text ("Division by zero").
class Fault : public std::runtime_error {
  public:
    explicit Fault(FaultKind kind);
    /// The usual text, then ` (detail)`: a file and a line, a number and its limit.
    Fault(FaultKind kind, const std::string& detail);
    explicit Fault(const std::string& text) : std::runtime_error(text) {}
};

/// A file operation that failed: the system's text and the path, then what more there is to say.
class FileFault : public std::runtime_error {
  public:
    FileFault(int error_number, const std::string& path, const std::string& more = "");
};

/// A file that could be written, but not replaced as a whole: nothing was changed.
class NoSafeReplacement : public FileFault {
  public:
    using FileFault::FileFault;
};

/// The text shown for a caught exception.
std::string fault_text(const std::exception& failure);

/// Hands on a text about a failure: a record keeps it, prompts show it.
void tell(Faults& faults, const std::string& text);
void tell(Prompts& prompts, const std::string& text);

/// Runs `work`; a failure is caught here and told as `prefix` and the system's text to `listener`, the record
/// of a calculation or the prompts of a flow. Returns 0, or -1 after a failure.
template <class Listener, class Work>
int report_failure(Listener& listener, std::string_view prefix, Work&& work) {
    try {
        std::forward<Work>(work)();
        return 0;
    } catch (const std::exception& failure) {
        tell(listener, std::string(prefix) + fault_text(failure));
        return -1;
    }
}

}  // namespace anomalis
