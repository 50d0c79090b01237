#include "app/window_arguments.h"

#include <QCommandLineParser>
#include <QFile>

#include "core/shown_text.h"
#include "core/version.h"
#include "manual/workbench_sheet.h"

namespace anomalis {

namespace {

constexpr int done = 0, wrong_usage = 2;

/// What Qt takes out of a command line itself, and what it needs to stand there.
void add_options_of_qt(QCommandLineParser& parser) {
    for (const char* name : {"platform", "platformpluginpath", "platformtheme", "plugin", "qwindowgeometry",
                             "geometry", "qwindowicon", "icon", "qwindowtitle", "title", "session", "display",
                             "style", "stylesheet", "fn", "font"})
        parser.addOption(QCommandLineOption(QString::fromLatin1(name), {}, QStringLiteral("value")));
    for (const char* name : {"reverse", "nograb", "dograb", "sync", "widgetcount"})
        parser.addOption(QCommandLineOption(QString::fromLatin1(name)));
}

/// "h" and "help" of one option.
QStringList names_of(const manual::Option& option) {
    QStringList names;
    if (!option.short_name.empty()) names << QString::fromStdString(option.short_name.substr(1));
    return names << QString::fromStdString(option.long_name.substr(2));
}

}  // namespace

WindowArguments read_window_arguments(int argc, char** argv) {
    const manual::Sheet sheet = manual::workbench_sheet();
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    for (const manual::Option& option : sheet.options) parser.addOption(QCommandLineOption(names_of(option)));
    add_options_of_qt(parser);
    QStringList words;
    for (int i = 0; i < argc; ++i) words << QFile::decodeName(argv[i]);

    const auto refusal = [](const std::string& why) {
        return WindowArguments{
            wrong_usage, shown_lines(why) + "\nanomalis --help tells what there is.\n", {}};
    };
    if (!parser.parse(words)) return refusal(parser.errorText().toStdString());
    if (parser.isSet(QStringLiteral("help"))) return {done, manual::help_text(sheet), {}};
    if (parser.isSet(QStringLiteral("version")))
        return {done, sheet.name + " " + std::string(application_version()) + "\n", {}};
    const QStringList files = parser.positionalArguments();
    if (files.size() > 1)
        return refusal("One file is opened at a time, and here are " + std::to_string(files.size()));
    return {-1, {}, files.value(0)};
}

}  // namespace anomalis
