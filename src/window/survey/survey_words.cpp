#include "window/survey/survey_words.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <QCoreApplication>
#include <QPalette>

namespace anomalis::window {

namespace {

QString words(const char* text) {
    return QCoreApplication::translate("Survey", text);
}

/// Decimals that leave so many digits.
int decimals_of(double value, int digits = 3) {
    constexpr int most = 9;
    const double size = std::abs(value);
    if (size == 0 || !std::isfinite(size)) return 0;
    return std::clamp(digits - 1 - static_cast<int>(std::floor(std::log10(size))), 0, most);
}

}  // namespace

QString status_words(survey::RowStatus status) {
    constexpr std::array texts{"done", "failed", "not done", "damaged"};
    return words(texts.at(static_cast<std::size_t>(status)));
}

QString flag_words(survey::LineFlag flag) {
    if (flag == survey::LineFlag::none) return words("no flag");
    const std::string_view text = survey::flag_text(flag);
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// As on the map.
QColor flag_colour(survey::LineFlag flag) {
    static const std::array<const char*, 4> colours{"#999999", "#009E73", "#E69F00", "#D62728"};
    return QColor(colours.at(static_cast<std::size_t>(flag)));
}

QString number_words(double value) {
    return std::isnan(value) ? QString() : QString::number(value, 'f', decimals_of(value));
}

QString number_words(double value, const char* unit) {
    return std::isnan(value) ? QString() : number_words(value) + QChar(QChar::Nbsp) + QString::fromUtf8(unit);
}

/// The interval says how many digits are worth anything.
QString interval_words(const survey::IntervalValue& value, const char* unit) {
    if (std::isnan(value.value)) return {};
    const bool low = std::isfinite(value.lower), high = std::isfinite(value.upper);
    const QString behind = unit[0] == '\0' ? QString() : " " + QString::fromUtf8(unit);
    if (!low && !high) return number_words(value.value) + behind;
    const double width = low && high ? value.upper - value.lower : value.value;
    const auto side = [&](bool known, double number) {
        return known ? QString::number(number, 'f', decimals_of(width, 2)) : QString("?");
    };
    return words("%1 (%2 to %3)")
               .arg(side(true, value.value), side(low, value.lower), side(high, value.upper)) +
           behind;
}

QString rms_words(const survey::DeskRow& row) {
    return std::isnan(row.rms_nT) ? number_words(row.rms_mGal, "mGal") : number_words(row.rms_nT, "nT");
}

QString interval_width_words(double width) {
    return std::isinf(width) ? words("open") : number_words(width, "m");
}

}  // namespace anomalis::window
