#include "c_interface/Manager.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <optional>

#include "c_interface/Sources.h"
#include "core_interface/OrbCoreInterface.h"
#include "manager/OrbClassTable.h"

using namespace TkPPDUpdating;

TkPPDUpdatingManager::TkPPDUpdatingManager()
    : core_(std::make_shared<const PPDModelCore>(CSources::queuePPDSource())),
      schemes_(CSources::schemes()) {
    // Updaters make profiles and media types through it. An application in C++ may have set its
    // own.
    static std::mutex mutex;
    const std::lock_guard lock(mutex);
    if (!OrbCoreInterface::core()) {
        OrbCoreInterface::setCore(core_);
    }
}

std::unique_ptr<OrbPPDConcreteUpdatingManager> TkPPDUpdatingManager::newManager() const {
    auto manager = std::make_unique<OrbPPDConcreteUpdatingManager>();
    for (const std::string& name : leftOut_) {
        manager->unregisterUpdaterClass(OrbClassFromName(name));
    }
    for (const auto& ownClass : ownClasses_) {
        manager->registerUpdaterClass(&ownClass->theClass());
    }
    return manager;
}

void TkPPDUpdatingManager::registerUpdater(const TkPPDUpdatingUpdater& updater) {
    auto added = std::make_unique<OwnUpdaterClass>(updater);
    const std::string_view name = added->theClass().name();
    const bool isTaken =
        OrbClassFromName(name) ||
        std::any_of(ownClasses_.begin(), ownClasses_.end(),
                    [name](const auto& each) { return each->theClass().name() == name; });
    if (isTaken) {
        throw CFailure(TkPPDUpdatingBadArgument,
                       "updater: the name \"" + std::string(name) + "\" is taken");
    }
    ownClasses_.push_back(std::move(added));
}

void TkPPDUpdatingManager::unregisterUpdater(std::string_view name) {
    const auto isNamed = [name](const auto& each) { return each->theClass().name() == name; };
    if (OrbClassFromName(name)) {
        leftOut_.emplace(name);
    } else if (std::erase_if(ownClasses_, isNamed) == 0) {
        throw CFailure(TkPPDUpdatingBadArgument,
                       "name: there is no updater \"" + std::string(name) + "\"");
    }
}

void TkPPDUpdatingManager::setMessage(const char* message) noexcept {
    const std::size_t length = std::min(std::strlen(message), message_.size() - 1);
    std::memcpy(message_.data(), message, length);
    message_[length] = '\0';
    // A text of the PPD or the printer may be in it.
    std::replace_if(
        message_.data(), message_.data() + length,
        [](char each) { return static_cast<unsigned char>(each) < ' ' || each == '\x7F'; }, ' ');
}
