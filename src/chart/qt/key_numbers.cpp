#include "chart/qt/key_numbers.h"

#include <algorithm>
#include <iterator>

#include <QKeyEvent>

namespace anomalis::chart {

namespace {

struct NumberedKey {
    int key;
    int number;
};

constexpr NumberedKey numbered_keys[]{
    {Qt::Key_Backspace, 8},
    {Qt::Key_Tab, 9},
    {Qt::Key_Backtab, 9},
    {Qt::Key_Clear, 12},
    {Qt::Key_Return, 13},
    {Qt::Key_Enter, 13},
    {Qt::Key_Shift, 16},
    {Qt::Key_Control, 17},
    {Qt::Key_Alt, 18},
    {Qt::Key_Pause, 19},
    {Qt::Key_CapsLock, 20},
    {Qt::Key_Escape, 27},
    {Qt::Key_Space, 32},
    {Qt::Key_PageUp, 33},
    {Qt::Key_PageDown, 34},
    {Qt::Key_End, 35},
    {Qt::Key_Home, 36},
    {Qt::Key_Left, 37},
    {Qt::Key_Up, 38},
    {Qt::Key_Right, 39},
    {Qt::Key_Down, 40},
    {Qt::Key_Print, 44},
    {Qt::Key_Insert, 45},
    {Qt::Key_Delete, 46},
    {Qt::Key_Help, 47},
    {Qt::Key_Meta, 91},
    {Qt::Key_Menu, 93},
    {Qt::Key_NumLock, 144},
    {Qt::Key_ScrollLock, 145},
    {Qt::Key_Semicolon, 186},
    {Qt::Key_Plus, 187},
    {Qt::Key_Equal, 187},
    {Qt::Key_Comma, 188},
    {Qt::Key_Minus, 189},
    {Qt::Key_Underscore, 189},
    {Qt::Key_Period, 190},
    {Qt::Key_Slash, 191},
    {Qt::Key_QuoteLeft, 192},
    {Qt::Key_BracketLeft, 219},
    {Qt::Key_Backslash, 220},
    {Qt::Key_BracketRight, 221},
    {Qt::Key_Apostrophe, 222},
};

int number_pad(int key) {
    if (key >= Qt::Key_0 && key <= Qt::Key_9) return 96 + (key - Qt::Key_0);
    switch (key) {
        case Qt::Key_Asterisk:
            return 106;
        case Qt::Key_Plus:
            return 107;
        case Qt::Key_Minus:
            return 109;
        case Qt::Key_Period:
        case Qt::Key_Comma:
            return 110;
        case Qt::Key_Slash:
            return 111;
        default:
            return 0;
    }
}

}  // namespace

int key_number(const QKeyEvent& event) {
    const int key = event.key();
    if (event.modifiers().testFlag(Qt::KeypadModifier))
        if (const int number = number_pad(key)) return number;
    if ((key >= Qt::Key_0 && key <= Qt::Key_9) || (key >= Qt::Key_A && key <= Qt::Key_Z)) return key;
    if (key >= Qt::Key_F1 && key <= Qt::Key_F16) return 112 + (key - Qt::Key_F1);
    const auto* const found = std::find_if(std::begin(numbered_keys), std::end(numbered_keys),
                                           [&](const NumberedKey& known) { return known.key == key; });
    return found == std::end(numbered_keys) ? 0 : found->number;
}

int typed_character(const QKeyEvent& event) {
    const QString text = event.text();
    return text.size() == 1 && text.front().unicode() < 256 ? text.front().unicode() : 0;
}

}  // namespace anomalis::chart
