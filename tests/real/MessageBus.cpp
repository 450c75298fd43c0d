#include "tests/real/MessageBus.h"

#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <thread>
#include <vector>

namespace TkPPDUpdating::Testing {

MessageBus::MessageBus() {
    const std::string configuration = directory_.write(
        "bus.conf",
        "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\" "
        "\"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n<busconfig><listen>" +
            address() +
            "</listen><auth>EXTERNAL</auth><policy context=\"default\">"
            "<allow send_destination=\"*\" eavesdrop=\"true\"/><allow eavesdrop=\"true\"/>"
            "<allow own=\"*\"/></policy></busconfig>\n");
    process_ = std::make_unique<ChildProcess>(
        std::vector<std::string>{"dbus-daemon", "--config-file=" + configuration, "--nofork",
                                 "--nopidfile"},
        (directory_.path() / "bus.output").string());
    constexpr int kTries = 500;
    for (int attempt = 0; attempt < kTries && process_->isRunning(); ++attempt) {
        if (std::filesystem::exists(directory_.path() / "bus.sock")) {
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    throw std::runtime_error("dbus-daemon does not start");
}

}  // namespace TkPPDUpdating::Testing
