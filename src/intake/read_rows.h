#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "intake/data_blocks.h"
#include "intake/record_block.h"
#include "intake/row_notes.h"

namespace anomalis {
struct DataDefinition;
struct PointTransform;
}  // namespace anomalis

namespace anomalis::intake {

/// The records of a data file, in its order, and what was met on the way.
struct DataRows {
    std::vector<RecordBlock> blocks;
    std::size_t count = 0;
    std::array<RecordRange, quantity_count> ranges;
    long misfit_line = 0;  ///< of the first missing reading that is too far below 0 for a single; 0 for none
    RowNotes notes;
};

/// How the file is shared out; the rows do not hang on it.
struct ReadingShares {
    std::size_t block_size = DataBlocks::usual_size;
    int threads = 0;                           ///< 0: as the size of the file is worth
    std::optional<std::uint64_t> memory = {};  ///< bytes that a load may take; else what is free
};

/// Reads the file once, in blocks that all threads share. A block of which each row has all columns, in a
/// file of which every line is a group of its own, hangs on no earlier one; else it is read again in its
/// turn. Raises FileFault, and Fault overflow with the first line of which a value does not fit.
DataRows read_rows(const DataDefinition& definition, const PointTransform& transform,
                   const ReadingShares& shares = {});

}  // namespace anomalis::intake
