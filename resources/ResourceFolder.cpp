#include "resources/ResourceFolder.h"

#include <filesystem>
#include <mutex>
#include <system_error>
#include <utility>

#include "resources/ObjectFile.h"

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
        found = pathForObjectAt(ObjectFile::ofThisCode().path);
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
        // NOLINTBEGIN(bugprone-branch-clone): the two ways may be the same.
        const fs::path installed =
            fs::path(objectPath).parent_path() / (objectPath == ObjectFile::pathOfThisProgram()
                                                      ? TKPPDUPDATING_WAY_FROM_PROGRAM_TO_DATA
                                                      : TKPPDUPDATING_WAY_FROM_LIBRARY_TO_DATA);
        // NOLINTEND(bugprone-branch-clone)
        if (isFolder(installed)) {
            return installed.string();
        }
        if (liesBelow(objectPath, TKPPDUPDATING_BUILD_TREE) &&
            isFolder(TKPPDUPDATING_SOURCE_RESOURCES)) {
            return TKPPDUPDATING_SOURCE_RESOURCES;
        }
    }
    const fs::path configured = TKPPDUPDATING_CONFIGURED_DATA;
    return isFolder(configured) ? std::optional(configured.string()) : std::nullopt;
}

}  // namespace TkPPDUpdating
