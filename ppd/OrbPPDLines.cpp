#include "ppd/OrbPPDLines.h"

#include <algorithm>
#include <mutex>
#include <numeric>
#include <stdexcept>
#include <utility>

#include "ppd/PPDAttributeLine.h"
#include "ppd/PPDConstants.h"
#include "ppd/PPDTextContents.h"
#include "text/CaseFolding.h"
#include "text/LargeString.h"

namespace TkPPDUpdating {

namespace {

/// Reading a text anew, or sorting its lines by their keys, costs about as much as reading so many
/// of its lines in vain.
constexpr std::size_t kPasses = 8;
constexpr std::size_t kFewLines = 1024;

constexpr std::size_t kFewestInGap = 8;
constexpr std::size_t kLeastStorage = 256;
constexpr std::size_t kMostStorage = 64UL * 1024;

/// Where in the keyword of a line, the asterisk included, the language of a translation ends.
std::size_t endOfLanguage(std::string_view line, std::string_view keyword) {
    const std::string_view name = PPDTextIndex::keywordPart(line);
    const std::string_view wanted = PPDTextIndex::keywordPart(keyword);
    std::size_t stop = name.size();
    auto more = 1 + std::count(wanted.begin(), wanted.end(), '.');
    for (; more > 0 && stop != std::string_view::npos; --more) {
        stop = name.rfind('.', stop - 1);
    }
    return stop;
}

/// Whether the line is a translation of the attribute into some language.
bool isTranslation(std::string_view line, std::string_view keyword,
                   std::optional<std::string_view> spec) {
    if (!line.starts_with(kTkPPDAsterisk)) {
        return false;
    }
    const std::size_t stop = endOfLanguage(line, keyword);
    return stop != std::string_view::npos &&
           isAttribute(line.substr(stop + 1), keyword, spec, std::nullopt);
}

}  // namespace

class OrbPPDLines::ChangedText : public PPDTextContents {
  public:
    explicit ChangedText(OrbPPDLines lines) : lines_(std::move(lines)) {}

    const std::shared_ptr<const std::string>& bytes() const override {
        std::call_once(areBytesMade_,
                       [this] { bytes_ = std::make_shared<const std::string>(lines_.bytes()); });
        return bytes_;
    }

    const OrbPPDLines* changedLines() const override { return &lines_; }

