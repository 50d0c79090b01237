// Long work in the window by someone without plan: test_soak ACTIONS|SECONDSs [SEED]. Ends with 1 at the
// first broken law.

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numeric>
#include <sstream>
#include <stdexcept>
#include <vector>

#include <QApplication>

#include "edit/model_state.h"
#include "edit/workbench.h"
#include "intake/load.h"
#include "model/refresh_model.h"
#include "support/chance.h"
#include "support/fresh_load.h"
#include "support/live_bytes.h"
#include "support/scripted_prompts.h"
#include "window/restless_person.h"
#include "window/shell/look.h"
#include "workspace_file/axm.h"

namespace anomalis::window {

namespace {

constexpr int actions_a_save = 50;
/// Between two looks at the memory; the window begins anew at each.
constexpr int actions_a_look = 500;

/// What a step of the history leaves is what a fresh load of it gives; the difference, or "".
std::string difference_after_step(RestlessPerson& person) {
    if (!edit::line_loaded(person.workspace())) return {};
    // The burial of spheres hangs on itself; the second time it stands.
    model::refresh_model(person.session);
    model::refresh_model(person.session);
    return difference_from_fresh_load(person.workspace());
}

/// The first line in which two texts differ, or "".
std::string first_difference(const std::string& saved, const std::string& saved_again) {
    std::istringstream first(saved);
    std::istringstream second(saved_again);
    std::string one, other;
    while (std::getline(first, one)) {
        if (!std::getline(second, other) || one != other)
            return "saved as '" + one + "', read and saved again as '" + other + "'";
    }
    return saved.size() == saved_again.size() ? "" : "saved again it is longer";
}

/// Reads a saved workspace, with its line where the person has one loaded, and saves it again.
void save_again(const std::string& from, const std::string& to, bool with_line) {
    ScriptedPrompts prompts;
    Session session(prompts, Settings{});
    Workspace& workspace = session.workspace;
    initialise_workspace(workspace, prompts);
    const bool done =
        workspace_file::read_model_parameters(0, workspace, from, session.settings, prompts) == 0 &&
        (!with_line || intake::load_locations(workspace, prompts) >= 0) &&
        workspace_file::write_model_parameters(0, to, workspace, prompts) == 0;
    if (!done) throw std::runtime_error(prompts.messages.empty() ? "no message" : prompts.messages.back());
}

/// The text without its fourth line, which holds the stations of the fit: they are found anew from their
/// distances when a line is loaded, and the last one of the line is then left out.
std::string without_window(const std::string& text) {
    std::size_t begin = 0;
    for (int line = 1; line < 4; ++line) begin = text.find('\n', begin) + 1;
    return text.substr(0, begin) + text.substr(text.find('\n', begin) + 1);
}

/// What was saved and read again is saved as the same bytes.
std::string difference_after_save(RestlessPerson& person) {
    const TempFolder& folder = person.folder();
    ScriptedPrompts prompts;
    Workspace saved = edit::copy_of_model(person.workspace());
    // What the format does not keep: a body that is switched off, and the sign of a slab's dip.
    for (ModelBody& body : saved.bodies) {
        body.turned_off = 0;
        if (!is_round(body.type)) body.dip.value = std::abs(body.dip.value);
    }
    if (workspace_file::write_model_parameters(0, folder.path("law_1.axm"), saved, prompts) != 0)
        return "not saved: " + prompts.messages.back();
    const bool with_line = person.workspace().station_count > 0;
    try {
        save_again(folder.path("law_1.axm"), folder.path("law_2.axm"), with_line);
        save_again(folder.path("law_2.axm"), folder.path("law_3.axm"), with_line);
    } catch (const std::exception& failure) {
        return std::string("not saved again: ") + failure.what();
    }
    const std::string second = folder.read("law_2.axm");
    const std::string first_change =
        first_difference(without_window(folder.read("law_1.axm")), without_window(second));
    return first_change.empty() ? first_difference(second, folder.read("law_3.axm")) : first_change;
}

double mean(std::vector<double>::const_iterator begin, std::vector<double>::const_iterator end) {
    return std::accumulate(begin, end, 0.0) / static_cast<double>(end - begin);
}

/// Nothing gathers: what is kept once, and the steps that can be taken back, are there after a third of the
/// looks, and then the memory stays, but for what those steps happen to hold.
std::string growth(const std::vector<double>& looks) {
    const auto third = static_cast<std::ptrdiff_t>(looks.size() / 3);
    if (third < 2) return {};
    const double second = mean(looks.begin() + third, looks.begin() + 2 * third);
    const double last = mean(looks.end() - third, looks.end());
    std::printf("memory in use: %.3f MB in the second third, %.3f MB in the last\n", second / 1e6,
                last / 1e6);
    return last <= second * 1.03 ? "" : "the memory in use grows";
}

/// The first broken law with what led to it, or "".
class Soak {
  public:
    explicit Soak(std::uint32_t seed) : person_(seed) {}

    std::string run(const Budget& budget) {
        int action = 0;
        while (budget.allows(action) && broken_.empty()) {
            ++action;
            if (person_.act()) {
                ++steps_compared_;
                demand(action, difference_after_step(person_));
            }
            if (action % actions_a_save == 0) demand(action, difference_after_save(person_));
            if (action % actions_a_look == 0) {
                person_.start_anew();
                looks_.push_back(static_cast<double>(live_bytes()));
            }
        }
        if (broken_.empty()) demand(action, growth(looks_));
        return broken_;
    }
    std::string summary() const {
        return std::to_string(steps_compared_) + " steps of the history compared, " +
               std::to_string(person_.prompts.messages) + " messages, " +
               std::to_string(person_.prompts.questions) + " questions";
    }

  private:
    void demand(int action, const std::string& difference) {
        if (broken_.empty() && !difference.empty())
            broken_ =
                "action " + std::to_string(action) + ": " + difference + "\nafter\n" + person_.last_deeds();
    }

    RestlessPerson person_;
    std::vector<double> looks_;
    std::string broken_;
    int steps_compared_ = 0;
};

/// The offscreen platform has much to say of what it cannot do.
void tell_faults_alone(QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type == QtCriticalMsg || type == QtFatalMsg) std::fprintf(stderr, "%s\n", qPrintable(text));
}

}  // namespace
}  // namespace anomalis::window

int main(int argc, char** argv) {
    using namespace anomalis::window;
    if (argc < 2 || argc > 3) {
        std::fprintf(stderr, "usage: %s ACTIONS|SECONDSs [SEED]\n", argv[0]);
        return 2;
    }
    qInstallMessageHandler(tell_faults_alone);
    QApplication application(argc, argv);
    apply_look(application);
    Soak soak(argc > 2 ? static_cast<std::uint32_t>(std::strtoul(argv[2], nullptr, 10))
                       : anomalis::seed_of_chance());
    const std::string broken = soak.run(anomalis::Budget(argv[1]));
    std::printf("%s\n", broken.empty() ? soak.summary().c_str() : broken.c_str());
    return broken.empty() ? 0 : 1;
}
