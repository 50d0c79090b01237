#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "inversion/find/find_bodies.h"

namespace anomalis {
struct Workspace;
}  // namespace anomalis

// What the panel of a search for bodies shows, and what a person chose there.
namespace anomalis::flow {

/// Which sheets a search may propose.
enum class SheetKinds { both, thin, thick };

struct FindState {
    static constexpr int most_bodies = 20;  ///< that a person can ask for

    int most = inversion::FindRequest{}.most;  ///< bodies at most, 1 to `most_bodies`
    SheetKinds kinds = SheetKinds::both;
    std::int32_t channel = channel_mag;  ///< ChannelCode
    bool free_present = false;           ///< bodies that stand there are fitted too

    bool searching = false;
    inversion::FindStage stage = inversion::FindStage::noise;
    int bodies = 0;  ///< found so far
    double rms = 0;  ///< of the model as it stands; 0 before the first

    std::string label;                 ///< how the last search ended
    std::vector<std::string> remarks;  ///< what there is to say of it, a sentence each
    std::vector<inversion::FoundModel> models;
    int revision = 0;    ///< grows when `models` change
    int previewed = -1;  ///< which of them the charts show; -1 for the open model

    /// The channel in the place of the one that was chosen: one that the line lacks gives way to the other.
    std::int32_t corrected_channel(const Workspace& workspace) const;
    inversion::FindRequest request(const Workspace& workspace) const;
};

/// The stretch of the line that is explained: "1230 to 5600 m, 412 of 804 stations"; "" without a line.
std::string find_window_text(const Workspace& workspace);
/// What a search is at: "Refitting: 3 bodies so far, rms 12.1 nT".
std::string find_progress_text(const FindState& state, const Workspace& workspace);
/// "rms 4.21 nT".
std::string found_rms_text(double rms, std::int32_t channel);
/// "criterion 512.3".
std::string criterion_text(double criterion);

}  // namespace anomalis::flow
