#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "core/failure.h"
#include "fuzz_support.h"
#include "support/example_results.h"
#include "survey/desk/survey_desk.h"

namespace {

using namespace anomalis;
using namespace anomalis::survey;

constexpr std::array names{"survey.json", "lines/L1000/result.json", "lines/L1010/result.json", "flags.csv"};

struct ResultsFolder : TempFolder {
    ResultsFolder() {
        write_example_results(*this, example_results(4));
        write("flags.csv", "line,flag,note\nL1000,accept,good\nL1020,look again,\n");
        for (std::size_t i = 0; i < names.size(); ++i) whole.at(i) = read(names.at(i));
    }
    std::array<std::string, names.size()> whole;
};

/// The desk as a person uses it; what is wrong with the flags is told and changes nothing.
void work_at(SurveyDesk& desk) {
    desk.refresh();
    for (const DeskColumn column : {DeskColumn::line, DeskColumn::rms, DeskColumn::depth, DeskColumn::flag}) {
        desk.sort(column, column == DeskColumn::rms);
        require(desk.rows().size() <= desk.watch().lines().size());
    }
    desk.filter({.text = "1", .depth_to = 100.0});
    desk.filter({});
    if (desk.rows().empty()) return;
    try {
        desk.set_flag(desk.watch().lines().front().line, LineFlag::reject);
        require(desk.can_undo());
        desk.undo();
    } catch (const std::exception& failure) {
        require(!desk.trouble().empty() || *failure.what() != '\0');
    }
}

}  // namespace

/// Whatever a folder of results holds, it is read or refused with words, and the desk goes on: the first byte
/// chooses the file, the rest is what stands in it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const ResultsFolder folder;
    ByteSource source(data, size);
    const std::size_t chosen = source.byte() % names.size();
    folder.write(names.at(chosen), source.rest());
    try {
        SurveyDesk desk;
        desk.open(folder.folder());
        work_at(desk);
    } catch (const Fault& fault) {
        require(*fault.what() != '\0');
    } catch (const FileFault& fault) {
        require(*fault.what() != '\0');
    }
    for (std::size_t i = 0; i < names.size(); ++i) folder.write(names.at(i), folder.whole.at(i));
    return 0;
}
