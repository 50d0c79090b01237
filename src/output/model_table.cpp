#include "core/failure.h"
#include "core/numbers.h"
#include "core/text.h"
#include "core/told_write.h"
#include "core/workspace.h"
#include "output/body_place.h"
#include "output/failure_note.h"
#include "output/table_field.h"
#include "output/tables.h"

namespace anomalis::output {

namespace {

/// Of a pipe half its end width. This table goes with a save, which makes the end width the width.
double depth_to_top(const ModelBody& body) {
    return body.type == pipe ? body.width.value / 2.0 : 0.0;
}

std::string position_fields(const ModelBody& body) {
    const BodyPlace place = body_place(body);
    return fixed_field(place.east, 3) + "," + fixed_field(place.north, 3) + "," +
           fixed_field(depth_to_top(body), 3) + "," + fixed_field(body.width.value, 3) + "," +
           shortest_text(body.strike.value) + "," + shortest_text(body.dip.value);
}

/// Each step puts its commas where the readers of this table expect them, in front and between.
std::string body_line(const Workspace& workspace, const ModelBody& body) {
    std::string text = position_fields(body);
    text = "," + text + (workspace.has_mag() ? shortest_text(body.susc.value) : "*");
    text = "," + text + (workspace.has_grav() ? shortest_text(body.density.value) + "," : "*");
    text = "," + text + "," + shortest_text(body.plunge.value) + "," + shortest_text(body.slope.value) + "," +
           shortest_text(body.depth_extent.value) + "," + shortest_text(body.length.value);
    const bool buried = body.type == pipe && workspace.station_count > 0;
    text += buried ? "," + fixed_field(body.top_elevation, 3) : ", *";
    return text + "," + std::string(trim_blanks(single_line(body.name)));
}

}  // namespace

std::string model_table_text(const Workspace& workspace, const std::vector<std::string>& failures) {
    std::string text =
        "#Profile model for " + single_line(workspace.definition.data_file) + failure_note(failures) + "\r\n";
    text +=
        "East, North, DepthToTop, HorizontalWidth, Strike, Dip, Susceptability, Density, PlungeAlongStrike, "
        "SlopeOfTop, VerticalDepthExtent, StrikeLength, BurialDepth, Name\r\n";
    for (int number = 1; number <= workspace.body_count; ++number)
        text += body_line(workspace, workspace.body(number)) + "\r\n";
    return text;
}

int write_model_table(const std::string& path, const Workspace& workspace, Prompts& prompts,
                      const std::vector<std::string>& failures) {
    return write_model_table_by(telling_writer(prompts), path, workspace, prompts, failures);
}

int write_model_table_by(const FileWriter& write, const std::string& path, const Workspace& workspace,
                         Prompts& prompts, const std::vector<std::string>& failures) {
    return report_failure(prompts, write_failure_prefix,
                          [&] { write(path, model_table_text(workspace, failures)); });
}

}  // namespace anomalis::output
