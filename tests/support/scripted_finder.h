#pragma once

#include <functional>
#include <string>

#include "core/body_parameters.h"
#include "core/workspace.h"
#include "inversion/find/find_bodies.h"

namespace anomalis {

/// A search by script: it proposes three models, grows a body at a time and hears a stop between them.
struct ScriptedFinder {
    static constexpr int alternatives = 3;
    static constexpr int strongest = 1;                          // of the sheets, counted from 0
    static constexpr float first_distance = 600, spacing = 400;  // m

    inversion::FindRequest request;  ///< of the last search
    int searches = 0;
    int grown = 0;                     ///< bodies of the last search before it ended
    int bodies = alternatives;         ///< that it finds when nobody stops it
    std::string fault;                 ///< told at the end
    std::function<void(int)> on_turn;  ///< what happens beside the search; told how many bodies there are

    static ModelBody sheet(int number) {
        ModelBody body;
        body.type = thick_sheet;
        body.distance.value = first_distance + spacing * static_cast<float>(number);
        body.top.value = 60;
        body.strike.value = 0;
        body.dip.value = 75;
        body.width.value = 60;
        body.susc.value = number == strongest ? 18000 : 9000;
        body.density.value = 0.3F;
        return body;
    }

    /// So many sheets beside the bodies that stand there.
    static inversion::FoundModel model(const Workspace& workspace, int sheets) {
        inversion::FoundModel model;
        for (int i = 1; i <= workspace.body_count; ++i) model.bodies.push_back(workspace.body(i));
        for (int i = 0; i < sheets; ++i) model.bodies.push_back(sheet(i));
        model.found = sheets;
        model.rms = 10.0 / sheets;
        model.criterion = 500.0 - sheets;
        model.kind = std::to_string(sheets) + (sheets == 1 ? " thick sheet" : " thick sheets");
        model.mag_degree = sheets - 1;
        model.record.outcome = model.kind;
        model.record.parameters = {{workspace.body_count + 1, param_distance, first_distance, 3,
                                    first_distance - 5, first_distance + 5}};
        return model;
    }

    inversion::FindResult operator()(const Workspace& workspace, const inversion::FindRequest& asked,
                                     inversion::FindObserver& observer) {
        request = asked;
        ++searches;
        grown = 0;
        inversion::FindResult result;
        observer.stage(inversion::FindStage::search);
        while (grown < bodies && !result.stopped) {
            observer.grew(model(workspace, ++grown));
            if (on_turn) on_turn(grown);
            result.stopped = observer.working(1);
        }
        for (int sheets = grown; sheets >= 1; --sheets) result.models.push_back(model(workspace, sheets));
        result.label = result.models.empty() ? "Nothing stands out of the noise"
                                             : "Found " + model(workspace, grown).kind;
        if (result.stopped) result.remarks.push_back("The search was stopped");
        if (!fault.empty()) result.faults.add(fault);
        return result;
    }
};

}  // namespace anomalis
