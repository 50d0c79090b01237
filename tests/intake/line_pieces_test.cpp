#include "intake/survey/line_pieces.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>

#include "intake/survey/survey_tracks.h"

namespace anomalis::intake {
namespace {

using Track = std::vector<MapPoint>;

class Scatter {
  public:
    explicit Scatter(double deviation) : normal_(0, deviation) {}
    double operator()() { return normal_(random_); }

  private:
    std::mt19937 random_{7};
    std::normal_distribution<double> normal_;
};

MapPoint point(double east, double north) {
    return {static_cast<float>(east), static_cast<float>(north), 0};
}

/// Two straight parts of 500 stations with a bend between them.
Track bent_track(double degrees, double scatter) {
    Scatter off(scatter);
    Track track;
    const double angle = degrees * 3.14159265358979 / 180;
    for (int i = 0; i < 1000; ++i) {
        const double first = std::min(i, 499) * 10.0, second = std::max(i - 499, 0) * 10.0;
        track.push_back(point(first + second * std::cos(angle) + off(), second * std::sin(angle) + off()));
    }
    return track;
}

TEST(LinePieces, bends_above_20_degrees_make_pieces) {
    for (const double degrees : {5.0, 15.0, 19.0})
        EXPECT_EQ(straight_pieces(bent_track(degrees, 1)).size(), 1U);
    for (const double degrees : {22.0, 30.0, 90.0, 170.0}) {
        const auto pieces = straight_pieces(bent_track(degrees, 1));
        ASSERT_EQ(pieces.size(), 2U) << degrees;
        EXPECT_NEAR(static_cast<double>(pieces[0].last), 499, 4) << degrees;
        EXPECT_EQ(pieces[1].first, pieces[0].last + 1);
        EXPECT_EQ(pieces[1].last, 999);
    }
}

TEST(LinePieces, scatter_of_places_cuts_nothing) {
    Scatter off(2);
    Track walk, drift, parked;
    double east = 0, north = 0;
    for (int i = 0; i < 3000; ++i) {
        walk.push_back(point(0.3 * i + off(), off()));
        east = 0.98 * east + 0.25 * off();
        north = 0.98 * north + 0.25 * off();
        drift.push_back(point(i + east, north));
        parked.push_back(point(std::max(0, i - 500) + off(), off()));
    }
    EXPECT_EQ(straight_pieces(walk).size(), 1U);
    EXPECT_EQ(straight_pieces(drift).size(), 1U);
    EXPECT_EQ(straight_pieces(parked).size(), 1U);
}

TEST(LinePieces, a_swath_of_ground_stations_is_one_line) {
    Scatter off(3500);
    Track swath;
    for (int i = 0; i < 90; ++i) swath.push_back(point(3300 * i + 1000 * (i % 3), off()));
    EXPECT_EQ(straight_pieces(swath).size(), 1U);
}

TEST(LinePieces, a_gap_along_the_line_is_none_and_a_jump_off_it_is_one) {
    Track gap, jump;
    for (int i = 0; i < 300; ++i) {
        gap.push_back(point(9.0 * i + (i >= 150 ? 5000 : 0), 0));
        jump.push_back(point(9.0 * i + (i >= 150 ? 20000 : 0), i >= 150 ? 34000 : 0));
    }
    EXPECT_EQ(straight_pieces(gap).size(), 1U);
    const auto pieces = straight_pieces(jump);
    ASSERT_EQ(pieces.size(), 2U);
    EXPECT_EQ(pieces[0].last, 149);
}

TEST(LinePieces, lines_flown_to_and_fro_or_all_one_way_come_apart) {
    for (const bool to_and_fro : {true, false}) {
        Scatter off(1.5);
        Track track;
        for (int l = 0; l < 17; ++l)
            for (int i = 0; i < 400; ++i)
                track.push_back(
                    point(200.0 * l + off(), 9.0 * (to_and_fro && l % 2 == 1 ? 399 - i : i) + off()));
        const auto stretches = unfolded_stretches(track);
        ASSERT_EQ(stretches.size(), 17U) << to_and_fro;
        for (std::size_t l = 0; l < 17; ++l)
            EXPECT_EQ(stretches[l].last, 400 * static_cast<long>(l + 1) - 1) << l;
    }
}

TEST(LinePieces, few_points_are_one_piece) {
    EXPECT_TRUE(straight_pieces(Track{}).empty());
    for (std::size_t points = 1; points < 5; ++points)
        EXPECT_EQ(straight_pieces(Track(points, point(1, 2))).size(), 1U);
    EXPECT_EQ(straight_pieces(Track(1000, point(1, 2))).size(), 1U);
}

// -- Tracks in bounded memory.

TEST(SurveyTracks, thins_all_lines_alike_and_keeps_their_ends) {
    SurveyTracks tracks(100);
    tracks.make_room(2);
    for (int i = 0; i < 1000; ++i) {
        const MapPoint place = point(i, 0);
        tracks.add(static_cast<std::size_t>(i / 700), {&place, 1});
    }
    EXPECT_EQ(tracks.stations(0), 700);
    EXPECT_EQ(tracks.stations(1), 300);
    for (const std::size_t line : {0U, 1U}) {
        const Track track = tracks.take(line);
        ASSERT_GT(track.size(), 10U);
        ASSERT_LE(track.size(), 102U);
        const auto start = static_cast<float>(700 * line);
        for (std::size_t i = 0; i < track.size(); ++i)
            EXPECT_EQ(track[i].east, start + static_cast<float>(tracks.station_of(line, i)));
        EXPECT_EQ(track.back().east, line == 0 ? 699.0F : 999.0F);
    }
}

TEST(SurveyTracks, thinned_tracks_keep_first_and_last) {
    Track track;
    for (int i = 0; i < 1000; ++i) track.push_back(point(i, 0));
    for (const std::size_t most : {2U, 3U, 7U, 999U, 1000U, 5000U}) {
        const Track thin = thinned_track(track, most);
        EXPECT_LE(thin.size(), most + 1);
        EXPECT_EQ(thin.front().east, 0);
        EXPECT_EQ(thin.back().east, 999);
    }
    EXPECT_EQ(thinned_track(track, 1000).size(), 1000U);
}

}  // namespace
}  // namespace anomalis::intake
