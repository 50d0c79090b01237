#include "core/text_pieces.h"

#include <algorithm>
#include <vector>

#include "core/pacer.h"
#include "core/shared_pieces.h"

namespace anomalis {

namespace {

constexpr double bytes_a_piece = 1 << 18;
constexpr double nanoseconds_a_byte = 2;  ///< numbers as text; a modest guess at what forming costs
constexpr std::size_t pieces_a_worker = 4;

}  // namespace

std::string whole_text(const TextSource& source) {
    std::string text;
    source([&text](std::string_view piece) { text += piece; });
    return text;
}

void put_rows(int rows, double bytes_a_row, const FormRows& form, const TextSink& put) {
    if (rows <= 0) return;
    const auto count = static_cast<std::size_t>(rows);
    const auto rows_a_piece = static_cast<std::size_t>(std::max(1.0, bytes_a_piece / bytes_a_row));
    const std::size_t pieces = (count - 1) / rows_a_piece + 1;
    const int workers = worker_count(rows * bytes_a_row * nanoseconds_a_byte, pieces);
    std::vector<std::string> texts(std::min(pieces, pieces_a_worker * static_cast<std::size_t>(workers)));
    for (std::size_t begin = 0; begin < pieces; begin += texts.size()) {
        const std::size_t present = std::min(texts.size(), pieces - begin);
        for_each_piece(present, workers, no_pace(), [&](PieceWorker&, std::size_t i) {
            const std::size_t first = (begin + i) * rows_a_piece;
            texts[i].clear();
            form(static_cast<int>(first) + 1, static_cast<int>(std::min(first + rows_a_piece, count)),
                 texts[i]);
        });
        for (std::size_t i = 0; i < present; ++i) put(texts[i]);
    }
}

}  // namespace anomalis
