#include "backends/libcups/IPPMessage.h"

#include <array>
#include <cstddef>
#include <cstdio>
#include <utility>

namespace TkPPDUpdating {

namespace {

/// A text that libcups reads a message from.
struct Source {
    std::string_view remaining;
};

ssize_t readFromSource(void* context, ipp_uchar_t* buffer, std::size_t size) {
    auto* source = static_cast<Source*>(context);
    const std::size_t count = source->remaining.copy(reinterpret_cast<char*>(buffer), size);
    source->remaining.remove_prefix(count);
    return static_cast<ssize_t>(count);
}

}  // namespace

IPPMessage newIPPRequest(ipp_op_t operation) {
    IPPMessage request(ippNew());
    ippSetOperation(request.get(), operation);
    ippSetRequestId(request.get(), 1);
    ippAddString(request.get(), IPP_TAG_OPERATION, IPP_TAG_CHARSET, "attributes-charset", nullptr,
                 "utf-8");
    ippAddString(request.get(), IPP_TAG_OPERATION, IPP_TAG_LANGUAGE, "attributes-natural-language",
                 nullptr, "en");
    return request;
}

IPPMessage IPPMessageReadFrom(std::string_view bytes) {
    IPPMessage message(ippNew());
    Source source{bytes};
    const bool isRead =
        message && ippReadIO(&source, readFromSource, 1, nullptr, message.get()) == IPP_STATE_DATA;
    return isRead ? std::move(message) : nullptr;
}

IPPMessage IPPMessageWithBytes(std::string_view bytes) {
    IPPMessage message = IPPMessageReadFrom(bytes);
    // The length that it would have again on the wire: the same when nothing was lost.
    return message && ippLength(message.get()) == bytes.size() ? std::move(message) : nullptr;
}

std::string nameOfIPPStatus(int code) {
    constexpr int kFirstBeyond = 0x1000;
    if (code >= 0 && code < kFirstBeyond) {
        return ippErrorString(static_cast<ipp_status_t>(code));
    }
    std::array<char, sizeof "0xFFFFFFFF"> number{};
    (void)std::snprintf(number.data(), number.size(), "0x%04x", static_cast<unsigned>(code));
    return number.data();
}

}  // namespace TkPPDUpdating
