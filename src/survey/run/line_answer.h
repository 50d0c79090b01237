#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "intake/coordinates/coordinate_system.h"
#include "intake/load_report.h"
#include "survey/results/line_result.h"

namespace anomalis {
struct Workspace;
}  // namespace anomalis

// What the model of a line says, as a row of the table of lines and one a body.
namespace anomalis::survey {

/// Longitude and latitude of places in m. A way from one system to another costs more than thousands of
/// places, so each is kept. For one thread.
class GeographicPlaces {
  public:
    /// WGS 84, degrees; `unknown` where the system is not known or the place has no image.
    TrackPoint of(const std::string& system, TrackPoint place);

  private:
    std::map<std::string, std::optional<intake::CoordinateChange>> changes_;
};

/// Puts the line and the bodies of a workspace whose numbers are up to date into `result`. `channel`
/// (ChannelCode) is that which was explained, `load` the report of its load. Intervals are those of the last
/// fit, where the model is as fitted.
void add_answer(const Workspace& workspace, std::int32_t channel, const intake::LoadReport& load,
                GeographicPlaces& places, LineResult& result);

}  // namespace anomalis::survey
