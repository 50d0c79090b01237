#include "window/shell/look.h"

#include <array>

#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QProxyStyle>
#include <QStyleOption>
#include <QWidget>

namespace anomalis::window {

namespace {

constexpr int middle_grey = 128;

struct Shades {
    const char *window, *base, *alternate, *text, *quiet, *button, *accent, *on_accent, *line, *soft_line;
};

constexpr Shades light_shades{"#f3f5f7", "#ffffff", "#f6f8fa", "#1c2630", "#55606b",
                              "#f7f9fa", "#1f66b0", "#ffffff", "#b4bec8", "#d9dfe5"};
constexpr Shades dark_shades{"#1f242a", "#171b20", "#1c2127", "#e3e8ed", "#a3adb8",
                             "#2a3038", "#5aa2e6", "#0d1116", "#6b7783", "#343c45"};

QPalette palette_of(const Shades& shades) {
    QPalette palette;
    const auto set = [&](QPalette::ColorRole role, const char* colour) {
        palette.setColor(role, QColor(colour));
    };
    set(QPalette::Window, shades.window);
    set(QPalette::WindowText, shades.text);
    set(QPalette::Base, shades.base);
    set(QPalette::AlternateBase, shades.alternate);
    set(QPalette::Text, shades.text);
    set(QPalette::Button, shades.button);
    set(QPalette::ButtonText, shades.text);
    set(QPalette::BrightText, shades.on_accent);
    set(QPalette::Highlight, shades.accent);
    set(QPalette::HighlightedText, shades.on_accent);
    set(QPalette::Link, shades.accent);
    set(QPalette::PlaceholderText, shades.quiet);
    set(QPalette::ToolTipBase, shades.base);
    set(QPalette::ToolTipText, shades.text);
    set(QPalette::Mid, shades.line);
    set(QPalette::Midlight, shades.soft_line);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(shades.quiet));
    return palette;
}

/// Cards, headings, the marks of a refused text and of the one button that matters on a page.
const char* const style_rules = R"(
    QFrame[card="true"] { background: palette(base); border: 1px solid palette(midlight); border-radius: 5px; }
    QLabel[heading="true"] { font-weight: 600; }
    QLineEdit[refused="true"] { border: 1px solid #c0392b; border-radius: 2px; padding: 1px 2px; }
    QPushButton[chief="true"] { background: palette(highlight); color: palette(highlighted-text);
        border: 1px solid palette(highlight); border-radius: 3px; padding: 4px 16px; font-weight: 600; }
    QPushButton[chief="true"]:focus { border: 1px solid palette(text); }
    QPushButton[chief="true"]:pressed { background: palette(text); color: palette(base); }
    QPushButton[chief="true"]:disabled { background: palette(midlight); color: palette(text);
        border-color: palette(midlight); }
    QPushButton[tab="true"] { background: transparent; color: palette(text); border: none;
        border-bottom: 2px solid palette(midlight); padding: 5px 4px 4px 4px; }
    QPushButton[tab="true"]:checked { border-bottom-color: palette(highlight); font-weight: 600; }
    QPushButton[tab="true"]:hover:!checked { border-bottom-color: palette(mid); }
    QPushButton[tab="true"]:focus { background: palette(midlight); }
    QPushButton[link="true"] { background: transparent; color: palette(link); border: none; padding: 0px 4px;
        text-decoration: underline; }
    QPushButton[link="true"]:focus { background: palette(midlight); }
    QToolTip { padding: 3px; }
    QStatusBar::item { border: none; }
)";

/// Fusion derives the outline of boxes from the ground by darkening it, which leaves nothing to see on a dark
/// one.
class VisibleOutlines : public QProxyStyle {
  public:
    VisibleOutlines() : QProxyStyle("Fusion") {}

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        if (is_dark(option->palette) && has_outline(element, *option)) draw_outline(*option, *painter);
    }

  private:
    static bool has_outline(PrimitiveElement element, const QStyleOption& option) {
        if (element == PE_IndicatorCheckBox) return true;
        const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(&option);
        return element == PE_PanelLineEdit && frame && frame->lineWidth > 0 &&
               !(option.state & State_HasFocus);
    }

    static void draw_outline(const QStyleOption& option, QPainter& painter) {
        constexpr double radius = 2, half_line = 0.5;
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(option.palette.color(QPalette::Mid));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(option.rect).adjusted(half_line, half_line, -half_line, -half_line),
                                radius, radius);
        painter.restore();
    }
};

}  // namespace

bool is_dark(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() < middle_grey;
}

QPalette look_palette(bool dark) {
    return palette_of(dark ? dark_shades : light_shades);
}

void apply_look(QApplication& application) {
    const bool dark = is_dark(QApplication::palette());
    QApplication::setStyle(new VisibleOutlines);
    QApplication::setPalette(look_palette(dark));
    application.setStyleSheet(style_rules);
}

QColor shown_colour(std::int32_t colour) {
    constexpr int byte_mask = 0xFF;
    return {colour & byte_mask, colour >> 8 & byte_mask, colour >> 16 & byte_mask};
}

QColor quiet_text(const QPalette& palette) {
    return palette.color(QPalette::PlaceholderText);
}

QColor column_tint(const QPalette& palette, int quantity) {
    static const std::array<const char*, 6> on_light{"#d3e9ff", "#fee4bc", "#e1f6e6",
                                                     "#eee0c8", "#f4d3e1", "#cfc8e2"};
    static const std::array<const char*, 6> on_dark{"#1f507c", "#6a4213", "#1f5238",
                                                    "#4e411f", "#632640", "#433163"};
    return QColor((is_dark(palette) ? on_dark : on_light).at(static_cast<std::size_t>(quantity)));
}

void make_quiet(QWidget& label) {
    QPalette palette = label.palette();
    palette.setColor(QPalette::WindowText, quiet_text(palette));
    label.setPalette(palette);
}

}  // namespace anomalis::window
