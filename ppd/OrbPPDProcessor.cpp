#include "ppd/OrbPPDProcessor.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "ppd/PPDAttributeLine.h"
#include "text/CaseFolding.h"
#include "text/UTF8.h"

namespace TkPPDUpdating {

namespace {

/// A line of this many bytes or more is wrapped or refused (PPD specification 4.3: 255 characters).
constexpr std::size_t kLineTooLong = 256;
constexpr std::size_t kLongestWord = 255;
/// A translation string of this many bytes or more is shortened.
constexpr std::size_t kTranslationTooLong = 80;

constexpr std::string_view kFullStop = ".";
constexpr std::string_view kBeforeValue = ": ";
constexpr std::string_view kValueOfTranslation = "\"\"";
constexpr std::string_view kTranslationKeywordFormat = "%@.%@";
/// Translations into it are looked for, and made of texts that are not ASCII, in every PPD.
constexpr std::string_view kEnglish = "en";

std::size_t spacesIn(std::string_view text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), ' '));
}

template <typename Visit>
void visitPartsBetweenSpaces(std::string_view text, const Visit& visit) {
    for (std::size_t end = text.find(' '); end != std::string_view::npos; end = text.find(' ')) {
        visit(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    visit(text);
}

/// The value of an attribute whose text holds no quote: what follows the first colon and the
/// spaces.
std::optional<std::string_view> unquotedValue(std::string_view text) {
    const std::size_t colon = text.find(kTkPPDColon);
    if (colon == std::string_view::npos) {
        return std::nullopt;
    }
    const std::size_t start = text.find_first_not_of(' ', colon + kTkPPDColon.size());
    if (start == std::string_view::npos) {
        throw std::out_of_range("nothing follows the colon of the attribute \"" +
                                std::string(text.substr(0, colon)) + "\"");
    }
    const std::string_view value = text.substr(start);
    // A single character at the very end does not count as a value. Four bytes hold at least two
    // units, whatever they are.
    return UTF16Length(value.substr(0, 4)) <= 1 ? std::nullopt : std::optional(value);
}

/// The value in the joined lines of an attribute.
std::optional<std::string_view> valueInAttributeText(std::string_view text) {
    const std::size_t open = text.find(kTkPPDQuote);
    if (open == std::string_view::npos) {
        return unquotedValue(text);
    }
    const std::size_t start = open + kTkPPDQuote.size();
    const std::size_t close = text.find(kTkPPDQuote, start);
    return close == std::string_view::npos ? std::nullopt
                                           : std::optional(text.substr(start, close - start));
}

}  // namespace

std::unique_ptr<OrbPPDProcessor> OrbPPDProcessor::processorWithPPDContent(PPDText content) {
    auto processor = std::make_unique<OrbPPDProcessor>();
    processor->initWithPDDContent(std::move(content));
    return processor;
}

OrbPPDProcessor& OrbPPDProcessor::initWithPDDContent(PPDText content) {
    setContent(std::move(content));
    return *this;
}

PPDText OrbPPDProcessor::content() {
    if (!content_ && lines_) {
        // As lines are read, the empty one at the end is but the line feed before it.
        OrbPPDLines joined(*lines());
        joined.setEndsWithLineFeed(true);
        content_ = joined.text();
        leavesEmptyLine_ = true;
    }
    return content_;
}

void OrbPPDProcessor::setContent(PPDText content) {
    content_ = std::move(content);
}

void OrbPPDProcessor::clearContent() {
    setContent(nullptr);
}

OrbPPDLines* OrbPPDProcessor::lines() {
    if (!lines_ && content_) {
        lines_.emplace(content_);
    }
    if (leavesEmptyLine_) {
        leavesEmptyLine_ = false;
        lines_->insert(lines_->size(), kTkPPDEmptyString);
    }
    return lines_ ? &*lines_ : nullptr;
}

void OrbPPDProcessor::setInsertLocation(std::size_t index) {
    const OrbPPDLines* const all = lines();
    insertLocation_ = std::min(index, all ? all->size() : 0);
}

const std::vector<std::string>& OrbPPDProcessor::localizations() {
    if (!localizations_) {
        std::vector<std::string> languages;
        if (const auto value =
                valueForAttributeWithKeyword_spec(kTkPPDCUPSLanguagesAttributeName, std::nullopt)) {
            languages.reserve(spacesIn(*value) + 1);
            visitPartsBetweenSpaces(*value,
                                    [&](std::string_view part) { languages.emplace_back(part); });
        }
        setLocalizations(std::move(languages));
    }
    return *localizations_;
}

void OrbPPDProcessor::setLocalizations(std::vector<std::string> localizations) {
    localizations_ = std::move(localizations);
    languages_.clear();
    // Keywords that begin with such a code are not told from others by where they end.
    uncommonLanguages_.clear();
    for (std::size_t i = 0; i < localizations_->size(); ++i) {
        const std::string& code = (*localizations_)[i];
        if (PPDTextIndex::keywordPart(code).size() < code.size()) {
            uncommonLanguages_.push_back(i);
        }
    }
}

bool OrbPPDProcessor::scanLine_forAttributeWithKeyword_spec_value(
    std::string_view line, std::string_view keyword, std::optional<std::string_view> spec,
    std::optional<std::string_view> value) {
    return isAttributeLine(line, keyword, spec, value);
}

OrbPPDLineRange OrbPPDProcessor::rangeOfAttributeWithKeyword_spec_value(
    std::optional<std::string_view> keyword, std::optional<std::string_view> spec,
    std::optional<std::string_view> value) {
    const OrbPPDLines* const all = lines();
    const auto first = keyword && all ? all->indexOfAttribute(*keyword, spec, value) : std::nullopt;
    if (!first) {
        return {};
    }
    return rangeOfAttributeAt(*first);
}

OrbPPDLineRange OrbPPDProcessor::rangeOfAttributeAt(std::size_t index) const {
    const std::string_view line = lines_->at(index);
    const std::size_t quote = line.find(kTkPPDQuote);
    if (quote == std::string_view::npos ||
        line.find(kTkPPDQuote, quote + kTkPPDQuote.size()) != std::string_view::npos) {
        return {index, 1};
    }
    const auto end = lines_->indexOfEndAfter(index);
    return end ? OrbPPDLineRange{index, *end - index + 1} : OrbPPDLineRange{};
}

std::optional<std::string> OrbPPDProcessor::valueForAttributeWithKeyword_spec(
    std::optional<std::string_view> keyword, std::optional<std::string_view> spec) {
    const OrbPPDLineRange range =
        rangeOfAttributeWithKeyword_spec_value(keyword, spec, std::nullopt);
    if (range.length == 0) {
        return std::nullopt;
    }
    const auto copied = [](std::optional<std::string_view> value) {
        return value ? std::optional<std::string>(*value) : std::nullopt;
    };
    if (range.length == 1) {
        return copied(valueInAttributeText(lines_->at(range.location)));
    }
    std::string text(lines_->at(range.location));
    // Further lines belong to it when its quote is open. What follows the closing quote does not
    // count: in a hostile text every value goes on to the same "*End" far below.
    bool isOpen = true;
    for (std::size_t i = 1; i < range.length && isOpen; ++i) {
        const std::string_view line = lines_->at(range.location + i);
        (text += kTkPPDSpace) += line;
        isOpen = line.find(kTkPPDQuote) == std::string_view::npos;
    }
    return copied(valueInAttributeText(text));
}

std::size_t OrbPPDProcessor::deleteAttributeWithKeyword_spec_value(
    std::optional<std::string_view> keyword, std::optional<std::string_view> spec,
    std::optional<std::string_view> value) {
    const OrbPPDLineRange range = rangeOfAttributeWithKeyword_spec_value(keyword, spec, value);
    if (range.length == 0) {
        return range.location;
    }
    lines_->erase(range.location, range.length);
    // The languages are those of the PPD without the attribute, which may be "cupsLanguages"
    // itself.
    deleteTranslations(*keyword, spec);
    clearContent();
    return range.location;
}

void OrbPPDProcessor::readLanguages() {
    const std::vector<std::string>& codes = localizations();
    if (!languages_.empty()) {
        return;
    }
    for (std::size_t i = 0; i < codes.size(); ++i) {
        languages_[foldedCase(codes[i])].push_back(i);
    }
    languages_[std::string(kEnglish)].push_back(codes.size());
}

void OrbPPDProcessor::erase(const OrbPPDLineRange& range) {
    lines_->erase(range.length == 0 ? 0 : range.location, range.length);
}

void OrbPPDProcessor::deleteTranslation(std::string_view language, std::string_view keyword,
                                        std::optional<std::string_view> spec) {
    erase(rangeOfAttributeWithKeyword_spec_value(
        PPDFormatted(kTranslationKeywordFormat, {language, keyword}), spec, std::nullopt));
}

/// Deletes as many translations into each language as its code stands in the list, language by
/// language; only languages of which there are translations cost anything.
void OrbPPDProcessor::deleteTranslations(std::string_view keyword,
                                         std::optional<std::string_view> spec) {
    const std::vector<std::string>& codes = localizations();
    const auto lines = lines_->translations(keyword, spec);
    if (!lines) {
        for (const std::string& language : codes) {
            deleteTranslation(language, keyword, spec);
        }
        deleteTranslation(kEnglish, keyword, spec);
        return;
    }
    if (lines->empty() && uncommonLanguages_.empty()) {
        return;
    }
    auto translations = translationsByLanguage(*lines, keyword);
    for (const auto& [place, ofLanguage] : turnsOf(translations)) {
        if (ofLanguage) {
            deleteNext(*ofLanguage);
        } else {
            deleteTranslation(localizations()[place], keyword, spec);
        }
    }
}

OrbPPDProcessor::TranslationsByLanguage OrbPPDProcessor::translationsByLanguage(
    const std::vector<OrbPPDLines::LineID>& lines, std::string_view keyword) {
    readLanguages();
    TranslationsByLanguage translations;
    for (const OrbPPDLines::LineID line : lines) {
        const auto language = languages_.find(
            foldedCase(OrbPPDLines::languageOfTranslation(lines_->base().line(line), keyword)));
        if (language != languages_.end()) {
            translations[&language->second].lines.push_back(line);
        }
    }
    return translations;
}

std::vector<OrbPPDProcessor::Turn> OrbPPDProcessor::turnsOf(
    TranslationsByLanguage& translations) const {
    std::vector<Turn> turns;
    for (auto& [places, ofLanguage] : translations) {
        for (std::size_t i = 0; i < std::min(places->size(), ofLanguage.lines.size()); ++i) {
            turns.emplace_back((*places)[i], &ofLanguage);
        }
    }
    for (const std::size_t place : uncommonLanguages_) {
        turns.emplace_back(place, nullptr);
    }
    std::sort(turns.begin(), turns.end());
    return turns;
}

void OrbPPDProcessor::deleteNext(Translations& translations) {
    const auto& lines = translations.lines;
    std::size_t& next = translations.next;
    // A value of several lines may have taken others along.
    while (next < lines.size() && lines_->isGone(lines[next])) {
        ++next;
    }
    if (next < lines.size()) {
        erase(rangeOfAttributeAt(lines_->indexOf(lines[next])));
    }
}

bool OrbPPDProcessor::insertAttributeWithKeyword_spec_text_value_wrap(
    std::optional<std::string_view> keyword, std::optional<std::string_view> spec,
    std::optional<std::string_view> text, std::optional<std::string_view> value, bool wrap) {
    if (!keyword || !value || !lines()) {
        return false;
    }
    const std::string_view name = text ? PPDSavvyNameFromString(*text) : kTkPPDEmptyString;
    const bool standsInMainLine = spec && text && isASCIIString(name);
    // Raises before anything has changed.
    const std::vector<std::string>* const languages = spec && text ? &localizations() : nullptr;
    newText_.assign(kTkPPDAsterisk).append(*keyword);
    if (spec) {
        newText_.append(kTkPPDSpace).append(*spec);
    }
    if (standsInMainLine) {
        newText_.append(kTkPPDSlash).append(name);
    }
    newText_.append(kBeforeValue).append(*value);
    if (!insertMainLine(wrap)) {
        return false;
    }
    if (languages) {
        newText_.assign(kFullStop).append(*keyword).append(kTkPPDSpace).append(*spec);
        newText_.append(kTkPPDSlash).append(name).append(kBeforeValue).append(kValueOfTranslation);
        if (!standsInMainLine) {
            insertLine({kTkPPDAsterisk, kEnglish, newText_});
        }
        for (const std::string& language : *languages) {
            insertLine({kTkPPDAsterisk, language, newText_});
        }
    }
    clearContent();
    return true;
}

/// Inserts the new text as one line, or wrapped. False, and nothing changed, when it is too long.
bool OrbPPDProcessor::insertMainLine(bool wrap) {
    if (newText_.size() < kLineTooLong) {
        insertLine({newText_});
        return true;
    }
    const auto wrapped = wrap ? linesWrapedToPPDMaxWidthForAttributeString(newText_) : std::nullopt;
    if (wrapped) {
        for (const std::string& line : *wrapped) {
            insertLine({line});
        }
    }
    return wrapped.has_value();
}

void OrbPPDProcessor::insertLine(std::initializer_list<std::string_view> parts) {
    lines_->insert(insertLocation_, parts);
    ++insertLocation_;
}

std::optional<std::vector<std::string>> OrbPPDProcessor::linesWrapedToPPDMaxWidthForAttributeString(
    std::string_view line) {
    std::vector<std::string> wrapped;
    std::string current;
    std::size_t currentLength = 0;
    bool isFirst = true;
    bool areWordsTooLong = false;
    visitPartsBetweenSpaces(line, [&](std::string_view word) {
        areWordsTooLong = areWordsTooLong || word.size() > kLongestWord;
        if (currentLength + word.size() >= kLineTooLong) {
            wrapped.push_back(std::exchange(current, std::string(word)));
            currentLength = word.size();
        } else {
            if (!isFirst) {
                current += kTkPPDSpace;
                currentLength += kTkPPDSpace.size();
            }
            current += word;
            currentLength += word.size();
        }
        isFirst = false;
    });
    if (areWordsTooLong) {
        return std::nullopt;
    }
    const bool didBreak = !wrapped.empty();
    wrapped.push_back(std::move(current));
    if (didBreak) {
        wrapped.emplace_back(kTkPPDEnd);
    }
    return wrapped;
}

bool OrbPPDProcessor::isASCIIString(std::string_view string) {
    return std::all_of(string.begin(), string.end(),
                       [](char each) { return static_cast<unsigned char>(each) < 0x80; });
}

std::string_view OrbPPDProcessor::PPDSavvyNameFromString(std::string_view string) {
    if (string.size() < kTranslationTooLong) {
        return string;
    }
    const auto isContinuation = [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
    };
    std::size_t length = kTranslationTooLong - 1;
    while (length > 0 && isContinuation(string[length])) {
        --length;
    }
    return string.substr(0, length);
}

}  // namespace TkPPDUpdating
