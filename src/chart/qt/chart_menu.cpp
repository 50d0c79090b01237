#include "chart/qt/chart_menu.h"

#include <functional>
#include <memory>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QMimeData>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QRegularExpression>

#include "chart/qt/chart_dialogs.h"
#include "chart/qt/chart_printing.h"
#include "chart/qt/grapher_widget.h"
#include "chart/qt/picture.h"
#include "core/safe_file.h"

namespace anomalis::chart {

namespace {

QAction* add(QMenu* menu, const QString& name, const QString& caption, std::function<void()> action) {
    QAction* entry = menu->addAction(caption);
    entry->setObjectName(name);
    QObject::connect(entry, &QAction::triggered, menu, [action = std::move(action)] { action(); });
    return entry;
}

QMenu* add_menu(QMenu* menu, const QString& name, const QString& caption) {
    QMenu* sub = menu->addMenu(caption);
    sub->setObjectName(name);
    sub->menuAction()->setObjectName(name);
    return sub;
}

/// Shows what went wrong instead of letting it out of an event handler.
void attempt(GrapherWidget& widget, const QString& prefix, const std::function<void()>& work) {
    try {
        work();
    } catch (const std::exception& failure) {
        widget.dialogs().message(&widget, prefix + failure.what());
    }
}

/// While it lives the chart shows nothing that is for the screen alone.
class PlainChart {
  public:
    explicit PlainChart(GrapherWidget& widget) : widget_(widget) { widget_.tell_picture(true); }
    ~PlainChart() { widget_.tell_picture(false); }
    PlainChart(const PlainChart&) = delete;
    PlainChart& operator=(const PlainChart&) = delete;

  private:
    GrapherWidget& widget_;
};

QByteArray qt_bytes(const std::string& bytes) {
    return {bytes.data(), static_cast<qsizetype>(bytes.size())};
}

void copy_bitmap(GrapherWidget& widget) {
    attempt(widget, "An error occurred while copying the chart: ", [&] {
        const PlainChart plain(widget);
        const std::string png = chart_bytes(PictureFormat::png, widget.chart(), widget.devicePixelRatioF());
        QApplication::clipboard()->setImage(QImage::fromData(qt_bytes(png), "PNG"));
    });
}

void copy_vector(GrapherWidget& widget) {
    attempt(widget, "An error occurred while copying the chart: ", [&] {
        const PlainChart plain(widget);
        auto data = std::make_unique<QMimeData>();
        data->setData("image/svg+xml", qt_bytes(chart_bytes(PictureFormat::svg, widget.chart())));
        data->setData("application/pdf", qt_bytes(chart_bytes(PictureFormat::pdf, widget.chart())));
        data->setData("image/x-emf", qt_bytes(chart_bytes(PictureFormat::emf, widget.chart())));
        QApplication::clipboard()->setMimeData(data.release());
    });
}

/// A name for a file, from the chart's title: "residual_magnetic_field".
QString file_title(GrapherWidget& widget) {
    QString name = QString::fromStdString(widget.chart().Title()).toLower().simplified();
    name.replace(QRegularExpression("[^\\p{L}\\p{N}]+"), "_");
    return name.isEmpty() ? QString("chart") : name;
}

void save_as(GrapherWidget& widget, PictureFormat format, const QString& upper, const QString& extension) {
    const auto path =
        widget.dialogs().save_path(&widget, {"Enter name of " + upper + " export file",
                                             upper + " files (*." + extension + ");;All files (*)", extension,
                                             file_title(widget) + "." + extension});
    if (!path) return;
    attempt(widget, "An error occurred while performing the " + upper + " Export: ", [&] {
        const std::string file = path->toStdString();
        std::string bytes;
        {
            const PlainChart plain(widget);
            bytes = chart_bytes(format, widget.chart(), widget.devicePixelRatioF());
        }
        const int other_names = write_file_safely(file, bytes);
        widget.dialogs().done(&widget, upper + " Export complete", *path);
        if (const std::string remark = hard_link_remark(file, other_names); !remark.empty())
            widget.dialogs().message(&widget, QString::fromStdString(remark));
    });
}

void print(GrapherWidget& widget) {
    attempt(widget, "An error occurred while printing the chart: ", [&] {
        QPrinter printer(QPrinter::HighResolution);
        printer.setPageOrientation(widget.dialogs().ask(&widget, "Print in Landscape Mode?")
                                       ? QPageLayout::Landscape
                                       : QPageLayout::Portrait);
        if (!widget.dialogs().choose_printer(&widget, printer)) return;
        print_safely(
            printer,
            [&](QPagedPaintDevice& paper) {
                const PlainChart plain(widget);
                paint_chart(widget.chart(), paper);
            },
            [](const std::string& path, std::string_view bytes) { write_file_safely(path, bytes); });
        widget.dialogs().done(&widget, "Printing Finished", printer.outputFileName());
    });
}

void preview(GrapherWidget& widget) {
    attempt(widget, "An error occurred while printing the chart: ", [&] {
        QPrinter printer(QPrinter::HighResolution);
        printer.setPageOrientation(QPageLayout::Landscape);
        QPrintPreviewDialog dialog(&printer, &widget);
        dialog.setObjectName("Dialog_print_preview");
        QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested, &widget, [&](QPrinter* target) {
            attempt(widget, "An error occurred while printing the chart: ", [&] {
                const PlainChart plain(widget);
                paint_chart(widget.chart(), *target);
            });
        });
        dialog.exec();
    });
}

void add_zoom_locks(QMenu* menu, GrapherWidget& widget) {
    QMenu* locks = add_menu(menu, "menu_zoom_options", "Zoom Options");
    const char* captions[] = {"Lock X Zoom", "Lock Y Zoom"};
    for (int axis = 0; axis < 2; ++axis) {
        QAction* lock = locks->addAction(captions[axis]);
        lock->setObjectName(QString("menu_lock_zoom_%1").arg(axis));
        lock->setCheckable(true);
        QObject::connect(lock, &QAction::toggled, menu,
                         [&widget, axis](bool locked) { widget.chart().ZoomLock(axis, locked); });
    }
    // The chart's own lock is the truth; a host may have changed it.
    QObject::connect(locks, &QMenu::aboutToShow, menu, [locks, &widget] {
        for (int axis = 0; axis < 2; ++axis)
            locks->actions()[axis]->setChecked(widget.chart().ZoomLock(axis));
    });
}

}  // namespace

