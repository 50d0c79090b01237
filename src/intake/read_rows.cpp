#include "intake/read_rows.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <exception>
#include <limits>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "core/failure.h"
#include "core/free_memory.h"
#include "core/pacer.h"
#include "core/saturating.h"
#include "core/shared_pieces.h"
#include "core/workspace.h"
#include "intake/record_reader.h"

namespace anomalis::intake {

namespace {

constexpr double nanoseconds_per_byte = 1.2;
/// Below this the memory that each thread must touch first costs what a second one gains.
constexpr std::uint64_t bytes_read_alone = 2 << 20;
/// All that a load has of it at one time.
constexpr std::uint64_t bytes_of_a_station = 120;

/// A block as a thread read it that knows nothing of the lines before, or why it could not be.
struct BlockApart {
    std::optional<RecordBlock> rows;  ///< none: the block must be read in its turn
    RecordState state;
    DataBlock text;              ///< of a block that may have to be read in its turn
    std::exception_ptr failure;  ///< of the reading of the file
};

/// All rows so far.
class RowsInOrder {
  public:
    RowsInOrder(const DataDefinition& definition, const PointTransform& transform, int style)
        : reader_(definition, transform, style) {}

    /// The next block of the file.
    void read(const DataBlock& block) {
        RecordBlock rows(reader_.wanted());
        rows.reserve(rows_of_last_);
        reader_.begin(block);
        while (reader_.next()) rows.add(reader_);
        rows.find_ranges();
        keep(std::move(rows), 0);
    }
    void take(BlockApart apart) {
        if (apart.failure) std::rethrow_exception(apart.failure);
        if (!apart.rows || reader_.may_end_within(apart.state.lines)) return read(apart.text);
        const long lines_before = reader_.line_number();
        reader_.pass(apart.state);
        keep(std::move(*apart.rows), lines_before);
    }
    bool ended() const { return reader_.ended(); }
    bool in_head() const { return reader_.in_head(); }
    std::size_t count() const { return rows_.count; }

    DataRows finish() {
        rows_.notes = reader_.notes();
        rows_.notes.counted = true;
        rows_.notes.to_the_end = !reader_.ended();
        return std::move(rows_);
    }

  private:
    void keep(RecordBlock rows, long lines_before) {
        if (rows.rows() == 0) return;
        rows_of_last_ = rows.rows();
        rows_.count += rows.rows();
        if (rows_.count > std::numeric_limits<std::int32_t>::max()) throw Fault(FaultKind::overflow);
        for (std::size_t q = 0; q < quantity_count; ++q)
            rows_.ranges[q].append(rows.range(static_cast<Quantity>(q)));
        if (rows_.misfit_line == 0 && rows.misfit_line() > 0)
            rows_.misfit_line = lines_before + rows.misfit_line();
        rows_.blocks.push_back(std::move(rows));
    }

    RecordReader reader_;
    DataRows rows_;
    std::size_t rows_of_last_ = 0;
};

/// Blocks that several threads read apart and that are taken in their order.
class SharedReading {
  public:
    SharedReading(DataBlocks& blocks, RowsInOrder& rows, bool may_end)
        : blocks_(blocks), rows_(rows), may_end_(may_end), turn_(blocks.count()) {}

    /// Reads until the file ends, or the records do; for each thread one.
    void work(PieceWorker& worker, RecordReader& reader) {
        DataBlock block;
        while (!left_ && worker.goes_on(0)) {
            BlockApart apart;
            if (!next_block(block, apart)) return;
            const long number = block.number;
            if (!apart.failure) read_apart(reader, block, apart);
            if (!apart.rows || may_end_) apart.text = std::exchange(block, {});
            deliver(number, std::move(apart));
        }
    }

  private:
    bool next_block(DataBlock& block, BlockApart& apart) {
        const std::lock_guard lock(reading_);
        try {
            return blocks_.next(block);
        } catch (...) {
            // Told in its turn: an earlier block may have a failure of its own.
            apart.failure = std::current_exception();
            block.number = blocks_.count();
            left_ = true;
            return true;
        }
    }

    void read_apart(RecordReader& reader, const DataBlock& block, BlockApart& apart) const {
        RecordBlock rows(reader.wanted());
        rows.reserve(rows_of_a_block_);
        reader.begin_apart(block);
        try {
            while (reader.next()) {
                if (!reader.all_read()) return;
                rows.add(reader);
            }
        } catch (const Fault&) {
            return;  // it comes again in its turn, with its line
        }
        if (reader.notes().other_kinds) return;
        rows.find_ranges();
        rows_of_a_block_ = rows.rows();
        apart.rows = std::move(rows);
        apart.state = reader.take_state();
    }

