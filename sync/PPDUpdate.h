#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "backends/ppdmodel/PPDModelFile.h"
#include "core_interface/OrbCSDeviceStatus.h"
#include "core_interface/OrbCSPartialStatus.h"
#include "core_interface/OrbCSStatusValue.h"
#include "manager/OrbPPDConcreteUpdatingManager.h"
#include "ppd/PPDText.h"
#include "sync/OptionsOfAccessories.h"
#include "sync/PPDUpdateStep.h"

namespace TkPPDUpdating {

/// One update of one PPD by the answer of its printer, in which what was not told stays as it is
/// (`manager/OrbPPDToldRule.h`).
///
/// Ask `needsStatus`, hand the answer in, then take the text or the values. Without an answer each
/// updater runs as it defines, and asks the communication services itself.
class PPDUpdate {
  public:
    /// Which updaters may run on an answer that does not tell all that they read.
    enum class Rule { whatWasNotToldStays, allUpdatersRun };

    /// What becomes of defaults that are custom media types, and of the types' numbers: they keep
    /// their meaning (`defaultsFollowingMediaTypes`, `inEarlierPlaces`), or all is as the updaters
    /// write it.
    enum class Defaults { keepTheirMeaning, areAsWritten };

    /// `manager` has the classes that are to run at most; neither is null.
    PPDUpdate(std::unique_ptr<OrbPPDConcreteUpdatingManager> manager,
              std::shared_ptr<const PPDModelFile> PPD,
              Defaults defaults = Defaults::keepTheirMeaning);

    /// Whether any updater has something to do for the PPD.
    bool hasUpdaters() const { return hasUpdaters_; }

    /// Whether an updater that has something to do may read the printer's status.
    bool needsStatus() const { return needsStatus_; }

    /// The same of an updater that reads more than the installed options.
    bool needsOtherStatus() const { return needsOtherStatus_; }

    /// Whether an updater of the installable options has something to do.
    bool readsInstalledOptions() const { return readsInstalledOptions_; }

    /// Whether some of them say no more than an accessory does (`OptionsOfAccessories`): then any
    /// status may tell.
    bool followsAccessories() const { return accessories_ && !accessories_->areNone(); }

    /// Leaves the installable options alone, because nobody is asked for them. Before the status is
    /// set.
    void leaveInstallableOptions();

    /// Whether the answer to a device URI can tell what installable options are set to without
    /// being asked for them: only a recording has their words by itself.
    static bool mayTellInstalledOptions(std::string_view deviceURI);

    /// Makes `status`, which is not null, the answer. Once, before text and values.
    void setStatus(std::shared_ptr<const OrbCSDeviceStatus> status, Rule rule);

    /// What the updaters of which an entry was not told would have read and the answer did not
    /// tell (`core_interface/OrbCSPartialStatus.h`), sorted, each once. Their lines stay.
    const std::vector<std::string>& keptEntries() const { return keptEntries_; }

    /// "kept: duplexer, calibration, which the printer did not tell", for people; empty when
    /// nothing was kept.
    static std::string wordsForKeptEntries(const std::vector<std::string>& entries);

    /// The updated text, the text of the PPD itself when nothing changed. Raises
    /// `std::out_of_range` as the manager does.
    /// What accessories of the status told about installable options.
    const std::vector<InstalledOptionAnswer>& answersOfAccessories() const {
        return answersOfAccessories_;
    }

    PPDText updatedText(std::optional<std::string_view> deviceURI);

    /// What else is to be told of the updated text, one phrase each.
    const std::vector<std::string>& notes() const { return notes_; }

    /// The same text with what each updater did to it. The last step, "tkppdupdate", is what
    /// keeps the meaning of defaults. Raises as above.
    ExplainedPPDUpdate explainedText(std::optional<std::string_view> deviceURI);

    /// The values that the updaters would write; nothing without an answer. Raises as above.
    std::optional<OrbPPDUpdatingValues> updatingValues(
        std::optional<std::string_view> deviceURI) const;

    /// The manager with the classes that run.
    const OrbPPDConcreteUpdatingManager& manager() const { return *manager_; }

  private:
    void countUpdaters();
    void takeOptionsOfAccessories();
    void leaveWhatWasNotTold(const OrbCSToldEntries& told);
    bool completeMediaTypes();
    void placeMediaTypes();
    const OrbCustomMediaTypes* mediaTypes() const;
    void setMediaTypes(OrbCustomMediaTypes types);
    PPDText withFollowedDefaults(PPDText text);

    std::unique_ptr<OrbPPDConcreteUpdatingManager> manager_;
    std::shared_ptr<const PPDModelFile> PPD_;
    Defaults defaults_;
    /// As it was handed in, and completed.
    std::shared_ptr<const OrbCSDeviceStatus> answer_;
    std::shared_ptr<const OrbCSDeviceStatus> status_;
    std::vector<std::string> keptEntries_;
    std::vector<std::string> notes_;
    bool hasUpdaters_ = false;
    bool needsStatus_ = false;
    bool needsOtherStatus_ = false;
    bool readsInstalledOptions_ = false;
    /// When an updater reads the installed options.
    std::optional<OptionsOfAccessories> accessories_;
    std::vector<InstalledOptionAnswer> answersOfAccessories_;
};

}  // namespace TkPPDUpdating
