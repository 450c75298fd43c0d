#include "ppd/PPDTextIndex.h"

#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <stdexcept>
#include <utility>

#include "ppd/CaseFolding.h"
#include "ppd/PPDConstants.h"
#include "ppd/SeededTextHash.h"
#include "ppd/TextBlock.h"
#include "ppd/UTF8.h"

namespace TkPPDUpdating {

namespace {

/// Room for lines of that many bytes is more than most PPDs need.
constexpr std::size_t kShortTypicalLine = 32;
constexpr std::size_t kFewestSlots = 64;

}  // namespace

/// The one pass.
class PPDTextIndex::Reader {
  public:
    explicit Reader(PPDTextIndex& index) : index_(index), text_(*index.text_) {}

    void read() {
        index_.starts_.reserve(text_.size() / kShortTypicalLine + 2);
        index_.runs_.reserve(text_.size() / (4 * kShortTypicalLine) + 2);
        index_.slots_.resize(std::bit_ceil(text_.size() / 512 + kFewestSlots));
        std::size_t at = 0;
        for (; at + kTextBlock <= text_.size(); at += kTextBlock) {
            readBlock(at, kTextBlock, masksOfTextBlock(text_.data() + at));
        }
        if (at < text_.size()) {
            std::array<char, kTextBlock> rest{};
            text_.copy(rest.data(), kTextBlock, at);
            readBlock(at, text_.size() - at, masksOfTextBlock(rest.data()));
        }
        if (lineStart_ < text_.size()) {
            endLine(text_.size());
        }
        finish();
    }

  private:
    void readBlock(std::size_t at, std::size_t length, const TextBlockMasks& masks) {
        if (masks.isWide) {
            checkUTF8(at, at + length);
        }
        std::uint64_t inner = masks.asterisks & ~((masks.lineFeeds << 1U) | lineBegins_);
        lineBegins_ = masks.lineFeeds >> 63U;
        for (; inner != 0; inner &= inner - 1) {
            index_.innerAsterisks_.push_back(static_cast<std::uint32_t>(at) +
                                             static_cast<std::uint32_t>(std::countr_zero(inner)));
        }
        std::uint64_t quotes = masks.quotes;
        for (std::uint64_t ends = masks.lineFeeds; ends != 0; ends &= ends - 1) {
            const auto end = static_cast<unsigned>(std::countr_zero(ends));
            const std::uint64_t before = (std::uint64_t{1} << end) - 1;
            countQuotes(at, quotes & before);
            quotes &= ~before;
            endLine(at + end);
        }
        countQuotes(at, quotes);
    }

    void countQuotes(std::size_t at, std::uint64_t quotes) {
        if (quotes != 0) {
            lastQuote_ = at + static_cast<std::size_t>(63 - std::countl_zero(quotes));
            for (; quotes != 0; quotes &= quotes - 1) {
                ++quoteCount_;
            }
        }
    }

    /// Characters that begin in a block may end behind it.
    void checkUTF8(std::size_t at, std::size_t end) {
        if (index_.invalidByte_ || validTo_ >= end) {
            return;
        }
        validTo_ = std::max(validTo_, at);
        while (validTo_ < end) {
            const auto character = UTF8CharacterAtStart(text_.substr(validTo_));
            if (!character) {
                index_.invalidByte_ = validTo_;
                return;
            }
            validTo_ += character->length;
        }
    }

    void endLine(std::size_t end) {
        const auto line = static_cast<Line>(index_.starts_.size());
        index_.starts_.push_back(static_cast<std::uint32_t>(lineStart_));
        const bool hasKeyword = lineStart_ < end && text_[lineStart_] == '*';
        if (!hasKeyword) {
            if (index_.runs_.empty() || index_.runs_.back().hasKeyword) {
                index_.runs_.push_back({line});
            }
        } else {
            readKeyword(line);
            if (end - lineStart_ == kTkPPDEnd.size() &&
                text_.substr(lineStart_, kTkPPDEnd.size()) == kTkPPDEnd) {
                index_.endLines_.push_back(line);
            }
        }
        if (quoteCount_ > 0) {
            readQuotes(line, hasKeyword, end);
            quoteCount_ = 0;
        }
        lineStart_ = end + 1;
    }

    /// Whether the line has the keyword of the run before, and so belongs to it.
    bool goesOn(std::size_t start) const {
        if (index_.runs_.empty() || !index_.runs_.back().hasKeyword) {
            return false;
        }
        const std::size_t length = keyword_.size();
        const char* const bytes = text_.data() + start;
        if (start + std::max(length, kSameBytes) >= text_.size()) {
            return keywordPart(text_.substr(start)) == keyword_;
        }
        // Both stand in the text, the run before the line.
        const bool isSame = length < kSameBytes
                                ? lengthOfSameBytes(bytes, keyword_.data()) >= length
                                : text_.substr(start, length) == keyword_;
        return isSame && endsKeyword(bytes[length]);
    }

    /// Only the keyword of a new run is read.
    void readKeyword(Line line) {
        const std::size_t start = lineStart_ + 1;
        if (goesOn(start)) {
            return;
        }
        keyword_ = keywordPart(text_.substr(start));
        const auto run = static_cast<std::uint32_t>(index_.runs_.size());
        index_.runs_.push_back({line, kNone, keyOfKeyword(keyword_), true});
        index_.link(run);
    }

