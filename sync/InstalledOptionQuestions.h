#pragma once

#include <memory>
#include <string>

#include "backends/ppdmodel/PPDModelFile.h"
#include "core_interface/OrbCSOptionQuestions.h"

namespace TkPPDUpdating {

/// The questions that a PPD has for a PostScript printer ("*?OPTION", PPD specification 4.3,
/// section 5.1) about the options of its group InstallableOptions, in their order. Null, with the
/// reason (one phrase), when there is nothing to ask:
///
/// - It has no such question.
/// - It is not for a PostScript printer: one of its filters (cupsFilter, cupsFilter2, CUPS PPD
///   extensions) takes something else than PostScript, or makes something else of it. A filter
///   that hands PostScript on, be it with commands of the printer's around it, is none.
///
/// `reasonNotToAsk` goes with them.
std::shared_ptr<const OrbCSPostScriptQuestions> postScriptQuestionsOfPPD(
    const PPDModelFile& PPD, std::string& reason,
    OrbCSPostScriptQuestions::Judge reasonNotToAsk = nullptr);

/// The questions of a PPD that objects of the printer's tables answer over SNMP, about the options
/// of its group InstallableOptions, in their order; null when it has none:
///
///     *?OIDOPTION: "1.3.6.1.4.1.99.1.0"
///     *OIDOPTION CHOICE: "what the object then holds"
///
/// ".*" stands for whatever no other line names. A line may also have the two sides the other way
/// round, where what the object holds is one word and no choice.
std::shared_ptr<const OrbCSSNMPQuestions> SNMPQuestionsOfPPD(const PPDModelFile& PPD);

}  // namespace TkPPDUpdating
