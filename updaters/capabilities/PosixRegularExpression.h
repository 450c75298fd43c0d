#pragma once

#include <regex.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ppd/OrbPPDLines.h"
#include "ppd/PPDText.h"

namespace TkPPDUpdating {

/// A compiled POSIX extended regular expression (IEEE Std 1003.1, Extended Regular Expressions;
/// REG_EXTENDED with REG_NOSUB), matched line by line.
///
/// It is compiled and matched in the C locale, whatever the locale of process or thread, and so
/// byte by byte: "." takes one byte, and a character that is not ASCII is several. That makes the
/// result the same for every user, and a match several times faster than in a UTF-8 locale.
/// One object is for one thread at a time.
class PosixRegularExpression {
  public:
    /// Nothing when the expression does not compile or holds a NUL, which no expression can. Raises
    /// `std::bad_alloc` for want of memory.
    static std::optional<PosixRegularExpression> compiled(const std::string& expression);

    PosixRegularExpression(PosixRegularExpression&&) = default;
    PosixRegularExpression& operator=(PosixRegularExpression&&) = default;
    PosixRegularExpression(const PosixRegularExpression&) = delete;
    PosixRegularExpression& operator=(const PosixRegularExpression&) = delete;
    ~PosixRegularExpression() = default;

    /// `text` without the lines that match, each taken without its line feed; "^" and "$" stand for
    /// start and end of a line. The text is split at every line feed, so that one that ends with a
    /// line feed has an empty last line. The last line that stays ends the text as the last line
    /// did: without a line feed. All of a line counts, also what follows a NUL in it. A line that
    /// cannot be matched because it is longer than `regoff_t` can tell stays; for want of memory
    /// `std::bad_alloc` is raised. The text itself when nothing matches; it must not be null.
    PPDText textByRemovingMatchingLines(const PPDText& text) const;

  private:
    struct Free {
        void operator()(regex_t* expression) const {
            ::regfree(expression);
            delete expression;
        }
    };

    PosixRegularExpression(std::unique_ptr<regex_t, Free> expression, std::string requiredText);
    std::vector<OrbPPDLines::LineID> candidates(const OrbPPDLines& lines) const;
    bool matches(std::string_view line) const;

    std::unique_ptr<regex_t, Free> expression_;
    /// What every matching line holds.
    std::string requiredText_;
};

}  // namespace TkPPDUpdating
