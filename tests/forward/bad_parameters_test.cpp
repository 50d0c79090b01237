#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "core/body_parameters.h"
#include "forward/line.h"

namespace anomalis::forward {

namespace {

constexpr float nan_value = std::numeric_limits<float>::quiet_NaN();
constexpr float infinite = std::numeric_limits<float>::infinity();
const float bad_values[] = {0, -1, 1e-30F, -1e30F, 1e30F, 3e38F, nan_value, infinite};
const BodyType all_types[] = {thin_sheet, thick_sheet, edge, sloping_step, polygon, sphere, pipe, wire};

void expect_finite(const Line& line, const std::string& what) {
    for (int column = 1; column <= 2; ++column)
        for (const float value : line.workspace.body(1).response.column(column))
            ASSERT_TRUE(std::isfinite(value)) << what << " column " << column;
    for (int i = 1; i <= line.workspace.station_count; ++i) {
        ASSERT_TRUE(std::isfinite(line.workspace.mag.data(i, row_raw, stage_calculated))) << what;
        ASSERT_TRUE(std::isfinite(line.workspace.grav.data(i, row_raw, stage_calculated))) << what;
    }
}

std::string describe(BodyType type, std::string_view name, double value) {
    return std::string(body_type_name(type)) + ", " + std::string(name) + " = " + std::to_string(value);
}

}  // namespace

TEST(BadParameters, no_value_of_any_parameter_reaches_a_curve_as_no_number) {
    for (const BodyType type : all_types) {
        for (const BodyParameter& row : body_parameters()) {
            for (const float value : bad_values) {
                for (const float length : {0.0F, 250.0F}) {
                    Line line(31);
                    ModelBody& body = line.add(type, 153);
                    body.length.value = length;
                    (body.*row.slot).value = value;
                    line.calculate();
                    expect_finite(line, describe(type, row.name, value));
                }
            }
        }
    }
}

TEST(BadParameters, a_body_without_a_number_is_named_with_the_reason_and_counts_as_zero) {
    Line line(31);
    line.add(thin_sheet, 153).name = "Dyke";
    line.body().width.value = nan_value;
    line.add(thick_sheet, 200).length.value = 0;
    line.calculate();
    EXPECT_TRUE(told(line.faults,
                     "An error occured while calculating the response: Overflow (the magnetic response of "
                     "body 1, Dyke, is not a finite number: its width is not a number; it counts as zero)"))
        << (line.faults.empty() ? "nothing told" : texts_of(line.faults)[0]);
    EXPECT_TRUE(told(line.faults,
                     "An error occurred while calculating the gravity response: Overflow (the gravity of "
                     "body 1, Dyke, "));
    EXPECT_EQ(line.body().response(10, 1), 0);
    EXPECT_EQ(line.workspace.mag.data(10, row_raw, stage_calculated), line.body(2).response(10, 1));
    EXPECT_NE(line.body(2).response(10, 1), 0);
}

TEST(BadParameters, every_parameter_that_a_type_reads_is_told_when_it_is_no_number) {
    using Slot = BodyParam ModelBody::*;
    const auto told = [](BodyType type, Slot slot) {
        Line line(31);
        (line.add(type, 153).*slot).value = nan_value;
        line.calculate();
        return !line.faults.empty();
    };
    for (const Slot slot : {&ModelBody::distance, &ModelBody::top, &ModelBody::strike, &ModelBody::dip,
                            &ModelBody::susc, &ModelBody::rem_q}) {
        EXPECT_TRUE(told(thin_sheet, slot));
        EXPECT_TRUE(told(thick_sheet, slot));
    }
    for (const Slot slot : {&ModelBody::length, &ModelBody::width, &ModelBody::offset, &ModelBody::strike})
        EXPECT_TRUE(told(pipe, slot));
    EXPECT_TRUE(told(wire, &ModelBody::offset));
}

TEST(BadParameters, odd_pipes_are_calculated_or_told) {
    for (const float value : bad_values) {
        for (float ModelBody::*field :
             {&ModelBody::shell_thickness, &ModelBody::end_thickness, &ModelBody::max_triangle_size}) {
            for (const int mark : {0, 1}) {
                Line line(11);
                ModelBody& body = line.add(pipe, 53, 70);
                body.shell_thickness = 5;
                body.include_demagnetisation = mark;
                body.*field = value;
                line.calculate();
                expect_finite(line, describe(pipe, "shape", value));
            }
        }
    }
    for (const int count : {-2147483647 - 1, -1, 0, 1, 3, 2147483647}) {
        for (std::int32_t ModelBody::*field : {&ModelBody::num_sectors, &ModelBody::num_segments}) {
            Line line(11);
            line.add(pipe, 53, 70).*field = count;
            line.calculate();
            expect_finite(line, describe(pipe, "count", count));
            EXPECT_EQ(line.faults.empty(), count != 2147483647);
        }
    }
}

TEST(BadParameters, an_odd_field_is_told) {
    const auto fields = [](Workspace& w) {
        return std::array{&w.field.intensity, &w.field.inclination, &w.field.declination, &w.azimuth};
    };
    for (std::size_t field = 0; field < 4; ++field) {
        for (const BodyType type : all_types) {
            for (const float value : bad_values) {
                Line line(11);
                line.add(type, 53, 70);
                *fields(line.workspace)[field] = value;
                line.calculate();
                expect_finite(line, describe(type, "field", value));
            }
        }
    }
}

TEST(BadParameters, stations_inside_a_body_and_on_its_corners_have_numbers) {
    for (const BodyType type : all_types) {
        for (const double sensor : {0.0, -20.0, -250.0, -400.0}) {
            for (const int mark : {0, -1}) {
                Line line(51, 10, 0, sensor);
                ModelBody& body = line.add(type, 250, 90);
                body.length.value = 200;
                body.include_demagnetisation = mark;
                line.calculate();
                expect_finite(line, describe(type, "sensor", sensor));
            }
        }
    }
}

TEST(BadParameters, all_stations_at_one_point_have_numbers) {
    for (const BodyType type : all_types) {
        Line line(21, 0);
        line.add(type, 0, 70);
        line.calculate();
        expect_finite(line, describe(type, "spacing", 0));
    }
}

TEST(BadParameters, a_station_without_a_number_is_told) {
    Line line(21);
    line.workspace.stations(7, column_east) = nan_value;
    line.add(thin_sheet, 100, 70);
    line.calculate();
    EXPECT_TRUE(told(line.faults, "a station is not a number"));
    expect_finite(line, "a station");
}

}  // namespace anomalis::forward
