#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "ppd/PPDStatements.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// What of a PPD belongs to an updater: which lines a run of it may add, change and take away.
struct OrbPPDOwnedLines {
    /// A choice of an option, or another statement with an option keyword.
    struct Choice {
        std::string option;   ///< The main keyword (no asterisk).
        std::string keyword;  ///< The option keyword.
        /// The code, without quotes.
        std::string code;
    };

    /// Options (no asterisk) whose default the updater sets: "*DefaultOPTION: choice" may name
    /// another choice, which the option has.
    std::vector<std::string> defaultsOfOptions;

    /// Main keywords (no asterisk) of attributes without an option keyword, "*KEYWORD: value". They
    /// may get another value, lose their translations (CUPS PPD extensions: cupsLanguages) and be
    /// added, one of each; they may not get fewer.
    std::vector<std::string> attributes;

    /// May be added with just that code, and be taken away.
    std::vector<Choice> choices;

    /// Further statements of the text before that may be taken away, and of the text after that may
    /// be added. Null for none. Each is asked with statements of the span that `ownedLines` got.
    std::function<bool(const PPDStatement&)> mayTakeAway;
    std::function<bool(const PPDStatement&)> mayAdd;  ///< Of the text after.
};

/// An optional second interface of an updater class: what it owns of a PPD. Before a result is
/// written into a file or installed on a queue, it is compared with the text before
/// (`sync/UpdateGuard.h`), and a change that nobody owns is refused.
///
/// Implementers: derive from it beside `ITkPPDUpdater`. A class that does not may change the
/// defaults of options only. Whatever is declared here, no result may bring in a line that names a
/// program, a control character, a line of 256 bytes or more, or a choice that is there already.
class TKPPDUPDATING_PUBLIC ITkPPDLineOwnership {
  public:
    ITkPPDLineOwnership() = default;
    ITkPPDLineOwnership(const ITkPPDLineOwnership&) = delete;
    ITkPPDLineOwnership& operator=(const ITkPPDLineOwnership&) = delete;
    virtual ~ITkPPDLineOwnership() = default;

    /// What the updater owns of a text that a run of it turned into another. Both outlive the
    /// result.
    virtual OrbPPDOwnedLines ownedLines(std::span<const PPDStatement> before,
                                        std::span<const PPDStatement> after) = 0;
};

}  // namespace TkPPDUpdating
