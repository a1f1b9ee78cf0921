// The arithmetic of variable expressions: numbers, names of other
// variables, + - * / ^, parentheses and the functions sqrt, abs, sin, cos
// and tan (degrees).
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "tvapi/core.h"

namespace tvsim {

// The value of a name, or nothing for a name that is not known.
using NameLookup = std::function<std::optional<double>(const tvapi::WString&)>;

// Nothing when the text does not parse, names an unknown value, divides by
// zero or comes to a value that is not finite.
std::optional<double> Evaluate(const tvapi::WString& expression, const NameLookup& lookup);

// The names an expression refers to; nothing when it does not parse.
std::optional<std::vector<tvapi::WString>> ReferencedNames(const tvapi::WString& expression);

// A letter or underscore, then letters, digits and underscores; units above
// ASCII count as letters.
bool IsIdentifier(const tvapi::WString& name);

}  // namespace tvsim
