#include "tests/faults/FaultyCommand.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <utility>

#include "tests/support/FileContents.h"

namespace TkPPDUpdating::Testing {

namespace {

namespace fs = std::filesystem;

constexpr int kKilled = 128 + SIGKILL;

std::string sample(const std::string& path) {
    return contentsOfFile(TKPPDUPDATING_SOURCE_DIR "/samples/" + path);
}

const std::string& valueOf(const Files& files, const std::string& name) {
    static const std::string kNone = "(there is none)";
    const auto file = files.find(name);
    return file == files.end() ? kNone : file->second;
}

std::string replaced(std::string text, const std::string& folder) {
    const std::size_t place = text.find("{}");
    return place == std::string::npos ? text : text.replace(place, 2, folder);
}

/// The loader (ld.so) ends a process for which it can make no thread-local data.
bool isEndOfLoader(const ProgramResult& result) {
    return result.exitStatus == 127 &&
           (result.standardError.find("cannot allocate memory for thread-local data") !=
                std::string::npos ||
            result.standardError.find("out of memory") != std::string::npos);
}

/// Those that stand in the folder and are none of its files before or after a run without a fault.
std::string foreignFiles(const Files& after, const Files& before, const Files& whole) {
    std::string names;
    for (const auto& [name, content] : after) {
        // What is set aside and cannot be removed is known to the next run that has use for it.
        if (!before.contains(name) && !whole.contains(name) && !name.ends_with(".ppd.former")) {
            names += " " + name;
        }
    }
    return names.empty() ? "" : "left behind:" + names;
}

/// A command that replaces the file `name`, and nothing else.
FaultyCommand replacing(const std::string& commandName, const std::string& name,
                        std::vector<std::string> arguments, Files files) {
    FaultyCommand command{commandName, std::move(arguments), std::move(files), nullptr};
    const Files before = command.files;
    command.complaint = [name, before](const Files& after, const Files& whole, RunEnd end) {
        const std::string now = valueOf(after, name);
        if (now != valueOf(whole, name) && (end == RunEnd::done || now != valueOf(before, name))) {
            return name + " is neither old nor new: " + std::to_string(now.size()) + " bytes";
        }
        return end == RunEnd::killed ? "" : foreignFiles(after, before, whole);
    };
    return command;
}

const Files& printerFiles() {
    static const Files kFiles = {{"a.ppd", sample("ppd/zr-office.ppd")},
                                 {"printer.json", sample("status/zr-office-all.json")}};
    return kFiles;
}

const std::vector<std::string> kDevice = {"--device-uri", "file:{}/printer.json"};

std::vector<std::string> withDevice(std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), kDevice.begin(), kDevice.end());
    return arguments;
}

FaultyCommand updateInto(const std::string& name, const Files& moreFiles) {
    Files files = printerFiles();
    files.insert(moreFiles.begin(), moreFiles.end());
    return replacing(name, "b.ppd", withDevice({"update", "{}/a.ppd", "--output", "{}/b.ppd"}),
                     std::move(files));
}

constexpr const char* kEarlier = "*PPD-Adobe: \"4.3\"\n*% an earlier one\n";

/// What is kept of a queue is the PPD that was replaced; while nothing is replaced, the earlier
/// one.
std::string complaintAboutBackup(const std::string& queue, const Files& before, const Files& after,
                                 const Files& whole, RunEnd end) {
    const std::string now = valueOf(after, "queues/" + queue + ".ppd");
    const std::string old = valueOf(before, "queues/" + queue + ".ppd");
    const std::string kept = valueOf(after, "kept/" + queue + ".ppd");
    if (now != old && now != valueOf(whole, "queues/" + queue + ".ppd")) {
        return queue + " has a PPD that is neither old nor new";
    }
    if (now == old && end == RunEnd::done) {
        return queue + " was not replaced";
    }
    if (now != old && kept != old) {
        return queue + " was replaced, and what is kept is not what it had";
    }
    if (now == old && kept != valueOf(before, "kept/" + queue + ".ppd") &&
        !(end == RunEnd::killed && kept == old)) {
        return queue + " was not replaced, and what was kept of it is lost";
    }
    // All that is kept is whole.
    for (const auto& [name, content] : after) {
        if (name.starts_with("kept/" + queue + ".") && content != old && content != kEarlier) {
            return name + " is not whole";
        }
    }
    return "";
}

/// The time is part of a name.
bool isKeptWithTime(const std::string& name) {
    return name.starts_with("kept/") && name.find('Z') != std::string::npos;
}

Files withoutTimes(const Files& files) {
    Files others;
    for (const auto& [name, content] : files) {
        if (!isKeptWithTime(name) && !name.ends_with(".new")) {
            others.emplace(name, content);
        }
    }
    return others;
}

