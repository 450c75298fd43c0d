#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "core_interface/OrbCSDeviceStatus.h"
#include "tests/hostile/FactComparison.h"

namespace TkPPDUpdating::Testing {

/// Whether the status names the duplexer twice with different answers. Updaters take the one or
/// the other of them, so that a PPD which gets its option with the one default in a first run gets
/// the other default in a second.
bool isOfTwoMindsAboutTheDuplexer(const OrbCSDeviceStatus& status);

/// What must hold of every update of a PPD, whatever printer and PPD are, told plainly and apart
/// from the updaters and from the guard before writing:
/// - valid UTF-8 stays valid;
/// - every line that no updater owns is byte for byte what it was, in order, and no other is new;
/// - libcups opens what it opened before, and knows what it knew before, but what updaters own;
/// - what is new is harmless: no code but a custom media type's own, no control character.
///
/// Blank lines, which libcups passes over, may come and go. What goes with an absent duplexer (its
/// group, the constraints of "Duplex", page sizes) may go, and what the library's property list has
/// for a present one may come.
class UpdateInvariants {
  public:
    explicit UpdateInvariants(std::string before);

    /// What does not hold of `after`, one phrase each; empty when all does. For texts that the
    /// guard lets pass: what an update makes of a hostile PPD may be refused there.
    std::vector<std::string> findingsIn(const std::string& after);

    /// The same of the lines alone.
    std::vector<std::string> findingsInLines(const std::string& after);

  private:
    using Findings = std::vector<std::string>;

    /// The lines of the PPD before, or what libcups knows of it; nothing when it does not open it.
    template <typename Thing>
    struct Things {
        std::optional<std::vector<Thing>> all;
        /// The same of what is left when all is gone that goes with an absent duplexer, and when
        /// some of it is, as far as libcups opens that. Read when it is needed.
        std::vector<std::vector<Thing>> withoutDuplexer;
        bool isDuplexerKnown = false;
    };

    template <typename Thing, typename Read, typename FindingsFrom>
    Findings findingsAmong(Things<Thing>& things, const Read& read,
                           const FindingsFrom& findingsFrom);
    Findings findingsInFacts(const std::string& after);

    std::string before_;
    /// What the category of custom media and the properties of its types name.
    std::set<std::string> names_;
    Things<std::string> lines_;
    Things<LibcupsFact> facts_;
};

}  // namespace TkPPDUpdating::Testing
