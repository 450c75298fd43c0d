#pragma once

#include <cups/ipp.h>

#include <memory>
#include <string>
#include <string_view>

namespace TkPPDUpdating {

struct IPPMessageDeleter {
    void operator()(ipp_t* message) const { ippDelete(message); }
};

/// An IPP message of libcups that is owned.
using IPPMessage = std::unique_ptr<ipp_t, IPPMessageDeleter>;

/// A request whose answer is wanted in English, whatever the locale of the process: what people are
/// told, and what comes to stand in a PPD, must not depend on who runs the program.
IPPMessage newIPPRequest(ipp_op_t operation);

/// The message that libcups reads from the bytes of an answer that is trusted to be one; null when
/// it refuses them.
IPPMessage IPPMessageReadFrom(std::string_view bytes);

/// The message that libcups reads from the bytes that `IPPAnswerFilter` gives. Null when it refuses
/// them, or when it holds less than it was given: for lack of memory, it leaves single texts and
/// attributes out without a word, and what is missing in an answer must not be taken for what the
/// printer does not have.
IPPMessage IPPMessageWithBytes(std::string_view bytes);

/// The name of a status code (RFC 8011, appendix B), such as "client-error-not-found"; "0xbb99" for
/// one without a name. Whoever answers may send any of 16 bits: what is beyond libcups's
/// enumeration is no value of it, and stays a number.
std::string nameOfIPPStatus(int code);

}  // namespace TkPPDUpdating