std::size_t countWithTimes(const Files& files) {
    return static_cast<std::size_t>(
        std::ranges::count_if(files, [](const auto& file) { return isKeptWithTime(file.first); }));
}

FaultyCommand syncing(const std::string& name, const std::vector<std::string>& queues,
                      const std::vector<std::string>& moreArguments) {
    FaultyCommand command{
        name, {"sync", "--all", "--server", "{}/queues", "--backup", "{}/kept"}, {}, nullptr};
    command.arguments.insert(command.arguments.end(), moreArguments.begin(), moreArguments.end());
    for (const std::string& queue : queues) {
        command.files["queues/" + queue + ".ppd"] = sample("ppd/zr-office.ppd");
        command.files["queues/" + queue + ".json"] = sample("status/zr-office-all.json");
    }
    command.files["kept/" + queues.front() + ".ppd"] = kEarlier;
    const Files before = command.files;
    command.complaint = [queues, before](const Files& after, const Files& whole, RunEnd end) {
        for (const std::string& queue : queues) {
            if (auto complaint = complaintAboutBackup(queue, before, after, whole, end);
                !complaint.empty()) {
                return complaint;
            }
        }
        if (end == RunEnd::killed) {
            return std::string();
        }
        if (countWithTimes(after) > countWithTimes(whole)) {
            return std::string("more is kept than was replaced");
        }
        return foreignFiles(withoutTimes(after), before, whole);
    };
    return command;
}

FaultyCommand restoring() {
    Files files = {{"queues/office.ppd", sample("ppd/zr-office.ppd")},
                   {"kept/office.ppd", sample("ppd/zr-compact.ppd")}};
    auto command =
        replacing("Restore", "queues/office.ppd",
                  {"restore", "office", "--server", "{}/queues", "--backup", "{}/kept"}, files);
    const auto whatIsReplaced = command.complaint;
    command.complaint = [whatIsReplaced, files](const Files& after, const Files& whole,
                                                RunEnd end) {
        // A new file of the scheduler's is its own.
        auto complaint = whatIsReplaced(withoutTimes(after), whole, end);
        return valueOf(after, "kept/office.ppd") != valueOf(files, "kept/office.ppd")
                   ? "what was kept is lost"
                   : complaint;
    };
    return command;
}

FaultyCommand telling(const std::string& name, std::vector<std::string> arguments) {
    return {name, std::move(arguments), printerFiles(),
            [](const Files& after, const Files& whole, RunEnd /*end*/) {
                return after == whole ? std::string() : std::string("it has changed files");
            }};
}

}  // namespace

std::vector<FaultyCommand> writingCommands() {
    auto one = syncing("Sync", {"office"}, {"--keep-all"});
    one.sampleStep = 30;
    auto three = syncing("SyncOfThreeQueues", {"first", "second", "third"}, {"--jobs", "2"});
    three.sampleStep = 100;
    return {replacing("UpdateInPlace", "a.ppd", withDevice({"update", "{}/a.ppd", "--in-place"}),
                      printerFiles()),
            updateInto("UpdateIntoANewFile", {}),
            updateInto("UpdateIntoAnotherFile", {{"b.ppd", "*PPD-Adobe: \"4.3\"\n"}}),
            one,
            three,
            restoring()};
}

std::vector<FaultyCommand> tellingCommands() {
    return {telling("Update", withDevice({"update", "{}/a.ppd"})),
            telling("UpdateShowingADiff", withDevice({"update", "{}/a.ppd", "--diff"})),
            telling("Values", withDevice({"values", "--ppd", "{}/a.ppd"})),
            telling("Status", {"status", "file:{}/printer.json"}),
            telling("Updaters", {"updaters", "{}/a.ppd"})};
}

bool isEveryFaultTried() {
    const char* value = std::getenv("TKPPDUPDATING_EVERY_FAULT");
    return value && *value != '\0';
}

FaultyRuns::FaultyRuns(FaultyCommand command) : command_(std::move(command)) {
    makeFiles();
    const TemporaryDirectory elsewhere;
    const std::string report = (elsewhere.path() / "report").string();
    whole_ = run({{"TKPPDUPDATING_FAULT_REPORT", report}});
    wholeFiles_ = filesNow();
    EXPECT_EQ(whole_.exitStatus, 0) << whole_.standardError;
    std::istringstream lines(contentsOfFile(report));
    lines >> allocationCount_;
    for (std::string call; lines >> call;) {
        calls_.push_back(call);
    }
    // Without a count nothing would be tried.
    EXPECT_GT(allocationCount_, 50) << "the faulty library was not loaded";
    EXPECT_GT(calls_.size(), 5U);
}

