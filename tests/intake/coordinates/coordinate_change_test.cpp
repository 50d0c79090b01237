#include <cmath>
#include <gtest/gtest.h>
#include <vector>

#include "core/failure.h"
#include "intake/coordinates/coordinate_system.h"
#include "intake/coordinates/transverse_mercator.h"

namespace anomalis::intake {
namespace {

/// Longitudes and latitudes over a zone of the south.
struct Places {
    std::vector<double> longitudes, latitudes;
    Places() {
        for (double longitude = 138; longitude <= 144; longitude += 0.75)
            for (double latitude = -70; latitude < 0; latitude += 7.3) {
                longitudes.push_back(longitude);
                latitudes.push_back(latitude);
            }
    }
};

TEST(CoordinateChange, meets_the_series_of_the_projection) {
    const Places places;
    std::vector<double> east = places.longitudes, north = places.latitudes;
    CoordinateChange change(wgs84, "EPSG:32754");
    change.forward(east, north);
    for (std::size_t i = 0; i < east.size(); ++i) {
        const auto [x, y] = utm_place(places.longitudes[i], places.latitudes[i], 54, true);
        EXPECT_NEAR(east[i], x, 0.001) << i;
        EXPECT_NEAR(north[i], y, 0.001) << i;
    }
    change.inverse(east, north);
    for (std::size_t i = 0; i < east.size(); ++i) {
        EXPECT_NEAR(east[i], places.longitudes[i], 1e-9);
        EXPECT_NEAR(north[i], places.latitudes[i], 1e-9);
    }
}

TEST(CoordinateChange, longitude_comes_first_between_geographic_systems) {
    std::vector<double> longitude{141}, latitude{-22};
    CoordinateChange("GDA94", wgs84).forward(longitude, latitude);
    EXPECT_NEAR(longitude[0], 141, 1e-4);
    EXPECT_NEAR(latitude[0], -22, 1e-4);
}

TEST(CoordinateChange, longitudes_may_count_on_to_360) {
    std::vector<double> both{-70, 290}, latitudes{-20, -20};
    CoordinateChange(wgs84, "EPSG:32719").forward(both, latitudes);
    EXPECT_NEAR(both[0], both[1], 1e-6);
}

TEST(CoordinateChange, what_is_no_place_on_the_globe_has_no_image) {
    std::vector<double> longitude{141, 141, 500000, -181, NAN, 141}, latitude{-22, -91, 7e6, -22, -22, NAN};
    CoordinateChange change(wgs84, "EPSG:32754");
    change.forward(longitude, latitude);
    EXPECT_FALSE(std::isnan(longitude[0]));
    for (std::size_t i = 1; i < longitude.size(); ++i) {
        EXPECT_TRUE(std::isnan(longitude[i])) << i;
        EXPECT_TRUE(std::isnan(latitude[i])) << i;
    }
    change.forward({}, {});
}

TEST(CoordinateChange, can_be_handed_on) {
    CoordinateChange change(wgs84, "EPSG:32754");
    change = CoordinateChange(wgs84, "EPSG:32755");
    const CoordinateChange moved = std::move(change);
    std::vector<double> east{147}, north{-20};
    CoordinateChange(wgs84, "EPSG:32755").forward(east, north);
    EXPECT_NEAR(east[0], 500000, 1e-6);
}

TEST(CoordinateChange, refuses_a_system_that_is_not_known) {
    EXPECT_THROW(CoordinateChange(wgs84, "EPSG:1"), Fault);
    EXPECT_THROW(CoordinateChange("", wgs84), Fault);
}

}  // namespace
}  // namespace anomalis::intake
