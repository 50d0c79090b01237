#include "workbench/qt/form_bodies.h"

#include "workbench/qt/charts_panel.h"
#include "workbench/qt/form_anomalis.h"
#include "workbench/qt/model_side.h"

namespace anomalis {

FormBodies::FormBodies(Form_anomalis& form) : QObject(&form), form_(form) {
    ModelSide& side = form_.side();
    connect(&side, &ModelSide::edited, &form_, &Form_anomalis::model_edited);
    connect(&side, &ModelSide::body_selected, this, [this] { form_.charts().view().display_model(); });
    connect(&form_.charts(), &ChartsPanel::body_selected, &side, &ModelSide::display_body_parameters);
}

}  // namespace anomalis
