#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// The question of a PPD about one of its installable options (PPD specification 4.3, section 5.1,
/// queries).
struct OrbCSOptionQuestion {
    /// The option's keyword, without asterisk.
    std::string option;
    /// PostScript code that prints the answer, byte for byte as it stands in the PPD.
    std::string code;
    /// The keywords of the option's choices. Nothing else is an answer.
    std::vector<std::string> choices;
};

/// The questions of a PPD that a PostScript interpreter answers: a request parameter under
/// `kTkCSPostScriptQuestionsKey`.
struct TKPPDUPDATING_PUBLIC OrbCSPostScriptQuestions {
    /// The bytes that lead a printer of several languages into PostScript and out of it (PPD
    /// specification 4.3, JCLBegin with JCLToPSInterpreter, and JCLEnd); empty for one that needs
    /// none.
    std::string beginning;
    std::string end;                             ///< Out of it.
    std::vector<OrbCSOptionQuestion> questions;  ///< In the order of the PPD.

    /// Judges a printer by the product that it says it is (PostScript Language Reference, third
    /// edition, section 8.2, `product`), any bytes: nothing when it is to be asked, else one phrase
    /// that says why not.
    using Judge = std::function<std::optional<std::string>(const std::string& product)>;
    /// Called for a printer that says a product, before any question is sent. Null when every
    /// printer is to be asked.
    Judge reasonNotToAsk = nullptr;
};

/// The question of a PPD about one of its installable options that an object of the printer's
/// tables answers over SNMP ("*?OIDOPTION" and "*OIDOPTION").
struct OrbCSObjectQuestion {
    /// The option's keyword, without asterisk.
    std::string option;
    /// The object's identifier: numbers with dots between them.
    std::string identifier;
    /// What the object may hold, a text or a decimal number, to the option's choice.
    std::map<std::string, std::string, std::less<>> choices;
    /// The choice for whatever else it holds; empty when that is no answer.
    std::string choiceForOthers;
};

/// Request parameter (`std::shared_ptr<const OrbCSSNMPQuestions>`): what the printer is asked over
/// SNMP besides what it is always asked.
inline constexpr std::string_view kTkCSSNMPQuestionsKey = "SNMPQuestions";

/// The questions of a PPD that are answered over SNMP.
struct TKPPDUPDATING_PUBLIC OrbCSSNMPQuestions {
    std::vector<OrbCSObjectQuestion> questions;  ///< In the order of the PPD.
};

}  // namespace TkPPDUpdating
