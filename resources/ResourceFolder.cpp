#include "resources/ResourceFolder.h"

#include <dlfcn.h>
#include <link.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <system_error>
#include <utility>

namespace TkPPDUpdating {

namespace {

namespace fs = std::filesystem;

std::optional<std::string>& pathThatWasSet() {
    static std::optional<std::string> path;
    return path;
}

bool isFolder(const fs::path& path) {
    std::error_code ignored;
    return fs::is_directory(path, ignored);
}

/// Whether `path` lies below `folder`, both with symbolic links resolved.
bool liesBelow(const fs::path& path, const fs::path& folder) {
    std::error_code failed;
    const fs::path realPath = fs::canonical(path, failed);
    const fs::path realFolder = failed ? fs::path() : fs::canonical(folder, failed);
    if (failed) {
        return false;
    }
    const fs::path way = realPath.lexically_relative(realFolder);
    return !way.empty() && *way.begin() != "..";
}

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

/// The object file that this function's code runs from, as an absolute path; empty when unknown.
std::string pathOfThisObject() {
    Dl_info information{};
    void* map = nullptr;
    if (::dladdr1(reinterpret_cast<const void*>(&pathOfThisObject), &information, &map,
                  RTLD_DL_LINKMAP) == 0) {
        return {};
    }
    const std::string name = static_cast<const link_map*>(map)->l_name;
    if (name.empty()) {
        // The program itself: its recorded name is the caller's choice and may be relative, so ask
        // the kernel.
        std::error_code ignored;
        return fs::read_symlink("/proc/self/exe", ignored).string();
    }
    // A relative name was meant for the working directory at load time, which may be another now.
    return name.starts_with('/')
               ? name
               : pathOfFileMappedAt(reinterpret_cast<const void*>(&pathOfThisObject));
}

}  // namespace

std::optional<std::string> ResourceFolder::path() {
    if (pathThatWasSet()) {
        return pathThatWasSet();
    }
    // The object stays where it is; a folder that was not there is looked for again.
    static std::mutex mutex;
    static std::optional<std::string> found;
    const std::lock_guard lock(mutex);
    if (!found) {
        found = pathForObjectAt(pathOfThisObject());
    }
    return found;
}

void ResourceFolder::setPath(std::optional<std::string> path) {
    pathThatWasSet() = std::move(path);
}

std::optional<std::string> ResourceFolder::pathForObjectAt(std::string_view objectPath) {
    if (!objectPath.empty()) {
        // The way is left to the file system to walk: a folder on it may be a symbolic link, as
        // /lib is on Debian.
        const fs::path installed = fs::path(objectPath).parent_path() / TKPPDUPDATING_WAY_TO_DATA;
        if (isFolder(installed)) {
            return installed.string();
        }
        if (liesBelow(objectPath, TKPPDUPDATING_BUILD_TREE) &&
            isFolder(TKPPDUPDATING_SOURCE_RESOURCES)) {
            return TKPPDUPDATING_SOURCE_RESOURCES;
        }
    }
    // Empty for the shared library, whose place is always known.
    const fs::path configured = TKPPDUPDATING_CONFIGURED_DATA;
    return isFolder(configured) ? std::optional(configured.string()) : std::nullopt;
}

}  // namespace TkPPDUpdating
