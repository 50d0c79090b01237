#pragma once

#include <QImage>

#include "flow/export_flow.h"

class QFrame;
class QWidget;

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::window {

/// A card that stands over the bars while a picture of the form is taken, and tells file and misfit. It is
/// hidden otherwise.
QFrame* make_misfit_frame(QWidget& form);

/// A picture of the window: the form with the misfit in place of its bars and buttons, or the charts, or the
/// plan while it is on show. What is shown or hidden is put back on every way out.
QImage take_screenshot(QWidget& form, const edit::Workbench& workbench, flow::ScreenshotKind kind);

/// Takes a picture, writes it as a bitmap beside the model file, if there is one, and puts it on the
/// clipboard. Returns the path written, "" for none. Raises FileFault.
std::string save_screenshot(QWidget& form, edit::Workbench& workbench, flow::ScreenshotKind kind);

}  // namespace anomalis::window
