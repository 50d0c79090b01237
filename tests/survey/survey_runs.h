#pragma once

#include <atomic>
#include <cmath>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core/numbers.h"
#include "core/safe_file.h"
#include "support/temp_folder.h"
#include "survey/results/results_folder.h"
#include "survey/run/run_survey.h"

namespace anomalis::survey {

/// Keeps what a run tells, and stops it.
struct RunWitness : SurveyObserver {
    void progress(const SurveyProgress& now) override { last = now; }
    void remark(const std::string& text) override { remarks.push_back(text); }
    void line_done(const LineResult& result) override { done.push_back(result.line); }
    bool stop() override {
        if (stopping) heard = true;
        return stopping;
    }

    std::atomic<bool> stopping = false, heard = false;
    SurveyProgress last;
    std::vector<std::string> done, remarks;
};

/// Lines over a thin sheet 40 m below the ground at 300 m, in 10 nT of slope and a little noise.
inline std::string sheet_survey(int lines, int stations) {
    std::string text = "line,east,north,height,dtm,tmi\n";
    for (int l = 0; l < lines; ++l)
        for (int i = 0; i < stations; ++i) {
            const double x = 10.0 * i - 300 - 5.0 * l, h = 100;
            const double noise = std::fmod(1000 * std::abs(std::sin(12.9898 * i + 78.233 * l)), 1) - 0.5;
            const double sheet = 200 * h * (h + 0.5 * x) / (x * x + h * h);
            text += std::to_string(100 + 10 * l) + "," + std::to_string(450000 + 10 * i) + "," +
                    std::to_string(7550000 + 100 * l) + ",360,300," +
                    format_number(sheet + 10.0 * i / stations + noise, "0.00") + "\n";
        }
    return text;
}

/// A survey of some short lines in a folder of its own, imported by default and nothing else.
struct SurveyRuns {
    explicit SurveyRuns(int lines = 4, int stations = 60)
        : path(folder.write("survey.csv", sheet_survey(lines, stations))) {
        plan.name = "test";
        plan.path = folder.path("plan.toml");
        plan.source.emplace();
        plan.source->file = path;
        plan.source->system = "EPSG:32754";
        plan.source->choices.field_choice = flow::FieldChoice::keyed;
        plan.source->choices.field = {50000, -55, 6};
        plan.all_lines = true;
        plan.options = std::make_shared<LineOptions>();
    }

    LineOptions& options() {
        auto changed = std::make_shared<LineOptions>(*plan.options);
        plan.options = changed;
        return *changed;
    }
    /// The quickest search that there is.
    void find_one_body() {
        LineOptions& changed = options();
        changed.fit.regional_degree = 1;
        FindStep& find = changed.find.emplace();
        find.bodies = find.alternatives = 1;
        find.thick = false;
    }

    RunResult run(int jobs = 1, const Shard& shard = {}, bool again_failed = false) {
        witness.done.clear();
        return run_survey(plan,
                          {.folder = results, .jobs = jobs, .shard = shard, .again_failed = again_failed},
                          witness, draw);
    }
    std::string result_text(const std::string& line) const {
        return read_whole_file(line_result_file(results, line));
    }
    /// The tables that are the same whatever happened on the way.
    std::map<std::string, std::string> tables(const std::string& from) const {
        std::map<std::string, std::string> all;
        for (const char* name : {bodies_table_name, lines_table_name, geopackage_name})
            all[name] = read_whole_file(from + "/" + name);
        return all;
    }
    std::map<std::string, std::string> tables() const { return tables(results); }

    TempFolder folder;
    std::string path;
    std::string results = folder.path("results");
    SurveyPlan plan;
    RunWitness witness;
    DrawPicture draw;
};

/// The same for several processes: survey and results lie in one folder.
struct WorkerRuns : SurveyRuns {
    static constexpr std::size_t lines = 6;

    explicit WorkerRuns(const std::string& of) : SurveyRuns(static_cast<int>(lines), 40) {
        plan.source->file = of + "/survey.csv";
        write_file_safely(plan.source->file, read_whole_file(path));
        results = of + "/results";
    }
    /// Each line gets a picture; `drawing` is called before.
    void draw_pictures(const std::function<void()>& drawing) {
        options().render.emplace();
        draw = [drawing](Session&, const RenderStep&, const std::string& picture) {
            drawing();
            write_file_safely(picture, "picture");
        };
    }
};

}  // namespace anomalis::survey
