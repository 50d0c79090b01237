#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// What a plan says, whatever form it is written in. Private to this room.
namespace anomalis::survey {

enum class PlanKind {
    text,
    number,
    flag,
    list,
    table,
    cell  ///< of a CSV table: a text that may be a number, a flag or a list as well
};

struct PlanEntry;

struct PlanNode {
    PlanKind kind = PlanKind::table;
    std::string text;
    double number = 0;
    bool flag = false;
    std::vector<PlanNode> items;              ///< of a list
    std::vector<PlanEntry> entries;           ///< of a table
    std::shared_ptr<const std::string> file;  ///< that it stands in, without folder
    long line = 0;                            ///< of the file, from 1; 0 where nobody knows
    std::string key;                          ///< "find.most", "line[2].name", a column

    /// Of a table; null where it says nothing of that.
    const PlanNode* entry(std::string_view name) const;
};

struct PlanEntry {
    PlanEntry(std::string its_name, PlanNode its_node)
        : first(std::move(its_name)), second(std::move(its_node)) {}
    std::string first;
    PlanNode second;
};

/// "survey.toml, line 12, find.most: " and why.
[[noreturn]] void refuse_plan(const PlanNode& at, const std::string& why);

// What a value is wanted as. Each raises Fault with the place of the node.

std::string text_of(const PlanNode& node);
double number_of_node(const PlanNode& node, std::string_view what = "a number");
/// From `least` to `most`.
int whole_number_of(const PlanNode& node, int least, int most);
bool flag_of(const PlanNode& node);
/// A flag, where it is one; a text that is none is no value.
std::optional<bool> flag_if_one(const PlanNode& node);
/// The texts of a list; a single text is a list of one. In a cell they are parted by blanks, ";" or ",".
std::vector<std::string> texts_of(const PlanNode& node);
/// One of `choices`.
std::string choice_of(const PlanNode& node, const std::vector<std::string>& choices);
/// "a, b or c"
std::string listed(const std::vector<std::string>& names, std::string_view last = " or ");

/// Raises Fault for an entry of a table that is none of `known`, with the one that is most like it.
void refuse_unknown_keys(const PlanNode& table, const std::vector<std::string>& known);
/// The same word for "noise-mag", "noise_mag" and "Noise.Mag".
std::string key_word(std::string_view key);

}  // namespace anomalis::survey
