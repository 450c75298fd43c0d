#include "sync/InstalledOptionAnswers.h"

#include <cstddef>
#include <map>
#include <optional>
#include <utility>

#include "backends/schemes/ReportedDeviceStatus.h"
#include "core_interface/OrbCSPartialStatus.h"
#include "core_interface/OrbCSStatusSources.h"
#include "core_interface/TkCSKeys.h"

namespace TkPPDUpdating {

namespace {

constexpr std::string_view kOfDuplexer = "duplexer";

std::string wordsForWay(std::string_view way) {
    return way == kOfDuplexer ? ": as its duplexer" : ": asked over " + std::string(way);
}

/// Why options were not answered, by their keywords, as a status tells it: "OPTION: reason".
std::map<std::string, std::string> reasonsOf(const OrbCSDeviceStatus& status) {
    constexpr std::string_view kBetween = ": ";
    std::map<std::string, std::string> reasons;
    for (const std::string& dropped : ReportedDeviceStatus::droppedValuesOf(status)) {
        const std::size_t end = dropped.find(kBetween);
        if (end != std::string::npos) {
            reasons.emplace(dropped.substr(0, end), dropped.substr(end + kBetween.size()));
        }
    }
    return reasons;
}

/// A status with more installed options, or with nothing else.
class StatusWithInstalledOptions : public OrbCSDeviceStatus,
                                   public OrbCSPartialStatus,
                                   public OrbCSStatusSources {
  public:
    StatusWithInstalledOptions(std::shared_ptr<const OrbCSDeviceStatus> others,
                               OrbCSInstalledOptions installed)
        : others_(std::move(others)),
          told_(others_ ? OrbCSPartialStatus::toldEntriesOf(*others_) : OrbCSToldEntries()) {
        if (const auto* const known = others_ ? installedOptionsOf(*others_) : nullptr) {
            installed.insert(known->begin(), known->end());
        }
        installed_ = std::move(installed);
        if (told_) {
            told_->emplace(kTkCSInstalledOptionsKey);
        }
        if (const auto* const known = dynamic_cast<const OrbCSStatusSources*>(others_.get())) {
            sources_ = known->sources();
        }
    }

    const OrbCSStatusValue* statusValueForKey_error(std::string_view key,
                                                    std::string* error) const override {
        if (key == kTkCSInstalledOptionsKey) {
            return &installed_;
        }
        return others_ ? others_->statusValueForKey_error(key, error) : nullptr;
    }

    const std::optional<OrbCSToldEntries>& toldEntries() const override { return told_; }

    const std::vector<OrbCSStatusSource>& sources() const override { return sources_; }

  private:
    std::shared_ptr<const OrbCSDeviceStatus> others_;
    OrbCSStatusValue installed_;
    std::optional<OrbCSToldEntries> told_;
    std::vector<OrbCSStatusSource> sources_;
};

}  // namespace

InstalledOptionAnswer answeredOption(const InstallableOption& option, std::string_view way,
                                     const std::string& choice) {
    const std::string text = option.textOfChoice(choice);
    const std::string change = choice == option.defaultChoice ? text + ", as before"
                               : option.defaultChoice.empty()
                                   ? text
                                   : option.textOfChoice(option.defaultChoice) + " -> " + text;
    return {option.keyword, way, option.defaultChoice,
            choice,         {},  option.text + wordsForWay(way) + ": " + change};
}

InstalledOptionAnswer unansweredOption(const InstallableOption& option, std::string_view way,
                                       const std::string& reason) {
    const std::string stays =
        option.defaultChoice.empty() ? "" : "; stays " + option.textOfChoice(option.defaultChoice);
    return {option.keyword,
            way,
            option.defaultChoice,
            {},
            reason,
            option.text + wordsForWay(way) + ", no answer: " + reason + stays};
}

std::vector<InstalledOptionAnswer> answersOfStatus(std::span<const InstallableOption> options,
                                                   std::span<const std::string> asked,
                                                   std::string_view way,
                                                   const OrbCSDeviceStatus* status,
                                                   const std::string& reasonOfSilence) {
    const auto* const installed = status ? installedOptionsOf(*status) : nullptr;
    const auto reasons = status ? reasonsOf(*status) : std::map<std::string, std::string>();
    std::map<std::string_view, const InstallableOption*> known;
    for (const InstallableOption& option : options) {
        known.emplace(option.keyword, &option);
    }
    std::vector<InstalledOptionAnswer> answers;
    for (const std::string& keyword : asked) {
        const auto place = known.find(keyword);
        const InstallableOption* const option = place == known.end() ? nullptr : place->second;
        if (option && installed && installed->contains(keyword)) {
            answers.push_back(answeredOption(*option, way, installed->at(keyword)));
        } else if (option) {
            const auto reason = reasons.find(keyword);
            answers.push_back(unansweredOption(*option, way,
                                               reason != reasons.end() ? reason->second
                                               : status                ? "the printer tells nothing"
                                                                       : reasonOfSilence));
        }
    }
    return answers;
}

const OrbCSInstalledOptions* installedOptionsOf(const OrbCSDeviceStatus& status) {
    return status.statusValueForKey<OrbCSInstalledOptions>(kTkCSInstalledOptionsKey);
}

std::shared_ptr<const OrbCSDeviceStatus> statusWithInstalledOptions(
    std::shared_ptr<const OrbCSDeviceStatus> others, OrbCSInstalledOptions installed) {
    if (installed.empty()) {
        return others;
    }
    return std::make_shared<const StatusWithInstalledOptions>(std::move(others),
                                                              std::move(installed));
}

}  // namespace TkPPDUpdating
