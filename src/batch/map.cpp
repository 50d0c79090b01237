#include "batch/batch_session.h"
#include "batch/commands.h"
#include "core/failure.h"

namespace anomalis::batch {

bool run_map(const MapOptions& options, BatchSession& batch, PictureWriter* pictures) {
    if (!pictures) {
        batch.prompts.message("This build of the batch tool draws no pictures");
        return false;
    }
    int drawn = -1;
    const int read = report_failure(batch.prompts, "The map cannot be drawn: ", [&] {
        const intake::SurveyIndex index = survey_index(options.survey);
        tell_survey(index, batch);
        MapRequest picture = options.picture;
        if (!options.line.empty()) picture.line = line_of_name(index, options.line);
        drawn = pictures->write_map(batch.prompts, index, picture);
    });
    return read == 0 && drawn == 0;
}

}  // namespace anomalis::batch
