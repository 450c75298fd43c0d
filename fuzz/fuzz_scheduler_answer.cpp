// Answers of a scheduler, any bytes: libcups reads or refuses them, and what they tell of queues is
// told in order and the same each time.
#include <cups/ipp.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "backends/cups/SchedulerAnswers.h"
#include "backends/libcups/IPPMessage.h"
#include "fuzz/FuzzTarget.h"

using namespace TkPPDUpdating;
using namespace TkPPDUpdating::Fuzzing;

namespace {

/// How many attributes of that name libcups holds in the printers' groups.
std::size_t countOf(ipp_t* answer, std::string_view name) {
    std::size_t count = 0;
    for (ipp_attribute_t* each = ippFirstAttribute(answer); each; each = ippNextAttribute(answer)) {
        const char* const own = ippGetName(each);
        count += own && name == own && ippGetGroupTag(each) == IPP_TAG_PRINTER ? 1 : 0;
    }
    return count;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const IPPMessage answer = IPPMessageReadFrom(textOfInput(data, size));
    if (!answer) {
        return 0;
    }
    const auto names = queueNamesInAnswer(answer.get());
    require(std::is_sorted(names.begin(), names.end()), "names are in order");
    require(names.size() <= countOf(answer.get(), "printer-name"), "no more names than there are");
    require(std::find(names.begin(), names.end(), "") == names.end(), "each is a name");
    require(queueNamesInAnswer(answer.get()) == names, "the same names again");
    const SchedulerQueue queue = queueInAnswer(answer.get(), "queue");
    require(queue.name == "queue", "the queue that was asked about");
    const auto& reasons = queue.stateReasons;
    require(std::find(reasons.begin(), reasons.end(), "none") == reasons.end(),
            "none is no reason");
    for (const auto& [setting, value] : queue.settings) {
        const auto known = schedulerSettings();
        require(std::find(known.begin(), known.end(), setting) != known.end(), "a known setting");
        require(value.find('\0') == std::string::npos, "a text without zero bytes");
    }
    return 0;
}
