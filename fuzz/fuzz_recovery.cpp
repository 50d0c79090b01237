#include <array>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <string>
#include <string_view>

#include "core/paths.h"
#include "edit/change.h"
#include "edit/workbench.h"
#include "flow/kept_models.h"
#include "flow/program_folder.h"
#include "flow/recovery.h"
#include "fuzz_support.h"
#include "support/scripted_prompts.h"
#include "support/temp_folder.h"
#include "workspace_file/axm.h"

namespace {

using namespace anomalis;

/// What the person does with the model that is offered.
enum class Choice { take, discard, leave };
constexpr std::array choices{Choice::take, Choice::discard, Choice::leave};

/// A folder as a program that crashed leaves it, with this model in it.
std::string leave_folder(const TempFolder& folder, std::string_view model) {
    std::string file;
    {
        const flow::ProgramFolder crashed(folder.folder());
        file = crashed.model_file();
    }
    folder.write(std::filesystem::relative(file, folder.folder()).string(), model);
    return file;
}

void empty(const TempFolder& folder) {
    for (const auto& entry : std::filesystem::directory_iterator(folder.folder()))
        std::filesystem::remove_all(entry);
}

}  // namespace

/// Whatever a crash left, the next start offers it, does what it is told, and loses nothing that it was not
/// told to: the first byte is the choice, the rest the file that was kept.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TempFolder folder;
    ByteSource source(data, size);
    const Choice choice = choices.at(source.byte() % choices.size());
    const std::string_view model = source.rest();
    const std::string file = leave_folder(folder, model);

    ScriptedPrompts prompts;
    Session session(prompts, Settings{});
    initialise_workspace(session.workspace, prompts);
    edit::Workbench workbench(session);
    edit::start_history(workbench);
    const std::string before = workspace_file::model_parameters_text(0, session.workspace);
    flow::RecoveryKeeper keeper(folder.folder());
    {
        flow::KeptModels kept(folder.folder(), std::time(nullptr));
        require(kept.list().size() == 1);
        require(!flow::kept_model_words(kept.list()[0]).empty());
        const bool taken = choice == Choice::take && kept.take(0, workbench, keeper);
        if (taken) {
            require(workbench.unsaved && !file_exists(keeper.file()).empty() && file_exists(file).empty());
            require(session.workspace.body_count >= 0 &&
                    session.workspace.body_count <= session.workspace.body_capacity);
        } else {
            require(workspace_file::model_parameters_text(0, session.workspace) == before);
            // Why it was not brought back is told.
            require(choice != Choice::take || !prompts.messages.empty());
        }
        if (choice == Choice::discard) require(kept.discard(0, prompts));
        require(file_exists(file).empty() == (taken || choice == Choice::discard));
    }
    keeper.finish(workbench);
    empty(folder);
    return 0;
}
