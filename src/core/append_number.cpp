#include "core/append_number.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>

#include "core/numbers.h"

namespace anomalis {

namespace {

constexpr std::string_view fixed_patterns[] = {"0", "0.0", "0.00", "0.000"};
constexpr double decimal_shifts[] = {1, 10, 100, 1000};

/// All of them exact in a double.
constexpr double powers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,
                             1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19};
constexpr std::uint64_t whole_powers[] = {1ULL,
                                          10ULL,
                                          100ULL,
                                          1000ULL,
                                          10000ULL,
                                          100000ULL,
                                          1000000ULL,
                                          10000000ULL,
                                          100000000ULL,
                                          1000000000ULL,
                                          10000000000ULL,
                                          100000000000ULL,
                                          1000000000000ULL,
                                          10000000000000ULL,
                                          100000000000000ULL,
                                          1000000000000000ULL,
                                          10000000000000000ULL,
                                          100000000000000000ULL,
                                          1000000000000000000ULL,
                                          10000000000000000000ULL};
constexpr double least_size = 1e-4;

/// How many significant digits a type is written with.
template <class Real>
constexpr int significant_digits = std::numeric_limits<Real>::digits10 + (sizeof(Real) == 4 ? 1 : 0);
static_assert(significant_digits<float> == 7 && significant_digits<double> == 15);

/// A value rounded to its significant digits: `digits` divided by 10 to the `decimals`.
struct Rounded {
    std::uint64_t digits = 0;
    int decimals = 0;
};

/// Digits in front of the point; of 0.00x that is -2.
int whole_digits(double size) {
    if (size >= 1) {
        int count = 1;
        while (size >= powers[count]) ++count;
        return count;
    }
    int zeros = 0;
    for (double least = 0.1; size < least; least *= 0.1) ++zeros;
    return -zeros;
}

/// `size` from 1e-4 to below 10 to the significant digits of its type, to that many, ties to the even one.
/// The product with a power of ten and its rounding error are the exact product; of a single there is no
/// error.
template <class Real>
Rounded round_to_digits(double size) {
    constexpr int significant = significant_digits<Real>;
    const int decimals = significant - whole_digits(size);
    const double product = size * powers[decimals];
    const auto whole = static_cast<std::int64_t>(product);
    const double rest = product - static_cast<double>(whole);
    bool up = rest > 0.5;
    if (rest == 0.5) {
        const double error = significant <= 7 ? 0.0 : std::fma(size, powers[decimals], -product);
        up = error > 0 || (error == 0 && whole % 2 != 0);
    }
    return {static_cast<std::uint64_t>(whole) + (up ? 1 : 0), decimals};
}

/// A whole number over 10 to the `decimals`.
inline char* write_decimal(char* at, char* end, std::uint64_t value, int decimals) {
    const std::uint64_t scale = whole_powers[decimals];
    const std::uint64_t whole = value / scale;
    at = std::to_chars(at, end, whole).ptr;
    if (decimals == 0) return at;
    std::uint64_t fraction = value - whole * scale;
    *at = '.';
    for (char* digit = at + decimals; digit != at; --digit) {
        *digit = static_cast<char>('0' + fraction % 10);
        fraction /= 10;
    }
    return at + decimals + 1;
}

/// As fixed decimals a number goes away from zero from a half on, as its significant digits have it.
std::uint64_t round_half_up(const Rounded& rounded, int decimals) {
    if (rounded.decimals <= decimals) return rounded.digits * whole_powers[decimals - rounded.decimals];
    const std::uint64_t cut = whole_powers[rounded.decimals - decimals];
    return (rounded.digits + cut / 2) / cut;
}

constexpr std::size_t longest = 40;

/// The digits of 00 to 99.
struct DigitPairs {
    char digits[200];
    constexpr DigitPairs() : digits() {
        for (int i = 0; i < 100; ++i) {
            digits[2 * i] = static_cast<char>('0' + i / 10);
            digits[2 * i + 1] = static_cast<char>('0' + i % 10);
        }
    }
};
constexpr DigitPairs pairs;

inline char* put_pair_before(char* end, std::uint64_t number) {
    return static_cast<char*>(std::memcpy(end - 2, pairs.digits + 2 * number, 2));
}

inline char* put_digit_before(char* end, std::uint64_t digit) {
    *--end = static_cast<char>('0' + digit);
    return end;
}

/// Writes a number from its end on; with the decimals in its type, so that dividing by their power is a
/// product.
template <int decimals>
char* write_scaled(char* at, bool negative, std::uint64_t scaled) {
    constexpr std::size_t room = 24;  // 20 digits, a point and a sign
    char buffer[room];
    char* const end = buffer + room;
    char* first = end;
    std::uint64_t whole = scaled / whole_powers[decimals];
    const std::uint64_t fraction = scaled % whole_powers[decimals];
    if constexpr (decimals == 1) first = put_digit_before(first, fraction);
    if constexpr (decimals == 2) first = put_pair_before(first, fraction);
    if constexpr (decimals == 3)
        first = put_pair_before(put_digit_before(first, fraction % 10), fraction / 10);
    if constexpr (decimals > 0) *--first = '.';
    for (; whole >= 100; whole /= 100) first = put_pair_before(first, whole % 100);
    first = whole >= 10 ? put_pair_before(first, whole) : put_digit_before(first, whole);
    if (negative && scaled != 0) *--first = '-';
    const auto length = static_cast<std::size_t>(end - first);
    std::memcpy(at, first, length);
    return at + length;
}

char* write_scaled(char* at, bool negative, std::uint64_t scaled, int decimals) {
    switch (decimals) {
        case 0:
            return write_scaled<0>(at, negative, scaled);
        case 1:
            return write_scaled<1>(at, negative, scaled);
        case 2:
            return write_scaled<2>(at, negative, scaled);
        default:
            return write_scaled<3>(at, negative, scaled);
    }
}

/// Writes a number whose scaled value is too far from a tie for its last significant digit to decide it. Null
/// when it is not.
char* write_clear(char* at, bool negative, double scaled, double margin, int decimals) {
    const auto whole = static_cast<std::int64_t>(scaled);
    const double rest = scaled - static_cast<double>(whole);
    if (!(std::abs(rest - 0.5) > margin)) return nullptr;
    return write_scaled(at, negative, static_cast<std::uint64_t>(whole) + (rest > 0.5 ? 1 : 0), decimals);
}

template <class Real>
void append_shortest(std::string& text, Real value) {
    char buffer[longest];
    text.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr);
}

