// The tool and printers at their usual ports, in a network that is the test's own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "tests/real/ChildProcess.h"
#include "tests/real/LoopbackPort.h"
#include "tests/real/MulticastDNSResponder.h"
#include "tests/real/PrivateNetwork.h"
#include "tests/real/PrivateScheduler.h"
#include "tests/real/SimulatedPrinter.h"
#include "tests/support/FileContents.h"
#include "tests/support/RunProgram.h"
#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {
namespace {

using testing::HasSubstr;

constexpr int kIPPPort = 631;

constexpr const char* kOfficePPD = TKPPDUPDATING_SOURCE_DIR "/samples/ppd/zr-office.ppd";

constexpr const char* kDuplexPrinter =
    "ATTR keyword sides-supported one-sided,two-sided-long-edge\n"
    "ATTR keyword media-source-supported tray-1,tray-2\n";

constexpr const char* kDuplexerAndTray =
    "  \"DeviceAccessories\": [\n"
    "    {\n      \"name\": \"Duplexer\",\n      \"isInstalled\": true\n    },\n"
    "    {\n      \"name\": \"Tray2\",\n      \"isInstalled\": true\n    }\n  ]";

class PrivateNetworks : public testing::Test {
  protected:
    void SetUp() override {
        const std::string missing =
            PrivateScheduler::missingPrograms() + SimulatedPrinter::missingPrograms();
        ASSERT_EQ(missing, "");
        ASSERT_EQ(PrivateNetwork::enter(), "");
    }

    ProgramResult runTool(std::vector<std::string> arguments,
                          const std::string& busAddress = "unix:path=/nonexistent") const {
        arguments.insert(arguments.begin(), TKPPDUPDATING_TOOL);
        ProgramSurroundings surroundings;
        surroundings.environment = {{"CUPS_SERVERROOT", folder_.path().string()},
                                    {"DBUS_SYSTEM_BUS_ADDRESS", busAddress},
                                    {"HOME", folder_.path().string()},
                                    {"LC_ALL", "C"},
                                    {"CUPS_SERVER", std::nullopt}};
        return runProgram(arguments, surroundings);
    }

    TemporaryDirectory folder_;
};

TEST_F(PrivateNetworks, HaveTheirPortsForThemselves) {
    EXPECT_FALSE(isListening(kIPPPort));
    const SimulatedPrinter printer(kDuplexPrinter, {.port = kIPPPort});
    EXPECT_TRUE(isListening(kIPPPort));
}

TEST_F(PrivateNetworks, APrinterIsAskedAtTheUsualPort) {
    const SimulatedPrinter printer(kDuplexPrinter, {.port = kIPPPort});
    const ProgramResult run = runTool({"status", "ipp://127.0.0.1/ipp/print"});
    EXPECT_EQ(run.exitStatus, 0) << run.standardError;
    EXPECT_THAT(run.standardOutput, HasSubstr(kDuplexerAndTray));
}

TEST_F(PrivateNetworks, APrinterIsAskedAtAnIPv6Address) {
    const SimulatedPrinter printer(kDuplexPrinter, {.port = kIPPPort});
    for (const char* URI : {"ipp://[::1]:631/ipp/print", "ipp://[::1]/ipp/print"}) {
        const ProgramResult run = runTool({"status", URI});
        EXPECT_EQ(run.exitStatus, 0) << URI << ": " << run.standardError;
        EXPECT_THAT(run.standardOutput, HasSubstr(kDuplexerAndTray)) << URI;
    }
}

TEST_F(PrivateNetworks, AQueueWithAnIPv6AddressIsBroughtInStep) {
    const SimulatedPrinter printer(kDuplexPrinter);
    const PrivateScheduler scheduler;
    std::string URI = printer.URI();
    URI.replace(URI.find("localhost"), std::string("localhost").size(), "[::1]");
    scheduler.addQueue("office", URI, kOfficePPD);
    const ProgramResult run = runTool({"sync", "office", "--server", scheduler.server()});
    EXPECT_EQ(run.exitStatus, 0) << run.standardOutput << run.standardError;
    EXPECT_THAT(run.standardOutput, HasSubstr("office: updated\n"));
    EXPECT_THAT(contentsOfFile(scheduler.PPDPath("office")),
                HasSubstr("\n*DefaultZrLowerTrayInstalled: True\n"));
}

TEST_F(PrivateNetworks, AQueueWhosePPDTheSchedulerMadeOfThePrinterStaysAsItIs) {
    const SimulatedPrinter printer("", {.port = kIPPPort});
    const PrivateScheduler scheduler;
    const ProgramResult made =
        scheduler.runClient({"lpadmin", "-p", "everywhere", "-v", "ipp://localhost/ipp/print", "-E",
                             "-m", "everywhere"});
    ASSERT_EQ(made.exitStatus, 0) << made.standardError;
    // The scheduler takes its time for it.
    const std::string path = scheduler.PPDPath("everywhere");
    for (int tries = 0; tries < 100 && contentsOfFile(path).empty(); ++tries) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    const std::string before = contentsOfFile(path);
    ASSERT_THAT(before, testing::StartsWith("*PPD-Adobe: \"4.3\"\n"));
    const ProgramResult run = runTool({"sync", "everywhere", "--server", scheduler.server()});
    EXPECT_EQ(run.exitStatus, 0) << run.standardError;
    EXPECT_EQ(run.standardOutput,
              "everywhere: skipped: nothing in its PPD follows the printer\n"
              "1 queue: 1 skipped\n");
    EXPECT_EQ(contentsOfFile(path), before);
}

class AnnouncedPrinters : public PrivateNetworks {
  protected:
    void SetUp() override {
        PrivateNetworks::SetUp();
        ASSERT_EQ(MulticastDNSResponder::missingPrograms(), "");
        ASSERT_EQ(PrivateNetwork::hideRunFolder(), "");
    }
};

TEST_F(AnnouncedPrinters, AreAskedByTheirNames) {
    const MulticastDNSResponder responder;
    const SimulatedPrinter printer(kDuplexPrinter,
                                   {.busAddress = responder.bus().address(), .isAnnounced = true});
    const ProgramResult run =
        runTool({"status", "dnssd://Test._ipp._tcp.local/"}, responder.bus().address());
    EXPECT_EQ(run.exitStatus, 0) << run.standardError;
    EXPECT_THAT(run.standardOutput, HasSubstr(kDuplexerAndTray));
}

TEST_F(AnnouncedPrinters, OfAnotherServiceAreNotAsked) {
    for (const char* URI : {"dnssd://Test._pdl-datastream._tcp.local/",
                            "dnssd://Test._printer._tcp.local/?x=._ipp._tcp", "dnssd://Test/"}) {
        const ProgramResult run = runTool({"status", URI});
        EXPECT_EQ(run.exitStatus, 1) << URI;
        EXPECT_THAT(run.standardError, HasSubstr("its DNS-SD name is none of an IPP service "
                                                 "(_ipp._tcp or _ipps._tcp)"))
            << URI;
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
