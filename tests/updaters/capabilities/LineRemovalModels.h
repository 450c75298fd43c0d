#pragma once

#include <regex.h>

#include <algorithm>
#include <cstddef>
#include <string>

namespace TkPPDUpdating::Testing {

/// What removing a group means, searched for in the text as it stands: from its "*OpenGroup: " line
/// through the line that closes it.
inline std::string withoutGroup(std::string text, const std::string& groupName) {
    constexpr std::size_t kNotFound = std::string::npos;
    const std::string open = "\n*OpenGroup: " + groupName;
    const std::string close = "\n*CloseGroup: " + groupName;
    const std::size_t opens = text.find(open);
    const std::size_t closes = opens == kNotFound ? opens : text.find(close, opens + open.size());
    const std::size_t lineFeed =
        closes == kNotFound ? closes : text.find('\n', closes + close.size());
    return lineFeed == kNotFound ? text : text.erase(opens + 1, lineFeed - opens);
}

/// An expression that lines match or not. It is one that compiles; neither it nor a line holds a
/// NUL.
class LineExpression {
  public:
    explicit LineExpression(const std::string& expression)
        : isCompiled_(::regcomp(&compiled_, expression.c_str(), REG_EXTENDED | REG_NOSUB) == 0) {}
    LineExpression(const LineExpression&) = delete;
    LineExpression& operator=(const LineExpression&) = delete;
    ~LineExpression() {
        if (isCompiled_) {
            ::regfree(&compiled_);
        }
    }

    bool matches(const std::string& line) const {
        return isCompiled_ && ::regexec(&compiled_, line.c_str(), 0, nullptr, 0) == 0;
    }

  private:
    regex_t compiled_;
    bool isCompiled_;
};

/// What removing the lines that match means: each line is copied, matched, and kept or not.
inline std::string withoutMatchingLines(const std::string& text, const std::string& expression) {
    const LineExpression compiled(expression);
    std::string result;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        const std::string line = text.substr(start, end - start);
        if (!compiled.matches(line)) {
            result += line + "\n";
        }
        start = end + 1;
    }
    if (!result.empty()) {
        result.pop_back();
    }
    return result;
}

}  // namespace TkPPDUpdating::Testing
