#include "batch/command.h"
#include "batch/commands.h"
#include "batch/picture_options.h"
#include "show/figure_page.h"
#include "show/page_view.h"

namespace anomalis::batch {

namespace {

std::vector<std::string> view_names() {
    std::vector<std::string> names;
    for (const show::PageView& view : show::page_views) names.emplace_back(view.name);
    names.emplace_back(page_view);
    return names;
}

std::vector<std::string> paper_choices() {
    std::vector<std::string> names;
    for (const show::PaperName& paper : show::paper_names()) names.emplace_back(paper.name);
    return names;
}

class RenderCommand : public Command {
  public:
    explicit RenderCommand(PictureWriter* pictures) : pictures_(pictures) {}
    std::string name() const override { return "render"; }
    std::string purpose() const override { return "Draw what the window shows"; }
    std::vector<manual::Example> examples() const override {
        return {{"anomalis-batch render line_1030.axm -o section.png --size 1600x1000",
                 "Draw curves and section"},
                {"anomalis-batch render line_1030.axm -o figure.pdf --view page --paper a4 --landscape",
                 "Lay the whole model out on a sheet of paper"}};
    }
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
    options.file(workspace_form("MODEL"), options_.model, model_file_purpose);
    add_picture_options(options, picture.path, picture.width, picture.height);
    options.choice("--view", picture.view, view_names(),
                   "section: the curves over the section; plan: the curves over the plan; curves: without "
                   "either; one chart alone; page: the whole model on a sheet of paper, with the table of "
                   "bodies");
    options.choice("--paper", picture.paper, paper_choices(), "Sheet of the page");
    options.flag("--landscape", picture.landscape, "The page lies on its long side");
    options.text("--title", picture.title, manual::word("TEXT"), "Title of the page [the name of the model]");
    options.at_end("--view", [&picture]() -> std::string {
        const PictureRequest usual;
        const bool page = picture.view == page_view;
        if (!page && (picture.paper != usual.paper || picture.landscape || !picture.title.empty()))
            return "--paper, --landscape and --title are for the view page";
        if (page && (picture.width != usual.width || picture.height != usual.height))
            return "a page has the size of its --paper, not --size";
        return {};
    });
}

}  // namespace

std::unique_ptr<Command> render_command(PictureWriter* pictures) {
    return std::make_unique<RenderCommand>(pictures);
}

}  // namespace anomalis::batch
