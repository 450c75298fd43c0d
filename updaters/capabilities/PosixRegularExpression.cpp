#include "updaters/capabilities/PosixRegularExpression.h"

#include <clocale>
#include <limits>
#include <utility>

namespace TkPPDUpdating {

namespace {

/// Puts the calling thread into the C locale until the end of the scope.
class CLocaleScope {
  public:
    CLocaleScope() : before_(::uselocale(cLocale())) {}
    CLocaleScope(const CLocaleScope&) = delete;
    CLocaleScope& operator=(const CLocaleScope&) = delete;
    ~CLocaleScope() { ::uselocale(before_); }

  private:
    static locale_t cLocale() {
        static const locale_t locale = ::newlocale(LC_ALL_MASK, "C", nullptr);
        return locale;
    }

    locale_t before_;
};

}  // namespace

PosixRegularExpression::PosixRegularExpression(std::unique_ptr<regex_t, Free> expression)
    : expression_(std::move(expression)) {}

std::optional<PosixRegularExpression> PosixRegularExpression::compiled(
    const std::string& expression) {
    if (expression.find('\0') != std::string::npos) {
        return std::nullopt;
    }
    const CLocaleScope locale;
    auto storage = std::make_unique<regex_t>();
    if (::regcomp(storage.get(), expression.c_str(), REG_EXTENDED | REG_NOSUB) != 0) {
        return std::nullopt;
    }
    return PosixRegularExpression(std::unique_ptr<regex_t, Free>(storage.release()));
}

bool PosixRegularExpression::matches(std::string_view line) const {
    if (line.size() > static_cast<std::size_t>(std::numeric_limits<regoff_t>::max())) {
        return false;
    }
    // REG_STARTEND gives the bounds of the line, so that it needs no copy that ends with a NUL.
    regmatch_t bounds{0, static_cast<regoff_t>(line.size())};
    return ::regexec(expression_.get(), line.data(), 0, &bounds, REG_STARTEND) == 0;
}

std::string PosixRegularExpression::textByRemovingMatchingLines(std::string_view text) const {
    const CLocaleScope locale;
    std::string result;
    std::size_t keptFrom = 0;  // start of the kept lines that are not copied yet
    std::size_t start = 0;
    for (bool isLast = false; !isLast;) {
        const std::size_t lineFeed = text.find('\n', start);
        isLast = lineFeed == std::string_view::npos;
        const std::size_t end = isLast ? text.size() : lineFeed;
        const std::size_t next = isLast ? end : end + 1;
        if (matches(text.substr(start, end - start))) {
            result.append(text, keptFrom, start - keptFrom);
            keptFrom = next;
            if (isLast && !result.empty()) {
                result.pop_back();  // the line before has become the last one
            }
        }
        start = next;
    }
    return result.append(text, keptFrom);
}

}  // namespace TkPPDUpdating
