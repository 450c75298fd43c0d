#pragma once

#include <string>
#include <vector>

#include "ppd/PPDText.h"
#include "sync/PPDChange.h"

namespace TkPPDUpdating {

/// What an update changed in a PPD, as the tool tells it: in the language of the user's messages.
class ChangeReport {
  public:
    /// Compares the texts. There is nothing to tell when one is null or cannot be parsed.
    ChangeReport(const PPDText& before, const PPDText& after);

    /// One line for each change, which a terminal may get, with `indentation` before it; empty when
    /// the texts are equal.
    std::string lines(const std::string& indentation = {}) const;

    /// The same as they are, with control characters that may stand in them.
    const std::vector<std::string>& descriptions() const { return descriptions_; }

    /// The same for programs: every attribute that changed, and the main keywords of them.
    const std::vector<PPDChange>& changes() const { return changes_; }
    std::vector<std::string> keywords() const { return keywordsOfPPDChanges(changes_); }

  private:
    std::vector<PPDChange> changes_;
    std::vector<std::string> descriptions_;
};

}  // namespace TkPPDUpdating
