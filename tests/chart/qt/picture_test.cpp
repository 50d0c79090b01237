#include "chart/qt/picture.h"

#include <cmath>
#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QXmlStreamReader>

#include "chart/qt/screen_device.h"
#include "core/failure.h"
#include "core/safe_file.h"
#include "gallery.h"
#include "sample_chart.h"
#include "support/temp_folder.h"

namespace anomalis::chart {
namespace {

class Pictures : public testing::Test {
  protected:
    Pictures() {
        surface_.resize(QSize(900, 300), 1.0);
        chart_.SetSurface(&surface_);
        fill_sample_chart(chart_);
    }

    std::string save(PictureFormat format, const std::string& name) {
        const std::string path = folder_.path(name);
        write_file_safely(path, chart_bytes(format, chart_));
        return path;
    }

    /// What an independent program makes of an exported file.
    QImage converted(const QString& program, const QStringList& arguments, const std::string& picture,
                     QSize size = QSize(900, 300)) {
        QProcess process;
        process.start(program, arguments);
        EXPECT_TRUE(process.waitForFinished(120000) && process.exitCode() == 0)
            << process.readAllStandardError().toStdString();
        const QImage image(QString::fromStdString(picture));
        EXPECT_FALSE(image.isNull()) << picture;
        return on_white(image).scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }

    static QImage on_white(const QImage& image) {
        QImage flat(image.size(), QImage::Format_RGB32);
        flat.fill(Qt::white);
        QPainter(&flat).drawImage(0, 0, image);
        return flat;
    }

    /// Frame, curves, shapes and texts stand in the same places: where one picture has ink, the other has
    /// some within `reach` pixels. Texts begin at the same place; another program's letters may be narrower.
    static void expect_same_places(const QImage& a, const QImage& b, int reach = 4) {
        expect_covered(a, b, reach);
        expect_covered(b, a, reach);
    }

    AX_Grapher chart_;
    ScreenDevice surface_;
    TempFolder folder_;

    static constexpr int gallery_width = 1500, gallery_height = 1800;
    static constexpr SurfaceSize gallery_size{gallery_width * units_per_screen_pixel,
                                              gallery_height* units_per_screen_pixel};
    static void draw_on(DrawingDevice& device, OutputTarget kind, const SurfaceMapping& mapping) {
        EXPECT_EQ(draw_gallery(device, kind, mapping), 0);
    }
    static QImage gallery_picture() { return on_white(page_image(gallery_size, draw_on)); }

  private:
    static void expect_covered(const QImage& ink, const QImage& cover, int reach) {
        int inked = 0, lonely = 0;
        for (int y = 0; y < ink.height(); ++y) {
            for (int x = 0; x < ink.width(); ++x) {
                if (qGray(ink.pixel(x, y)) > 90) continue;
                ++inked;
                lonely += near_ink(cover, x, y, reach) ? 0 : 1;
            }
        }
        EXPECT_GT(inked, 2000);
        EXPECT_EQ(lonely, 0);
    }

