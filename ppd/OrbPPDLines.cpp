#include "ppd/OrbPPDLines.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <stdexcept>
#include <utility>

#include "ppd/CaseFolding.h"
#include "ppd/OrbPPDProcessor.h"
#include "ppd/PPDConstants.h"

namespace TkPPDUpdating {

namespace {

constexpr std::size_t kLargestBlock = 512;
constexpr std::size_t kStorageSize = 64UL * 1024;

/// Building the index costs about as much as this many passes over the lines.
constexpr unsigned kLookUpsBeforeIndex = 8;

/// So many lines are always added to the index.
constexpr std::size_t kFewLines = 512;

/// So many passes over the lines are read in vain before there is an index of separators.
constexpr unsigned kPassesBeforeSeparatorIndex = 4;

constexpr std::uint64_t kContextOfKeyword = 1;

/// Part of the text before the first of two separators; all of it when it has none.
std::string_view partBefore(std::string_view text, char separator, char otherSeparator) {
    const auto* const end = std::find_if(text.begin(), text.end(), [=](char each) {
        return each == separator || each == otherSeparator;
    });
    return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

bool isEndLine(std::string_view line) {
    return line == kTkPPDEnd;
}

[[noreturn]] void throwOutOfRange(std::size_t index, std::size_t size) {
    throw std::out_of_range("line index " + std::to_string(index) + " in a PPD of " +
                            std::to_string(size) + " lines");
}

}  // namespace

OrbPPDLines::OrbPPDLines(PPDText text) : text_(std::move(text)) {
    const std::string_view whole = *text_;
    std::size_t start = 0;
    for (std::size_t end = whole.find('\n'); end != std::string_view::npos;
         end = whole.find('\n', start)) {
        lines_.push_back({whole.substr(start, end - start)});
        start = end + 1;
    }
    if (start < whole.size()) {
        lines_.push_back({whole.substr(start)});
    }
    size_ = lines_.size();

    // Half full, so that an insertion finds room.
    constexpr std::size_t kFirstSize = kLargestBlock / 2;
    for (std::size_t first = 0; first < size_ || blocks_.empty(); first += kFirstSize) {
        auto block = std::make_unique<Block>();
        block->position = blocks_.size();
        block->lines.resize(std::min(kFirstSize, size_ - first));
        std::iota(block->lines.begin(), block->lines.end(), static_cast<LineID>(first));
        for (const LineID line : block->lines) {
            lines_[line].block = block.get();
            block->endLines += isEndLine(lines_[line].text) ? 1 : 0;
        }
        blocks_.push_back(std::move(block));
    }
    sumBlocks();
}

std::size_t OrbPPDLines::indexOf(LineID line) const {
    const Block& block = *lines_[line].block;
    const auto found = std::find(block.lines.begin(), block.lines.end(), line);
    return blockSizes_.sumBefore(block.position) +
           static_cast<std::size_t>(found - block.lines.begin());
}

bool OrbPPDLines::comesBefore(LineID left, LineID right) const {
    const Block& leftBlock = *lines_[left].block;
    const Block& rightBlock = *lines_[right].block;
    if (&leftBlock != &rightBlock) {
        return leftBlock.position < rightBlock.position;
    }
    const auto first = std::find_if(leftBlock.lines.begin(), leftBlock.lines.end(),
                                    [&](LineID each) { return each == left || each == right; });
    return left != right && first != leftBlock.lines.end() && *first == left;
}

std::string_view OrbPPDLines::at(std::size_t index) const {
    if (index >= size_) {
        throwOutOfRange(index, size_);
    }
    const Place place = blockSizes_.placeOf(index);
    return lines_[blocks_[place.block]->lines[place.offset]].text;
}

std::string_view OrbPPDLines::storedCopy(std::string_view line) {
    if (stored_.empty() || stored_.back().capacity() - stored_.back().size() < line.size()) {
        stored_.emplace_back().reserve(std::max(kStorageSize, line.size()));
    }
    std::string& storage = stored_.back();
    const std::size_t start = storage.size();
    storage += line;  // within its capacity: the views into it stay valid
    return std::string_view(storage).substr(start);
}

void OrbPPDLines::renumberBlocksFrom(std::size_t position) {
    for (; position < blocks_.size(); ++position) {
        blocks_[position]->position = position;
    }
}

void OrbPPDLines::sumBlocks() {
    std::vector<std::size_t> counts(blocks_.size());
    std::transform(blocks_.begin(), blocks_.end(), counts.begin(),
                   [](const auto& block) { return block->lines.size(); });
    blockSizes_.assign(counts);
    std::transform(blocks_.begin(), blocks_.end(), counts.begin(),
                   [](const auto& block) { return block->endLines; });
    endLineCounts_.assign(counts);
}

/// Leaves one block in any case.
void OrbPPDLines::removeEmptyBlocks() {
    const auto firstKept = std::find_if(blocks_.begin(), blocks_.end(),
                                        [](const auto& block) { return !block->lines.empty(); });
    if (firstKept == blocks_.end()) {
        blocks_.resize(1);
    } else {
        std::erase_if(blocks_, [](const auto& block) { return block->lines.empty(); });
    }
    renumberBlocksFrom(0);
    sumBlocks();
}

OrbPPDLines::LineID OrbPPDLines::addLine(std::string_view line, Block& block) {
    const Line added{storedCopy(line), &block};
    if (freeIDs_.empty()) {
        lines_.push_back(added);
        return static_cast<LineID>(lines_.size() - 1);
    }
    const LineID id = freeIDs_.back();
    freeIDs_.pop_back();
    lines_[id] = added;
    return id;
}

void OrbPPDLines::splitBlock(std::size_t position) {
    auto& lines = blocks_[position]->lines;
    const auto middle = lines.begin() + static_cast<std::ptrdiff_t>(lines.size() / 2);
    auto second = std::make_unique<Block>();
    second->lines.assign(middle, lines.end());
    lines.erase(middle, lines.end());
    for (const LineID line : second->lines) {
        lines_[line].block = second.get();
        second->endLines += isEndLine(lines_[line].text) ? 1 : 0;
    }
    blocks_[position]->endLines -= second->endLines;
    blocks_.insert(blocks_.begin() + static_cast<std::ptrdiff_t>(position) + 1, std::move(second));
    renumberBlocksFrom(position + 1);
    sumBlocks();
}

void OrbPPDLines::insert(std::size_t index, std::string_view line) {
    if (index > size_) {
        throwOutOfRange(index, size_);
    }
    Place place = blockSizes_.placeOf(index);
    if (blocks_[place.block]->lines.size() >= kLargestBlock) {
        splitBlock(place.block);
        place = blockSizes_.placeOf(index);
    }
    Block& block = *blocks_[place.block];
    const LineID id = addLine(line, block);
    block.lines.insert(block.lines.begin() + static_cast<std::ptrdiff_t>(place.offset), id);
    blockSizes_.add(place.block, 1);
    if (isEndLine(line)) {
        ++block.endLines;
        endLineCounts_.add(place.block, 1);
    }
    ++size_;
    if (separatorIndex_) {
        separatorIndex_->add(id, lines_[id].text, [this](LineID left, LineID right) {
            return comesBefore(left, right);
        });
    }
    // An index is not kept up while most of the lines are being written: few look-ups follow that,
    // and making it again, should many follow, costs no more.
    if (index_ && ++insertedSinceLookUp_ > std::max(kFewLines, size_ / 2)) {
        index_.reset();
        lookUpsWithoutIndex_ = 0;
    }
    if (index_) {
        addToIndex(id);
    }
}

void OrbPPDLines::erase(std::size_t index, std::size_t count) {
    if (index > size_ || count > size_ - index) {
        throwOutOfRange(index + count, size_);
    }
    bool hasEmptyBlock = false;
    while (count > 0) {
        const Place place = blockSizes_.placeOf(index);
        Block& block = *blocks_[place.block];
        auto& lines = block.lines;
        const std::size_t here = std::min(count, lines.size() - place.offset);
        const auto first = lines.begin() + static_cast<std::ptrdiff_t>(place.offset);
        const auto last = first + static_cast<std::ptrdiff_t>(here);
        std::for_each(first, last, [this](LineID line) { removeFromIndexes(line); });
        const auto endLines = static_cast<std::size_t>(std::count_if(
            first, last, [this](LineID line) { return isEndLine(lines_[line].text); }));
        block.endLines -= endLines;
        endLineCounts_.add(place.block, 0 - endLines);
        freeIDs_.insert(freeIDs_.end(), first, last);
        lines.erase(first, last);
        blockSizes_.add(place.block, 0 - here);
        size_ -= here;
        count -= here;
        hasEmptyBlock = hasEmptyBlock || lines.empty();
    }
    // All at once: a long value empties thousands of blocks.
    if (hasEmptyBlock) {
        removeEmptyBlocks();
    }
}

PPDText OrbPPDLines::joined() const {
    std::size_t bytes = size_;
    for (const auto& block : blocks_) {
        for (const LineID line : block->lines) {
            bytes += lines_[line].text.size();
        }
    }
    std::string text;
    text.reserve(bytes);

    // Neighbours in the shared text are copied together, with the line feeds between them.
    const std::string_view whole = *text_;
    const auto isInWhole = [whole](std::string_view line) {
        return !std::less<>()(line.data(), whole.data()) &&
               !std::less<>()(whole.data() + whole.size(), line.data() + line.size());
    };
    std::string_view run;
    bool hasRun = false;
    for (const auto& block : blocks_) {
        for (const LineID id : block->lines) {
            const std::string_view line = lines_[id].text;
            if (hasRun && isInWhole(run) && isInWhole(line) &&
                line.data() == run.data() + run.size() + 1) {
                run = whole.substr(static_cast<std::size_t>(run.data() - whole.data()),
                                   run.size() + 1 + line.size());
                continue;
            }
            if (hasRun) {
                (text += run) += '\n';
            }
            run = line;
            hasRun = true;
        }
    }
    text += run;
    return makePPDText(std::move(text));
}

std::optional<OrbPPDLines::Key> OrbPPDLines::keyOfLine(std::string_view line) {
    if (!line.starts_with(kTkPPDAsterisk)) {
        return std::nullopt;
    }
    line.remove_prefix(kTkPPDAsterisk.size());
    const std::string_view keyword = partBefore(line, ' ', ':');
    line.remove_prefix(keyword.size());
    if (line.empty()) {
        return std::nullopt;
    }
    const Key keyOfKeyword = hashIgnoringCase(keyword, kContextOfKeyword);
    if (line.front() == ':') {
        return keyOfKeyword;
    }
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    const std::string_view spec = partBefore(line, ':', '/');
    return spec.size() == line.size() ? std::nullopt
                                      : std::optional(hashIgnoringCase(spec, keyOfKeyword));
}

std::optional<OrbPPDLines::Key> OrbPPDLines::keyOfLookUp(std::string_view keyword,
                                                         std::optional<std::string_view> spec) {
    if (partBefore(keyword, ' ', ':').size() < keyword.size()) {
        return std::nullopt;
    }
    const Key keyOfKeyword = hashIgnoringCase(keyword, kContextOfKeyword);
    return spec ? hashIgnoringCase(partBefore(*spec, ':', '/'), keyOfKeyword) : keyOfKeyword;
}

/// Puts the line into the chain with that first line, behind `previous`, or first when that is no
/// line.
void OrbPPDLines::linkAfter(LineID& first, LineID previous, LineID line) const {
    const LineID last = first == kNoLine ? line : lines_[first].previousOfKey;
    LineID& nextOfPrevious = previous == kNoLine ? first : lines_[previous].nextOfKey;
    const LineID next = std::exchange(nextOfPrevious, line);
    lines_[line].previousOfKey = previous == kNoLine ? last : previous;
    lines_[line].nextOfKey = next;
    lines_[next == kNoLine ? first : next].previousOfKey = line;
}

void OrbPPDLines::addToIndex(LineID line) const {
    const auto key = keyOfLine(lines_[line].text);
    if (!key) {
        return;
    }
    LineID& first = index_->findOrAdd(*key);
    LineID previous = kNoLine;
    if (first != kNoLine && !comesBefore(line, first)) {
        previous = lines_[first].previousOfKey;
        while (!comesBefore(previous, line)) {
            previous = lines_[previous].previousOfKey;
        }
    }
    linkAfter(first, previous, line);
}

void OrbPPDLines::removeFromIndexes(LineID line) const {
    if (separatorIndex_) {
        separatorIndex_->remove(line, lines_[line].text);
    }
    if (!index_) {
        return;
    }
    const auto key = keyOfLine(lines_[line].text);
    if (!key) {
        return;
    }
    LineID& first = index_->findOrAdd(*key);
    const auto [previous, next] = std::pair(lines_[line].previousOfKey, lines_[line].nextOfKey);
    (line == first ? first : lines_[previous].nextOfKey) = next;
    if (first != kNoLine) {
        lines_[next == kNoLine ? first : next].previousOfKey = previous;
    }
}

void OrbPPDLines::buildIndex() const {
    index_.emplace(size_);
    for (const auto& block : blocks_) {
        for (const LineID line : block->lines) {
            if (const auto key = keyOfLine(lines_[line].text)) {
                LineID& first = index_->findOrAdd(*key);
                linkAfter(first, first == kNoLine ? kNoLine : lines_[first].previousOfKey, line);
            }
        }
    }
}

void OrbPPDLines::buildSeparatorIndex() const {
    const auto isBefore = [](LineID /*left*/, LineID /*right*/) { return false; };
    separatorIndex_.emplace();
    for (const auto& block : blocks_) {
        for (const LineID line : block->lines) {
            separatorIndex_->add(line, lines_[line].text, isBefore);
        }
    }
}

template <typename Accepts>
std::optional<std::size_t> OrbPPDLines::first(const Accepts& accepts) const {
    std::size_t index = 0;
    for (const auto& block : blocks_) {
        for (const LineID line : block->lines) {
            if (accepts(lines_[line].text)) {
                return index;
            }
            ++index;
        }
    }
    return std::nullopt;
}

template <typename Accepts>
std::optional<std::size_t> OrbPPDLines::firstInIndexes(std::string_view keyword,
                                                       std::optional<std::string_view> spec,
                                                       const Accepts& accepts) const {
    const auto separatorKey = SeparatorIndex::keyOfLookUp(keyword, spec);
    if (separatorKey) {
        if (!separatorIndex_ && linesReadInVain_ / kPassesBeforeSeparatorIndex > size_) {
            buildSeparatorIndex();
        }
        if (separatorIndex_) {
            const auto line = separatorIndex_->find(
                *separatorKey, [&](LineID each) { return accepts(lines_[each].text); });
            return line ? std::optional(indexOf(*line)) : std::nullopt;
        }
    }
    const auto acceptsOrCounts = [&](std::string_view line) {
        const bool isAccepted = accepts(line);
        linesReadInVain_ += separatorKey && !isAccepted ? 1 : 0;
        return isAccepted;
    };
    const auto key = keyOfLookUp(keyword, spec);
    if (!index_ || !key) {
        return first(acceptsOrCounts);
    }
    for (LineID line = index_->first(*key); line != kNoLine; line = lines_[line].nextOfKey) {
        if (acceptsOrCounts(lines_[line].text)) {
            return indexOf(line);
        }
    }
    return std::nullopt;
}

std::optional<std::size_t> OrbPPDLines::indexOfAttribute(
    std::string_view keyword, std::optional<std::string_view> spec,
    std::optional<std::string_view> value) const {
    insertedSinceLookUp_ = 0;
    if (!index_ && ++lookUpsWithoutIndex_ > kLookUpsBeforeIndex) {
        buildIndex();
    }
    return firstInIndexes(keyword, spec, [&](std::string_view line) {
        return OrbPPDProcessor::scanLine_forAttributeWithKeyword_spec_value(line, keyword, spec,
                                                                            value);
    });
}

std::optional<std::size_t> OrbPPDLines::indexOfEndAfter(std::size_t index) const {
    const auto isEnd = [this](LineID line) { return isEndLine(lines_[line].text); };
    const auto indexOfEndIn = [&](std::size_t block, std::size_t offset) {
        const auto& lines = blocks_[block]->lines;
        const auto from = lines.begin() + static_cast<std::ptrdiff_t>(offset);
        const auto end = std::find_if(from, lines.end(), isEnd);
        return end == lines.end()
                   ? std::optional<std::size_t>()
                   : blockSizes_.sumBefore(block) + static_cast<std::size_t>(end - lines.begin());
    };
    if (size_ == 0 || index >= size_ - 1) {
        return std::nullopt;
    }
    const Place next = blockSizes_.placeOf(index + 1);
    if (const auto here = indexOfEndIn(next.block, next.offset)) {
        return here;
    }
    const std::size_t before = endLineCounts_.sumBefore(next.block + 1);
    return before == endLineCounts_.sumBefore(blocks_.size())
               ? std::nullopt
               : indexOfEndIn(endLineCounts_.placeOf(before).block, 0);
}

}  // namespace TkPPDUpdating
