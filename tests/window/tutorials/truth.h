#pragma once

#include <QString>

namespace anomalis::tutorials {

/// What the data of an example were made from: a parameter of a body, by its caption in the grid.
/// Raises std::runtime_error for a survey, body or parameter that there is not.
double true_value(const QString& example, const QString& body, const QString& caption);

}  // namespace anomalis::tutorials