template <class Real>
char* write_by_pattern(char* at, Real value, int decimals) {
    const std::string text = format_number(value, fixed_patterns[decimals]);
    std::memcpy(at, text.data(), text.size());
    return at + text.size();
}

/// From 1e-4 on and below 10 to the significant digits of its type.
template <class Real>
char* write_rounded(char* at, Real value, int decimals) {
    const auto size = std::abs(static_cast<double>(value));
    return write_scaled(at, value < 0, round_half_up(round_to_digits<Real>(size), decimals), decimals);
}

template <class Real>
void append_written(std::string& text, Real value, int decimals) {
    char buffer[longest_fixed];
    text.append(buffer, write_fixed(buffer, value, decimals));
}

template <class Real>
void append_default_form(std::string& text, Real value) {
    constexpr int significant = significant_digits<Real>;
    const auto size = std::abs(static_cast<double>(value));
    if (value == 0) {
        text += " 0";
        return;
    }
    const bool in_range =
        size >= static_cast<double>(static_cast<Real>(least_size)) && size < powers[significant];
    const Rounded rounded = in_range ? round_to_digits<Real>(size) : Rounded{};
    // Digits that were carried over the end take the form with an exponent.
    if (!in_range || (rounded.decimals == 0 && rounded.digits >= whole_powers[significant])) {
        text += number_to_text(value);
        return;
    }
    char buffer[longest];
    buffer[0] = value < 0 ? '-' : ' ';
    char* end = write_decimal(buffer + 1, buffer + sizeof buffer, rounded.digits, rounded.decimals);
    if (rounded.decimals > 0) {
        while (end[-1] == '0') --end;
        if (end[-1] == '.') --end;
    }
    text.append(buffer, end);
}

}  // namespace

char* write_fixed(char* at, float value, int decimals) {
    // Of 7 digits one stands behind the decimals of so large a scaled value.
    constexpr double limit = 1e6;
    constexpr double margin = 0.051;
    const double size = std::abs(static_cast<double>(value));
    const double scaled = size * decimal_shifts[decimals];
    if (scaled < limit)
        if (char* const end = write_clear(at, value < 0, scaled, margin, decimals)) return end;
    return size < 1e7 ? write_rounded(at, value, decimals) : write_by_pattern(at, value, decimals);
}

char* write_fixed(char* at, double value, int decimals) {
    // Of 15 digits four stand behind the decimals of so large a scaled value.
    constexpr double limit = 1e11;
    constexpr double margin = 1e-3;
    const double size = std::abs(value);
    const double scaled = size * decimal_shifts[decimals];
    if (!(scaled < limit)) return write_by_pattern(at, value, decimals);
    char* const end = write_clear(at, value < 0, scaled, margin, decimals);
    return end ? end : write_rounded(at, value, decimals);
}

void append_fixed(std::string& text, float value, int decimals) {
    append_written(text, value, decimals);
}

void append_fixed(std::string& text, double value, int decimals) {
    append_written(text, value, decimals);
}

void append_default(std::string& text, float value) {
    append_default_form(text, value);
}

void append_default(std::string& text, double value) {
    append_default_form(text, value);
}

void append_round_trip(std::string& text, float value) {
    append_shortest(text, value);
}

void append_round_trip(std::string& text, double value) {
    append_shortest(text, value);
}

}  // namespace anomalis
