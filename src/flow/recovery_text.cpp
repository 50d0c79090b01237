#include "flow/recovery_text.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "core/numbers.h"
#include "core/paths.h"
#include "core/text.h"
#include "edit/model_state.h"
#include "edit/workbench.h"
#include "workspace_file/axm.h"

namespace anomalis::flow {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view line_end = "\r\n";
constexpr std::string_view origin_marker = "[Recovered from]\r\n";

/// The next start may stand in another folder.
std::string from_root(const std::string& path) {
    std::error_code error;
    const fs::path whole = fs::absolute(path, error);
    return path.empty() || error ? path : whole.string();
}

std::string name_of_line(const Workspace& workspace) {
    const LineSource& source = workspace.source;
    if (!source.line.empty())
        return "line " + source.line + (source.file.empty() ? "" : " of " + source.file);
    return file_name(workspace.definition.data_file);
}

/// Takes the next line off a text.
std::string_view take_line(std::string_view& text) {
    const std::string_view line = text.substr(0, text.find(line_end));
    text.remove_prefix(std::min(line.size() + line_end.size(), text.size()));
    return line;
}

}  // namespace

std::string recovery_text(const edit::Workbench& workbench) {
    const Workspace& workspace = workbench.session.workspace;
    Workspace copy = edit::copy_of_model(workspace);
    if (!file_exists(copy.definition.data_file).empty())
        copy.definition.data_file = from_root(copy.definition.data_file);
    const std::string& origin = workspace.model_file;
    const FileStamp* const stamp = origin.empty() ? nullptr : workbench.known_files.find(origin);
    std::string text = workspace_file::model_parameters_text(0, copy) + std::string(origin_marker);
    for (const std::string& line :
         {from_root(origin), stamp && stamp->digest ? stamp_text(*stamp) : std::string(),
          name_of_line(workspace), format_number(std::int32_t{workspace.body_count}, "0")})
        text += line + std::string(line_end);
    return text;
}

RecoveryOrigin recovery_origin(std::string_view text) {
    const auto at = text.rfind(origin_marker);
    if (at == std::string_view::npos) return {};
    text.remove_prefix(at + origin_marker.size());
    RecoveryOrigin origin;
    origin.file = take_line(text);
    origin.stamp = stamp_of_text(take_line(text));
    origin.name = take_line(text);
    const std::string_view bodies = take_line(text);
    if (is_numeric(bodies)) origin.bodies = static_cast<int>(prefix_number(bodies));
    return origin;
}

}  // namespace anomalis::flow
