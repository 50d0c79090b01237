#include "workbench/qt/invert_panel.h"

namespace anomalis {

InvertPanel::InvertPanel(Workbench&, FormGuards&) {
    setObjectName("Frame_invert");
}

}  // namespace anomalis
