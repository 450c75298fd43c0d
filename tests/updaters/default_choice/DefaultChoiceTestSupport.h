#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "ppd/PPDText.h"

namespace TkPPDUpdating::Testing {

/// The text behind a result, or nothing for null, in a form that test messages can print.
inline std::optional<std::string> textOf(const PPDText& contents) {
    return contents ? std::optional(*contents) : std::nullopt;
}

}  // namespace TkPPDUpdating::Testing
