#pragma once

#include <cstddef>
#include <string_view>

#include "c_interface/TkPPDUpdating.h"

namespace TkPPDUpdating {

/// The bytes of an argument that must be a text of at most that many. Raises `CFailure`, which
/// calls it `name`, before it looks at a byte of one that is null, empty, too long or without an
/// end.
std::string_view checkedText(const TkPPDUpdatingText& text, const char* name, std::size_t most);

/// The same for a path, URI, name or keyword, in which there is no NUL either.
std::string_view checkedName(const TkPPDUpdatingText& text, const char* name);

/// Raises `CFailure` when an argument is null.
void checkNotNull(const void* argument, const char* name);

/// A text for a caller in C.
inline TkPPDUpdatingText textForC(std::string_view text) {
    return {text.data(), text.size()};
}

}  // namespace TkPPDUpdating
