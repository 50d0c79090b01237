#include "output/dxf_text.h"

#include "core/append_number.h"
#include "core/failure.h"
#include "core/numbers.h"
#include "core/text.h"
#include "core/workspace.h"
#include "intake/coordinates/coordinate_system.h"

namespace anomalis::output {

SquareExtents square_extents(const Workspace& w) {
    const double across = w.x_max - w.x_min;
    const double up = w.y_max - w.y_min;
    double east_low = w.x_min, east_high = w.x_max;
    double north_low = w.y_min, north_high = w.y_max;
    if (up > across) {
        const double d = (up - across) / 2;
        east_low -= d, east_high += d;
    } else {
        const double d = (across - up) / 2;
        north_low -= d, north_high += d;
    }
    return {to_single(east_low), to_single(east_high), to_single(north_low), to_single(north_high)};
}

std::string coordinate_remark(const Workspace& workspace) {
    return coordinate_remark(workspace.source.coordinate_system);
}

std::string coordinate_remark(const std::string& system) {
    if (system.empty()) return {};
    const std::string remark = "Coordinates in " + system;
    try {
        const std::string name = intake::find_coordinate_system(system).name;
        return name == system ? remark : remark + " (" + name + ")";
    } catch (const Fault&) {
        return remark;  // a name that means something to its owner
    }
}

void DxfText::pair(std::string_view code, float value) {
    line(code);
    append_default(text_, value);
    text_ += " \r\n";
}

void DxfText::pair(std::string_view code, double value) {
    line(code);
    append_default(text_, value);
    text_ += " \r\n";
}

void DxfText::write_out_if_large() {
    constexpr std::size_t large = 1 << 16;
    if (text_.size() >= large) write_out();
}

void DxfText::write_out() {
    file_.write(text_);
    text_.clear();
}

void DxfText::comment(std::string_view words) {
    pair("999", single_line(words));
}

void DxfText::head(const SquareExtents& extents) {
    pair("  0", "SECTION");
    pair("  2", "HEADER");
    pair("  9", "$EXTMIN");
    pair(" 10", extents.east_low);
    pair(" 20", extents.north_low);
    pair("  9", "$EXTMAX");
    pair(" 10", extents.east_high);
    pair(" 20", extents.north_high);
    pair("  0", "ENDSEC");
    pair("  0", "SECTION");
    pair("  2", "ENTITIES");
}

void DxfText::tail() {
    pair("  0", "ENDSEC");
    pair("  0", "EOF");
}

}  // namespace anomalis::output
