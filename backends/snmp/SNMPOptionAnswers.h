#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "backends/snmp/SNMPSession.h"
#include "core_interface/OrbCSOptionQuestions.h"
#include "core_interface/OrbCSStatusValue.h"

namespace TkPPDUpdating {

/// What the objects of a printer say about the installable options of a PPD.
struct SNMPOptionAnswers {
    OrbCSInstalledOptions installed;
    /// Why other options are not known: "OPTION: reason", without any text of the printer's.
    std::vector<std::string> reasons;
};

/// The numbers of an object identifier in a PPD (".1.3.6.1.4.1.99.1.0", with or without the first
/// dot); nothing for a text that is none (RFC 2578, section 3.5: 2 to 128 numbers below 2^32, of
/// which the first is at most 2 and the second, below 2, at most 39).
std::optional<SNMPName> SNMPNameOfIdentifier(std::string_view identifier);

/// The choice that an answer to a request for just that object means. Nothing, with the reason (one
/// phrase), when it is none.
std::optional<std::string> choiceOfAnswer(const OrbCSObjectQuestion& question, const SNMPName& name,
                                          const SNMPAnswer& answer, std::string& reason);

}  // namespace TkPPDUpdating
