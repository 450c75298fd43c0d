#pragma once

#include <array>
#include <string>
#include <string_view>

#include "core_interface/OrbCSError.h"
#include "sync/QueueSyncOutcome.h"

namespace TkPPDUpdating {

/// Why a queue is not in step with its printer after a run. Each cause goes with one result.
struct QueueSyncCause {
    /// For programs; it never changes.
    std::string_view name;
    QueueSyncResult result;
    /// For people, as docs/sync.md has it.
    std::string_view meaning;

    /// A module has a table of its own: causes are compared, not where they stand.
    friend bool operator==(const QueueSyncCause& one, const QueueSyncCause& other) {
        return one.name == other.name;
    }
};

/// All causes; there are no others.
inline constexpr auto kQueueSyncCauses = [] {
    using enum QueueSyncResult;
    return std::to_array<QueueSyncCause>({
        {"printing", busy, "it did not stop printing in time"},
        {"timeout", unreachable, "the printer did not answer in time"},
        {"refused", unreachable, "the printer takes no connection; it may be switched off"},
        {"unknown-host", unreachable, "the name of the printer's host is not known"},
        {"access-denied", unreachable, "the printer wants a password or an encrypted connection"},
        {"printer-error", unreachable, "the printer answers with an error"},
        {"broken-answer", unreachable, "the printer's answer ends too early or never"},
        {"not-ipp", unreachable, "what answers does not speak IPP"},
        {"not-a-printer", unreachable, "what answers is no printer, or stands for several"},
        {"bad-recording", unreachable, "the recording behind the device URI cannot be read"},
        {"no-status", unreachable, "the printer gave no status, and no cause is known"},
        {"no-backend", unsupported, "a printer behind such a device URI cannot be asked"},
        {"another-printer", unsupported,
         "what answers at the host may be another printer than that of the PPD"},
        {"bad-uri", unsupported, "the device URI names no printer"},
        {"not-utf8", unsupported, "the PPD follows its printer, but is not UTF-8"},
        {"no-queue", failed, "there is no queue of that name, or no longer"},
        {"no-scheduler", failed, "the scheduler cannot be reached, or gives no whole answer"},
        {"scheduler-refuses", failed, "the scheduler does not let this user do it"},
        {"scheduler-error", failed, "the scheduler answers with an error"},
        {"bad-ppd", failed, "the PPD cannot be parsed"},
        {"no-result", failed, "the updaters could not update the PPD"},
        {"refused-result", failed, "the updated PPD did not pass the comparison before installing"},
        {"changed-meanwhile", failed, "somebody else changed the queue or its PPD during the run"},
        {"not-known", failed, "it is not known whether the updated PPD is installed"},
        {"no-backup", failed, "the PPD to be replaced could not be kept with --backup"},
        {"interrupted", abandoned, "a signal ended the run"},
        {"time-limit", abandoned, "the time of --time-limit was over"},
    });
}();

/// The cause of that name. A name that is none does not compile.
consteval const QueueSyncCause& queueSyncCause(std::string_view name) {
    for (const QueueSyncCause& cause : kQueueSyncCauses) {
        if (cause.name == name) {
            return cause;
        }
    }
    throw "no such cause";
}

/// Why something about a queue could not be done.
struct QueueFailure {
    /// One of `kQueueSyncCauses`.
    const QueueSyncCause* cause = nullptr;
    /// One phrase without the queue's name.
    std::string reason;

    bool isOf(const QueueSyncCause& which) const { return cause && *cause == which; }
};

/// The cause for a printer that gave no status.
const QueueSyncCause& queueSyncCauseForError(OrbCSError::Cause cause);

}  // namespace TkPPDUpdating
