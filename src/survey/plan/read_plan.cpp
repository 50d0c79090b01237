#include "survey/plan/read_plan.h"

#include <algorithm>
#include <map>
#include <unordered_map>
#include <unordered_set>

#include "core/failure.h"
#include "core/near_names.h"
#include "core/numbers.h"
#include "core/paths.h"
#include "core/safe_file.h"
#include "core/safe_name.h"
#include "survey/plan/plan_forms.h"
#include "survey/plan/plan_names.h"
#include "survey/plan/plan_options.h"
#include "survey/plan/plan_source.h"

namespace anomalis::survey {

namespace {

using Names = std::vector<std::string>;
using SharedOptions = std::shared_ptr<const LineOptions>;

Names with(Names names, const Names& more) {
    names.insert(names.end(), more.begin(), more.end());
    return names;
}

/// The name of a line: a text, or a number as it is.
std::string line_name_of(const PlanNode& node) {
    return node.kind == PlanKind::number ? round_trip_text(number_of_node(node)) : text_of(node);
}

Names line_names_of(const PlanNode& node) {
    if (node.kind != PlanKind::list) return {line_name_of(node)};
    Names names;
    for (const PlanNode& item : node.items) names.push_back(line_name_of(item));
    return names;
}

std::string folder_name_in(const PlanNode& node) {
    const std::string name = line_name_of(node);
    if (name != safe_name(name))
        refuse_plan(node,
                    "must be the name of a folder: letters, digits, -, _, . and +, at most 100 of them "
                    "and no dot in front, such as " +
                        folder_name_of_line(name));
    return name;
}

/// What a node says, as one text: the same for nodes that say the same.
void append_words(const PlanNode& node, std::string& words) {
    words += std::to_string(static_cast<int>(node.kind)) + ":" + node.text + ":" +
             round_trip_text(node.number) + (node.flag ? "+" : "-");
    for (const PlanNode& item : node.items) append_words(item, words += '[');
    for (const auto& [key, entry] : node.entries) append_words(entry, words += "{" + key_word(key) + "=");
    words += ';';
}

/// Options of lines that say the same are one record.
class OptionsOfLines {
  public:
    void set_usual(SharedOptions usual) { usual_ = std::move(usual); }

    SharedOptions of(const PlanNode& said, const Names& about_the_line) {
        PlanNode options = said;
        std::erase_if(options.entries, [&](const auto& entry) {
            return std::ranges::find(about_the_line, key_word(entry.first)) != about_the_line.end();
        });
        if (options.entries.empty()) return usual_;
        std::string words;
        for (const auto& [key, entry] : options.entries) append_words(entry, words += key_word(key) + "=");
        SharedOptions& made = made_[words];
        if (!made) {
            LineOptions own = *usual_;
            take_options(said, own);
            made = std::make_shared<const LineOptions>(std::move(own));
        }
        return made;
    }

  private:
    SharedOptions usual_ = std::make_shared<const LineOptions>();
    std::map<std::string, SharedOptions> made_;
};

/// The lines of a plan, each once and each with a place of its own.
class LinesOfPlan {
  public:
    explicit LinesOfPlan(std::vector<PlannedLine>& lines) : lines_(lines) {}

    /// `key`: the same for what is the same line. Raises Fault.
    void add(const PlanNode& at, const std::string& key, PlannedLine line) {
        const auto [said, is_new] = by_key_.try_emplace(key, Said{lines_.size(), at.line});
        if (!is_new) refuse_plan(at, title(line) + " is named twice" + also_at(said->second));
        take_place(at, line, lines_.size());
        lines_.push_back(std::move(line));
    }
    /// The line that was added with that key; null for none.
    PlannedLine* find(const std::string& key) {
        const auto found = by_key_.find(key);
        return found == by_key_.end() ? nullptr : &lines_[found->second.place];
    }
    void rename(const PlanNode& at, PlannedLine& line, const std::string& name) {
        const auto place = static_cast<std::size_t>(&line - lines_.data());
        by_folder_.erase(lower_case(line.name));
        line.name = name;
        take_place(at, line, place);
    }

  private:
    struct Said {
        std::size_t place = 0;
        long line = 0;
    };
    static std::string title(const PlannedLine& line) {
        return line.workspace.empty() ? "line " + line.line : "the workspace " + line.workspace;
    }
    static std::string also_at(const Said& said) {
        return said.line > 0 ? ", first in line " + std::to_string(said.line) : "";
    }
    void take_place(const PlanNode& at, const PlannedLine& line, std::size_t place) {
        const auto [said, is_new] = by_folder_.try_emplace(lower_case(line.name), Said{place, at.line});
        if (!is_new)
            refuse_plan(at, title(line) + " would be written to the folder " + line.name + ", as is " +
                                title(lines_[said->second.place]) + also_at(said->second) +
                                ": give one of them another name");
    }

