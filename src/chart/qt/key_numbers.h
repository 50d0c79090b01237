#pragma once

class QKeyEvent;

namespace anomalis::chart {

/// The number of a key as a chart's host knows it: letters and digits as their capital characters, 112 to 123
/// for F1 to F12, 96 to 111 for the number pad and so on. 0 for a key without a number.
int key_number(const QKeyEvent& event);

/// The character that was typed, as far as one byte holds it; 0 for none.
int typed_character(const QKeyEvent& event);

}  // namespace anomalis::chart
