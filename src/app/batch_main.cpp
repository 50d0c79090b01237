#include <iostream>

#include "batch/run_batch.h"

#ifdef ANOMALIS_PICTURES
#include <QGuiApplication>

#include "batch/picture_writer.h"
#include "core/failure.h"
#include "core/safe_file.h"
#include "core/session.h"
#include "workbench/qt/model_page.h"

namespace {

/// Draws with the charts of the window. Its application starts with the first picture, so that all other
/// commands run where there is none.
class ChartPictures : public anomalis::PictureWriter {
  public:
    int write(anomalis::Session& session, const anomalis::PictureRequest& request) override {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        int count = 1;
        char name[] = "anomalis-batch";
        char* arguments[] = {name, nullptr};
        const QGuiApplication application(count, arguments);
        return anomalis::report_failure(
            session.prompts, "An error occurred while drawing the picture: ", [&] {
                const anomalis::ModelPageOptions options{request.plan, request.width, request.height};
                const auto format = anomalis::picture_format(request.path);
                anomalis::write_file_safely(request.path,
                                            anomalis::model_page_bytes(session, format, options));
            });
    }
};

}  // namespace
#endif

int main(int argc, char** argv) {
#ifdef ANOMALIS_PICTURES
    ChartPictures pictures;
    return anomalis::run_batch(argc, argv, std::cout, std::cerr, &pictures);
#else
    return anomalis::run_batch(argc, argv, std::cout, std::cerr, nullptr);
#endif
}
