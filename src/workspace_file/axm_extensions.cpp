#include "workspace_file/axm_extensions.h"

#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/model_mark.h"
#include "core/numbers.h"
#include "core/prompts.h"
#include "core/text.h"
#include "core/workspace.h"
#include "workspace_file/axm_text.h"
#include "workspace_file/fit_lines.h"
#include "workspace_file/source_lines.h"

namespace anomalis::workspace_file {

namespace {

constexpr std::string_view marker = "[AXM Extensions]";
constexpr std::string_view formulas_entry = "formulas";

/// What there is to say of a channel beyond format 7.
struct ChannelEntries {
    Channel Workspace::*channel;
    std::string_view regional, noise, adjective, unit;
};
constexpr std::array channel_entries{
    ChannelEntries{&Workspace::mag, "mag_regional", "mag_noise", "magnetic", "nT"},
    ChannelEntries{&Workspace::grav, "grav_regional", "grav_noise", "gravity", "mGal"}};

void read_formulas(std::string_view value, Workspace& workspace, Prompts& prompts) {
    if (const std::optional<Formulas> formulas = formulas_of_name(value)) {
        workspace.formulas = *formulas;
    } else {
        prompts.message("The workspace asks for formulas that are not known here: " + std::string(value) +
                        ". The classic ones are used");
    }
}

void read_regional(std::string_view value, const ChannelEntries& entries, Channel& channel,
                   Prompts& prompts) {
    double degree = 0;
    if (parse_number(value, degree) && degree >= 0 && degree <= most_regional_degree &&
        degree == std::floor(degree)) {
        channel.regional_degree = static_cast<std::int32_t>(degree);
    } else {
        prompts.message("The workspace asks for a " + std::string(entries.adjective) +
                        " regional of a degree that is none: " + std::string(value) +
                        ". It is 0 to 3; no regional is used");
    }
}

void read_noise(std::string_view value, const ChannelEntries& entries, Channel& channel, Prompts& prompts) {
    const std::optional<float> noise = parse_single(value);
    if (noise && *noise > 0) {
        channel.noise = *noise;
    } else {
        prompts.message("The workspace gives the " + std::string(entries.adjective) +
                        " readings a noise that is none: " + std::string(value) + " " +
                        std::string(entries.unit) +
                        ". It is a number above 0; the noise is estimated from the line");
    }
}

void read_channel_entry(std::string_view name, std::string_view value, Workspace& workspace,
                        Prompts& prompts) {
    for (const ChannelEntries& entries : channel_entries) {
        Channel& channel = workspace.*entries.channel;
        if (equal_ignoring_case(name, entries.regional)) read_regional(value, entries, channel, prompts);
        if (equal_ignoring_case(name, entries.noise)) read_noise(value, entries, channel, prompts);
    }
}

/// An entry that differs from its default, in the order of the block.
std::vector<std::string> entries_of(const Workspace& workspace) {
    std::vector<std::string> lines;
    const auto add = [&](std::string_view name, std::string_view value) {
        lines.push_back(std::string(name) + " " + std::string(value));
    };
    if (workspace.formulas != Formulas::classic) add(formulas_entry, formulas_name(workspace.formulas));
    for (const ChannelEntries& entries : channel_entries) {
        const Channel& channel = workspace.*entries.channel;
        if (channel.regional_degree != no_regional)
            add(entries.regional, std::to_string(channel.regional_degree));
        if (channel.noise != unset) add(entries.noise, shortest_text(channel.noise));
    }
    const std::vector<std::string> source = source_lines(workspace);
    lines.insert(lines.end(), source.begin(), source.end());
    if (!as_fitted(workspace)) return lines;
    const std::vector<std::string> fit = fit_lines(*workspace.fit);
    lines.insert(lines.end(), fit.begin(), fit.end());
    return lines;
}

/// The lines of the record, and where they begin.
struct FitPart {
    std::vector<std::string_view> lines;
    long first_line = 0;
};

/// It moves no curve, so it is no doubt.
void take_fit(const FitPart& part, AxmLines& lines, Workspace& workspace) {
    if (part.lines.empty()) return;
    workspace.fit = fit_of_lines(part.lines);
    if (!workspace.fit)
        lines.note(part.first_line,
                   "the record of the last fit is damaged and was dropped; fit again for its errors",
                   Severity::remark);
}

}  // namespace

void write_extensions(const Workspace& workspace, AxmWriter& out) {
    const std::vector<std::string> entries = entries_of(workspace);
    if (entries.empty()) return;
    out << marker;
    out.end_line();
    for (const std::string& entry : entries) {
        out << entry;
        out.end_line();
    }
}

void read_extensions(AxmLines& lines, Workspace& workspace, Prompts& prompts) {
    do {
        if (lines.at_end()) return;
    } while (lines.next() != marker);
    FitPart fit;
    while (!lines.at_end()) {
        const std::string_view line = lines.next();
        if (line.starts_with('[')) break;
        std::string_view rest = line;
        const std::string_view name = next_token(rest);
        const std::string_view value = trim_blanks(rest);
        if (equal_ignoring_case(name, formulas_entry)) read_formulas(value, workspace, prompts);
        read_channel_entry(name, value, workspace, prompts);
        read_source_entry(name, value, workspace, prompts);
        if (!is_fit_entry(name)) continue;
        if (fit.lines.empty()) fit.first_line = lines.number();
        fit.lines.push_back(line);
    }
    take_fit(fit, lines, workspace);
}

void drop_fit_of_another_model(AxmLines& lines, Workspace& workspace) {
    if (!workspace.fit || as_fitted(workspace)) return;
    workspace.fit.reset();
    lines.note(lines.number(), "the record of the last fit is that of another model and was dropped",
               Severity::remark);
}

}  // namespace anomalis::workspace_file