    static bool near_ink(const QImage& image, int x, int y, int reach) {
        for (int v = std::max(0, y - reach); v <= std::min(image.height() - 1, y + reach); ++v)
            for (int u = std::max(0, x - reach); u <= std::min(image.width() - 1, x + reach); ++u)
                if (qGray(image.pixel(u, v)) < 190) return true;
        return false;
    }
};

TEST_F(Pictures, a_png_shows_what_the_screen_shows) {
    const QImage png(QString::fromStdString(save(PictureFormat::png, "chart.png")));
    expect_same_places(on_white(png), on_white(surface_.picture()));
}

TEST_F(Pictures, high_density_pictures_have_more_pixels) {
    for (const double scale : {1.0, 1.5, 2.0}) {
        const std::string bytes = chart_bytes(PictureFormat::png, chart_, scale);
        const QImage image = QImage::fromData(QByteArray(bytes.data(), static_cast<int>(bytes.size())));
        EXPECT_EQ(image.width(), 900 * scale);
        EXPECT_EQ(image.height(), 300 * scale);
    }
}

/// The preview of a sheet is smaller than the sheet.
TEST_F(Pictures, a_reduced_picture_is_the_whole_one_made_smaller) {
    const SurfaceSize size{900 * units_per_screen_pixel, 300 * units_per_screen_pixel};
    const auto draw = [&](DrawingDevice& device, OutputTarget kind, const SurfaceMapping& mapping) {
        ASSERT_EQ(chart_.DrawTo(device, kind, mapping, size), 0);
    };
    const QImage reduced = page_image(size, draw, 0.5).convertToFormat(QImage::Format_Grayscale8);
    ASSERT_EQ(reduced.size(), QSize(450, 150));
    const QImage whole = page_image(size, draw)
                             .convertToFormat(QImage::Format_Grayscale8)
                             .scaled(450, 150, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    double apart = 0;
    for (int y = 0; y < 150; ++y)
        for (int x = 0; x < 450; ++x)
            apart += std::abs(qGray(reduced.pixel(x, y)) - qGray(whole.pixel(x, y)));
    EXPECT_LT(apart / (450 * 150), 1.0);
}

TEST_F(Pictures, an_svg_holds_its_texts_as_text) {
    const std::string svg = chart_bytes(PictureFormat::svg, chart_);
    for (const char* text :
         {"Residual Magnetic Field", "Distance (m)", "nT", "Burial depth: 32.00", "-200", "7000"})
        EXPECT_NE(svg.find(text), std::string::npos) << text;
    EXPECT_NE(svg.find("font-family=\"DejaVu Sans, sans-serif\""), std::string::npos);
}

/// A reader with another font keeps the room that the layout gave each text.
TEST_F(Pictures, an_svg_tells_the_width_of_each_text) {
    chart_.Title("Susceptibility \xC2\xB5 \xCE\xB3 \xE6\xBC\xA2 <SI> & more");
    const PainterDevice measure(0, 0);
    QXmlStreamReader reader(QByteArray::fromStdString(chart_bytes(PictureFormat::svg, chart_)));
    int texts = 0;
    double title = 0;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement || reader.name() != u"text") continue;
        const QXmlStreamAttributes attributes = reader.attributes();
        const double told = attributes.value(QLatin1String("textLength")).toDouble();
        EXPECT_EQ(attributes.value(QLatin1String("lengthAdjust")), u"spacingAndGlyphs");
        const bool bold = attributes.value(QLatin1String("font-weight")).toInt() >= 600;
        const Font font{"DejaVu Sans", attributes.value(QLatin1String("font-size")).toDouble() * 0.75, bold,
                        false};
        const std::string words = reader.readElementText().toStdString();
        EXPECT_NEAR(told, measure.measure(words, font).width / units_per_screen_pixel, 0.5) << words;
        // A text of several scripts is several elements, each with its own place.
        for (const char* part : {"Susc", "\xCE\xB3", "\xE6", "more"})
            if (words.find(part) != std::string::npos) title += told;
        ++texts;
    }
    EXPECT_FALSE(reader.hasError());
    EXPECT_GT(texts, 15);
    EXPECT_GT(title, 150);
}

TEST_F(Pictures, every_picture_has_the_colour_of_the_chart_to_its_edges) {
    chart_.BackColor(0xC0FFFF);
    const QRgb yellow = qRgb(255, 255, 192);
    const std::string png = chart_bytes(PictureFormat::png, chart_, 1.5);
    const QImage image = QImage::fromData(QByteArray(png.data(), static_cast<int>(png.size())));
    for (const QPoint corner : {QPoint(0, 0), QPoint(image.width() - 1, 0), QPoint(0, image.height() - 1),
                                QPoint(image.width() - 1, image.height() - 1)})
        EXPECT_EQ(image.pixel(corner), yellow) << corner.x() << ", " << corner.y();
    EXPECT_NE(chart_bytes(PictureFormat::svg, chart_).find("fill=\"#ffffc0\""), std::string::npos);
}

TEST_F(Pictures, an_svg_is_well_formed_whatever_its_texts_are) {
    chart_.Title("\"><script>&amp;\x1B[2J\x01 \xEF\xBF\xBE\xEF\xBF\xBF \xFF");
    const std::string svg = chart_bytes(PictureFormat::svg, chart_);
    QXmlStreamReader reader(QByteArray::fromStdString(svg));
    while (!reader.atEnd()) {
        reader.readNext();
        EXPECT_NE(reader.name(), u"script");
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    EXPECT_NE(svg.find("&quot;&gt;&lt;script&gt;&amp;amp;"), std::string::npos);
}

TEST_F(Pictures, exports_leave_the_screen_as_it_was) {
    const QImage before = surface_.picture().copy();
    for (const auto format : {PictureFormat::png, PictureFormat::svg, PictureFormat::pdf, PictureFormat::emf})
        chart_bytes(format, chart_);
    EXPECT_EQ(surface_.picture(), before);
    chart_.RefreshGraph(0);
    EXPECT_EQ(surface_.picture(), before);
}

TEST_F(Pictures, the_ending_of_the_name_chooses_the_format) {
    EXPECT_EQ(picture_format("a/b.PNG"), PictureFormat::png);
    EXPECT_EQ(picture_format("x.emf"), PictureFormat::emf);
    EXPECT_THROW(picture_format("picture.bmp"), Fault);
    EXPECT_THROW(picture_format("picture"), Fault);
}

TEST_F(Pictures, the_gallery_draws_on_every_format) {
    for (const auto format : {PictureFormat::png, PictureFormat::svg, PictureFormat::pdf, PictureFormat::emf})
        EXPECT_GT(page_bytes(format, gallery_size, draw_on).size(), 10000U);
}

#ifdef INKSCAPE
TEST_F(Pictures, another_program_sees_the_same_metafile) {
    const std::string emf = save(PictureFormat::emf, "chart.emf");
    const std::string png = folder_.path("emf.png");
    expect_same_places(
        converted(INKSCAPE, {"-o", QString::fromStdString(png), "-w", "1800", QString::fromStdString(emf)},
                  png),
        on_white(surface_.picture()));
}

TEST_F(Pictures, another_program_sees_the_same_svg) {
    const std::string svg = save(PictureFormat::svg, "chart.svg");
    const std::string png = folder_.path("svg.png");
    expect_same_places(
        converted(INKSCAPE, {"-o", QString::fromStdString(png), "-w", "1800", QString::fromStdString(svg)},
                  png),
        on_white(surface_.picture()));
}

TEST_F(Pictures, another_program_sees_the_whole_gallery) {
    for (const auto& [format, name] :
         {std::pair{PictureFormat::emf, "page.emf"}, {PictureFormat::svg, "page.svg"}}) {
        const std::string drawn = folder_.path(name);
        write_file_safely(drawn, page_bytes(format, gallery_size, draw_on));
        const std::string png = drawn + ".png";
        expect_same_places(converted(INKSCAPE,
                                     {"-o", QString::fromStdString(png), "-w", QString::number(gallery_width),
                                      QString::fromStdString(drawn)},
                                     png, QSize(gallery_width, gallery_height)),
                           gallery_picture(), 8);
    }
}
#endif

#ifdef PDFTOPPM
TEST_F(Pictures, another_program_sees_the_same_pdf) {
    const std::string pdf = save(PictureFormat::pdf, "chart.pdf");
    const std::string stem = folder_.path("pdf");
    expect_same_places(converted(PDFTOPPM,
                                 {"-png", "-singlefile", "-r", "192", QString::fromStdString(pdf),
                                  QString::fromStdString(stem)},
                                 stem + ".png"),
                       on_white(surface_.picture()));
}
#endif

}  // namespace
}  // namespace anomalis::chart