  private:
    OrbPPDLines lines_;
    mutable std::once_flag areBytesMade_;
    mutable std::shared_ptr<const std::string> bytes_;
};

OrbPPDLines::OrbPPDLines(const PPDText& text) {
    const OrbPPDLines* const changed = text.contents_->changedLines();
    // With as many new lines as old ones it is a text of its own.
    if (changed && changed->insertedCount(changed->changes_->gaps.size()) <=
                       changed->index_->size() / 2 + kFewLines / 16) {
        *this = *changed;
    } else {
        standOn(text);
    }
}

void OrbPPDLines::throwUnlessThere(std::size_t index, std::size_t count) const {
    if (index > size_ || count > size_ - index) {
        throw std::out_of_range("line index " + std::to_string(index + count) + " in a PPD of " +
                                std::to_string(size_) + " lines");
    }
}

// Places.

OrbPPDLines::Place OrbPPDLines::placeOf(std::size_t index, bool isForInsertion) const {
    const std::vector<Gap>& gaps = changes_->gaps;
    const auto next =
        std::upper_bound(gaps.begin(), gaps.end(), index,
                         [](std::size_t each, const Gap& gap) { return each < gap.start; });
    const auto gap = static_cast<std::size_t>(next - gaps.begin());
    if (gap > 0) {
        const std::size_t offset = index - gaps[gap - 1].start;
        const std::size_t here = gaps[gap - 1].lines->size();
        if (offset < here || (offset == here && isForInsertion)) {
            return {gap - 1, true, offset, 0};
        }
    }
    return {gap, false, 0, static_cast<LineID>(index - insertedCount(gap))};
}

std::size_t OrbPPDLines::indexOf(LineID line) const {
    std::size_t index = line - changes_->removed.countBefore(line);
    for (const Gap& gap : changes_->gaps) {
        if (gap.before > line) {
            break;
        }
        index += gap.lines->size();
    }
    return index;
}

/// The difference may be a negative number, modulo the word.
void OrbPPDLines::moveGapsFrom(std::size_t gap, std::size_t difference) {
    std::vector<Gap>& gaps = changes_->gaps;
    for (; gap < gaps.size(); ++gap) {
        gaps[gap].start += difference;
    }
}

/// The lines in so many gaps.
std::size_t OrbPPDLines::insertedCount(std::size_t gapCount) const {
    const auto first = changes_->gaps.begin();
    return std::accumulate(first, first + static_cast<std::ptrdiff_t>(gapCount), std::size_t{0},
                           [](std::size_t sum, const Gap& gap) { return sum + gap.lines->size(); });
}

std::string_view OrbPPDLines::at(std::size_t index) const {
    throwUnlessThere(index, 1);
    const Place place = placeOf(index, false);
    return place.isInGap ? (*changes_->gaps[place.gap].lines)[place.offset]
                         : index_->line(changes_->removed.lineAt(place.kept));
}

// Edits.

OrbPPDLines::Changes& OrbPPDLines::ownChanges() {
    if (changes_.use_count() > 1) {
        changes_ = std::make_shared<Changes>(*changes_);
    }
    return *changes_;
}

std::string_view OrbPPDLines::storedCopy(Changes& changes,
                                         std::initializer_list<std::string_view> parts) {
    std::size_t length = 0;
    for (const std::string_view part : parts) {
        length += part.size();
    }
    std::vector<Storage>& storage = changes.storage;
    const bool hasRoom = !storage.empty() && storage.back().bytes.use_count() == 1 &&
                         storage.back().room - storage.back().used >= length;
    if (!hasRoom) {
        const std::size_t last = storage.empty() ? 0 : storage.back().used;
        const std::size_t room =
            std::max(length, std::clamp(2 * last, kLeastStorage, kMostStorage));
        storage.push_back({std::make_shared<char[]>(room), room});  // NOLINT(*-avoid-c-arrays)
    }
    char* const start = storage.back().bytes.get() + storage.back().used;
    char* end = start;
    for (const std::string_view part : parts) {
        end = std::copy(part.begin(), part.end(), end);
    }
    storage.back().used += length;
    return {start, length};
}

OrbPPDLines::Texts& OrbPPDLines::ownLines(Gap& gap) {
    if (gap.lines.use_count() > 1) {
        gap.lines = std::make_shared<Texts>(*gap.lines);
    }
    return *gap.lines;
}

void OrbPPDLines::insert(std::size_t index, std::initializer_list<std::string_view> parts) {
    throwUnlessThere(index, 0);
    settle(false);
    const Place place = placeOf(index, true);
    Changes& changes = ownChanges();
    std::vector<Gap>& gaps = changes.gaps;
    if (!place.isInGap) {
        gaps.insert(gaps.begin() + static_cast<std::ptrdiff_t>(place.gap),
                    {changes.removed.lineAt(place.kept), index, std::make_shared<Texts>()});
    }
    Texts& lines = ownLines(gaps[place.gap]);
    changesRead_ += lines.size() - place.offset + gaps.size() - place.gap - 1;
    const std::string_view line = storedCopy(changes, parts);
    if (lines.size() == lines.capacity()) {
        lines.reserve(std::max(2 * lines.size(), kFewestInGap));
    }
    lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(place.offset), line);
    moveGapsFrom(place.gap + 1, 1);
    ++size_;
    hasLineFeedInLine_ = hasLineFeedInLine_ || line.find('\n') != std::string_view::npos;
    changes.mayHaveTranslation = changes.mayHaveTranslation || PPDTextIndex::keywordPart(line).find(
                                                                   '.') != std::string_view::npos;
}

void OrbPPDLines::erase(std::size_t index, std::size_t count) {
    throwUnlessThere(index, count);
    if (count == 0) {
        return;
    }
    size_ -= count;
    Changes& changes = ownChanges();
    std::vector<Gap>& gaps = changes.gaps;
    while (count > 0) {
        const Place place = placeOf(index, false);
        std::size_t here = 0;
        if (place.isInGap) {
            Texts& lines = ownLines(gaps[place.gap]);
            here = std::min(count, lines.size() - place.offset);
            changesRead_ += lines.size() - place.offset;
            const auto first = lines.begin() + static_cast<std::ptrdiff_t>(place.offset);
            lines.erase(first, first + static_cast<std::ptrdiff_t>(here));
        } else {
            const bool isLast = place.gap == gaps.size();
            here = isLast ? count : std::min(count, gaps[place.gap].start - index);
            changes.removed.add(changes.removed.lineAt(place.kept),
                                changes.removed.lineAt(place.kept + static_cast<LineID>(here)));
        }
        moveGapsFrom(place.gap + (place.isInGap ? 1 : 0), 0 - here);
        if (place.isInGap && gaps[place.gap].lines->empty()) {
            gaps.erase(gaps.begin() + static_cast<std::ptrdiff_t>(place.gap));
        }
        changesRead_ += gaps.size() - place.gap;
        count -= here;
    }
}

void OrbPPDLines::erase(std::span<const LineID> lines) {
    if (lines.empty()) {
        return;
    }
    Changes& changes = ownChanges();
    auto line = lines.begin();
    std::size_t erased = 0;
    for (Gap& gap : changes.gaps) {
        for (; line != lines.end() && *line < gap.before; ++line) {
            erased += changes.removed.add(*line, *line + 1);
        }
        gap.start -= erased;
    }
    for (; line != lines.end(); ++line) {
        erased += changes.removed.add(*line, *line + 1);
    }
    size_ -= erased;
}

