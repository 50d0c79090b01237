#include "survey/map/results_map_key.h"

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "chart/ax_grapher.h"
#include "show/map_colours.h"
#include "survey/map/results_map_looks.h"

namespace anomalis::survey {

namespace {

constexpr double key_edge = 6 * map_pixel;
constexpr double ramp_width = 18 * map_pixel;
constexpr double sign_width = 24 * map_pixel;  // room of a sign before its words
constexpr double section_gap = 10 * map_pixel;
constexpr double least_ramp = 70 * map_pixel, most_ramp = 240 * map_pixel;

/// Rows below each other in a chart whose user units are surface units.
class KeyPainter {
  public:
    KeyPainter(chart::AX_Grapher& chart, const ResultsKey& key)
        : chart_(chart),
          key_(key),
          row_(1.35 * chart.TextHeight()),
          top_(chart.Surface()->height() - key_edge) {}

    void draw();

  private:
    /// A sign about a place, and its words.
    struct Row {
        std::function<void(chart::Point)> sign;
        std::string words;
        double height = 0;  ///< at least that of a row of text
    };
    struct Section {
        std::string title;
        std::vector<Row> rows;
    };

    double height_of(const Row& row) const { return std::max(row.height, row_); }
    double height_of(const Section& section) const;
    void words(double left, double middle, const std::string& text) {
        chart_.DrawText(0, left, middle - chart_.TextHeight() / 2, text);
    }
    void ramp(double height);
    void section(const Section& section);
    Section size_section();
    Section doubt_section();
    Section line_section();
    Row dot_row(chart::ChartDot dot, std::string text);
    Row stroke_row(chart::Colour colour, int width, bool upright, std::string text);

