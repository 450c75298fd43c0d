#include "updaters/capabilities/PPDConstraintRemoval.h"

#include <algorithm>
#include <utility>

#include "ppd/PPDConstants.h"

namespace TkPPDUpdating {

namespace {

constexpr std::string_view kConstraint = "*UIConstraints:";

/// Goes over a text line by line, once. Lines that stay as they are are copied together, as late as
/// possible; a line of which a removal has left the beginning is held back until it is complete.
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
            takeLine(start, lineFeed + 1);
            start = lineFeed + 1;
        }
        // Nothing goes without a line feed.
        result_ += begun_;
        return std::move(result_.append(text_, copied_));
    }

  private:
    void takeLine(std::size_t start, std::size_t end) {
        if (!begun_.empty()) {
            continueLine(text_.substr(start, end - start));
            copied_ = end;
            return;
        }
        const std::string_view line = text_.substr(start, end - start);
        const std::size_t comment = mayHoldComment(start, end) ? line.find(comment_) : kNotFound;
        if (comment != kNotFound) {
            copyUpTo(start);
            begun_ = line.substr(0, comment);
            copied_ = end;
            return;
        }
        const std::size_t constraint = findConstraint(line);
        if (constraint != kNotFound) {
            copyUpTo(start + constraint);
            holdAsteriskBack();
            copied_ = end;
        }
    }

    /// Takes a line that goes on where the held-back beginning stops.
    void continueLine(std::string_view line) {
        const std::size_t searched = begun_.size() - std::min(begun_.size(), comment_.size() - 1);
        begun_ += line;
        const std::size_t comment = begun_.find(comment_, std::max(searched, firstOfComment_));
        if (comment != kNotFound) {
            begun_.resize(comment);
            return;
        }
        const std::size_t constraint = findConstraint(begun_);
        result_.append(begun_, 0, constraint);
        begun_.clear();
        firstOfComment_ = 0;
        if (constraint != kNotFound) {
            holdAsteriskBack();
        }
    }

    void copyUpTo(std::size_t end) { result_.append(text_, copied_, end - copied_); }

    /// After a constraint has gone: an asterisk before it may form another one with what follows,
    /// but no comment, as those have gone before all constraints.
    void holdAsteriskBack() {
        if (result_.ends_with(kTkPPDAsterisk)) {
            result_.pop_back();
            begun_ = kTkPPDAsterisk;
            firstOfComment_ = 1;
        }
    }

    /// Whether there is a percent sign between the places, which come in ascending order.
    bool mayHoldComment(std::size_t start, std::size_t end) {
        if (percent_ < start) {
            percent_ = text_.find('%', start);
        }
        return percent_ < end;
    }

    /// Where the constraint in the line begins that names the option.
    std::size_t findConstraint(std::string_view line) const {
        const std::size_t constraint = line.starts_with(kConstraint) ? 0 : line.find(kConstraint);
        if (constraint == kNotFound) {
            return kNotFound;
        }
        for (std::size_t found = line.find(option_, constraint + kConstraint.size());
             found != kNotFound; found = line.find(option_, found + 1)) {
            const char next = line[found + option_.size()];
            if (next == ' ' || next == '\n') {
                return constraint;
            }
        }
        return kNotFound;
    }

    static constexpr std::size_t kNotFound = std::string_view::npos;

    std::string_view text_;
    std::string comment_;
    std::string option_;
    std::string result_;
    /// How far the text has been copied or left out.
    std::size_t copied_ = 0;
    /// The beginning of a line that goes on with the next one; empty between whole lines.
    std::string begun_;
    /// Where in it a comment may begin.
    std::size_t firstOfComment_ = 0;
    /// A percent sign of the text, none between it and the line before.
    std::size_t percent_ = 0;
};

}  // namespace

PPDText PPDTextByRemovingConstraints(const PPDText& text, std::string_view optionKeyword) {
    std::string result = ConstraintRemover(*text, optionKeyword).result();
    return result.size() == text->size() ? text : makePPDText(std::move(result));
}

}  // namespace TkPPDUpdating
