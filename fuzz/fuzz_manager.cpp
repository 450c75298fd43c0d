// The operations of the manager that all share, as an application calls them: with paths, URIs and
// the names of queues. They give what the operations on texts and statuses give, and whatever
// stands behind the core interface, and whoever is registered, the manager stays as it was. The
// input is a recording, a PPD, the PPD of a queue, and variables of the environment ("NAME=value",
// one a line), with lines "====" between them.
#include <algorithm>
#include <optional>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "core_interface/OrbCSPartialStatus.h"
#include "core_interface/OrbInvalidOperationError.h"
#include "core_interface/TkCSKeys.h"
#include "fuzz/BrokenLines.h"
#include "fuzz/ManagerInput.h"
#include "manager/ITkPPDLineOwnership.h"
#include "manager/ITkPPDStatusReading.h"
#include "manager/MissingResourceWatch.h"
#include "manager/OrbClassTable.h"
#include "manager/OrbPPDToldRule.h"
#include "ppd/PPDStatements.h"
#include "tests/support/ApplicationUpdaters.h"
#include "text/ASCII.h"
#include "text/UTF8.h"
#include "updaters/default_choice/OrbPPDStatusBasedOptionsUpdater.h"

using namespace TkPPDUpdating;
using namespace TkPPDUpdating::Fuzzing;

