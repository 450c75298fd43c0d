#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "manager/ITkPPDUpdater.h"

namespace TkPPDUpdating {

/// The last look at an updated PPD before it is written into a file or installed on a queue: it is
/// compared with the text before, both as the scheduler's library reads them, and a change that no
/// updater owns is refused. It does not trust that the updaters, or those who gave them their
/// texts, did what they should.
class UpdateGuard {
  public:
    UpdateGuard() = delete;

    /// Why `after` may not take the place of `before`, one phrase, or nothing when it may.
    /// `updaters` are instances of the classes that ran (`OrbPPDConcreteUpdatingManager`:
    /// `applicableUpdatersForPPDFile`).
    ///
    /// It may when
    /// - it begins with the same line, no group opens inside of another one, no quoted value stays
    ///   open, and no line of blanks is longer than a line may be, unless `before` has that:
    ///   libcups, or the next update, would open it no more;
    /// - no line, as lines end with a line feed, goes on behind a carriage return, unless `before`
    ///   has the same line: libcups and the updaters would read it differently;
    /// - every statement of `before` is there, in its order, its option and its group, but those
    ///   that an updater owns (`manager/ITkPPDLineOwnership.h`);
    /// - every other statement of `after` is one that an updater owns, has a keyword that libcups
    ///   reads and a colon, lines of its length (255 bytes) without control characters, and names
    ///   no program (cupsFilter, cupsPreFilter, cupsPortMonitor, APPrinterPreset, FoomaticRIP);
    /// - no choice comes to stand twice in an option, no option opens twice, and no attribute of an
    ///   updater is there twice; identical new choices may (two media types share a profile); and
    ///   no attribute is lost;
    /// - of a page size all goes, or nothing;
    /// - each default that changed names a choice that there is, none is missing, and none that
    ///   stayed has lost its choice.
    ///
    /// The time is proportional to the texts.
    static std::optional<std::string> reasonNotToWrite(
        std::string_view before, std::string_view after,
        const std::vector<std::unique_ptr<ITkPPDUpdater>>& updaters);
};

}  // namespace TkPPDUpdating
