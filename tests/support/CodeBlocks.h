#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/FileContents.h"

namespace TkPPDUpdating::Testing {

/// A file of the sources, named from their root.
inline std::string textOfSource(const std::string& path) {
    const std::string whole = TKPPDUPDATING_SOURCE_DIR "/" + path;
    if (!std::filesystem::exists(whole)) {
        throw std::runtime_error("no file " + path);
    }
    return contentsOfFile(whole);
}

/// The fenced code blocks of that language on a Markdown page, in their order; the empty language
/// is that of fences without one.
inline std::vector<std::string> codeBlocksOf(const std::string& page, std::string_view language) {
    const std::string fence = "\n```";
    std::vector<std::string> blocks;
    for (std::size_t at = page.find(fence); at != std::string::npos;) {
        const std::size_t name = at + fence.size();
        const std::size_t start = page.find('\n', name);
        const std::size_t end = page.find(fence, start);
        if (end == std::string::npos) {
            throw std::runtime_error("a code block is not closed");
        }
        if (page.substr(name, start - name) == language) {
            blocks.push_back(page.substr(start + 1, end - start));
        }
        at = page.find(fence, end + fence.size());
    }
    return blocks;
}

}  // namespace TkPPDUpdating::Testing
