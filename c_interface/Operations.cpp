// The functions of TkPPDUpdating.h that take a manager.
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <utility>

#include "backends/ppdmodel/PPDModelFile.h"
#include "c_interface/Arguments.h"
#include "c_interface/Failure.h"
#include "c_interface/Manager.h"
#include "c_interface/Sources.h"
#include "c_interface/TkPPDUpdating.h"
#include "core_interface/TkCSKeys.h"
#include "sync/PPDUpdate.h"

using namespace TkPPDUpdating;

namespace {

using PPDPointer = std::shared_ptr<const PPDModelFile>;

PPDPointer PPDOfFile(const std::string& path) {
    std::string reason;
    auto PPD = PPDModelFile::fileWithContentsOfFile(path, &reason);
    return PPD ? PPD : throw CFailure(TkPPDUpdatingNoPPD, path + ": " + reason);
}

PPDPointer PPDOfQueue(const TkPPDUpdatingManager& manager, const std::string& queueName) {
    std::string reason;
    auto PPD = manager.core().queuePPDFile(queueName, reason);
    return PPD ? PPD : throw CFailure(TkPPDUpdatingNoPPD, queueName + ": " + reason);
}

/// Memory for a caller in C; raises `std::bad_alloc` when there is none.
void* allocated(std::size_t size) {
    void* const memory = std::malloc(size);
    return memory ? memory : throw std::bad_alloc();
}

void giveContents(const std::string& text, char** contents, std::size_t* length) {
    auto* const copy = static_cast<char*>(allocated(text.size() + 1));
    std::memcpy(copy, text.c_str(), text.size() + 1);
    *contents = copy;
    *length = text.size();
}

/// One block: the array, then the texts.
void giveValues(const OrbPPDUpdatingValues& values, TkPPDUpdatingValue** given,
                std::size_t* count) {
    if (values.empty()) {
        return;
    }
    std::size_t bytes = values.size() * sizeof(TkPPDUpdatingValue);
    for (const auto& [key, value] : values) {
        bytes += key.size() + value.size() + 2;
    }
    auto* const array = static_cast<TkPPDUpdatingValue*>(allocated(bytes));
    char* place = reinterpret_cast<char*>(array + values.size());
    const auto placed = [&place](const std::string& text) {
        std::memcpy(place, text.c_str(), text.size() + 1);
        const TkPPDUpdatingText copy = {place, text.size()};
        place += text.size() + 1;
        return copy;
    };
    TkPPDUpdatingValue* next = array;
    for (const auto& [key, value] : values) {
        next->key = placed(key);
        next->value = placed(value);
        ++next;
    }
    *given = array;
    *count = values.size();
}

/// Makes the answer of the source, when there is one and an updater reads it, that of the update.
void answer(TkPPDUpdatingManager& manager, PPDUpdate& update,
            const TkPPDUpdatingStatusSource* source, const OrbDictionary& parameters,
            bool isAlwaysAsked) {
    if (!source) {
        return;
    }
    CSources::check(*source, manager.schemes());
    if (!isAlwaysAsked && !update.needsStatus()) {
        return;
    }
    update.setStatus(CSources::status(*source, manager.schemes(), parameters),
                     PPDUpdate::Rule::whatWasNotToldStays);
    manager.setNote(PPDUpdate::wordsForKeptEntries(update.keptEntries()));
}

PPDUpdate updateOf(const TkPPDUpdatingManager& manager, PPDPointer PPD) {
    return {manager.newManager(), std::move(PPD), PPDUpdate::Defaults::areAsWritten};
}

OrbDictionary filterModeParameters() {
    return {{std::string(kTkCSIsCUPSFilterModeKey), true}};
}

}  // namespace

TkPPDUpdatingResult TkPPDUpdatingManager_create(TkPPDUpdatingManager** manager) {
    if (!manager) {
        return TkPPDUpdatingBadArgument;
    }
    *manager = nullptr;
    try {
        *manager = new TkPPDUpdatingManager();
        return TkPPDUpdatingDone;
    } catch (const std::bad_alloc&) {
        return TkPPDUpdatingNoMemory;
    } catch (...) {
        return TkPPDUpdatingInternalError;
    }
}

void TkPPDUpdatingManager_free(TkPPDUpdatingManager* manager) {
    delete manager;
}

const char* TkPPDUpdating_message(const TkPPDUpdatingManager* manager) {
    return manager ? manager->message() : TkPPDUpdating_meaning(TkPPDUpdatingBadArgument);
}

const char* TkPPDUpdating_note(const TkPPDUpdatingManager* manager) {
    return manager ? manager->note() : "";
}

