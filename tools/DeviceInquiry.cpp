#include "tools/DeviceInquiry.h"

#include <set>
#include <string_view>
#include <utility>

#include "backends/schemes/DeviceStatusSchemes.h"
#include "backends/schemes/ReportedDeviceStatus.h"
#include "core_interface/OrbCSOptionQuestions.h"
#include "core_interface/TkCSKeys.h"
#include "ppd/PPDStatements.h"
#include "sync/InstallableOptions.h"
#include "sync/InstalledOptionQuestions.h"
#include "tools/DeviceURIMistake.h"
#include "tools/Diagnostics.h"
#include "tools/Failure.h"
#include "tools/NextStep.h"

namespace TkPPDUpdating {

namespace {

template <typename Questions>
std::set<std::string> optionsAsked(const Questions& questions) {
    std::set<std::string> options;
    for (const auto& question : questions) {
        options.insert(question.option);
    }
    return options;
}

/// What a status says about the options that were asked for, in their order in the PPD.
std::vector<InstalledOptionAnswer> answersOf(const PPDModelFile& PPD,
                                             const std::set<std::string>& asked,
                                             std::string_view way,
                                             const OrbCSDeviceStatus& status) {
    if (asked.empty()) {
        return {};
    }
    const auto options = installableOptionsOf(PPDStatementsOfText(*PPD.text()));
    std::vector<std::string> inOrder;
    for (const InstallableOption& option : options) {
        if (asked.contains(option.keyword)) {
            inOrder.push_back(option.keyword);
        }
    }
    return answersOfStatus(options, inOrder, way, &status, {});
}

}  // namespace

CLI::Option* DeviceInquiry::addTo(CLI::App& subcommand, CLI::App& group) {
    CLI::Option* device =
        group
            .add_option("--device-uri", deviceURI_,
                        "The printer whose status is used; file:PATH names a recorded status")
            ->type_name("URI");
    subcommand
        .add_flag("--require-device", isRequired_,
                  "Fail with exit status 3 when the printer gives no status")
        ->needs(device);
    subcommand
        .add_flag("--ask-postscript", asksPostScript_,
                  "Ask the PostScript printer behind a socket: URI what is installed, by the "
                  "questions of the PPD")
        ->needs(device);
    return device;
}

void DeviceInquiry::refuseMistake(const Backends& backends) const {
    if (!asksPostScript_) {
        refuseMistakenDeviceURI(backends, deviceURI_);
        return;
    }
    if (const auto phrase = phraseForMistakenSocketURI(deviceURI_)) {
        throw Failure(ExitStatus::noResult, Diagnostics::nameOfDevice(deviceURI_), *phrase);
    }
}

void DeviceInquiry::limit(PPDUpdate& update, const PPDModelFile& PPD) const {
    if (!asksPostScript_ && !PPDUpdate::mayTellInstalledOptions(deviceURI_) &&
        !update.followsAccessories() && !objectQuestions(PPD)) {
        update.leaveInstallableOptions();
    }
}

void DeviceInquiry::tell(const std::string& place,
                         const std::vector<InstalledOptionAnswer>& answers) {
    for (const InstalledOptionAnswer& answer : answers) {
        Diagnostics::note(place, answer.words);
    }
}

std::shared_ptr<const OrbCSSNMPQuestions> DeviceInquiry::objectQuestions(
    const PPDModelFile& PPD) const {
    return DeviceStatusSchemes::schemeOfURI(deviceURI_) == "snmp" ? SNMPQuestionsOfPPD(PPD)
                                                                  : nullptr;
}

std::shared_ptr<const OrbCSDeviceStatus> DeviceInquiry::statusOverPostScript(
    const std::string& place, const PPDModelFile& PPD, OrbDictionary parameters,
    OrbCSError& error) const {
    const auto questions = postScriptQuestionsOfPPD(PPD, error.reason);
    if (!questions) {
        return nullptr;
    }
    parameters.insert_or_assign(std::string(kTkCSPostScriptQuestionsKey), questions);
    auto status = Backends::postScriptPrinters()->deviceStatusWithURI_parameters_error(
        deviceURI_, &parameters, &error);
    if (status) {
        tell(place, answersOf(PPD, optionsAsked(questions->questions), "PostScript", *status));
    }
    return status;
}

std::shared_ptr<const OrbCSDeviceStatus> DeviceInquiry::usualStatus(const std::string& place,
                                                                    const PPDModelFile& PPD,
                                                                    OrbDictionary parameters,
                                                                    OrbCSError& error) const {
    const auto questions = objectQuestions(PPD);
    if (questions) {
        parameters.insert_or_assign(std::string(kTkCSSNMPQuestionsKey), questions);
    }
    auto status =
        OrbCSDeviceStatus::deviceStatusWithURI_parameters_error(deviceURI_, &parameters, &error);
    if (!status) {
        return nullptr;
    }
    const auto asked = questions ? optionsAsked(questions->questions) : std::set<std::string>();
    for (const std::string& dropped : ReportedDeviceStatus::droppedValuesOf(*status)) {
        if (!asked.contains(dropped.substr(0, dropped.find(':')))) {
            Diagnostics::warning(place, Diagnostics::nameOfDevice(deviceURI_) + ": " + dropped);
        }
    }
    tell(place, answersOf(PPD, asked, "SNMP", *status));
    return status;
}

std::shared_ptr<const OrbCSDeviceStatus> DeviceInquiry::status(const std::string& place,
                                                               const OrbDictionary& parameters,
                                                               Silence silence,
                                                               const PPDModelFile& PPD) const {
    OrbCSError error;
    auto status = asksPostScript_ ? statusOverPostScript(place, PPD, parameters, error)
                                  : usualStatus(place, PPD, parameters, error);
    const std::string name = Diagnostics::nameOfDevice(deviceURI_);
    if (!status) {
        const std::string reason = name + " gave no status" +
                                   (error.reason.empty() ? "" : ": " + error.reason) +
                                   nextStepAfter(error);
        if (isRequired_ || silence == Silence::isFailure) {
            throw Failure(ExitStatus::deviceSilent, place, reason);
        }
        Diagnostics::warning(place, reason);
    }
    return status;
}

}  // namespace TkPPDUpdating
