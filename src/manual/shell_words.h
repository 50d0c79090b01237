#pragma once

#include <string>

#include "manual/sheet.h"

// What the completions of all shells have in common.
namespace anomalis::manual {

/// "'it'\''s'": one word for any shell of the family of sh, taken as it stands.
std::string in_quotes(const std::string& text);
/// The name of a function: "anomalis_batch".
std::string function_name(const std::string& program);
/// Words that go on behind the choice, such as "mag=".
bool goes_on(const ValueForm& form);
/// How the places of a sheet without names are completed: they are all of one kind. Null for none.
const ValueForm* place_form(const Sheet& sheet);
/// "mag grav joint"
std::string choices_text(const ValueForm& form);

}  // namespace anomalis::manual
