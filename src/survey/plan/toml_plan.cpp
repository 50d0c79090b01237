#include <sstream>

// What the parser takes for granted does not hold for every text ("[" at the end of a line); it refuses those
// a few lines on, where its own assertions would end the program.
#define TOML_ASSERT(expr) static_cast<void>(0)
#include <toml++/toml.h>

#include "core/failure.h"
#include "survey/plan/plan_forms.h"

namespace anomalis::survey {

namespace {

class TomlReader {
  public:
    explicit TomlReader(const std::string& name) : file_(std::make_shared<const std::string>(name)) {}

    PlanNode node(const toml::node& from, const std::string& key) const {
        PlanNode node;
        node.file = file_;
        node.line = static_cast<long>(from.source().begin.line);
        node.key = key;
        from.visit([&](const auto& value) { take(value, node); });
        return node;
    }

  private:
    void take(const toml::table& table, PlanNode& node) const {
        node.kind = PlanKind::table;
        for (const auto& [name, value] : table) {
            const std::string key(name.str());
            PlanNode entry = this->node(value, node.key.empty() ? key : node.key + "." + key);
            if (!value.is_array_of_tables()) entry.line = static_cast<long>(name.source().begin.line);
            node.entries.emplace_back(key, std::move(entry));
        }
    }
    void take(const toml::array& array, PlanNode& node) const {
        node.kind = PlanKind::list;
        for (const toml::node& item : array)
            node.items.push_back(
                this->node(item, node.key + "[" + std::to_string(node.items.size() + 1) + "]"));
    }
    void take(const toml::value<std::string>& value, PlanNode& node) const {
        node.kind = PlanKind::text;
        node.text = value.get();
    }
    void take(const toml::value<bool>& value, PlanNode& node) const {
        node.kind = PlanKind::flag;
        node.flag = value.get();
    }
    void take(const toml::value<std::int64_t>& value, PlanNode& node) const {
        node.kind = PlanKind::number;
        node.number = static_cast<double>(value.get());
    }
    void take(const toml::value<double>& value, PlanNode& node) const {
        node.kind = PlanKind::number;
        node.number = value.get();
    }
    /// Dates and times, which TOML writes without quotes.
    template <class Time>
    void take(const toml::value<Time>& value, PlanNode& node) const {
        std::ostringstream text;
        text << value;
        node.kind = PlanKind::text;
        node.text = text.str();
    }

    std::shared_ptr<const std::string> file_;
};

}  // namespace

PlanNode read_toml(const std::string& text, const std::string& name) {
    try {
        return TomlReader(name).node(toml::parse(text), "");
    } catch (const toml::parse_error& error) {
        const auto place = error.source().begin;
        throw Fault(name + ", line " + std::to_string(place.line) + ", column " +
                    std::to_string(place.column) + ": this is no TOML: " + std::string(error.description()));
    }
}

}  // namespace anomalis::survey
