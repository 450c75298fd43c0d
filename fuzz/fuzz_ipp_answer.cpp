// The answer of an IPP printer, any bytes, on its way through the filter, libcups and the mapping:
// filtering twice gives the same, libcups holds all that the filter passed and nothing else, and
// the status is one that may be handed over.
#include <cups/ipp.h>

#include <algorithm>
#include <string>
#include <utility>

#include "backends/ipp/IPPAnswerFilter.h"
#include "backends/ipp/IPPStatusMapping.h"
#include "backends/libcups/IPPMessage.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/NetworkStatus.h"

using namespace TkPPDUpdating;
using namespace TkPPDUpdating::Fuzzing;

namespace {

constexpr std::size_t kMostAttributes = 1000;

const IPPAnswerFilter& filterOfTool() {
    static const IPPAnswerFilter kFilter = [] {
        const auto names = IPPStatusMapping::requestedAttributes();
        const auto identity = IPPStatusMapping::identityAttributes();
        return IPPAnswerFilter({names.begin(), names.end()}, kMostAttributes,
                               {identity.begin(), identity.end()});
    }();
    return kFilter;
}

ssize_t appendToText(void* context, ipp_uchar_t* bytes, std::size_t size) {
    static_cast<std::string*>(context)->append(reinterpret_cast<const char*>(bytes), size);
    return static_cast<ssize_t>(size);
}

/// The message as libcups writes it.
std::string bytesOfMessage(ipp_t* message) {
    std::string bytes;
    ippSetState(message, IPP_STATE_IDLE);
    const auto state = ippWriteIO(&bytes, appendToText, 1, nullptr, message);
    require(state == IPP_STATE_DATA, "libcups writes what it read");
    return bytes;
}

/// Whether every source is an attribute that the table reads the entry from, not too long.
void requireSourcesOfTable(const ReportedDeviceStatus& status) {
    for (const OrbCSStatusSource& source : status.sources()) {
        const bool isOfTable = std::ranges::any_of(
            IPPStatusMapping::rows(), [&source](const IPPStatusMapping::Row& row) {
                return source.entry.starts_with(row.statusKey) &&
                       source.entry.ends_with(row.part) &&
                       std::ranges::any_of(row.attributes, [&source](const auto& attribute) {
                           return attribute.name == source.name;
                       });
            });
        require(isOfTable, "a source is an attribute of the table");
        require(source.value.size() <= IPPStatusMapping::kLongestSource, "it is shown in short");
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    DroppedValues dropped(IPPStatusMapping::meaningOfDrop);
    std::string error;
    IPPFilteredAnswer once = filterOfTool().filtered(textOfInput(data, size), dropped, error);
    require(once.bytes.empty() != error.empty(), "there are bytes or a reason");
    if (once.bytes.empty()) {
        return 0;
    }
    DroppedValues droppedLater;
    const IPPFilteredAnswer twice = filterOfTool().filtered(once.bytes, droppedLater, error);
    require(twice.bytes == once.bytes, "filtering twice gives the same bytes");
    require(droppedLater.takeReasons().empty(), "filtering again drops nothing");

    const IPPMessage message = IPPMessageWithBytes(once.bytes);
    require(message != nullptr, "libcups reads what the filter passed");
    require(bytesOfMessage(message.get()) == once.bytes, "libcups holds what the filter passed");
    const auto status = IPPStatusMapping::statusForAnswer(
        IPPAnswer(message.get(), std::move(dropped), std::move(once.syntaxes)));
    requireSoundNetworkStatus(*status);
    requireSourcesOfTable(*status);
    return 0;
}
