#include <algorithm>
#include <charconv>

#include "batch/batch_session.h"
#include "batch/commands.h"

namespace anomalis::batch {

bool parse_picture_size(const std::string& text, PictureRequest& picture) {
    constexpr int smallest = 16;
    constexpr int largest = 16384;
    const char* const end = text.data() + text.size();
    int width = 0;
    int height = 0;
    const auto first = std::from_chars(text.data(), end, width);
    if (first.ec != std::errc() || first.ptr == end || *first.ptr != 'x') return false;
    const auto second = std::from_chars(first.ptr + 1, end, height);
    if (second.ec != std::errc() || second.ptr != end) return false;
    if (std::min(width, height) < smallest || std::max(width, height) > largest) return false;
    picture.width = width;
    picture.height = height;
    return true;
}

bool run_render(const RenderOptions& options, BatchSession& batch, PictureWriter* pictures) {
    if (!pictures) {
        batch.prompts.message("This build of the batch tool draws no pictures");
        return false;
    }
    return batch.open_ready(options.model) && pictures->write(batch.session, options.picture) == 0;
}

}  // namespace anomalis::batch
