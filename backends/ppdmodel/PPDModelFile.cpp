#include "backends/ppdmodel/PPDModelFile.h"

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <mutex>
#include <unordered_set>
#include <utility>

#include "backends/ppdmodel/PPDModelAttributes.h"
#include "backends/ppdmodel/PPDModelGroups.h"
#include "backends/ppdmodel/PPDModelOption.h"
#include "backends/ppdmodel/PPDModelReader.h"
#include "ppd/PPDTextFile.h"
#include "ppd/PPDTextIndex.h"
#include "text/SeededTextHash.h"

namespace TkPPDUpdating {

namespace {

constexpr std::array<std::string_view, 2> kOpeningKeywords{"OpenUI", "JCLOpenUI"};
constexpr std::array<std::string_view, 3> kPageSizeKeywords{"PageSize", "ImageableArea",
                                                            "PaperDimension"};
constexpr std::string_view kDefaultPrefix = "Default";
/// The option keyword of the line that opens an option is its name behind an asterisk.
constexpr std::string_view kOptionPrefix = "*";

}  // namespace

struct PPDModelFile::Contents {
    explicit Contents(PPDText parsedText)
        : text(std::move(parsedText)), attributes(text.index()), groups(attributes) {}

    PPDText text;
    PPDModelAttributes attributes;
    PPDModelGroups groups;
    OrbPPDPageSize pageSize;
    /// Those that were asked for.
    std::mutex mutex;
    std::map<std::string, PPDModelOption, std::less<>> options;
};

PPDModelFile::PPDModelFile(std::unique_ptr<Contents> contents) : contents_(std::move(contents)) {}

PPDModelFile::~PPDModelFile() = default;

std::shared_ptr<const PPDModelFile> PPDModelFile::fileWithValidText(PPDText text,
                                                                    std::string& reason) {
    if (!PPDModelReader(*text.index()).isPPD(reason)) {
        return nullptr;
    }
    return std::shared_ptr<const PPDModelFile>(
        new PPDModelFile(std::make_unique<Contents>(std::move(text))));
}

std::shared_ptr<const PPDModelFile> PPDModelFile::fileWithText(PPDText text, std::string* reason) {
    std::string ignored;
    std::string& cause = reason ? *reason : ignored;
    if (!text) {
        cause = "there is no text";
        return nullptr;
    }
    if (const auto invalid = text.index()->firstInvalidUTF8Byte()) {
        cause = "is not valid UTF-8 at byte " + std::to_string(*invalid);
        return nullptr;
    }
    return fileWithValidText(std::move(text), cause);
}

std::shared_ptr<const PPDModelFile> PPDModelFile::fileWithContentsOfFile(const std::string& path,
                                                                         std::string* reason) {
    std::string ignored;
    std::string& cause = reason ? *reason : ignored;
    PPDText text = PPDTextWithContentsOfFile(path, &cause);
    return text ? fileWithValidText(std::move(text), cause) : nullptr;
}

const OrbPPDOption* PPDModelFile::optionForName(std::string_view optionName) const {
    const std::lock_guard lock(contents_->mutex);
    const auto known = contents_->options.find(optionName);
    if (known != contents_->options.end()) {
        return &known->second;
    }
    const PPDModelAttributes& attributes = contents_->attributes;
    const std::string spec = std::string(kOptionPrefix).append(optionName);
    const PPDModelAttribute* opening = nullptr;
    for (const std::string_view keyword : kOpeningKeywords) {
        opening = opening ? opening : attributes.first(keyword, spec);
    }
    if (optionName.empty() || !opening) {
        return nullptr;
    }
    const auto* const defaultLine =
        attributes.first(std::string(kDefaultPrefix).append(optionName));
    const auto defaultChoice = defaultLine ? defaultLine->value() : std::nullopt;
    const auto entry =
        contents_->options.try_emplace(std::string(optionName), spec.substr(1), defaultChoice,
                                       opening->line(), contents_->groups, attributes);
    return &entry.first->second;
}

std::vector<const OrbPPDAttribute*> PPDModelFile::attributesForName(std::string_view name) const {
    std::vector<const OrbPPDAttribute*> all;
    contents_->attributes.appendAll(name, all);
    return all;
}

std::vector<const OrbPPDAttribute*> PPDModelFile::attributesForName_spec(
    std::string_view name, std::string_view spec) const {
    const auto attributes = contents_->attributes.all(name, spec);
    return {attributes.begin(), attributes.end()};
}

const OrbPPDPageSize* PPDModelFile::pageSizeForName(std::string_view name) const {
    const bool exists = std::any_of(
        kPageSizeKeywords.begin(), kPageSizeKeywords.end(),
        [&](std::string_view keyword) { return contents_->attributes.first(keyword, name); });
    return exists ? &contents_->pageSize : nullptr;
}

const PPDText& PPDModelFile::text() const {
    return contents_->text;
}

std::span<const PPDModelAttribute> PPDModelFile::attributes() const {
    return contents_->attributes.inFileOrder();
}

std::vector<std::string_view> PPDModelFile::optionNames() const {
    std::vector<const PPDModelAttribute*> opening;
    for (const std::string_view keyword : kOpeningKeywords) {
        for (const auto* const attribute : contents_->attributes.all(keyword)) {
            if (attribute->spec().size() > 1 && attribute->spec().starts_with(kOptionPrefix)) {
                opening.push_back(attribute);
            }
        }
    }
    std::sort(opening.begin(), opening.end(),
              [](const auto* left, const auto* right) { return left->line() < right->line(); });
    std::vector<std::string_view> names;
    std::unordered_set<std::string_view, SeededTextHash> known;
    for (const auto* const attribute : opening) {
        const std::string_view name = attribute->spec().substr(kOptionPrefix.size());
        if (known.insert(name).second) {
            names.push_back(name);
        }
    }
    return names;
}

std::vector<std::string_view> PPDModelFile::mainKeywords() const {
    std::vector<std::string_view> keywords = contents_->attributes.keywords();
    std::sort(keywords.begin(), keywords.end());
    keywords.erase(std::unique(keywords.begin(), keywords.end()), keywords.end());
    return keywords;
}

}  // namespace TkPPDUpdating