namespace {

/// Whether the device behind the URI is the one of the recording, and why there is none.
void requireDevice(const World& world) {
    OrbCSError error;
    const auto status =
        OrbCSDeviceStatus::deviceStatusWithURI_parameters_error(world.URI, nullptr, &error);
    require(!status == !world.status, "there is a status of what is recorded");
    require(!status || RecordedDeviceStatus::JSONForStatus(*status) ==
                           RecordedDeviceStatus::JSONForStatus(*world.status),
            "it is that of the recording");
    const auto cause =
        world.isSilent ? OrbCSError::Cause::unknown : OrbCSError::Cause::unreadableRecording;
    require(status || (error.cause == cause && error.reason.starts_with("/proc/")),
            "a recording that cannot be read is told from a silent printer");
}

void requireSameFromFiles(const Results& expected, const World& world) {
    OrbPPDUpdatingManager& shared = OrbPPDUpdatingManager::sharedInstance();
    const std::string path = world.PPDFile.path();
    require(outcomeOf([&] {
                return shared.updatedPPDContentsForFile_deviceURI(path, world.URI);
            }) == expected.text,
            "a file is updated as its text");
    require(!expected.text.result || !firstInvalidUTF8Byte(*expected.text.result) ||
                firstInvalidUTF8Byte(world.environment),
            "the result is UTF-8, unless a variable that stands in it is not");
    require(outcomeOf([&] { return shared.updatedPPDContentsForFile_queueName(path, "queue"); }) ==
                expected.fromQueue,
            "a file is updated from a queue as its text");
    require(world.queue || !expected.fromQueue.result, "without a queue there is no result");
    require(!shared.updatedPPDContentsForFile_queueName(path, std::nullopt),
            "nor without its name");
    const auto values = outcomeOf(
        [&] { return shared.PPDUpdatingValuesForQueueWithName_deviceURI("queue", world.URI); });
    require(world.queue || (!values.result && !values.isOutOfRange), "no queue has no values");
    require(!world.queue || !world.status || values == valuesOf(shared, world, world.queue),
            "a queue has the values of its PPD and the status of its device");
}

/// The options whose defaults differ; nothing when anything else does.
std::optional<std::set<std::string>> optionsThatDiffer(const std::string& before,
                                                       const std::string& after) {
    constexpr std::string_view kDefault = "*Default";
    std::istringstream linesBefore(before);
    std::istringstream linesAfter(after);
    std::string one;
    std::string other;
    std::set<std::string> options;
    while (std::getline(linesBefore, one)) {
        if (!std::getline(linesAfter, other)) {
            return std::nullopt;
        }
        const std::string name = other.substr(0, other.find(':'));
        if (one == other) {
            continue;
        }
        if (!name.starts_with(kDefault) || !one.starts_with(name)) {
            return std::nullopt;
        }
        options.insert(name.substr(kDefault.size()));
    }
    return std::getline(linesAfter, other) ? std::nullopt : std::optional(options);
}

/// Lacks what the library should have.
class UpdaterWithoutData : public Testing::QuietUpdater {
  public:
    static constexpr std::string_view kClassName = "UpdaterWithoutData";
    PPDText updatedPPDContentsForContents_deviceURI_context(
        const PPDText& /*contents*/, std::optional<std::string_view> /*deviceURI*/,
        OrbDictionary* /*context*/) override {
        MissingResourceWatch::tell("its data");
        MissingResourceWatch::tell("more data");
        return nullptr;
    }
};

/// Says for which option it is, and nothing else.
class UnfinishedUpdater : public OrbPPDStatusBasedOptionsUpdater {
  public:
    static constexpr std::string_view kClassName = "UnfinishedUpdater";
    std::vector<std::string> optionNames() override { return {"Duplex"}; }
};

class NoUpdater {
  public:
    static constexpr std::string_view kClassName = "NoUpdater";
};

/// Runs with one class more, which is taken away again.
template <typename Run>
void with(Manager& manager, const OrbClass& updaterClass, const Run& run) {
    const auto classes = manager.registeredClasses();
    require(manager.registerUpdaterClass(&updaterClass), "an updater can be registered");
    run();
    require(manager.registeredClasses().size() == classes.size() + 1, "it stays registered");
    manager.unregisterUpdaterClass(&updaterClass);
    require(manager.registeredClasses() == classes, "until it is taken away");
}

/// The values of the pens that a status tells, and those that complete it, are those of the
/// completed one.
void requireCompleted(const Status& status, const OrbPPDUpdatingValues& values) {
    const auto completed = OrbPPDToldRule::completedStatus(status, values);
    require((completed == status) == values.empty(), "nothing more is the same status");
    constexpr auto kPens = kTkCSInstalledPensConfigurationKey;
    const auto* const told = status->statusValueForKey<OrbCSPensConfiguration>(kPens);
    const auto* const all = completed->statusValueForKey<OrbCSPensConfiguration>(kPens);
    if (values.empty()) {
        return;
    }
    auto expected = told ? *told : OrbCSPensConfiguration();
    for (const auto& [keyword, value] : values) {
        expected.PPDAttributeValues.insert_or_assign(keyword, value);
    }
    require(all && all->codeName == expected.codeName &&
                all->PPDAttributeValues == expected.PPDAttributeValues,
            "what was told, and what stands in the PPD");
    require(completed->statusValueForKey_error(kTkCSLinTableKey, nullptr) ==
                status->statusValueForKey_error(kTkCSLinTableKey, nullptr),
            "the rest is the printer's");
}

void requireDecision(const ITkPPDUpdater& updater, const Status& status, const std::string& text) {
    using Kind = OrbPPDToldDecision::Kind;
    const auto told = OrbCSPartialStatus::toldEntriesOf(*status);
    const auto* const reading = dynamic_cast<const ITkPPDStatusReading*>(&updater);
    const auto entries = reading ? reading->statusEntriesRead() : std::vector<std::string>();
    require(OrbPPDToldRule::readsStatus(updater) == (!reading || !entries.empty()),
            "an updater reads what it says, or anything");
    const auto decision = OrbPPDToldRule::decision(updater, told, text);
    std::vector<std::string> notTold;
    for (const std::string& entry : entries) {
        const std::string key = entry.substr(0, entry.find('.'));
        if (told && !told->contains(entry) && !told->contains(key)) {
            notTold.push_back(entry);
        }
    }
    require(decision.notTold == notTold, "what it reads and was not told");
    require((decision.kind == Kind::run) == notTold.empty(), "it runs on what was told");
    require(decision.kind == Kind::runCompleted ||
                (decision.completedPenValues.empty() && !decision.completesMediaTypes),
            "only what was not told is completed");
    const std::string lowerCase = textInASCIILowerCase(text);
    for (const auto& [keyword, value] : decision.completedPenValues) {
        require(lowerCase.find("*" + textInASCIILowerCase(keyword)) != std::string::npos &&
                    text.find(value) != std::string::npos,
                "with what stands in the PPD");
        require(value.find_first_of("\"\n") == std::string::npos && value.size() < 255,
                "and can stand there again");
    }
    requireCompleted(status, decision.completedPenValues);
}

std::set<std::string> ownDefaults(ITkPPDUpdater& updater, const std::string& text) {
    const auto statements = PPDStatementsOfText(text);
    auto* const owner = dynamic_cast<ITkPPDLineOwnership*>(&updater);
    require(owner, "a class of the library says which lines are its own");
    const auto own = owner->ownedLines(statements, statements).defaultsOfOptions;
    return {own.begin(), own.end()};
}

/// Whether what goes with an absent duplexer stands behind something else in its line. It goes with
/// the line feed, and a default with it or not, as the updaters before have left its line.
bool hasDuplexLineBehindSomething(const std::string& text) {
    return standsBehindSomething(text, "*% Duplex <-> ") ||
           standsBehindSomething(text, "*UIConstraints:");
}

/// What an updater that sets defaults only makes of a text is its own, in the text before or when
/// others have moved the ends of a group.
void requireOwnDefaults(ITkPPDUpdater& updater, const std::string& text,
                        const Outcome<std::string>& without, const Outcome<std::string>& with) {
    if (!with.result || !without.result || hasDuplexLineBehindSomething(text)) {
        return;
    }
    const auto options = optionsThatDiffer(*without.result, *with.result);
    require(options.has_value(), "what is installed becomes a default, and nothing else");
    std::set<std::string> own = ownDefaults(updater, text);
    own.merge(ownDefaults(updater, *without.result));
    for (const std::string& option : *options) {
        require(own.contains(option), "of an option that is its own");
    }
}

/// The values are those without the class, and defaults that are choices of the PPD.
void requireOwnValues(const OrbPPDFile& PPD, const Outcome<OrbPPDUpdatingValues>& without,
                      const Outcome<OrbPPDUpdatingValues>& with) {
    if (!with.result || !without.result) {
        return;
    }
    for (const auto& [key, value] : *with.result) {
        const auto before = without.result->find(key);
        if (before != without.result->end() && before->second == value) {
            continue;
        }
        require(key.starts_with("Default"), "a value more is a default");
        const auto* const option = PPD.optionForName(key.substr(std::string("Default").size()));
        require(option && option->choiceForName(value), "and a choice of the PPD");
    }
}

void requireFurtherClasses(Manager& manager, const World& world, const Results& without) {
    for (const OrbClass* further : OrbFurtherClassTable()) {
        require(OrbClassFromName(further->name()) == further, "a further class has a name");
        with(manager, *further, [&] {
            const auto updater = further->newInstance();
            const Results results(manager, world);
            requireOwnDefaults(*updater, *world.text, without.text, results.text);
            requireOwnDefaults(*updater, *world.text, without.fromQueue, results.fromQueue);
            requireOwnValues(*world.PPD, without.values, results.values);
            if (world.status) {
                requireDecision(*updater, world.status, *world.text);
            }
        });
    }
    const auto* const named = OrbClassFromName(world.recording);
    require(!named || named->name() == world.recording, "nothing else has one");
    require(!manager.registerUpdaterClass(&OrbClassOf<NoUpdater>()) &&
                !manager.registerUpdaterClass(nullptr),
            "what is no updater cannot be registered");
}

void requireThatMissingDataIsTold(Manager& manager, const World& world, const Results& expected) {
    const auto update = [&] { return updatedText(manager, world); };
    require(MissingResourceWatch::resultOf(update) == expected.text,
            "with all data, a watch changes nothing");
    if (!expected.text.result) {
        return;
    }
    with(manager, OrbClassOf<UpdaterWithoutData>(), [&] {
        require(update() == expected.text, "an operation goes on without data");
        std::string missing;
        try {
            MissingResourceWatch::resultOf([&] { (void)update(); });
        } catch (const MissingResourceError& error) {
            missing = error.what();
        }
        require(missing == "its data", "who watches learns what was missing first");
    });
}

template <typename Operation>
void requireUnfinished(const Operation& operation) {
    bool isTold = false;
    try {
        (void)operation();
    } catch (const OrbInvalidOperationError& error) {
        isTold = std::string(error.what()).find("does not implement") != std::string::npos;
    } catch (const std::out_of_range&) {
        isTold = true;  // An updater that ran before came to an attribute without a value.
    }
    require(isTold, "an operation that a class leaves open tells so");
}

/// What an application leaves open is an error that names it, whatever it is asked for.
void requireThatOpenOperationsAreTold(Manager& manager, const World& world) {
    OrbPPDUpdatingManager open;
    const std::string path = world.PPDFile.path();
    requireUnfinished([&] { return open.updatedPPDContentsForFile_deviceURI(path, world.URI); });
    requireUnfinished([&] { return open.updatedPPDContentsForFile_queueName(path, "queue"); });
    requireUnfinished(
        [&] { return open.PPDUpdatingValuesForQueueWithName_deviceURI("queue", world.URI); });
    requireUnfinished([&] {
        return open.PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile(world.status, world.URI,
                                                                       world.PPD.get());
    });
    const OrbClass& unfinished = OrbClassOf<UnfinishedUpdater>();
    requireUnfinished([&] { return open.registerUpdaterClass(&unfinished); });
    requireUnfinished([&] {
        open.unregisterUpdaterClass(&unfinished);
        return 0;
    });
    if (!world.PPD) {
        return;
    }
    with(manager, OrbClassOf<OrbPPDDefaultChoiceUpdater>(),
         [&] { requireUnfinished([&] { return updatedText(manager, world); }); });
    with(manager, unfinished, [&] {
        const bool isAsked = world.status && world.PPD->optionForName("Duplex");
        if (isAsked) {
            requireUnfinished([&] { return updatedText(manager, world); });
        }
    });
    UnfinishedUpdater updater;
    requireUnfinished([&] { return updater.accessoryNameForOptionWithName("Duplex"); });
    requireUnfinished([&] { return updater.PPDChoiceTextForStatusValue(true); });
    requireUnfinished([&] {
        OrbPPDDefaultChoiceUpdater base;
        return base.defaultChoicesFromDeviceWithURI_context(world.URI, nullptr);
    });
}

/// Without the libraries, nothing is known.
void requireNothingWithoutLibraries(Manager& manager, const World& world) {
    OrbCoreInterface::setCommunicationServices(nullptr);
    OrbCSError error;
    require(!OrbCSDeviceStatus::deviceStatusWithURI_parameters_error(world.URI, nullptr, &error) &&
                error.cause == OrbCSError::Cause::noBackend,
            "no library has no device");
    OrbCoreInterface::setCore(nullptr);
    require(!manager.updatedPPDContentsForFile_deviceURI(world.PPDFile.path(), world.URI) &&
                !manager.updatedPPDContentsForFile_queueName(world.PPDFile.path(), "queue") &&
                !manager.PPDUpdatingValuesForQueueWithName_deviceURI("queue", world.URI),
            "no library parses no PPD");
    require(!OrbPPDFile::PPDFileWithContentsOfFile(world.PPDFile.path()), "nor does its class");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const World world(textOfInput(data, size));
    static Manager manager;
    const auto classes = manager.registeredClasses();
    requireDevice(world);
    const Results results(manager, world);
    requireSameFromFiles(results, world);
    if (world.PPD && world.status) {
        for (const auto& updater : manager.applicableUpdatersForPPDFile(world.PPD.get())) {
            requireDecision(*updater, world.status, *world.text);
        }
    }
    if (world.PPD) {
        requireFurtherClasses(manager, world, results);
        requireThatMissingDataIsTold(manager, world, results);
    }
    requireThatOpenOperationsAreTold(manager, world);
    requireNothingWithoutLibraries(manager, world);
    require(manager.registeredClasses() == classes, "the manager is as it was");
    return 0;
}
