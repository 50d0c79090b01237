#include "core/body_fields.h"

#include "core/body_parameters.h"

namespace anomalis {

Stale stale_between(const ModelBody& before, const ModelBody& after) {
    Stale stale;
    const auto compare = [&](const auto& field) {
        if (before.*field.member != after.*field.member) stale |= field.stale;
    };
    std::apply([&](const auto&... field) { (compare(field), ...); }, body_fields);
    for (const BodyParameter& row : body_parameters())
        if ((before.*row.slot).value != (after.*row.slot).value) stale |= row.stale;
    return stale;
}

}  // namespace anomalis
