#include "tools/SchedulerOptions.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "core_interface/OrbCoreInterface.h"
#include "sync/QueueSyncCauses.h"
#include "tools/Backends.h"
#include "tools/Failure.h"
#include "tools/InterruptionWatch.h"
#include "tools/NextStep.h"
#include "tools/NumberWithin.h"

namespace TkPPDUpdating {

namespace {

/// Empty for what may be a scheduler, else what is wrong: an empty text, as an unset variable gives
/// it, must not become the scheduler of this machine.
std::string complaintAboutServer(const std::string& server) {
    const std::size_t scheme = server.find("://");
    if (scheme != std::string::npos) {
        const std::string_view place = std::string_view(server).substr(scheme + 3);
        return "\"" + server + "\" is a URI; write " +
               std::string(place.substr(0, place.find('/')));
    }
    return server.empty() ? "\"\" is no scheduler" : "";
}

/// A scheduler by one of its names: those under which the one of this machine is reached are one.
std::string oneNameOf(const std::string& schedulerName) {
    constexpr std::string_view kPort = ":631";
    constexpr auto kOwn =
        std::to_array<std::string_view>({"localhost", "127.0.0.1", "[::1]", "::1",
                                         "/run/cups/cups.sock", "/var/run/cups/cups.sock"});
    const std::string_view name = schedulerName;
    const std::string_view withoutPort =
        name.ends_with(kPort) ? name.substr(0, name.size() - kPort.size()) : name;
    return std::ranges::find(kOwn, withoutPort) != kOwn.end() ? "localhost"
                                                              : std::string(withoutPort);
}

/// A folder for files that live as long as a process of this user.
std::filesystem::path runtimeFolder() {
    if (::geteuid() == 0) {
        return "/run";
    }
    const auto own = OrbCoreInterface::environment()->valueForVariable("XDG_RUNTIME_DIR");
    if (own && own->starts_with('/') && ::access(own->c_str(), W_OK | X_OK) == 0) {
        return *own;
    }
    std::error_code error;
    const auto shared = std::filesystem::temp_directory_path(error);
    return error ? "/tmp" : shared;
}

}  // namespace

void SchedulerOptions::addTo(CLI::App& subcommand) {
    constexpr unsigned kMostSeconds = 24 * 60 * 60;
    addServerTo(subcommand);
    subcommand
        .add_option("--wait", wait_,
                    "How long to wait for a queue that is printing, and for another run (default "
                    "30; 0: not at all)")
        ->check(numberWithin(0, kMostSeconds))
        ->type_name("SECONDS");
}

CLI::Option* SchedulerOptions::addServerTo(CLI::App& subcommand) {
    return subcommand
        .add_option("--server", server_, "The scheduler, instead of the one of this machine")
        ->check(CLI::Validator(complaintAboutServer, ""))
        ->type_name("HOST:PORT");
}

std::vector<std::string> SchedulerOptions::allQueues(const QueueScheduler& scheduler) {
    QueueFailure failure;
    auto names = scheduler.queueNames(failure);
    if (!names) {
        const bool isEnded = failure.isOf(queueSyncCause("interrupted"));
        throw Failure(
            ExitStatus::noResult, scheduler.name(),
            isEnded ? InterruptionWatch::reason() : failure.reason + nextStepAfter(failure.cause));
    }
    return std::move(*names);
}

std::unique_ptr<const QueueScheduler> SchedulerOptions::scheduler() const {
    std::string reason;
    auto scheduler = Backends::scheduler(server_, &InterruptionWatch::isInterrupted(), reason);
    if (!scheduler) {
        throw Failure(ExitStatus::noResult, std::nullopt, reason);
    }
    return scheduler;
}

std::unique_ptr<RunLock> SchedulerOptions::lock(const QueueScheduler& scheduler) const {
    const std::string name = scheduler.name();
    auto lock = std::make_unique<RunLock>(lockPath(name));
    std::string reason;
    switch (lock->take(wait(), &InterruptionWatch::isInterrupted(), reason)) {
        case RunLock::End::taken:
            return lock;
        case RunLock::End::held:
            throw Failure(
                ExitStatus::noResult, name,
                "another run is at work on the queues of this scheduler (" + reason + ")");
        case RunLock::End::cancelled:
            throw Failure(ExitStatus::noResult, std::nullopt, InterruptionWatch::reason());
        case RunLock::End::failed:
            break;
    }
    throw Failure(ExitStatus::noResult, name, "cannot be locked for this run: " + reason);
}

std::string SchedulerOptions::lockPath(const std::string& schedulerName) {
    std::string name = oneNameOf(schedulerName);
    std::ranges::replace(name, '/', '_');
    return runtimeFolder() / ("tkppdupdate-" + std::to_string(::geteuid()) + "-" + name + ".lock");
}

}  // namespace TkPPDUpdating
