#pragma once

#include <string>

namespace TkPPDUpdating {

/// Whether the name could be that of a CUPS queue: 1 to 127 bytes, no "/", "#", white space or
/// control character, not "." or "..". Another one must not become part of a path or URI.
bool couldBeQueueName(const std::string& queueName);

/// The reason that is given for a name that could not be.
inline constexpr const char* kNoQueueName = "cannot be the name of a queue";

}  // namespace TkPPDUpdating
