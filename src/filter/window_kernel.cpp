#include "filter/window_kernel.h"

#include "vector/vector_math.h"

namespace anomalis::filter::ANOMALIS_VECTOR_LEVEL {

namespace {

using Four = double __attribute__((vector_size(side_by_side * sizeof(double))));

ANOMALIS_INLINE Four four(const double* from) {
    Four value;
    __builtin_memcpy(&value, from, sizeof value);
    return value;
}

struct Reals {
    Four re;

    ANOMALIS_INLINE static Reals of(const FourNumbers& numbers) { return {four(numbers.re)}; }
    ANOMALIS_INLINE static Reals of(double value) { return {Four{} + value}; }
    ANOMALIS_INLINE Reals times(const Reals& other) const { return {re * other.re}; }
    ANOMALIS_INLINE Reals times(double value) const { return {re * value}; }
    ANOMALIS_INLINE Reals plus(const Reals& other) const { return {re + other.re}; }
    ANOMALIS_INLINE Reals plus(double value) const { return {re + value}; }
    ANOMALIS_INLINE Four real_of_product(const Reals& other) const { return re * other.re; }
};

struct Complexes {
    Four re;
    Four im;

    ANOMALIS_INLINE static Complexes of(const FourNumbers& numbers) {
        return {four(numbers.re), four(numbers.im)};
    }
    ANOMALIS_INLINE static Complexes of(double value) { return {Four{} + value, Four{}}; }
    ANOMALIS_INLINE Complexes times(const Complexes& other) const {
        return {re * other.re - im * other.im, re * other.im + im * other.re};
    }
    ANOMALIS_INLINE Complexes times(double value) const { return {re * value, im * value}; }
    ANOMALIS_INLINE Complexes plus(const Complexes& other) const { return {re + other.re, im + other.im}; }
    ANOMALIS_INLINE Complexes plus(double value) const { return {re + value, im}; }
    ANOMALIS_INLINE Four real_of_product(const Complexes& other) const {
        return re * other.re - im * other.im;
    }
};

ANOMALIS_INLINE double sum_of(Four value) {
    return (value[0] + value[1]) + (value[2] + value[3]);
}

/// The windows that begin in [from, from + window). Each is the tail of the values before `end` and the head
/// of those from there on: the tails grow leftwards by Horner's rule, the heads rightwards.
template <class Numbers>
ANOMALIS_INLINE void add_block(const TermGroup& group, const double* in, std::size_t from, double* out,
                               std::size_t count) {
    const auto weight = Numbers::of(group.weight), base = Numbers::of(group.base);
    const std::size_t end = from + group.window;
    const std::size_t stop = end < count ? end : count;
    auto tail = Numbers::of(0.0);
    for (std::size_t k = end; k-- > stop;) tail = tail.times(base).plus(in[k]);
    for (std::size_t k = stop; k-- > from;) {
        tail = tail.times(base).plus(in[k]);
        out[k] += sum_of(weight.real_of_product(tail));
    }
    const auto inverse = Numbers::of(group.inverse);
    auto reach = Numbers::of(group.last);
    auto head = Numbers::of(0.0);
    auto power = Numbers::of(1.0);
    for (std::size_t k = from + 1; k < stop; ++k) {
        head = head.plus(power.times(in[k + group.window - 1]));
        out[k] += sum_of(reach.real_of_product(head));
        power = power.times(base);
        reach = reach.times(inverse);
    }
}

template <class Numbers>
ANOMALIS_INLINE void add_windows(const TermGroup& group, const double* in, double* out, std::size_t count) {
    for (std::size_t from = 0; from < count; from += group.window)
        add_block<Numbers>(group, in, from, out, count);
}

}  // namespace

void add_real_windows(const TermGroup& group, const double* in, double* out, std::size_t count) {
    add_windows<Reals>(group, in, out, count);
}

void add_complex_windows(const TermGroup& group, const double* in, double* out, std::size_t count) {
    add_windows<Complexes>(group, in, out, count);
}

}  // namespace anomalis::filter::ANOMALIS_VECTOR_LEVEL
