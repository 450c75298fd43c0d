#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "backends/postscript/PostScriptLimits.h"
#include "backends/schemes/ReportedDeviceStatus.h"
#include "core_interface/OrbCSError.h"
#include "core_interface/OrbCSOptionQuestions.h"

namespace TkPPDUpdating {

/// Asks one printer the questions of its PPD, all of them over one connection.
///
/// A printer that says nothing at first, because it is printing, is no PostScript printer or does
/// not talk back, is left alone, and so is one that says that it is another printer: no question is
/// sent.
class PostScriptInquiry {
  public:
    PostScriptInquiry(const PostScriptLimits& limits, const OrbCSPostScriptQuestions& questions)
        : limits_(limits), questions_(questions) {}

    /// A status that tells `kTkCSInstalledOptionsKey`, when one question was answered by a choice
    /// of its option, and nothing else. Why the others were not stands in its dropped values,
    /// "OPTION: reason". Null, with the cause and the reason in `error`, when the printer could not
    /// be asked. `deviceURI` is "socket://HOST" or "socket://HOST:PORT", whatever follows.
    std::shared_ptr<const ReportedDeviceStatus> statusOfPrinter(const std::string& deviceURI,
                                                                OrbCSError& error) const;

  private:
    PostScriptLimits limits_;
    const OrbCSPostScriptQuestions& questions_;
};

}  // namespace TkPPDUpdating
