#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "core/workspace.h"
#include "fuzz_support.h"
#include "intake/definition.h"
#include "intake/load.h"
#include "support/scripted_prompts.h"
#include "support/temp_folder.h"

namespace {

using namespace anomalis;

/// The first bytes choose how the file is read; the rest is the file.
constexpr std::size_t choices = 4;

void choose(const std::uint8_t* bytes, Workspace& w) {
    DataDefinition& d = w.definition;
    d.first_data_line = 1 + bytes[0] % 3;
    d.read_increment = 1 + bytes[0] / 64;
    d.last_data_line = bytes[1] % 4 == 0 ? bytes[1] : 0;
    d.x_column = 1;
    d.y_column = 1 + bytes[1] / 64;
    d.mag_column = bytes[2] % 4;
    d.grav_column = bytes[2] / 4 % 4;
    d.z_column = bytes[2] / 16 % 4;
    d.dtm_column = bytes[2] / 64;
    constexpr std::array<float, 4> spacings{0, 0.001F, 10, 1e30F};
    w.station_spacing = spacings[bytes[3] % 4];
    w.min_station_spacing = spacings[bytes[3] / 4 % 4];
    w.transform.x_scale = bytes[3] / 16 % 4;
    w.transform.rotation = bytes[3] / 64 * 100;
    w.first_distance = bytes[0];
    w.last_distance = bytes[1];
}

void require_consistent(const Workspace& w) {
    require(w.stations.rows() == w.station_count);
    require(w.mag.data.stations() == w.station_count && w.grav.data.stations() == w.station_count);
    require(w.mag.work.stations() == w.station_count && w.grav.work.stations() == w.station_count);
    require(w.distances.count() == w.station_count && w.station_spare.count() == w.station_count);
    for (const ModelBody& body : w.bodies) require(body.response.rows() == w.station_count);
    require(w.first_station >= 1 && w.first_station <= w.station_count);
    require(w.last_station >= 1 && w.last_station <= w.station_count);
    require(w.distances.first() == 0);
}

}  // namespace

/// Any file either loads or is refused; one problem is told once, and what was loaded hangs together.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < choices) return 0;
    static const TempFolder folder;
    const std::string_view text(reinterpret_cast<const char*>(data) + choices, size - choices);
    ScriptedPrompts prompts;
    Workspace workspace;
    initialise_workspace(workspace, prompts);
    workspace.definition.data_file = folder.write("line.dat", text);
    workspace.body_count = 1;
    choose(data, workspace);

    intake::FileHead head;
    require(intake::show_data_file_head(workspace, head, prompts) == 0 && prompts.messages.empty());
    const int status = intake::load_locations(workspace, prompts);
    require(prompts.messages.size() <= 1);
    require((status == -1) == (workspace.station_count == 0));
    if (status != -1) require_consistent(workspace);
    return 0;
}
