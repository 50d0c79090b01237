#include "core/file_limit.h"

#include <csignal>

namespace anomalis {

namespace {

void ignore(int /*signal*/) {}

}  // namespace

void take_file_limit_as_error() {
    // A handler, and not SIG_IGN, which a program that is started would inherit.
    struct sigaction action {};
    action.sa_handler = ignore;
    action.sa_flags = SA_RESTART;
    ::sigemptyset(&action.sa_mask);
    ::sigaction(SIGXFSZ, &action, nullptr);
}

}  // namespace anomalis