QMenu* make_chart_menu(GrapherWidget& widget) {
    auto* menu = new QMenu(&widget);
    menu->setObjectName("mnuPopUp");
    add_zoom_locks(menu, widget);
    // As a double click does it, so that linked charts hear of it.
    add(menu, "menu_reset_zoom", "Reset zoom", [&widget] { widget.chart().HandleDoubleClick(1); });
    QAction* crosshair = menu->addAction("Crosshair");
    crosshair->setObjectName("menu_crosshair");
    crosshair->setCheckable(true);
    QObject::connect(crosshair, &QAction::toggled, menu,
                     [&widget](bool on) { widget.chart().Crosshair(on); });
    QObject::connect(menu, &QMenu::aboutToShow, menu,
                     [crosshair, &widget] { crosshair->setChecked(widget.chart().Crosshair()); });
    menu->addSeparator();

    QMenu* copy = add_menu(menu, "menu_copy_toclipboard", "&Copy to Clipboard");
    add(copy, "menu_copy_bmp", "Bitmap", [&widget] { copy_bitmap(widget); });
    add(copy, "menu_copy_EMF", "Vector drawing (SVG, PDF, EMF)", [&widget] { copy_vector(widget); });
    QMenu* save = add_menu(menu, "menu_save", "Save to");
    add(save, "mnuEMF", "EMF...", [&widget] { save_as(widget, PictureFormat::emf, "EMF", "emf"); });
    add(save, "menu_save_pdf", "PDF...", [&widget] { save_as(widget, PictureFormat::pdf, "PDF", "pdf"); });
    add(save, "menu_save_svg", "SVG...", [&widget] { save_as(widget, PictureFormat::svg, "SVG", "svg"); });
    add(save, "menu_save_png", "PNG...", [&widget] { save_as(widget, PictureFormat::png, "PNG", "png"); });
    menu->addSeparator();
    add(menu, "menu_print_preview", "Print Preview", [&widget] { preview(widget); });
    add(menu, "mnuPrint", "&Print", [&widget] { print(widget); });
    return menu;
}

}  // namespace anomalis::chart
