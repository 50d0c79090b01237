#include "workbench/qt/move_panel.h"

namespace anomalis {

MovePanel::MovePanel(Workbench&, FormGuards&) {
    setObjectName("Frame_move_body");
}

void MovePanel::fill() {}

}  // namespace anomalis
