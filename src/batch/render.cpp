#include "batch/batch_session.h"
#include "batch/commands.h"

namespace anomalis::batch {

bool run_render(const RenderOptions& options, BatchSession& batch, PictureWriter* pictures) {
    if (!pictures) {
        batch.prompts.message("This build of the batch tool draws no pictures");
        return false;
    }
    return batch.open_ready(options.model) && pictures->write(batch.session, options.picture) == 0;
}

}  // namespace anomalis::batch
