#include "output/sheet_files.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

#include "core/append_number.h"
#include "core/numbers.h"
#include "core/safe_file.h"
#include "core/text.h"
#include "output/dxf_text.h"

namespace anomalis::output {

namespace {

constexpr int sheet_decimals = 3;

void append_place(const GisPoint& point, std::string& text) {
    append_fixed(text, point.x, sheet_decimals);
    text += ' ';
    append_fixed(text, point.y, sheet_decimals);
    text += ' ';
    append_fixed(text, point.z, sheet_decimals);
    text += '\n';
}

std::size_t step_count(const std::vector<SheetSurface>& sheets) {
    std::size_t steps = 0;
    for (const SheetSurface& sheet : sheets) steps += sheet.top.size() - 1;
    return steps;
}

/// The numbers of the corners of each step, where the tops of a sheet stand from `first` on and the bottoms
/// behind them.
template <class Put>
void put_steps(const SheetSurface& sheet, std::size_t first, Put&& put) {
    const std::size_t below = first + sheet.top.size();
    for (std::size_t i = 0; i + 1 < sheet.top.size(); ++i)
        put(std::array{first + i, first + i + 1, below + i + 1, below + i});
}

void append_points(const std::vector<SheetSurface>& sheets, std::string_view before, std::string& text) {
    for (const SheetSurface& sheet : sheets)
        for (const std::vector<GisPoint>* row : {&sheet.top, &sheet.bottom})
            for (const GisPoint& point : *row) append_place(point, text += before);
}

/// Without blanks and line breaks, which end a name in OBJ.
std::string one_word(const std::string& name) {
    std::string word = single_line(name);
    std::ranges::replace(word, ' ', '_');
    return word;
}

void append_cell_values(const std::vector<SheetSurface>& sheets, const std::string& name,
                        const auto& value_of, std::string& text) {
    text += "SCALARS " + name + " double 1\nLOOKUP_TABLE default\n";
    for (std::size_t i = 0; i < sheets.size(); ++i) {
        const double value = value_of(i);
        for (std::size_t step = 1; step < sheets[i].top.size(); ++step) {
            append_round_trip(text, std::isfinite(value) ? value : no_vtk_value);
            text += '\n';
        }
    }
}

constexpr std::array<std::array<std::string_view, 3>, 4> face_codes{
    {{" 10", " 20", " 30"}, {" 11", " 21", " 31"}, {" 12", " 22", " 32"}, {" 13", " 23", " 33"}}};

void draw_corner(const GisPoint& point, const std::array<std::string_view, 3>& codes, DxfText& text) {
    text.pair(codes[0], point.x);
    text.pair(codes[1], point.y);
    text.pair(codes[2], point.z);
}

void draw_top(const SheetSurface& sheet, const std::string& layer, DxfText& text) {
    text.pair("  0", "POLYLINE");
    text.pair("  8", layer);
    text.pair(" 66", "1");
    text.pair(" 70", "8");  // in space
    draw_corner({}, face_codes[0], text);
    for (const GisPoint& point : sheet.top) {
        text.pair("  0", "VERTEX");
        text.pair("  8", layer);
        draw_corner(point, face_codes[0], text);
        text.pair(" 70", "32");
    }
    text.pair("  0", "SEQEND");
    text.pair("  8", layer);
}

void draw_faces(const SheetSurface& sheet, const std::string& layer, DxfText& text) {
    for (std::size_t i = 0; i + 1 < sheet.top.size(); ++i) {
        text.pair("  0", "3DFACE");
        text.pair("  8", layer);
        draw_corner(sheet.top[i], face_codes[0], text);
        draw_corner(sheet.top[i + 1], face_codes[1], text);
        draw_corner(sheet.bottom[i + 1], face_codes[2], text);
        draw_corner(sheet.bottom[i], face_codes[3], text);
        text.write_out_if_large();
    }
}

SquareExtents extents_of(const std::vector<SheetSurface>& sheets) {
    bool first = true;
    SquareExtents extents;
    for (const SheetSurface& sheet : sheets)
        for (const std::vector<GisPoint>* row : {&sheet.top, &sheet.bottom})
            for (const GisPoint& point : *row) {
                const float east = to_single(point.x), north = to_single(point.y);
                if (first) extents = {east, east, north, north};
                first = false;
                extents.east_low = std::min(extents.east_low, east);
                extents.east_high = std::max(extents.east_high, east);
                extents.north_low = std::min(extents.north_low, north);
                extents.north_high = std::max(extents.north_high, north);
            }
    return extents;
}

}  // namespace

std::string vtk_of_sheets(const std::vector<SheetSurface>& sheets, const std::vector<std::string>& names,
                          const std::string& title) {
    constexpr std::size_t longest_title = 255;
    std::size_t points = 0;
    for (const SheetSurface& sheet : sheets) points += 2 * sheet.top.size();
    const std::size_t steps = step_count(sheets);
    std::string text = "# vtk DataFile Version 3.0\n" + single_line(title).substr(0, longest_title) +
                       "\nASCII\nDATASET POLYDATA\nPOINTS " + std::to_string(points) + " double\n";
    append_points(sheets, "", text);
    text += "POLYGONS " + std::to_string(steps) + " " + std::to_string(5 * steps) + "\n";
    std::size_t first = 0;
    for (const SheetSurface& sheet : sheets) {
        put_steps(sheet, first, [&](const std::array<std::size_t, 4>& corners) {
            text += "4";
            for (const std::size_t corner : corners) text += " " + std::to_string(corner);
            text += "\n";
        });
        first += 2 * sheet.top.size();
    }
    text += "CELL_DATA " + std::to_string(steps) + "\n";
    append_cell_values(
        sheets, "sheet", [](std::size_t i) { return static_cast<double>(i + 1); }, text);
    for (std::size_t k = 0; k < names.size(); ++k)
        append_cell_values(
            sheets, names[k], [&](std::size_t i) { return sheets[i].values[k]; }, text);
    return text;
}

std::string obj_of_sheets(const std::vector<SheetSurface>& sheets, const std::string& title) {
    std::string text = "# " + single_line(title) + "\n";
    append_points(sheets, "v ", text);
    std::size_t first = 1;
    for (const SheetSurface& sheet : sheets) {
        text += "g " + one_word(sheet.name) + "\n";
        put_steps(sheet, first, [&](const std::array<std::size_t, 4>& corners) {
            text += "f";
            for (const std::size_t corner : corners) text += " " + std::to_string(corner);
            text += "\n";
        });
        first += 2 * sheet.top.size();
    }
    return text;
}

int write_sheet_dxf(const std::string& path, const std::vector<SheetSurface>& sheets,
                    const std::string& system) {
    SafeFile file(path);
    DxfText text(file);
    if (const std::string remark = coordinate_remark(system); !remark.empty()) text.comment(remark);
    text.head(extents_of(sheets));
    for (const SheetSurface& sheet : sheets) {
        const std::string layer = single_line(sheet.name);
        draw_top(sheet, layer, text);
        draw_faces(sheet, layer, text);
    }
    text.tail();
    text.write_out();
    return file.commit();
}

}  // namespace anomalis::output
