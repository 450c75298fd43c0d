#pragma once

#include <string>
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
    std::string end;
    std::vector<OrbCSOptionQuestion> questions;
};

}  // namespace TkPPDUpdating
