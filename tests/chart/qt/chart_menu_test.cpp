#include "chart/qt/chart_menu.h"

#include <filesystem>
#include <gtest/gtest.h>

#include <QAction>
#include <QClipboard>
#include <QFileInfo>
#include <QMenu>
#include <QMimeData>
#include <QPrinter>

#include "chart/qt/picture.h"
#include "support/full_disk.h"
#include "support/temp_folder.h"
#include "widget_rig.h"

namespace anomalis::chart {

bool ScriptedDialogs::choose_printer(QWidget*, QPrinter& printer) {
    if (printer_file.isEmpty()) return false;
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(printer_file);
    return true;
}

namespace {

QAction* entry(WidgetRig& rig, const char* name) {
    return rig.widget.menu()->findChild<QAction*>(name);
}

TEST(ChartMenu, holds_its_entries_under_their_names) {
    WidgetRig rig;
    EXPECT_EQ(rig.widget.menu()->objectName(), "mnuPopUp");
    for (const char* name : {"menu_zoom_options", "menu_lock_zoom_0", "menu_lock_zoom_1",
                             "menu_copy_toclipboard", "menu_copy_bmp", "menu_copy_EMF", "menu_save", "mnuEMF",
                             "menu_save_pdf", "menu_print_preview", "mnuPrint"})
        EXPECT_NE(entry(rig, name), nullptr) << name;
}

TEST(ChartMenu, a_locked_axis_does_not_zoom) {
    WidgetRig rig;
    entry(rig, "menu_lock_zoom_0")->trigger();
    EXPECT_TRUE(rig.widget.chart().ZoomLock(0));
    rig.wheel(rig.pixel(2000, 200), {0, 120});
    EXPECT_EQ(rig.widget.chart().CurrentZoom().zoom_x, 1.0);
    EXPECT_NEAR(rig.widget.chart().CurrentZoom().zoom_y, 1.1, 1e-6);
}

TEST(ChartMenu, a_reset_of_the_zoom_is_told_to_linked_charts) {
    WidgetRig rig;
    rig.wheel(rig.pixel(2000, 200), {0, 240});
    const int before = rig.events.seen["ViewChanged"];
    entry(rig, "menu_reset_zoom")->trigger();
    EXPECT_EQ(rig.widget.chart().CurrentZoom(), ZoomValues{});
    EXPECT_EQ(rig.events.seen["ViewChanged"], before + 1);
}

TEST(ChartMenu, the_crosshair_entry_follows_the_chart) {
    WidgetRig rig;
    QAction* crosshair = entry(rig, "menu_crosshair");
    crosshair->trigger();
    EXPECT_TRUE(rig.widget.chart().Crosshair());
    rig.widget.chart().Crosshair(false);
    rig.widget.menu()->popup(QPoint(0, 0));
    EXPECT_FALSE(crosshair->isChecked());
    rig.widget.menu()->close();
}

TEST(ChartMenu, a_missing_ending_is_appended) {
    EXPECT_EQ(ChartDialogs::with_extension("/a/line", "emf"), "/a/line.emf");
    EXPECT_EQ(ChartDialogs::with_extension("/a/line 1.5", "emf"), "/a/line 1.5.emf");
    EXPECT_EQ(ChartDialogs::with_extension("/a/LINE.EMF", "emf"), "/a/LINE.EMF");
}

TEST(ChartMenu, copies_a_bitmap_of_the_chart) {
    WidgetRig rig;
    entry(rig, "menu_copy_bmp")->trigger();
    const QImage copied = QApplication::clipboard()->image();
    ASSERT_EQ(copied.size(), QSize(900, 300));
    EXPECT_EQ(copied.pixel(rig.pixel(1250, -100)), qRgb(0x1F, 0x76, 0xB4));
}

TEST(ChartMenu, copies_three_vector_forms_at_once) {
    WidgetRig rig;
    entry(rig, "menu_copy_EMF")->trigger();
    const QMimeData* data = QApplication::clipboard()->mimeData();
    EXPECT_TRUE(data->data("image/svg+xml").contains("<svg"));
    EXPECT_TRUE(data->data("application/pdf").startsWith("%PDF"));
    EXPECT_EQ(data->data("image/x-emf").mid(40, 4), " EMF");
}

TEST(ChartMenu, saves_under_the_chosen_name_and_says_so) {
    const TempFolder folder;
    for (const auto& [name, file] : {std::pair{"mnuEMF", "a.emf"},
                                     {"menu_save_pdf", "a.pdf"},
                                     {"menu_save_svg", "a.svg"},
                                     {"menu_save_png", "a.png"}}) {
        WidgetRig rig;
        rig.dialogs.path = QString::fromStdString(folder.path(file));
        entry(rig, name)->trigger();
        EXPECT_GT(QFileInfo(*rig.dialogs.path).size(), 1000) << file;
        ASSERT_EQ(rig.dialogs.messages.size(), 1);
        EXPECT_TRUE(rig.dialogs.messages[0].endsWith("Export complete"));
        EXPECT_EQ(rig.dialogs.files, QStringList{*rig.dialogs.path});
    }
}

TEST(ChartMenu, proposes_a_name_after_the_title) {
    WidgetRig rig;
    rig.widget.chart().Title("Residual: Magnetic Field (nT)");
    entry(rig, "menu_save_svg")->trigger();
    EXPECT_EQ(rig.dialogs.proposal, "residual_magnetic_field_nt_.svg");
    rig.widget.chart().Title("");
    entry(rig, "mnuEMF")->trigger();
    EXPECT_EQ(rig.dialogs.proposal, "chart.emf");
}

TEST(ChartMenu, the_host_takes_its_marks_off_for_every_picture) {
    const TempFolder folder;
    WidgetRig rig;
    rig.dialogs.path = QString::fromStdString(folder.path("a.png"));
    rig.dialogs.printer_file = QString::fromStdString(folder.path("page.pdf"));
    std::vector<bool> told;
    rig.widget.set_picture_taking([&](bool begins) { told.push_back(begins); });
    for (const char* name : {"menu_copy_bmp", "menu_copy_EMF", "menu_save_png", "mnuPrint"}) {
        told.clear();
        entry(rig, name)->trigger();
        EXPECT_EQ(told, (std::vector<bool>{true, false})) << name;
    }
}

TEST(ChartMenu, a_print_into_a_file_on_a_full_disk_is_told_and_leaves_the_old_file) {
    const TempFolder folder;
    WidgetRig rig;
    folder.write("page.pdf", "the old page");
    rig.dialogs.printer_file = QString::fromStdString(folder.path("page.pdf"));
    {
        const FullDisk disk(1000);
        entry(rig, "mnuPrint")->trigger();
    }
    ASSERT_EQ(rig.dialogs.messages.size(), 2);
    EXPECT_TRUE(rig.dialogs.messages[1].startsWith("An error occurred while printing the chart: "));
    EXPECT_TRUE(rig.dialogs.messages[1].contains("File too large")) << rig.dialogs.messages[1].toStdString();
    EXPECT_EQ(folder.read("page.pdf"), "the old page");
    EXPECT_EQ(folder.entries(), 1) << "no half file stands beside it";
}

TEST(ChartMenu, the_window_that_a_chart_stands_in_answers_for_it) {
    struct Host : QWidget, ChartDialogsHost {
        ScriptedDialogs dialogs;
        ChartDialogs& chart_dialogs() override { return dialogs; }
    } host;
    auto* form = new QWidget(&host);
    auto* chart = new GrapherWidget(form);
    EXPECT_EQ(&chart->dialogs(), &host.dialogs);
    ScriptedDialogs own;
    chart->set_dialogs(&own);
    EXPECT_EQ(&chart->dialogs(), &own);
}

TEST(ChartMenu, a_cancelled_dialog_leaves_no_file_and_no_word) {
    WidgetRig rig;
    entry(rig, "mnuEMF")->trigger();
    EXPECT_TRUE(rig.dialogs.messages.isEmpty());
}

TEST(ChartMenu, a_save_that_fails_says_why_and_leaves_nothing) {
    const TempFolder folder;
    folder.write("file", "in the way");
    WidgetRig rig;
    rig.dialogs.path = QString::fromStdString(folder.path("file/chart.emf"));
    entry(rig, "mnuEMF")->trigger();
    ASSERT_EQ(rig.dialogs.messages.size(), 1);
    EXPECT_TRUE(rig.dialogs.messages[0].startsWith("An error occurred while performing the EMF Export: "));
    EXPECT_FALSE(QFileInfo::exists(*rig.dialogs.path));
}

TEST(ChartMenu, a_full_disk_is_told_and_leaves_the_old_picture) {
    const TempFolder folder;
    for (const auto& [name, file] : {std::pair{"mnuEMF", "a.emf"},
                                     {"menu_save_pdf", "a.pdf"},
                                     {"menu_save_svg", "a.svg"},
                                     {"menu_save_png", "a.png"}}) {
        WidgetRig rig;
        folder.write(file, "the old picture");
        rig.dialogs.path = QString::fromStdString(folder.path(file));
        {
            const FullDisk disk(1000);
            entry(rig, name)->trigger();
        }
        ASSERT_EQ(rig.dialogs.messages.size(), 1) << file;
        EXPECT_TRUE(rig.dialogs.messages[0].startsWith("An error occurred while performing the "));
        EXPECT_TRUE(rig.dialogs.messages[0].contains("File too large"))
            << rig.dialogs.messages[0].toStdString();
        EXPECT_EQ(folder.read(file), "the old picture");
    }
    EXPECT_EQ(folder.entries(), 4) << "no half file stands beside them";
}

TEST(ChartMenu, another_name_of_the_picture_that_it_replaces_is_told) {
    const TempFolder folder;
    WidgetRig rig;
    folder.write("a.svg", "the old picture");
    std::filesystem::create_hard_link(folder.path("a.svg"), folder.path("b.svg"));
    rig.dialogs.path = QString::fromStdString(folder.path("a.svg"));
    entry(rig, "menu_save_svg")->trigger();
    ASSERT_EQ(rig.dialogs.messages.size(), 2);
    EXPECT_TRUE(rig.dialogs.messages[1].startsWith("a.svg had another name (hard links)."));
    EXPECT_EQ(folder.read("b.svg"), "the old picture");
}

TEST(ChartMenu, prints_a_page_and_leaves_the_screen_alone) {
    const TempFolder folder;
    WidgetRig rig;
    rig.dialogs.printer_file = QString::fromStdString(folder.path("page.pdf"));
    rig.dialogs.yes = true;
    const QImage before = rig.widget.grab().toImage();
    entry(rig, "mnuPrint")->trigger();
    EXPECT_EQ(rig.dialogs.messages, QStringList({"Print in Landscape Mode?", "Printing Finished"}));
    EXPECT_GT(QFileInfo(rig.dialogs.printer_file).size(), 1000);
    EXPECT_EQ(rig.widget.grab().toImage(), before);
}

TEST(PaintSheets, go_to_a_printer_page_by_page_in_their_own_size) {
    const TempFolder folder;
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(QString::fromStdString(folder.path("sheets.pdf")));
    printer.setPageLayout(
        QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Landscape, QMarginsF(20, 10, 0, 0)));
    // A4 in surface units, lying.
    const SurfaceSize size{16837.8, 11905.5};
    std::vector<SurfaceMapping> mappings;
    const DrawPage page = [&](DrawingDevice&, OutputTarget kind, const SurfaceMapping& mapping) {
        EXPECT_EQ(kind, OutputTarget::printer);
        mappings.push_back(mapping);
    };
    paint_sheets(printer, size, std::vector<DrawPage>{page, page, page});
    ASSERT_EQ(mappings.size(), 3U);
    const double dots = printer.resolution() / units_per_inch;
    EXPECT_NEAR(mappings[0].device_scale, dots, 0.001 * dots) << "as large as it says";
    // The corner of the sheet is the corner of the paper, beyond the margins of the printer.
    const QRectF inside = printer.pageLayout().paintRect(QPageLayout::Inch);
    EXPECT_NEAR(mappings[0].to_device({0, 0}).x, -inside.left() * printer.resolution(),
                0.02 * printer.resolution());
    EXPECT_NEAR(mappings[0].to_device({0, size.height}).y, -inside.top() * printer.resolution(),
                0.02 * printer.resolution());
    EXPECT_EQ(QByteArray::fromStdString(folder.read("sheets.pdf")).count("/Type /Page\n"), 3);
}

TEST(ChartMenu, a_refused_printer_prints_nothing) {
    WidgetRig rig;
    entry(rig, "mnuPrint")->trigger();
    EXPECT_EQ(rig.dialogs.messages, QStringList({"Print in Landscape Mode?"}));
}

}  // namespace
}  // namespace anomalis::chart
