#pragma once

#include <CLI/CLI.hpp>
#include <cstddef>

namespace TkPPDUpdating {

/// The check of an option that takes a whole number from `least` to `most`, in decimal digits and
/// nothing else: what is wrong is said in words of our own, which no version of CLI11 changes.
CLI::Validator numberWithin(std::size_t least, std::size_t most);

}  // namespace TkPPDUpdating
