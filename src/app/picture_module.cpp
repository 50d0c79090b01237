#include "app/picture_module.h"

#include <iostream>
#include <string>

#include <QGuiApplication>

#include "core/version.h"
#include "window/shell/model_picture.h"

namespace anomalis {

namespace {

/// Remarks of the window system about a desktop that is not there are none of the batch tool's business.
void keep_quiet(QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type == QtCriticalMsg || type == QtFatalMsg) std::cerr << text.toStdString() << '\n';
}

/// Draws without a display. The window system is started at the first picture: the commands that draw nothing
/// do not pay for it.
class QtPictureWriter : public batch::PictureWriter {
  public:
    QtPictureWriter(int& argc, char** argv) : argc_(argc), argv_(argv) {}

    void prepare() override { start(); }

    int write(Session& session, const batch::PictureRequest& request) override {
        start();
        if (request.view == batch::page_view) return write_page(session, request);
        return window::write_model_picture(session, request.path, request.view, request.width,
                                           request.height);
    }

    int write_map(Prompts& prompts, const intake::SurveyIndex& index,
                  const batch::MapRequest& request) override {
        start();
        return window::write_survey_map(prompts, index, request.line, request.path, request.width,
                                        request.height);
    }

    int write_results_map(Prompts& prompts, const survey::SurveyResults& results,
                          const survey::ResultsMapMarks& marks, const batch::MapRequest& request) override {
        start();
        return window::write_results_map(prompts, results, marks, request.line, request.path, request.width,
                                         request.height);
    }

  private:
    static int write_page(Session& session, const batch::PictureRequest& request) {
        show::Paper paper{};
        for (const show::PaperName& known : show::paper_names())
            if (known.name == request.paper) paper = known.paper;
        return window::write_figure(session, request.path,
                                    {show::sheet_size(paper, request.landscape), request.title});
    }

    void start() {
        if (application_) return;
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qInstallMessageHandler(keep_quiet);
        application_ = std::make_unique<QGuiApplication>(argc_, argv_);
    }

    int& argc_;
    char** argv_;
    std::unique_ptr<QGuiApplication> application_;
};

}  // namespace

}  // namespace anomalis

extern "C" const char* anomalis_pictures_version() {
    static const std::string version(anomalis::application_version());
    return version.c_str();
}

extern "C" anomalis::batch::PictureWriter* anomalis_make_picture_writer(int* argc, char** argv) {
    return new anomalis::QtPictureWriter(*argc, argv);
}
