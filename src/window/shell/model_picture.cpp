#include "window/shell/model_picture.h"

#include "chart/qt/installed_fonts.h"
#include "chart/qt/painter_device.h"
#include "core/failure.h"
#include "core/session.h"
#include "core/told_write.h"
#include "show/survey_map_page.h"
#include "survey/map/results_map_page.h"

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

/// A picture without a letter is drawn, and told.
void tell_missing_fonts(Prompts& prompts) {
    const std::string told = chart::missing_fonts();
    if (!told.empty()) prompts.message(told, Severity::doubt);
}

constexpr const char* drawing_failed = "An error occurred while drawing the picture: ";

/// One page of so many pixels; `make` gives it for a size in surface units.
template <class MakePage>
int write_map_page(Prompts& prompts, const std::string& path, int width, int height, MakePage&& make) {
    const MessageScope scope(prompts);
    tell_missing_fonts(prompts);
    return report_failure(prompts, drawing_failed, [&] {
        const chart::PictureFormat format = chart::picture_format(path);
        const chart::SurfaceSize size = picture_size(width, height);
        auto page = make(size);
        const auto draw = [&](chart::DrawingDevice& device, chart::OutputTarget kind,
                              const chart::SurfaceMapping& whole) { page.draw(device, kind, whole); };
        write_file_telling(prompts, path, chart::page_bytes(format, size, draw));
    });
}

}  // namespace

int write_model_picture(Session& session, const std::string& path, const std::string& view, int width,
                        int height) {
    const MessageScope scope(session.prompts);
    tell_missing_fonts(session.prompts);
    return report_failure(session.prompts, drawing_failed, [&] {
        const chart::PictureFormat format = chart::picture_format(path);
        const chart::SurfaceSize size = picture_size(width, height);
        const show::PageView* const page_view = show::find_page_view(view);
        if (!page_view) throw Fault("there is no view " + view);
        if (!edit::line_loaded(session.workspace)) throw Fault("no line is loaded");
        flow::ModelPage page(session, size, *page_view, measuring_device);
        const auto draw = [&](chart::DrawingDevice& device, chart::OutputTarget kind,
                              const chart::SurfaceMapping& whole) { page.draw(device, kind, whole); };
        write_file_telling(session.prompts, path, chart::page_bytes(format, size, draw));
    });
}

std::unique_ptr<chart::DrawingDevice> measuring_device(chart::SurfaceSize size) {
    return std::make_unique<chart::PainterDevice>(size.width, size.height);
}

std::vector<chart::DrawPage> figure_pages(flow::ModelFigure& figure) {
    std::vector<chart::DrawPage> pages;
    for (std::size_t i = 0; i < figure.sheets().size(); ++i)
        pages.emplace_back(
            [&figure, i](chart::DrawingDevice& device, chart::OutputTarget kind,
                         const chart::SurfaceMapping& whole) { figure.draw(i, device, kind, whole); });
    return pages;
}

int write_figure(Session& session, const std::string& path, flow::FigureChoice choice) {
    const MessageScope scope(session.prompts);
    return report_failure(session.prompts, drawing_failed, [&] {
        const chart::PictureFormat format = chart::picture_format(path);
        choice.further_sheets = format == chart::PictureFormat::pdf;
        flow::ModelFigure figure(session, choice, measuring_device);
        write_file_telling(session.prompts, path,
                           chart::sheets_bytes(format, figure.size(), figure_pages(figure)));
    });
}

int write_survey_map(Prompts& prompts, const intake::SurveyIndex& index, std::optional<std::size_t> line,
                     const std::string& path, int width, int height) {
    return write_map_page(prompts, path, width, height, [&](chart::SurfaceSize size) {
        return show::SurveyMapPage(index, line, size, measuring_device);
    });
}

int write_results_map(Prompts& prompts, const survey::SurveyResults& results,
                      const survey::ResultsMapMarks& marks, std::optional<std::size_t> line,
                      const std::string& path, int width, int height) {
    return write_map_page(prompts, path, width, height, [&](chart::SurfaceSize size) {
        return survey::ResultsMapPage(results, marks, line, size, measuring_device);
    });
}

}  // namespace anomalis::window
