#include "tests/real/SimulatedPrinter.h"

#include <chrono>
#include <stdexcept>
#include <thread>

#include "tests/real/LoopbackPort.h"

namespace TkPPDUpdating::Testing {

namespace {

constexpr int kTries = 500;
constexpr auto kPause = std::chrono::milliseconds(20);

}  // namespace

std::string SimulatedPrinter::missingPrograms() {
    std::string missing;
    for (const char* program : {"ippeveprinter", "dbus-daemon"}) {
        if (pathOfProgram(program).empty()) {
            missing += std::string(missing.empty() ? "" : ", ") + program;
        }
    }
    return missing.empty() ? missing : "not installed: " + missing;
}

SimulatedPrinter::SimulatedPrinter(const std::string& attributes) {
    startBus();
    directory_.write("attributes", attributes);
    constexpr int kPorts = 5;
    for (int attempt = 0; attempt < kPorts; ++attempt) {
        port_ = freeLoopbackPort();
        if (startPrinter()) {
            return;
        }
    }
    throw std::runtime_error("ippeveprinter does not start: " +
                             contentsOfFile((directory_.path() / "printer.output").string()));
}

void SimulatedPrinter::setAttributes(const std::string& attributes) {
    stop();
    directory_.write("attributes", attributes);
    if (!startPrinter()) {
        throw std::runtime_error("ippeveprinter does not start again");
    }
}

void SimulatedPrinter::startBus() {
    const std::string socket = (directory_.path() / "bus.sock").string();
    const std::string configuration = directory_.write(
        "bus.conf",
        "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\" "
        "\"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n<busconfig><listen>"
        "unix:path=" +
            socket +
            "</listen><auth>EXTERNAL</auth><policy context=\"default\">"
            "<allow send_destination=\"*\" eavesdrop=\"true\"/><allow eavesdrop=\"true\"/>"
            "<allow own=\"*\"/></policy></busconfig>\n");
    bus_ = std::make_unique<ChildProcess>(
        std::vector<std::string>{"dbus-daemon", "--config-file=" + configuration, "--nofork",
                                 "--nopidfile"},
        (directory_.path() / "bus.output").string());
    for (int attempt = 0; attempt < kTries && bus_->isRunning(); ++attempt) {
        if (std::filesystem::exists(socket)) {
            return;
        }
        std::this_thread::sleep_for(kPause);
    }
    throw std::runtime_error("dbus-daemon does not start");
}

bool SimulatedPrinter::startPrinter() {
    std::filesystem::create_directories(directory_.path() / "spool");
    const std::string socket = (directory_.path() / "bus.sock").string();
    printer_ = std::make_unique<ChildProcess>(
        std::vector<std::string>{"ippeveprinter", "-r", "off", "-n", "localhost", "-p",
                                 std::to_string(port_), "-a",
                                 (directory_.path() / "attributes").string(), "-d",
                                 (directory_.path() / "spool").string(), "Test"},
        (directory_.path() / "printer.output").string(),
        ChildProcess::Environment{{"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + socket},
                                  {"HOME", directory_.path().string()}});
    for (int attempt = 0; attempt < kTries && printer_->isRunning(); ++attempt) {
        if (isListening(port_)) {
            return true;
        }
        std::this_thread::sleep_for(kPause);
    }
    return false;
}

}  // namespace TkPPDUpdating::Testing
