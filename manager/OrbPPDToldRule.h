#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core_interface/OrbCSDeviceStatus.h"
#include "core_interface/OrbCSPartialStatus.h"
#include "manager/ITkPPDUpdater.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// What one updater may do with an answer that may not tell everything.
struct OrbPPDToldDecision {
    enum class Kind {
        /// Everything that it reads was told, or it does not say what it reads.
        run,
        /// It may run once what was not told is completed from the PPD.
        runCompleted,
        /// It may not run: its lines stay.
        keep,
    };
    /// @enum Kind What becomes of its lines.
    Kind kind = Kind::run;  ///< What may be done; the rest says with what.
    /// The entries that it reads and that were not told, in its order.
    std::vector<std::string> notTold;
    /// For `runCompleted`: pens' keyword to the value that stands in the PPD.
    OrbPPDUpdatingValues completedPenValues;
    /// For `runCompleted`: whether the custom media types that stand in the PPD and are not among
    /// those of the status have to be added to these.
    bool completesMediaTypes = false;
};

/// The rule "what was not told stays as it is", for callers of a manager.
///
/// The manager runs every registered class on whatever status it gets, and an updater takes what is
/// missing for none: it blanks a line, deletes media, declares a duplexer. That is right for an
/// answer that tells everything, and harm for one that does not. So a caller in whose hands a PPD
/// shall not get worse asks this rule for each applicable updater, takes the classes that are to
/// keep their lines out of its manager, and hands the completed status in. The rule is about
/// answers: without a status, each updater runs as it defines.
class TKPPDUPDATING_PUBLIC OrbPPDToldRule {
  public:
    OrbPPDToldRule() = delete;

    /// Whether the updater may ask for a device's status: unless it says that it reads nothing.
    static bool readsStatus(const ITkPPDUpdater& updater);

    /// Decides for one updater, by what the status told and by the PPD's text as it stands.
    ///
    /// Where only some of the pens' values that it reads were told, each of the others is completed
    /// from the PPD if exactly one line of its keyword is there, unquoted and short enough to be
    /// written again (255 bytes, PPD specification 4.3); otherwise the updater may not run. Where
    /// only some of the custom media types were told, the others are to be completed.
    static OrbPPDToldDecision decision(const ITkPPDUpdater& updater,
                                       const std::optional<OrbCSToldEntries>& told,
                                       std::string_view contents);

    /// A status that says the same as `status` (not null), with these values added to its pens'
    /// configuration, which must not have them; the same status when there are none.
    static std::shared_ptr<const OrbCSDeviceStatus> completedStatus(
        std::shared_ptr<const OrbCSDeviceStatus> status, const OrbPPDUpdatingValues& penValues);
};

}  // namespace TkPPDUpdating
