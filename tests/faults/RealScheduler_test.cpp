// The same over the real scheduler's library and a real scheduler: a sample, since each run takes
// longer. An abort in the scheduler's library, which does not expect to be without memory, is an
// end like a kill: nothing may be half-written.
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <functional>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "tests/faults/FaultyCommand.h"
#include "tests/real/PrivateScheduler.h"
#include "tests/support/FileContents.h"
#include "tests/support/RunProgram.h"
#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {
namespace {

namespace fs = std::filesystem;

const std::string kSamples = TKPPDUPDATING_SOURCE_DIR "/samples/";

std::string recordingOf(bool isFine) {
    return R"({"Told": ["MaxSupportedResolution"], "MaxSupportedResolution": )" +
           std::string(isFine ? "1200}" : "600}");
}

/// A queue whose printer is finer in one run than in the next, so that every run has something to
/// replace.
class RealSync : public testing::Test {
  protected:
    RealSync() {
        scheduler_.addQueue("office", "file:" + recording_, kSamples + "ppd/zr-office.ppd");
        (void)sync("");
    }

    std::string PPDNow() const { return contentsOfFile(scheduler_.PPDPath("office")); }

    /// Gives the printer the other status.
    void turnPrinter() {
        isFine_ = !isFine_;
        directory_.write("printer.json", recordingOf(isFine_));
    }

    ProgramResult sync(const std::string& fault, const std::string& report = {}) const {
        ProgramSurroundings surroundings;
        // Half of what the tool gives a scheduler that says nothing, which no fault may cost.
        surroundings.timeLimit = std::chrono::seconds(15);
        surroundings.environment = {{"LD_PRELOAD", TKPPDUPDATING_FAULTY_CALLS},
                                    {"TKPPDUPDATING_FAULT", fault},
                                    {"TKPPDUPDATING_FAULT_REPORT", report},
                                    {"LC_ALL", "C"}};
        return runProgram({TKPPDUPDATING_TOOL, "sync", "office", "--server", scheduler_.server(),
                           "--backup", backups_},
                          surroundings);
    }

    /// One run under a fault, and what is wrong afterwards.
    void tryFault(const std::string& fault) {
        ++tried_;
        turnPrinter();
        const std::string before = PPDNow();
        const ProgramResult run = sync(fault);
        const std::string after = PPDNow();
        const std::string kept = contentsOfFile(backups_ + "/office.ppd");
        const ProgramResult again = sync("");
        const std::string whole = PPDNow();
        std::ostringstream wrong;
        if (run.timedOut) {
            wrong << "it hangs\n";
        }
        if (after != before && after != whole) {
            wrong << "the PPD is neither old nor new\n";
        }
        if (run.exitStatus == 0 && after != whole) {
            wrong << "it says that it succeeded\n";
        }
        if (after != before && kept != before) {
            wrong << "what is kept is not what was replaced\n";
        }
        if (again.exitStatus != 0) {
            wrong << "the next run fails: " << again.standardOutput << again.standardError;
        }
        for (const auto& entry : fs::directory_iterator(backups_)) {
            const std::string name = entry.path().filename();
            if (name.starts_with('.')) {
                wrong << "left behind: " << name << "\n";
            }
        }
        const bool isCrash = run.exitStatus == 128 + SIGABRT || run.exitStatus == 128 + SIGSEGV;
        const bool isOfLibrary = run.standardError.find("crash in libcups") != std::string::npos;
        if (isCrash && !isOfLibrary) {
            wrong << "it crashes\n";
        }
        crashes_ += isCrash ? 1 : 0;
        if (!wrong.str().empty()) {
            ADD_FAILURE() << "under \"" << fault << "\": " << wrong.str() << "exit status "
                          << run.exitStatus << "\n"
                          << run.standardOutput << run.standardError;
        }
    }

    /// How many allocations and which calls a run without a fault makes.
    void count() {
        turnPrinter();
        const TemporaryDirectory elsewhere;
        const std::string report = (elsewhere.path() / "report").string();
        const ProgramResult run = sync("", report);
        ASSERT_EQ(run.exitStatus, 0) << run.standardOutput << run.standardError;
        std::istringstream lines(contentsOfFile(report));
        lines >> allocations_;
        for (std::string call; lines >> call;) {
            calls_.push_back(call);
        }
        ASSERT_GT(allocations_, 100);
        ASSERT_GT(calls_.size(), 50U);
    }

    void tell(const std::string& what) const {
        std::cout << tried_ << " " << what << " tried, of which " << crashes_
                  << " ended in the scheduler's library\n";
    }

    PrivateScheduler scheduler_;
    TemporaryDirectory directory_;
    std::string recording_ = directory_.write("printer.json", recordingOf(false));
    std::string backups_ = (directory_.path() / "kept").string();
    bool isFine_ = false;
    long allocations_ = 0;
    std::vector<std::string> calls_;
    long tried_ = 0;
    long crashes_ = 0;
};

TEST_F(RealSync, LosesNothingWhenAnAllocationFails) {
    count();
    const long step = isEveryFaultTried() ? 1 : allocations_ / 25;
    for (long place = 1; place <= allocations_; place += step) {
        tryFault("allocation " + std::to_string(place));
    }
    tell("failing allocations");
}

TEST_F(RealSync, LosesNothingWhenASystemCallFailsOrIsTheLast) {
    count();
    const std::size_t step = isEveryFaultTried() ? 1 : calls_.size() / 12;
    for (std::size_t place = 1; place <= calls_.size(); place += step) {
        const std::string call = "call " + std::to_string(place);
        for (const char* how : {" errno 5", " errno 4", " short", " kill", " torn"}) {
            tryFault(call + how);
        }
    }
    tell("failing, short and last system calls");
}

TEST_F(RealSync, DoesNotWaitForAnAnswerWhereATransferFailed) {
    count();
    for (std::size_t place = 1; place <= calls_.size(); ++place) {
        const std::string& name = calls_[place - 1];
        if (name == "send" || name == "recv" || name == "__recv_chk") {
            tryFault("call " + std::to_string(place) + " errno 5");
        }
    }
    tell("failing transfers");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
