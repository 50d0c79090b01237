#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "core/body_parameters.h"
#include "fuzz_support.h"
#include "inversion/ensemble/find_ensemble.h"
#include "inversion/find/find_bodies.h"
#include "inversion/line_session.h"

namespace {

using namespace anomalis;
using namespace anomalis::inversion;

/// Leaves a search after so many units of work: wild readings shall not make it endless, nor shall a stop be
/// deaf.
template <class Observer>
struct ShortPatience : Observer {
    bool working(double units) override { return (left_ -= units) < 0; }
    double left_ = 3e7;
};

/// Readings as broken instruments and exports leave them: steps, spikes, constants, anything.
void choose_readings(Workspace& w, ByteSource& source) {
    const std::uint8_t kind = source.byte() % 6;
    float last = 0;
    for (int i = 1; i <= w.station_count; ++i) {
        const auto small = static_cast<float>(source.byte() % 32);
        if (kind == 0) last = source.number();
        if (kind == 1) last = small;
        if (kind == 2) last = i % 7 == 0 ? source.number() : small;
        if (kind == 3) last += source.flag() ? small : -small;
        if (kind == 4)
            last = 400 / (1 + std::pow(static_cast<float>(i - w.station_count / 2) / 3, 2.0F)) + small;
        // What is missing was filled at the load; what is not finite never gets here.
        const float value = std::isfinite(last) ? std::clamp(last, -1e30F, 1e30F) : 0;
        w.mag.data(i, row_raw, stage_observed) = value;
        w.grav.data(i, row_raw, stage_observed) = value / 1000;
    }
}

void require_sound(const FitRecord& record) {
    for (const auto& one : record.parameters) require(!std::isnan(one.value));
}

void search(const Workspace& w, ByteSource& source) {
    FindRequest request;
    request.channel = source.byte() % 3;
    request.most = 1 + source.byte() % 2;
    request.alternatives = 1;
    request.thick = source.flag();
    ShortPatience<FindObserver> observer;
    const FindResult result = find_bodies(w, request, observer);
    require(!result.label.empty() || !result.faults.empty());
    for (const FoundModel& model : result.models) {
        require(std::isfinite(model.rms) && std::isfinite(model.criterion));
        for (const ModelBody& body : model.bodies)
            for (const BodyParameter& row : body_parameters()) require(std::isfinite((body.*row.slot).value));
        require_sound(model.record);
    }
}

void draw(LineSession& line, ByteSource& source) {
    Workspace& w = line.workspace();
    ModelBody& body = line.add_body(source.flag() ? thin_sheet : thick_sheet, 100, -40);
    body.distance.vary = body.susc.vary = 1;
    line.refresh();
    EnsembleRequest request;
    request.samples = 3;
    request.channel = source.byte() % 3;
    request.seed = source.byte();
    ShortPatience<EnsembleObserver> observer;
    const EnsembleResult result = find_ensemble(w, request, observer);
    require(result.ensemble || result.record || result.stopped || !result.faults.empty());
    if (result.record) require_sound(*result.record);
}

}  // namespace

/// Whatever the readings are, a search and an ensemble end with numbers, or say why not.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ByteSource source(data, size);
    constexpr std::array counts{2, 3, 7, 24, 30};
    const int stations = counts.at(source.byte() % counts.size());
    LineSession line(stations, source.flag() ? 10 : 25);
    choose_readings(line.workspace(), source);
    line.refresh();
    search(line.workspace(), source);
    draw(line, source);
    return 0;
}
