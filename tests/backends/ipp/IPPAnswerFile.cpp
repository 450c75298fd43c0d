#include "tests/backends/ipp/IPPAnswerFile.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string_view>

#include "tests/support/IPPBytes.h"

namespace TkPPDUpdating::Testing {

namespace {

/// One line with content.
struct Line {
    std::size_t number = 0;
    std::size_t indentation = 0;
    std::string text;
};

[[noreturn]] void fail(const Line& line, const std::string& reason) {
    throw std::runtime_error("line " + std::to_string(line.number) + ": " + reason);
}

std::vector<Line> linesOf(const std::string& text) {
    std::vector<Line> lines;
    std::istringstream stream(text);
    std::size_t number = 0;
    for (std::string line; std::getline(stream, line);) {
        ++number;
        const std::size_t indentation = line.find_first_not_of(' ');
        if (indentation != std::string::npos && line[indentation] != '#') {
            lines.push_back({number, indentation, line.substr(indentation)});
        }
    }
    return lines;
}

/// "\xHH" becomes its byte.
std::string unescaped(std::string_view text) {
    std::string bytes;
    while (!text.empty()) {
        const bool isByte = text.starts_with("\\x") && text.size() >= 4;
        bytes += isByte ? static_cast<char>(std::stoi(std::string(text.substr(2, 2)), nullptr, 16))
                        : text.front();
        text.remove_prefix(isByte ? 4 : 1);
    }
    return bytes;
}

std::vector<std::string> valuesOf(std::string_view text) {
    constexpr std::string_view kBetween = " | ";
    std::vector<std::string> values;
    for (;;) {
        const std::size_t end = text.find(kBetween);
        values.push_back(unescaped(text.substr(0, end)));
        if (end == std::string_view::npos) {
            return values;
        }
        text.remove_prefix(end + kBetween.size());
    }
}

std::string bytesOfNumber(std::uint32_t number) {
    return {static_cast<char>(number >> 24U), static_cast<char>(number >> 16U),
            static_cast<char>(number >> 8U), static_cast<char>(number)};
}

/// "600dpi", "1200x600dpi", "118dpcm".
std::string bytesOfResolution(const std::string& text) {
    const std::size_t cross = text.find('x');
    const auto first = static_cast<std::uint32_t>(std::stoul(text));
    const auto second = cross == std::string::npos
                            ? first
                            : static_cast<std::uint32_t>(std::stoul(text.substr(cross + 1)));
    return bytesOfNumber(first) + bytesOfNumber(second) + (text.ends_with("dpcm") ? '\4' : '\3');
}

/// Reads the attributes of one file.
class Attributes {
  public:
    explicit Attributes(const std::vector<Line>& lines) : lines_(lines) {}

    std::string bytes() {
        while (at_ < lines_.size()) {
            addAttribute(0);
        }
        return message_.end();
    }

  private:
    /// In a collection, a member's name stands in a record of its own.
    void addAttribute(std::size_t indentation) {
        const Line& line = lines_[at_];
        const bool isContinued = line.text.starts_with("+ ");
        const std::size_t colon = line.text.find(": ");
        if (line.indentation != indentation || (!isContinued && colon == std::string::npos)) {
            fail(line, "neither an attribute nor a further value");
        }
        std::string name = isContinued ? std::string() : line.text.substr(0, colon);
        if (indentation > 0 && !name.empty()) {
            message_.value(0x4A, "", name);
            name.clear();
        }
        std::string_view rest = std::string_view(line.text).substr(isContinued ? 2 : colon + 2);
        const std::string_view syntax = rest.substr(0, rest.find(' '));
        rest.remove_prefix(std::min(rest.size(), syntax.size() + 1));
        ++at_;
        if (syntax == "collection") {
            message_.value(0x34, name, "");
            while (at_ < lines_.size() && lines_[at_].indentation > indentation) {
                addAttribute(indentation + 2);
            }
            message_.value(0x37, "", "");
            return;
        }
        addValues(line, name, syntax, rest);
    }

    void addValues(const Line& line, std::string name, std::string_view syntax,
                   std::string_view text) {
        static const std::map<std::string_view, unsigned char> kTags = {
            {"no-value", 0x13}, {"unknown", 0x12}, {"keyword", 0x44},    {"name", 0x42},
            {"text", 0x41},     {"octets", 0x30},  {"resolution", 0x32}, {"integer", 0x21}};
        const auto tag = kTags.find(syntax);
        if (tag == kTags.end()) {
            fail(line, "no syntax");
        }
        for (std::string value : valuesOf(text)) {
            if (syntax == "integer") {
                value = bytesOfNumber(static_cast<std::uint32_t>(std::stoi(value)));
            } else if (syntax == "resolution") {
                value = bytesOfResolution(value);
            }
            message_.value(tag->second, name, value);
            name.clear();
        }
    }

    const std::vector<Line>& lines_;
    std::size_t at_ = 0;
    IPPBytes message_;
};

}  // namespace

IPPAnswerFile IPPAnswerFile::fileWithText(const std::string& text) {
    std::vector<Line> lines = linesOf(text);
    std::vector<Line> attributes;
    std::size_t at = 0;
    for (; at < lines.size() && lines[at].text != "status"; ++at) {
        attributes.push_back(lines[at]);
    }
    IPPAnswerFile file;
    file.bytes = Attributes(attributes).bytes();
    std::string name;
    for (++at; at < lines.size(); ++at) {
        const Line& line = lines[at];
        if (line.indentation > 0) {
            file.lists[name].push_back(line.text);
            continue;
        }
        const std::size_t colon = line.text.find(':');
        if (colon == std::string::npos) {
            fail(line, "no value of a status");
        }
        name = line.text.substr(0, colon);
        const std::size_t value = line.text.find_first_not_of(' ', colon + 1);
        file.status[name] = value == std::string::npos ? "" : line.text.substr(value);
    }
    return file;
}

}  // namespace TkPPDUpdating::Testing
