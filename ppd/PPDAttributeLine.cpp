#include "ppd/PPDAttributeLine.h"

#include <algorithm>
#include <cstddef>

#include "ppd/PPDConstants.h"
#include "text/CaseFolding.h"

namespace TkPPDUpdating {

namespace {

/// Reads a text from the left, ignoring case.
class Scanner {
  public:
    explicit Scanner(std::string_view text) : rest_(text) {}

    bool scan(std::string_view literal) {
        const std::size_t length = lengthOfPrefixIgnoringCase(rest_, literal);
        if (length == std::string_view::npos) {
            return false;
        }
        rest_.remove_prefix(length);
        return true;
    }

    bool scanSpaces() {
        const std::size_t length = std::min(rest_.find_first_not_of(' '), rest_.size());
        rest_.remove_prefix(length);
        return length > 0;
    }

  private:
    std::string_view rest_;
};

}  // namespace

bool isAttributeLine(std::string_view line, std::string_view keyword,
                     std::optional<std::string_view> spec, std::optional<std::string_view> value) {
    return line.starts_with(kTkPPDAsterisk) &&
           isAttribute(line.substr(kTkPPDAsterisk.size()), keyword, spec, value);
}

bool isAttribute(std::string_view text, std::string_view keyword,
                 std::optional<std::string_view> spec, std::optional<std::string_view> value) {
    Scanner scanner(text);
    if (!scanner.scan(keyword)) {
        return false;
    }
    if (spec && (!scanner.scanSpaces() || !scanner.scan(*spec))) {
        return false;
    }
    if (!scanner.scan(kTkPPDColon) && !(spec && scanner.scan(kTkPPDSlash))) {
        return false;
    }
    return !value || (scanner.scanSpaces() && scanner.scan(*value));
}

}  // namespace TkPPDUpdating
