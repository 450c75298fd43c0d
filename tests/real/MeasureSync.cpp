// Measures how well "sync --all" overlaps its waiting for printers; run by scripts/measure-sync.
#include <sys/resource.h>
#include <sys/wait.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

#include "tests/real/ChildProcess.h"
#include "tests/real/PrivateNetwork.h"
#include "tests/real/PrivateScheduler.h"
#include "tests/support/FileContents.h"
#include "tests/support/HostileIPPResponder.h"

namespace {

using namespace TkPPDUpdating::Testing;

constexpr const char* kPPD = TKPPDUPDATING_SOURCE_DIR "/samples/ppd/zr-inkjet.ppd";
constexpr int kIPPPort = 631;
constexpr double kMostOverlaps = 1.3;
constexpr double kMostMegabytes = 100;

struct Measurement {
    double seconds = 0;
    double processorSeconds = 0;
    double megabytes = 0;
    int exitStatus = 0;
};

Measurement measure(const PrivateScheduler& scheduler, const std::string& jobs,
                    const std::string& output) {
    const auto begin = std::chrono::steady_clock::now();
    ChildProcess tool(
        {TKPPDUPDATING_TOOL, "sync", "--all", "--server", scheduler.server(), "--jobs", jobs},
        output);
    int status = 0;
    rusage usage{};
    wait4(tool.id(), &status, 0, &usage);
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
    const auto secondsOf = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return {took.count(), secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime),
            static_cast<double>(usage.ru_maxrss) / 1024,
            WIFEXITED(status) ? WEXITSTATUS(status) : -1};
}

/// Takes its time and tells two accessories, and that it is the printer of the PPD.
HostileIPPResponder::Script slowPrinter(int milliseconds) {
    return [milliseconds](const ResponderConnection& c) {
        constexpr unsigned char kTextWithoutLanguage = 0x41;
        c.readRequest();
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
        c.send(HostileIPPResponder::HTTPAnswer(
            IPPBytes()
                .value(kTextWithoutLanguage, "printer-make-and-model", "Zr Inkjet 40")
                .keyword("sides-supported", "one-sided")
                .keyword("", "two-sided-long-edge")
                .keyword("media-source-supported", "tray-1")
                .keyword("", "tray-2")
                .end()));
    };
}

/// Each has a host of its own, as printers have; every third is printed to at its raw port.
std::string deviceURIOfQueue(int number) {
    constexpr int kHosts = 250;
    const std::string host =
        "127.1." + std::to_string(number / kHosts) + "." + std::to_string(number % kHosts + 1);
    return number % 3 == 0 ? "socket://" + host : "ipp://" + host + "/ipp/print";
}

/// Whether every queue was updated, by the last line of the report.
bool areAllUpdated(const std::string& summary, int queues) {
    const std::string count = std::to_string(queues);
    return summary.starts_with(count + " queues: " + count + " updated");
}

int run(int queues, int milliseconds, int jobs) {
    if (const std::string wrong = PrivateNetwork::enter(); !wrong.empty()) {
        std::fprintf(stderr, "%s\n", wrong.c_str());
        return EXIT_FAILURE;
    }
    const HostileIPPResponder printers(slowPrinter(milliseconds), kIPPPort);
    const PrivateScheduler scheduler;
    for (int number = 0; number < queues; ++number) {
        const std::string name = "queue" + std::to_string(number);
        scheduler.addQueue(name, deviceURIOfQueue(number), kPPD);
    }
    const std::string output = (scheduler.directory().path() / "sync.output").string();
    const Measurement sync = measure(scheduler, std::to_string(jobs), output);
    const std::string lines = contentsOfFile(output);
    const std::string summary =
        lines.size() < 2 ? lines : lines.substr(lines.rfind('\n', lines.size() - 2) + 1);
    const int rounds = (queues + jobs - 1) / jobs;
    const double perfect = rounds * milliseconds / 1000.0;
    std::printf(
        "%s%d queues, %d ms each, %d jobs: %.2f s, %.2f times the perfect overlap of %.2f "
        "s; processor %.2f s; peak memory %.1f MB; exit status %d\n",
        summary.c_str(), queues, milliseconds, jobs, sync.seconds, sync.seconds / perfect, perfect,
        sync.processorSeconds, sync.megabytes, sync.exitStatus);
    const bool isGood = sync.exitStatus == 0 && areAllUpdated(summary, queues) &&
                        sync.seconds <= kMostOverlaps * perfect && sync.megabytes <= kMostMegabytes;
    return isGood ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 4) {
        std::fputs("usage: measure_sync QUEUES MILLISECONDS JOBS\n", stderr);
        return 2;
    }
    return run(std::atoi(arguments[1]), std::atoi(arguments[2]), std::atoi(arguments[3]));
}
