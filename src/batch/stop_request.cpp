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

StopRequest::StopRequest(StopSignals signals) : terminate_before_(SIG_ERR) {
    interrupted = 0;
    handler_before_ = std::signal(SIGINT, remember);
    if (signals == StopSignals::terminate_too) terminate_before_ = std::signal(SIGTERM, remember);
}

StopRequest::~StopRequest() {
    std::signal(SIGINT, handler_before_ == SIG_ERR ? SIG_DFL : handler_before_);
    if (terminate_before_ != SIG_ERR) std::signal(SIGTERM, terminate_before_);
}

bool StopRequest::made() const {
    return interrupted != 0;
}

}  // namespace anomalis::batch
