#pragma once

#include <string_view>

namespace TkPPDUpdating {

/// Whether the keyword is a value of "media-type" that a standard lists (PWG 5100.7, PWG 5101.1 and
/// the IANA registry of IPP keywords), so that every PPD has words of its own for it.
bool isStandardMediaType(std::string_view keyword);

}  // namespace TkPPDUpdating
