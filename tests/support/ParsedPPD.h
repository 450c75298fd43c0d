#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include "backends/ppdmodel/PPDModelFile.h"
#include "ppd/PPDText.h"

namespace TkPPDUpdating::Testing {

/// The parsed PPD of these lines, which the first line of a PPD is put before.
inline std::shared_ptr<const PPDModelFile> parsedPPD(std::string_view lines) {
    std::string reason;
    auto file = PPDModelFile::fileWithText(
        makePPDText("*PPD-Adobe: \"4.3\"\n" + std::string(lines)), &reason);
    if (!file) {
        throw std::logic_error("the test's PPD does not parse: " + reason);
    }
    return file;
}

}  // namespace TkPPDUpdating::Testing
