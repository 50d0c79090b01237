#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/failure.h"
#include "fuzz_support.h"
#include "support/survey_file.h"
#include "support/temp_folder.h"
#include "survey/plan/read_plan.h"

namespace {

using namespace anomalis;

/// A survey file and two workspaces, as plans name them.
struct PlanFolder : TempFolder {
    PlanFolder() {
        write("survey.csv", survey_file_text());
        write("a.axm", "");
        write("b.axm", "");
    }
};

}  // namespace

/// Any text is either a plan or refused with words: the first byte chooses its form, the rest is the file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const PlanFolder folder;
    constexpr std::array names{"plan.toml", "plan.json", "plan.csv"};
    ByteSource source(data, size);
    const char* name = names.at(source.byte() % names.size());
    const std::string path = folder.write(name, source.rest());
    try {
        const survey::SurveyPlan plan = survey::read_survey_plan(path);
        require(plan.path == path && plan.options && (plan.all_lines || !plan.lines.empty()));
        for (const survey::PlannedLine& line : plan.lines) require(!line.name.empty() && line.options);
    } catch (const Fault& fault) {
        require(*fault.what() != '\0');
    } catch (const FileFault& fault) {
        require(*fault.what() != '\0');
    }
    return 0;
}
