#include "backends/ipp/IPPAnswer.h"

#include <algorithm>
#include <array>
#include <utility>

namespace TkPPDUpdating {

namespace {

constexpr std::initializer_list<ipp_tag_t> kKeywordOrName = {IPP_TAG_KEYWORD, IPP_TAG_NAME,
                                                             IPP_TAG_NAMELANG};
constexpr std::initializer_list<ipp_tag_t> kAnyText = {IPP_TAG_TEXT,    IPP_TAG_TEXTLANG,
                                                       IPP_TAG_NAME,    IPP_TAG_NAMELANG,
                                                       IPP_TAG_KEYWORD, IPP_TAG_STRING};

bool isAccepted(ipp_tag_t tag, std::initializer_list<ipp_tag_t> accepted) {
    return std::find(accepted.begin(), accepted.end(), tag) != accepted.end();
}

/// RFC 8010, section 3.5.2: out-of-band values say that there is no value.
bool isOutOfBand(ipp_tag_t tag) {
    return tag >= IPP_TAG_UNSUPPORTED_VALUE && tag < IPP_TAG_INTEGER;
}

bool isNameSyntax(ipp_tag_t tag) {
    return tag == IPP_TAG_NAME || tag == IPP_TAG_NAMELANG;
}

std::optional<std::string> bytesOf(ipp_attribute_t* attribute, int index) {
    if (ippGetValueTag(attribute) == IPP_TAG_STRING) {
        int length = 0;
        const void* bytes = ippGetOctetString(attribute, index, &length);
        return bytes && length >= 0 ? std::optional(std::string(static_cast<const char*>(bytes),
                                                                static_cast<std::size_t>(length)))
                                    : std::nullopt;
    }
    const char* text = ippGetString(attribute, index, nullptr);
    return text ? std::optional<std::string>(text) : std::nullopt;
}

std::optional<std::string> reasonNotToUse(std::string_view text, PrinterText kind) {
    return text.size() > IPPAnswer::kLongestText
               ? "is longer than " + std::to_string(IPPAnswer::kLongestText) + " bytes"
               : reasonPrinterTextIsRefused(kind, text);
}

}  // namespace

ipp_attribute_t* IPPAnswer::attribute(const std::string& name,
                                      std::initializer_list<ipp_tag_t> accepted) {
    ipp_attribute_t* found = nullptr;
    ipp_attribute_t* next =
        answer_ ? ippFindAttribute(answer_, name.c_str(), IPP_TAG_ZERO) : nullptr;
    for (; next; next = ippFindNextAttribute(answer_, name.c_str(), IPP_TAG_ZERO)) {
        const ipp_tag_t tag = ippGetValueTag(next);
        if (ippGetGroupTag(next) != IPP_TAG_PRINTER || isOutOfBand(tag)) {
            continue;
        }
        if (!isAccepted(tag, accepted)) {
            const char* syntax = ippTagString(tag);
            dropped_.add(name, "has the syntax " + std::string(syntax ? syntax : "unknown"));
        } else if (found) {
            dropped_.add(name, "is given twice; the first counts");
        } else {
            found = next;
        }
    }
    return found;
}

std::optional<std::vector<std::optional<IPPAnswer::Text>>> IPPAnswer::keywordsOrNames(
    const std::string& name) {
    ipp_attribute_t* found = attribute(name, kKeywordOrName);
    if (!found) {
        return std::nullopt;
    }
    std::vector<std::optional<Text>> values;
    for (int index = 0; index < ippGetCount(found); ++index) {
        auto value = text(found, index, name);
        values.push_back(value ? std::optional(Text{std::move(*value), isName(found, index)})
                               : std::nullopt);
    }
    return values;
}

bool IPPAnswer::isName(ipp_attribute_t* attribute, int index) const {
    // The attributes of the message stand in the order of their syntaxes.
    std::size_t place = 0;
    ipp_attribute_t* each = syntaxes_.empty() ? nullptr : ippFirstAttribute(answer_);
    while (each && each != attribute) {
        each = ippNextAttribute(answer_);
        ++place;
    }
    const auto value = static_cast<std::size_t>(index);
    if (each && place < syntaxes_.size() && value < syntaxes_[place].size()) {
        return syntaxes_[place][value] == static_cast<char>(IPP_TAG_NAME);
    }
    return isNameSyntax(ippGetValueTag(attribute));
}

std::vector<std::optional<std::string>> IPPAnswer::uncheckedTexts(const std::string& name) {
    ipp_attribute_t* found = attribute(name, kAnyText);
    std::vector<std::optional<std::string>> values;
    for (int index = 0; found && index < ippGetCount(found); ++index) {
        auto bytes = bytesOf(found, index);
        values.push_back(bytes && !bytes->empty() ? std::move(bytes) : std::nullopt);
    }
    return values;
}

std::optional<std::string> IPPAnswer::usable(std::string_view text, PrinterText kind,
                                             const std::string& place) {
    const auto reason = reasonNotToUse(text, kind);
    if (reason) {
        dropped_.add(place, *reason + ", this text is left out");
        return std::nullopt;
    }
    return std::string(text);
}

std::vector<int> IPPAnswer::integers(const std::string& name) {
    ipp_attribute_t* found = attribute(name, {IPP_TAG_INTEGER});
    std::vector<int> values;
    for (int index = 0; found && index < ippGetCount(found); ++index) {
        values.push_back(ippGetInteger(found, index));
    }
    return values;
}

std::vector<ipp_t*> IPPAnswer::collections(const std::string& name) {
    ipp_attribute_t* found = attribute(name, {IPP_TAG_BEGIN_COLLECTION});
    std::vector<ipp_t*> values;
    for (int index = 0; found && index < ippGetCount(found); ++index) {
        if (ipp_t* collection = ippGetCollection(found, index)) {
            values.push_back(collection);
        }
    }
    return values;
}

IPPAnswer::Member IPPAnswer::member(ipp_t* collection, const char* name, PrinterText kind,
                                    const std::string& place) {
    ipp_attribute_t* found = ippFindAttribute(collection, name, IPP_TAG_ZERO);
    if (!found || isOutOfBand(ippGetValueTag(found))) {
        return {};
    }
    const std::string memberPlace = place + ", " + name;
    if (!isAccepted(ippGetValueTag(found), kAnyText)) {
        dropped_.add(memberPlace, "is no text");
        return {std::nullopt, false, true};
    }
    auto value = text(found, 0, memberPlace, kind);
    const bool isRefused = !value;
    return {std::move(value), isNameSyntax(ippGetValueTag(found)), isRefused};
}

std::optional<std::string> IPPAnswer::text(ipp_attribute_t* attribute, int index,
                                           const std::string& place, PrinterText kind) {
    const auto valueFromOne = static_cast<std::size_t>(index) + 1;
    auto bytes = bytesOf(attribute, index);
    if (!bytes || bytes->empty()) {
        dropped_.addUnlessTold(place, valueFromOne, "is empty");
        return std::nullopt;
    }
    const auto reason = reasonNotToUse(*bytes, kind);
    if (reason) {
        dropped_.add(place, valueFromOne, *reason);
        return std::nullopt;
    }
    return bytes;
}

std::optional<std::string> IPPAnswer::shownValue(const char* name, std::size_t longest) const {
    ipp_attribute_t* next = answer_ ? ippFindAttribute(answer_, name, IPP_TAG_ZERO) : nullptr;
    while (next && ippGetGroupTag(next) != IPP_TAG_PRINTER) {
        next = ippFindNextAttribute(answer_, name, IPP_TAG_ZERO);
    }
    if (!next) {
        return std::nullopt;
    }
    constexpr std::string_view kEllipsis = "...";
    std::vector<char> text(longest + 1);
    const std::size_t length = ippAttributeString(next, text.data(), text.size());
    std::string shown = text.data();
    if (length > longest) {
        shown.resize(std::min(shown.size(), longest - kEllipsis.size()));
        shown += kEllipsis;
    }
    return shown;
}

}  // namespace TkPPDUpdating
