#include "batch/command.h"
#include "batch/commands.h"
#include "batch/picture_options.h"
#include "show/page_view.h"

namespace anomalis::batch {

namespace {

std::vector<std::string> view_names() {
    std::vector<std::string> names;
    for (const show::PageView& view : show::page_views) names.emplace_back(view.name);
    return names;
}

class RenderCommand : public Command {
  public:
    explicit RenderCommand(PictureWriter* pictures) : pictures_(pictures) {}
    std::string name() const override { return "render"; }
    std::string purpose() const override { return "Draw what the window shows"; }
    void declare(OptionList& options) override;
    CommandFiles files() const override {
        return {.model = options_.model, .writes = {{"--output", options_.picture.path}}};
    }
    bool run(BatchSession& batch) const override { return run_render(options_, batch, pictures_); }

  private:
    RenderOptions options_;
    PictureWriter* pictures_;
};

void RenderCommand::declare(OptionList& options) {
    PictureRequest& picture = options_.picture;
    options.file("MODEL", options_.model, model_file_purpose);
    add_picture_options(options, picture.path, picture.width, picture.height);
    options.choice("--view", picture.view, view_names(),
                   "section: the curves over the section; plan: the curves over the plan; curves: without "
                   "either; or one chart alone");
}

}  // namespace

std::unique_ptr<Command> render_command(PictureWriter* pictures) {
    return std::make_unique<RenderCommand>(pictures);
}

}  // namespace anomalis::batch
