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
/// What goes with an absent duplexer (its group, the constraints of "Duplex", page sizes) may go,
/// and what the library's property list has for a present one may come.
class UpdateInvariants {
  public:
    explicit UpdateInvariants(std::string before);

    /// What does not hold of `after`, one phrase each; empty when all does. For texts that the
    /// guard lets pass: what an update makes of a hostile PPD may be refused there.
    std::vector<std::string> findingsIn(const std::string& after);

    /// The same of the lines alone.
    std::vector<std::string> findingsInLines(const std::string& after) const;

  private:
    /// How often each may go.
    template <typename Thing>
    using Counts = std::map<Thing, int>;

    struct Reading {
        LibcupsFacts facts;
        /// What goes with an absent duplexer.
        Counts<LibcupsFact> ofDuplexer;
        /// The reading when all of that is gone; nothing when libcups does not open that.
        std::optional<LibcupsFacts> withoutDuplexer;
    };

    const std::optional<Reading>& reading();

    std::string before_;
    std::string withoutDuplexer_;
    /// What the category of custom media and the properties of its types name.
    std::set<std::string> names_;
    bool wasRead_ = false;
    std::optional<Reading> reading_;
};

}  // namespace TkPPDUpdating::Testing
