#include <algorithm>
#include <filesystem>
#include <functional>

#include <QApplication>
#include <QDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>

#include "core/body_parameters.h"
#include "window/form_sample.h"
#include "window/form_tests.h"
#include "window/import/import_controller.h"
#include "window/panels/charts_panel.h"
#include "window/shell/look.h"
#include "window/shell/screenshot.h"
#include "window/survey/survey_controller.h"
#include "window/widgets/sketch_tip.h"

namespace anomalis::window {

namespace {

constexpr int settle = 700;  // ms for layout and formulas to come to rest

void keep(FormSample& sample, const QString& folder, const QString& name) {
    QTest::qWait(settle);
    sample.form->grab().save(folder + "/" + name + ".png");
}

/// The modal form that `open` shows, at its own size, on one of its tabs.
void keep_form(const QString& path, int tab, const std::function<void()>& open) {
    QTimer::singleShot(settle, qApp, [&] {
        auto* form = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!form) return;
        if (auto* tabs = form->findChild<QTabWidget*>()) tabs->setCurrentIndex(tab);
        form->grab().save(path);
        form->reject();
    });
    open();
}

/// A body in the hand, in the section or the plan: one of its handles dragged a little, with its note.
void keep_hand(FormSample& sample, chart::GrapherWidget& widget, std::size_t mark, const QString& folder,
               const QString& name) {
    const auto& marks = widget.chart().ShownTopMarks().marks;
    if (mark >= marks.size()) return;
    const chart::Point user = widget.chart().UserToSurface(marks[mark].at.user);
    const chart::Point at{user.x + marks[mark].at.shift.x, user.y + marks[mark].at.shift.y};
    const QPoint pixel(static_cast<int>(at.x / chart::units_per_screen_pixel),
                       static_cast<int>(widget.height() - at.y / chart::units_per_screen_pixel));
    const QPoint there = pixel + QPoint(24, 16);
    QTest::mousePress(&widget, Qt::LeftButton, {}, pixel);
    QMouseEvent moved(QEvent::MouseMove, there, widget.mapToGlobal(there), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(&widget, &moved);
    keep(sample, folder, name);
    QTest::keyClick(&widget, Qt::Key_Escape);
    QTest::mouseRelease(&widget, Qt::LeftButton, {}, there);
}

void keep_forms(const QString& folder) {
    FormSample sample;
    for (const int tab : {0, 1})
        keep_form(folder + "/transform_" + QString::number(tab) + ".png", tab,
                  [&] { sample.find<QPushButton>("Command_define_observed_transform").click(); });
    for (const char* form : {"find_file", "keyboard_shortcuts", "field_from_place", "preferences"})
        keep_form(folder + "/" + form + ".png", 0,
                  [&] { sample.find<QAction>((std::string("menu_") + form).c_str()).trigger(); });
}

/// Legend, scale of the bodies' colours, crosshair and measuring box.
void keep_looks(FormSample& sample, const QString& folder, const QString& name) {
    sample.find<QAction>("menu_display_legend").trigger();
    sample.find<QAction>("menu_colour_body_0").trigger();
    chart::GrapherWidget& curves = sample.form->charts().chart_widget(edit::chart_mag);
    QTest::mouseMove(&curves, curves.rect().center());
    keep(sample, folder, name + "_crosshair");
    chart::GrapherWidget& section = sample.form->charts().chart_widget(edit::chart_section);
    const QPoint from = section.rect().center(), to = from + QPoint(120, -40);
    QTest::mousePress(&section, Qt::LeftButton, Qt::ShiftModifier, from);
    QMouseEvent moved(QEvent::MouseMove, to, section.mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                      Qt::ShiftModifier);
    QApplication::sendEvent(&section, &moved);
    keep(sample, folder, name + "_measured");
    QTest::mouseRelease(&section, Qt::LeftButton, Qt::ShiftModifier, to);
    sample.find<QAction>("menu_display_legend").trigger();
    sample.find<QAction>("menu_undo").trigger();
}

/// What every parameter of every type is, on one page, light and dark, at three densities.
void keep_sketches(const QString& folder) {
    constexpr std::array types{thin_sheet, thick_sheet, pipe, wire, edge, sphere};
    const int across = sketch_size.width() + 8, down = sketch_size.height() + 8;
    for (const bool dark : {false, true})
        for (const double ratio : {1.0, 1.25, 2.0}) {
            const QPalette palette = look_palette(dark);
            QImage page(QSize(across * static_cast<int>(types.size()),
                              down * static_cast<int>(body_parameter_count)) *
                            ratio,
                        QImage::Format_ARGB32_Premultiplied);
            page.setDevicePixelRatio(ratio);
            page.fill(palette.color(QPalette::Window));
            QPainter painter(&page);
            Workspace workspace;
            workspace.azimuth = 1;
            for (std::size_t column = 0; column < types.size(); ++column)
                for (int row = 0; row < static_cast<int>(body_parameter_count); ++row) {
                    ModelBody body;
                    body.type = types[column];
                    body.strike.value = row % 2 == 0 ? 100 : 280;
                    workspace.formulas = ratio == 2 ? Formulas::exact : Formulas::classic;
                    painter.drawImage(
                        QPoint(static_cast<int>(column) * across, row * down),
                        sketch_picture(workspace, body, first_param_code + row, palette, ratio));
                }
            painter.end();
            page.save(QString("%1/sketches_%2_%3.png").arg(folder, dark ? "dark" : "light").arg(100 * ratio));
        }
}

/// The model with ghosts and fan in section and plan, and the pages of its uncertainty.
void keep_uncertainty(FormSample& sample, const QString& folder, const QString& name, const QString& suffix) {
    sample.find<QPushButton>("Command_toggle_invert_body").click();
    sample.find<QAction>("menu_uncertainty").trigger();
    QTest::qWait(settle);
    auto* run = sample.form->findChild<QDialog*>("Form_uncertainty");
    if (!run || !run->isVisible()) return;
    run->grab().save(folder + "/" + name + "_uncertainty_run.png");
    run->findChild<QPushButton*>("Command_start_uncertainty")->click();
    run->reject();
    keep(sample, folder, name + "_ghosts" + suffix);
    if (auto* page = sample.form->findChild<QDialog*>("Form_ensemble"))
        page->grab().save(folder + "/" + name + "_uncertainty" + suffix + ".png");
    sample.find<QPushButton>("Command_show_plan").click();
    keep(sample, folder, name + "_plan_ghosts" + suffix);
}

/// A search for bodies: as it begins, the models that it proposes, the best of them taken, and how sure
/// it is.
void keep_search(const QString& folder, const QString& path, QSize size) {
    const QString start = folder + "/" + QFileInfo(path).completeBaseName();
    const QString end = "_" + QString::number(size.width()) + ".png";
    FormSample sample;
    sample.prompts.on_yield = [] { QCoreApplication::processEvents(); };
    sample.form->resize(size);
    sample.form->open_example(path.toStdString());
    sample.find<QAction>("menu_find_bodies").trigger();
    QTest::qWait(settle);
    sample.form->grab().save(start + "_find" + end);
    sample.find<QPushButton>("Command_find").click();
    QTest::qWait(settle);
    sample.form->grab().save(start + "_found" + end);
    if (!sample.find<QPushButton>("Command_find_take").isEnabled()) return;
    sample.find<QPushButton>("Command_find_take").click();
    QTest::qWait(settle);
    sample.form->grab().save(start + "_taken" + end);
    keep_uncertainty(sample, folder, QFileInfo(path).completeBaseName() + "_taken", end.chopped(4));
}

/// A survey file on the page of the import, a role chosen there, the line that becomes a model, its map.
void keep_import(const QString& folder, const QString& path, QSize size) {
    const QString start = folder + "/" + QFileInfo(path).completeBaseName();
    const QString end = "_" + QString::number(size.width()) + ".png";
    const TempFolder left;
    FormSample sample;
    sample.prompts.on_yield = [] { QCoreApplication::processEvents(); };
    sample.form->resize(size);
    sample.form->open_file(path.toStdString());
    flow::ImportDesk& desk = sample.form->import().desk();
    auto* page = sample.form->findChild<QDialog*>("Form_import");
    if (size.width() > 1280) page->resize(1560, 900);
    desk.finish_reading();
    desk.choose_date("1990-07-01");
    desk.choose_folder(left.path(""));
    QTest::qWait(settle);
    page->grab().save(start + "_import" + end);
    auto* head = page->findChild<QTableWidget*>("Table_import_preview")->horizontalHeader();
    const int column = std::min(4, head->count() - 1);
    QTest::mouseClick(head->viewport(), Qt::LeftButton, {},
                      QPoint(head->sectionViewportPosition(column) + 10, head->height() / 2));
    QTest::qWait(settle);
    if (auto* menu = page->findChild<QMenu*>("Menu_import_column")) {
        menu->grab().save(start + "_import_role" + end);
        menu->close();
    }
    if (!desk.index() || !desk.line()) return;
    for (std::size_t i = 0; i < desk.index()->lines.size(); ++i)
        if (desk.index()->lines[i].name == "5690") desk.choose_line(i);
    QTest::qWait(settle);
    page->findChild<QWidget*>("vsgraph_survey")->parentWidget()->grab().save(start + "_map" + end);
    page->findChild<QPushButton*>("Command_import")->click();
    QTest::qWait(settle);
    sample.form->grab().save(start + "_imported" + end);
}

/// The results of a survey on their page, with flags, a filter, and light and dark.
void keep_results(const QString& folder, const QString& path, QSize size) {
    const QString start = folder + "/" + QFileInfo(path).completeBaseName() + "_survey";
    const QString end = "_" + QString::number(size.width()) + ".png";
    const QPalette before = QApplication::palette();
    for (const bool dark : {false, true}) {
        QApplication::setPalette(look_palette(dark));
        const TempFolder copy;  // its flags are none of the folder's
        std::filesystem::copy(path.toStdString(), copy.path("results"),
                              std::filesystem::copy_options::recursive);
        FormSample sample;
        sample.prompts.on_yield = [] { QCoreApplication::processEvents(); };
        sample.form->resize(size);
        sample.form->open_file(copy.path("results"));
        QTest::qWait(settle);
        survey::SurveyDesk& desk = sample.form->survey().desk();
        auto& list = sample.find<QWidget>("Table_survey_lines");
        for (const Qt::Key key : {Qt::Key_A, Qt::Key_Down, Qt::Key_L, Qt::Key_Down, Qt::Key_R, Qt::Key_Down})
            QTest::keyClick(&list, key);
        desk.set_note(desk.rows()[1].line, "Two sheets, or one that is wider?");
        QTest::keyClick(&list, Qt::Key_Up);
        QTest::keyClick(&list, Qt::Key_Up);
        QTest::qWait(settle);
        sample.form->grab().save(start + (dark ? "_dark" : "") + end);
    }
    QApplication::setPalette(before);
}

}  // namespace

void keep_pictures(const QString& folder, const QString& workspaces) {
    keep_forms(folder);
    keep_sketches(folder);
    const QStringList paths = workspaces.split(':', Qt::SkipEmptyParts);
    std::vector<flow::ExampleFile> examples;
    for (const QString& path : paths)
        if (path.endsWith(".axm"))
            examples.push_back({path.toStdString(), QFileInfo(path).completeBaseName().toStdString()});
    for (const QSize size : {QSize(1280, 800), QSize(1366, 728), QSize(1920, 1080)}) {
        const QString suffix = "_" + QString::number(size.width());
        FormSample start(examples);
        start.form->resize(size);
        keep(start, folder, "start_data" + suffix);
        start.choose_tab(1);
        keep(start, folder, "start_model" + suffix);
        for (const QString& path : paths) {
            if (QFileInfo(path).isDir()) {
                keep_results(folder, path, size);
                continue;
            }
            if (!path.endsWith(".axm")) {
                keep_import(folder, path, size);
                continue;
            }
            keep_search(folder, path, size);
            const QString name = QFileInfo(path).completeBaseName();
            FormSample sample;
            sample.form->resize(size);
            sample.form->open_example(path.toStdString());
            keep(sample, folder, name + "_model" + suffix);
            keep_looks(sample, folder, name + "_model" + suffix);
            take_screenshot(*sample.form, sample.form->workbench(), flow::ScreenshotKind::form)
                .save(folder + "/" + name + "_screenshot" + suffix + ".png");
            keep_form(folder + "/" + name + "_figure" + suffix + ".png", 0,
                      [&] { sample.find<QAction>("menu_print_figure").trigger(); });
            ChartsPanel& charts = sample.form->charts();
            charts.view().select_body(3);
            keep_hand(sample, charts.chart_widget(edit::chart_section), 0, folder, name + "_hand" + suffix);
            sample.find<QPushButton>("Command_show_plan").click();
            keep(sample, folder, name + "_plan" + suffix);
            keep_hand(sample, charts.plan_widget(), 3, folder, name + "_plan_hand" + suffix);
            sample.choose_tab(0);
            keep(sample, folder, name + "_data" + suffix);
            sample.choose_tab(1);
            sample.find<QPushButton>("Command_show_plan").click();
            sample.find<QPushButton>("Command_toggle_invert_body").click();
            sample.find<QPushButton>("Command_invert_1").click();
            keep(sample, folder, name + "_inversion" + suffix);
            sample.find<QAction>("menu_fit_results").trigger();
            QTest::qWait(settle);
            sample.form->findChild<QDialog*>("Form_fit")->grab().save(folder + "/" + name + "_fit.png");
            keep_uncertainty(sample, folder, name, suffix);
        }
    }
}

}  // namespace anomalis::window
