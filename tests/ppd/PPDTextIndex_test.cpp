#include "ppd/PPDTextIndex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "text/CaseFolding.h"
#include "text/UTF8.h"

namespace TkPPDUpdating::Testing {
namespace {

using Line = PPDTextIndex::Line;

PPDTextIndex indexOf(std::string text) {
    return PPDTextIndex(std::make_shared<const std::string>(std::move(text)));
}

/// The lines as a plain list of strings.
std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    for (std::size_t end = text.find('\n'); end != std::string::npos;
         end = text.find('\n', start)) {
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    if (start < text.size()) {
        lines.push_back(text.substr(start));
    }
    return lines;
}

std::string keywordOf(const std::string& line) {
    return line.substr(1, line.find_first_of(" \t/:", 1) - 1);
}

/// Texts of few keywords in many spellings, with quotes, asterisks and wide characters anywhere;
/// now and then one that is not UTF-8 or holds a NUL.
class Texts {
  public:
    explicit Texts(std::uint32_t seed) : random_(seed) {}

    std::string text() {
        std::string all;
        std::string last;
        for (std::size_t lines = below(60); lines > 0; --lines) {
            last = below(5) == 0 ? last : line();
            all += last + (below(40) == 0 ? "" : "\n");
        }
        if (below(10) == 0 && !all.empty()) {
            all.insert(below(all.size()), 1, oneOf({"\xC3", "\xFF", "\x80"}).front());
        }
        if (below(10) == 0 && !all.empty()) {
            all.insert(below(all.size()), 1, '\0');
        }
        return all;
    }
    std::string keyword() {
        constexpr const char* kKelvinSignAndEy = "\xE2\x84\xAA\x65\x79";
        return oneOf({"", "A", "a", "Key", "KEY", kKelvinSignAndEy, "ke", "Keys", "PageSize",
                      "pagesize", "ImageableArea", "ThisKeywordIsVeryLong", "thiskeywordisverylong",
                      "ThisKeywordIsVeryLonG2", "Sixteen_letters_", "Seventeen_letters",
                      "\xC3\x89t\xC3\xA9", "\xC3\xA9T\xC3\x89"});
    }

  private:
    std::size_t below(std::size_t bound) { return random_() % bound; }
    std::string oneOf(std::initializer_list<std::string> texts) {
        return texts.begin()[below(texts.size())];
    }
    std::string line() {
        if (below(8) == 0) {
            return oneOf({"*End", "*End", "*End ", "", "text", "text\"", " *Key: \"a", "\"", "*"});
        }
        return oneOf({"*", "*", "*", "*", "*%", "", " "}) +
               oneOf({"", "", "", "de.", "zh_TW.", ".", "de.fr."}) + keyword() +
               oneOf({"", " A", " *B", "\tA", "/T", " A/T\"t", " A/\xC3\xA9"}) +
               oneOf({":", ":", ": ", ":\t", " : ", "", "::"}) +
               oneOf(
                   {"\"", "\"\"", "\"a\"", "\"a", "12", "a\"b\"", "*a b", "\xF0\x9F\x98\x80", ""});
    }