ProgramResult FaultyRuns::run(
    const std::map<std::string, std::optional<std::string>>& environment) const {
    ProgramSurroundings surroundings;
    surroundings.environment = {{"LD_PRELOAD", TKPPDUPDATING_FAULTY_CALLS},
                                {"LC_ALL", "C"},
                                {"CUPS_SERVER", std::nullopt},
                                {"TKPPDUPDATING_FAULT", std::nullopt},
                                {"ZrEPRLastUpdateTime", "800000000"}};
    for (const auto& [name, value] : environment) {
        surroundings.environment[name] = value;
    }
    std::vector<std::string> words = {TKPPDUPDATING_MOVED_TOOL};
    for (const std::string& argument : command_.arguments) {
        words.push_back(replaced(argument, directory_.path().string()));
    }
    return runProgram(words, surroundings);
}

void FaultyRuns::makeFiles() const {
    for (const auto& entry : fs::directory_iterator(directory_.path())) {
        fs::remove_all(entry.path());
    }
    for (const auto& [name, content] : command_.files) {
        directory_.write(name, content);
        if (name.starts_with("kept/")) {
            fs::permissions(directory_.path() / "kept", fs::perms::owner_all);
        }
    }
}

Files FaultyRuns::filesNow() const {
    Files files;
    for (const auto& entry : fs::recursive_directory_iterator(directory_.path())) {
        if (entry.is_regular_file()) {
            files[entry.path().lexically_relative(directory_.path())] =
                contentsOfFile(entry.path());
        }
    }
    return files;
}

void FaultyRuns::tryFault(const std::string& fault) {
    ++tried_;
    makeFiles();
    const ProgramResult result = run({{"TKPPDUPDATING_FAULT", fault}});
    // Where not even an exception finds room, the run ends at once, whatever its other threads are
    // doing: as after a kill, the next run takes away what they had begun.
    const bool endsAtOnce = result.exitStatus == kKilled ||
                            result.standardError == "tkppdupdate: there is not enough memory\n";
    const RunEnd end = result.exitStatus == 0 ? RunEnd::done
                       : endsAtOnce           ? RunEnd::killed
                                              : RunEnd::failed;
    const Files after = filesNow();
    std::string complaint = complaintAbout(result, end, after);
    // After a run that has changed nothing, the next one is the run without a fault once more.
    if (complaint.empty() && end == RunEnd::killed && after != command_.files) {
        complaint = complaintAfterKill();
    }
    if (!complaint.empty()) {
        ADD_FAILURE() << command_.name << " under \"" << fault << "\": " << complaint
                      << "\nexit status " << result.exitStatus << "\n"
                      << result.standardError;
    }
}

std::string FaultyRuns::complaintAbout(const ProgramResult& result, RunEnd end,
                                       const Files& after) const {
    if (result.timedOut) {
        return "it hangs";
    }
    if (end == RunEnd::done && result.standardOutput != whole_.standardOutput) {
        return "it says that it succeeded, and tells something else than without the fault";
    }
    if (end == RunEnd::failed) {
        if (result.exitStatus > 128) {
            return "it crashes";
        }
        if (isEndOfLoader(result)) {
            return command_.complaint(after, wholeFiles_, RunEnd::killed);
        }
        std::istringstream lines(result.standardError);
        long count = 0;
        for (std::string line; std::getline(lines, line); ++count) {
            if (!line.starts_with("tkppdupdate: ")) {
                return "it says something else than an error: " + line;
            }
        }
        const auto isReported = [&result](const char* what) {
            return result.standardOutput.find(what) != std::string::npos;
        };
        const bool isSaidInReport = isReported(": failed: ") || isReported(": unreachable: ") ||
                                    isReported(": unsupported: ");
        if (count == 0 && !isSaidInReport) {
            return "it does not say what is wrong";
        }
    }
    return command_.complaint(after, wholeFiles_, end);
}

std::string FaultyRuns::complaintAfterKill() const {
    const bool wasDone = valueOf(filesNow(), "a.ppd") == valueOf(wholeFiles_, "a.ppd");
    const ProgramResult again = run({});
    if (again.exitStatus != 0) {
        return "the run after it fails: " + again.standardError;
    }
    const Files after = filesNow();
    for (const auto& [name, content] : withoutTimes(wholeFiles_)) {
        if (valueOf(after, name) != content && !(wasDone && name == "a.ppd")) {
            return "the run after it leaves " + name + " other than it should";
        }
    }
    for (const auto& [name, content] : after) {
        const bool isTemporary = fs::path(name).filename().string().starts_with(".");
        if (isTemporary) {
            return "the run after it leaves " + name;
        }
        if (isKeptWithTime(name) && content != valueOf(wholeFiles_, "kept/office.ppd")) {
            return name + " is not whole";
        }
    }
    return "";
}

}  // namespace TkPPDUpdating::Testing
