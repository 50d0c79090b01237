#include "flow/channel_choice.h"

#include <tuple>

#include "core/session.h"

namespace anomalis::flow {

std::int32_t chosen_channel(const std::string& name, const Session& session) {
    if (name == "mag") return channel_mag;
    if (name == "grav") return channel_grav;
    if (name == "joint") return channel_joint;
    return session.inversion.inversion_channel;
}

std::string channel_name(std::int32_t channel) {
    return channel == channel_joint ? "joint" : channel == channel_grav ? "grav" : "mag";
}

std::string channel_refusal(const std::string& name, const Session& session) {
    const Workspace& workspace = session.workspace;
    for (const auto& [one, words, there] : {std::tuple{"mag", "magnetic", workspace.has_mag()},
                                            std::tuple{"grav", "gravity", workspace.has_grav()}})
        if (!there && (name == "joint" || name == one))
            return "--channel " + name + " needs a " + words + " column, and the workspace names none";
    return {};
}

}  // namespace anomalis::flow