    /// Takes what has its turn. Behind a failure nothing has.
    void deliver(long number, BlockApart apart) {
        const std::lock_guard lock(taking_);
        waiting_.emplace(number, std::move(apart));
        while (!waiting_.empty() && waiting_.begin()->first == turn_ && !rows_.ended()) {
            BlockApart next = std::move(waiting_.extract(waiting_.begin()).mapped());
            ++(next.rows ? apart_ : again_);
            take(std::move(next));
            ++turn_;
        }
        // Where most blocks hang on the rows before, none is read twice any more.
        if (rows_.ended() || again_ > apart_ + most_again) left_ = true;
    }

    void take(BlockApart next) {
        try {
            rows_.take(std::move(next));
        } catch (...) {
            turn_ = no_turn;
            left_ = true;
            throw;
        }
    }

    static constexpr long most_again = 4;
    static constexpr long no_turn = -1;

    DataBlocks& blocks_;
    RowsInOrder& rows_;
    bool may_end_;  ///< at a line that the definition gives
    long turn_;     ///< the block that is to be taken next
    long apart_ = 0, again_ = 0;
    std::mutex reading_, taking_;
    std::map<long, BlockApart> waiting_;
    std::atomic<bool> left_{false};
    mutable std::atomic<std::size_t> rows_of_a_block_{0};
};

/// Whether a whole row says everything of what follows it.
bool rows_hang_on_rows(const DataDefinition& d, const PointTransform& transform) {
    // A coordinate without a column of its own is transformed again with every row.
    const bool moves_on = transform.active && d.y_column == d.x_column;
    return d.read_increment > 1 || moves_on;
}

void read_shared(const DataDefinition& definition, const PointTransform& transform, int threads,
                 DataBlocks& blocks, RowsInOrder& rows) {
    SharedReading shared(blocks, rows, definition.last_data_line != 0);
    for_each_piece(static_cast<std::size_t>(threads), threads, no_pace(),
                   [&](PieceWorker& worker, std::size_t) {
                       RecordReader reader(definition, transform, blocks.style());
                       shared.work(worker, reader);
                   });
}

int threads_for(const DataBlocks& blocks, const ReadingShares& shares) {
    if (shares.threads == 0 && blocks.file().size() < bytes_read_alone) return 1;
    const auto bytes = static_cast<double>(blocks.file().size());
    const auto pieces = static_cast<std::size_t>(bytes / static_cast<double>(shares.block_size));
    return worker_count(nanoseconds_per_byte * bytes, pieces, shares.threads);
}

/// As many as the file has if the rest of it is like what was read.
std::uint64_t expected_rows(const DataDefinition& d, std::size_t rows, std::uint64_t bytes_read,
                            std::uint64_t bytes) {
    const double parts =
        static_cast<double>(bytes) / static_cast<double>(std::max<std::uint64_t>(bytes_read, 1));
    const double most = d.last_data_line > 0 ? d.last_data_line : std::numeric_limits<std::int32_t>::max();
    return static_cast<std::uint64_t>(std::min(static_cast<double>(rows) * std::max(parts, 1.0), most));
}

/// Before the rest of the file is read.
void require_memory_for(std::uint64_t rows, const DataDefinition& d, const ReadingShares& shares) {
    const std::uint64_t bytes = saturating_product(rows, bytes_of_a_station);
    const std::string what = "about " + std::to_string(rows) + " rows of " + d.data_file;
    const std::string way_out = "give a greater Data read step or a Final Data Line";
    if (shares.memory) {
        require_memory(bytes, *shares.memory, what, way_out);
    } else {
        require_free_memory(bytes, what, way_out);
    }
}

}  // namespace

DataRows read_rows(const DataDefinition& definition, const PointTransform& transform,
                   const ReadingShares& shares) {
    DataBlocks blocks(definition.data_file, shares.block_size);
    RowsInOrder rows(definition, transform, blocks.style());
    DataBlock block;
    bool more = true;
    const auto read_one = [&] {
        more = !rows.ended() && blocks.next(block);
        if (more) rows.read(block);
    };
    std::uint64_t bytes = 0;
    do {
        read_one();
        bytes += block.size;
    } while (more && rows.in_head());
    require_memory_for(expected_rows(definition, rows.count(), bytes, blocks.file().size()), definition,
                       shares);
    const int threads = threads_for(blocks, shares);
    if (more && threads > 1 && !rows_hang_on_rows(definition, transform))
        read_shared(definition, transform, threads, blocks, rows);
    while (more) read_one();
    return rows.finish();
}

}  // namespace anomalis::intake
