#pragma once

#include <optional>

#include "core/inversion_state.h"
#include "core/text_pieces.h"
#include "core/workspace.h"

namespace anomalis::batch {

class BatchPrompts;

/// Each channel by its own scale; no value where there is nothing to measure.
struct DumpedMisfit {
    std::optional<MisfitPair> mag;
    std::optional<MisfitPair> grav;
};

/// The whole session as one JSON object: fields by their names, numbers with all their digits,
/// a channel without a column or without stations as null. "messages" are those that a window shows,
/// "failures" these and all else that makes a number doubtful, "remarks" the rest. It is put in pieces: the
/// memory that it takes hangs neither on the stations nor on the bodies.
void put_dump(const Workspace& workspace, const DumpedMisfit& misfit, const BatchPrompts& told,
              const TextSink& put);

}  // namespace anomalis::batch
