#include "resources/PropertyListCache.h"

#include <sys/stat.h>

#include <ctime>
#include <mutex>
#include <optional>
#include <tuple>
#include <utility>

#include "resources/PropertyListReader.h"

namespace TkPPDUpdating {

namespace {

/// A file whose last change is so recent may change again without showing it.
constexpr std::time_t kSecondsUntilSettled = 2;

using Identity = std::tuple<dev_t, ino_t, off_t, std::time_t, long, std::time_t, long>;

std::optional<Identity> identityOfFile(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) {
        return std::nullopt;
    }
    return Identity{status.st_dev,         status.st_ino,          status.st_size,
                    status.st_mtim.tv_sec, status.st_mtim.tv_nsec, status.st_ctim.tv_sec,
                    status.st_ctim.tv_nsec};
}

bool isSettled(const Identity& identity) {
    return std::get<5>(identity) + kSecondsUntilSettled < std::time(nullptr);
}

struct Kept {
    std::mutex mutex;
    std::optional<Identity> identity;
    std::shared_ptr<const PropertyList> list;
};

Kept& kept() {
    static Kept theKept;
    return theKept;
}

}  // namespace

std::shared_ptr<const PropertyList> sharedPropertyListWithContentsOfFile(const std::string& path) {
    const std::lock_guard lock(kept().mutex);
    const auto identity = identityOfFile(path);
    if (identity && kept().identity == identity) {
        return kept().list;
    }
    auto list = PropertyListReader::propertyListWithContentsOfFile(path);
    auto shared = list ? std::make_shared<const PropertyList>(*std::move(list)) : nullptr;
    if (shared && identity && isSettled(*identity) && identityOfFile(path) == identity) {
        kept().identity = identity;
        kept().list = shared;
    }
    return shared;
}

}  // namespace TkPPDUpdating
