#pragma once

#include <functional>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "tests/support/RunProgram.h"
#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {

/// The files of a folder, by their paths in it, with what is in them.
using Files = std::map<std::string, std::string>;

/// How a run ended.
enum class RunEnd {
    /// With exit status 0.
    done,
    /// With another one.
    failed,
    /// In the middle of something: killed by the test.
    killed,
};

/// A run of the tool on files that are made for it.
struct FaultyCommand {
    std::string name;
    /// "{}" stands for the folder.
    std::vector<std::string> arguments;
    Files files;
    /// What is wrong with the files after a run; empty when nothing is. `whole` are the files after
    /// a run without a fault.
    std::function<std::string(const Files& after, const Files& whole, RunEnd end)> complaint;
    /// Each how many allocations one is let fail where not all are; each tenth of it of other
    /// calls.
    long sampleStep = 10;
};

// For the names of tests.
inline std::ostream& operator<<(std::ostream& stream, const FaultyCommand& command) {
    return stream << command.name;
}

/// Those of the commands that write, and those that only tell.
std::vector<FaultyCommand> writingCommands();
std::vector<FaultyCommand> tellingCommands();

/// Whether every place is to be tried: TKPPDUPDATING_EVERY_FAULT is set and not empty. Else a
/// sample is.
bool isEveryFaultTried();

/// Runs a command once without a fault, and then as often as one likes with one.
class FaultyRuns {
  public:
    explicit FaultyRuns(FaultyCommand command);

    /// Of the run without a fault.
    long allocationCount() const { return allocationCount_; }
    const std::vector<std::string>& calls() const { return calls_; }

    /// Runs it under a fault (FaultyCalls.cpp says how they are named) and adds a test failure for
    /// everything that is wrong with how it ended, what it told and what it left behind. After a
    /// kill in the midst of changes it is run again, which has to bring everything in order.
    void tryFault(const std::string& fault);

    /// How many faults were tried.
    long tried() const { return tried_; }

  private:
    ProgramResult run(const std::map<std::string, std::optional<std::string>>& environment) const;
    void makeFiles() const;
    Files filesNow() const;
    std::string complaintAbout(const ProgramResult& result, RunEnd end, const Files& after) const;
    std::string complaintAfterKill() const;

    FaultyCommand command_;
    TemporaryDirectory directory_;
    ProgramResult whole_;
    Files wholeFiles_;
    long allocationCount_ = 0;
    std::vector<std::string> calls_;
    long tried_ = 0;
};

}  // namespace TkPPDUpdating::Testing
