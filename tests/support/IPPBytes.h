#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace TkPPDUpdating::Testing {

/// Builds the bytes of an IPP answer by hand, so that they can be wrong in every way.
class IPPBytes {
  public:
    /// Version 2.0, a status code, request 1, and the operation group that every answer begins
    /// with.
    explicit IPPBytes(std::uint16_t statusCode = 0);

    IPPBytes& delimiter(unsigned char tag);
    /// A named value, or a further one when the name is empty.
    IPPBytes& value(unsigned char tag, std::string_view name, std::string_view value);
    IPPBytes& integer(std::string_view name, std::int32_t number);
    IPPBytes& keyword(std::string_view name, std::string_view keyword);
    /// Ends the message.
    std::string end();

    const std::string& bytes() const { return bytes_; }

  private:
    std::string bytes_;
};

}  // namespace TkPPDUpdating::Testing
