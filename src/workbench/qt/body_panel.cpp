#include "workbench/qt/body_panel.h"

namespace anomalis {

BodyPanel::BodyPanel(Workbench&, FormGuards&) {
    setObjectName("Frame_body");
}

void BodyPanel::fill() {}

}  // namespace anomalis