// Texts.

void OrbPPDLines::standOn(const PPDText& text) {
    index_ = text.index();
    changes_ = std::make_shared<Changes>(index_->size());
    keys_ = {};
    readInVain_ = 0;
    changesRead_ = 0;
    size_ = index_->size();
    endsWithLineFeed_ = index_->endsWithLineFeed();
}

/// Reads the text anew when following the changes has cost as much, or it must be. Not possible
/// when one line holds a line feed.
void OrbPPDLines::settle(bool mustBe) {
    const bool isWorthIt = mustBe || changesRead_ > kPasses * size_ + kFewLines;
    if (isWorthIt && !hasLineFeedInLine_) {
        const bool endedWithLineFeed = std::exchange(endsWithLineFeed_, true);
        standOn(makePPDText(bytes()));
        endsWithLineFeed_ = endedWithLineFeed;
    }
}

std::string OrbPPDLines::bytes() const {
    const std::string& whole = *index_->text();
    std::size_t room = whole.size() + 2;
    for (const Gap& gap : changes_->gaps) {
        for (const std::string_view line : *gap.lines) {
            room += line.size() + 1;
        }
    }
    std::string text = stringWithRoom(room);
    LineID line = 0;
    const RemovedLines& removed = changes_->removed;
    const auto copyKept = [&](LineID end) {
        while ((line = std::min(removed.next(line, false), end)) < end) {
            const LineID last = std::min(removed.next(line, true), end);
            text.append(whole, index_->start(line), index_->start(last) - index_->start(line));
            line = last;
        }
        if (!text.empty() && text.back() != '\n') {
            text += '\n';  // behind the last line of a text that ends without one
        }
    };
    for (const Gap& gap : changes_->gaps) {
        copyKept(gap.before);
        for (const std::string_view each : *gap.lines) {
            (text += each) += '\n';
        }
    }
    copyKept(index_->size());
    if (!endsWithLineFeed_ && size_ > 0) {
        text.pop_back();
    }
    return text;
}

PPDText OrbPPDLines::textOfLines(OrbPPDLines lines) {
    if (lines.hasLineFeedInLine_) {
        return makePPDText(lines.bytes());
    }
    // As lines are read: an empty last part is none.
    if (!lines.endsWithLineFeed_ && lines.size_ > 0 && lines.at(lines.size_ - 1).empty()) {
        lines.erase(lines.size_ - 1, 1);
        lines.endsWithLineFeed_ = true;
    }
    lines.endsWithLineFeed_ = lines.endsWithLineFeed_ && lines.size_ > 0;
    return PPDText(std::make_shared<const ChangedText>(std::move(lines)));
}

PPDText OrbPPDLines::text() const {
    return textOfLines(*this);
}

// Look-ups.

const PPDLineKeys* OrbPPDLines::keysFor(std::string_view keyword,
                                        std::optional<std::string_view> spec) const {
    const auto kind = PPDLineKeys::kindFor(keyword, spec);
    if (!kind || (*kind == PPDLineKeys::Kind::kIgnoringCase && !spec)) {
        return nullptr;
    }
    auto& keys = keys_[*kind == PPDLineKeys::Kind::kEveryEnd ? 1 : 0];
    if (!keys && readInVain_ > kPasses * index_->size() + kFewLines) {
        keys = std::make_shared<const PPDLineKeys>(*index_, *kind);
        readInVain_ = 0;
    }
    return keys.get();
}

/// Calls `visit(LineID)`, in line order, until it gives true, for the lines of the index that are
/// there and may be the attribute, or a translation of it when the keyword has no full stop.
template <typename Visit>
void OrbPPDLines::visitKept(std::string_view keyword, std::optional<std::string_view> spec,
                            const Visit& visit) const {
    const auto visitThere = [&](LineID line) {
        if (isGone(line)) {
            ++changesRead_;
            return false;
        }
        ++readInVain_;
        return visit(line);
    };
    if (const PPDLineKeys* const keys = keysFor(keyword, spec)) {
        keys->visitLines(keyword, spec, visitThere);
        return;
    }
    index_->visitRuns(keyword, [&](const PPDTextIndex::Run& run) {
        for (LineID line = run.first; line < run.end; ++line) {
            if (visitThere(line)) {
                return true;
            }
        }
        return false;
    });
}

