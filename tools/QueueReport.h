#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core_interface/OrbCSDeviceStatus.h"
#include "sync/QueueSyncOutcome.h"

namespace TkPPDUpdating {

/// What a synchronisation has told of one queue as JSON, read back. Texts are UTF-8, as somebody
/// else wrote them, with control characters that may stand in them; one that was not told is empty.
struct QueueReport {
    /// An attribute of the PPD. A value is nothing where the line is not there.
    struct Change {
        std::string keyword;
        std::string optionKeyword;
        std::optional<std::string> before;
        std::optional<std::string> after;
    };

    std::string queue;
    QueueSyncResult result = QueueSyncResult::failed;
    std::string cause;
    std::string reason;
    std::vector<std::string> notes;
    /// Entries of a status that the printer did not tell.
    std::vector<std::string> kept;
    /// What the printer answered to the questions of the PPD, for people.
    std::vector<std::string> answers;
    std::vector<Change> changes;
    /// The same for people.
    std::vector<std::string> changedInWords;
    std::string server;
    std::string deviceURI;
    std::string statusURI;
    /// When the queue was done, in UTC.
    std::string time;
    /// What the printer answered; null when that was not told.
    std::shared_ptr<const OrbCSDeviceStatus> status;
};

/// Reads what `SyncReport::JSONForOutcome` writes: a JSON object on each line. Members that it does
/// not know, and lines of white space, are passed over.
///
/// Raises a `Failure` about `place`, with line and cause, for what is not JSON, and for a member of
/// another type than the manual page says. Only the queue and its result have to be there.
std::vector<QueueReport> queueReportsWithText(const std::string& place, std::string_view text);

}  // namespace TkPPDUpdating
