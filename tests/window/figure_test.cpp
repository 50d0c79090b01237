#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QPrinter>
#include <QPushButton>
#include <QSpinBox>

#include "core/paths.h"
#include "support/full_disk.h"
#include "window/file_dialog_answer.h"
#include "window/form_sample.h"
#include "window/form_tests.h"
#include "window/panels/chart_file_dialogs.h"
#include "window/panels/charts_panel.h"
#include "window/shell/form_figure.h"

namespace anomalis::window {

class FigureTest : public QObject {
    Q_OBJECT

  private slots:
    void pictures_of_charts_are_proposed_in_the_folder_of_the_last();
    void no_picture_shows_highlight_handles_or_bars();
    void the_figure_shows_what_it_will_write();
    void the_figure_is_written_and_told_of();
    void the_figure_is_printed_and_told_of();
    void a_full_disk_leaves_the_old_figure();
};

namespace {

bool has_colour(const QImage& picture, QColor colour) {
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (picture.pixelColor(x, y) == colour) return true;
    return false;
}

const QColor magenta(255, 0, 255);

/// A model on show with body 1 in hand.
struct OnShow : FormSample {
    OnShow() {
        form->open_file(write_workspace(folder));
        form->resize(1280, 800);
        form->load_locations();
        choose_tab(1);
        QTest::qWait(80);
    }
    QImage clipboard() { return QApplication::clipboard()->image(); }
    TempFolder folder;
};

}  // namespace

void FigureTest::pictures_of_charts_are_proposed_in_the_folder_of_the_last() {
    OnShow sample;
    const TempFolder pictures;
    auto& dialogs = dynamic_cast<ChartFileDialogs&>(sample.form->chart_dialogs());
    QCOMPARE(dialogs.proposed_path("section.pdf"), sample.folder.path("line_section.pdf"));
    FileDialogAnswer answer(QString::fromStdString(pictures.path("a.svg")));
    QVERIFY(dialogs.save_path(sample.form.get(), {"Picture", "All files (*)", "svg", "plan.svg"}));
    QCOMPARE(dialogs.proposed_path("section.pdf"), pictures.path("line_section.pdf"));
    QCOMPARE(sample.session.settings.get(settings_section, "PictureFolder"), pictures.folder());
    sample.session.settings.set(settings_section, "PictureFolder", "/no/such/folder");
    QCOMPARE(dialogs.proposed_path("section.pdf"), sample.folder.path("line_section.pdf"));
    dialogs.done(nullptr, "EMF Export complete", QString::fromStdString(pictures.path("a.emf")));
    QCOMPARE(sample.status(1), QString("EMF Export complete. a.emf"));
    QVERIFY(sample.prompts.messages.empty());
}

void FigureTest::no_picture_shows_highlight_handles_or_bars() {
    OnShow sample;
    auto& bar = sample.find<QWidget>("VScroll_zoom_4");
    for (const bool plan : {false, true}) {
        if (plan) sample.click("Command_show_plan");
        auto& widget = plan ? sample.form->charts().plan_widget()
                            : sample.form->charts().chart_widget(edit::chart_section);
        QVERIFY(has_colour(widget.grab().toImage(), magenta));
        for (const char* button : {"Command_Save_Screenshot_0", "Command_Save_Screenshot_1"}) {
            sample.click(button);
            QVERIFY2(!has_colour(sample.clipboard(), magenta), button);
        }
        widget.menu()->findChild<QAction*>("menu_copy_bmp")->trigger();
        QVERIFY(!has_colour(sample.clipboard(), magenta));
        QVERIFY2(has_colour(widget.grab().toImage(), magenta), "it is back on screen");
    }
    sample.click("Command_show_plan");
    sample.click("Command_Save_Screenshot_0");
    const QImage picture = sample.clipboard();
    const QRect place(bar.mapTo(&sample.find<QWidget>("Image_splitter"), QPoint(0, 0)), bar.size());
    const QImage room = picture.copy(place);
    for (int y = 0; y < room.height(); ++y)
        for (int x = 0; x < room.width(); ++x) QCOMPARE(room.pixel(x, y), room.pixel(0, 0));
    QVERIFY(bar.isVisible());
}

namespace {

/// Answers the questions of a figure by script.
struct FigureDialogs : chart::ChartDialogs {
    std::optional<QString> path;
    QString printer_file, proposal, told, file;
    std::optional<QString> save_path(QWidget*, const chart::SaveQuestion& question) override {
        proposal = question.proposal;
        return path;
    }
    void done(QWidget*, const QString& text, const QString& written) override {
        told = text;
        file = written;
    }
    bool choose_printer(QWidget*, QPrinter& printer) override {
        if (printer_file.isEmpty()) return false;
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(printer_file);
        return true;
    }
};

struct FigureForm : OnShow {
    explicit FigureForm(int bodies = 2) {
        Workspace& workspace = session.workspace;
        while (workspace.body_count < bodies) {
            reserve_next_body(workspace);
            workspace.body(workspace.body_count + 1) = workspace.body(1);
            ++workspace.body_count;
        }
        figure = std::make_unique<Form_figure>(
            nullptr, session, flow::shown_view(form->workbench(), form->charts().view().charts()), dialogs);
        figure->show();
        QTest::qWait(1);
    }
    void choose(const char* list, int index) { figure->findChild<QComboBox*>(list)->setCurrentIndex(index); }
    void press(const char* button) { figure->findChild<QPushButton*>(button)->click(); }
    QSize picture() { return figure->findChild<QLabel*>("Picture_figure")->pixmap().size(); }
    QString hint() { return figure->findChild<QLabel*>("Label_figure_sheets")->text(); }
    FigureDialogs dialogs;
    std::unique_ptr<Form_figure> figure;
};

}  // namespace

void FigureTest::the_figure_shows_what_it_will_write() {
    FigureForm sample(40);
    QVERIFY(sample.picture().width() > sample.picture().height());
    sample.choose("Combo_figure_orientation", 1);
    QVERIFY(sample.picture().width() < sample.picture().height());
    auto& sheet = *sample.figure->findChild<QSpinBox*>("Spin_figure_sheet");
    QVERIFY(sheet.maximum() >= 2);
    const QImage first = sample.figure->findChild<QLabel*>("Picture_figure")->pixmap().toImage();
    sheet.setValue(2);
    QVERIFY(sample.figure->findChild<QLabel*>("Picture_figure")->pixmap().toImage() != first);
    sample.choose("Combo_figure_format", 3);
    QCOMPARE(sheet.maximum(), 1);
    QVERIFY2(!has_colour(sample.figure->findChild<QLabel*>("Picture_figure")->pixmap().toImage(), magenta),
             "the highlight stays on screen");
    QVERIFY(sample.prompts.messages.empty());
}

void FigureTest::the_figure_is_written_and_told_of() {
    const char* heads[] = {"%PDF", "<?xml", "\1", "\x89PNG"};
    FigureForm sample;
    sample.dialogs.path = QString::fromStdString(sample.folder.path("figure"));
    sample.press("Command_export_figure");
    QVERIFY2(sample.prompts.told("A picture's name must end in"), "the ending chooses the format");
    for (int i = 0; i < 4; ++i) {
        sample.prompts.messages.clear();
        sample.figure->show();
        sample.choose("Combo_figure_format", i);
        sample.dialogs.path.reset();
        sample.press("Command_export_figure");
        QVERIFY2(sample.figure->isVisible(), "a cancel leaves the form");
        const std::string path = sample.folder.path(sample.dialogs.proposal.toStdString());
        sample.dialogs.path = QString::fromStdString(path);
        sample.press("Command_export_figure");
        QVERIFY(!sample.figure->isVisible());
        QCOMPARE(sample.dialogs.told, QString("Figure written"));
        QCOMPARE(sample.dialogs.file.toStdString(), path);
        QVERIFY(sample.folder.read(sample.dialogs.proposal.toStdString()).starts_with(heads[i]));
        QVERIFY(sample.prompts.messages.empty());
    }
    const QImage png(QString::fromStdString(sample.folder.path("figure.png")));
    QCOMPARE(png.size(), QSize(3510, 2482));
    QCOMPARE(png.dotsPerMeterX(), 11811);
    FigureForm next;
    QCOMPARE(next.figure->findChild<QComboBox*>("Combo_figure_format")->currentIndex(), 0);
    sample.figure = std::make_unique<Form_figure>(
        nullptr, sample.session,
        flow::shown_view(sample.form->workbench(), sample.form->charts().view().charts()), sample.dialogs);
    QCOMPARE(sample.figure->findChild<QComboBox*>("Combo_figure_format")->currentIndex(), 3);
}

void FigureTest::the_figure_is_printed_and_told_of() {
    FigureForm sample(40);
    sample.press("Command_print_figure");
    QVERIFY2(sample.figure->isVisible(), "no printer was chosen");
    sample.dialogs.printer_file = QString::fromStdString(sample.folder.path("print.pdf"));
    sample.press("Command_print_figure");
    QVERIFY(!sample.figure->isVisible());
    QCOMPARE(sample.dialogs.told, QString("Printing Finished"));
    QCOMPARE(sample.dialogs.file, sample.dialogs.printer_file);
    const QByteArray pdf = QByteArray::fromStdString(sample.folder.read("print.pdf"));
    QVERIFY(pdf.startsWith("%PDF"));
    QVERIFY2(pdf.count("/Type /Page\n") >= 2, "the table goes on");
    QVERIFY(sample.prompts.messages.empty());
}

void FigureTest::a_full_disk_leaves_the_old_figure() {
    FigureForm sample;
    for (const char* button : {"Command_export_figure", "Command_print_figure"}) {
        sample.prompts.messages.clear();
        const std::string path = sample.folder.write("figure.pdf", "old");
        const int files = sample.folder.entries();
        sample.dialogs.path = sample.dialogs.printer_file = QString::fromStdString(path);
        {
            const FullDisk disk(1000);
            sample.press(button);
        }
        QVERIFY2(sample.prompts.told("File too large (" + path + ")"), button);
        QCOMPARE(sample.folder.read("figure.pdf"), std::string("old"));
        QCOMPARE(sample.folder.entries(), files);
        QVERIFY(sample.figure->isVisible());
    }
}

QObject* make_figure_test() {
    return new FigureTest;
}

}  // namespace anomalis::window

#include "figure_test.moc"
