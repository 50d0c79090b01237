#include "chart/qt/installed_fonts.h"

#include <QFontDatabase>

namespace anomalis::chart {

std::string missing_fonts() {
    if (!QFontDatabase::families().isEmpty()) return {};
    return "This system has no fonts: all texts are drawn as empty boxes. Install some, for example the "
           "package fonts-dejavu-core, and start the program again";
}

}  // namespace anomalis::chart
