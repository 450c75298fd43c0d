#include "tests/real/SNMPPrinter.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <map>
#include <stdexcept>
#include <thread>

#include "tests/backends/snmp/SNMPTestRows.h"
#include "tests/real/LoopbackPort.h"
#include "tests/support/FileContents.h"
#include "tests/support/SNMPBytes.h"

namespace TkPPDUpdating::Testing {

namespace {

/// The lines of tests/real/pass-rows.
std::string linesOfObjects(const std::string& rows) {
    const SNMPRows cells = rowsOfText(rows);
    std::map<SNMPBytes::Name, std::string> objects;
    for (const SNMPColumn& column : kColumnsAskedFor) {
        for (const SNMPRows::Row& row : cells.rowsOf({column})) {
            const auto number = cells.number(column, row);
            objects[SNMPBytes::name(column.identifier, row)] =
                number ? "integer " + std::to_string(*number)
                       : "string " + std::string(*cells.text(column, row));
        }
    }
    std::string lines;
    for (const auto& [name, object] : objects) {
        for (const std::uint32_t number : name) {
            lines += "." + std::to_string(number);
        }
        lines += " " + object + "\n";
    }
    return lines;
}

}  // namespace

std::string SNMPPrinter::missingPrograms() {
    return pathOfProgram("snmpd").empty() ? "not installed: snmpd" : "";
}

SNMPPrinter::SNMPPrinter(const std::string& rows, int port, const std::string& community) {
    directory_.write("objects", linesOfObjects(rows));
    constexpr int kTries = 5;
    for (int attempt = 0; attempt < kTries; ++attempt) {
        port_ = port == 0 ? freeLoopbackPort() : port;
        if (start(community)) {
            return;
        }
    }
    throw std::runtime_error("snmpd does not start: " +
                             contentsOfFile((directory_.path() / "snmpd.output").string()));
}

bool SNMPPrinter::start(const std::string& community) {
    const std::string folder = directory_.path().string();
    const std::string script =
        std::string(TKPPDUPDATING_SOURCE_DIR) + "/tests/real/pass-rows " + folder + "/objects\n";
    const std::string configuration = directory_.write(
        "printer.conf", "rocommunity " + community + " 127.0.0.1\nrocommunity6 " + community +
                            " ::1\n" + "pass_persist .1.3.6.1.2.1.25.3.2 " + script +
                            "pass_persist .1.3.6.1.2.1.43 " + script +
                            "pass_persist .1.3.6.1.4.1.2699 " + script);
    process_ = std::make_unique<ChildProcess>(
        std::vector<std::string>{"snmpd", "-f", "-C", "-c", configuration, "-Lo",
                                 // Writes of each request down where it comes from.
                                 "-a",
                                 // None of the computer's own tables.
                                 "-I", "vacm_conf,pass,pass_persist", "-p", folder + "/pid",
                                 "udp:127.0.0.1:" + std::to_string(port_),
                                 "udp6:[::1]:" + std::to_string(port_)},
        folder + "/snmpd.output",
        ChildProcess::Environment{
            {"SNMP_PERSISTENT_DIR", folder}, {"SNMPCONFPATH", folder}, {"MIBS", ""}});
    constexpr int kTries = 100;
    for (int attempt = 0; attempt < kTries && process_->isRunning(); ++attempt) {
        if (answers(community)) {
            return true;
        }
    }
    return false;
}

std::size_t SNMPPrinter::requests() const {
    const std::string log = contentsOfFile((directory_.path() / "snmpd.output").string());
    const std::string line = "Received SNMP packet(s) from";
    std::size_t count = 0;
    for (std::size_t at = log.find(line); at != std::string::npos; at = log.find(line, at + 1)) {
        ++count;
    }
    return count;
}

/// Whether it answers a request for its first object.
bool SNMPPrinter::answers(const std::string& community) const {
    constexpr int kPause = 50;
    const int client = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<in_port_t>(port_));
    (void)connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof(address));
    const std::string question =
        SNMPBytes::message(1, 1,
                           SNMPBytes::variable(SNMPBytes::name("1.3.6.1.2.1.1"),
                                               SNMPBytes::value(SNMPBytes::kNull, "")),
                           SNMPBytes::kGetNextRequest, 0, 0, community);
    send(client, question.data(), question.size(), 0);
    pollfd waiting{client, POLLIN, 0};
    const bool isAnswered = poll(&waiting, 1, kPause) > 0 && (waiting.revents & POLLIN) != 0;
    close(client);
    if (!isAnswered) {
        std::this_thread::sleep_for(std::chrono::milliseconds(kPause));
    }
    return isAnswered;
}

}  // namespace TkPPDUpdating::Testing
