#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "tests/hostile/LibcupsReading.h"

namespace TkPPDUpdating::Testing {

using LibcupsFacts = std::vector<LibcupsFact>;

/// Whether a main keyword is one of the attributes "*KEYWORD: value" that a printer's texts and
/// numbers become.
bool isAttributeOfPrinters(std::string_view keyword);

/// Whether the name is one that is given to a custom media type: "custom" and a number.
bool isCustomName(std::string_view name);

/// The keyword without the language of a translation line.
std::string_view withoutLanguage(std::string_view keyword);

/// Whether the fact is a value of a printer in a place of its own.
bool isOfPrinter(const LibcupsFact& fact);

/// Whether the fact is one that the custom media updater makes of a printer's media types.
bool isOfCustomMedia(const LibcupsFact& fact);

/// How two readings of libcups differ.
struct FactDifference {
    /// What is wrong, one phrase each; empty when nothing is.
    std::vector<std::string> findings;
    /// How many choices of media types, and of profiles, were added.
    std::size_t mediaTypes = 0;
    std::size_t profiles = 0;
};

/// What may be different.
struct FactRules {
    using Test = std::function<bool(const LibcupsFact&)>;

    /// What libcups need not know any more.
    Test mayGo;
    /// And of which it may know so many less.
    std::map<LibcupsFact, int> mayGoSoOften;
    Test mayBeNew;
};

/// Compares what libcups knows of a PPD with what it knew before, in order:
/// - what it knew is there still, but what may go;
/// - what is new may be new, and has no control character;
/// - the code of a new choice of the custom media updater is its own, and none is there twice.
FactDifference differenceOfFacts(const LibcupsFacts& before, const LibcupsFacts& after,
                                 const FactRules& rules);

}  // namespace TkPPDUpdating::Testing
