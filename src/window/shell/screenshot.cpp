#include "window/shell/screenshot.h"

#include <QApplication>
#include <QBuffer>
#include <QClipboard>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "core/failure.h"
#include "core/numbers.h"
#include "core/paths.h"
#include "core/told_write.h"
#include "edit/workbench.h"
#include "flow/kept_files.h"
#include "model/refresh_model.h"
#include "window/shell/look.h"
#include "window/widgets/plain_text.h"

namespace anomalis::window {

namespace {

constexpr double twips_a_pixel = 15;
constexpr int note_gap = static_cast<int>(15 / twips_a_pixel);

/// Hides and shows widgets for a picture and puts each back as it was, also when the picture fails.
class ArrangedWidgets {
  public:
    ArrangedWidgets() = default;
    ~ArrangedWidgets() {
        for (const Kept& kept : kept_) {
            kept.widget->setVisible(!kept.hidden);
            kept.widget->setSizePolicy(kept.policy);
        }
    }
    ArrangedWidgets(const ArrangedWidgets&) = delete;
    ArrangedWidgets& operator=(const ArrangedWidgets&) = delete;

    void set_visible(QWidget* widget, bool visible) {
        if (!widget) return;
        kept_.push_back({widget, widget->isHidden(), widget->sizePolicy()});
        // Its room stays, so that nothing else moves.
        QSizePolicy policy = widget->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        widget->setSizePolicy(policy);
        widget->setVisible(visible);
    }

  private:
    struct Kept {
        QWidget* widget;
        bool hidden;
        QSizePolicy policy;
    };
    std::vector<Kept> kept_;
};

/// Where the right column's bars or inversion controls begin, and how wide their column is.
struct NotePlace {
    QPoint top_left;
    int width = 0;
};

NotePlace place_of_note(const QWidget& form) {
    for (const char* name : {"Frame_move_body", "Frame_invert"}) {
        const auto* frame = form.findChild<QWidget*>(name);
        if (frame && frame->isVisible())
            return {frame->mapTo(&form, QPoint(0, note_gap)), frame->parentWidget()->width()};
    }
    return {};
}

void fill_note(QFrame& note, const edit::Workbench& workbench) {
    const Workspace& workspace = workbench.session.workspace;
    note.findChild<QLabel*>("Label_model_name")->setText(shown(file_name(workspace.model_file)));
    QString misfit;
    if (edit::line_loaded(workspace) && workspace.body_count > 0) {
        const auto [data, gradient] = model::refresh_model(workbench.session);
        misfit = QString::fromStdString(format_number(data, "0.00") + " " + format_number(gradient, "0.00"));
    }
    note.findChild<QLineEdit*>("Text_model_misfit")->setText(misfit);
}

void arrange_form(QWidget& form, const edit::Workbench& workbench, ArrangedWidgets& arranged) {
    auto* note = form.findChild<QFrame*>("Frame_model_misfit");
    const NotePlace place = place_of_note(form);
    if (note && place.width > 0) {
        fill_note(*note, workbench);
        note->setGeometry(QRect(place.top_left, QSize(place.width, note->sizeHint().height())));
        note->raise();
        arranged.set_visible(note, true);
    }
    for (const char* name : {"Frame_move_body", "Frame_invert", "Frame_buttons"})
        arranged.set_visible(form.findChild<QWidget*>(name), false);
}

QImage grab_named(QWidget& form, const char* name) {
    auto* widget = form.findChild<QWidget*>(name);
    if (!widget) throw Fault(FaultKind::invalid_call);
    return widget->grab().toImage();
}

std::string bitmap_bytes(const QImage& picture) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (!picture.convertToFormat(QImage::Format_RGB32).save(&buffer, "BMP"))
        throw Fault(FaultKind::out_of_memory);
    return buffer.data().toStdString();
}

}  // namespace

QFrame* make_misfit_frame(QWidget& form) {
    auto* frame = new QFrame(&form);
    frame->setObjectName("Frame_model_misfit");
    frame->setProperty("card", true);
    auto* column = new QVBoxLayout(frame);
    auto* name = new QLabel;
    name->setObjectName("Label_model_name");
    name->setTextFormat(Qt::PlainText);
    name->setProperty("heading", true);
    auto* caption = new QLabel(QObject::tr("Misfit of data and gradient"));
    make_quiet(*caption);
    auto* misfit = new QLineEdit;
    misfit->setObjectName("Text_model_misfit");
    misfit->setAccessibleName(caption->text());
    misfit->setToolTip(QObject::tr("Misfit of the data and of the gradient, in data units, 0 or more"));
    misfit->setReadOnly(true);
    misfit->setFocusPolicy(Qt::NoFocus);
    column->addWidget(name);
    column->addWidget(caption);
    column->addWidget(misfit);
    frame->hide();
    return frame;
}

QImage take_screenshot(QWidget& form, const edit::Workbench& workbench, flow::ScreenshotKind kind) {
    if (kind != flow::ScreenshotKind::form)
        return grab_named(form, workbench.view.show_plan ? "Frame_plan" : "Image_splitter");
    ArrangedWidgets arranged;
    arrange_form(form, workbench, arranged);
    return form.grab().toImage();
}

std::string save_screenshot(QWidget& form, edit::Workbench& workbench, flow::ScreenshotKind kind) {
    const QImage picture = take_screenshot(form, workbench, kind);
    const Workspace& workspace = workbench.session.workspace;
    std::string path = flow::screenshot_path(workspace, kind, workbench.view.show_plan);
    if (flow::refused_over_open_file("The picture", path, workspace, workbench.session.prompts)) path.clear();
    if (!path.empty()) {
        write_file_telling(workbench.session.prompts, path, bitmap_bytes(picture));
        workbench.session.log.log_message(1, path);
    }
    QApplication::clipboard()->clear();
    QApplication::clipboard()->setImage(picture);
    return path;
}

}  // namespace anomalis::window
