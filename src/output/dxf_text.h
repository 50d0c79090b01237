#pragma once

#include <string>
#include <string_view>

#include "core/safe_file.h"

namespace anomalis {
struct Workspace;
}  // namespace anomalis

// The text of a drawing. Private to this room.
namespace anomalis::output {

/// The limits of the survey, widened to a square about the longer side.
struct SquareExtents {
    float east_low = 0, east_high = 0;
    float north_low = 0, north_high = 0;
};
SquareExtents square_extents(const Workspace& workspace);

/// What a drawing says of the system of its coordinates; "" where nobody knows it.
std::string coordinate_remark(const std::string& system);
std::string coordinate_remark(const Workspace& workspace);

/// Lines of a drawing on their way to a file. A code line is printed as given, its value on the next line.
class DxfText {
  public:
    explicit DxfText(SafeFile& file) : file_(file) {}

    void pair(std::string_view code, std::string_view value) { line(code), line(value); }
    /// A number in its default form, with a blank behind it.
    void pair(std::string_view code, float value);
    void pair(std::string_view code, double value);
    void line(std::string_view text) { (text_ += text) += "\r\n"; }
    void write_out_if_large();
    void write_out();

    /// A line that readers pass over.
    void comment(std::string_view words);
    void head(const SquareExtents& extents);
    void tail();

  private:
    SafeFile& file_;
    std::string text_;
};

}  // namespace anomalis::output
