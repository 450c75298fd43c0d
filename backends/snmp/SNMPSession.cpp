// The only file that includes headers of net-snmp. Its configuration comes before all others.
#include <net-snmp/net-snmp-config.h>
//
#include <net-snmp/library/large_fd_set.h>
#include <net-snmp/net-snmp-includes.h>

#include "backends/snmp/SNMPSession.h"

#include <fcntl.h>
#include <netdb.h>
#include <poll.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <mutex>
#include <utility>

namespace TkPPDUpdating {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kLongestKeptText = 1024;

/// Locks the library; readies it the first time: it logs nothing, and never gets to the call that
/// reads its configuration and MIBs (init_snmp).
std::unique_lock<std::mutex> lockedLibrary() {
    static std::mutex mutex;
    static bool isReady = false;
    std::unique_lock lock(mutex);
    if (!isReady) {
        netsnmp_register_loghandler(NETSNMP_LOGHANDLER_NONE, LOG_DEBUG);
        isReady = true;
    }
    return lock;
}

/// "udp:127.0.0.1:161", as the library wants it; empty when the system cannot write the address.
std::string peerName(const NetworkAddress& address) {
    std::array<char, NI_MAXHOST> host{};
    std::array<char, NI_MAXSERV> port{};
    if (getnameinfo(reinterpret_cast<const sockaddr*>(&address.storage), address.length,
                    host.data(), host.size(), port.data(), port.size(),
                    NI_NUMERICHOST | NI_NUMERICSERV | NI_DGRAM) != 0) {
        return {};
    }
    return address.isIPv6() ? "udp6:[" + std::string(host.data()) + "]:" + port.data()
                            : "udp:" + std::string(host.data()) + ":" + port.data();
}

SNMPVariable variableOf(const netsnmp_variable_list& source) {
    SNMPVariable variable;
    variable.name.reserve(source.name_length);
    for (std::size_t index = 0; index < source.name_length; ++index) {
        variable.name.push_back(static_cast<std::uint32_t>(source.name[index]));
    }
    if (source.type == ASN_INTEGER && source.val.integer) {
        variable.value = std::int64_t{*source.val.integer};
    } else if (source.type == ASN_OCTET_STR && (source.val.string || source.val_len == 0)) {
        const auto* bytes = reinterpret_cast<const char*>(source.val.string);
        variable.value = source.val_len == 0
                             ? std::string()
                             : std::string(bytes, std::min(source.val_len, kLongestKeptText));
    }
    variable.isEnd = source.type == SNMP_ENDOFMIBVIEW || source.type == SNMP_NOSUCHOBJECT ||
                     source.type == SNMP_NOSUCHINSTANCE;
    return variable;
}

SNMPAnswer answerOf(const netsnmp_pdu& source, std::size_t mostVariables) {
    SNMPAnswer answer;
    answer.errorStatus = static_cast<int>(source.errstat);
    answer.errorIndex = static_cast<int>(source.errindex);
    for (const netsnmp_variable_list* each = source.variables;
         each && answer.variables.size() < mostVariables; each = each->next_variable) {
        answer.variables.push_back(variableOf(*each));
    }
    return answer;
}

}  // namespace

/// Takes an answer from the library, which calls it with the library locked.
struct SNMPSession::Receiver {
    static int receive(int operation, netsnmp_session* /*session*/, int requestID, netsnmp_pdu* PDU,
                       void* object) {
        auto& session = *static_cast<SNMPSession*>(object);
        // What answers in another way (a report of version 3) is no answer.
        if (operation != NETSNMP_CALLBACK_OP_RECEIVED_MESSAGE || !PDU ||
            PDU->command != SNMP_MSG_RESPONSE) {
            return 0;
        }
        if (session.requestIDs_.contains(requestID)) {
            session.answer_ =
                answerOf(*PDU, session.question_.names.size() *
                                   static_cast<std::size_t>(session.question_.repetitions));
        }
        return 1;
    }
};

