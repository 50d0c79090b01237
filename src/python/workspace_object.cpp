#include "python/workspace_object.h"

namespace anomalis::python {

namespace py = pybind11;

namespace {

/// Nobody else gets in while it lives.
class Busy {
  public:
    explicit Busy(std::atomic<bool>& flag) : flag_(flag) {
        if (flag_.exchange(true))
            throw Fault("the workspace is at work: one thread at a time, and not from its own callback");
    }
    ~Busy() { flag_ = false; }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;

  private:
    std::atomic<bool>& flag_;
};

/// Who listens while work goes on.
class Listening {
  public:
    Listening(ToldPrompts& prompts, Watch& watch) : prompts_(prompts) {
        prompts.begin();
        prompts.set_watcher(&watch);
    }
    ~Listening() { prompts_.set_watcher(nullptr); }
    Listening(const Listening&) = delete;
    Listening& operator=(const Listening&) = delete;

  private:
    ToldPrompts& prompts_;
};

}  // namespace

WorkspaceObject::WorkspaceObject() : held_(std::make_shared<HeldSession>()) {
    initialise_workspace(held_->session.workspace, held_->prompts);
    held_->session.workspace.formulas = Formulas::exact;
}

Session& WorkspaceObject::session() {
    if (busy_) throw Fault("the workspace is at work: one thread at a time, and not from its own callback");
    return held_->session;
}

std::shared_ptr<HeldSession> WorkspaceObject::held() {
    session();
    return held_;
}

flow::OpenState WorkspaceObject::state() {
    return workspace().station_count > 0 ? opened.state : flow::OpenState::no_data;
}

void WorkspaceObject::detach_views() {
    if (held_.use_count() == 1) return;
    auto fresh = std::make_shared<HeldSession>();
    fresh->session.workspace = held_->session.workspace;
    fresh->session.inversion = held_->session.inversion;
    held_ = std::move(fresh);
}

void WorkspaceObject::work(Watch& watch, const std::function<void(Session&)>& job) {
    const Busy busy(busy_);
    const Listening listening(held_->prompts, watch);
    std::exception_ptr failure;
    {
        const py::gil_scoped_release free;
        held_->prompts.on_yield = [&] { watch.stop(); };
        try {
            const MessageScope scope(held_->prompts);
            job(held_->session);
        } catch (...) {
            failure = std::current_exception();
        }
        held_->prompts.on_yield = nullptr;
    }
    watch.raise_if_left();
    if (failure) std::rethrow_exception(failure);
}

void WorkspaceObject::settle(bool failed, const std::string& otherwise) {
    if (failed) {
        const std::string why = held_->prompts.texts(Severity::failure);
        throw Fault(why.empty() ? otherwise : why);
    }
    warn_of(ToldPrompts::Told(told()));
}

}  // namespace anomalis::python
