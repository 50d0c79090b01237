#include "window/tutorials/lesson_rules.h"

#include <QRegularExpression>

namespace anomalis::tutorials {

namespace {

struct Rule {
    Deed deed;
    QRegularExpression pattern;
};

/// {bold} and {code} stand for what is in them, {times} for how often, _ for a blank or the end of a line.
Rule rule(Deed deed, QString pattern) {
    pattern.replace("_", "\\s+")
        .replace("{bold}", "\\*\\*(?<what>[^*]+)\\*\\*")
        .replace("{code}", "`(?<value>[^`]+)`")
        .replace("{times}", "(?:\\s+(?<times>twice|\\w+\\s+times))?");
    return {deed, QRegularExpression(pattern)};
}

/// Of two that begin at one place the former is meant.
const std::vector<Rule>& rules() {
    static const std::vector<Rule> all{
        rule(Deed::only, "<!--\\s*only:\\s*(?<what>\\w+)\\s*-->"),
        rule(Deed::picture, "!\\[[^\\]]*\\]\\((?<what>[^)]+)\\)"),
        rule(Deed::key_in, "[Kk]ey_{code}_into_{bold}"),
        rule(Deed::choose, "[Cc]hoose_{code}_in_{bold}"),
        rule(Deed::step, "[Pp]ress_the_(?<manner>coarse|fine)_{code}_of_{bold}{times}"),
        rule(Deed::drag, "[Dd]rag_{bold}_by_{code}"),
        rule(Deed::click_head, "[Cc]lick_the_head_{bold}"),
        rule(Deed::click_body, "[Cc]lick_{bold}_in_the_(?<manner>section|plan)"),
        rule(Deed::tick, "[Tt]ick_{bold}"),
        rule(Deed::clear, "[Cc]lear_{bold}"),
        rule(Deed::shows, "{bold}_shows?_{code}"),
        rule(Deed::says, "says?:?_{code}"),
        rule(Deed::save_name, "name_{code}"),
        rule(Deed::open_name, "[Cc]hoose_the_file_{code}"),
        rule(Deed::lies_there, "{code}_lies_there"),
        rule(Deed::keys, "[Pp]ress_{code}{times}"),
        rule(Deed::press, "{bold}{times}")};
    return all;
}

int count_of(const QString& words) {
    static const QStringList names{"once",      "twice",       "three times", "four times", "five times",
                                   "six times", "seven times", "eight times", "nine times", "ten times"};
    if (words.isEmpty()) return 1;
    const auto place = names.indexOf(words.simplified());
    return place >= 0 ? static_cast<int>(place) + 1 : words.section(' ', 0, 0).toInt();
}

}  // namespace

std::optional<FoundOrder> next_order(const QString& text, qsizetype from, bool numbered) {
    std::optional<FoundOrder> first;
    for (const Rule& each : rules()) {
        if (!numbered && each.deed != Deed::picture && each.deed != Deed::only) continue;
        const auto match = each.pattern.match(text, from);
        if (!match.hasMatch() || (first && first->begin <= match.capturedStart())) continue;
        FoundOrder found;
        found.order.deed = each.deed;
        found.order.what = match.captured("what").simplified();
        found.order.value = match.captured("value").simplified();
        found.order.manner = match.captured("manner");
        found.order.times = count_of(match.captured("times"));
        found.begin = match.capturedStart();
        found.end = match.capturedEnd();
        first = found;
    }
    return first;
}

}  // namespace anomalis::tutorials
