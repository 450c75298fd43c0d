#pragma once

#include <span>
#include <string_view>

namespace TkPPDUpdating {

/// The keywords of "media-type" in the IANA registry of IPP attributes (PWG 5100.7, PWG 5101.1 and
/// later registrations), sorted. Every driver has words of its own for them.
std::span<const std::string_view> standardMediaTypes();

/// Whether the text is one of them, to the letter.
bool isStandardMediaType(std::string_view text);

}  // namespace TkPPDUpdating
