#include "batch/command.h"
#include "batch/commands.h"

namespace anomalis::batch {

namespace {

class MapCommand : public Command {
  public:
    explicit MapCommand(PictureWriter* pictures) : pictures_(pictures) {}
    std::string name() const override { return "map"; }
    std::string purpose() const override { return "Draw all lines of a survey file, coloured by the field"; }
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
    options.output("-o,--output", picture.path, "Picture: .png, .svg, .pdf or .emf; - writes a .png",
                   OptionList::Need::must, ".png");
    options.at_end("--output", [&picture] {
        return picture.path == "-" ? std::string() : picture_ending_refusal(picture.path);
    });
    options.taken(
        "--size",
        [&picture](const std::string& text) -> std::string {
            if (parse_picture_size(text, picture.width, picture.height)) return {};
            return picture_size_refusal + text;
        },
        "Pixels, such as 1600x1000 [1600x1000]");
    options.text("--line", options_.line, "Line that is drawn on top");
}

}  // namespace

std::unique_ptr<Command> map_command(PictureWriter* pictures) {
    return std::make_unique<MapCommand>(pictures);
}

}  // namespace anomalis::batch
