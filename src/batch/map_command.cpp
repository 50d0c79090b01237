#include "batch/command.h"
#include "batch/commands.h"
#include "batch/picture_options.h"

namespace anomalis::batch {

namespace {

class MapCommand : public Command {
  public:
    explicit MapCommand(PictureWriter* pictures) : pictures_(pictures) {}
    std::string name() const override { return "map"; }
    std::string purpose() const override {
        return "Draw all lines of a survey file, coloured by the field, or the results of a survey";
    }
    void declare(OptionList& options) override;
    CommandFiles files() const override {
        return {.model = options_.survey.file, .writes = {{"--output", options_.picture.path}}};
    }
    bool run(BatchSession& batch) const override { return run_map(options_, batch, pictures_); }

  private:
    MapOptions options_;
    PictureWriter* pictures_;
};

void MapCommand::declare(OptionList& options) {
    MapRequest& picture = options_.picture;
    add_survey_options(options, options_.survey);
    add_picture_options(options, picture.path, picture.width, picture.height);
    options.text("--line", options_.line, "Line that is drawn on top");
}

}  // namespace

std::unique_ptr<Command> map_command(PictureWriter* pictures) {
    return std::make_unique<MapCommand>(pictures);
}

}  // namespace anomalis::batch
