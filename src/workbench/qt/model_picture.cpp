#include "workbench/qt/model_picture.h"

#include "chart/qt/painter_device.h"
#include "chart/qt/picture.h"
#include "core/failure.h"
#include "core/safe_file.h"
#include "core/session.h"
#include "workbench/model_page.h"

namespace anomalis {

namespace {

constexpr int least_side = 16;  // pixels
constexpr int longest_side = 16384;

bool is_side(int pixels) {
    return pixels >= least_side && pixels <= longest_side;
}

}  // namespace

int write_model_picture(Session& session, const std::string& path, const std::string& view, int width,
                        int height) {
    const MessageScope scope(session.prompts);
    return report_failure(session.prompts, "An error occurred while drawing the picture: ", [&] {
        const PictureFormat format = picture_format(path);
        if (!is_side(width) || !is_side(height))
            throw Fault("a side of a picture has 16 to 16384 pixels, not " + std::to_string(width) + " x " +
                        std::to_string(height));
        const PageView* const page_view = find_page_view(view);
        if (!page_view) throw Fault("there is no view " + view);
        if (!line_loaded(session.workspace)) throw Fault("no line is loaded");
        const SurfaceSize size{width * units_per_screen_pixel, height * units_per_screen_pixel};
        ModelPage page(session, size, *page_view, [](SurfaceSize own) {
            return std::make_unique<PainterDevice>(own.width, own.height);
        });
        const auto draw = [&](DrawingDevice& device, OutputTarget kind, const SurfaceMapping& whole) {
            page.draw(device, kind, whole);
        };
        write_file_safely(path, page_bytes(format, size, draw));
    });
}

}  // namespace anomalis
