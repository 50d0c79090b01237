#include "workspace_file/source_lines.h"

#include <array>
#include <cstdint>
#include <optional>

#include "core/numbers.h"
#include "core/prompts.h"
#include "core/text.h"
#include "core/workspace.h"

namespace anomalis::workspace_file {

namespace {

struct TextEntry {
    std::string LineSource::*text;
    std::string_view name;
};
constexpr std::array text_entries{
    TextEntry{&LineSource::file, "source_file"}, TextEntry{&LineSource::line, "source_line"},
    TextEntry{&LineSource::coordinate_system, "coordinate_system"},
    TextEntry{&LineSource::date, "survey_date"}, TextEntry{&LineSource::field_origin, "field_origin"}};

constexpr std::string_view gap_entry = "gap_distance", field_entry = "field", igrf_entry = "igrf";
constexpr std::string_view field_not_set = "not_set";

struct IgrfWord {
    std::int32_t change;
    std::string_view word;
};
constexpr std::array igrf_words{IgrfWord{igrf_removed, "removed"}, IgrfWord{igrf_added, "added"}};

void read_gap(std::string_view value, Workspace& workspace, Prompts& prompts) {
    const std::optional<float> distance = parse_single(value);
    if (distance && *distance >= 0) {
        workspace.gap_distance = *distance;
    } else {
        prompts.message("The workspace bounds gaps by a distance that is none: " + std::string(value) +
                        " m. It is 0 or more; no gap is looked for");
    }
}

void read_field_entry(std::string_view value, Workspace& workspace, Prompts& prompts) {
    if (!equal_ignoring_case(value, field_not_set)) {
        prompts.message("The workspace says of its field what is not known here: " + std::string(value) +
                        ". The field that it gives is used");
    } else if (workspace.field.intensity > 0) {
        prompts.message("The workspace says that its field is not set, yet gives one of " +
                        shortest_text(workspace.field.intensity) + " nT, which is used");
    } else {
        workspace.source.field_missing = true;
    }
}

void read_igrf(std::string_view value, LineSource& source, Prompts& prompts) {
    for (const auto& [change, word] : igrf_words) {
        if (!equal_ignoring_case(value, word)) continue;
        source.igrf_change = change;
        return;
    }
    prompts.message(
        "The workspace does with IGRF in the readings what is not known here: " + std::string(value) +
        ". It is removed or added; the readings stay as the data file has them");
}

}  // namespace

std::vector<std::string> source_lines(const Workspace& workspace) {
    std::vector<std::string> lines;
    const auto add = [&](std::string_view name, std::string_view value) {
        lines.push_back(std::string(name) + " " + std::string(value));
    };
    if (workspace.gap_distance != 0) add(gap_entry, shortest_text(workspace.gap_distance));
    const LineSource& source = workspace.source;
    for (const TextEntry& entry : text_entries) {
        const std::string text = single_line(source.*entry.text);
        if (!trim_blanks(text).empty()) add(entry.name, trim_blanks(text));
    }
    if (source.field_missing) add(field_entry, field_not_set);
    for (const auto& [change, word] : igrf_words)
        if (source.igrf_change == change) add(igrf_entry, word);
    return lines;
}

void read_source_entry(std::string_view name, std::string_view value, Workspace& workspace,
                       Prompts& prompts) {
    for (const TextEntry& entry : text_entries)
        if (equal_ignoring_case(name, entry.name)) workspace.source.*entry.text = value;
    if (equal_ignoring_case(name, gap_entry)) read_gap(value, workspace, prompts);
    if (equal_ignoring_case(name, field_entry)) read_field_entry(value, workspace, prompts);
    if (equal_ignoring_case(name, igrf_entry)) read_igrf(value, workspace.source, prompts);
}

}  // namespace anomalis::workspace_file
