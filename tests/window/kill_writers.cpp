// Kills whatever writes a file, so many times at moments that follow from a seed: test_kills KILLS [SEED].
// What it finds afterwards is the older or the newer file, whole, and a leftover that the next writer cleans
// away. Ends with 1 where it does not.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <QGuiApplication>

#include "batch/picture_writer.h"
#include "batch/run_batch.h"
#include "core/leftovers.h"
#include "core/safe_file.h"
#include "core/settings.h"
#include "edit/change.h"
#include "edit/line_sample.h"
#include "flow/program_folder.h"
#include "flow/recovery.h"
#include "support/chance.h"
#include "support/interrupted.h"
#include "support/temp_folder.h"
#include "transform/transform.h"
#include "window/shell/model_picture.h"
#include "workspace_file/axm.h"

namespace anomalis {
namespace {

class Pictures : public batch::PictureWriter {
  public:
    int write(Session& session, const batch::PictureRequest& request) override {
        return window::write_model_picture(session, request.path, request.view, request.width,
                                           request.height);
    }
    /// None of the writers draws a map.
    int write_map(Prompts&, const intake::SurveyIndex&, const batch::MapRequest&) override { return -1; }
    int write_results_map(Prompts&, const survey::SurveyResults&, const survey::ResultsMapMarks&,
                          const batch::MapRequest&) override {
        return -1;
    }
};

/// One of the places where the programs write, in a folder of its own.
struct Writer {
    std::string name;  ///< of the file
    /// Writes the older (0) or the newer (1) state; false after a failure.
    std::function<bool(const std::string& path, int state)> write;
    /// Files that hold the time at which they were written are only whole or not.
    std::function<bool(const std::string& text)> whole;
};

/// The batch tool with a command that writes one file.
class BatchWriter {
  public:
    BatchWriter(std::string before, std::string after, const std::array<std::string, 2>& models)
        : before_(std::move(before)), after_(std::move(after)), models_(models) {}

    bool operator()(const std::string& path, int state) const {
        std::vector<std::string> words{"anomalis-batch"};
        std::istringstream before(before_);
        for (std::string word; before >> word;) words.push_back(word);
        words.insert(words.begin() + 2, models_.at(static_cast<std::size_t>(state)));
        words.push_back(path);
        std::istringstream after(after_);
        for (std::string word; after >> word;) words.push_back(word);
        std::vector<char*> argv;
        for (std::string& word : words) argv.push_back(word.data());
        std::ostringstream out, err;
        Pictures pictures;
        const int status = batch::run_batch(static_cast<int>(argv.size()), argv.data(), out, err, &pictures);
        if (status != 0) std::printf("%s", err.str().c_str());
        return status == 0;
    }

  private:
    std::string before_, after_;
    std::array<std::string, 2> models_;
};

bool write_setting(const std::string& path, int state) {
    ScriptedPrompts prompts;
    Settings settings(path, prompts);
    const std::string value(2000, state == 0 ? 'a' : 'b');
    return settings.set(settings_section, "value", value) == 0;
}

bool write_transform(const std::string& path, int state) {
    ScriptedPrompts prompts;
    PointTransform transform;
    transform.x_origin = state;
    return transform::save_transform_file(transform, path, prompts) == 0;
}

/// Enough for a frame to be seen, in a moment.
constexpr const char* small_picture = "--size 300x200";

std::vector<Writer> all_writers(const std::array<std::string, 2>& models) {
    const auto batch = [&](const char* before, const char* after = "") {
        return BatchWriter(before, after, models);
    };
    const auto pdf = [](const std::string& text) {
        return text.starts_with("%PDF-") && text.find("%%EOF", text.size() - 10) != std::string::npos;
    };
    const auto report = [](const std::string& text) {
        return text.starts_with("{") && text.ends_with("}\n");
    };
    // A fit bears its date, so each run writes another file.
    const auto fitted = [](const std::string& text) {
        const auto last = text.rfind("\nfit_end ");
        return text.find("[AXM Extensions]") < last && last != std::string::npos && text.ends_with('\n') &&
               text.find('\n', last + 1) == text.size() - 1;
    };
    return {{"fitted.axm", batch("invert --iterations 1 -o"), fitted},
            {"report.json", batch("invert --iterations 1 --report"), report},
            {"forward.csv", batch("forward -o"), {}},
            {"dump.json", batch("dump -o"), {}},
            {"profile.csv", batch("export --profile-table"), {}},
            {"model.csv", batch("export --model-table"), {}},
            {"mesh.hdr", batch("export --mesh"), {}},
            {"clean_profile.csv", batch("export --clean-profile"), {}},
            {"clean_model.csv", batch("export --clean-model"), {}},
            {"bodies.dxf", batch("export --dxf-3d"), {}},
            {"plan.dxf", batch("export --dxf-plan"), {}},
            {"chart.png", batch("render -o", small_picture), {}},
            {"chart.svg", batch("render -o", small_picture), {}},
            {"chart.pdf", batch("render -o", small_picture), pdf},
            {"chart.emf", batch("render -o", small_picture), {}},
            {"anomalis.conf", write_setting, {}},
            {"points.crd", write_transform, {}}};
}

/// Two states of one model over a line.
std::array<std::string, 2> write_models(edit::LineSample& sample) {
    sample.add_body(1260, 60).susc.vary = 1;
    sample.add_body(702, 40, pipe).length.value = 200;
    sample.workspace().definition.grav_column = 0;
    std::array<std::string, 2> models;
    for (int state = 0; state < 2; ++state) {
        sample.workspace().body(1).name = state == 0 ? "Older" : "Newer dyke";
        sample.workspace().body(1).distance.value = static_cast<float>(1260 + 200 * state);
        sample.workspace().sensor_offset = static_cast<float>(80 + state);
        sample.workspace().station_spacing = static_cast<float>(25 - 5 * state);
        models.at(static_cast<std::size_t>(state)) =
            sample.folder.path("model_" + std::to_string(state) + ".axm");
        if (workspace_file::write_model_parameters(0, models.at(static_cast<std::size_t>(state)),
                                                   sample.workspace(), sample.prompts) != 0)
            throw std::runtime_error("no model to work with");
    }
    return models;
}

class Killer {
  public:
    Killer(int kills, std::uint32_t seed) : kills_(kills), random_(seed) {}

