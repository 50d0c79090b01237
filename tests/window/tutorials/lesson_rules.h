#pragma once

#include <optional>

#include "window/tutorials/lesson.h"

namespace anomalis::tutorials {

struct FoundOrder {
    Order order;
    qsizetype begin = 0, end = 0;
};

/// The first order at or behind a place of the text. Outside of numbered steps a picture alone is one.
std::optional<FoundOrder> next_order(const QString& text, qsizetype from, bool numbered);

}  // namespace anomalis::tutorials