    std::mt19937 random_;
};

std::vector<PPDTextIndex::LongValue> longValuesOf(const std::vector<std::string>& lines) {
    std::vector<PPDTextIndex::LongValue> values;
    bool isOpen = false;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::string& line = lines[i];
        if (isOpen) {
            isOpen = line.find('"') == std::string::npos;
            values.back().closes = static_cast<Line>(isOpen ? lines.size() : i);
            continue;
        }
        const std::size_t colon = line.find(':');
        if (!line.starts_with('*') || line.starts_with("*%") || colon == std::string::npos) {
            continue;
        }
        const std::size_t value = line.find_first_not_of(" \t", colon + 1);
        isOpen = value != std::string::npos && line[value] == '"' &&
                 line.find('"', value + 1) == std::string::npos;
        if (isOpen) {
            values.push_back({static_cast<Line>(i), static_cast<Line>(lines.size())});
        }
    }
    return values;
}

void expectItsLines(const PPDTextIndex& index, const std::string& text,
                    const std::vector<std::string>& lines) {
    ASSERT_EQ(index.size(), lines.size());
    std::size_t start = 0;
    for (Line line = 0; line < index.size(); ++line) {
        const std::string& expected = lines[line];
        ASSERT_EQ(index.line(line), expected);
        ASSERT_EQ(index.start(line), start);
        const std::size_t end = std::min(start + expected.size() + 1, text.size());
        ASSERT_EQ(index.lineWithLineFeed(line), text.substr(start, end - start));
        ASSERT_EQ(index.lineAt(start), line);
        ASSERT_EQ(index.lineAt(end - 1), line);
        start = end;
    }
    ASSERT_EQ(index.endsWithLineFeed(), text.ends_with('\n'));
}

void expectItsPlaces(const PPDTextIndex& index, const std::string& text,
                     const std::vector<std::string>& lines) {
    std::vector<Line> ends;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (lines[i] == "*End") {
            ends.push_back(static_cast<Line>(i));
        }
    }
    ASSERT_EQ(std::vector<Line>(index.endLines().begin(), index.endLines().end()), ends);
    std::vector<std::uint32_t> asterisks;
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (text[i] == '*' && text[i - 1] != '\n') {
            asterisks.push_back(static_cast<std::uint32_t>(i));
        }
    }
    ASSERT_EQ(
        std::vector<std::uint32_t>(index.innerAsterisks().begin(), index.innerAsterisks().end()),
        asterisks);
    ASSERT_EQ(index.firstInvalidUTF8Byte(), firstInvalidUTF8Byte(text));
    const std::size_t NUL = text.find('\0');
    ASSERT_EQ(index.firstNULByte(), NUL == std::string::npos ? std::nullopt : std::optional(NUL));
}

void expectItsLongValues(const PPDTextIndex& index, const std::vector<std::string>& lines) {
    const auto values = longValuesOf(lines);
    ASSERT_EQ(index.longValues().size(), values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        ASSERT_EQ(index.longValues()[i].opens, values[i].opens);
        ASSERT_EQ(index.longValues()[i].closes, values[i].closes);
    }
    ASSERT_EQ(index.endsInLongValue(), !values.empty() && values.back().closes == lines.size());
    for (Line line = 0; line < index.size(); ++line) {
        const auto found = std::find_if(values.begin(), values.end(), [&](const auto& each) {
            return each.opens <= line && line <= each.closes;
        });
        const auto* const value = index.longValueAt(line);
        ASSERT_EQ(value != nullptr, found != values.end()) << line;
        ASSERT_TRUE(!value || value->opens == found->opens) << line;
    }
}

/// Every line that a look-up means is in a run that is visited, in line order.
void expectRunsOf(const PPDTextIndex& index, const std::vector<std::string>& lines,
                  const std::string& keyword) {
    std::vector<bool> isVisited(lines.size());
    Line behind = 0;
    index.visitRuns(keyword, [&](const PPDTextIndex::Run& run) {
        EXPECT_LE(behind, run.first);
        EXPECT_LT(run.first, run.end);
        behind = run.end;
        std::fill(isVisited.begin() + run.first, isVisited.begin() + run.end, true);
        return false;
    });
    const std::string wanted = foldedCase(keyword);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::string name = lines[i].starts_with('*') ? foldedCase(keywordOf(lines[i])) : "?";
        if (name == wanted || name.ends_with("." + wanted)) {
            ASSERT_TRUE(isVisited[i]) << '"' << keyword << "\": " << lines[i];
        }
    }
}

/// A run as a test compares it: its first line, the line behind its last one, and its keyword.
using RunOfLines = std::tuple<Line, Line, std::string>;

std::vector<RunOfLines> allRunsOf(const PPDTextIndex& index) {
    std::vector<RunOfLines> runs;
    index.visitAllRuns(
        [&](const PPDTextIndex::Run& run) { runs.emplace_back(run.first, run.end, run.keyword); });
    return runs;
}

