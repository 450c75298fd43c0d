#include "benchmarks/UpdateRun.h"

#include <array>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "backends/ppdmodel/PPDModelCore.h"
#include "backends/schemes/PlainCustomMediaType.h"
#include "backends/schemes/PlainICCProfile.h"
#include "core_interface/OrbCoreInterface.h"
#include "core_interface/TkCSKeys.h"

namespace TkPPDUpdating::Benchmarks {

namespace {

constexpr std::array<std::string_view, 3> kTypicalUpdaters = {"OrbPPDDuplexerInstalledUpdater",
                                                              "OrbPPDDeviceCapabilitiesUpdater",
                                                              "OrbPPDDefaultPageSizeUpdater"};

class StatusInMemory : public OrbCSDeviceStatus {
  public:
    const OrbCSStatusValue* statusValueForKey_error(std::string_view key,
                                                    std::string* /*error*/) const override {
        const auto value = values.find(key);
        return value == values.end() ? nullptr : &value->second;
    }

    std::map<std::string, OrbCSStatusValue, std::less<>> values;
};

class OnePrinter : public TkCommunicationServices {
  public:
    explicit OnePrinter(std::shared_ptr<const OrbCSDeviceStatus> status)
        : status_(std::move(status)) {}

    std::shared_ptr<const OrbCSDeviceStatus> deviceStatusWithURI_parameters_error(
        std::optional<std::string_view> /*deviceURI*/, const OrbDictionary* /*parameters*/,
        OrbCSError* /*error*/) const override {
        return status_;
    }

  private:
    std::shared_ptr<const OrbCSDeviceStatus> status_;
};

/// A German user and a time that stands still.
class FixedEnvironment : public OrbEnvironment {
  public:
    std::optional<std::string> valueForVariable(const std::string& name) const override {
        if (name == "ZrCurrentLocaleIdentifier") {
            return "de_DE";
        }
        return name == "ZrEPRLastUpdateTime" ? std::optional<std::string>("252532800")
                                             : std::nullopt;
    }
};

OrbCustomMediaTypes mediaTypes(std::size_t count) {
    OrbCustomMediaTypes types;
    for (std::size_t i = 1; i <= count; ++i) {
        const std::string number = std::to_string(i);
        types.push_back(std::make_shared<const PlainCustomMediaType>(
            "Glossy Brochure " + number, number, "3",
            std::make_shared<const PlainICCProfile>("file:///profiles/gloss" + number + ".icc",
                                                    "q" + number, std::nullopt)));
    }
    return types;
}

OrbCSNumberOrString number(double value) {
    return OrbCSNumberOrString(value);
}

OrbCSPensConfiguration sixPens() {
    OrbCSPensConfiguration pens;
    pens.codeName = "SixPens";
    for (const char* name :
         {"ZrPensConfigName", "ZrPenDyes", "ZrPenDropVolumes", "ZrPenEverydayStatus",
          "ZrPenFamilyIDs", "ZrPenActualDropVolumes", "ZrPenNominalDropVolumes",
          "ZrPenBriskDropVolumes", "ZrPenInkSufficient", "ZrPenHasPrintheadDefect"}) {
        pens.PPDAttributeValues[name] = "40,40,40,41,42,42";
    }
    return pens;
}

}  // namespace

std::shared_ptr<const OrbCSDeviceStatus> statusOf(const Printer& printer) {
    auto status = std::make_shared<StatusInMemory>();
    status->values[std::string(kTkCSDeviceAccessoriesKey)] =
        OrbCSDeviceAccessories{{"Duplexer", printer.hasDuplexer}, {"Tray2", true}};
    status->values[std::string(kTkCSInstalledPensConfigurationKey)] = sixPens();
    status->values[std::string(kTkCSLinTableKey)] = OrbCSLinTable{number(252532800)};
    status->values[std::string(kTkCSMaxSupportedResolutionKey)] = number(1200);
    OrbCSRemainingPagesEstimations records;
    for (std::size_t i = 0; i < printer.estimationRecords; ++i) {
        records.push_back({"T", number(1), number(3), number(0)});
    }
    status->values[std::string(kTkCSRemainingPagesEstimationsKey)] = std::move(records);
    status->values[std::string(kTkCSCustomMediaTypesKey)] = mediaTypes(printer.mediaTypes);
    return status;
}

UpdateRun::UpdateRun(Updaters updaters, const Printer& printer) : status_(statusOf(printer)) {
    OrbCoreInterface::setCore(std::make_shared<PPDModelCore>());
    OrbCoreInterface::setCommunicationServices(std::make_shared<OnePrinter>(status_));
    OrbCoreInterface::setEnvironment(std::make_shared<FixedEnvironment>());
    if (updaters == Updaters::kTypical) {
        const std::set<std::string_view> kept(kTypicalUpdaters.begin(), kTypicalUpdaters.end());
        const auto registered = manager_.registeredClasses();
        for (const OrbClass* each : registered) {
            if (!kept.contains(each->name())) {
                manager_.unregisterUpdaterClass(each);
            }
        }
    }
}

std::size_t UpdateRun::update(const std::string& path) {
    const PPDText text = manager_.updatedPPDContentsForFile_deviceURI(path, "benchmark:");
    if (!text) {
        throw std::runtime_error("no text for " + path);
    }
    return (*text).size();
}

std::size_t UpdateRun::values(const OrbPPDFile& PPDFile) {
    const auto values = manager_.PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile(
        status_, "benchmark:", &PPDFile);
    return values ? values->size() : 0;
}

}  // namespace TkPPDUpdating::Benchmarks
