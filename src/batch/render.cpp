#include <algorithm>
#include <charconv>

#include "batch/batch_session.h"
#include "batch/commands.h"

namespace anomalis::batch {

bool parse_picture_size(const std::string& text, int& wide, int& high) {
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
    wide = width;
    high = height;
    return true;
}

std::string picture_ending_refusal(const std::string& path) {
    for (const char* ending : {".png", ".svg", ".pdf", ".emf"})
        if (path.size() > 4 && path.ends_with(ending)) return {};
    return "the ending must be .png, .svg, .pdf or .emf";
}

bool run_render(const RenderOptions& options, BatchSession& batch, PictureWriter* pictures) {
    if (!pictures) {
        batch.prompts.message("This build of the batch tool draws no pictures");
        return false;
    }
    return batch.open_ready(options.model) && pictures->write(batch.session, options.picture) == 0;
}

}  // namespace anomalis::batch
