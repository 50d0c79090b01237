#include "batch/command.h"
#include "batch/commands.h"
#include "batch/option_values.h"

namespace anomalis::batch {

namespace {

class FieldCommand : public Command {
  public:
    std::string name() const override { return "field"; }
    std::string purpose() const override {
        return "Tell the earth's main field at a place and date (IGRF-14, 1900 to 2030)";
    }
    std::vector<std::string> details() const override { return {"A year outside of 1900 to 2030 fails."}; }
    std::vector<manual::Example> examples() const override {
        return {
            {"anomalis-batch field --at -22.1,140.5,350 --date 1990-07-01",
             "Tell the field of a place on a day"},
            {"anomalis-batch field --at 51.5,0 --date 2025.5 --json", "The same as JSON, at a decimal year"}};
    }
    void declare(OptionList& options) override {
        options.taken("--at", take_place(options_.place),
                      "LAT,LON,HEIGHT_M: geodetic WGS 84 degrees, north and east positive, and m above the "
                      "ellipsoid; without a height 0",
                      OptionList::Need::must);
        options.taken("--date", take_date(options_.year), "A day such as 1990-07-01 or a decimal year",
                      OptionList::Need::must);
        options.flag("--json", options_.json, "Write a JSON object");
        options.taken("-o,--output", take_stream(options_.output, ".json"), stream_purpose);
    }
    CommandFiles files() const override { return {.model = {}, .writes = {{"--output", options_.output}}}; }
    bool run(BatchSession& batch) const override { return run_field(options_, batch); }

  private:
    FieldCommandOptions options_;
};

}  // namespace

std::unique_ptr<Command> field_command() {
    return std::make_unique<FieldCommand>();
}

}  // namespace anomalis::batch
