#include "field/main_field.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <vector>

#include "core/failure.h"

namespace anomalis::field {
namespace {

struct Known {
    Place place;
    double year, north, east, down;
};

void expect_field(const Known& known, double tolerance) {
    const MainField field = main_field(known.place, known.year);
    SCOPED_TRACE(known.place.latitude);
    EXPECT_NEAR(field.north_nT, known.north, tolerance);
    EXPECT_NEAR(field.east_nT, known.east, tolerance);
    EXPECT_NEAR(field.down_nT, known.down, tolerance);
}

// Values of the magnetic field calculator of NOAA NCEI, which rounds to 0.1 nT.
TEST(MainField, meets_the_calculator_of_a_data_centre) {
    for (const Known& known : {Known{{-22, 163, 5000}, 2010, 30850.7, 6394.0, -36189.7},
                               Known{{-53, -13, 5000}, 2010, 13062.1, -3680.2, -23255.0},
                               Known{{-72, 105, 5000}, 2010, -3997.0, -11478.0, -59762.2},
                               Known{{38, 0, 5000}, 2010, 26663.4, -294.2, 34705.1},
                               Known{{69, 4, 5000}, 2010, 11256.2, -426.9, 51287.5},
                               Known{{26, -146, 5000}, 2010, 26232.4, 5353.9, 27044.6}})
        expect_field(known, 0.1);
}

// An independent synthesis of the same coefficients, between the epochs and near the poles.
TEST(MainField, meets_an_independent_synthesis) {
    for (const Known& known : {Known{{-87.8546, 1.0015, 8044}, 1910.506, 13703.197, -5427.976, -60166.353},
                               Known{{67.5284, -160.2758, 3161}, 1963.923, 11558.993, 4697.436, 54830.206},
                               Known{{-85.8913, -149.4588, 4269}, 2019.72, -5530.123, 14649.788, -54254.033},
                               Known{{14.2044, -117.8801, 5324}, 2024.582, 28281.877, 4141.028, 20731.354},
                               Known{{14.9769, -17.532, 3380}, 2028.189, 32357.138, -3155.064, 4087.772},
                               Known{{9.6601, 41.994, -16}, 1949.273, 35808.809, -154.048, 522.474}})
        expect_field(known, 0.01);
    const MainField field = main_field({9.6601, 41.994, -16}, 1949.273);
    EXPECT_NEAR(field.total_nT, 35812.952, 0.01);
    EXPECT_NEAR(field.inclination_deg, 0.83592, 1e-5);
    EXPECT_NEAR(field.declination_deg, -0.24648, 1e-5);
}

TEST(MainField, at_a_pole_the_vector_does_not_hang_on_the_longitude) {
    for (const double latitude : {90.0, -90.0}) {
        const MainField zero = main_field({latitude, 0, 0}, 2000);
        for (const double longitude : {-90.0, 45.0, 180.0, 300.0}) {
            const MainField other = main_field({latitude, longitude, 0}, 2000);
            // North of the one meridian turns against that of the other.
            const double turn = longitude * std::numbers::pi / 180 * (latitude > 0 ? -1 : 1);
            EXPECT_NEAR(other.north_nT, zero.north_nT * std::cos(turn) + zero.east_nT * std::sin(turn), 1e-6);
            EXPECT_NEAR(other.east_nT, zero.east_nT * std::cos(turn) - zero.north_nT * std::sin(turn), 1e-6);
            EXPECT_NEAR(other.down_nT, zero.down_nT, 1e-6);
        }
        const double inside = std::copysign(90 - 1e-7, latitude);
        EXPECT_NEAR(main_field({inside, 30, 0}, 2000).total_nT, zero.total_nT, 1e-3) << "no jump at the pole";
    }
}

TEST(MainField, longitudes_go_round) {
    EXPECT_NEAR(main_field({-20, 359, 0}, 1990).east_nT, main_field({-20, -1, 0}, 1990).east_nT, 1e-6);
    EXPECT_NEAR(main_field({-20, 180, 0}, 1990).total_nT, main_field({-20, -180, 0}, 1990).total_nT, 1e-6);
    EXPECT_NEAR(main_field({-20, 360, 0}, 1990).total_nT, main_field({-20, 0, 0}, 1990).total_nT, 1e-6);
}

TEST(MainField, is_linear_between_the_epochs_and_whole_at_both_ends) {
    const Place place{-22, 140, 300};
    const MainField early = main_field(place, 2025), late = main_field(place, 2030);
    const MainField between = main_field(place, 2026);
    EXPECT_NEAR(between.north_nT, 0.8 * early.north_nT + 0.2 * late.north_nT, 1e-6);
    EXPECT_NEAR(between.down_nT, 0.8 * early.down_nT + 0.2 * late.down_nT, 1e-6);
    EXPECT_GT(main_field(place, 1900).total_nT, 40000);
}

TEST(MainField, falls_off_with_height) {
    const double ground = main_field({-22, 140, 0}, 2000).total_nT;
    const double orbit = main_field({-22, 140, 500000}, 2000).total_nT;
    // A dipole falls off with the third power of the distance from the centre.
    EXPECT_NEAR(orbit / ground, std::pow(6371.2 / 6871.2, 3), 0.02);
}

TEST(MainField, refuses_what_lies_outside_of_the_model) {
    for (const auto& [place, year] : std::vector<std::pair<Place, double>>{{{0, 0, 0}, 1899.99},
                                                                           {{0, 0, 0}, 2030.01},
                                                                           {{0, 0, 0}, NAN},
                                                                           {{90.01, 0, 0}, 2000},
                                                                           {{NAN, 0, 0}, 2000},
                                                                           {{0, 360.5, 0}, 2000},
                                                                           {{0, -181, 0}, 2000},
                                                                           {{0, 0, -20000}, 2000},
                                                                           {{0, 0, 700000}, 2000}})
        EXPECT_THROW(main_field(place, year), Fault)
            << place.latitude << ", " << place.longitude << ", " << place.height_m << ", " << year;
}

TEST(MainField, says_which_years_it_knows) {
    try {
        main_field({0, 0, 0}, 2031.5);
        FAIL() << "a year beyond the model was taken";
    } catch (const Fault& fault) {
        EXPECT_STREQ(
            fault.what(),
            "IGRF-14 knows the earth's field from 1900 to 2030; 2031.5 lies outside. Give the field by "
            "hand");
    }
}

}  // namespace
}  // namespace anomalis::field
