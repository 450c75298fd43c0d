// Every place of a run at which something can fail, one after the other. As part of all tests this
// is a sample; with TKPPDUPDATING_EVERY_FAULT=1 all of them.
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <iostream>
#include <string>
#include <vector>

#include "tests/faults/FaultyCommand.h"

namespace TkPPDUpdating::Testing {
namespace {

std::vector<FaultyCommand> allCommands() {
    auto commands = writingCommands();
    for (FaultyCommand& command : tellingCommands()) {
        commands.push_back(std::move(command));
    }
    return commands;
}

void tell(const FaultyRuns& runs, const std::string& what) {
    std::cout << runs.tried() << " " << what << " tried\n";
}

class AnyCommand : public testing::TestWithParam<FaultyCommand> {};
class WritingCommand : public testing::TestWithParam<FaultyCommand> {};

std::string nameOf(const testing::TestParamInfo<FaultyCommand>& command) {
    return command.param.name;
}

INSTANTIATE_TEST_SUITE_P(Faults, AnyCommand, testing::ValuesIn(allCommands()), nameOf);
INSTANTIATE_TEST_SUITE_P(Faults, WritingCommand, testing::ValuesIn(writingCommands()), nameOf);

TEST_P(AnyCommand, GivesTheRightResultOrAnErrorWhenOneAllocationFails) {
    FaultyRuns runs(GetParam());
    const long step = isEveryFaultTried() ? 1 : GetParam().sampleStep;
    for (long place = 1; place <= runs.allocationCount(); place += step) {
        runs.tryFault("allocation " + std::to_string(place));
    }
    tell(runs, "failing allocations");
}

TEST_P(AnyCommand, GivesTheRightResultOrAnErrorWhenNoMemoryIsLeft) {
    FaultyRuns runs(GetParam());
    const long step = isEveryFaultTried() ? 1 : 2 * GetParam().sampleStep;
    for (long place = 1; place <= runs.allocationCount(); place += step) {
        runs.tryFault("allocations " + std::to_string(place));
    }
    tell(runs, "ends of memory");
}

TEST_P(AnyCommand, GivesTheRightResultOrAnErrorWhenASystemCallFails) {
    constexpr auto kErrors = std::to_array({EIO, ENOSPC, EACCES, EINTR, ENOMEM, EMFILE});
    FaultyRuns runs(GetParam());
    const std::size_t step = 3 * static_cast<std::size_t>(GetParam().sampleStep) / 10;
    for (std::size_t place = 1; place <= runs.calls().size(); ++place) {
        const std::string call = "call " + std::to_string(place);
        for (std::size_t which = 0; which < kErrors.size(); ++which) {
            // Of a sample, each third place (of long runs fewer) with one error after the other.
            if (isEveryFaultTried() ||
                (place % step == 1 && place / step % kErrors.size() == which)) {
                runs.tryFault(call + " errno " + std::to_string(kErrors[which]));
            }
        }
    }
    tell(runs, "failing system calls");
}

/// Whether it may transfer less than it is asked to.
bool isTransfer(const std::string& call) {
    return call == "read" || call == "write" || call == "pread" || call == "pread64";
}

TEST_P(AnyCommand, GivesTheRightResultWhenASystemCallComesShort) {
    FaultyRuns runs(GetParam());
    const auto step =
        isEveryFaultTried() ? 1 : static_cast<std::size_t>(GetParam().sampleStep) / 10;
    std::size_t transfers = 0;
    for (std::size_t place = 1; place <= runs.calls().size(); ++place) {
        if (isTransfer(runs.calls()[place - 1]) && transfers++ % step == 0) {
            runs.tryFault("call " + std::to_string(place) + " short");
        }
    }
    tell(runs, "short counts");
}

TEST_P(WritingCommand, LeavesWholeFilesWhenItIsKilledAtASystemCall) {
    FaultyRuns runs(GetParam());
    // Of a sample, each third call that changes nothing, and each (of long runs some) that may.
    const auto sampleStep = static_cast<std::size_t>(GetParam().sampleStep);
    const std::size_t step = isEveryFaultTried() ? 1 : 3 * sampleStep / 10;
    const std::size_t stepOfChanges = isEveryFaultTried() ? 1 : sampleStep / 10;
    std::size_t changes = 0;
    for (std::size_t place = 1; place <= runs.calls().size(); ++place) {
        const std::string call = "call " + std::to_string(place);
        const std::string& name = runs.calls()[place - 1];
        const bool mayChange = name != "read" && name != "stat" && name != "close";
        const bool isOfInterest = mayChange && changes++ % stepOfChanges == 0;
        if (place % step == 0 || isOfInterest) {
            runs.tryFault(call + " kill");
        }
        if (name == "write" && isOfInterest) {
            runs.tryFault(call + " torn");
        }
    }
    tell(runs, "kills");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