    /// A quoted value opens behind the first colon of a main-keyword line and runs to the next
    /// quote (PPD specification 4.3, section 3). Most lines have none or both quotes of one.
    void readQuotes(Line line, bool hasKeyword, std::size_t end) {
        if (isInValue_) {
            isInValue_ = false;
            index_.longValues_.back().closes = line;
            return;
        }
        const char beforeLast = lastQuote_ > lineStart_ ? text_[lastQuote_ - 1] : '\0';
        const bool mayOpen = beforeLast == ':' || beforeLast == ' ' || beforeLast == '\t';
        if (!hasKeyword || !mayOpen || text_[lineStart_ + 1] == '%') {
            return;
        }
        const std::string_view text = text_.substr(lineStart_, end - lineStart_);
        const std::size_t colon = text.find(':');
        const std::size_t value =
            colon == std::string_view::npos ? colon : text.find_first_not_of(" \t", colon + 1);
        if (value != std::string_view::npos && lineStart_ + value == lastQuote_) {
            isInValue_ = true;
            index_.longValues_.push_back({line, std::numeric_limits<Line>::max()});
        }
    }

    void finish() {
        index_.size_ = static_cast<Line>(index_.starts_.size());
        index_.starts_.push_back(static_cast<std::uint32_t>(lineStart_));
        index_.runs_.push_back({index_.size_});
        if (isInValue_) {
            index_.longValues_.back().closes = index_.size_;
        }
    }

    PPDTextIndex& index_;
    std::string_view text_;
    std::size_t lineStart_ = 0;
    /// Whether the first byte of the next block begins a line.
    std::uint64_t lineBegins_ = 1;
    /// Up to there the text is known to be UTF-8, from the last block on that is not all ASCII.
    std::size_t validTo_ = 0;
    /// Those of the line that is being read.
    std::size_t quoteCount_ = 0;
    std::size_t lastQuote_ = 0;
    bool isInValue_ = false;
    /// That of the last run that has one.
    std::string_view keyword_;
};

PPDTextIndex::PPDTextIndex(std::shared_ptr<const std::string> text) : text_(std::move(text)) {
    if (text_->size() >= std::numeric_limits<std::uint32_t>::max()) {
        throw std::length_error("a PPD of 4 GB or more");
    }
    Reader(*this).read();
}

PPDTextIndex::Key PPDTextIndex::keyOfKeyword(std::string_view keyword) {
    // A keyword and its translations share a key.
    std::size_t start = keyword.size();
    unsigned char all = 0;
    for (; start > 0 && keyword[start - 1] != '.'; --start) {
        all |= static_cast<unsigned char>(keyword[start - 1]);
    }
    const std::string_view name = keyword.substr(start);
    // Of ASCII letters this bit is the case; that other characters may then be the same is no harm.
    constexpr std::uint64_t kCase = 0x2020202020202020U;
    std::array<std::uint64_t, 8> words{};
    const bool isPlain = all < 0x80 && name.size() <= sizeof words;
    const std::string folded = isPlain ? std::string() : foldedCase(name);
    const std::string_view whole = isPlain ? name : folded;
    Key key = 0;
    std::string_view rest = whole;
    do {
        const std::string_view part = rest.substr(0, sizeof words);
        part.copy(reinterpret_cast<char*>(words.data()), part.size());
        for (std::size_t i = 0; i * sizeof words[0] < part.size(); ++i) {
            words[i] |= kCase;
        }
        key = static_cast<Key>(
            SeededTextHash::of({reinterpret_cast<const char*>(words.data()), part.size()}, key) >>
            32U);
        rest.remove_prefix(part.size());
    } while (!rest.empty());
    return key;
}

std::size_t PPDTextIndex::slotOf(Key key) const {
    const std::size_t mask = slots_.size() - 1;
    std::size_t slot = key & mask;
    while (slots_[slot].firstRun != kNone && runs_[slots_[slot].firstRun].key != key) {
        slot = (slot + 1) & mask;
    }
    return slot;
}

void PPDTextIndex::link(std::uint32_t run) {
    Slot& slot = slots_[slotOf(runs_[run].key)];
    if (slot.firstRun != kNone) {
        runs_[slot.lastRun].next = run;
        slot.lastRun = run;
        return;
    }
    slot = {run, run};
    if (++keys_ > slots_.size() / 2) {
        growTable();
    }
}

void PPDTextIndex::growTable() {
    const std::vector<Slot> old = std::exchange(slots_, std::vector<Slot>(slots_.size() * 2));
    for (const Slot& slot : old) {
        if (slot.firstRun != kNone) {
            slots_[slotOf(runs_[slot.firstRun].key)] = slot;
        }
    }
}

std::uint32_t PPDTextIndex::firstRun(std::string_view keyword) const {
    return slots_[slotOf(keyOfKeyword(keywordPart(keyword)))].firstRun;
}

PPDTextIndex::Run PPDTextIndex::runAt(std::uint32_t run) const {
    const Line first = runs_[run].first;
    return {first, runs_[run + 1].first, keywordPart(line(first).substr(1))};
}

PPDTextIndex::Line PPDTextIndex::lineAt(std::size_t byte) const {
    const auto next = std::upper_bound(starts_.begin(), starts_.begin() + size_, byte);
    return static_cast<Line>(next - starts_.begin()) - 1;
}

const PPDTextIndex::LongValue* PPDTextIndex::longValueAt(Line line) const {
    const auto next =
        std::upper_bound(longValues_.begin(), longValues_.end(), line,
                         [](Line each, const LongValue& value) { return each < value.opens; });
    return next == longValues_.begin() || std::prev(next)->closes < line ? nullptr
                                                                         : &*std::prev(next);
}

}  // namespace TkPPDUpdating
