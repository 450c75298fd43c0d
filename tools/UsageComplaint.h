#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace TkPPDUpdating {

/// What the user is told of arguments that the parser does not take, one phrase with what was
/// probably meant and a hint at the help that tells better.
///
/// `parserSays` is the parser's own word. It speaks of what is missing where an argument that it
/// does not know took its place, such as a mistyped command or option: then that one is named.
std::string usageComplaint(const CLI::App& application, const std::vector<std::string>& arguments,
                           const std::string& parserSays);

}  // namespace TkPPDUpdating
