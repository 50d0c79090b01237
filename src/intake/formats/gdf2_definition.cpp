#include "intake/formats/gdf2_definition.h"

#include <algorithm>
#include <array>

#include "core/decimal_scan.h"
#include "core/failure.h"
#include "core/numbers.h"
#include "core/text.h"
#include "intake/formats/field_value.h"
#include "intake/formats/row_fields.h"

namespace anomalis::intake {

namespace {

constexpr std::size_t widest_field = 10000, longest_array = 10000;

struct Place {
    const std::string& path;
    std::size_t line;

    [[noreturn]] void fault(const std::string& what) const {
        throw Fault(path + ", line " + std::to_string(line) + ": " + what);
    }
};

/// Takes off what stands before the first of `ends`, and that character too.
std::string_view take_until(std::string_view& rest, std::string_view ends) {
    // A quoted text may hold any of them; a quote alone is a mark of inches or seconds.
    const bool pairs = std::count(rest.begin(), rest.end(), '"') % 2 == 0;
    std::size_t at = 0;
    bool quoted = false;
    for (; at < rest.size(); ++at) {
        if (rest[at] == '"' && pairs) quoted = !quoted;
        if (!quoted && ends.find(rest[at]) != std::string_view::npos) break;
    }
    const std::string_view taken = rest.substr(0, at);
    rest.remove_prefix(std::min(at + 1, rest.size()));
    return trim_field(taken);
}

std::size_t take_count(std::string_view& text) {
    std::size_t count = 0;
    while (!text.empty() && is_decimal_digit(text.front()) && count < 1'000'000) {
        count = 10 * count + static_cast<std::size_t>(text.front() - '0');
        text.remove_prefix(1);
    }
    return count;
}

struct Format {
    Gdf2Kind kind = Gdf2Kind::number;
    std::size_t times = 1, width = 0;
};

/// "F10.2", "3F10.2", "A8", "I5", "E15.6", "1PE12.4"; nothing for anything else.
std::optional<Format> parse_format(std::string_view text) {
    Format format;
    text = trim_field(text);
    if (!text.empty() && is_decimal_digit(text.front())) format.times = take_count(text);
    if (text.empty() || format.times == 0 || format.times > longest_array) return {};
    const char letter = static_cast<char>(text.front() & ~0x20);
    constexpr std::string_view letters = "AIFEDG";
    if (letters.find(letter) == std::string_view::npos) return {};
    format.kind = letter == 'A' ? Gdf2Kind::text : letter == 'I' ? Gdf2Kind::whole : Gdf2Kind::number;
    text.remove_prefix(1);
    format.width = take_count(text);
    if (!text.empty() && text.front() == '.') {
        text.remove_prefix(1);
        take_count(text);
    }
    if (!text.empty() || format.width == 0 || format.width > widest_field) return {};
    return format;
}

/// Attributes behind the format, parted by commas or colons: "UNIT=m,NULL=-999,NAME=Easting".
void take_attributes(std::string_view rest, Gdf2Field& field) {
    while (!rest.empty()) {
        std::string_view attribute = take_until(rest, ",:");
        const auto sign = attribute.find('=');
        if (sign == std::string_view::npos) {
            if (!field.comment.empty() && !attribute.empty()) field.comment += ", ";
            field.comment += attribute;
            continue;
        }
        const std::string_view key = trim_field(attribute.substr(0, sign));
        const std::string_view value = without_quotes(attribute.substr(sign + 1));
        double null = 0;
        if (equal_ignoring_case(key, "UNIT") || equal_ignoring_case(key, "UNITS")) {
            field.unit = value;
        } else if (equal_ignoring_case(key, "NAME")) {
            field.long_name = value;
        } else if (equal_ignoring_case(key, "NULL") && read_number(value, false, null)) {
            field.nulls.push_back(null);
        }
    }
}

/// "NAME:F10.2:UNIT=m" as one field, or as those of an array.
void take_field(std::string_view text, Gdf2Record& record, const Place& place) {
    std::string_view rest = text;
    Gdf2Field field;
    field.name = without_quotes(take_until(rest, ":"));
    const std::string_view format_text = take_until(rest, ":,");
    const auto format = parse_format(format_text);
    if (!format)
        place.fault("\"" + std::string(format_text) + "\" is no format of the field \"" + field.name +
                    "\". Formats are such as F10.2, I5, A8, E12.4 or 3F10.2.");
    if (equal_ignoring_case(field.name, "RT") && record.fields.empty()) {
        record.type_field = true;
        record.type_width = format->width;
        return;
    }
    field.kind = format->kind;
    field.width = format->width;
    take_attributes(rest, field);
    for (std::size_t i = 1; i <= format->times; ++i) {
        record.fields.push_back(field);
        if (format->times > 1) record.fields.back().name += "[" + std::to_string(i) + "]";
    }
}

/// What stands behind "DEFN" and its number, where the line is one of a definition.
std::optional<std::string_view> definition_text(std::string_view line) {
    line = trim_field(line);
    if (line.size() < 4 || !equal_ignoring_case(line.substr(0, 4), "DEFN")) return {};
    line = trim_field(line.substr(4));
    take_count(line);
    return trim_field(line);
}

/// The value of a key of the head "ST=RECD,RT=DATA".
std::optional<std::string_view> head_value(std::string_view head, std::string_view key) {
    while (!head.empty()) {
        const std::string_view part = take_until(head, ",");
        const auto sign = part.find('=');
        if (sign != std::string_view::npos && equal_ignoring_case(trim_field(part.substr(0, sign)), key))
            return trim_field(part.substr(sign + 1));
    }
    return {};
}

class Parser {
  public:
    explicit Parser(const std::string& path) : path_(path) {}

