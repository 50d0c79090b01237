#pragma once

#include <QString>

namespace anomalis::tutorials {

/// True when what is told stands in what is seen: the same words, and numbers that are the same when those
/// that are seen are rounded to the digits that are told.
bool told_in(const QString& seen, const QString& told);
/// The same, and what is seen begins with it.
bool begins_as_told(const QString& seen, const QString& told);

}  // namespace anomalis::tutorials
