#pragma once

#include <optional>
#include <string>
#include <vector>

#include "backends/ppdmodel/PPDModelFile.h"

namespace TkPPDUpdating {

/// One attribute of a PPD that came, went or became another. All texts are as the PPD writes them.
struct PPDChange {
    /// What a line says behind its keywords.
    struct State {
        /// The translation text, or nothing.
        std::optional<std::string> text;
        /// Empty, too, when nothing follows the colon.
        std::string value;

        friend bool operator==(const State&, const State&) = default;
    };

    /// The main keyword without the asterisk, and the option keyword, empty when there is none.
    std::string keyword;
    std::string optionKeyword;
    /// Nothing where there was no such line, or is none. At least one of them is there.
    std::optional<State> before;
    std::optional<State> after;

    friend bool operator==(const PPDChange&, const PPDChange&) = default;
};

/// What differs between two states of a PPD: first what went or changed, in the order of `before`,
/// then what came, in the order of `after`. Where a line stands does not count; translation lines
/// ("*de.MediaType ...", CUPS PPD extensions) and comments do not count either. A line that is the
/// only one of its keyword and option keyword in both became another; any other one went, or came.
/// Takes time in proportion to the texts.
std::vector<PPDChange> PPDChangesBetween(const PPDModelFile& before, const PPDModelFile& after);

/// The main keywords of the changes, sorted, each once.
std::vector<std::string> keywordsOfPPDChanges(const std::vector<PPDChange>& changes);

}  // namespace TkPPDUpdating
