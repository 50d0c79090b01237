// A fit is known again from the workspace file that it was saved with.
#include <gtest/gtest.h>

#include "edit/line_sample.h"
#include "flow/open_flow.h"
#include "model/refresh_model.h"
#include "support/fit_records.h"
#include "workspace_file/axm.h"

namespace anomalis::flow {

TEST(FittedFile, a_model_is_as_fitted_after_it_was_opened_and_loaded_again) {
    edit::LineSample flow;
    flow.add_body(1260, 60);
    Workspace& w = flow.workspace();
    const std::string path = flow.folder.path("line.axm");
    flow.add_body(400, 20, pipe).length.value = 123.456789F;
    flow.add_body(700, 20, sphere).width.value = 1.0F / 3;
    w.mag.float_base = 1;
    w.mag.regional_degree = 1;
    w.first_distance = 250;
    w.last_distance = 2000;
    w.formulas = Formulas::exact;
    flow.load();
    w.body(1).top.value = 144.29876F;
    model::refresh_model(flow.session);
    w.fit = sample_fit(w);
    workspace_file::write_model_parameters(0, path, w, flow.prompts);

    edit::LineSample later;
    ASSERT_EQ(open_model_file(later.workbench, ReadMode::everything, path), OpenOutcome::opened);
    ASSERT_TRUE(later.workspace().fit);
    EXPECT_TRUE(as_fitted(later.workspace()));
    later.load();
    EXPECT_TRUE(as_fitted(later.workspace()));
    model::refresh_model(later.session);
    EXPECT_TRUE(as_fitted(later.workspace()));
    later.workspace().last_distance -= 25;
    EXPECT_FALSE(as_fitted(later.workspace()));
}

}  // namespace anomalis::flow
