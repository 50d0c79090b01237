#include "survey/plan/plan_node.h"

#include <algorithm>
#include <cmath>

#include "core/failure.h"
#include "core/near_names.h"
#include "core/numbers.h"
#include "core/text.h"

namespace anomalis::survey {

namespace {

std::string kind_text(const PlanNode& node) {
    switch (node.kind) {
        case PlanKind::text:
        case PlanKind::cell:
            return "\"" + node.text + "\"";
        case PlanKind::number:
            return shortest_text(node.number);
        case PlanKind::flag:
            return node.flag ? "true" : "false";
        case PlanKind::list:
            return "a list";
        case PlanKind::table:
            break;
    }
    return "a table";
}

[[noreturn]] void refuse_kind(const PlanNode& node, std::string_view wanted) {
    refuse_plan(node, "must be " + std::string(wanted) + ", not " + kind_text(node));
}

bool is_text(const PlanNode& node) {
    return node.kind == PlanKind::text || node.kind == PlanKind::cell;
}

std::vector<std::string> words_of_cell(const std::string& text) {
    std::vector<std::string> words(1);
    for (const char letter : text)
        if (std::string_view(" \t,;").find(letter) != std::string_view::npos)
            words.emplace_back();
        else
            words.back() += letter;
    std::erase(words, "");
    return words;
}

}  // namespace

const PlanNode* PlanNode::entry(std::string_view name) const {
    const std::string word = key_word(name);
    const auto found =
        std::ranges::find_if(entries, [&](const auto& entry) { return key_word(entry.first) == word; });
    return found == entries.end() ? nullptr : &found->second;
}

void refuse_plan(const PlanNode& at, const std::string& why) {
    std::string place = at.file ? *at.file : "The plan";
    if (at.line > 0) place += ", line " + std::to_string(at.line);
    if (!at.key.empty()) place += ", " + at.key;
    throw Fault(place + ": " + why);
}

std::string text_of(const PlanNode& node) {
    if (!is_text(node)) refuse_kind(node, "a text in quotes");
    if (trim_blanks(node.text).empty()) refuse_plan(node, "must not be empty");
    return std::string(trim_blanks(node.text));
}

double number_of_node(const PlanNode& node, std::string_view what) {
    double number = node.number;
    const bool read =
        node.kind == PlanKind::number || (node.kind == PlanKind::cell && parse_number(node.text, number));
    if (!read || !std::isfinite(number)) refuse_kind(node, what);
    return number;
}

int whole_number_of(const PlanNode& node, int least, int most) {
    const std::string what = "a whole number from " + std::to_string(least) + " to " + std::to_string(most);
    const double number = number_of_node(node, what);
    if (number != std::floor(number) || number < least || number > most) refuse_kind(node, what);
    return static_cast<int>(number);
}

std::optional<bool> flag_if_one(const PlanNode& node) {
    if (node.kind == PlanKind::flag) return node.flag;
    if (node.kind != PlanKind::cell) return std::nullopt;
    const std::string word = lower_case(trim_blanks(node.text));
    if (word == "yes" || word == "true" || word == "1") return true;
    if (word == "no" || word == "false" || word == "0" || word == "none") return false;
    return std::nullopt;
}

bool flag_of(const PlanNode& node) {
    const std::optional<bool> flag = flag_if_one(node);
    if (!flag) refuse_kind(node, node.kind == PlanKind::cell ? "yes or no" : "true or false");
    return *flag;
}

std::vector<std::string> texts_of(const PlanNode& node) {
    if (node.kind == PlanKind::cell) return words_of_cell(node.text);
    if (node.kind == PlanKind::text) return {text_of(node)};
    if (node.kind != PlanKind::list) refuse_kind(node, "a text or a list of texts");
    std::vector<std::string> texts;
    for (const PlanNode& item : node.items) texts.push_back(text_of(item));
    return texts;
}

std::string choice_of(const PlanNode& node, const std::vector<std::string>& choices) {
    const std::string text = is_text(node) ? std::string(trim_blanks(node.text)) : "";
    if (std::ranges::find(choices, text) == choices.end()) refuse_kind(node, listed(choices));
    return text;
}

std::string listed(const std::vector<std::string>& names, std::string_view last) {
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (i > 0) text += i + 1 == names.size() ? std::string(last) : ", ";
        text += names[i];
    }
    return text;
}

void refuse_unknown_keys(const PlanNode& table, const std::vector<std::string>& known) {
    if (table.kind != PlanKind::table) refuse_kind(table, "a table");
    for (const auto& [name, node] : table.entries) {
        const std::string word = key_word(name);
        if (std::ranges::any_of(known, [&](const std::string& one) { return key_word(one) == word; }))
            continue;
        refuse_plan(node, "no such key; nearest is " + nearest_names(name, known).front() + ". There are " +
                              listed(known, " and "));
    }
}

std::string key_word(std::string_view key) {
    std::string word = lower_case(trim_blanks(key));
    std::ranges::replace_if(
        word, [](char letter) { return letter == '-' || letter == '.' || letter == ' '; }, '_');
    return word;
}

}  // namespace anomalis::survey
