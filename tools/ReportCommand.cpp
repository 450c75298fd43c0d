#include "tools/ReportCommand.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

#include "sync/QueueSync.h"
#include "sync/QueueSyncRun.h"
#include "text/FileDescriptor.h"
#include "tools/AtomicReplacement.h"
#include "tools/Diagnostics.h"
#include "tools/Failure.h"
#include "tools/InterruptionWatch.h"
#include "tools/RunFacts.h"
#include "tools/SyncReport.h"
#include "tools/UpdaterSelection.h"

namespace TkPPDUpdating {

namespace {

/// As many as `sync` asks when it is not told otherwise.
constexpr std::size_t kPrintersAtOnce = 4;

constexpr std::size_t kMostBytes = std::size_t{64} * 1024 * 1024;

/// All bytes of a file, or of a pipe that another run writes into. Raises a `Failure`.
std::string contentsOfReportFile(const std::string& path) {
    constexpr std::size_t kAtOnce = std::size_t{64} * 1024;
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
    if (!file.isOpen()) {
        throw Failure::ofSystem(path);
    }
    std::string contents;
    for (std::size_t length = 0; length <= kMostBytes;) {
        contents.resize(length + kAtOnce);
        const ssize_t count = ::read(file.get(), contents.data() + length, kAtOnce);
        if (count == 0) {
            contents.resize(length);
            return contents;
        }
        if (count < 0 && errno != EINTR) {
            throw Failure::ofSystem(path);
        }
        length += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    }
    throw Failure(ExitStatus::noResult, path,
                  "is larger than " + std::to_string(kMostBytes) + " bytes");
}

/// The name of a server's file without its ending is what the user calls the server. What comes
/// through a pipe has no name.
std::string nameOfServer(const std::string& path) {
    const std::filesystem::path file(path);
    const bool isNameless = path.starts_with("/dev/") || path.starts_with("/proc/");
    return isNameless ? "" : (file.extension() == ".json" ? file.stem() : file.filename()).string();
}

/// The reports of one file, those of each scheduler by themselves, in the order of their first
/// queues.
std::vector<ServerReport> byScheduler(const std::string& name, std::vector<QueueReport> reports) {
    std::vector<ServerReport> servers;
    for (QueueReport& report : reports) {
        auto server = std::ranges::find(servers, report.server, &ServerReport::server);
        if (server == servers.end()) {
            server = servers.insert(servers.end(), {name, report.server, {}});
        }
        server->queues.push_back(std::move(report));
    }
    if (servers.empty()) {
        servers.push_back({name, "", {}});
    }
    return servers;
}

/// A user who leaves out the name of the page gives the first of his reports instead.
void refuseToReplaceOtherFile(const std::string& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) {
        return;
    }
    std::string begin(kHTMLBegin.size(), '\0');
    std::ifstream file(path, std::ios::binary);
    file.read(begin.data(), static_cast<std::streamsize>(begin.size()));
    begin.resize(static_cast<std::size_t>(std::max<std::streamsize>(file.gcount(), 0)));
    if (!begin.empty() && begin != kHTMLBegin) {
        throw Failure(ExitStatus::noResult, path,
                      "is there already and is no page; give --html another name");
    }
}

}  // namespace

ReportCommand::ReportCommand(CLI::App& application, const Backends& backends)
    : Command(application, kName, "Make a page of what sync told as JSON, for one or many servers"),
      backends_(backends) {
    subcommand().add_option("--html", page_, "The page")->required()->type_name("FILE");
    auto* files =
        subcommand()
            .add_option("JSON", files_, "What sync has written as JSON, a file for each server")
            ->type_name("");
    auto* all = subcommand()
                    .add_flag("--all", isOwnRun_,
                              "Instead, look at all queues of the scheduler, and install nothing")
                    ->excludes(files);
    schedulerOptions_.addServerTo(subcommand())->needs(all);
    addModules();
    subcommand().footer(
        "Examples:\n"
        "  tkppdupdate report --html queues.html --all\n"
        "  tkppdupdate report --html servers.html print1.json print2.json");
}

ExitStatus ReportCommand::run() {
    if (!isOwnRun_ && files_.empty()) {
        throw Failure(ExitStatus::usage, std::nullopt,
                      "JSON or --all is required (\"tkppdupdate report --help\" tells the usage)");
    }
    refuseToReplaceOtherFile(page_);
    const auto servers = isOwnRun_ ? std::vector{serverOfOwnRun()} : serversOfFiles();
    replaceFileAtomically(page_, HTMLReportOfServers(servers, timestampNow()));
    return ExitStatus::done;
}

std::vector<ServerReport> ReportCommand::serversOfFiles() const {
    std::vector<ServerReport> servers;
    for (const std::string& file : files_) {
        auto ofFile =
            byScheduler(nameOfServer(file), queueReportsWithText(file, contentsOfReportFile(file)));
        std::ranges::move(ofFile, std::back_inserter(servers));
    }
    return servers;
}

ServerReport ReportCommand::serverOfOwnRun() const {
    UpdaterSelection::refuseUnwritableUpdateTime();
    UpdaterSelection updaters;
    updaters.takeClasses(backends_.addedUpdaterClasses());
    const InterruptionWatch watch;
    const auto scheduler = schedulerOptions_.scheduler();
    const auto queueNames = SchedulerOptions::allQueues(*scheduler);
    const QueueSync sync(
        *scheduler, {.isDryRun = true,
                     .isCancelled = &InterruptionWatch::isInterrupted(),
                     .makeManager = [&updaters] { return updaters.makeManagerForQueueInUse(); },
                     .mostPrinters = kPrintersAtOnce});
    const SyncReport report({.isJSON = true, .server = scheduler->name()}, queueNames.size());
    std::string lines;
    report.showProgress(0);
    QueueSyncRun(sync, 2 * kPrintersAtOnce)
        .run(queueNames,
             {.finished =
                  [&](const QueueSyncOutcome& outcome) { lines += report.JSONForOutcome(outcome); },
              .progress =
                  [&](std::size_t doneCount, const std::string& queueName) {
                      report.showProgress(doneCount, queueName);
                  }});
    Diagnostics::clearProgress();
    if (InterruptionWatch::isInterrupted()) {
        throw Failure(ExitStatus::noResult, std::nullopt, InterruptionWatch::reason());
    }
    return {"", scheduler->name(), queueReportsWithText(scheduler->name(), lines)};
}

}  // namespace TkPPDUpdating
