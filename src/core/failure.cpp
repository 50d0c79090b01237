#include "core/failure.h"

#include <new>
#include <stdexcept>
#include <system_error>

#include "core/faults.h"
#include "core/prompts.h"

namespace anomalis {

namespace {

const char* usual_text(FaultKind kind) {
    switch (kind) {
        case FaultKind::division_by_zero:
            return "Division by zero";
        case FaultKind::subscript:
            return "Subscript out of range";
        case FaultKind::overflow:
            return "Overflow";
        case FaultKind::invalid_call:
            return "Invalid procedure call or argument";
        case FaultKind::out_of_memory:
            return "Out of memory";
        case FaultKind::input_past_end:
            return "Input past end of file";
    }
    return "Internal error";
}

}  // namespace

Fault::Fault(FaultKind kind) : std::runtime_error(usual_text(kind)) {}

Fault::Fault(FaultKind kind, const std::string& detail)
    : std::runtime_error(std::string(usual_text(kind)) + " (" + detail + ")") {}

FileFault::FileFault(int error_number, const std::string& path, const std::string& more)
    : std::runtime_error(std::error_code(error_number, std::generic_category()).message() + " (" + path +
                         ")" + more) {}

std::string fault_text(const std::exception& failure) {
    // What the standard library raises by itself is told in the same words as our own faults.
    const bool no_memory =
        dynamic_cast<const std::bad_alloc*>(&failure) || dynamic_cast<const std::length_error*>(&failure);
    if (no_memory) return usual_text(FaultKind::out_of_memory);
    if (dynamic_cast<const std::out_of_range*>(&failure)) return usual_text(FaultKind::subscript);
    if (const auto* system = dynamic_cast<const std::system_error*>(&failure))
        return system->code().message();
    return failure.what();
}

void tell(Faults& faults, const std::string& text) {
    faults.add(text);
}

void tell(Prompts& prompts, const std::string& text) {
    prompts.message(text);
}

}  // namespace anomalis
