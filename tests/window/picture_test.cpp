#include <filesystem>
#include <set>

#include <QImage>
#include <QTest>
#include <QXmlStreamReader>

#include "edit/line_sample.h"
#include "show/page_view.h"
#include "support/shown_characters.h"
#include "window/form_tests.h"
#include "window/shell/model_picture.h"

namespace anomalis::window {

class PictureTest : public QObject {
    Q_OBJECT

  private slots:
    void the_ending_chooses_the_format();
    void a_picture_has_the_size_that_was_asked_for();
    void what_cannot_be_drawn_is_told();
    void a_failure_leaves_the_old_file();
    void every_view_is_drawn_in_every_format();
    void a_name_is_a_text_in_an_svg_whatever_stands_in_it();
    void values_at_the_end_of_single_precision_give_a_sound_svg();
    void a_figure_is_drawn_on_every_paper_in_every_format();
    void a_figure_of_many_bodies_has_more_pages_in_a_pdf_alone();
};

namespace {

struct Line : edit::LineSample {
    Line() {
        add_body(1260, 60);
        load();
    }
    int write(const std::string& name, int width = 400, int height = 300,
              const std::string& view = "section") {
        return write_model_picture(session, folder.path(name), view, width, height);
    }
};

/// What a reader of XML finds in a picture.
struct SvgTexts {
    QStringList elements, texts;
    QString error;
};

SvgTexts texts_of_svg(const std::string& svg) {
    QXmlStreamReader reader(QByteArray::fromStdString(svg));
    SvgTexts found;
    while (!reader.atEnd()) {
        const auto token = reader.readNext();
        if (token == QXmlStreamReader::StartElement) found.elements << reader.name().toString();
        if (token == QXmlStreamReader::Characters) found.texts << reader.text().toString();
    }
    if (reader.hasError()) found.error = reader.errorString();
    return found;
}

}  // namespace

void PictureTest::the_ending_chooses_the_format() {
    Line line;
    const std::vector<std::pair<std::string, std::string>> heads{
        {"a.png", "\x89PNG"}, {"b.SVG", "<?xml"}, {"c.pdf", "%PDF"}, {"d.emf", std::string("\1\0\0\0", 4)}};
    for (const auto& [name, head] : heads) {
        QCOMPARE(line.write(name), 0);
        QCOMPARE(line.folder.read(name).substr(0, head.size()), head);
    }
    QVERIFY(line.prompts.messages.empty());
}

void PictureTest::a_picture_has_the_size_that_was_asked_for() {
    Line line;
    QCOMPARE(line.write("a.png", 777, 555), 0);
    const QImage picture(QString::fromStdString(line.folder.path("a.png")));
    QCOMPARE(picture.size(), QSize(777, 555));
    QCOMPARE(picture.pixelColor(2, 2), QColor(Qt::white));
}

void PictureTest::what_cannot_be_drawn_is_told() {
    Line line;
    QCOMPARE(line.write("a.bmp"), -1);
    QVERIFY(line.prompts.told(".bmp"));
    QCOMPARE(line.write("a.png", 0, 300), -1);
    QVERIFY(line.prompts.told("0 x 300"));
    QCOMPARE(line.write("a.png", 300, 100000), -1);
    QCOMPARE(line.write("no/folder/a.png"), -1);
    QCOMPARE(line.write("a.png", 400, 300, "sideways"), -1);
    QVERIFY(line.prompts.told("there is no view sideways"));
    drop_stations(line.workspace());
    QCOMPARE(line.write("a.png"), -1);
    QVERIFY(line.prompts.told("no line is loaded"));
    QVERIFY(!std::filesystem::exists(line.folder.path("a.png")));
}

void PictureTest::a_failure_leaves_the_old_file() {
    Line line;
    line.folder.write("a.png", "old");
    drop_stations(line.workspace());
    QCOMPARE(line.write("a.png"), -1);
    QCOMPARE(line.folder.read("a.png"), std::string("old"));
}

void PictureTest::every_view_is_drawn_in_every_format() {
    Line line;
    std::set<std::string> pictures;
    for (const show::PageView& view : show::page_views) {
        for (const char* ending : {".png", ".svg", ".pdf", ".emf"}) {
            const std::string name = std::string(view.name) + ending;
            QCOMPARE(line.write(name, 400, 300, std::string(view.name)), 0);
        }
        pictures.insert(line.folder.read(std::string(view.name) + ".png"));
    }
    QCOMPARE(pictures.size(), show::page_views.size());
    QVERIFY(line.prompts.messages.empty());
}

void PictureTest::a_name_is_a_text_in_an_svg_whatever_stands_in_it() {
    Line line;
    line.workspace().display.show_body_label = 1;
    line.workspace().body(1).name = "\"><script>&amp;\x1B[2J\x7F\xC2\x9B\x01 \xEF\xBF\xBF \xE2\x80\xAE\xFF";
    for (const show::PageView& view : show::page_views) {
        QCOMPARE(line.write("a.svg", 800, 600, std::string(view.name)), 0);
        const SvgTexts found = texts_of_svg(line.folder.read("a.svg"));
        QVERIFY2(found.error.isEmpty(), qPrintable(found.error));
        QVERIFY(!found.elements.contains("script"));
        for (const QString& text : found.texts)
            for (const QChar letter : text)
                QVERIFY2(letter.category() != QChar::Other_Control || letter == '\n', qPrintable(text));
        if (view.name == "section")
            QVERIFY2(found.texts.join('\n').contains("\"><script>&amp;"), qPrintable(found.texts.join('|')));
    }
}

void PictureTest::values_at_the_end_of_single_precision_give_a_sound_svg() {
    Line line;
    std::string text = "line east north sensor ground mag grav\n";
    for (int i = 0; i < 101; ++i) {
        const char* values = i % 3 == 0 ? "3.4e38 3.3e38" : "1 1";
        text += "1 " + std::to_string(500000 + 25 * i) + " 7000000 180 100 " + values + "\n";
    }
    line.folder.write("line.dat", text);
    line.load();
    line.workspace().body(1).susc.value = 3.4e38F;
    line.workspace().body(1).density.value = 3.4e38F;
    for (const show::PageView& view : show::page_views) {
        const int status = line.write("a.svg", 800, 600, std::string(view.name));
        QVERIFY2(status == 0, line.prompts.messages.empty() ? "" : line.prompts.messages.back().c_str());
        const std::string svg = line.folder.read("a.svg");
        const SvgTexts found = texts_of_svg(svg);
        QVERIFY2(found.error.isEmpty(), qPrintable(found.error));
        QVERIFY2(!has_no_number_word(svg), view.name.data());
    }
}

void PictureTest::a_figure_is_drawn_on_every_paper_in_every_format() {
    Line line;
    for (const show::PaperName& paper : show::paper_names())
        for (const char* ending : {".svg", ".pdf", ".emf"})
            QCOMPARE(write_figure(line.session, line.folder.path(std::string(paper.name) + ending),
                                  {show::sheet_size(paper.paper, true), "North"}),
                     0);
    QCOMPARE(
        write_figure(line.session, line.folder.path("a.png"), {show::sheet_size(show::Paper::letter, false)}),
        0);
    const QImage picture(QString::fromStdString(line.folder.path("a.png")));
    QCOMPARE(picture.size(), QSize(2550, 3300));
    const SvgTexts svg = texts_of_svg(line.folder.read("a4.svg"));
    QVERIFY2(svg.error.isEmpty(), qPrintable(svg.error));
    QVERIFY(svg.texts.contains("North") && svg.texts.contains("Formulas"));
    QVERIFY(line.prompts.messages.empty());
    QCOMPARE(write_figure(line.session, line.folder.path("a.pdf"), {{1000, 1000}}), -1);
    QVERIFY(line.prompts.told("the sheet is too small for a figure"));
}

void PictureTest::a_figure_of_many_bodies_has_more_pages_in_a_pdf_alone() {
    Line line;
    for (int i = 0; i < 30; ++i) line.add_body(100 + 70 * i, 40).length.value = 100;
    QCOMPARE(
        write_figure(line.session, line.folder.path("a.pdf"), {show::sheet_size(show::Paper::a4, false)}), 0);
    QCOMPARE(QByteArray::fromStdString(line.folder.read("a.pdf")).count("/Type /Page\n"), 2);
    QCOMPARE(
        write_figure(line.session, line.folder.path("a.svg"), {show::sheet_size(show::Paper::a4, false)}), 0);
    QVERIFY(texts_of_svg(line.folder.read("a.svg")).texts.filter(" more bodies, in a PDF").size() == 1);
}

QObject* make_picture_test() {
    return new PictureTest;
}

}  // namespace anomalis::window

#include "picture_test.moc"
