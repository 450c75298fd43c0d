#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <utility>

namespace TkPPDUpdating::Testing {

/// The bytes of a file, in one piece: byte by byte it takes most of a test's time without
/// optimization. Empty when it cannot be read.
inline std::string contentsOfFile(const std::filesystem::path& path) {
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return std::move(bytes).str();
}

}  // namespace TkPPDUpdating::Testing
