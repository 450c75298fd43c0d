#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace TkPPDUpdating {

/// A whole PPD text (UTF-8): immutable and shared, so that it passes from updater to updater
/// without a copy. Null means no text (never an empty one), and two equal pointers are the same
/// text.
using PPDText = std::shared_ptr<const std::string>;

/// Makes a text of its own from `content`.
inline PPDText makePPDText(std::string content) {
    return std::make_shared<const std::string>(std::move(content));
}

}  // namespace TkPPDUpdating