/// Lines in a row that have the same keyword are one run.
void expectAllRuns(const PPDTextIndex& index, const std::vector<std::string>& lines) {
    std::vector<RunOfLines> expected;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (!lines[i].starts_with('*')) {
            continue;
        }
        const std::string keyword = keywordOf(lines[i]);
        const bool goesOn = !expected.empty() && std::get<1>(expected.back()) == i &&
                            std::get<2>(expected.back()) == keyword;
        if (!goesOn) {
            expected.emplace_back(static_cast<Line>(i), static_cast<Line>(i), keyword);
        }
        std::get<1>(expected.back()) = static_cast<Line>(i + 1);
    }
    ASSERT_EQ(allRunsOf(index), expected);
}

/// Whether the look-up visits the line.
bool isVisited(const PPDTextIndex& index, std::string_view keyword, Line line) {
    return index.visitRuns(
        keyword, [&](const PPDTextIndex::Run& run) { return run.first <= line && line < run.end; });
}

TEST(PPDTextIndex, TellsWhatAPlainListOfStringsTells) {
    for (std::uint32_t seed = 0; seed < 250; ++seed) {
        Texts texts(seed);
        const std::string text = texts.text();
        SCOPED_TRACE("seed " + std::to_string(seed));
        const auto index = indexOf(text);
        const auto lines = linesOf(text);
        expectItsLines(index, text, lines);
        expectItsPlaces(index, text, lines);
        expectItsLongValues(index, lines);
        expectAllRuns(index, lines);
        for (int i = 0; i < 10; ++i) {
            expectRunsOf(index, lines, texts.keyword());
        }
        if (HasFatalFailure()) {
            return;
        }
    }
}

TEST(PPDTextIndex, FindsEachOfThousandsOfKeywords) {
    std::string text;
    for (int i = 0; i < 5000; ++i) {
        text += "*Option" + std::to_string(i) + " A: 1\n";
    }
    const auto index = indexOf(text);
    for (Line i = 0; i < 5000; ++i) {
        std::vector<Line> found;
        index.visitRuns("OPTION" + std::to_string(i), [&](const PPDTextIndex::Run& run) {
            found.push_back(run.first);
            return false;
        });
        ASSERT_TRUE(std::find(found.begin(), found.end(), i) != found.end()) << i;
        ASSERT_LT(found.size(), 3U) << i;
    }
}

TEST(PPDTextIndex, LinesInARowWithOneKeywordAreOneRunWhateverEndsIt) {
    for (std::size_t length = 1; length <= 40; ++length) {
        const std::string keyword(length, 'K');
        const std::string line = "*" + keyword;
        const auto index =
            indexOf("*Other: 1\n" + line + ": 1\n" + line + "/x: 2\n" + line + "\tA: 3\n" + line +
                    "\n" + line + "x: 4\n" + line + " A: 5\nno keyword\n" + line + ": 6\n" + line);
        ASSERT_EQ(allRunsOf(index), (std::vector<RunOfLines>{{0, 1, "Other"},
                                                             {1, 5, keyword},
                                                             {5, 6, keyword + "x"},
                                                             {6, 7, keyword},
                                                             {8, 10, keyword}}));
    }
}

TEST(PPDTextIndex, BytesBehindTheTextAreNoneOfIt) {
    const std::string whole = "*Other: 1\n*Another: 1\n*Key";
    std::string text = whole + "?..: 1\n";
    text.resize(whole.size());  // leaves them where they are
    const auto index = indexOf(std::move(text));
    EXPECT_EQ(allRunsOf(index),
              (std::vector<RunOfLines>{{0, 1, "Other"}, {1, 2, "Another"}, {2, 3, "Key"}}));
    EXPECT_TRUE(isVisited(index, "key", 2));
}

