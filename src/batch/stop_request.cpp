#include "batch/stop_request.h"

#include <csignal>

namespace anomalis::batch {

namespace {

// A signal handler can reach nothing else than an object of static duration.
volatile std::sig_atomic_t interrupted = 0;

void remember(int signal) {
    interrupted = 1;
    std::signal(signal, SIG_DFL);
}

}  // namespace

StopRequest::StopRequest() {
    interrupted = 0;
    handler_before_ = std::signal(SIGINT, remember);
}

StopRequest::~StopRequest() {
    std::signal(SIGINT, handler_before_ == SIG_ERR ? SIG_DFL : handler_before_);
}

bool StopRequest::made() const {
    return interrupted != 0;
}

}  // namespace anomalis::batch