    void take(std::string_view line, std::size_t number) {
        const auto text = definition_text(line);
        if (!text) return;
        std::string_view rest = *text;
        std::string_view head = take_until(rest, ";");
        // Without a head the fields follow at once, of the record as before.
        const bool headless = head.find('=') == std::string_view::npos || head.find(':') < head.find('=');
        if (headless) rest = *text, head = {};
        choose_record(head_value(head, "RT"));
        while (!rest.empty()) {
            const std::string_view field = take_until(rest, ";");
            if (field.empty()) continue;
            if (is_end(field)) return;
            if (field.find(':') == std::string_view::npos) continue;
            take_field(field, definition_.records[current_], {path_, number});
        }
    }
    Gdf2Definition definition() { return std::move(definition_); }

  private:
    static bool is_end(std::string_view field) {
        return field.size() >= 3 && equal_ignoring_case(field.substr(0, 3), "END") &&
               field.find(':') == std::string_view::npos;
    }
    /// An empty type means the one before.
    void choose_record(std::optional<std::string_view> type) {
        const bool as_before = !type || type->empty();
        // Behind comments alone, fields without a type are those of the data.
        const bool may_stay = current_ < definition_.records.size() &&
                              !equal_ignoring_case(definition_.records[current_].type, "COMM");
        if (as_before && may_stay) return;
        const std::string name(as_before ? std::string_view() : *type);
        const auto found =
            std::find_if(definition_.records.begin(), definition_.records.end(),
                         [&](const Gdf2Record& record) { return equal_ignoring_case(record.type, name); });
        current_ = static_cast<std::size_t>(found - definition_.records.begin());
        if (found == definition_.records.end()) definition_.records.push_back({name, false, 0, {}});
    }

    const std::string& path_;
    Gdf2Definition definition_;
    std::size_t current_ = 0;
};

bool is_about_the_file(const Gdf2Record& record) {
    constexpr std::array<std::string_view, 3> types{"COMM", "PROJ", "TRNS"};
    return std::any_of(types.begin(), types.end(),
                       [&](std::string_view type) { return equal_ignoring_case(record.type, type); });
}

}  // namespace

const Gdf2Record* Gdf2Definition::find(std::string_view type) const {
    for (const Gdf2Record& record : records)
        if (equal_ignoring_case(record.type, type)) return &record;
    return nullptr;
}

const Gdf2Record* Gdf2Definition::data() const {
    const Gdf2Record* best = nullptr;
    for (const Gdf2Record& record : records)
        if (!is_about_the_file(record) && (best == nullptr || record.fields.size() > best->fields.size()))
            best = &record;
    return best != nullptr && best->fields.empty() ? nullptr : best;
}

Gdf2Definition parse_gdf2_definition(std::span<const std::string> lines, const std::string& path) {
    Parser parser(path);
    for (std::size_t i = 0; i < lines.size(); ++i) parser.take(lines[i], i + 1);
    Gdf2Definition definition = parser.definition();
    if (definition.data() == nullptr)
        throw Fault(path +
                    ": no line \"DEFN n ST=RECD,RT=...; NAME:FORMAT\" defines a field of data. Without it "
                    "nobody knows the columns of the .dat file.");
    return definition;
}

}  // namespace anomalis::intake
