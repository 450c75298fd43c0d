#include "tools/DeviceInquiry.h"

#include <utility>

#include "backends/schemes/DeviceStatusSchemes.h"
#include "backends/schemes/ReportedDeviceStatus.h"
#include "core_interface/TkCSKeys.h"
#include "sync/InstalledOptionQuestions.h"
#include "tools/DeviceURIMistake.h"
#include "tools/Diagnostics.h"
#include "tools/Failure.h"

namespace TkPPDUpdating {

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
    } else if (DeviceStatusSchemes::schemeOfURI(deviceURI_) != "socket") {
        throw Failure(ExitStatus::noResult, Diagnostics::nameOfDevice(deviceURI_),
                      "--ask-postscript asks a PostScript printer; write socket://HOST");
    }
}

void DeviceInquiry::limit(PPDUpdate& update) const {
    if (!asksPostScript_ && !PPDUpdate::mayTellInstalledOptions(deviceURI_)) {
        update.leaveInstallableOptions();
    }
}

std::shared_ptr<const OrbCSDeviceStatus> DeviceInquiry::answerToQuestions(const std::string& place,
                                                                          const PPDModelFile& PPD,
                                                                          OrbDictionary parameters,
                                                                          OrbCSError& error) const {
    const auto questions = postScriptQuestionsOfPPD(PPD, error.reason);
    if (!questions) {
        return nullptr;
    }
    parameters.insert_or_assign(std::string(kTkCSPostScriptQuestionsKey), questions);
    auto answer = Backends::postScriptPrinters()->deviceStatusWithURI_parameters_error(
        deviceURI_, &parameters, &error);
    if (answer) {
        for (const std::string& words : wordsForAnswers(PPD, *questions, answer.get())) {
            Diagnostics::note(place, words);
        }
    }
    return answer;
}

std::shared_ptr<const OrbCSDeviceStatus> DeviceInquiry::status(const std::string& place,
                                                               const OrbDictionary& parameters,
                                                               Silence silence,
                                                               const PPDModelFile& PPD) const {
    OrbCSError error;
    auto status = asksPostScript_ ? answerToQuestions(place, PPD, parameters, error)
                                  : OrbCSDeviceStatus::deviceStatusWithURI_parameters_error(
                                        deviceURI_, &parameters, &error);
    const std::string name = Diagnostics::nameOfDevice(deviceURI_);
    if (!status) {
        const std::string reason =
            name + " gave no status" + (error.reason.empty() ? "" : ": " + error.reason);
        if (isRequired_ || silence == Silence::isFailure) {
            throw Failure(ExitStatus::deviceSilent, place, reason);
        }
        Diagnostics::warning(place, reason);
        return nullptr;
    }
    if (asksPostScript_) {
        return status;
    }
    for (const std::string& dropped : ReportedDeviceStatus::droppedValuesOf(*status)) {
        Diagnostics::warning(place, name + ": " + dropped);
    }
    return status;
}

}  // namespace TkPPDUpdating
