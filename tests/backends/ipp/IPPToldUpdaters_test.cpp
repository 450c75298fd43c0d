// Which updaters an answer over IPP lets run on a PPD that has something for every one of them.
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "manager/OrbClassTable.h"
#include "manager/OrbPPDToldRule.h"
#include "ppd/PPDTextFile.h"
#include "tests/backends/ipp/IPPTestMessage.h"

namespace TkPPDUpdating::Testing {
namespace {

/// A printer that says of itself all that IPP can say.
IPPTestMessage fullAnswer() {
    IPPTestMessage answer;
    answer.keywords("sides-supported", {"one-sided", "two-sided-long-edge"})
        .keywords("media-source-supported", {"main", "bottom"})
        .resolution("printer-resolution-supported", 1200, 600)
        .keywords("urf-supported", {"RS300-600"})
        .keywords("marker-types", {"ink", "ink"})
        .texts("marker-names", IPP_TAG_NAME, {"Cyan", "Black"})
        .texts("marker-colors", IPP_TAG_NAME, {"#00FFFF", "#000000"})
        .integers("marker-levels", {40, 0})
        .keywords("media-type-supported", {"stationery"});
    return answer;
}

TEST(IPPToldUpdaters, AllThatIPPCanTellLetsTheseRunOnTheInkJet) {
    using Kind = OrbPPDToldDecision::Kind;
    const std::map<std::string_view, Kind> expected = {
        {"OrbPPDDeviceCapabilitiesUpdater", Kind::run},
        {"OrbPPDDuplexerInstalledUpdater", Kind::run},
        {"OrbPPDLowerTrayInstalledUpdater", Kind::run},
        {"OrbPPDNonInstallableDuplexUpdater", Kind::run},
        {"OrbPPDMaxResolutionUpdater", Kind::run},
        {"OrbPPDCustomMediaUpdater", Kind::run},
        {"OrbPPDPensConfigCSLInfoUpdater", Kind::runCompleted},
        {"OrbPPDPensConfigAdditionalInfoUpdater", Kind::runCompleted},
        {"OrbPPDPenConfigUpdater", Kind::keep},
        {"OrbPPDPensConfigNameUpdater", Kind::keep},
        {"OrbPPDPensConfigFamilyIDUpdater", Kind::keep},
        {"OrbPPDLinTablesUpdater", Kind::keep},
        {"OrbPPDEstimatedPagesUpdater", Kind::keep},
        {"OrbPPDDefaultPageSizeUpdater", Kind::run},
    };
    const PPDText inkjet =
        PPDTextWithContentsOfFile(TKPPDUPDATING_SOURCE_DIR "/samples/ppd/zr-inkjet.ppd");
    ASSERT_TRUE(inkjet);
    const auto told = fullAnswer().status()->toldEntries();
    for (const auto& [name, kind] : expected) {
        const OrbClass* const updaterClass = OrbClassFromName(name);
        ASSERT_NE(updaterClass, nullptr) << name;
        EXPECT_EQ(OrbPPDToldRule::decision(*updaterClass->newInstance(), told, *inkjet).kind, kind)
            << name;
    }
}

TEST(IPPToldUpdaters, AnEmptyAnswerLetsNoneRunThatReadsAStatus) {
    const auto told = IPPTestMessage().status()->toldEntries();
    for (const OrbClass* updaterClass : OrbClassTable()) {
        const auto updater = updaterClass->newInstance();
        EXPECT_EQ(
            OrbPPDToldRule::decision(*updater, told, "").kind == OrbPPDToldDecision::Kind::run,
            !OrbPPDToldRule::readsStatus(*updater))
            << updaterClass->name();
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
