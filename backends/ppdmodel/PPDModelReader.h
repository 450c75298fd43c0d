#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "backends/ppdmodel/PPDModelAttribute.h"

namespace TkPPDUpdating {

/// Reads the attributes of a PPD text in one pass (PPD specification 4.3, section 3: the grammar of
/// a main-keyword line).
class PPDModelReader {
  public:
    /// The text must outlive the reader and all attributes.
    explicit PPDModelReader(std::string_view text) : text_(text) {}

    /// Reads the text. False, and the reason with the place in `reason`, when it is no PPD, holds a
    /// NUL byte, or a quoted value in it never closes.
    bool read(std::string& reason);

    /// What was read, in file order: views into the text, but for values of several lines, which
    /// are views into `joinedValues`. To be taken once.
    std::vector<PPDModelAttribute> attributes;
    std::deque<std::string> joinedValues;

  private:
    bool beginsAsPPD(std::string& reason) const;
    bool readLine(std::string& reason);
    bool readValue(std::string_view line, std::size_t from, std::string_view& value,
                   std::string& reason);
    std::size_t endOfLine(std::size_t from) const;
    std::size_t lineNumber(std::size_t at) const;

    std::string_view text_;
    std::size_t at_ = 0;
    std::size_t next_ = 0;
};

}  // namespace TkPPDUpdating