TEST(PPDTextIndex, FindsAKeywordInEitherCaseWhereverTheLetterStandsInIt) {
    // Of some the two letters take a different number of bytes.
    const std::pair<std::string, std::string> letters[] = {
        {"\xE2\x84\xAA", "k"},         // Kelvin sign
        {"\xC5\xBF", "s"},             // long s
        {"\xC8\xBA", "\xE2\xB1\xA5"},  // A with stroke
        {"\xC3\x89", "\xC3\xA9"},      // E with acute
        {"X", "x"},
    };
    for (const auto& [one, other] : letters) {
        for (std::size_t before = 0; before <= 36; ++before) {
            for (std::size_t behind = 0; behind <= 18; ++behind) {
                const std::string keyword =
                    std::string(before, 'a') + one + std::string(behind, 'B');
                const std::string same =
                    std::string(before, 'A') + other + std::string(behind, 'b');
                const auto index = indexOf("*" + keyword + ": 1\nno keyword\n*" + same + ": 1\n");
                ASSERT_TRUE(isVisited(index, keyword, 2)) << keyword;
                ASSERT_TRUE(isVisited(index, same, 0)) << keyword;
            }
        }
    }
}

TEST(PPDTextIndex, VisitsHardlyAnyRunOfAKeywordThatDiffersInOneLetter) {
    int others = 0;
    for (std::size_t length = 1; length <= 40; ++length) {
        std::vector<std::string> keywords(length + 1, std::string(length, 'a'));
        std::string text = "*" + keywords.back() + ": 1\n";
        for (std::size_t at = 0; at < length; ++at) {
            keywords[at][at] = 'Z';
            text += "*" + keywords[at] + ": 1\n";
        }
        const auto index = indexOf(text);
        for (const std::string& keyword : keywords) {
            index.visitRuns(keyword, [&](const PPDTextIndex::Run& run) {
                others += run.keyword == keyword ? 0 : 1;
                return false;
            });
        }
    }
    // By chance two may meet, once in a hundred thousand times that this runs.
    EXPECT_LE(others, 2);
}

TEST(PPDTextIndex, OfSeveralBytesThatAreNoUTF8OrNULTheFirstOneCounts) {
    for (const std::size_t first : {0U, 10U, 63U, 64U, 100U}) {
        for (const std::size_t second : {101U, 127U, 128U, 200U, 299U}) {
            std::string text(300, 'a');
            text[first] = text[second] = '\xFF';
            EXPECT_EQ(indexOf(text).firstInvalidUTF8Byte(), first) << second;
            text[first] = text[second] = '\0';
            EXPECT_EQ(indexOf(text).firstNULByte(), first) << second;
        }
    }
}

TEST(PPDTextIndex, QuotesOnLinesWithoutAColonTakeLinearTime) {
    std::string text;
    for (int i = 0; i < 800000; ++i) {
        text += "*A \"\n";
    }
    EXPECT_TRUE(indexOf(std::move(text)).longValues().empty());
}

TEST(PPDTextIndex, EndsInALongValueWhenTheLastOneNeverCloses) {
    for (const char* const text : {"", "*A: 1\n", "*A: \"b\"\n", "*A: \"b\nc\"\n", "*A: \"b\nc\"",
                                   "*A: \"b\nc\"\n*B: \"d\"\n"}) {
        EXPECT_FALSE(indexOf(text).endsInLongValue()) << text;
    }
    for (const char* const text :
         {"*A: \"", "*A: \"b\n", "*A: \"b\nc\n*B: 1\n", "*A: \"b\nc\"\n*B: \"d\ne\n"}) {
        EXPECT_TRUE(indexOf(text).endsInLongValue()) << text;
    }
}

TEST(PPDTextIndex, VisitsRunsUntilOneIsAccepted) {
    const auto index = indexOf("*A: 1\n*B: 1\n*A: 2\n*a: 3\n");
    std::vector<Line> visited;
    EXPECT_TRUE(index.visitRuns("A", [&](const PPDTextIndex::Run& run) {
        visited.push_back(run.first);
        return run.first == 2;
    }));
    EXPECT_EQ(visited, (std::vector<Line>{0, 2}));
    EXPECT_FALSE(index.visitRuns("C", [](const PPDTextIndex::Run&) { return true; }));
}

TEST(PPDTextIndex, AnEmptyTextHasNoLines) {
    const auto index = indexOf("");
    EXPECT_EQ(index.size(), 0U);
    EXPECT_FALSE(index.endsWithLineFeed());
    EXPECT_FALSE(index.visitRuns("", [](const PPDTextIndex::Run&) { return true; }));
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
