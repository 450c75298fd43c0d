#include "ppd/ColonKeywordIndex.h"

#include <algorithm>

#include "ppd/CaseFolding.h"
#include "ppd/PPDConstants.h"

namespace TkPPDUpdating {

namespace {

constexpr std::uint64_t kContextOfKeyword = 2;

/// The part of a spec that every line that matches it has, too.
std::string_view beforeSeparator(std::string_view spec) {
    return spec.substr(0, spec.find_first_of(":/"));
}

std::uint64_t keyWithSpec(std::uint64_t keyOfKeyword, std::string_view spec) {
    return hashIgnoringCase(beforeSeparator(spec), keyOfKeyword);
}

}  // namespace

std::optional<ColonKeywordIndex::Key> ColonKeywordIndex::keyOfLookUp(
    std::string_view keyword, std::optional<std::string_view> spec) {
    const std::size_t colon = keyword.find(':');
    if (colon == std::string_view::npos || colon + 1 == keyword.size() ||
        keyword.find(' ') != std::string_view::npos) {
        return std::nullopt;
    }
    const Key key = hashIgnoringCase(keyword, kContextOfKeyword);
    return spec ? keyWithSpec(key, *spec) : key;
}

std::vector<ColonKeywordIndex::Key> ColonKeywordIndex::keysOfLine(std::string_view line) {
    std::vector<Key> keys;
    if (!line.starts_with(kTkPPDAsterisk)) {
        return keys;
    }
    line.remove_prefix(kTkPPDAsterisk.size());
    const std::string_view word = line.substr(0, line.find(' '));
    std::size_t colon = word.find(':');
    if (colon == std::string_view::npos || colon + 1 == word.size()) {
        return keys;
    }
    HashIgnoringCase hash(kContextOfKeyword);
    std::size_t read = 0;
    while ((colon = word.find(':', colon + 1)) != std::string_view::npos) {
        hash.add(word.substr(read, colon - read));
        read = colon;
        keys.push_back(hash.value());
    }
    std::string_view rest = line.substr(word.size());
    rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
    if (rest.find_first_of(":/") != std::string_view::npos) {
        hash.add(word.substr(read));
        keys.push_back(keyWithSpec(hash.value(), rest));
    }
    return keys;
}

std::span<const ColonKeywordIndex::LineID> ColonKeywordIndex::find(Key key) const {
    const auto found = lines_.find(key);
    return found == lines_.end() ? std::span<const LineID>()
                                 : std::span(found->second.IDs).subspan(found->second.gone);
}

}  // namespace TkPPDUpdating
