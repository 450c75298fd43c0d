#include "ppd/PPDTextIndex.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <utility>

#include "ppd/PPDConstants.h"
#include "ppd/TextBlock.h"
#include "text/CaseFolding.h"
#include "text/SeededTextHash.h"
#include "text/UTF8.h"

namespace TkPPDUpdating {

namespace {

/// There is room for a line, a run and an asterisk in so many bytes each; most PPDs need less.
constexpr std::size_t kBytesOfLine = 40;
constexpr std::size_t kBytesOfRun = 96;
constexpr std::size_t kBytesOfAsterisk = 128;
constexpr std::size_t kFewestSlots = 64;

/// At most 16 bytes; which bytes stand twice in them follows from the length.
struct Words {
    std::uint64_t first = 0;
    std::uint64_t second = 0;
};

template <typename Word>
Words wordsAtBothEnds(std::string_view text) {
    Word first = 0;
    Word second = 0;
    std::memcpy(&first, text.data(), sizeof first);
    std::memcpy(&second, text.data() + text.size() - sizeof second, sizeof second);
    return {first, second};
}

Words wordsOf(std::string_view text) {
    if (text.size() >= sizeof(std::uint64_t)) {
        return wordsAtBothEnds<std::uint64_t>(text);
    }
    if (text.size() >= sizeof(std::uint32_t)) {
        return wordsAtBothEnds<std::uint32_t>(text);
    }
    Words words;
    for (const char each : text) {
        words.first = (words.first << 8U) | static_cast<unsigned char>(each);
    }
    return words;
}

struct HashedName {
    std::uint64_t hash = 0;
    bool isASCII = false;
};

/// Case ignored, of a name that is ASCII or folded.
HashedName hashed(std::string_view name) {
    constexpr std::size_t kBoth = sizeof(Words);
    // Of ASCII letters this bit is the case; that other characters may then be the same is no harm.
    constexpr std::uint64_t kCase = 0x2020202020202020U;
    constexpr std::uint64_t kWide = 0x8080808080808080U;
    std::uint64_t hash = 0;
    std::uint64_t all = 0;
    const auto add = [&](const Words& words, std::size_t length) {
        all |= words.first | words.second;
        hash =
            SeededTextHash::ofWords(hash ^ (words.first | kCase), (words.second | kCase) ^ length);
    };
    std::string_view rest = name;
    for (; rest.size() > kBoth; rest.remove_prefix(kBoth)) {
        add(wordsOf(rest.substr(0, kBoth)), 0);
    }
    add(wordsOf(rest), name.size());
    return {hash, (all & kWide) == 0};
}

}  // namespace

/// The one pass. What is called for each block and line is always inlined: a call would cost about
/// as much as what it does.
class PPDTextIndex::Reader {
  public:
    explicit Reader(PPDTextIndex& index) : index_(index), text_(*index.text_) {}

    void read() {
        index_.starts_.reserve(text_.size() / kBytesOfLine + 2);
        index_.runs_.reserve(text_.size() / kBytesOfRun + 2);
        index_.innerAsterisks_.reserve(text_.size() / kBytesOfAsterisk + 2);
        index_.slots_.resize(std::bit_ceil(text_.size() / 512 + kFewestSlots));
        for (std::size_t at = 0; at < text_.size(); at += kTextBlock) {
            if (at + kTextBlock <= text_.size()) {
                block_ = text_.data() + at;
            } else {
                rest_.fill(' ');
                text_.copy(rest_.data(), kTextBlock, at);
                block_ = rest_.data();
            }
            readBlock(at, TextBlocks::masksOfTextBlock(block_));
        }
        if (lineStart_ < text_.size()) {
            endLine(text_.size());
        }
        finish();
    }

  private:
    [[gnu::always_inline]] void readBlock(std::size_t at, const TextBlockMasks& masks) {
        if (masks.isWide) {
            checkUTF8(at, std::min(at + kTextBlock, text_.size()));
        }
        if (masks.hasNUL && !index_.firstNULByte_) {
            index_.firstNULByte_ = text_.find('\0', at);
        }
        std::uint64_t inner = masks.asterisks & ~((masks.lineFeeds << 1U) | lineBegins_);
        lineBegins_ = masks.lineFeeds >> 63U;
        for (; inner != 0; inner &= inner - 1) {
            index_.innerAsterisks_.push_back(static_cast<std::uint32_t>(at) +
                                             static_cast<std::uint32_t>(std::countr_zero(inner)));
        }
        std::uint64_t quotes = masks.quotes;
        for (std::uint64_t ends = masks.lineFeeds; ends != 0; ends &= ends - 1) {
            const std::uint64_t upToEnd = ends ^ (ends - 1);
            readQuotes(at, quotes & upToEnd);
            quotes &= ~upToEnd;
            endLine(at + static_cast<std::size_t>(std::countr_zero(ends)));
        }
        readQuotes(at, quotes);
    }

    [[gnu::always_inline]] void readQuotes(std::size_t at, std::uint64_t quotes) {
        if (quotes != 0) {
            behindLastQuote_ = at + static_cast<std::size_t>(std::bit_width(quotes));
        }
    }

    /// Characters that begin in a block may end behind it.
    void checkUTF8(std::size_t at, std::size_t end) {
        if (index_.invalidByte_ || validTo_ >= end) {
            return;
        }
        validTo_ = std::max(validTo_, at);
        while (validTo_ < end) {
            if (static_cast<unsigned char>(text_[validTo_]) < 0x80) {
                ++validTo_;
                continue;
            }
            const auto character = UTF8CharacterAtStart(text_.substr(validTo_));
            if (!character) {
                index_.invalidByte_ = validTo_;
                return;
            }
            validTo_ += character->length;
        }
    }

