#include "tests/real/SimulatedPrinter.h"

#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

#include "tests/real/LoopbackPort.h"
#include "tests/support/FileContents.h"

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

SimulatedPrinter::SimulatedPrinter(const std::string& attributes, Place place)
    : place_(std::move(place)) {
    if (place_.busAddress.empty()) {
        bus_ = std::make_unique<MessageBus>();
        place_.busAddress = bus_->address();
    }
    directory_.write("attributes", attributes);
    constexpr int kPorts = 5;
    for (int attempt = 0; attempt < kPorts; ++attempt) {
        port_ = place_.port == 0 ? freeLoopbackPort() : place_.port;
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

bool SimulatedPrinter::startPrinter() {
    std::filesystem::create_directories(directory_.path() / "spool");
    std::vector<std::string> arguments = {"ippeveprinter", "-p", std::to_string(port_), "-d",
                                          (directory_.path() / "spool").string()};
    if (!place_.isAnnounced) {
        arguments.insert(arguments.end(), {"-r", "off", "-n", "localhost"});
    }
    const std::string attributes = (directory_.path() / "attributes").string();
    if (std::filesystem::file_size(attributes) > 0) {
        arguments.insert(arguments.end(), {"-a", attributes});
    }
    arguments.emplace_back("Test");
    printer_ = std::make_unique<ChildProcess>(
        arguments, (directory_.path() / "printer.output").string(),
        ChildProcess::Environment{{"DBUS_SYSTEM_BUS_ADDRESS", place_.busAddress},
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