    /// What was found wrong, or "".
    std::string harass(const Writer& writer) {
        const TempFolder folder;
        const std::string path = folder.path(writer.name);
        const auto start = std::chrono::steady_clock::now();
        std::array<std::string, 2> states;
        for (int state : {1, 0}) {
            if (!writer.write(path, state)) return writer.name + " is not written";
            states.at(static_cast<std::size_t>(state)) = folder.read(writer.name);
        }
        if (states[0] == states[1] && !writer.whole) return writer.name + " does not tell the states apart";
        const auto both = std::chrono::steady_clock::now() - start;
        for (int kill = 0; kill < kills_; ++kill) {
            kill_after(moment_within(both), [&] {
                for (const int state : {1, 0}) writer.write(path, state);
            });
            const std::string found = folder.read(writer.name);
            const bool whole = writer.whole ? writer.whole(found) : found == states[0] || found == states[1];
            if (!whole) return writer.name + " is half a file of " + std::to_string(found.size()) + " bytes";
            if (const std::string strange = stranger_in(folder, writer.name); !strange.empty())
                return strange;
            newer_ += found == states[1] ? 1 : 0;
        }
        if (!writer.write(path, 0)) return writer.name + " is not written after the kills";
        return folder.entries() == 1 ? "" : writer.name + " leaves something behind for good";
    }
    /// The same of the copies for a crash, each of which stands in the folder of a program.
    std::string harass_recovery(edit::LineSample& sample) {
        const TempFolder folder;
        edit::start_history(sample.workbench);
        const auto keep_both = [&](flow::RecoveryKeeper& keeper) {
            for (const float dip : {70.0F, 80.0F}) {
                sample.workspace().body(1).dip.value = dip;
                edit::note_change(sample.workbench, {"dip", "", false});
                keeper.keep(sample.workbench);
            }
        };
        const auto start = std::chrono::steady_clock::now();
        flow::RecoveryKeeper own(folder.folder());
        keep_both(own);
        const auto both = std::chrono::steady_clock::now() - start;
        edit::note_saved(sample.workbench);
        own.leave(sample.workbench);
        for (int kill = 0; kill < kills_; ++kill) {
            kill_after(moment_within(both), [&] {
                flow::RecoveryKeeper keeper(folder.folder());
                for (;;) keep_both(keeper);
            });
            for (const flow::LeftFolder& left : flow::find_left_folders(folder.folder())) {
                Workspace kept;
                initialise_workspace(kept, sample.prompts);
                if (workspace_file::read_model_parameters(0, kept, left.model_file(), sample.session.settings,
                                                          sample.prompts) != 0 ||
                    kept.body_count != sample.workspace().body_count)
                    return "half a model is kept for recovery";
                ++newer_;
                left.remove();
            }
            if (folder.entries() != 0) return "the folder of a killed program stays for good";
        }
        return "";
    }
    long newer_found() const { return newer_; }

  private:
    useconds_t moment_within(std::chrono::steady_clock::duration time) {
        const auto most = std::chrono::duration_cast<std::chrono::microseconds>(time).count() * 3 / 2 + 200;
        return static_cast<useconds_t>(random_() % static_cast<unsigned long>(most));
    }
    static std::string stranger_in(const TempFolder& folder, const std::string& name) {
        for (const auto& entry : std::filesystem::directory_iterator(folder.folder())) {
            const std::string found = entry.path().filename().string();
            if (found != name && !is_temporary_name(found)) return name + " comes with a file " + found;
        }
        return "";
    }

    int kills_;
    long newer_ = 0;
    std::mt19937 random_;
};

int run(int kills, std::uint32_t seed) {
    edit::LineSample sample;
    const auto models = write_models(sample);
    Killer killer(kills, seed);
    int failed = 0, writers = 0;
    const auto tell = [&](const std::string& wrong) {
        ++writers;
        if (!wrong.empty()) std::printf("%s\n", wrong.c_str());
        failed += wrong.empty() ? 0 : 1;
    };
    for (const Writer& writer : all_writers(models)) tell(killer.harass(writer));
    tell(killer.harass_recovery(sample));
    std::printf("%d writers killed %d times each, the newer state found %ld times\n", writers, kills,
                killer.newer_found());
    return failed == 0 ? 0 : 1;
}

}  // namespace
}  // namespace anomalis

int main(int argc, char** argv) {
    if (argc < 2 || argc > 3) {
        std::fprintf(stderr, "usage: %s KILLS [SEED]\n", argv[0]);
        return 2;
    }
    QGuiApplication application(argc, argv);
    return anomalis::run(std::atoi(argv[1]),
                         argc > 2 ? static_cast<std::uint32_t>(std::strtoul(argv[2], nullptr, 10))
                                  : anomalis::seed_of_chance());
}
