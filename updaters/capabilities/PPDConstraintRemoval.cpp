#include "updaters/capabilities/PPDConstraintRemoval.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "ppd/OrbPPDLines.h"
#include "ppd/PPDConstants.h"
#include "ppd/PPDTextIndex.h"

namespace TkPPDUpdating {

namespace {

constexpr std::string_view kConstraint = "*UIConstraints:";

std::string commentOf(std::string_view optionKeyword) {
    return std::string("*% ").append(optionKeyword).append(" <-> ");
}

std::string optionOf(std::string_view optionKeyword) {
    return std::string(kTkPPDAsterisk).append(optionKeyword);
}

/// Where the constraint in the line begins that names the option. The line has a line feed in the
/// text, which need not stand here.
std::size_t startOfConstraint(std::string_view line, std::string_view option) {
    constexpr std::size_t kNotFound = std::string_view::npos;
    const std::size_t constraint = line.starts_with(kConstraint) ? 0 : line.find(kConstraint);
    if (constraint == kNotFound) {
        return kNotFound;
    }
    for (std::size_t found = line.find(option, constraint + kConstraint.size()); found != kNotFound;
         found = line.find(option, found + 1)) {
        const std::size_t next = found + option.size();
        if (next == line.size() || line[next] == ' ' || line[next] == '\n') {
            return constraint;
        }
    }
    return kNotFound;
}

/// For a text in which some line would keep its beginning, which no printer's has: goes over it
/// line by line, once. Lines that stay as they are are copied together, as late as possible; a line
/// of which a removal has left the beginning is held back until it is complete.
class ConstraintRemover {
  public:
    ConstraintRemover(std::string_view text, std::string_view optionKeyword)
        : text_(text), comment_(commentOf(optionKeyword)), option_(optionOf(optionKeyword)) {
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
        const std::size_t constraint = startOfConstraint(line, option_);
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
        const std::size_t constraint = startOfConstraint(begun_, option_);
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

/// Finds the lines that hold what is to go, by the asterisks in lines.
class ConstraintFinder {
  public:
    explicit ConstraintFinder(std::string_view optionKeyword)
        : comment_(commentOf(optionKeyword)), option_(optionOf(optionKeyword)) {}

    enum class Line : std::uint8_t { kStays, kGoes, kIsToBeRewritten };

    /// Of a line that has a line feed in the text, which need not stand here.
    Line kindOf(std::string_view line) const {
        const std::size_t comment = line.find(comment_);
        const std::size_t start =
            comment != std::string_view::npos ? comment : startOfConstraint(line, option_);
        return start == std::string_view::npos ? Line::kStays
               : start == 0                    ? Line::kGoes
                                               : Line::kIsToBeRewritten;
    }

    /// The lines of the index beneath that are there and may hold any, in line order.
    std::vector<OrbPPDLines::LineID> candidates(const OrbPPDLines& lines) const {
        const PPDTextIndex& index = lines.base();
        const std::string_view text = *index.text();
        std::vector<OrbPPDLines::LineID> found;
        index.visitRuns(comment_.substr(1), [&](const PPDTextIndex::Run& run) {
            for (auto line = run.first; line < run.end; ++line) {
                if (index.line(line).starts_with(comment_)) {
                    found.push_back(line);
                }
            }
            return false;
        });
        for (const std::uint32_t at : index.innerAsterisks()) {
            const std::string_view rest = text.substr(at);
            if (rest.starts_with(option_) || rest.starts_with(kCommentStart)) {
                const auto line = index.lineAt(at);
                if (found.empty() || found.back() != line) {
                    found.push_back(line);
                }
            }
        }
        std::sort(found.begin(), found.end());
        found.erase(std::unique(found.begin(), found.end()), found.end());
        std::erase_if(found, [&](auto line) { return lines.isGone(line); });
        return found;
    }

  private:
    static constexpr std::string_view kCommentStart = "*%";

    std::string comment_;
    std::string option_;
};

}  // namespace

PPDText PPDTextByRemovingConstraints(const PPDText& text, std::string_view optionKeyword) {
    const ConstraintFinder finder(optionKeyword);
    OrbPPDLines lines(text);
    bool hasLineToBeRewritten = false;
    const auto goes = [&](std::string_view line) {
        const auto kind = finder.kindOf(line);
        hasLineToBeRewritten =
            hasLineToBeRewritten || kind == ConstraintFinder::Line::kIsToBeRewritten;
        return kind == ConstraintFinder::Line::kGoes;
    };
    std::vector<OrbPPDLines::LineID> going = finder.candidates(lines);
    // Nothing goes without a line feed.
    const std::size_t last = lines.size() - (lines.endsWithLineFeed() ? 0 : 1);
    if (!going.empty() && !lines.endsWithLineFeed() && lines.indexOf(going.back()) == last) {
        going.pop_back();
    }
    std::erase_if(going, [&](auto line) { return !goes(lines.base().lineWithLineFeed(line)); });
    const std::size_t before = lines.size();
    lines.visitInserted([&](std::size_t index, std::string_view line) {
        if (index != last && goes(line)) {
            lines.erase(index, 1);
        }
    });
    if (hasLineToBeRewritten) {
        return makePPDText(ConstraintRemover(*text, optionKeyword).result());
    }
    lines.erase(going);
    return lines.size() == before ? text : lines.text();
}

}  // namespace TkPPDUpdating
