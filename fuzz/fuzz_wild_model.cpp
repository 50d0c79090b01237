#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "core/body_parameters.h"
#include "flow/inversion_report.h"
#include "fuzz_support.h"
#include "inversion/line_session.h"

namespace {

using namespace anomalis;

constexpr int stations = 9;
constexpr double spacing = 25;
constexpr int most_bodies = 3;

void choose_parameter(BodyParam& parameter, ByteSource& source) {
    const std::uint8_t choice = source.byte();
    parameter.vary = choice / 4 % 2 == 0 ? 1 : 0;
    if (choice % 4 == 0) return;  // the value that a new body has
    parameter.value = source.number();
    if (choice / 8 % 4 == 0) parameter.min = source.number();
    if (choice / 8 % 4 == 1) parameter.max = source.number();
}

void add_wild_body(inversion::LineSession& line, ByteSource& source) {
    constexpr std::array<std::int32_t, 11> types{
        thin_sheet, thick_sheet, edge, sloping_step, polygon, sphere, 9, anomalis::pipe, wire, 99, -3};
    const std::int32_t type = types[source.byte() % types.size()];
    ModelBody& body = line.add_body(type, 100, static_cast<float>(-20 - source.byte()));
    for (const BodyParameter& row : body_parameters()) choose_parameter(body.*row.slot, source);
    for (float* size : {&body.end_width_a, &body.end_width_b, &body.shell_thickness, &body.end_thickness,
                        &body.max_triangle_size})
        if (source.flag()) *size = source.number();
    for (std::int32_t* count : {&body.num_sectors, &body.num_segments})
        if (source.flag()) *count = source.byte() % 40 - 4;
    body.include_demagnetisation = source.flag() ? 1 : 0;
    body.vary = source.byte() % 8 == 7 ? 0 : 1;
    body.turned_off = source.byte() % 8 == 7 ? 1 : 0;
}

void choose_surroundings(Workspace& w, ByteSource& source) {
    if (source.flag()) w.field = {source.number(), source.number(), source.number()};
    if (source.flag()) w.sensor_offset = source.number();
    if (source.flag()) w.surface_elevation = source.number();
    if (source.flag()) w.mag.base = source.number();
    if (source.flag()) w.grav.base = source.number();
    w.processing.smooth_filter_width = source.byte() % 6;
    w.processing.smooth_filter_type = source.byte() % 4;
    w.processing.residual_filter_width = source.byte() % 12;
    w.processing.display_total_gradient = source.flag() ? 1 : 0;
}

void require_finite(const Workspace& w) {
    for (const Channel* channel : {&w.mag, &w.grav})
        for (const float value : channel->data.row(row_raw, stage_calculated)) require(std::isfinite(value));
}

void require_sound(const inversion::RunResult& result, const Workspace& w) {
    require(result.status >= inversion::run_failed && result.status <= inversion::run_no_decrease);
    require(w.body_count >= 1 && w.body_count <= most_bodies);
    require_finite(w);
}

}  // namespace

/// Any model over a line gives a finite anomaly with both formulas, and a short fit of any kind ends with a
/// model and with numbers of it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ByteSource source(data, size);
    inversion::LineSession line(stations, spacing);
    Workspace& w = line.workspace();
    for (int i = 1; i <= stations; ++i) {
        w.mag.data(i, row_raw, stage_observed) = static_cast<float>(i * i % 7);
        w.grav.data(i, row_raw, stage_observed) = static_cast<float>(i % 3);
    }
    flow::InvertOptions options;
    options.iterations = 1;
    options.method =
        source.flag() ? inversion::InversionMethod::least_squares : inversion::InversionMethod::sweep;
    options.channel = source.byte() % (options.method == inversion::InversionMethod::sweep ? 2 : 3);
    options.target = source.flag() ? target_gradient : target_data;
    choose_surroundings(w, source);
    do {
        add_wild_body(line, source);
    } while (w.body_count < most_bodies && !source.empty());

    for (const Formulas formulas : {Formulas::classic, Formulas::exact}) {
        w.formulas = formulas;
        line.refresh();
        require_finite(w);
        require_sound(flow::run_inversion(line.session, options).result, w);
    }
    return 0;
}