template <typename Accepts>
std::optional<std::size_t> OrbPPDLines::first(std::string_view keyword,
                                              std::optional<std::string_view> spec,
                                              const Accepts& accepts) const {
    std::optional<LineID> kept;
    visitKept(keyword, spec, [&](LineID line) {
        if (accepts(index_->line(line), [&] { return indexOf(line); })) {
            kept = line;
        }
        return kept.has_value();
    });
    for (const Gap& gap : changes_->gaps) {
        if (kept && gap.before > *kept) {
            break;
        }
        changesRead_ += gap.lines->size();
        for (std::size_t i = 0; i < gap.lines->size(); ++i) {
            if (accepts((*gap.lines)[i], [&] { return gap.start + i; })) {
                return gap.start + i;
            }
        }
    }
    return kept ? std::optional(indexOf(*kept)) : std::nullopt;
}

std::optional<std::size_t> OrbPPDLines::indexOfAttribute(
    std::string_view keyword, std::optional<std::string_view> spec,
    std::optional<std::string_view> value) const {
    return first(keyword, spec, [&](std::string_view line, const auto& /*index*/) {
        return isAttributeLine(line, keyword, spec, value);
    });
}

std::optional<std::size_t> OrbPPDLines::indexOfLineBeginning(std::string_view beginning,
                                                             std::size_t from) const {
    const std::size_t lineFeed = std::min(beginning.find('\n'), beginning.size());
    const std::string_view firstLine = beginning.substr(0, lineFeed);
    const auto goesOn = [&](std::size_t index) {
        std::string_view rest = beginning.substr(lineFeed);
        while (!rest.empty() && ++index < size_) {
            rest.remove_prefix(1);
            const std::size_t end = std::min(rest.find('\n'), rest.size());
            const std::string_view line = at(index);
            const bool isWhole = end < rest.size();
            if (!line.starts_with(rest.substr(0, end)) || (isWhole && line.size() != end)) {
                return false;
            }
            rest.remove_prefix(end);
        }
        return rest.empty();
    };
    return first(PPDTextIndex::keywordPart(beginning.substr(1)), std::nullopt,
                 [&](std::string_view line, const auto& indexOfLine) {
                     const bool begins = line.starts_with(firstLine) &&
                                         (lineFeed == beginning.size() || line.size() == lineFeed);
                     if (!begins) {
                         return false;
                     }
                     const std::size_t index = indexOfLine();
                     return index >= from && goesOn(index);
                 });
}

std::string_view OrbPPDLines::languageOfTranslation(std::string_view line,
                                                    std::string_view keyword) {
    return line.substr(1, endOfLanguage(line, keyword) - 1);
}

std::optional<std::vector<OrbPPDLines::LineID>> OrbPPDLines::translations(
    std::string_view keyword, std::optional<std::string_view> spec) {
    const std::vector<Gap>& gaps = changes_->gaps;
    const bool isAmongInserted =
        changes_->mayHaveTranslation && std::any_of(gaps.begin(), gaps.end(), [&](const Gap& gap) {
            changesRead_ += gap.lines->size();
            return std::any_of(gap.lines->begin(), gap.lines->end(), [&](std::string_view line) {
                return isTranslation(line, keyword, spec);
            });
        });
    settle(isAmongInserted);
    if (isAmongInserted && !changes_->gaps.empty()) {
        return std::nullopt;
    }
    std::vector<LineID> lines;
    const std::size_t stop = PPDTextIndex::keywordPart(keyword).rfind('.');
    visitKept(keyword.substr(stop + 1), spec, [&](LineID line) {
        if (isTranslation(index_->line(line), keyword, spec)) {
            lines.push_back(line);
        }
        return false;
    });
    return lines;
}

std::optional<std::size_t> OrbPPDLines::indexOfEndAfter(std::size_t index) const {
    if (index >= size_) {
        return std::nullopt;
    }
    const std::vector<Gap>& gaps = changes_->gaps;
    const Place next = placeOf(index + 1, false);
    const auto from = next.isInGap ? gaps[next.gap].before : changes_->removed.lineAt(next.kept);
    const auto ends = index_->endLines();
    auto end = std::lower_bound(ends.begin(), ends.end(), from);
    for (; end != ends.end() && isGone(*end); ++end) {
        ++changesRead_;
    }
    for (std::size_t gap = next.gap; gap < gaps.size(); ++gap) {
        const Texts& lines = *gaps[gap].lines;
        if (end != ends.end() && gaps[gap].before > *end) {
            break;
        }
        const std::size_t offset = gap == next.gap ? next.offset : 0;
        changesRead_ += lines.size();
        const auto found =
            std::find(lines.begin() + static_cast<std::ptrdiff_t>(offset), lines.end(), kTkPPDEnd);
        if (found != lines.end()) {
            return gaps[gap].start + static_cast<std::size_t>(found - lines.begin());
        }
    }
    return end == ends.end() ? std::nullopt : std::optional(indexOf(*end));
}

}  // namespace TkPPDUpdating
