#include <algorithm>
#include <array>

#include "batch/command.h"
#include "batch/commands.h"
#include "batch/picture_options.h"
#include "core/numbers.h"

namespace anomalis::batch {

namespace {

class MapCommand : public Command {
  public:
    explicit MapCommand(PictureWriter* pictures) : pictures_(pictures) {}
    std::string name() const override { return "map"; }
    std::string purpose() const override {
        return "Draw all lines of a survey file, coloured by the field, or the results of a survey";
    }
    std::vector<manual::Example> examples() const override {
        return {{"anomalis-batch map survey.csv -o map.png --line 5690",
                 "Draw all lines of a survey file, one of them on top"},
                {"anomalis-batch map results -o map.pdf", "Draw the results of a survey"}};
    }
    void declare(OptionList& options) override;
    CommandFiles files() const override {
        return {.model = options_.survey.file, .writes = {{"--output", options_.picture.path}}};
    }
    bool run(BatchSession& batch) const override { return run_map(options_, batch, pictures_); }

  private:
    std::string take_area(const std::string& text);

    MapOptions options_;
    PictureWriter* pictures_;
};

std::string MapCommand::take_area(const std::string& text) {
    std::array<double, 4> ends{};
    std::size_t begin = 0;
    for (std::size_t i = 0; i < ends.size(); ++i) {
        const std::size_t end = std::min(text.find(',', begin), text.size());
        const bool last = i + 1 == ends.size();
        if (begin > text.size() || last != (end == text.size()) ||
            !parse_number(text.substr(begin, end - begin), ends.at(i)))
            return "must be WEST,EAST,SOUTH,NORTH in m: " + text;
        begin = end + 1;
    }
    if (!(ends[0] < ends[1]) || !(ends[2] < ends[3])) return "must be WEST,EAST,SOUTH,NORTH, rising: " + text;
    options_.area = chart::Rect{ends[0], ends[1], ends[2], ends[3]};
    return {};
}

void MapCommand::declare(OptionList& options) {
    MapRequest& picture = options_.picture;
    add_survey_options(options, options_.survey);
    add_picture_options(options, picture.path, picture.width, picture.height);
    options.taken(
        "--area",
        {[this](const std::string& text) { return take_area(text); }, manual::word("WEST,EAST,SOUTH,NORTH")},
        "WEST,EAST,SOUTH,NORTH in m: what of the results is shown; otherwise all");
    options.text("--line", options_.line, manual::word("NAME"), "Line that is drawn on top");
}

}  // namespace

std::unique_ptr<Command> map_command(PictureWriter* pictures) {
    return std::make_unique<MapCommand>(pictures);
}

}  // namespace anomalis::batch
