#include <ctime>

// The clock of this program stands still, so that what bears a date is the same picture on every day.
extern "C" std::time_t time(std::time_t* into) {
    constexpr std::time_t noon = 1'767'268'800;  // 2026-01-01, 12:00 UTC
    if (into) *into = noon;
    return noon;
}
