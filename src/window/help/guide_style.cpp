#include "window/help/guide_style.h"

#include "window/shell/look.h"

namespace anomalis::window {

namespace {

// %1 text, %2 quiet text, %3 links, %4 lines, %5 the ground of heads and of what is keyed.
constexpr const char* style = R"(
body { color: %1; line-height: 130%; }
h1 { font-size: 20pt; font-weight: 600; margin-top: 0px; margin-bottom: 12px; }
h2 { font-size: 15pt; font-weight: 600; margin-top: 24px; margin-bottom: 8px; }
h3 { font-size: 12pt; font-weight: 600; margin-top: 18px; margin-bottom: 6px; }
h4 { font-size: 10pt; font-weight: 600; margin-top: 14px; margin-bottom: 6px; }
p { margin-top: 0px; margin-bottom: 10px; }
ul, ol, dl { margin-top: 0px; margin-bottom: 10px; }
li p, td p, th p { margin-top: 0px; margin-bottom: 3px; }
dd { margin-left: 24px; }
a { color: %3; text-decoration: none; }
code { background-color: %5; }
pre { background-color: %5; margin-top: 0px; margin-bottom: 12px; line-height: 120%; }
table { border-collapse: collapse; border-style: solid; border-width: 1px; border-color: %4;
        margin-top: 4px; margin-bottom: 14px; }
td, th { padding: 4px; padding-left: 8px; padding-right: 8px; border-style: solid; border-width: 1px;
         border-color: %4; text-align: left; vertical-align: top; }
th { background-color: %5; font-weight: 600; }
td.text-right, th.text-right { text-align: right; }
.caption-text, figcaption p { color: %2; }
.admonition-title { font-weight: 600; }
blockquote { margin-left: 24px; }
)";

}  // namespace

QString guide_style(const QPalette& palette) {
    const auto name = [&](QPalette::ColorRole role) { return palette.color(role).name(); };
    return QString(style).arg(name(QPalette::Text), quiet_text(palette).name(), name(QPalette::Link),
                              name(QPalette::Mid), name(QPalette::AlternateBase));
}

QString guide_notice(const QString& title, const QString& words) {
    return QString(
               "<html><head><title>%1</title><link rel=\"stylesheet\" href=\"guide.css\"></head>"
               "<body><h1>%1</h1><p>%2</p></body></html>")
        .arg(title.toHtmlEscaped(), words.toHtmlEscaped().replace('\n', "<br>"));
}

}  // namespace anomalis::window
