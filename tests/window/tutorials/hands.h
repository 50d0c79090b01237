#pragma once

#include <QString>

#include "window/form_sample.h"
#include "window/tutorials/lesson.h"

// What a person does with mouse and keys. Each raises std::runtime_error that says what was looked for.
namespace anomalis::tutorials {

/// An entry of the menu that is open, a button, a tab, a row or, with commas, an entry of the menu bar.
void press(window::FormSample& sample, const QString& name);
/// The head of a column of a table.
void click_head(window::FormSample& sample, const QString& name);
/// A key by its name, "Ctrl+Z".
void press_key(window::FormSample& sample, const QString& name);
/// Text over what a box holds, or a value of the grid; Enter at its end.
void key_in(window::FormSample& sample, const QString& caption, const QString& text);
/// An entry of a list.
void choose(window::FormSample& sample, const QString& caption, const QString& entry);
/// A box that is ticked or not; "Depth, Vary" is one of the grid.
void set_tick(window::FormSample& sample, const QString& caption, bool on);
/// One of the two halves of a bar that moves the body.
void step_bar(window::FormSample& sample, const Order& order);
/// A body in section or plan.
void click_body(window::FormSample& sample, const QString& name, bool plan);
/// Makes a body the current one, as its bar does.
void choose_body(window::FormSample& sample, const QString& name);
/// The body as a whole, with the mouse: "40 m" along the line, "10 m down".
void drag_body(window::FormSample& sample, const QString& name, const QString& way);

}  // namespace anomalis::tutorials
