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
    for (std::size_t place = 1; place <= runs.calls().size(); ++place) {
        const std::string call = "call " + std::to_string(place);
        for (std::size_t which = 0; which < kErrors.size(); ++which) {
            // Of a sample, each third place with one error after the other.
            if (isEveryFaultTried() || (place % 3 == 1 && place / 3 % kErrors.size() == which)) {
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
    for (std::size_t place = 1; place <= runs.calls().size(); ++place) {
        if (isTransfer(runs.calls()[place - 1])) {
            runs.tryFault("call " + std::to_string(place) + " short");
        }
    }
    tell(runs, "short counts");
}

TEST_P(WritingCommand, LeavesWholeFilesWhenItIsKilledAtASystemCall) {
    FaultyRuns runs(GetParam());
    const std::size_t step = isEveryFaultTried() ? 1 : 3;
    for (std::size_t place = 1; place <= runs.calls().size(); ++place) {
        const std::string call = "call " + std::to_string(place);
        const std::string& name = runs.calls()[place - 1];
        const bool isOfInterest = name != "read" && name != "stat" && name != "close";
        if (place % step == 0 || isOfInterest) {
            runs.tryFault(call + " kill");
        }
        if (name == "write") {
            runs.tryFault(call + " torn");
        }
    }
    tell(runs, "kills");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
