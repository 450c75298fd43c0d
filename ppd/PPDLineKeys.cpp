#include "ppd/PPDLineKeys.h"

#include "text/CaseFolding.h"
#include "text/SeededTextHash.h"

namespace TkPPDUpdating {

namespace {

constexpr std::uint64_t kContextOfKeyword = 2;
constexpr std::uint64_t kContextOfEveryEnd = 3;
constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kEndsOfSpec = ":/";
constexpr std::string_view kEndsInWord = ":/\t";

std::string_view withoutBlanksAround(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

}  // namespace

PPDLineKeys::PPDLineKeys(const PPDTextIndex& index, Kind kind) : kind_(kind) {
    index.visitAllRuns([&](const PPDTextIndex::Run& run) {
        const std::size_t language = run.keyword.rfind('.');
        for (Line line = run.first; line < run.end; ++line) {
            const std::string_view text = index.line(line).substr(1);
            if (kind == Kind::kEveryEnd) {
                addEveryEnd(line, text);
                if (language != std::string_view::npos) {
                    addEveryEnd(line, text.substr(language + 1));
                }
            } else {
                addFirstEnd(line, run.keyword, text.substr(run.keyword.size()));
            }
        }
    });
    std::sort(entries_.begin(), entries_.end());
}

std::optional<PPDLineKeys::Kind> PPDLineKeys::kindFor(std::string_view keyword,
                                                      std::optional<std::string_view> spec) {
    if (keyword.find(' ') != std::string_view::npos) {
        return std::nullopt;
    }
    const bool isPlain = PPDTextIndex::keywordPart(keyword).size() == keyword.size() &&
                         (!spec || spec->find_first_of(kEndsOfSpec) == std::string_view::npos);
    return isPlain ? Kind::kIgnoringCase : Kind::kEveryEnd;
}

PPDLineKeys::Key PPDLineKeys::keyOfLookUp(std::string_view keyword,
                                          std::optional<std::string_view> spec) const {
    switch (kind_) {
        case Kind::kExact:
            return SeededTextHash::of(withoutBlanksAround(*spec), SeededTextHash::of(keyword));
        case Kind::kIgnoringCase:
            return hashIgnoringCase(
                withoutBlanksAround(*spec),
                hashIgnoringCase(keyword.substr(keyword.rfind('.') + 1), kContextOfKeyword));
        default:
            const Key key = hashIgnoringCase(keyword, kContextOfEveryEnd);
            return spec ? hashIgnoringCase(*spec, key) : key;
    }
}

void PPDLineKeys::addFirstEnd(Line line, std::string_view keyword, std::string_view rest) {
    const std::size_t end = rest.find_first_of(kEndsOfSpec);
    if (end != std::string_view::npos) {
        entries_.emplace_back(keyOfLookUp(keyword, rest.substr(0, end)), line);
    }
}

void PPDLineKeys::addEveryEnd(Line line, std::string_view text) {
    const std::string_view word = text.substr(0, text.find(' '));
    HashIgnoringCase keyword(kContextOfEveryEnd);
    std::size_t read = 0;
    bool isTold = false;
    for (std::size_t end = word.find_first_of(kEndsInWord); end != std::string_view::npos;
         end = word.find_first_of(kEndsInWord, end + 1)) {
        keyword.add(word.substr(read, end - read));
        read = end;
        if (isTold && word[end] == ':') {
            entries_.emplace_back(keyword.value(), line);
        }
        isTold = true;
    }
    keyword.add(word.substr(read));

    std::string_view rest = text.substr(word.size());
    rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
    HashIgnoringCase spec(keyword.value());
    read = 0;
    // Where neither keyword nor spec has such a sign, the look-up is not one for this kind.
    for (std::size_t end = rest.find_first_of(kEndsOfSpec); end != std::string_view::npos;
         end = rest.find_first_of(kEndsOfSpec, end + 1)) {
        spec.add(rest.substr(read, end - read));
        read = end;
        if (isTold) {
            entries_.emplace_back(spec.value(), line);
        }
        isTold = true;
    }
}

}  // namespace TkPPDUpdating
