#include <filesystem>
#include <set>

#include <QImage>
#include <QtTest>

#include "edit/line_sample.h"
#include "show/page_view.h"
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

QObject* make_picture_test() {
    return new PictureTest;
}

}  // namespace anomalis::window

#include "picture_test.moc"
