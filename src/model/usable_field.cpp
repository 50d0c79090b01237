#include "model/usable_field.h"

#include "core/faults.h"
#include "core/numbers.h"
#include "core/workspace.h"

namespace anomalis::model {

namespace {

bool magnetised_by_the_field(const ModelBody& body) {
    return body.turned_off != 1 && !carries_current(body.type);
}

}  // namespace

std::string missing_field(const Workspace& workspace, std::int32_t channel) {
    if (!workspace.source.field_missing || !workspace.has_mag() || channel == channel_grav) return {};
    return "The earth's field of this line is not set, so magnetics are not modelled: give it from place and "
           "date, or "
           "key intensity, inclination and declination";
}

void note_unusable_field(const Workspace& workspace, Faults& faults) {
    if (!workspace.has_mag() || workspace.field.intensity > 0) return;
    for (int number = 1; number <= workspace.body_count; ++number) {
        if (!magnetised_by_the_field(workspace.body(number))) continue;
        if (const std::string missing = missing_field(workspace, channel_mag); !missing.empty())
            return faults.add(missing, 1, Severity::doubt);
        faults.add("The field intensity is " + shortest_text(workspace.field.intensity) +
                       " nT: no body is magnetised as it would be in the earth's field",
                   1, Severity::doubt);
        return;
    }
}

}  // namespace anomalis::model
