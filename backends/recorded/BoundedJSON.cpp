#include "backends/recorded/BoundedJSON.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "text/CLocaleScope.h"

namespace TkPPDUpdating {

namespace {

using nlohmann::json;

constexpr std::size_t kDeepestNesting = 32;

/// "line L, column C" of the byte at an offset, or of the end of the text.
std::string placeOfByte(std::string_view text, std::size_t offset, std::size_t firstLine) {
    const std::string_view before = text.substr(0, offset);
    const std::size_t lineFeed = before.rfind('\n');
    const std::size_t lineStart = lineFeed == std::string_view::npos ? 0 : lineFeed + 1;
    const auto lineFeeds = std::count(before.begin(), before.end(), '\n');
    return "line " + std::to_string(firstLine + static_cast<std::size_t>(lineFeeds)) + ", column " +
           std::to_string(1 + before.size() - lineStart);
}

/// Where the text first nests too deep, brackets in strings not counted.
std::optional<std::size_t> placeOfTooDeepNesting(std::string_view text) {
    std::size_t depth = 0;
    bool inString = false;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char character = text[at];
        if (inString) {
            at += character == '\\' ? 1 : 0;
            inString = character != '"';
        } else if (character == '"') {
            inString = true;
        } else if (character == '[' || character == '{') {
            if (++depth > kDeepestNesting) {
                return at;
            }
        } else if ((character == ']' || character == '}') && depth > 0) {
            --depth;
        }
    }
    return std::nullopt;
}

/// What the parser says of an error, without its code, the place and the text that it read last,
/// which may be long and is nobody's to show.
std::string causeOf(const json::exception& exception) {
    std::string_view message = exception.what();
    message = message.substr(0, message.find("; last read: "));
    const std::size_t cause = message.find(" - ");
    return cause == std::string_view::npos ? "syntax error"
                                           : std::string(message.substr(cause + 3));
}

/// Builds the value from the parser's events, which tell the place of every error.
class Builder : public json::json_sax_t {
  public:
    Builder(std::string_view text, std::size_t firstLine) : text_(text), firstLine_(firstLine) {}

    bool null() override { return add(nullptr); }
    bool boolean(bool value) override { return add(value); }
    bool number_integer(number_integer_t value) override { return add(value); }
    bool number_unsigned(number_unsigned_t value) override { return add(value); }
    bool number_float(number_float_t value, const string_t& /*digits*/) override {
        return add(value);
    }
    bool string(string_t& value) override { return add(std::move(value)); }
    bool binary(binary_t& /*value*/) override { return false; }  // No part of JSON texts.
    bool start_object(std::size_t /*size*/) override { return open(json::object()); }
    bool start_array(std::size_t /*size*/) override { return open(json::array()); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }
    bool key(string_t& name) override {
        key_ = std::move(name);
        return true;
    }
    bool parse_error(std::size_t position, const std::string& /*lastRead*/,
                     const json::exception& exception) override {
        constexpr int kNumberOverflow = 406;
        error =
            exception.id == kNumberOverflow ? "has a number out of range at " : "is not JSON at ";
        error += placeOfByte(text_, position - 1, firstLine_);
        if (exception.id != kNumberOverflow) {
            error += ": " + causeOf(exception);
        }
        return false;
    }

    json root;
    std::string error;

  private:
    json& place(json value) {
        if (open_.empty()) {
            return root = std::move(value);
        }
        if (open_.back()->is_array()) {
            return open_.back()->emplace_back(std::move(value));
        }
        return (*open_.back())[key_] = std::move(value);
    }
    bool add(json value) {
        place(std::move(value));
        return true;
    }
    bool open(json value) {
        json& placed = place(std::move(value));
        open_.push_back(&placed);
        return true;
    }
    bool close() {
        open_.pop_back();
        return true;
    }

    std::string_view text_;
    std::size_t firstLine_;
    std::string key_;
    /// What is open, from the outside in. A container gets no new element while one of its elements
    /// is open, so none of them moves.
    std::vector<json*> open_;
};

}  // namespace

std::optional<json> JSONWithText(std::string_view text, std::string& error, std::size_t firstLine) {
    if (const auto offset = placeOfTooDeepNesting(text)) {
        error = "nests deeper than " + std::to_string(kDeepestNesting) + " levels at " +
                placeOfByte(text, *offset, firstLine);
        return std::nullopt;
    }
    Builder builder(text, firstLine);
    // The parser looks for the locale's decimal point, of which it takes one byte.
    const CLocaleScope locale;
    if (!json::sax_parse(text.begin(), text.end(), &builder)) {
        error = std::move(builder.error);
        return std::nullopt;
    }
    // The parser takes a NUL for the end of the text, and what comes after it would not be read.
    if (const std::size_t end = text.find('\0'); end != std::string_view::npos) {
        error = "is not JSON at " + placeOfByte(text, end, firstLine) + ": a NUL byte";
        return std::nullopt;
    }
    // A newer library's JSON converts to anything, an optional included: say which is meant.
    return std::optional<json>(std::in_place, std::move(builder.root));
}

}  // namespace TkPPDUpdating
