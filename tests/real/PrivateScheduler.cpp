#include "tests/real/PrivateScheduler.h"

#include <chrono>
#include <csignal>
#include <stdexcept>
#include <thread>

#include "tests/real/LoopbackPort.h"
#include "tests/support/FileContents.h"

namespace TkPPDUpdating::Testing {

std::string PrivateScheduler::missingPrograms() {
    std::string missing;
    for (const char* program : {"cupsd", "lpadmin", "lpoptions"}) {
        if (pathOfProgram(program).empty()) {
            missing += std::string(missing.empty() ? "" : ", ") + program;
        }
    }
    return missing.empty() ? missing : "not installed: " + missing;
}

PrivateScheduler::PrivateScheduler() {
    startOnFreePort(false);
}

void PrivateScheduler::lock() {
    // It saves its queues when it ends.
    process_->signal(SIGTERM);
    process_->wait();
    startOnFreePort(true);
}

void PrivateScheduler::startOnFreePort(bool isLocked) {
    constexpr int kTries = 5;
    for (int attempt = 0; attempt < kTries; ++attempt) {
        port_ = freeLoopbackPort();
        configure(isLocked);
        if (start()) {
            return;
        }
    }
    throw std::runtime_error("cupsd does not start: " +
                             contentsOfFile((directory_.path() / "error_log").string()));
}

void PrivateScheduler::configure(bool isLocked) const {
    const std::string root = directory_.path().string();
    for (const char* folder : {"ppd", "state", "cache", "spool", "tmp", "www"}) {
        std::filesystem::create_directories(directory_.path() / folder);
    }
    directory_.write("printcap", "");
    directory_.write("cups-files.conf",
                     "ServerRoot " + root + "\nStateDir " + root + "/state\nCacheDir " + root +
                         "/cache\nRequestRoot " + root + "/spool\nTempDir " + root +
                         "/tmp\nDocumentRoot " + root + "/www\nAccessLog " + root +
                         "/access_log\nErrorLog " + root + "/error_log\nPageLog " + root +
                         "/page_log\nPrintcap " + root +
                         "/printcap\nServerBin /usr/lib/cups\nDataDir /usr/share/cups\n"
                         "FileDevice Yes\nSandboxing Relaxed\n");
    const std::string access = "Order deny,allow\nAllow 127.0.0.1\nAllow localhost\n";
    const std::string changes =
        isLocked ? "<Limit CUPS-Add-Modify-Printer CUPS-Delete-Printer>\nAuthType Basic\n"
                   "Require user @SYSTEM\nOrder deny,allow\n</Limit>\n<Limit All>\n"
                   "AuthType None\nOrder deny,allow\n</Limit>\n"
                 : "<Limit All>\nAuthType None\nOrder deny,allow\n</Limit>\n";
    directory_.write("cupsd.conf",
                     "LogLevel info\nListen 127.0.0.1:" + std::to_string(port_) + "\nListen " +
                         socketPath() +
                         "\nBrowsing Off\nWebInterface No\nDefaultAuthType None\n"
                         "DefaultEncryption Never\nIdleExitTimeout 0\nDirtyCleanInterval 30\n"
                         "MaxClients 400\nMaxClientsPerHost 400\n"
                         "<Location />\n" +
                         access + "</Location>\n<Location /admin>\n" + access +
                         "</Location>\n<Policy default>\n" + changes + "</Policy>\n");
}

bool PrivateScheduler::start() {
    const std::string root = directory_.path().string();
    process_ = std::make_unique<ChildProcess>(
        std::vector<std::string>{"cupsd", "-f", "-c", root + "/cupsd.conf", "-s",
                                 root + "/cups-files.conf"},
        root + "/cupsd.output");
    constexpr int kTries = 500;
    for (int attempt = 0; attempt < kTries && process_->isRunning(); ++attempt) {
        if (isListening(port_)) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return false;
}

void PrivateScheduler::addQueue(const std::string& name, const std::string& deviceURI,
                                const std::string& PPDPath) const {
    std::vector<std::string> arguments = {"lpadmin", "-p", name, "-v", deviceURI, "-E"};
    if (!PPDPath.empty()) {
        arguments.insert(arguments.end() - 1, {"-P", PPDPath});
    }
    ProgramResult result = runClient(arguments);
    // libcups may write into a connection that a scheduler has just closed.
    if (result.standardError.find("Broken pipe") != std::string::npos) {
        result = runClient(arguments);
    }
    if (result.exitStatus != 0) {
        throw std::runtime_error("lpadmin: " + result.standardError);
    }
}

ProgramResult PrivateScheduler::runClient(std::vector<std::string> arguments) const {
    arguments.front() = pathOfProgram(arguments.front());
    arguments.insert(arguments.begin() + 1, {"-h", server()});
    ProgramSurroundings surroundings;
    surroundings.environment = {{"HOME", directory_.path().string()}, {"LC_ALL", "C"}};
    return runProgram(arguments, surroundings);
}

}  // namespace TkPPDUpdating::Testing
