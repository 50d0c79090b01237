#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "show/figure_page.h"

// How texts find their room on a sheet. Private to this room.
namespace anomalis::show {

inline constexpr double sheet_mm = chart::units_per_inch / 25.4;
inline constexpr double sheet_row_gap = 0.8 * sheet_mm;
inline constexpr chart::Colour quiet_grey = 0x555555;

/// The letters of a sheet.
inline chart::Font sheet_font(double size, bool bold = false) {
    return {.name = "Sans Serif", .size = size, .bold = bold};
}

/// Measures texts and breaks them into lines that fit.
class TextSetter {
  public:
    explicit TextSetter(const chart::DrawingDevice& measure) : measure_(measure) {}

    chart::TextExtent extent(std::string_view text, const chart::Font& font) const {
        return measure_.measure(text, font);
    }
    double width(std::string_view text, const chart::Font& font) const { return extent(text, font).width; }
    double height(const chart::Font& font) const { return extent("Ag", font).height(); }

    /// The text if it fits, else its beginning and an ellipsis.
    std::string shortened(const std::string& text, const chart::Font& font, double room) const;
    /// At most so many lines; what does not fit into the last one is left out for an ellipsis.
    std::vector<std::string> lines(std::string text, const chart::Font& font, double room,
                                   std::size_t most) const;

    /// Puts a line on a sheet, its box below `top` and from `left` on, or up to `right`.
    void place(FigureSheet& sheet, double left, double top, const std::string& text, const chart::Font& font,
               chart::Colour colour = chart::black) const;
    void place_right(FigureSheet& sheet, double right, double top, const std::string& text,
                     const chart::Font& font, chart::Colour colour = chart::black) const;

  private:
    /// How many bytes of the text fit, whole characters.
    std::size_t fitting(const std::string& text, const chart::Font& font, double room) const;

    const chart::DrawingDevice& measure_;
};

}  // namespace anomalis::show
