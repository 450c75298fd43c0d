#pragma once

#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "fuzz/MemoryFile.h"
#include "fuzz/UpdateInput.h"
#include "manager/OrbPPDConcreteUpdatingManager.h"
#include "manager/OrbPPDUpdatingContext.h"
#include "tests/support/CoreWithQueue.h"
#include "text/FileURL.h"

/// What the operations of a manager are called on, and what they give.
namespace TkPPDUpdating::Fuzzing {

using Manager = OrbPPDConcreteUpdatingManager;

/// The result, or how the operation ended.
template <typename Result>
struct Outcome {
    std::optional<Result> result;
    bool isOutOfRange = false;

    friend bool operator==(const Outcome&, const Outcome&) = default;
};

/// A text as its bytes, so that two can be compared; nothing for none.
inline std::optional<std::string> comparable(const PPDText& text) {
    return text ? std::optional(*text) : std::nullopt;
}
inline std::optional<OrbPPDUpdatingValues> comparable(
    const std::optional<OrbPPDUpdatingValues>& values) {
    return values;
}

/// At an attribute that has nothing after its colon, an operation ends in the error that the
/// interface names.
template <typename Operation>
auto outcomeOf(const Operation& operation) {
    Outcome<typename decltype(comparable(operation()))::value_type> outcome;
    try {
        outcome.result = comparable(operation());
    } catch (const std::out_of_range&) {
        outcome.isOutOfRange = true;
    }
    return outcome;
}

/// What stands behind the core interface in one run.
struct World {
    explicit World(std::string_view input)
        : recording(takenPart(input)),
          recordingFile(recording),
          URI(fileURLFromPath(recordingFile.path())),
          text(makePPDText(std::string(takenPart(input)))),
          PPDFile(*text),
          PPD(PPDModelFile::fileWithText(text)),
          queue(takenPPD(input)) {
        std::string_view rest = recording;
        const auto taken = takenStatus(rest);
        status = taken.value_or(nullptr);
        isSilent = taken && !*taken;
        DeviceStatusSchemes schemes;
        registerRecordedDeviceStatus(schemes);
        services = std::make_shared<const DeviceStatusSchemes>(schemes);
        setTheSameWorld(std::make_shared<const Testing::CoreWithQueue>(queue));
        environment = input;
        if (!environment.empty()) {
            setEnvironment(environment);
        }
        OrbCoreInterface::setClock(std::make_shared<const Testing::FakeClock>(252532800));
        OrbCoreInterface::setCommunicationServices(services);
    }

    static void setEnvironment(std::string_view lines) {
        std::map<std::string, std::string> variables;
        while (!lines.empty()) {
            std::string_view value = takenLine(lines);
            const std::string name(takenUpTo(value, "="));
            variables.emplace(name, value);
        }
        OrbCoreInterface::setEnvironment(
            std::make_shared<const Testing::FakeEnvironment>(variables));
    }

    OrbDictionary context() const {
        return OrbPPDUpdatingContext::contextWithDeviceStatus_parameters(status, nullptr);
    }

    std::string_view recording;
    std::string_view environment;
    MemoryFile recordingFile;
    std::string URI;
    PPDText text;
    MemoryFile PPDFile;
    ParsedPPD PPD;
    ParsedPPD queue;
    Status status;
    bool isSilent = false;
    std::shared_ptr<const TkCommunicationServices> services;
};

inline auto updatedText(const Manager& manager, const World& world) {
    return outcomeOf([&]() -> PPDText {
        return world.PPD ? manager.updatedPPDContentsForContents_PPDFile_deviceURI_context(
                               world.PPD->text(), *world.PPD, world.URI, world.context())
                         : nullptr;
    });
}

inline auto updatedFromQueue(const Manager& manager, const World& world) {
    return outcomeOf([&]() -> PPDText {
        return world.PPD ? manager.updatedPPDContentsForContents_PPDFile_queueName(
                               world.PPD->text(), *world.PPD, "queue")
                         : nullptr;
    });
}

inline auto valuesOf(OrbPPDUpdatingManager& manager, const World& world, const ParsedPPD& PPD) {
    return outcomeOf([&] {
        return manager.PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile(world.status, world.URI,
                                                                          PPD.get());
    });
}

/// What the operations on texts and statuses give.
struct Results {
    explicit Results(Manager& manager, const World& world)
        : text(updatedText(manager, world)),
          fromQueue(updatedFromQueue(manager, world)),
          values(valuesOf(manager, world, world.PPD)) {}

    Outcome<std::string> text;
    Outcome<std::string> fromQueue;
    Outcome<OrbPPDUpdatingValues> values;
};

}  // namespace TkPPDUpdating::Fuzzing
