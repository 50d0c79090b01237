#pragma once

#include <cstdint>
#include <string>

namespace anomalis {
struct FitRecord;
struct ModelBody;
struct Workspace;
}  // namespace anomalis

namespace anomalis::batch {

/// "Thick Sheet at 1417 m (1410 to 1424): 132 m below the sensor, 30 m below ground, top 210 m (205 to 214),
/// dip 73° (65 to 80), width 42 m (below 60), susceptibility 67000 µSI (not determined)". Body `number` of a
/// model that was fitted on the line of `workspace`, to `channel` (a `ChannelCode`).
std::string found_body_text(const ModelBody& body, int number, const FitRecord& record, std::int32_t channel,
                            const Workspace& workspace);

}  // namespace anomalis::batch
