#include "backends/schemes/QueueName.h"

#include <cstddef>
#include <string_view>

#include "text/ASCII.h"
#include "text/UTF8.h"
#include "text/UnicodeWhiteSpace.h"

namespace TkPPDUpdating {

namespace {

constexpr std::size_t kLongestQueueName = 127;

bool canStandInQueueName(char32_t codePoint) {
    return !isControlCharacter(codePoint) && codePoint != U'/' && codePoint != U'#' &&
           !isUnicodeWhiteSpace(codePoint);
}

}  // namespace

bool couldBeQueueName(const std::string& queueName) {
    if (queueName.empty() || queueName.size() > kLongestQueueName || queueName == "." ||
        queueName == "..") {
        return false;
    }
    for (std::string_view rest = queueName; !rest.empty();) {
        const auto character = UTF8CharacterAtStart(rest);
        if (!character || !canStandInQueueName(character->codePoint)) {
            return false;
        }
        rest.remove_prefix(character->length);
    }
    return true;
}

}  // namespace TkPPDUpdating
