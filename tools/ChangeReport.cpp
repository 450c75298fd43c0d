#include "tools/ChangeReport.h"

#include "backends/ppdmodel/PPDModelFile.h"
#include "core_interface/OrbCoreInterface.h"
#include "sync/ChangeDescription.h"
#include "sync/PPDLocalizedTexts.h"
#include "tools/Diagnostics.h"

namespace TkPPDUpdating {

ChangeReport::ChangeReport(const PPDText& before, const PPDText& after) {
    const auto was = PPDModelFile::fileWithText(before);
    const auto is = PPDModelFile::fileWithText(after);
    if (was && is) {
        changes_ = PPDChangesBetween(*was, *is);
        descriptions_ =
            describedChanges(*was, *is, changes_, userLanguages(*OrbCoreInterface::environment()));
    }
}

std::string ChangeReport::lines(const std::string& indentation) const {
    std::string lines;
    for (const std::string& description : descriptions_) {
        lines += indentation + Diagnostics::printable(description) + "\n";
    }
    return lines;
}

}  // namespace TkPPDUpdating
