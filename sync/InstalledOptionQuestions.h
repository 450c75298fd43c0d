#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "backends/ppdmodel/PPDModelFile.h"
#include "core_interface/OrbCSDeviceStatus.h"
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
std::shared_ptr<const OrbCSPostScriptQuestions> postScriptQuestionsOfPPD(const PPDModelFile& PPD,
                                                                         std::string& reason);

/// What was asked of a printer, and answered, for people, in the PPD's own texts: one line for each
/// question, "Duplex Unit: asked over PostScript: Installed". `answer` is the status that came of
/// it, null when none did.
std::vector<std::string> wordsForAnswers(const PPDModelFile& PPD,
                                         const OrbCSPostScriptQuestions& questions,
                                         const OrbCSDeviceStatus* answer);

/// A status that says what `others` does, which may be null, and the installed options of `asked`
/// besides, which is not null.
std::shared_ptr<const OrbCSDeviceStatus> statusWithInstalledOptions(
    std::shared_ptr<const OrbCSDeviceStatus> others,
    std::shared_ptr<const OrbCSDeviceStatus> asked);

}  // namespace TkPPDUpdating
