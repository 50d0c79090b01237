#include <set>

#include "survey/plan/plan_forms.h"
#include "survey/results/json_fields.h"

namespace anomalis::survey {

namespace {

using FileName = std::shared_ptr<const std::string>;

PlanNode json_node(const Json& from, const std::string& key, const FileName& file) {
    PlanNode node;
    node.file = file;
    node.key = key;
    if (from.is_object()) {
        for (const auto& [name, value] : from.items())
            node.entries.emplace_back(name, json_node(value, key.empty() ? name : key + "." + name, file));
    } else if (from.is_array()) {
        node.kind = PlanKind::list;
        for (const Json& item : from)
            node.items.push_back(
                json_node(item, key + "[" + std::to_string(node.items.size() + 1) + "]", file));
    } else if (from.is_boolean()) {
        node.kind = PlanKind::flag;
        node.flag = from.get<bool>();
    } else if (from.is_number()) {
        node.kind = PlanKind::number;
        node.number = from.get<double>();
    } else if (from.is_string()) {
        node.kind = PlanKind::text;
        node.text = from.get<std::string>();
    } else {
        refuse_plan(node, "is null: leave it out");
    }
    return node;
}

/// The library keeps one of two entries of one name; a plan that says two things is refused.
class RepeatedKeys {
  public:
    explicit RepeatedKeys(const std::string& name) : name_(name) {}
    bool operator()(int depth, Json::parse_event_t event, Json& value) {
        constexpr int deepest = 20;
        if (depth > deepest) throw Fault(name_ + " is nested too deep for a plan");
        if (event == Json::parse_event_t::object_start) open_.emplace_back();
        if (event == Json::parse_event_t::object_end) open_.pop_back();
        if (event == Json::parse_event_t::key && !open_.back().insert(value.get<std::string>()).second)
            repeated_ = value.get<std::string>();
        return true;
    }
    const std::string& repeated() const { return repeated_; }

  private:
    const std::string& name_;
    std::vector<std::set<std::string>> open_;
    std::string repeated_;
};

/// Without what the library says of itself: "[json.exception.parse_error.101] parse error at line 3, ...".
std::string plain_words(const std::string& text) {
    const auto end = text.find("] ");
    return text.starts_with('[') && end != std::string::npos ? text.substr(end + 2) : text;
}

}  // namespace

PlanNode read_json(const std::string& text, const std::string& name) {
    RepeatedKeys keys(name);
    try {
        const Json json = Json::parse(text, [&keys](int depth, Json::parse_event_t event, Json& value) {
            return keys(depth, event, value);
        });
        if (!keys.repeated().empty()) throw Fault(name + ": the key " + keys.repeated() + " stands twice");
        return json_node(json, "", std::make_shared<const std::string>(name));
    } catch (const Json::exception& error) {
        throw Fault(name + ": this is no JSON: " + plain_words(error.what()));
    }
}

}  // namespace anomalis::survey
