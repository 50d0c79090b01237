#include "window/shell/model_picture.h"

#include "chart/qt/painter_device.h"
#include "chart/qt/picture.h"
#include "core/failure.h"
#include "core/session.h"
#include "core/told_write.h"
#include "flow/model_page.h"
#include "show/survey_map_page.h"

namespace anomalis::window {

namespace {

constexpr int least_side = 16;  // pixels
constexpr int longest_side = 16384;

bool is_side(int pixels) {
    return pixels >= least_side && pixels <= longest_side;
}

/// In surface units. Raises Fault for a side that a picture cannot have.
chart::SurfaceSize picture_size(int width, int height) {
    if (!is_side(width) || !is_side(height))
        throw Fault("a side of a picture has 16 to 16384 pixels, not " + std::to_string(width) + " x " +
                    std::to_string(height));
    return {width * chart::units_per_screen_pixel, height * chart::units_per_screen_pixel};
}

constexpr const char* drawing_failed = "An error occurred while drawing the picture: ";

}  // namespace

int write_model_picture(Session& session, const std::string& path, const std::string& view, int width,
                        int height) {
    const MessageScope scope(session.prompts);
    return report_failure(session.prompts, drawing_failed, [&] {
        const chart::PictureFormat format = chart::picture_format(path);
        const chart::SurfaceSize size = picture_size(width, height);
        const show::PageView* const page_view = show::find_page_view(view);
        if (!page_view) throw Fault("there is no view " + view);
        if (!edit::line_loaded(session.workspace)) throw Fault("no line is loaded");
        flow::ModelPage page(session, size, *page_view, [](chart::SurfaceSize own) {
            return std::make_unique<chart::PainterDevice>(own.width, own.height);
        });
        const auto draw = [&](chart::DrawingDevice& device, chart::OutputTarget kind,
                              const chart::SurfaceMapping& whole) { page.draw(device, kind, whole); };
        write_file_telling(session.prompts, path, chart::page_bytes(format, size, draw));
    });
}

int write_survey_map(Prompts& prompts, const intake::SurveyIndex& index, std::optional<std::size_t> line,
                     const std::string& path, int width, int height) {
    const MessageScope scope(prompts);
    return report_failure(prompts, drawing_failed, [&] {
        const chart::PictureFormat format = chart::picture_format(path);
        const chart::SurfaceSize size = picture_size(width, height);
        show::SurveyMapPage page(index, line, size, [](chart::SurfaceSize own) {
            return std::make_unique<chart::PainterDevice>(own.width, own.height);
        });
        const auto draw = [&](chart::DrawingDevice& device, chart::OutputTarget kind,
                              const chart::SurfaceMapping& whole) { page.draw(device, kind, whole); };
        write_file_telling(prompts, path, chart::page_bytes(format, size, draw));
    });
}

}  // namespace anomalis::window
