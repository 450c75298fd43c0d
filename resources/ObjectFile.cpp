#include "resources/ObjectFile.h"

#include <dlfcn.h>
#include <link.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace TkPPDUpdating {

namespace {

/// The file whose contents stand at that address, as the kernel knows it (proc(5)); empty when
/// there is none.
std::string pathOfFileMappedAt(const void* address) {
    const auto wanted = reinterpret_cast<std::uintptr_t>(address);
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        // 7f5c1b2d4000-7f5c1b2d6000 r-xp 00001000 fe:01 1234    /path
        const char* const end = line.data() + line.size();
        std::uintptr_t from = 0;
        std::uintptr_t to = 0;
        const char* const dash = std::from_chars(line.data(), end, from, 16).ptr;
        if (dash != end && std::from_chars(dash + 1, end, to, 16).ec == std::errc() &&
            from <= wanted && wanted < to) {
            return line.substr(std::min(line.find('/'), line.size()));
        }
    }
    return {};
}

}  // namespace

ObjectFile ObjectFile::ofThisCode() {
    const auto* const address = reinterpret_cast<const void*>(&ObjectFile::ofThisCode);
    Dl_info information{};
    void* map = nullptr;
    if (::dladdr1(address, &information, &map, RTLD_DL_LINKMAP) == 0) {
        return {};
    }
    const std::string name = static_cast<const link_map*>(map)->l_name;
    if (name.empty()) {
        // The program itself: its recorded name is the caller's choice and may be relative, so ask
        // the kernel.
        return {pathOfThisProgram(), true};
    }
    // A relative name was meant for the working directory at load time, which may be another now.
    return {name.starts_with('/') ? name : pathOfFileMappedAt(address), false};
}

std::string ObjectFile::pathOfThisProgram() {
    std::error_code ignored;
    return std::filesystem::read_symlink("/proc/self/exe", ignored).string();
}

}  // namespace TkPPDUpdating
