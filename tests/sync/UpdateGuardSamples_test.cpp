// The guard accepts all that the updaters really do.
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "manager/OrbClassTable.h"
#include "manager/OrbPPDConcreteUpdatingManager.h"
#include "sync/UpdateGuard.h"
#include "tests/samples/SamplePrinters.h"
#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {
namespace {

std::vector<std::pair<std::string, std::string>> printersAndStates() {
    std::vector<std::pair<std::string, std::string>> all;
    for (const auto& [printer, states] : sampleStates()) {
        for (const std::string& state : states) {
            all.emplace_back(printer, state);
        }
    }
    return all;
}

class GuardOfSamples : public testing::Test {
  protected:
    /// The text after a run of the manager's classes with the recording, which the guard accepts.
    std::string accepted(OrbPPDConcreteUpdatingManager& manager, const std::string& before,
                         const std::string& recording) {
        const std::string path = folder_.write("before.ppd", before);
        const PPDText after =
            manager.updatedPPDContentsForFile_deviceURI(path, "file://" + recording);
        EXPECT_NE(after, nullptr);
        const auto file = OrbPPDFile::PPDFileWithContentsOfFile(path);
        const auto reason = UpdateGuard::reasonNotToWrite(
            before, *after, manager.applicableUpdatersForPPDFile(file.get()));
        EXPECT_EQ(reason.value_or("accepted"), "accepted") << recording;
        return *after;
    }

    const SampleWorld world_;
    const TemporaryDirectory folder_;
    OrbPPDConcreteUpdatingManager manager_;
};

TEST_F(GuardOfSamples, AcceptsEachPrinterTwiceAndThenEveryOther) {
    for (const std::string& printer : samplePrinters()) {
        const std::string before = textOfFile(PPDPathOf(printer));
        std::set<std::string> results;
        for (const auto& [recorded, state] : printersAndStates()) {
            const std::string after = accepted(manager_, before, recordingPathOf(recorded, state));
            EXPECT_NE(after, before) << printer << " " << recorded << " " << state;
            EXPECT_EQ(accepted(manager_, after, recordingPathOf(recorded, state)), after);
            if (!results.insert(after).second) {
                continue;  // Another recording gave the same text, so what follows was seen.
            }
            for (const auto& [otherRecorded, otherState] : printersAndStates()) {
                accepted(manager_, after, recordingPathOf(otherRecorded, otherState));
            }
        }
    }
}

TEST_F(GuardOfSamples, AcceptsEachClassAlone) {
    const auto classes = manager_.registeredClasses();
    for (const OrbClass* updaterClass : classes) {
        manager_.unregisterUpdaterClass(updaterClass);
    }
    bool changes = false;
    for (const OrbClass* updaterClass : classes) {
        manager_.registerUpdaterClass(updaterClass);
        for (const std::string& printer : samplePrinters()) {
            const std::string before = textOfFile(PPDPathOf(printer));
            for (const std::string& state : sampleStates().at(printer)) {
                changes |= accepted(manager_, before, recordingPathOf(printer, state)) != before;
            }
        }
        manager_.unregisterUpdaterClass(updaterClass);
    }
    EXPECT_TRUE(changes);
}

TEST_F(GuardOfSamples, AcceptsASilentPrinter) {
    for (const std::string& printer : samplePrinters()) {
        const std::string before = textOfFile(PPDPathOf(printer));
        EXPECT_NE(accepted(manager_, before, "/does/not/exist.json"), before) << printer;
    }
}

TEST_F(GuardOfSamples, AcceptsTheValuesOfAnotherPPD) {
    for (const auto& [printer, state] : printersAndStates()) {
        const std::string before = textOfFile(PPDPathOf(printer));
        const std::string other = accepted(manager_, before, recordingPathOf(printer, state));
        const auto otherFile =
            OrbPPDFile::PPDFileWithContentsOfFile(folder_.write("other.ppd", other));
        const auto file = OrbPPDFile::PPDFileWithContentsOfFile(PPDPathOf(printer));
        const auto updaters = manager_.applicableUpdatersForPPDFile(file.get());
        PPDText text = makePPDText(before);
        OrbDictionary context;
        for (const auto& updater : updaters) {
            const PPDText next = updater->updatedPPDContentsForContents_PPDFile_context(
                text, otherFile.get(), &context);
            text = next ? next : text;
        }
        // What the other PPD has without a value would be gone for good: an updater does not apply
        // to a PPD without its attribute.
        const bool losesPens = printer == "zr-inkjet" && state == "silent";
        EXPECT_EQ(UpdateGuard::reasonNotToWrite(before, *text, updaters),
                  losesPens ? std::optional<std::string>("it would lose a line of ZrPensConfigName")
                            : std::nullopt)
            << printer << " " << state;
    }
}

/// How long the guard takes for a PPD with so many further options, half of which are the user's
/// and half of which go with the duplex unit.
double secondsFor(std::size_t options) {
    std::string driver = "*PPD-Adobe: \"4.3\"\n*ZrNonInstallableDuplex: Unknown\n";
    std::string duplex = "*OpenGroup: ZrTwoSidedPrinting/Two-Sided\n";
    std::string constraints;
    for (std::size_t number = 0; number < options; ++number) {
        const std::string name = "Option" + std::to_string(number);
        const std::string option = "*OpenUI *" + name + "/Text: PickOne\n*Default" + name +
                                   ": a\n*" + name + " a/A: \"\"\n*" + name +
                                   " b/B: \"\"\n*CloseUI: *" + name + "\n";
        (number % 2 == 0 ? driver : duplex) += option;
        constraints += "*UIConstraints: *" + name + " a *Duplex None\n";
    }
    const std::string before =
        driver + duplex + "*CloseGroup: ZrTwoSidedPrinting\n" + constraints + "*Last: 1\n";
    const std::string after = driver + "*Last: 1\n";
    std::vector<std::unique_ptr<ITkPPDUpdater>> updaters;
    updaters.push_back(OrbClassFromName("OrbPPDNonInstallableDuplexUpdater")->newInstance());
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(before, after, updaters), std::nullopt);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

TEST(UpdateGuardCost, GrowsWithTheTextAndNotFaster) {
    (void)secondsFor(100);
    const double small = secondsFor(1000);
    const double large = secondsFor(16000);
    // Sixteen times the text; in proportion to its square it would be 256 times the time.
    EXPECT_LT(large, small * 80) << small << " s and " << large << " s";
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