    std::vector<PlannedLine>& lines_;
    std::unordered_map<std::string, Said> by_key_, by_folder_;
};

class PlanReader {
  public:
    explicit PlanReader(const std::string& path) : folder_(folder_name(path)), lines_(plan_.lines) {
        plan_.path = path;
        plan_.name = base_name(path);
        plan_.options = std::make_shared<const LineOptions>();
    }

    void take_plan(const PlanNode& plan);
    /// A table of lines, `path` as it is found from the current folder.
    void take_table(const std::string& path, const std::string& text);
    SurveyPlan finish();

  private:
    void take_source(const PlanNode& source);
    void take_lines(const PlanNode& lines);
    void take_only(const PlanNode& only);
    void take_said(const PlanNode& said);
    void change_line(const PlanNode& said);
    void add_line(const PlanNode& said, const std::string& folder);
    void check_columns(const PlanNode& columns, bool whole_plan) const;
    const char* line_key() const { return plan_.source ? "line" : "workspace"; }
    Names about_a_line() const { return {line_key(), "name"}; }
    const PlanNode& wanted_entry(const PlanNode& said, const std::string& key) const;
    std::string key_of(const PlannedLine& line) const {
        return plan_.source ? meant_name(line.line) : whole_path(line.workspace);
    }

    SurveyPlan plan_;
    std::string folder_;
    LinesOfPlan lines_;
    OptionsOfLines options_;
    bool only_ = false;                       ///< lines.only is said
    bool chosen_ = false;                     ///< the plan names the lines of the file, all of them
    std::unordered_set<std::string> listed_;  ///< keys of lines that more may be said of
};

void PlanReader::take_plan(const PlanNode& plan) {
    refuse_unknown_keys(plan, with({"name", "source", "lines", "line"}, option_keys()));
    if (const PlanNode* name = plan.entry("name")) plan_.name = text_of(*name);
    if (const PlanNode* source = plan.entry("source")) take_source(*source);
    LineOptions usual;
    take_options(plan, usual);
    plan_.options = std::make_shared<const LineOptions>(std::move(usual));
    options_.set_usual(plan_.options);
    for (PlannedLine& line : plan_.lines) line.options = plan_.options;
    if (const PlanNode* lines = plan.entry("lines")) take_lines(*lines);
    if (const PlanNode* said = plan.entry("line")) take_said(*said);
}

void PlanReader::take_source(const PlanNode& source) {
    refuse_unknown_keys(source, {"file", "workspaces", "crs", "file-crs", "roles", "units", "nulls", "name",
                                 "date", "field", "igrf", "sensor-height"});
    const PlanNode* const workspaces = source.entry("workspaces");
    if (source.entry("file")) {
        if (workspaces) refuse_plan(*workspaces, "a plan is of a survey file or of workspaces, not of both");
        plan_.source = survey_source(source, folder_);
        return;
    }
    if (!workspaces) refuse_plan(source, "names neither a file nor workspaces");
    refuse_unknown_keys(source, {"workspaces"});
    for (const std::string& path : workspace_paths(*workspaces, folder_)) {
        listed_.insert(whole_path(path));
        lines_.add(
            *workspaces, whole_path(path),
            {.name = folder_name_of_line(base_name(path)), .line = "", .workspace = path, .options = {}});
    }
    chosen_ = true;
}

void PlanReader::take_lines(const PlanNode& lines) {
    refuse_unknown_keys(lines, {"only", "leave-out", "table"});
    const PlanNode *const only = lines.entry("only"), *const leave_out = lines.entry("leave-out"),
                          *const table = lines.entry("table");
    if (only && table) refuse_plan(*only, "the table names the lines: leave one of them out");
    if (leave_out && (only || table))
        refuse_plan(*leave_out, "is for a plan of all lines, and this one names its lines");
    if ((only || leave_out) && !plan_.source)
        refuse_plan(only ? *only : *leave_out,
                    "is for the lines of a survey file; workspaces are named in "
                    "source.workspaces");
    if (only) take_only(*only);
    if (leave_out) plan_.left_out = line_names_of(*leave_out);
    if (table) {
        const std::string path = (text_of(*table).starts_with('/') ? "" : folder_) + text_of(*table);
        if (file_exists(path).empty()) refuse_plan(*table, "there is no file " + path);
        take_table(path, read_whole_file(path));
    }
}

void PlanReader::take_only(const PlanNode& only) {
    chosen_ = only_ = true;
    for (const std::string& name : line_names_of(only)) {
        listed_.insert(meant_name(name));
        lines_.add(
            only, meant_name(name),
            {.name = folder_name_of_line(name), .line = name, .workspace = "", .options = plan_.options});
    }
    if (plan_.lines.empty()) refuse_plan(only, "names no line");
}

/// [[line]], once for each line that is done in another way.
void PlanReader::take_said(const PlanNode& said) {
    std::vector<PlanNode> one;
    if (said.kind == PlanKind::table) one.push_back(said);
    const std::vector<PlanNode>& all = said.kind == PlanKind::list ? said.items : one;
    if (all.empty()) refuse_plan(said, "must be [[line]], once for each line");
    for (const PlanNode& line : all) {
        refuse_unknown_keys(line, with(about_a_line(), option_keys()));
        change_line(line);
    }
}

const PlanNode& PlanReader::wanted_entry(const PlanNode& said, const std::string& key) const {
    const PlanNode* const node = said.entry(key);
    if (!node) refuse_plan(said, "names no " + key);
    return *node;
}

/// A line of `only` or a workspace of the list goes on with what is said of it; another one is added.
void PlanReader::change_line(const PlanNode& said) {
    const PlanNode& which = wanted_entry(said, line_key());
    const std::string key =
        plan_.source ? meant_name(line_name_of(which)) : whole_path(workspace_path(which, folder_));
    PlannedLine* const line = lines_.find(key);
    if (line && listed_.erase(key) > 0) {
        line->options = options_.of(said, about_a_line());
        if (const PlanNode* name = said.entry("name")) lines_.rename(*name, *line, folder_name_in(*name));
        return;
    }
    if (!line && plan_.source && only_) {
        Names known;
        for (const PlannedLine& one : plan_.lines) known.push_back(one.line);
        refuse_plan(which, "line " + line_name_of(which) + " is not among lines.only; nearest is " +
                               nearest_names(line_name_of(which), known).front());
    }
    add_line(said, folder_);
}

void PlanReader::add_line(const PlanNode& said, const std::string& folder) {
    const PlanNode& which = wanted_entry(said, line_key());
    PlannedLine line;
    if (plan_.source)
        line.line = line_name_of(which);
    else
        line.workspace = workspace_path(which, folder);
    line.name = folder_name_of_line(plan_.source ? line.line : base_name(line.workspace));
    if (const PlanNode* name = said.entry("name")) line.name = folder_name_in(*name);
    line.options = options_.of(said, about_a_line());
    const std::string key = key_of(line);
    lines_.add(which, key, std::move(line));
}

void PlanReader::check_columns(const PlanNode& columns, bool whole_plan) const {
    const Names known = with(about_a_line(), option_columns());
    if (whole_plan)
        if (const PlanNode* line = columns.entry("line"))
            refuse_plan(*line,
                        "a table alone is of workspaces; lines of a survey file are named in a plan as "
                        "TOML or JSON, [lines] table = \"" +
                            file_name(plan_.path) + "\"");
    for (const auto& [name, column] : columns.entries)
        if (std::ranges::find(known, key_word(name)) == known.end())
            refuse_plan(column, "no such column; nearest is " + nearest_names(name, known).front() +
                                    ". There are " + listed(known, " and "));
    if (!columns.entry(line_key())) refuse_plan(columns, "there is no column " + std::string(line_key()));
}

void PlanReader::take_table(const std::string& path, const std::string& text) {
    const bool whole_plan = path == plan_.path;
    if (!plan_.lines.empty()) throw Fault(file_name(path) + ": the plan names its workspaces in two places");
    const std::string folder = folder_name(path);
    read_csv_rows(
        text, file_name(path), [&](const PlanNode& columns) { check_columns(columns, whole_plan); },
        [&](const PlanNode& row) { add_line(row, folder); });
    if (plan_.lines.empty()) throw Fault(file_name(path) + " names no " + std::string(line_key()));
    chosen_ = true;
}

SurveyPlan PlanReader::finish() {
    plan_.all_lines = plan_.source && !chosen_;
    if (!plan_.source && plan_.lines.empty())
        throw Fault(file_name(plan_.path) +
                    " names no line: [source] with file = \"...\" or workspaces = [\"...\"]");
    return std::move(plan_);
}

bool is_json(const std::string& path, const std::string& text) {
    if (lower_case(path).ends_with(".json")) return true;
    const auto first = text.find_first_not_of(" \t\r\n");
    return first != std::string::npos && text[first] == '{';
}

}  // namespace

SurveyPlan read_survey_plan(const std::string& path) {
    const std::string text = read_whole_file(path);
    PlanReader reader(path);
    if (lower_case(path).ends_with(".csv"))
        reader.take_table(path, text);
    else
        reader.take_plan(is_json(path, text) ? read_json(text, file_name(path))
                                             : read_toml(text, file_name(path)));
    return reader.finish();
}

}  // namespace anomalis::survey
