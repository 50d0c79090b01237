#include "model/stale.h"

#include <gtest/gtest.h>

#include "core/body_fields.h"
#include "core/setting_fields.h"
#include "inversion/line_session.h"

namespace anomalis::model {

namespace {

/// All that is derived from the fields of a workspace.
struct Derived {
    StationTable stations;
    ChannelTable mag, grav;
    std::vector<ResponseTable> responses;
    std::vector<float> burial_depths;
    MisfitPair misfit{};
};

/// Brought up to date twice: a sphere takes its strike from the line at its first calculation.
Derived refreshed(Session& session) {
    Derived derived;
    refresh_model(session);
    derived.misfit = refresh_model(session);
    const Workspace& w = session.workspace;
    derived.stations = w.stations;
    derived.mag = w.mag.data;
    derived.grav = w.grav.data;
    for (int number = 1; number <= w.body_count; ++number) {
        derived.responses.push_back(w.body(number).response);
        derived.burial_depths.push_back(w.body(number).top_elevation);
    }
    return derived;
}

/// The same workspace as if nothing of it had ever been calculated.
Derived calculated_from_nothing(const Workspace& workspace) {
    inversion::LineSession fresh;
    Workspace& w = fresh.workspace();
    w = workspace;
    w.elevations_ready = false;
    w.known_settings.reset();
    w.mag.summed.clear();
    w.grav.summed.clear();
    for (ModelBody& body : w.bodies) {
        body.mag_response_valid = body.grav_response_valid = false;
        body.known_inputs.reset();
        body.response.assign(w.station_count);
        body.solid = {};
        body.demagnetisation = {};
        body.top_elevation = 0;
    }
    for (ChannelTable* data : {&w.mag.data, &w.grav.data})
        for (int row = row_smoothed; row <= row_total_gradient; ++row)
            for (const Stage stage : {stage_observed, stage_calculated})
                for (float& value : data->row(row, stage)) value = 0;
    return refreshed(fresh.session);
}

/// The rows that charts, fit and tables read: those of the total gradient only while it is chosen.
void expect_same_rows(const Workspace& w, const ChannelTable& rows, const ChannelTable& wanted) {
    const bool total = w.processing.display_total_gradient == 1;
    for (int row = row_raw; row <= (total ? row_total_gradient : row_gradient); ++row)
        for (const Stage stage : {stage_observed, stage_calculated}) {
            const auto have = rows.row(row, stage);
            const auto want = wanted.row(row, stage);
            EXPECT_TRUE(std::equal(have.begin(), have.end(), want.begin(), want.end()))
                << row << ", " << stage;
        }
}

void expect_as_from_nothing(Session& session, const std::string& what) {
    SCOPED_TRACE(what);
    const Derived derived = refreshed(session);
    const Derived wanted = calculated_from_nothing(session.workspace);
    EXPECT_EQ(derived.misfit, wanted.misfit);
    EXPECT_TRUE(derived.stations == wanted.stations);
    expect_same_rows(session.workspace, derived.mag, wanted.mag);
    expect_same_rows(session.workspace, derived.grav, wanted.grav);
    EXPECT_TRUE(derived.responses == wanted.responses);
    EXPECT_EQ(derived.burial_depths, wanted.burial_depths);
}

/// Another value that the field can hold.
void change(float& value) {
    value += 1.5F;
}
void change(double& value) {
    value += 1.5;
}
void change(std::int32_t& value) {
    value = value > 1 ? value - 1 : value + 1;
}
void change(bool& value) {
    value = !value;
}
void change(Formulas& value) {
    value = value == Formulas::exact ? Formulas::classic : Formulas::exact;
}
void change(LineSource& value) {
    value.line += "x";
}
void change(std::string& value) {
    value += "x";
}

/// Three bodies over a line on which every stage of the processing does something.
struct Model : inversion::LineSession {
    explicit Model(std::int32_t type = thick_sheet) {
        add_body(thin_sheet, 300, -40);
        ModelBody& body = add_body(type, 500, -50);
        body.strike.value = 10;
        body.rem_q.value = 0.5F;
        body.rem_i.value = 30;
        body.include_demagnetisation = 1;
        add_body(sphere, 700, -60);
        Workspace& w = workspace();
        w.processing.smooth_filter_width = 3;
        for (int i = 1; i <= w.station_count; ++i) {
            w.mag.data(i, row_raw, stage_observed) = static_cast<float>(i % 17);
            w.grav.data(i, row_raw, stage_observed) = static_cast<float>(i % 5);
        }
        refreshed(session);
    }
};

const std::vector<std::int32_t> several_types{thin_sheet, thick_sheet, edge, sphere, pipe, wire};

}  // namespace

TEST(FindStale, any_setting_that_changes_gives_the_model_calculated_from_nothing) {
    for_each_setting([](const auto& row) {
        Model model;
        change(row.get(model.workspace()));
        expect_as_from_nothing(model.session, std::string(row.name));
    });
}

TEST(FindStale, so_does_a_setting_beside_a_residual_filter_and_a_base_that_floats) {
    for_each_setting([](const auto& row) {
        Model model;
        model.workspace().processing.residual_filter_width = 9;
        refreshed(model.session);
        change(row.get(model.workspace()));
        expect_as_from_nothing(model.session, std::string(row.name) + " beside a residual filter");
        model.workspace().processing.residual_filter_width = 0;
        model.workspace().mag.float_base = model.workspace().grav.float_base = 1;
        refreshed(model.session);
        change(row.get(model.workspace()));
        expect_as_from_nothing(model.session, std::string(row.name) + " beside floating bases");
    });
}

TEST(FindStale, so_does_any_parameter_of_any_type_with_both_formulas) {
    for (const std::int32_t type : several_types)
        for (const Formulas formulas : {Formulas::classic, Formulas::exact})
            for (const BodyParameter& row : body_parameters()) {
                Model model(type);
                model.workspace().formulas = formulas;
                refreshed(model.session);
                change((model.workspace().body(2).*row.slot).value);
                expect_as_from_nothing(model.session,
                                       std::string(row.name) + " of type " + std::to_string(type));
            }
}

TEST(FindStale, so_does_any_other_field_of_a_body) {
    for (const std::int32_t type : several_types) {
        const auto check = [&](const auto& field) {
            Model model(type);
            change(model.workspace().body(2).*field.member);
            expect_as_from_nothing(model.session,
                                   std::string(field.name) + " of type " + std::to_string(type));
        };
        std::apply([&](const auto&... field) { (check(field), ...); }, body_fields);
    }
}

TEST(FindStale, so_does_another_order_and_a_body_that_goes) {
    Model model;
    Workspace& w = model.workspace();
    std::swap(w.body(1), w.body(3));
    expect_as_from_nothing(model.session, "another order");
    w.body_count = 2;
    expect_as_from_nothing(model.session, "the last body gone");
    w.body_count = 0;
    expect_as_from_nothing(model.session, "no body");
    w.body_count = 3;
    expect_as_from_nothing(model.session, "all back");
}

TEST(FindStale, what_makes_nothing_stale_leaves_every_mark) {
    Model model;
    ModelBody& body = model.workspace().body(2);
    const std::uint64_t calculations = model.workspace().calculations;
    body.name = "dyke";
    body.colour = 7;
    body.dip.min = 20;
    body.dip.vary = 1;
    model.workspace().drawing.depth_grid_spacing = 10;
    refreshed(model.session);
    EXPECT_EQ(model.workspace().calculations, calculations);
}

TEST(FindStale, one_body_that_changes_is_calculated_alone) {
    Model model;
    const std::uint64_t calculations = model.workspace().calculations;
    model.workspace().body(2).density.value = 3;
    refreshed(model.session);
    EXPECT_EQ(model.workspace().calculations, calculations + 1) << "its gravity, not its magnetics";
    model.workspace().body(2).dip.value = 70;
    refreshed(model.session);
    EXPECT_EQ(model.workspace().calculations, calculations + 3);
}

TEST(FindStale, a_floating_base_that_was_written_into_is_found_again) {
    Model model;
    Workspace& w = model.workspace();
    w.mag.float_base = w.grav.float_base = 1;
    refreshed(model.session);
    w.mag.base += 10;
    expect_as_from_nothing(model.session, "a floating base");
    w.mag.base += 10;
    refreshed(model.session);
    w.mag.base += 10;
    expect_as_from_nothing(model.session, "the same value again");
}

TEST(FindStale, a_setting_that_changes_makes_bodies_stale_that_may_come_back) {
    Model model;
    Workspace& w = model.workspace();
    w.body_count = 2;
    w.field.intensity += 1000;
    refreshed(model.session);
    EXPECT_FALSE(w.body(3).mag_response_valid);
    w.body_count = 3;
    expect_as_from_nothing(model.session, "a body that came back");
}

TEST(FindStale, stations_that_would_be_read_in_another_way_are_dropped) {
    Model model;
    Workspace& w = model.workspace();
    w.read_as = line_inputs(w);
    find_stale(w);
    EXPECT_GT(w.station_count, 0);
    w.definition.data_file_date = 4711;
    find_stale(w);
    EXPECT_GT(w.station_count, 0) << "the date of the file is no way of reading it";
    w.definition.read_increment = 2;
    find_stale(w);
    EXPECT_EQ(w.station_count, 0);
}

}  // namespace anomalis::model
