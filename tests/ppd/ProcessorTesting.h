#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ppd/OrbPPDProcessor.h"

/// Short forms of what the tests of the processor do again and again.
namespace TkPPDUpdating::Testing {

inline constexpr OrbPPDLineRange kNotFound = {kTkPPDProcessorPPDEndLocation, 0};

inline std::unique_ptr<OrbPPDProcessor> processorOver(std::string content) {
    return OrbPPDProcessor::processorWithPPDContent(makePPDText(std::move(content)));
}

inline std::vector<std::string> textsOf(const OrbPPDLines& lines) {
    std::vector<std::string> texts;
    for (std::size_t index = 0; index < lines.size(); ++index) {
        texts.emplace_back(lines.at(index));
    }
    return texts;
}

/// The lines, which must be there.
inline std::vector<std::string> linesOf(OrbPPDProcessor& processor) {
    return textsOf(*processor.lines());
}

/// Inserts an attribute without option keyword at that line; whether it was inserted.
inline bool insertAt(OrbPPDProcessor& processor, std::size_t location, std::string_view keyword,
                     std::string_view value) {
    processor.setInsertLocation(location);
    return processor.insertAttributeWithKeyword_spec_text_value_wrap(keyword, std::nullopt,
                                                                     std::nullopt, value, false);
}

inline bool insertAtEnd(OrbPPDProcessor& processor, std::string_view keyword,
                        std::string_view value) {
    return insertAt(processor, kTkPPDProcessorPPDEndLocation, keyword, value);
}

}  // namespace TkPPDUpdating::Testing
