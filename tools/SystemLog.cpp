#include "tools/SystemLog.h"

#include <syslog.h>
#include <unistd.h>

#include <atomic>
#include <cstddef>

#include "tools/Diagnostics.h"
#include "tools/Journal.h"

namespace TkPPDUpdating {

namespace {

std::atomic<bool> isOpen{false};

}  // namespace

void SystemLog::open() {
    ::openlog("tkppdupdate", LOG_PID, LOG_LPR);
    isOpen = true;
}

void SystemLog::tellReplacement(const std::string& queueName, const std::string& what,
                                const std::vector<std::string>& keywords) {
    if (!isOpen) {
        return;
    }
    const std::string line = lineForReplacement(queueName, what, keywords);
    const bool isTold =
        Journal::isBehind(STDERR_FILENO) &&
        Journal().add(Journal::Priority::notice, line, {{kJournalFieldOfQueue, queueName}});
    if (!isTold) {
        ::syslog(LOG_NOTICE, "%s", line.c_str());  // NOLINT(cppcoreguidelines-pro-type-vararg)
    }
}

std::string SystemLog::lineForReplacement(const std::string& queueName, const std::string& what,
                                          const std::vector<std::string>& keywords) {
    constexpr std::size_t kLongestList = 1500;
    std::string list;
    for (const std::string& keyword : keywords) {
        if (list.size() + keyword.size() > kLongestList) {
            list += ", ...";
            break;
        }
        list += (list.empty() ? ": " : ", ") + keyword;
    }
    return Diagnostics::printable("queue " + Diagnostics::nameOfPlace(queueName) + ": PPD " + what +
                                  list);
}

}  // namespace TkPPDUpdating
