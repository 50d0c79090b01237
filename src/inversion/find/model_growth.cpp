#include "inversion/find/model_growth.h"

#include <algorithm>
#include <mutex>
#include <utility>

#include "core/core_shares.h"
#include "core/threads.h"

namespace anomalis::inversion {

namespace {

constexpr std::size_t sources_a_search = 10;
constexpr std::size_t joint_fits = 3;
/// So many bodies may be added without any gain before the search is given up.
constexpr int most_idle = 3, least_tried = 5;
constexpr int most_rounds = 18;
/// A sheet whose width is more of its depth shows it.
constexpr double most_thin = 0.3;

const JudgedModel* best_of(const std::vector<JudgedModel>& models) {
    const JudgedModel* best = nullptr;
    for (const JudgedModel& one : models)
        if (!one.empty() && (!best || one.criterion < best->criterion)) best = &one;
    return best;
}

/// A thick sheet becomes a thin one or the other way round; or one that goes on downwards ends there.
void change_kind(const LineFit& line, ModelBody& body, bool type) {
    const auto depth = static_cast<float>(line.depth(body));
    constexpr float thin_part = 0.1F, thick_part = 0.5F, extent = 5;
    if (!type) {
        body.depth_extent.value = body.depth_extent.value > 0 ? 0 : extent * depth;
        return;
    }
    const bool thick = body.type == thick_sheet;
    body.type = thick ? thin_sheet : thick_sheet;
    const float before = body.width.value;
    body.width.value = (thick ? thin_part : thick_part) * depth;
    body.susc.value *= before / body.width.value;
    body.density.value *= before / body.width.value;
}

}  // namespace

ModelGrowth::ModelGrowth(const LineFit& line, const ModelTrials& trials, Pacer& pacer)
    : trials_(trials), pacer_(pacer) {
    lines_.assign(static_cast<std::size_t>(thread_count()), line);
}

std::vector<JudgedModel> ModelGrowth::judge_all(const std::vector<Trial>& trials) {
    std::vector<JudgedModel> judged(trials.size());
    std::size_t next_line = 0;
    std::mutex mutex;
    SharedWork work;
    work.last = static_cast<int>(trials.size());
    work.cores = static_cast<int>(lines_.size());
    work.core = [&](CoreShare& share) {
        std::unique_lock lock(mutex);
        LineFit& line = lines_[next_line++];
        lock.unlock();
        while (const auto number = share.next()) {
            const auto at = static_cast<std::size_t>(*number);
            judged[at] = trials[at]({line, share.pacer()});
        }
    };
    if (!trials.empty()) share_among_cores(work, pacer_);
    for (const JudgedModel& one : judged)
        if (one.criterion != 0) on_trial_(one);
    return judged;
}

/// The best of the places that explain most of what the model leaves, all refitted.
TriedModel ModelGrowth::with_new_body(const TriedModel& model) {
    const LineNoise noise = trials_.white_noise(model);
    std::vector<Trial> alone;
    for (const Source& source : trials_.sources(model, sources_a_search, pacer_))
        alone.push_back([this, &model, &noise, source](const TrialBench& bench) {
            return JudgedModel{.model = trials_.with_source(bench, model, source, noise)};
        });
    std::vector<JudgedModel> ends = judge_all(alone);
    std::ranges::sort(ends, {}, [](const JudgedModel& one) { return one.model.squares; });
    std::vector<Trial> together;
    for (std::size_t i = 0; i < std::min(joint_fits, ends.size()); ++i)
        together.push_back([this, &ends, &noise, i](const TrialBench& bench) {
            return JudgedModel{.model = trials_.refitted(bench, ends[i].model, noise)};
        });
    std::vector<JudgedModel> joint = judge_all(together);
    if (joint.empty()) return {};
    return std::ranges::min(joint, {}, [](const JudgedModel& one) { return one.model.squares; }).model;
}

std::vector<JudgedModel> ModelGrowth::grow(const Watcher& watcher) {
    std::vector<JudgedModel> path;
    const TrialBench bench{lines_.front(), pacer_};
    RowNoise one;
    one.covariance.white = 1;
    const LineNoise unit(trials_.rows().size(), one);
    TriedModel model = bench.line.as_it_is(trials_.request().present, unit, pacer_);
    path.push_back(trials_.judge(bench, model, 0));
    std::size_t best = 0;
    for (int number = 1; number <= trials_.request().most; ++number) {
        TriedModel grown = with_new_body(model);
        if (grown.empty()) break;
        model = std::move(grown);
        path.push_back(trials_.judge(bench, model, number));
        on_trial_(path.back());
        const auto idle = static_cast<int>(path.size() - 1 - best);
        if (path.back().criterion < path[best].criterion) {
            best = path.size() - 1;
            watcher(path.back());
        } else if (!trials_.request().exactly && idle >= most_idle && number >= least_tried) {
            break;
        }
    }
    return path;
}

std::vector<ModelGrowth::Trial> ModelGrowth::fewer(const JudgedModel& judged) const {
    std::vector<Trial> trials;
    if (trials_.request().exactly) return trials;
    for (int k = 0; k < judged.found; ++k)
        trials.push_back([this, &judged, k](const TrialBench& bench) {
            TriedModel less = judged.model;
            less.bodies.erase(less.bodies.end() - 1 - k);
            less = trials_.refitted(bench, less, judged.noise);
            return trials_.judge(bench, std::move(less), judged.found - 1);
        });
    return trials;
}

/// Two neighbours give way to the one body that explains most of what they leave.
std::vector<ModelGrowth::Trial> ModelGrowth::merged(const JudgedModel& judged) const {
    std::vector<Trial> trials;
    if (trials_.request().exactly || judged.found < 2) return trials;
    JudgedModel sorted = judged;
    auto& bodies = sorted.model.bodies;
    std::sort(bodies.end() - judged.found, bodies.end(),
              [](const ModelBody& a, const ModelBody& b) { return a.distance.value < b.distance.value; });
    for (int k = 0; k + 1 < judged.found; ++k)
        trials.push_back([this, sorted, k](const TrialBench& bench) {
            TriedModel less = sorted.model;
            const auto last = less.bodies.end() - k;
            less.bodies.erase(last - 2, last);
            return with_best_source(bench, less, sorted.noise, sorted.found - 1);
        });
    return trials;
}

std::vector<ModelGrowth::Trial> ModelGrowth::more(const JudgedModel& judged) {
    std::vector<Trial> trials;
    if (trials_.request().exactly || judged.found >= trials_.request().most) return trials;
    for (const Source& source : trials_.sources(judged.model, sources_a_search, pacer_))
        trials.push_back([this, &judged, source](const TrialBench& bench) {
            TriedModel grown = trials_.with_source(bench, judged.model, source, judged.noise);
            grown = trials_.refitted(bench, grown, judged.noise);
            return trials_.judge(bench, std::move(grown), judged.found + 1);
        });
    return trials;
}

JudgedModel ModelGrowth::with_best_source(const TrialBench& bench, TriedModel less, const LineNoise& noise,
                                          int found) const {
    less = bench.line.as_it_is(std::move(less.bodies), noise, bench.pacer);
    TriedModel best;
    constexpr std::size_t places = 4;
    for (const Source& source : trials_.sources(less, places, bench.pacer)) {
        TriedModel other = trials_.with_source(bench, less, source, noise);
        if (best.empty() || other.squares < best.squares) best = std::move(other);
    }
    if (best.empty()) return {};
    return trials_.judge(bench, trials_.refitted(bench, best, noise), found);
}

/// Each body in turn is looked for anew.
std::vector<ModelGrowth::Trial> ModelGrowth::moved(const JudgedModel& judged) const {
    std::vector<Trial> trials;
    for (int k = 0; k < judged.found; ++k)
        trials.push_back([this, &judged, k](const TrialBench& bench) {
            TriedModel less = judged.model;
            less.bodies.erase(less.bodies.end() - 1 - k);
            return with_best_source(bench, std::move(less), judged.noise, judged.found);
        });
    return trials;
}

/// One body less, and the others end downwards: what a body that ends leaves far away looks like another one.
std::vector<ModelGrowth::Trial> ModelGrowth::fewer_that_end(const JudgedModel& judged) const {
    std::vector<Trial> trials;
    if (trials_.request().exactly || judged.found < 2) return trials;
    for (int k = 0; k < judged.found; ++k)
        trials.push_back([this, &judged, k](const TrialBench& bench) {
            TriedModel less = judged.model;
            less.bodies.erase(less.bodies.end() - 1 - k);
            for (auto body = less.bodies.end() - (judged.found - 1); body != less.bodies.end(); ++body)
                if (body->depth_extent.value == 0) change_kind(bench.line, *body, false);
            less = trials_.refitted(bench, less, judged.noise);
            return trials_.judge(bench, std::move(less), judged.found - 1);
        });
    return trials;
}

std::vector<ModelGrowth::Trial> ModelGrowth::other_kinds(const JudgedModel& judged) const {
    enum class Change { depth_end, type };
    std::vector<Trial> trials;
    for (int k = 0; k < judged.found; ++k)
        for (const Change change : {Change::depth_end, Change::type}) {
            const GrowthRequest& wanted = trials_.request();
            if (change == Change::type && !(wanted.thin && wanted.thick)) continue;
            const ModelBody& body = *(judged.model.bodies.end() - 1 - k);
            if (change == Change::type && body.type == thick_sheet &&
                static_cast<double>(body.width.value) > most_thin * lines_.front().depth(body))
                continue;
            trials.push_back([this, &judged, k, change](const TrialBench& bench) {
                TriedModel other = judged.model;
                change_kind(bench.line, *(other.bodies.end() - 1 - k), change == Change::type);
                other = trials_.refitted(bench, other, judged.noise);
                return trials_.judge(bench, std::move(other), judged.found);
            });
        }
    return trials;
}

std::vector<JudgedModel> ModelGrowth::with_degrees(const JudgedModel& judged,
                                                   std::span<const std::int32_t> degrees) {
    std::vector<JudgedModel> models;
    for (const std::int32_t degree : degrees) {
        for (LineFit& line : lines_) line.set_degree(degree);
        const ModelTrials own(lines_.front(), trials_, pacer_);
        const TrialBench bench{lines_.front(), pacer_};
        models.push_back(own.judge(bench, own.refitted(bench, judged.model, judged.noise), judged.found));
        on_trial_(models.back());
    }
    return models;
}

JudgedModel ModelGrowth::refine(JudgedModel judged, const Watcher& watcher) {
    // A way that did not help is left until another one did.
    int idle = 0;
    constexpr int ways = 6;
    for (int round = 0, way = 0; round < most_rounds && idle < ways; ++round, way = (way + 1) % ways) {
        const std::vector<JudgedModel> ends = judge_all(way == 0   ? fewer(judged)
                                                        : way == 1 ? more(judged)
                                                        : way == 2 ? other_kinds(judged)
                                                        : way == 3 ? merged(judged)
                                                        : way == 4 ? moved(judged)
                                                                   : fewer_that_end(judged));
        const JudgedModel* best = best_of(ends);
        if (!best || best->criterion >= judged.criterion - 0.1) {
            ++idle;
            continue;
        }
        idle = 0;
        judged = *best;
        watcher(judged);
    }
    return judged;
}

}  // namespace anomalis::inversion
