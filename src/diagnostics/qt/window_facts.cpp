#include "diagnostics/qt/window_facts.h"

#include <QApplication>
#include <QFont>
#include <QLibraryInfo>
#include <QScreen>
#include <QSysInfo>

namespace anomalis::diagnostics {

std::vector<std::string> window_component_lines() {
    QStringList lines{
        QStringLiteral("Qt: %1, built with %2").arg(qVersion(), QT_VERSION_STR),
        QStringLiteral("Qt plugins: %1").arg(QLibraryInfo::path(QLibraryInfo::PluginsPath)),
        QStringLiteral("Window system: %1, font %2")
            .arg(QGuiApplication::platformName(), QApplication::font().toString().section(',', 0, 1)),
        QStringLiteral("Operating system: %1").arg(QSysInfo::prettyProductName())};
    for (const QScreen* screen : QGuiApplication::screens())
        lines << QStringLiteral("Screen: %1 x %2 at %3 %")
                     .arg(screen->size().width())
                     .arg(screen->size().height())
                     .arg(qRound(100 * screen->devicePixelRatio()));
    std::vector<std::string> texts;
    for (const QString& line : lines) texts.push_back(line.toStdString());
    return texts;
}

}  // namespace anomalis::diagnostics
