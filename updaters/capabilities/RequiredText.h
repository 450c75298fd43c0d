#pragma once

#include <string>
#include <string_view>

namespace TkPPDUpdating {

/// A text that every match of a POSIX extended regular expression holds: the longest run of plain
/// characters that stands in it outside of groups, brackets and alternatives and is not optional.
/// Empty when there is none that is easily told, and when a bracket, a group, a bound or an escape
/// is not complete, with which the expression does not compile.
///
/// Where such a text is not in a line, the expression need not be tried on it.
std::string requiredTextOfExpression(std::string_view expression);

}  // namespace TkPPDUpdating
