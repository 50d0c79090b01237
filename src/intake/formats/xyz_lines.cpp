#include <algorithm>

#include "intake/formats/formats.h"
#include "intake/formats/free_table.h"
#include "intake/formats/row_fields.h"

namespace anomalis::intake {

namespace {

/// XYZ as databases of airborne surveys export it: rows of numbers under rows "Line 5690" and "Tie 9010", "*"
/// where there is no value, comments behind "/".
class XyzLines : public FreeTableFormat {
  public:
    std::string_view name() const override { return "XYZ lines"; }
    std::optional<SurveyLayout> recognise(const SurveySample& sample) const override {
        const bool headed =
            std::any_of(sample.lines.begin(), sample.lines.end(),
                        [](const std::string& line) { return !line_header(line).name.empty(); });
        if (!headed) return {};
        return recognise_free_table(sample, true, name());
    }
};

}  // namespace

const SurveyFormat& xyz_lines_format() {
    static const XyzLines format;
    return format;
}

}  // namespace anomalis::intake
