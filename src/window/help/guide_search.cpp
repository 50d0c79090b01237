#include "window/help/guide_search.h"

#include <algorithm>

namespace anomalis::window {

namespace {

constexpr qsizetype shown_before = 40, shown_after = 90;  // letters
constexpr double title_weight = 1000;
constexpr double short_page = 2000;  // letters; of pages longer than that each place counts less

struct Weighed {
    GuideFind find;
    double weight;
};

QString around(const QString& words, qsizetype place, qsizetype length) {
    qsizetype from = std::max<qsizetype>(place - shown_before, 0);
    qsizetype to = std::min(place + length + shown_after, words.size());
    if (from > 0) from = words.lastIndexOf(' ', from) + 1;
    if (to < words.size()) to = std::max(words.lastIndexOf(' ', to), place + length);
    return (from > 0 ? "… " : "") + words.mid(from, to - from) + (to < words.size() ? " …" : "");
}

double weight_in(const GuideText& text, const QString& words) {
    const double count = static_cast<double>(text.words.count(words, Qt::CaseInsensitive));
    const double share = count / (short_page + static_cast<double>(text.words.size()));
    return share + (text.title.contains(words, Qt::CaseInsensitive) ? title_weight : 0);
}

/// 0: one of the words is not there.
double weight_of_all(const GuideText& text, const QStringList& words) {
    double weight = 0;
    for (const QString& word : words) {
        const double own = weight_in(text, word);
        if (own == 0) return 0;
        weight += own;
    }
    return weight;
}

std::vector<GuideFind> pages_with(std::span<const GuideText> texts, const QStringList& words) {
    std::vector<Weighed> found;
    for (const GuideText& text : texts) {
        const double weight = weight_of_all(text, words);
        if (weight == 0) continue;
        const QString& first = words.first();
        const qsizetype place = std::max<qsizetype>(text.words.indexOf(first, 0, Qt::CaseInsensitive), 0);
        found.push_back({{text.page, text.title, around(text.words, place, first.size()), first}, weight});
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const Weighed& a, const Weighed& b) { return a.weight > b.weight; });
    std::vector<GuideFind> pages;
    for (Weighed& each : found) pages.push_back(std::move(each.find));
    return pages;
}

}  // namespace

std::vector<GuideFind> search_guide(std::span<const GuideText> texts, const QString& asked) {
    const QString phrase = asked.simplified();
    if (phrase.isEmpty()) return {};
    std::vector<GuideFind> pages = pages_with(texts, {phrase});
    return pages.empty() ? pages_with(texts, phrase.split(' ')) : pages;
}

}  // namespace anomalis::window
