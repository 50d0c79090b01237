#include "show/sketch/parameter_sketch.h"

#include "core/body_parameters.h"
#include "core/workspace.h"
#include "show/sketch/sample_shapes.h"
#include "show/sketch/sketch_maker.h"

namespace anomalis::show {

float sketch_growth(std::int32_t type, int code) {
    switch (code) {
        case param_dip:
            return type == wire ? 40 : 25;
        case param_slope:
        case param_plunge:
            return 14;
        case param_width:
            return type == thin_sheet ? 10 : type == wire ? 14 : 24;
        case param_top:
            return 22;
        default:
            return 32;
    }
}

SketchMaker::SketchMaker(const Workspace& workspace, const ModelBody& body, int code)
    : formulas_(workspace.formulas),
      code_(code),
      side_(std::sin(body.strike.value * radians_per_degree - workspace.azimuth) < 0 ? -1 : 1),
      sample_(sample_body(body.type, side_)),
      caption_(body_parameter(code).grid.caption.of(body.type)) {}

std::optional<ParameterSketch> SketchMaker::make() {
    switch (code_) {
        case param_strike:
        case param_rem_d:
            in_plan();
            break;
        case param_plunge:
            seen_across_strike();
            break;
        case param_length:
        case param_offset:
        case param_dip:
            if (sample_.type == pipe) {
                seen_across_strike();
            } else if (code_ == param_dip || sample_.type == wire) {
                in_section();
            } else {
                in_plan();
            }
            break;
        case param_susc:
        case param_density:
        case param_rem_q:
        case param_rem_i:
            of_the_rock();
            break;
        default:
            in_section();
    }
    if (!changes_something_) return std::nullopt;
    return std::move(sketch_);
}

ModelBody SketchMaker::grown() const {
    ModelBody body = sample_;
    body_param(body, code_).value += sketch_growth(body.type, code_);
    return body;
}

void SketchMaker::take(std::vector<SketchPoints> present, std::vector<SketchPoints> greater) {
    changes_something_ = !present.empty() && present != greater;
    sketch_.bodies = std::move(present);
    sketch_.grown = std::move(greater);
}

void SketchMaker::write(chart::Point at, std::string text, Side side, bool quiet) {
    sketch_.texts.push_back({at, std::move(text), side, quiet});
}

void SketchMaker::name_view(const char* words) {
    write({sketch_.frame.x_low + 4, sketch_.frame.y_high - 8}, words, Side::right, true);
}

std::optional<ParameterSketch> parameter_sketch(const Workspace& workspace, const ModelBody& body, int code) {
    if (!is_named(body.type) || !has_parameter(body.type, code)) return std::nullopt;
    return SketchMaker(workspace, body, code).make();
}

}  // namespace anomalis::show
