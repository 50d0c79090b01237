#include "window/tutorials/told.h"

#include <vector>

#include <QRegularExpression>

namespace anomalis::tutorials {

namespace {

struct Word {
    QString text;
    bool number = false;
};

int decimals_of(const QString& number) {
    const auto point = number.indexOf('.');
    return point < 0 ? 0 : static_cast<int>(number.size() - point - 1);
}

std::vector<Word> words_of(QString text) {
    static const QRegularExpression word("(?<number>(?<![\\w.])-?\\d+(?:\\.\\d+)?)|\\w+|[^\\s\\w]");
    text.replace(QChar(0x2212), '-').replace(QChar(QChar::Nbsp), ' ');
    std::vector<Word> words;
    for (auto match = word.globalMatch(text); match.hasNext();) {
        const auto next = match.next();
        words.push_back({next.captured(), !next.captured("number").isEmpty()});
    }
    return words;
}

bool same(const Word& seen, const Word& told) {
    if (!told.number || !seen.number) return seen.text == told.text;
    const int decimals = decimals_of(told.text);
    if (decimals_of(seen.text) < decimals) return false;
    return QString::number(seen.text.toDouble(), 'f', decimals) ==
           QString::number(told.text.toDouble(), 'f', decimals);
}

bool alike(const std::vector<Word>& seen, std::size_t at, const std::vector<Word>& told) {
    if (told.empty() || at + told.size() > seen.size()) return false;
    for (std::size_t i = 0; i < told.size(); ++i)
        if (!same(seen[at + i], told[i])) return false;
    return true;
}

}  // namespace

bool told_in(const QString& seen, const QString& told) {
    const std::vector<Word> all = words_of(seen), wanted = words_of(told);
    for (std::size_t at = 0; at < all.size(); ++at)
        if (alike(all, at, wanted)) return true;
    return false;
}

bool begins_as_told(const QString& seen, const QString& told) {
    return alike(words_of(seen), 0, words_of(told));
}

}  // namespace anomalis::tutorials
