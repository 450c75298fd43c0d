#include "updaters/capabilities/PPDConstraintRemoval.h"

#include <algorithm>
#include <utility>

#include "ppd/PPDConstants.h"

namespace TkPPDUpdating {

namespace {

constexpr std::string_view kConstraint = "*UIConstraints:";

/// Copies a text line by line and takes back from the end of the copy what is to go. A line of the
/// copy is complete when its line feed has stayed; a removed comment takes it along.
class ConstraintRemover {
  public:
    ConstraintRemover(std::string_view text, std::string_view optionKeyword)
        : text_(text),
          comment_(std::string("*% ").append(optionKeyword).append(" <-> ")),
          option_(std::string(kTkPPDAsterisk).append(optionKeyword)) {
        result_.reserve(text.size());
    }

    std::string result() && {
        std::size_t start = 0;
        for (std::size_t lineFeed = text_.find('\n'); lineFeed != std::string_view::npos;
             lineFeed = text_.find('\n', start)) {
            addLine(text_.substr(start, lineFeed + 1 - start));
            start = lineFeed + 1;
        }
        return std::move(result_.append(text_, start));  // nothing goes without a line feed
    }

  private:
    void addLine(std::string_view line) {
        const std::size_t before = result_.size();
        result_ += line;
        // A comment may begin in what an earlier removal has left of a line.
        const std::size_t overlap = std::min(before - lineStart_, comment_.size() - 1);
        const std::size_t comment = findComment(before - overlap);
        if (comment != std::string::npos) {
            result_.resize(comment);
            return;
        }
        const std::size_t constraint =
            result_.find(kConstraint, lineStart_ == 0 ? 0 : lineStart_ - 1);
        if (constraint != std::string::npos && namesOption(constraint)) {
            result_.resize(constraint);
        }
        lineStart_ = result_.size();
    }

    /// Looks for the percent sign, since asterisks are everywhere in a PPD.
    std::size_t findComment(std::size_t from) const {
        const std::string_view tail = std::string_view(comment_).substr(1);
        std::size_t found = result_.find(tail, from + 1);
        while (found != std::string::npos && result_[found - 1] != comment_.front()) {
            found = result_.find(tail, found + 1);
        }
        return found == std::string::npos ? found : found - 1;
    }

    bool namesOption(std::size_t from) const {
        for (std::size_t found = result_.find(option_, from); found != std::string::npos;
             found = result_.find(option_, found + 1)) {
            const char next = result_[found + option_.size()];
            if (next == ' ' || next == '\n') {
                return true;
            }
        }
        return false;
    }

    std::string_view text_;
    std::string comment_;
    std::string option_;
    std::string result_;
    /// Where the line of the result begins that is not complete yet.
    std::size_t lineStart_ = 0;
};

}  // namespace

PPDText PPDTextByRemovingConstraints(const PPDText& text, std::string_view optionKeyword) {
    std::string result = ConstraintRemover(*text, optionKeyword).result();
    return result.size() == text->size() ? text : makePPDText(std::move(result));
}

}  // namespace TkPPDUpdating
