#include "resources/XMLScanner.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <utility>

#include "text/UTF8.h"

namespace TkPPDUpdating {

namespace {

constexpr std::string_view kSpaces = " \t\r\n";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kNameEnd = " \t\r\n/>=<?&\"'[]!;";

/// XML 1.0, production 2.
bool isCharacter(std::uint32_t codePoint) {
    return codePoint == '\t' || codePoint == '\n' || codePoint == '\r' ||
           (codePoint >= 0x20 && codePoint < 0xD800) ||
           (codePoint >= 0xE000 && codePoint < 0xFFFE) ||
           (codePoint >= 0x10000 && codePoint <= 0x10FFFF);
}

/// Whether a byte of character data stands for itself, whatever follows it.
bool isPlain(char each) {
    const auto byte = static_cast<unsigned char>(each);
    return (byte >= 0x20 && byte != 0xEF) || each == '\t' || each == '\n';
}

bool isMarkup(char each) {
    return each == '<' || each == '&';
}

}  // namespace

void XMLScanner::failAfter(std::string_view before, const std::string& cause) {
    const auto line = 1 + std::count(before.begin(), before.end(), '\n');
    throw XMLError("line " + std::to_string(line) + ": " + cause);
}

void XMLScanner::fail(const std::string& cause) const {
    failAfter(text_.substr(0, position_), cause);
}

bool XMLScanner::skip(std::string_view literal) {
    if (!text_.substr(position_).starts_with(literal)) {
        return false;
    }
    position_ += literal.size();
    return true;
}

void XMLScanner::expect(std::string_view literal, const char* cause) {
    if (!skip(literal)) {
        fail(cause);
    }
}

bool XMLScanner::skipSpaces() {
    const std::size_t start = position_;
    position_ = std::min(text_.find_first_not_of(kSpaces, position_), text_.size());
    return position_ > start;
}

std::string_view XMLScanner::upTo(std::string_view end, const char* missing) {
    const std::size_t found = text_.find(end, position_);
    if (found == std::string_view::npos) {
        fail(missing);
    }
    const std::string_view part = text_.substr(position_, found - position_);
    position_ = found + end.size();
    return part;
}

bool XMLScanner::skipComment() {
    if (!skip("<!--")) {
        return false;
    }
    upTo("--", "a comment never ends");
    expect(">", "two hyphens inside a comment");
    return true;
}

void XMLScanner::skipMisc() {
    do {
        skipSpaces();
    } while (skipComment());
}

std::string_view XMLScanner::name(const char* missing) {
    const std::size_t end = std::min(text_.find_first_of(kNameEnd, position_), text_.size());
    if (end == position_) {
        fail(missing);
    }
    const std::string_view found = text_.substr(position_, end - position_);
    position_ = end;
    return found;
}

std::string_view XMLScanner::quoted() {
    if (skip("\"")) {
        return upTo("\"", "a quote is never closed");
    }
    expect("'", "a quoted value is missing");
    return upTo("'", "a quote is never closed");
}

void XMLScanner::skipDeclaration() {
    while (skipSpaces() && !text_.substr(position_).starts_with('?')) {
        const std::string_view key = name("a malformed XML declaration");
        skipSpaces();
        expect("=", "a malformed XML declaration");
        skipSpaces();
        std::string value(quoted());
        std::transform(value.begin(), value.end(), value.begin(), [](char each) {
            return each >= 'a' && each <= 'z' ? static_cast<char>(each - 'a' + 'A') : each;
        });
        if (key == "version" ? value != "1.0" : key == "encoding" && value != "UTF-8") {
            fail("not XML 1.0 in UTF-8");
        }
    }
    expect("?>", "a malformed XML declaration");
}

void XMLScanner::skipDocumentType(std::string_view rootName) {
    skipSpaces();
    if (name("a malformed document type") != rootName) {
        fail("another document type than " + std::string(rootName));
    }
    skipSpaces();
    if (skip("PUBLIC")) {
        skipSpaces();
        quoted();
        skipSpaces();
        quoted();
    } else if (skip("SYSTEM")) {
        skipSpaces();
        quoted();
    }
    skipSpaces();
    expect(">", "a document type with declarations of its own");
}

void XMLScanner::skipProlog(std::string_view rootName) {
    skip(kByteOrderMark);
    if (skip("<?xml")) {
        skipDeclaration();
    }
    skipMisc();
    if (skip("<!DOCTYPE")) {
        skipDocumentType(rootName);
    }
    skipMisc();
}

XMLScanner::Tag XMLScanner::nextTag() {
    skipMisc();
    expect("<", isAtEnd() ? "the text ends too early" : "character data where a tag is expected");
    Tag tag;
    tag.closes = skip("/");
    tag.opens = !tag.closes;
    tag.name = name("a tag without a name");
    const bool hasSpaces = skipSpaces();
    if (tag.opens && hasSpaces && !text_.substr(position_).starts_with('/') &&
        !text_.substr(position_).starts_with('>')) {
        tag.attributeName = name("a malformed attribute");
        skipSpaces();
        expect("=", "a malformed attribute");
        skipSpaces();
        tag.attributeValue = quoted();
        skipSpaces();
    }
    tag.closes = (tag.opens && skip("/")) || tag.closes;
    expect(">", "a malformed tag");
    return tag;
}

void XMLScanner::append(std::string_view characters, std::string& data) const {
    while (!characters.empty()) {
        const auto* const odd = std::find_if_not(characters.begin(), characters.end(), isPlain);
        const auto length = static_cast<std::size_t>(odd - characters.begin());
        data += characters.substr(0, length);
        characters.remove_prefix(length);
        if (!characters.empty()) {
            appendOddByte(characters, data);
            characters.remove_prefix(1);
        }
    }
}

void XMLScanner::appendOddByte(std::string_view characters, std::string& data) const {
    const char first = characters.front();
    const bool isNonCharacter = characters.starts_with("\xEF\xBF\xBE") ||  // U+FFFE
                                characters.starts_with("\xEF\xBF\xBF");    // U+FFFF
    if (isNonCharacter || (first != '\xEF' && first != '\r')) {
        fail("a character that XML does not allow");
    }
    if (first != '\r') {
        data += first;
    } else if (characters.substr(1, 1) != "\n") {  // XML 1.0, 2.11: line ends
        data += '\n';
    }
}

void XMLScanner::readCharacterReference(std::string_view reference, std::string& data) {
    const bool isHexadecimal = reference.starts_with('x');
    reference.remove_prefix(isHexadecimal ? 1 : 0);
    std::uint32_t codePoint = 0;
    const char* const end = reference.data() + reference.size();
    const auto result = std::from_chars(reference.data(), end, codePoint, isHexadecimal ? 16 : 10);
    if (result.ec != std::errc() || result.ptr != end || !isCharacter(codePoint)) {
        fail("a reference to no character");
    }
    appendUTF8(codePoint, data);
}

void XMLScanner::readReference(std::string& data) {
    constexpr std::pair<std::string_view, char> kEntities[] = {
        {"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"apos", '\''}, {"quot", '"'}};
    if (skip("#")) {
        readCharacterReference(name("a reference to no character"), data);
    } else {
        const std::string_view entity = name("an ampersand that begins no reference");
        const auto* const known =
            std::find_if(std::begin(kEntities), std::end(kEntities),
                         [entity](const auto& each) { return each.first == entity; });
        if (known == std::end(kEntities)) {
            fail("an entity that XML does not define");
        }
        data += known->second;
    }
    expect(";", "a reference without a semicolon");
}

std::string XMLScanner::characterData() {
    std::string data;
    while (true) {
        const std::string_view rest = text_.substr(position_);
        const auto* const markup = std::find_if(rest.begin(), rest.end(), isMarkup);
        const std::string_view plain =
            rest.substr(0, static_cast<std::size_t>(markup - rest.begin()));
        if (plain.find("]]>") != std::string_view::npos) {
            fail("\"]]>\" outside a CDATA section");
        }
        append(plain, data);
        position_ += plain.size();
        if (skip("&")) {
            readReference(data);
        } else if (skip("<![CDATA[")) {
            append(upTo("]]>", "a CDATA section never ends"), data);
        } else if (!skipComment()) {
            return data;
        }
    }
}

}  // namespace TkPPDUpdating
