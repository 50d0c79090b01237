#pragma once

#include <memory>
#include <string>
#include <vector>

#include "batch/command_files.h"
#include "batch/option_list.h"
#include "manual/sheet.h"

namespace anomalis::batch {

class BatchSession;
class PictureWriter;

/// One command of the batch tool: what can be said to it, the files it uses, its work.
class Command {
  public:
    virtual ~Command() = default;
    virtual std::string name() const = 0;
    virtual std::string purpose() const = 0;
    /// What there is to know besides, by paragraphs.
    virtual std::vector<std::string> details() const { return {}; }
    /// Command lines that do what people come for.
    virtual std::vector<manual::Example> examples() const = 0;
    /// The options write into the command itself.
    virtual void declare(OptionList& options) = 0;
    /// After the options were read, before anything is done.
    virtual CommandFiles files() const = 0;
    /// True when it did its work; what it could not do it has shown.
    virtual bool run(BatchSession& batch) const = 0;
};

inline constexpr const char* model_file_purpose = "Workspace file (.axm)";
inline manual::ValueForm workspace_form(const std::string& name) {
    return manual::file(name, {".axm"});
}

using Commands = std::vector<std::unique_ptr<Command>>;
/// All there are, in the order of the help. `pictures` may be null.
Commands all_commands(PictureWriter* pictures);

// Each stands in a file of its own, NAME_command.cpp.
std::unique_ptr<Command> info_command();
std::unique_ptr<Command> dump_command();
std::unique_ptr<Command> forward_command();
std::unique_ptr<Command> invert_command();
std::unique_ptr<Command> find_command();
std::unique_ptr<Command> follow_command();
std::unique_ptr<Command> uncertainty_command();
std::unique_ptr<Command> field_command();
std::unique_ptr<Command> export_command();
std::unique_ptr<Command> joined_command();
std::unique_ptr<Command> lines_command();
std::unique_ptr<Command> import_command();
std::unique_ptr<Command> new_command();
std::unique_ptr<Command> manual_command();
/// `pictures` may be null: it then fails with a message.
std::unique_ptr<Command> render_command(PictureWriter* pictures);
std::unique_ptr<Command> map_command(PictureWriter* pictures);
std::unique_ptr<Command> survey_command(PictureWriter* pictures);

}  // namespace anomalis::batch
