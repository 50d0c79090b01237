#pragma once

#include <cmath>
#include <string>
#include <utility>

#include "core/angles.h"
#include "core/formulas.h"
#include "core/model_body.h"
#include "show/sketch/parameter_sketch.h"

// How a sketch comes about. Private to this folder.
namespace anomalis::show {

inline constexpr chart::Rect section_frame{0, 260, -22, 173};  // m
inline constexpr chart::Rect plan_frame{-130, 130, -97.5, 97.5};
inline constexpr double ground_level = 150;
inline constexpr double gap = 9;  // between what is measured and its line, m
inline constexpr double arc_radius = 46;
inline constexpr double narrow = 24;        // arrows stand outside of what is no wider, m
inline constexpr double line_bearing = 80;  // degrees, of the profile in plan

inline chart::Point along(chart::Point from, double length, double angle) {
    const double turn = angle * radians_per_degree;
    return {from.x + length * std::cos(turn), from.y + length * std::sin(turn)};
}

/// From one direction to another (degrees counter-clockwise from the right), an arrow at its end.
inline SketchLine arc(chart::Point centre, double radius, double from, double to) {
    constexpr int chords = 24;
    SketchLine line{SketchLine::Role::measure, {}, false, true};
    for (int i = 0; i <= chords; ++i)
        line.points.push_back(along(centre, radius, from + (to - from) * i / chords));
    return line;
}

inline SketchLine measured(chart::Point from, chart::Point to, bool both = true) {
    return {SketchLine::Role::measure, {from, to}, both, true};
}

inline SketchLine lead(chart::Point from, chart::Point to) {
    return {SketchLine::Role::lead, {from, to}};
}

/// More of the parameter, as much as can be told from less.
float sketch_growth(std::int32_t type, int code);

/// One sketch: a view with the body in it, then what is measured.
class SketchMaker {
    using Role = SketchLine::Role;
    using Side = SketchText::Side;

  public:
    SketchMaker(const Workspace& workspace, const ModelBody& body, int code);
    std::optional<ParameterSketch> make();

  private:
    ModelBody grown() const;
    void take(std::vector<SketchPoints> present, std::vector<SketchPoints> greater);
    void add(SketchLine line) { sketch_.lines.push_back(std::move(line)); }
    void write(chart::Point at, std::string text, Side side, bool quiet = false);
    void name_view(const char* words);

    // -- Section.
    std::vector<SketchPoints> in_section(const ModelBody& body) const;
    void in_section();
    void set_up_section();
    void measure_in_section();
    const SketchPoints& outline() const { return sketch_.bodies.front(); }
    chart::Point reference() const { return *sketch_.reference; }
    void measure_distance();
    void measure_elevation();
    void measure_dip();
    /// The classic section raises the far side of a sheet whose + side lies to the left the other way round.
    void measure_slope();
    void measure_width();
    /// At right angles to the walls.
    void measure_thickness();
    void measure_depth_extent();
    void measure_rotation();
    void measure_separation();
    void name_currents();

    // -- Plan.
    void in_plan();
    void set_up_plan();
    void add_north();
    void measure_bearing(double direction);
    void measure_declination();
    /// Length and offset along the strike.
    void measure_along(double strike);

    // -- From the side, along the strike.
    void seen_across_strike();
    /// Length and offset of a pipe.
    void measure_from_side();

    // -- Magnetisation and density.
    void of_the_rock();
    chart::Point middle_of_body() const;
    void measure_inclination();
    void show_current();

    Formulas formulas_;
    int code_;
    int side_;
    ModelBody sample_;
    std::string caption_;
    bool changes_something_ = false;
    ParameterSketch sketch_;
};

}  // namespace anomalis::show
