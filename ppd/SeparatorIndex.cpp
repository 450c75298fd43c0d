#include "ppd/SeparatorIndex.h"

#include <algorithm>
#include <utility>

#include "ppd/CaseFolding.h"
#include "ppd/PPDConstants.h"

namespace TkPPDUpdating {

namespace {

constexpr std::uint64_t kContextOfKeyword = 2;

constexpr std::string_view kEndsOfSpec = ":/";

}  // namespace

std::optional<SeparatorIndex::Key> SeparatorIndex::keyOfLookUp(
    std::string_view keyword, std::optional<std::string_view> spec) {
    const std::size_t colon = keyword.find(':');
    const bool isTold = colon != std::string_view::npos
                            ? colon + 1 < keyword.size()
                            : spec && spec->find_first_of(kEndsOfSpec) != std::string_view::npos;
    if (!isTold || keyword.find(' ') != std::string_view::npos) {
        return std::nullopt;
    }
    const Key key = hashIgnoringCase(keyword, kContextOfKeyword);
    return spec ? hashIgnoringCase(*spec, key) : key;
}

std::vector<SeparatorIndex::Key> SeparatorIndex::keysOfLine(std::string_view line) {
    std::vector<Key> keys;
    if (!line.starts_with(kTkPPDAsterisk)) {
        return keys;
    }
    line.remove_prefix(kTkPPDAsterisk.size());
    const std::string_view word = line.substr(0, line.find(' '));
    std::size_t colon = word.find(':');
    const bool hasColon = colon != std::string_view::npos;
    if (hasColon && colon + 1 == word.size()) {
        return keys;
    }
    HashIgnoringCase keyword(kContextOfKeyword);
    std::size_t read = 0;
    while (colon != std::string_view::npos &&
           (colon = word.find(':', colon + 1)) != std::string_view::npos) {
        keyword.add(word.substr(read, colon - read));
        read = colon;
        keys.push_back(keyword.value());
    }
    keyword.add(word.substr(read));

    std::string_view rest = line.substr(word.size());
    rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
    HashIgnoringCase spec(keyword.value());
    read = 0;
    // Where neither keyword nor spec has a separator, the look-up is not one for this index.
    bool isTold = hasColon;
    for (std::size_t end = rest.find_first_of(kEndsOfSpec); end != std::string_view::npos;
         end = rest.find_first_of(kEndsOfSpec, end + 1)) {
        spec.add(rest.substr(read, end - read));
        read = end;
        if (isTold) {
            keys.push_back(spec.value());
        }
        isTold = true;
    }
    return keys;
}

void SeparatorIndex::link(EntryID& first, EntryID previous, LineID line) {
    const auto entry = static_cast<EntryID>(entries_.size());
    const EntryID last = first == kNoEntry ? entry : entries_[first].previous;
    EntryID& nextOfPrevious = previous == kNoEntry ? first : entries_[previous].next;
    const EntryID next = std::exchange(nextOfPrevious, entry);
    entries_.push_back({line, previous == kNoEntry ? last : previous, next});
    entries_[next == kNoEntry ? first : next].previous = entry;
}

void SeparatorIndex::remove(LineID line, std::string_view text) {
    EntryID entry = entriesOfLine_[line];
    for (const Key key : keysOfLine(text)) {
        EntryID& first = chains_.findOrAdd(key);
        const Entry removed = entries_[entry];
        (entry == first ? first : entries_[removed.previous].next) = removed.next;
        if (first != kNoEntry) {
            entries_[removed.next == kNoEntry ? first : removed.next].previous = removed.previous;
        }
        ++entry;
    }
}

}  // namespace TkPPDUpdating
