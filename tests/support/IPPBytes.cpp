#include "tests/support/IPPBytes.h"

#include <array>

namespace TkPPDUpdating::Testing {

namespace {

void appendLength(std::string& bytes, std::size_t length) {
    bytes += static_cast<char>(length >> 8U);
    bytes += static_cast<char>(length & 0xFFU);
}

}  // namespace

IPPBytes::IPPBytes(std::uint16_t statusCode) : bytes_("\x02\x00", 2) {
    appendLength(bytes_, statusCode);
    bytes_ += std::string("\x00\x00\x00\x01", 4);
    delimiter(0x01);
    value(0x47, "attributes-charset", "utf-8");
    value(0x48, "attributes-natural-language", "en");
    delimiter(0x04);
}

IPPBytes& IPPBytes::delimiter(unsigned char tag) {
    bytes_ += static_cast<char>(tag);
    return *this;
}

IPPBytes& IPPBytes::value(unsigned char tag, std::string_view name, std::string_view value) {
    bytes_ += static_cast<char>(tag);
    appendLength(bytes_, name.size());
    bytes_ += name;
    appendLength(bytes_, value.size());
    bytes_ += value;
    return *this;
}

IPPBytes& IPPBytes::integer(std::string_view name, std::int32_t number) {
    const auto bits = static_cast<std::uint32_t>(number);
    const std::array<char, 4> bytes = {static_cast<char>(bits >> 24U),
                                       static_cast<char>(bits >> 16U),
                                       static_cast<char>(bits >> 8U), static_cast<char>(bits)};
    return value(0x21, name, {bytes.data(), bytes.size()});
}

IPPBytes& IPPBytes::keyword(std::string_view name, std::string_view keyword) {
    return value(0x44, name, keyword);
}

std::string IPPBytes::end() {
    delimiter(0x03);
    return bytes_;
}

}  // namespace TkPPDUpdating::Testing
