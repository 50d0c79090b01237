// Every axis, series style and marker of the charts on one page: written to files, or live in a window where
// they can be zoomed, panned, clicked and printed.

#include <algorithm>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <QApplication>
#include <QCommandLineParser>
#include <QGridLayout>
#include <QWidget>

#include "chart/qt/grapher_widget.h"
#include "chart/qt/picture.h"
#include "core/failure.h"
#include "core/safe_file.h"
#include "gallery.h"

namespace anomalis {

namespace {

struct Page {
    int width = 1500;  ///< pixels
    int height = 1800;
    double scale = 1.0;  ///< of a PNG: its pixels a pixel of the page
    std::vector<std::string> files;
};

Page page_from(const QStringList& words) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        "Everything that the charts can show. Without a file the charts open in a window.");
    parser.addHelpOption();
    parser.addPositionalArgument("FILE", "Pictures to write: .png, .svg, .pdf or .emf", "[FILE...]");
    parser.addOption({"size", "Pixels, such as 1500x1800", "WIDTHxHEIGHT", "1500x1800"});
    parser.addOption({"scale", "Pixels of a PNG a pixel of the page, 0.25 to 8", "NUMBER", "1"});
    parser.process(words);
    Page page;
    const QStringList size = parser.value("size").split('x');
    bool wide = false, high = false, scaled = false;
    page.width = size.value(0).toInt(&wide);
    page.height = size.value(1).toInt(&high);
    page.scale = parser.value("scale").toDouble(&scaled);
    if (size.size() != 2 || !wide || !high || std::min(page.width, page.height) < 300 ||
        std::max(page.width, page.height) > 16384)
        throw Fault("--size must be WIDTHxHEIGHT in pixels, 300 to 16384");
    if (!scaled || page.scale < 0.25 || page.scale > 8) throw Fault("--scale must be 0.25 to 8");
    for (const QString& file : parser.positionalArguments()) {
        page.files.push_back(file.toStdString());
        chart::picture_format(page.files.back());
    }
    return page;
}

void write(const Page& page, const std::string& file) {
    const chart::SurfaceSize size{page.width * chart::units_per_screen_pixel,
                                  page.height * chart::units_per_screen_pixel};
    const auto draw = [](chart::DrawingDevice& device, chart::OutputTarget kind,
                         const chart::SurfaceMapping& mapping) {
        if (chart::draw_gallery(device, kind, mapping) != 0) throw Fault("there is no room for the charts");
    };
    write_file_safely(file, chart::page_bytes(chart::picture_format(file), size, draw, page.scale));
}

int write_all(const Page& page) {
    int status = 0;
    for (const std::string& file : page.files) {
        try {
            write(page, file);
        } catch (const std::exception& failure) {
            std::cerr << file << ": " << failure.what() << '\n';
            status = 1;
        }
    }
    return status;
}

int show_live(const Page& page) {
    QWidget window;
    window.setWindowTitle("Charts");
    auto* grid = new QGridLayout(&window);
    std::vector<chart::GrapherWidget*> charts;
    for (int i = 0; i < chart::gallery_chart_count(); ++i) {
        charts.push_back(new chart::GrapherWidget(&window));
        chart::fill_gallery_chart(i + 1, charts.back()->chart());
        charts.back()->chart().Crosshair(true);
        grid->addWidget(charts.back(), i / 3, i % 3);
    }
    window.resize(page.width, page.height);
    window.show();
    for (chart::GrapherWidget* chart : charts) chart->chart().DisplayChart();
    return QApplication::exec();
}

}  // namespace

}  // namespace anomalis

int main(int argc, char** argv) {
    if (argc > 1) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    try {
        const anomalis::Page page = anomalis::page_from(QApplication::arguments());
        return page.files.empty() ? anomalis::show_live(page) : anomalis::write_all(page);
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 2;
    }
}