    [[gnu::always_inline]] void endLine(std::size_t end) {
        const auto line = static_cast<Line>(index_.starts_.size());
        index_.starts_.push_back(static_cast<std::uint32_t>(lineStart_));
        const bool hasKeyword = text_[lineStart_] == '*';
        if (hasKeyword) {
            readKeyword(line);
            if (end - lineStart_ == kTkPPDEnd.size() &&
                text_.substr(lineStart_, kTkPPDEnd.size()) == kTkPPDEnd) {
                index_.endLines_.push_back(line);
            }
        } else if (hasKeyword_) {
            index_.runs_.push_back({line});
        }
        hasKeyword_ = hasKeyword;
        if (behindLastQuote_ > lineStart_ && (isInValue_ || (hasKeyword && mayOpenValue()))) {
            readValue(line, end);
        }
        lineStart_ = end + 1;
    }

    /// Whether the line has the keyword of the run before, and so belongs to it.
    [[gnu::always_inline]] bool goesOn(std::size_t start) const {
        if (!hasKeyword_) {
            return false;
        }
        const std::size_t length = keyword_.size();
        const char* const bytes = text_.data() + start;
        if (start + std::max(length, kKeywordBlock) >= text_.size()) {
            return keywordPart(text_.substr(start)) == keyword_;
        }
        // Both stand in the text, the run before the line.
        const bool isSame = length < kKeywordBlock
                                ? TextBlocks::lengthOfSameBytes(bytes, keyword_.data()) >= length
                                : text_.substr(start, length) == keyword_;
        return isSame && endsKeyword(bytes[length]);
    }

    /// Only the keyword of a new run is read.
    [[gnu::always_inline]] void readKeyword(Line line) {
        const std::size_t start = lineStart_ + 1;
        if (goesOn(start)) {
            return;
        }
        const auto run = static_cast<std::uint32_t>(index_.runs_.size());
        index_.runs_.push_back({line});
        index_.link(run, readNewKeyword(start));
    }

    /// Nearly all keywords are short and have no language.
    [[gnu::always_inline]] Key readNewKeyword(std::size_t start) {
        if (start + kKeywordBlock <= text_.size()) {
            const auto masks = TextBlocks::masksOfKeywordBlock(text_.data() + start);
            if (masks.ends != 0) {
                keyword_ =
                    text_.substr(start, static_cast<std::size_t>(std::countr_zero(masks.ends)));
                // Behind the first end there are further ends in it, which are no full stops.
                const unsigned inKeyword = masks.ends - 1;
                return keyOfName(keyword_.substr(
                    static_cast<std::size_t>(std::bit_width(masks.fullStops & inKeyword))));
            }
        }
        keyword_ = keywordPart(text_.substr(start));
        return keyOfKeyword(keyword_);
    }

    /// Of a line that begins with "*" and has a quote. Most of them have both of one value.
    bool mayOpenValue() const {
        const char beforeLast = text_[behindLastQuote_ - 2];
        return beforeLast == ':' || beforeLast == ' ' || beforeLast == '\t';
    }

    /// A quoted value opens behind the first colon of a main-keyword line and runs to the next
    /// quote (PPD specification 4.3, section 3).
    void readValue(Line line, std::size_t end) {
        if (isInValue_) {
            isInValue_ = false;
            index_.longValues_.back().closes = line;
            return;
        }
        if (text_[lineStart_ + 1] == '%') {
            return;
        }
        const std::string_view text = text_.substr(lineStart_, end - lineStart_);
        const std::size_t colon = text.find(':');
        const std::size_t value =
            colon == std::string_view::npos ? colon : text.find_first_not_of(" \t", colon + 1);
        if (value != std::string_view::npos && lineStart_ + value + 1 == behindLastQuote_) {
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
    std::size_t behindLastQuote_ = 0;
    bool isInValue_ = false;
    /// Whether the last line begins with "*", and then its keyword.
    bool hasKeyword_ = false;
    std::string_view keyword_;
    const char* block_ = nullptr;
    /// The last block, with blanks behind the text.
    std::array<char, kTextBlock> rest_{};
};

PPDTextIndex::PPDTextIndex(std::shared_ptr<const std::string> text) : text_(std::move(text)) {
    if (text_->size() >= std::numeric_limits<std::uint32_t>::max()) {
        throw std::length_error("a PPD of 4 GB or more");
    }
    Reader(*this).read();
}

/// A keyword and its translations share a key.
PPDTextIndex::Key PPDTextIndex::keyOfKeyword(std::string_view keyword) {
    return keyOfName(keyword.substr(keyword.rfind('.') + 1));
}

PPDTextIndex::Key PPDTextIndex::keyOfName(std::string_view name) {
    HashedName key = hashed(name);
    if (!key.isASCII) {
        key = hashed(foldedCase(name));
    }
    return static_cast<Key>(key.hash >> 32U);
}

std::size_t PPDTextIndex::slotOf(Key key) const {
    const std::size_t mask = slots_.size() - 1;
    std::size_t slot = key & mask;
    while (slots_[slot].firstRun != kNone && slots_[slot].key != key) {
        slot = (slot + 1) & mask;
    }
    return slot;
}

void PPDTextIndex::link(std::uint32_t run, Key key) {
    Slot& slot = slots_[slotOf(key)];
    if (slot.firstRun != kNone) {
        runs_[slot.lastRun].next = run;
        slot.lastRun = run;
        return;
    }
    slot = {key, run, run};
    if (++keys_ > slots_.size() / 2) {
        growTable();
    }
}

void PPDTextIndex::growTable() {
    const std::vector<Slot> old = std::exchange(slots_, std::vector<Slot>(slots_.size() * 2));
    for (const Slot& slot : old) {
        if (slot.firstRun != kNone) {
            slots_[slotOf(slot.key)] = slot;
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
