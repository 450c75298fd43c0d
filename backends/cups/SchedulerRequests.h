#pragma once

#include <cstddef>
#include <string>

#include "backends/libcups/HTTPTalk.h"
#include "backends/libcups/IPPMessage.h"
#include "sync/QueueSyncCauses.h"

namespace TkPPDUpdating {

/// Sends a request to the scheduler, with the bytes of a file behind it when `file` is not null,
/// and reads its answer, of at most `mostBytes`. The answer when it is one of success; else null,
/// with the cause and reason in `failure`. The cause is "no-scheduler" when there was no whole
/// answer, so that it is not known what became of the request.
IPPMessage answerOfScheduler(HTTPConnection& connection, const IPPMessage& request,
                             const std::string& resource, const std::string* file,
                             std::size_t mostBytes, QueueFailure& failure);

/// Reads what stands at a path of the scheduler, of at most `mostBytes`. False, with the cause and
/// reason in `failure`; the cause is "no-queue" for a path that does not exist.
bool readFromScheduler(HTTPConnection& connection, const std::string& path, std::size_t mostBytes,
                       std::string& bytes, QueueFailure& failure);

}  // namespace TkPPDUpdating
