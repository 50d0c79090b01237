#pragma once

#include <QString>

namespace anomalis::flow {
struct Exported;
}  // namespace anomalis::flow

namespace anomalis::window {

class StatusPanels;

/// Tells in the status bar of an export that is done: the text, the name of its file, and a way to its
/// folder. Without a path the text alone.
void tell_export(StatusPanels& status, const QString& text, const QString& path);
/// "Output complete"; nothing of an export that wrote no file.
void tell_export(StatusPanels& status, const flow::Exported& exported);

}  // namespace anomalis::window
