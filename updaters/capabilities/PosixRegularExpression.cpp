#include "updaters/capabilities/PosixRegularExpression.h"

#include <cerrno>
#include <limits>
#include <new>
#include <numeric>
#include <utility>

#include "ppd/PPDTextIndex.h"
#include "text/CLocaleScope.h"
#include "updaters/capabilities/RequiredText.h"

namespace TkPPDUpdating {

namespace {

/// A line is none that does not match only because there was no room to find out. Of a match, the
/// GNU C library tells that by the error number of the allocation alone.
void throwWithoutMemory(int result) {
    if (result == REG_ESPACE || (result == REG_NOMATCH && errno == ENOMEM)) {
        throw std::bad_alloc();
    }
}

}  // namespace

PosixRegularExpression::PosixRegularExpression(std::unique_ptr<regex_t, Free> expression,
                                               std::string requiredText)
    : expression_(std::move(expression)), requiredText_(std::move(requiredText)) {}

std::optional<PosixRegularExpression> PosixRegularExpression::compiled(
    const std::string& expression) {
    if (expression.find('\0') != std::string::npos) {
        return std::nullopt;
    }
    const CLocaleScope locale;
    auto storage = std::make_unique<regex_t>();
    const int result = ::regcomp(storage.get(), expression.c_str(), REG_EXTENDED | REG_NOSUB);
    throwWithoutMemory(result);
    if (result != 0) {
        return std::nullopt;
    }
    return PosixRegularExpression(std::unique_ptr<regex_t, Free>(storage.release()),
                                  requiredTextOfExpression(expression));
}

bool PosixRegularExpression::matches(std::string_view line) const {
    if (line.size() > static_cast<std::size_t>(std::numeric_limits<regoff_t>::max())) {
        return false;
    }
    // REG_STARTEND gives the bounds of the line, so that it needs no copy that ends with a NUL.
    regmatch_t bounds{0, static_cast<regoff_t>(line.size())};
    errno = 0;
    const int result = ::regexec(expression_.get(), line.data(), 0, &bounds, REG_STARTEND);
    throwWithoutMemory(result);
    return result == 0;
}

/// The lines of the index beneath that are there and may match, in line order.
std::vector<OrbPPDLines::LineID> PosixRegularExpression::candidates(
    const OrbPPDLines& lines) const {
    const PPDTextIndex& index = lines.base();
    std::vector<OrbPPDLines::LineID> found;
    if (requiredText_.empty()) {
        found.resize(index.size());
        std::iota(found.begin(), found.end(), 0);
    } else {
        const std::string_view text = *index.text();
        for (std::size_t at = text.find(requiredText_); at != std::string_view::npos;) {
            found.push_back(index.lineAt(at));
            at = text.find(requiredText_, index.start(found.back() + 1));
        }
    }
    std::erase_if(found, [&](auto line) { return lines.isGone(line); });
    return found;
}

PPDText PosixRegularExpression::textByRemovingMatchingLines(const PPDText& text) const {
    const CLocaleScope locale;
    OrbPPDLines lines(text);
    std::vector<OrbPPDLines::LineID> going = candidates(lines);
    std::erase_if(going, [&](auto line) { return !matches(lines.base().line(line)); });
    // Behind the last line feed stands an empty line.
    const bool losesLastLineFeed = lines.endsWithLineFeed() && matches({});
    const std::size_t before = lines.size();
    lines.visitInserted([&](std::size_t index, std::string_view line) {
        if (matches(line)) {
            lines.erase(index, 1);
        }
    });
    lines.erase(going);
    lines.setEndsWithLineFeed(lines.endsWithLineFeed() && !losesLastLineFeed);
    return lines.size() == before && !losesLastLineFeed ? text : lines.text();
}

}  // namespace TkPPDUpdating