std::unique_ptr<SNMPSession> SNMPSession::opened(const NetworkAddress& address, SNMPVersion version,
                                                 const std::string& community, OrbCSError& error) {
    std::string name = peerName(address);
    std::string communityCopy = community;
    const auto lock = lockedLibrary();
    netsnmp_session wanted;
    snmp_sess_init(&wanted);
    wanted.peername = name.data();
    wanted.version = version == SNMPVersion::two ? SNMP_VERSION_2c : SNMP_VERSION_1;
    wanted.community = reinterpret_cast<u_char*>(communityCopy.data());
    wanted.community_len = communityCopy.size();
    wanted.retries = 0;
    void* const session = name.empty() ? nullptr : snmp_sess_open(&wanted);
    const netsnmp_transport* const transport = session ? snmp_sess_transport(session) : nullptr;
    const int socket = transport ? transport->sock : -1;
    fcntl(socket, F_SETFD, FD_CLOEXEC);
    if (socket < 0 ||
        connect(socket, reinterpret_cast<const sockaddr*>(&address.storage), address.length) != 0) {
        error = {OrbCSError::Cause::noConnection, "it cannot be reached"};
        if (session) {
            snmp_sess_close(session);
        }
        return nullptr;
    }
    return std::unique_ptr<SNMPSession>(new SNMPSession(session, socket, version));
}

SNMPSession::~SNMPSession() {
    const auto lock = lockedLibrary();
    snmp_sess_close(session_);
}

void SNMPSession::begin(SNMPQuestion question) {
    question_ = std::move(question);
    requestIDs_.clear();
    answer_.reset();
}

SNMPSession::End SNMPSession::ask(Clock::time_point until, const std::atomic<bool>* isCancelled,
                                  SNMPAnswer& answer) {
    // Whoever cancels can set a flag but wake nobody.
    constexpr auto kPause = std::chrono::milliseconds(50);
    if (!send()) {
        return End::refused;
    }
    while (!answer_) {
        if (isCancelled && *isCancelled) {
            return End::cancelled;
        }
        const auto now = Clock::now();
        if (now >= until) {
            return End::timeOver;
        }
        const auto pause = std::chrono::ceil<std::chrono::milliseconds>(until - now);
        pollfd waiting = {socket_, POLLIN, 0};
        if (poll(&waiting, 1, static_cast<int>(std::min(pause, kPause).count())) > 0 &&
            !receive()) {
            return End::refused;
        }
    }
    answer = *std::move(answer_);
    return End::answered;
}

bool SNMPSession::send() {
    const auto lock = lockedLibrary();
    const bool isBulk = version_ == SNMPVersion::two && !question_.isExact;
    const auto kind = isBulk              ? SNMP_MSG_GETBULK
                      : question_.isExact ? SNMP_MSG_GET
                                          : SNMP_MSG_GETNEXT;
    netsnmp_pdu* const PDU = snmp_pdu_create(static_cast<int>(kind));
    if (!PDU) {
        return true;  // As if it had been lost on the way.
    }
    constexpr unsigned kPositive = 0x7FFFFFFF;
    PDU->reqid = static_cast<long>(random_() & kPositive);
    if (isBulk) {
        PDU->non_repeaters = 0;
        PDU->max_repetitions = question_.repetitions;
    }
    for (const SNMPName& each : question_.names) {
        const std::vector<oid> name(each.begin(), each.end());
        snmp_add_null_var(PDU, name.data(), name.size());
    }
    requestIDs_.insert(static_cast<int>(PDU->reqid));
    if (snmp_sess_async_send(session_, PDU, Receiver::receive, this) == 0) {
        snmp_free_pdu(PDU);
        return !isNobodyThere(true);
    }
    return true;
}

bool SNMPSession::receive() {
    const auto lock = lockedLibrary();
    netsnmp_large_fd_set readable;
    netsnmp_large_fd_set_init(&readable, socket_ + 1);
    NETSNMP_LARGE_FD_SET(socket_, &readable);
    // What cannot be read as an answer is ignored, as if it had not come.
    const int failed = snmp_sess_read2(session_, &readable);
    netsnmp_large_fd_set_cleanup(&readable);
    return !isNobodyThere(failed != 0);
}

/// Whether the last call failed because of ICMP's "port unreachable".
bool SNMPSession::isNobodyThere(bool isFailed) const {
    int systemError = 0;
    int libraryError = 0;
    char* text = nullptr;
    snmp_sess_error(session_, &systemError, &libraryError, &text);
    std::free(text);  // NOLINT(cppcoreguidelines-no-malloc): the library's
    return isFailed && systemError == ECONNREFUSED;
}

}  // namespace TkPPDUpdating