    chart::AX_Grapher& chart_;
    const ResultsKey& key_;
    double row_, top_;
    std::vector<chart::ChartDot> dots_;
};

double KeyPainter::height_of(const Section& section) const {
    double height = section_gap + (section.title.empty() ? 0 : row_);
    for (const Row& row : section.rows) height += height_of(row);
    return height;
}

void KeyPainter::section(const Section& section) {
    if (section.rows.empty()) return;
    top_ -= section_gap;
    if (!section.title.empty()) {
        words(key_edge, top_ - row_ / 2, section.title);
        top_ -= row_;
    }
    for (const Row& row : section.rows) {
        const double middle = top_ - height_of(row) / 2;
        row.sign({key_edge + sign_width / 2, middle});
        words(key_edge + sign_width + key_edge, middle, row.words);
        top_ -= height_of(row);
    }
}

/// The shallow end is above, as in the ground.
void KeyPainter::ramp(double height) {
    words(key_edge, top_ - row_ / 2, depth_title(key_.tops));
    top_ -= row_ + key_edge;
    const double high = top_, low = top_ - height;
    for (int i = 0; i < depth_shades; ++i) {
        // Each reaches to the end below those that follow: between two edges the ground would show.
        const double from = high - height * i / depth_shades;
        chart_.DrawRectangle(key_edge, low, key_edge + ramp_width, from, chart::no_colour, depth_shade(i), 1);
    }
    chart_.DrawRectangle(key_edge, low, key_edge + ramp_width, high, rim_grey, chart::no_colour, 1);
    for (const double tick : key_.depths.ticks) {
        const double at = high - height * key_.depths.part(tick);
        const bool over = key_.depths.over && tick == key_.depths.ticks.back();
        const bool under = key_.depths.under && tick == key_.depths.ticks.front();
        const double right = key_edge + ramp_width;
        chart_.DrawLine(right, at, right + 4 * map_pixel, at, rim_grey, 1);
        words(right + 7 * map_pixel, at, (over ? "≥ " : under ? "≤ " : "") + scale_number(tick));
    }
    top_ = low - row_ / 2;
}

KeyPainter::Row KeyPainter::dot_row(chart::ChartDot dot, std::string text) {
    const double height = 2 * dot.radius + 3 * map_pixel;
    return {[this, dot](chart::Point at) mutable {
                dot.x = at.x;
                dot.y = at.y;
                dots_.push_back(dot);
            },
            std::move(text), height};
}

KeyPainter::Row KeyPainter::stroke_row(chart::Colour colour, int width, bool upright, std::string text) {
    return {[this, colour, width, upright](chart::Point at) {
                const double half = upright ? row_ / 2 : sign_width / 2;
                const double dx = upright ? 0 : half, dy = upright ? half : 0;
                chart_.DrawLine(at.x - dx, at.y - dy, at.x + dx, at.y + dy, colour, width);
            },
            std::move(text), 0};
}

KeyPainter::Section KeyPainter::size_section() {
    Section section;
    if (key_.tops.amount == MapAmount::none || key_.tops.tops.empty()) return section;
    section.title =
        key_.tops.amount == MapAmount::density ? "|Density contrast| (g/cc)" : "Susceptibility (micro SI)";
    const std::vector<double>& samples = key_.sizes.samples;
    for (const double sample : samples) {
        const bool over = key_.sizes.over && sample == samples.back();
        const bool under = key_.sizes.under && sample == samples.front();
        section.rows.push_back(dot_row(edged_dot(key_.greatest * key_.sizes.part(sample), sample_grey),
                                       (over    ? "≥ "
                                        : under ? "≤ "
                                                : "") +
                                           scale_number(sample)));
    }
    return section;
}

KeyPainter::Section KeyPainter::doubt_section() {
    Section section;
    if (key_.tops.tops.empty()) return section;
    const double radius = std::min(key_.greatest, 6.5 * map_pixel);
    const chart::Colour middle = depth_shade(depth_shades / 2);
    if (key_.greatest >= least_with_holes) {
        section.title = "90 % interval of the depth";
        for (const auto& [doubt, text] : {std::pair(DepthDoubt::small, "within ± 20 %"),
                                          {DepthDoubt::middle, "within ± 50 %"},
                                          {DepthDoubt::large, "wider, or not known"}})
            section.rows.push_back(dot_row(edged_dot(radius, middle, hole_of(doubt)), text));
    }
    if (key_.tops.below_sensor > 0 && key_.tops.below_ground > 0) {
        chart::ChartDot square = edged_dot(radius, middle);
        square.shape = chart::DotShape::square;
        section.rows.push_back(dot_row(square, "depth below the sensor"));
    }
    if (key_.tops.without_depth > 0)
        section.rows.push_back(dot_row(edged_dot(radius, show::no_value_grey), "depth not known"));
    return section;
}

KeyPainter::Section KeyPainter::line_section() {
    Section section;
    const StrokeLooks looks = stroke_looks(key_.greatest);
    const bool intervals =
        std::ranges::any_of(key_.tops.tops, [](const MapTop& top) { return top.interval.has_value(); });
    if (intervals)
        section.rows.push_back(
            stroke_row(interval_grey, looks.interval, false, "90 % interval of the place"));
    if (key_.strikes)
        section.rows.push_back(stroke_row(strike_black, strike_width, true, "body on several lines"));
    if (key_.tops.failed < key_.tops.lines.size())
        section.rows.push_back(stroke_row(looks.line, line_width, false, "line"));
    if (key_.tops.failed > 0)
        section.rows.push_back(stroke_row(failed_orange, failed_width, false, "line that failed"));
    for (const LineFlag flag : key_.flags)
        section.rows.push_back({[this, flag](chart::Point at) {
                                    chart_.MarkerSize(flag_size);
                                    chart_.DrawMarker(at.x, at.y, flag_marker(flag), flag_colour(flag),
                                                      flag_width);
                                },
                                flag == LineFlag::accept   ? "accepted"
                                : flag == LineFlag::reject ? "rejected"
                                                           : "to be looked at again",
                                0});
    return section;
}

void KeyPainter::draw() {
    const bool ramped = key_.tops.below_ground + key_.tops.below_sensor > 0;
    std::vector<Section> sections{size_section(), doubt_section(), line_section()};
    std::erase_if(sections, [](const Section& section) { return section.rows.empty(); });
    const double ramp_extra = ramped ? 1.5 * row_ + key_edge : 0;
    const auto rest = [&] {
        double height = 0;
        for (const Section& section : sections) height += height_of(section);
        return top_ - key_edge - ramp_extra - height;
    };
    while (!sections.empty() && rest() < (ramped ? least_ramp : 0)) sections.pop_back();
    if (ramped && rest() > 2 * row_) ramp(std::clamp(rest(), 2 * row_, most_ramp));
    for (const Section& own : sections) section(own);
    chart_.RegisterDots(dots_);
}

}  // namespace

const char* depth_title(const MapTops& tops) {
    return tops.below_ground == 0 && tops.below_sensor > 0 ? "Depth below sensor (m)"
                                                           : "Depth below ground (m)";
}

void draw_results_key(chart::AX_Grapher& chart, const ResultsKey& key) {
    chart.Clear();
    if (!chart.Surface()) return;
    chart.XAxisMin(0);
    chart.XAxisMax(chart.Surface()->width());
    chart.YAxisMin(0);
    chart.YAxisMax(chart.Surface()->height());
    chart.XTickInterval(chart.Surface()->width());
    chart.YTickInterval(chart.Surface()->height());
    chart.Layout();
    KeyPainter(chart, key).draw();
    chart.DisplayChart();
}

}  // namespace anomalis::survey
