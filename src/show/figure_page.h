#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "chart/ax_grapher.h"

// The sheet of a figure: charts, and around them what a reader must know of line, field, model and fit.
namespace anomalis::show {

enum class Paper { a4, a3, letter };

struct PaperName {
    Paper paper;
    std::string_view name;     ///< on command lines
    std::string_view caption;  ///< for people
};
std::vector<PaperName> paper_names();

/// In surface units.
chart::SurfaceSize sheet_size(Paper paper, bool landscape);

struct FigureFact {
    std::string caption, text;
};

struct FigureColumn {
    std::string caption, unit;
};

struct FigureCell {
    std::string value;
    std::string interval;  ///< of the fit in force, under the value: "±12"; "" without one
};

struct FigureBody {
    chart::Colour colour = chart::black;
    std::string number, name, type;
    std::vector<FigureCell> cells;  ///< one a column
};

struct FigureTable {
    std::string heading;
    std::vector<FigureColumn> columns;
    std::vector<FigureBody> bodies;
    std::vector<std::string> notes;  ///< under the last row
};

/// What stands on a figure beside its charts.
struct FigureContent {
    int curves = 4;  ///< charts above section or plan: how much room they need
    std::string title;
    std::string line;  ///< which line it is, under the title
    std::vector<FigureFact> facts;
    FigureTable table;
    std::string origin;  ///< file and program, at the foot
    std::string date;
};

struct PlacedText {
    chart::Point anchor;  ///< lower left corner, surface units
    chart::TextExtent extent;
    std::string text;
    chart::Font font;
    chart::Colour colour = chart::black;

    chart::Rect box() const {
        return {anchor.x, anchor.x + extent.width, anchor.y, anchor.y + extent.height()};
    }
};

/// The colour of a body beside its number.
struct Swatch {
    chart::Rect box;
    chart::Colour colour;
};

/// One sheet as it is laid out, in surface units.
struct FigureSheet {
    std::optional<chart::Rect> charts;  ///< on the first sheet
    std::vector<PlacedText> texts;
    std::vector<Swatch> swatches;
    std::vector<chart::Rect> rules;  ///< thin lines from (x_low, y_low) to (x_high, y_low)
};

/// Lays a figure out. A table that leaves the charts too little room goes to sheets of its own where further
/// ones are allowed; else its last rows are left out, and their number is said. No text is longer than its
/// room: it is broken into lines and then shortened. `measure` gives the sizes of texts.
std::vector<FigureSheet> lay_out_figure(const FigureContent& content, chart::SurfaceSize size,
                                        bool further_sheets, const chart::DrawingDevice& measure);

/// Everything but the charts.
void draw_sheet(const FigureSheet& sheet, chart::DrawingDevice& device);

}  // namespace anomalis::show
