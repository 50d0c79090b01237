#pragma once

#include "core/fit_record.h"
#include "core/formulas.h"

namespace anomalis {
class Settings;
struct Workspace;
}  // namespace anomalis

// What a person chose last and the next line begins with, kept between sessions.
namespace anomalis::flow {

/// The formulas of a line that is loaded without a workspace file: those last chosen for such a line, the
/// exact ones before the first choice. A workspace file says its own.
Formulas formulas_of_new_line(const Settings& settings);
void choose_formulas_of_new_line(Formulas formulas, Settings& settings);
/// The formulas of a workspace were chosen. Kept when it has no file.
void remember_formulas(const Workspace& workspace, Settings& settings);

/// The method of the last run, least squares before the first one.
InversionMethod last_method(const Settings& settings);
void remember_method(InversionMethod method, Settings& settings);

}  // namespace anomalis::flow
