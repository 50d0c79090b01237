// Both ways of fitting with the exact formulas.

#include <gtest/gtest.h>
#include <map>

#include "core/body_parameters.h"
#include "flow/inversion_report.h"
#include "inversion/line_session.h"
#include "model/misfit.h"

namespace anomalis::inversion {

using flow::InversionReport;
using flow::ReportedParameter;
using flow::run_inversion;

namespace {

using Slot = BodyParam ModelBody::*;

const Slot distance = &ModelBody::distance;
const Slot top = &ModelBody::top;
const Slot dip = &ModelBody::dip;
const Slot width = &ModelBody::width;
const Slot length = &ModelBody::length;
const Slot offset = &ModelBody::offset;
const Slot susc = &ModelBody::susc;
const Slot density = &ModelBody::density;

struct ExactCase {
    const char* name;
    int type;
    std::int32_t channel;
    std::vector<Slot> free;
    float strike = 20, depth_extent = 250, body_length = 250, body_offset = 0, demagnetised = 0;
};

void PrintTo(const ExactCase& c, std::ostream* out) {
    *out << c.name;
}

class ExactFit : public ::testing::TestWithParam<ExactCase> {
  protected:
    /// The model becomes the data, then every free parameter is put off by `share`, up and down in turn.
    ModelBody& begin(float share) {
        const ExactCase& c = GetParam();
        line.workspace().formulas = Formulas::exact;
        if (c.channel == channel_mag) line.workspace().definition.grav_column = 0;
        if (c.channel == channel_grav) line.workspace().definition.mag_column = 0;
        ModelBody& body = line.add_body(c.type, 703.7F, c.type == sphere ? -250 : -60);
        body.strike.value = c.strike;
        body.dip.value = c.type < pipe ? 70 : 20;
        body.depth_extent.value = c.depth_extent;
        body.length.value = c.body_length;
        body.offset.value = c.body_offset;
        body.include_demagnetisation = static_cast<std::int32_t>(c.demagnetised);
        if (c.type == thin_sheet) body.width.value = 15;
        if (c.type == sphere) body.width.value = 300;
        line.take_model_as_data();
        float factor = 1 + share;
        for (const BodyParameter& row : body_parameters()) {
            if (std::find(c.free.begin(), c.free.end(), row.slot) == c.free.end()) continue;
            BodyParam& param = body.*row.slot;
            truth[row.code] = param.value;
            param.vary = 1;
            param.value *= factor;
            factor = 2 - factor;
            if (row.code == param_susc) param.max = 10 * param.value;
        }
        return body;
    }

    /// The misfit of the channel that a sweep fits: it takes one at a time.
    double misfit() {
        Workspace& w = line.workspace();
        line.refresh();
        const bool gravity = GetParam().channel == channel_grav;
        Faults faults;
        return model::channel_misfit(w, gravity ? w.grav.data : w.mag.data,
                                     model::misfit_scale_of(gravity ? channel_grav : channel_mag), faults)[0];
    }

    InversionReport fit(InversionMethod method, int iterations) {
        return run_inversion(line.session,
                             {.channel = GetParam().channel, .method = method, .iterations = iterations});
    }

    LineSession line{161, 10};
    std::map<int, float> truth;
};

}  // namespace

TEST_P(ExactFit, least_squares_brings_every_parameter_back) {
    begin(0.15F);
    const InversionReport report = run_inversion(
        line.session,
        {.channel = GetParam().channel, .method = InversionMethod::least_squares, .iterations = 100});
    EXPECT_EQ(report.result.status, run_succeeded) << report.label;
    ASSERT_EQ(report.parameters.size(), truth.size());
    for (const ReportedParameter& p : report.parameters)
        EXPECT_NEAR(p.final, truth.at(p.param_code), 2e-3F * std::abs(truth.at(p.param_code))) << p.name;
    EXPECT_EQ(line.prompts.messages, std::vector<std::string>{});
}

TEST_P(ExactFit, the_sweep_reduces_the_misfit_and_keeps_the_choice) {
    begin(0.15F);
    const double before = misfit();
    const std::int32_t channel = GetParam().channel == channel_grav ? channel_grav : channel_mag;
    const InversionReport report = run_inversion(line.session, {.channel = channel, .iterations = 10});
    EXPECT_LT(misfit(), before) << report.label;
    EXPECT_EQ(line.workspace().formulas, Formulas::exact);
}

INSTANTIATE_TEST_SUITE_P(
    BodyTypes, ExactFit,
    ::testing::Values(
        ExactCase{"thin_sheet", thin_sheet, channel_mag, {distance, top, dip, susc}, 20, 250, 0},
        ExactCase{"thin_sheet_with_ends",
                  thin_sheet,
                  channel_mag,
                  {distance, top, length, offset},
                  20,
                  250,
                  300,
                  60},
        ExactCase{"dyke", thick_sheet, channel_mag, {distance, top, dip, width, susc}, 0, 0, 0},
        ExactCase{
            "dyke_demagnetised", thick_sheet, channel_mag, {distance, top, dip, width}, 0, 250, 0, 0, 1},
        ExactCase{"prism", thick_sheet, channel_mag, {distance, top, dip, width, length}},
        ExactCase{"column", thick_sheet, channel_joint, {distance, top, dip, width}, 20, 0},
        ExactCase{"step", sloping_step, channel_mag, {distance, top, dip, susc}},
        ExactCase{"edge_gravity", edge, channel_grav, {distance, top, density}},
        ExactCase{"sphere", sphere, channel_mag, {distance, top, susc}},
        ExactCase{"sphere_gravity", sphere, channel_grav, {distance, top, density}},
        ExactCase{"pipe", pipe, channel_mag, {distance, top, susc}},
        ExactCase{"endless_pipe", pipe, channel_joint, {distance, top, width}, 20, 250, 0},
        ExactCase{"wire", wire, channel_mag, {distance, top, susc}, 0}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST(ExactFitOfADyke, the_exact_formulas_find_the_dip_that_the_classic_ones_cannot) {
    // An eastward line over a dyke that strikes north: the classic fit is perfect and its dip is not.
    for (const Formulas formulas : {Formulas::exact, Formulas::classic}) {
        LineSession line(401, 5);
        line.workspace().definition.grav_column = 0;
        line.workspace().formulas = Formulas::exact;
        ModelBody& body = line.add_body(thick_sheet, 1003, -50);
        body.strike.value = 0;
        body.dip.value = 70;
        body.length.value = body.depth_extent.value = 0;
        line.take_model_as_data();
        line.workspace().formulas = formulas;
        body.dip.value = 100;
        body.susc.max = 1e6F;
        for (const Slot slot : {distance, top, dip, width, susc}) (body.*slot).vary = 1;
        const InversionReport report = run_inversion(
            line.session,
            {.channel = channel_mag, .method = InversionMethod::least_squares, .iterations = 200});
        EXPECT_NEAR(body.dip.value, formulas == Formulas::exact ? 70 : 124, 1) << report.label;
        EXPECT_NEAR(body.top.value, -50, 0.5);
        EXPECT_NEAR(body.width.value, 100, 1);
    }
}

}  // namespace anomalis::inversion
