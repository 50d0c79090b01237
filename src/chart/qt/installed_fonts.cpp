#include "chart/qt/installed_fonts.h"

#include <QFontDatabase>

namespace anomalis::chart {

std::string missing_fonts() {
    // These names stand for others and are listed even where there is none.
    static const QStringList stand_ins{"Monospace", "Sans Serif", "Serif"};
    for (const QString& family : QFontDatabase::families())
        if (!stand_ins.contains(family)) return {};
    return "This system has no fonts: all texts are drawn as empty boxes. Install some, for example the "
           "package fonts-dejavu-core, and start the program again";
}

}  // namespace anomalis::chart