const char* TkPPDUpdating_meaning(TkPPDUpdatingResult result) {
    switch (static_cast<int>(result)) {
        case TkPPDUpdatingDone:
            return "done";
        case TkPPDUpdatingBadArgument:
            return "an argument is null or cannot be used, or the manager is at work";
        case TkPPDUpdatingNoMemory:
            return "there is no memory left";
        case TkPPDUpdatingNoPPD:
            return "the PPD cannot be read";
        case TkPPDUpdatingBadDeviceURI:
            return "the device URI is malformed, or nothing serves its scheme";
        case TkPPDUpdatingBadRecording:
            return "the recorded status is malformed or cannot be read";
        case TkPPDUpdatingNoStatus:
            return "the printer gave no status";
        case TkPPDUpdatingBrokenAttribute:
            return "an attribute of the PPD ends at its colon";
        case TkPPDUpdatingCallFailed:
            return "a function of the caller's failed";
        case TkPPDUpdatingInternalError:
            return "an error inside the library";
        default:
            return "no result of this library";
    }
}

void TkPPDUpdating_free(void* contentsOrValues) {
    std::free(contentsOrValues);
}

TkPPDUpdatingResult TkPPDUpdating_updatedPPDContentsForFile_deviceURI(
    TkPPDUpdatingManager* manager, TkPPDUpdatingText path, const TkPPDUpdatingStatusSource* source,
    char** contents, size_t* length) {
    if (contents && length) {
        *contents = nullptr;
        *length = 0;
    }
    return TkPPDUpdatingManager::run(manager, [&](TkPPDUpdatingManager& own) {
        checkNotNull(contents, "contents");
        checkNotNull(length, "length");
        PPDUpdate update = updateOf(own, PPDOfFile(std::string(checkedName(path, "path"))));
        answer(own, update, source, {}, false);
        giveContents(*update.updatedText(std::nullopt), contents, length);
    });
}

TkPPDUpdatingResult TkPPDUpdating_updatedPPDContentsForFile_queueName(TkPPDUpdatingManager* manager,
                                                                      TkPPDUpdatingText path,
                                                                      TkPPDUpdatingText queueName,
                                                                      char** contents,
                                                                      size_t* length) {
    if (contents && length) {
        *contents = nullptr;
        *length = 0;
    }
    return TkPPDUpdatingManager::run(manager, [&](TkPPDUpdatingManager& own) {
        checkNotNull(contents, "contents");
        checkNotNull(length, "length");
        const PPDPointer PPD = PPDOfFile(std::string(checkedName(path, "path")));
        const std::string queue(checkedName(queueName, "queue name"));
        PPDOfQueue(own, queue);
        const PPDText text = own.newManager()->updatedPPDContentsForContents_PPDFile_queueName(
            PPD->text(), *PPD, queue);
        if (!text) {
            throw CFailure(TkPPDUpdatingNoPPD, queue + ": the queue has no PPD any more");
        }
        giveContents(*text, contents, length);
    });
}

TkPPDUpdatingResult TkPPDUpdating_PPDUpdatingValuesForQueueWithName_deviceURI(
    TkPPDUpdatingManager* manager, TkPPDUpdatingText queueName,
    const TkPPDUpdatingStatusSource* source, TkPPDUpdatingValue** values, size_t* count) {
    if (values && count) {
        *values = nullptr;
        *count = 0;
    }
    return TkPPDUpdatingManager::run(manager, [&](TkPPDUpdatingManager& own) {
        checkNotNull(values, "values");
        checkNotNull(count, "count");
        const std::string queue(checkedName(queueName, "queue name"));
        PPDUpdate update = updateOf(own, PPDOfQueue(own, queue));
        answer(own, update, source, filterModeParameters(), false);
        auto all = source && update.needsStatus()
                       ? update.updatingValues(std::nullopt)
                       : own.newManager()->PPDUpdatingValuesForQueueWithName_deviceURI(
                             queue, std::nullopt);
        giveValues(all.value_or(OrbPPDUpdatingValues()), values, count);
    });
}

TkPPDUpdatingResult TkPPDUpdating_PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile(
    TkPPDUpdatingManager* manager, const TkPPDUpdatingStatusSource* source, TkPPDUpdatingText path,
    TkPPDUpdatingValue** values, size_t* count) {
    if (values && count) {
        *values = nullptr;
        *count = 0;
    }
    return TkPPDUpdatingManager::run(manager, [&](TkPPDUpdatingManager& own) {
        checkNotNull(source, "source");
        checkNotNull(values, "values");
        checkNotNull(count, "count");
        PPDUpdate update = updateOf(own, PPDOfFile(std::string(checkedName(path, "path"))));
        answer(own, update, source, filterModeParameters(), true);
        giveValues(update.updatingValues(std::nullopt).value_or(OrbPPDUpdatingValues()), values,
                   count);
    });
}

TkPPDUpdatingResult TkPPDUpdating_registerUpdater(TkPPDUpdatingManager* manager,
                                                  const TkPPDUpdatingUpdater* updater) {
    return TkPPDUpdatingManager::run(manager, [&](TkPPDUpdatingManager& own) {
        checkNotNull(updater, "updater");
        own.registerUpdater(*updater);
    });
}

TkPPDUpdatingResult TkPPDUpdating_unregisterUpdater(TkPPDUpdatingManager* manager,
                                                    TkPPDUpdatingText name) {
    return TkPPDUpdatingManager::run(manager, [&](TkPPDUpdatingManager& own) {
        own.unregisterUpdater(checkedName(name, "name"));
    });
}
