#include "backends/cups/IPPMessage.h"

#include <algorithm>
#include <cstring>

namespace TkPPDUpdating {

namespace {

/// A text that libcups reads a message from.
struct Source {
    std::string_view remaining;
};

ssize_t readFromSource(void* context, ipp_uchar_t* buffer, std::size_t size) {
    auto* source = static_cast<Source*>(context);
    const std::size_t count = std::min(size, source->remaining.size());
    std::memcpy(buffer, source->remaining.data(), count);
    source->remaining.remove_prefix(count);
    return static_cast<ssize_t>(count);
}

}  // namespace

IPPMessage IPPMessageWithBytes(std::string_view bytes) {
    IPPMessage message(ippNew());
    Source source{bytes};
    const bool isRead =
        message && ippReadIO(&source, readFromSource, 1, nullptr, message.get()) == IPP_STATE_DATA;
    // The length that it would have again on the wire: the same when nothing was lost.
    return isRead && ippLength(message.get()) == bytes.size() ? std::move(message) : nullptr;
}

}  // namespace TkPPDUpdating
