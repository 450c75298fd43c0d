#pragma once

#include <map>
#include <string>
#include <vector>

namespace TkPPDUpdating::Testing {

/// A printer's answer with its true status, written by hand as a text:
///
///     # What kind of printer it is.
///     sides-supported: keyword one-sided | two-sided-long-edge
///     media-type-supported: keyword stationery
///     + name My Gloss
///     media-col-database: collection
///       media-type: name My Gloss
///     + collection
///       media-size: collection
///         x-dimension: integer 21000
///     printer-resolution-supported: resolution 600dpi | 1200x600dpi | 118dpcm
///     printer-supply: no-value
///
///     status
///     Duplexer: installed
///     CustomMediaTypes:
///       My Gloss = My Gloss
///
/// An attribute has a syntax (keyword, name, text, octets, integer, resolution, collection,
/// no-value, unknown) and values between " | "; "+" goes on with the same set in another syntax.
/// "\xHH" stands for a byte. Behind the line "status" stands what the status must be: a line for
/// each value of it, and indented lines below those that are lists.
struct IPPAnswerFile {
    /// The message, as a printer sends it.
    std::string bytes;
    /// By the name of the value; the lines of a list.
    std::map<std::string, std::string> status;
    std::map<std::string, std::vector<std::string>> lists;

    /// Raises `std::runtime_error`, which names the line, for a text that is none.
    static IPPAnswerFile fileWithText(const std::string& text);
};

}  // namespace TkPPDUpdating::Testing
