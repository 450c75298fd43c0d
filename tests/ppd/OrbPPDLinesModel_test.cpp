#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ppd/OrbPPDLines.h"
#include "tests/ppd/PPDTextModel.h"
#include "tests/ppd/ProcessorTesting.h"

namespace TkPPDUpdating::Testing {
namespace {

using MaybeText = std::optional<std::string>;
using MaybeIndex = std::optional<std::size_t>;
using Texts = std::vector<std::string>;

Texts partsOf(const std::string& text) {
    Texts parts(1);
    for (const char c : text) {
        if (c == '\n') {
            parts.emplace_back();
        } else {
            parts.back() += c;
        }
    }
    return parts;
}

/// What `OrbPPDLines` must do, told as a list of strings that every look-up reads from the top.
struct PlainLines {
    explicit PlainLines(const std::string& text)
        : lines(partsOf(text)), endsWithLineFeed(text.ends_with('\n')) {
        if (lines.back().empty()) {
            lines.pop_back();
        }
    }

    std::string text() const {
        std::string text;
        for (const std::string& line : lines) {
            text += line + "\n";
        }
        if (!endsWithLineFeed && !text.empty()) {
            text.pop_back();
        }
        return text;
    }

    template <typename Accepts>
    MaybeIndex first(std::size_t from, const Accepts& accepts) const {
        for (std::size_t i = from; i < lines.size(); ++i) {
            if (accepts(i)) {
                return i;
            }
        }
        return std::nullopt;
    }

    MaybeIndex indexOfAttribute(const std::string& keyword, const MaybeText& spec,
                                const MaybeText& value) const {
        return first(
            0, [&](std::size_t i) { return PPDTextModel::scan(lines[i], keyword, spec, value); });
    }

    MaybeIndex indexOfEndAfter(std::size_t index) const {
        return first(index + 1, [&](std::size_t i) { return lines[i] == "*End"; });
    }

    MaybeIndex indexOfLineBeginning(const std::string& beginning, std::size_t from) const {
        const Texts parts = partsOf(beginning);
        return first(from, [&](std::size_t i) {
            if (i + parts.size() > lines.size()) {
                return false;
            }
            for (std::size_t part = 0; part + 1 < parts.size(); ++part) {
                if (lines[i + part] != parts[part]) {
                    return false;
                }
            }
            return lines[i + parts.size() - 1].starts_with(parts.back());
        });
    }

    bool hasLineFeedInLine() const {
        return std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
            return line.find('\n') != std::string::npos;
        });
    }

    Texts lines;
    bool endsWithLineFeed;
    /// Whether a line with a line feed in it ever stood here.
    bool hadLineFeedInLine = false;
};

/// The language when the line is a translation of the attribute.
MaybeText languageOf(std::string_view line, const std::string& keyword, const MaybeText& spec) {
    const std::string_view name = line.substr(0, line.find_first_of(" \t/:\n"));
    for (std::size_t stop = 1; stop < name.size(); ++stop) {
        if (line[0] == '*' && line[stop] == '.' &&
            PPDTextModel::scan("*" + std::string(line.substr(stop + 1)), keyword, spec,
                               std::nullopt)) {
            return std::string(line.substr(1, stop - 1));
        }
    }
    return std::nullopt;
}

/// Lines and what they are asked for: few names, so that nearly all are found somewhere.
class FewTexts {
  public:
    explicit FewTexts(std::uint32_t seed) : random_(seed) {}

    std::size_t below(std::size_t bound) { return random_() % bound; }
    bool oneIn(std::size_t times) { return below(times) == 0; }
    std::string oneOf(std::initializer_list<const char*> texts) {
        return texts.begin()[below(texts.size())];
    }

    std::string keyword() { return oneOf({"Key", "key", "Foo", "K.L", "a:b", "a:b.Key", "", "*"}); }
    MaybeText spec() {
        return oneIn(2) ? std::nullopt : MaybeText(oneOf({"A", "a", "B", "a:b", "a:", "a/", ""}));
    }
    MaybeText value() { return oneIn(3) ? MaybeText(oneOf({"1", "12", "2"})) : std::nullopt; }

    std::string line() {
        if (oneIn(4)) {
            return oneOf({"*End", "*End", "*end", "*End ", "", "text", "x.Key: 1", "*", "*.", ".",
                          "*.Key: 1", "*K.L", "*en.K.L A", "*a.b.Key A/T: 2"});
        }
        const MaybeText option = spec();
        return "*" + oneOf({"", "", "en.", "fr.", "EN.", ".", "a.b."}) + keyword() +
               (option ? oneOf({" ", "  ", "\t"}) + *option : "") + oneOf({":", "/", "/T:", ":"}) +
               oneOf({" ", ""}) + oneOf({"1", "12", "2", "\"\"", ""});
    }

  private:
    std::mt19937 random_;
};

/// One text as both, edited alike.
class Pair {
  public:
    explicit Pair(const PPDText& text) : lines_(text), plain_(*text) {}

    std::size_t size() const { return plain_.lines.size(); }

    PPDText text() const { return lines_.text(); }
    std::string expectedText() const { return plain_.text(); }

    void insert(std::size_t index, const std::string& line, std::size_t cut) {
        const std::string_view whole = line;
        lines_.insert(index, {whole.substr(0, cut), whole.substr(cut)});
        plain_.lines.insert(plain_.lines.begin() + static_cast<std::ptrdiff_t>(index), line);
        plain_.hadLineFeedInLine = plain_.hadLineFeedInLine || line.find('\n') != std::string::npos;
    }

    void erase(std::size_t index, std::size_t count) {
        lines_.erase(index, count);
        const auto first = plain_.lines.begin() + static_cast<std::ptrdiff_t>(index);
        plain_.lines.erase(first, first + static_cast<std::ptrdiff_t>(count));
    }

    void eraseSomeOfTheBase(FewTexts& texts) {
        std::vector<OrbPPDLines::LineID> going;
        std::vector<std::size_t> indexes;
        for (OrbPPDLines::LineID line = 0; line < lines_.base().size(); ++line) {
            if (!lines_.isGone(line) && texts.oneIn(8)) {
                going.push_back(line);
                indexes.push_back(lines_.indexOf(line));
            }
        }
        lines_.erase(going);
        for (; !indexes.empty(); indexes.pop_back()) {
            plain_.lines.erase(plain_.lines.begin() + static_cast<std::ptrdiff_t>(indexes.back()));
        }
    }

    void setEndsWithLineFeed(bool ends) {
        lines_.setEndsWithLineFeed(ends);
        plain_.endsWithLineFeed = ends;
    }

    void compareAttribute(FewTexts& texts) {
        const std::string keyword = texts.oneOf({"en.", "", "", ""}) + texts.keyword();
        const MaybeText spec = texts.spec();
        const MaybeText value = texts.value();
        EXPECT_EQ(lines_.indexOfAttribute(keyword, spec, value),
                  plain_.indexOfAttribute(keyword, spec, value))
            << keyword << ", " << spec.value_or("(null)") << ", " << value.value_or("(null)");
    }

    /// Until reading the lines of a keyword has cost more than sorting all lines.
    void askOften(FewTexts& texts) {
        const std::string keyword = texts.keyword();
        const MaybeText spec = texts.spec();
        for (int i = 0; i < 200; ++i) {
            EXPECT_EQ(lines_.indexOfAttribute(keyword, spec, "no such value"), std::nullopt);
        }
    }

    void compareEnd(std::size_t index) {
        EXPECT_EQ(lines_.indexOfEndAfter(index), plain_.indexOfEndAfter(index)) << index;
    }

    /// For a beginning that is cut out of the text, and for one that may not be in it.
    void compareBeginning(FewTexts& texts) {
        std::string beginning = texts.oneOf({"*Key:", "*Key A", "*Foo: 1", "*End\n", "*End\n*"});
        const std::string text = plain_.text();
        std::size_t start = texts.below(text.size() + 1);
        start = text.find('*', start);
        if (texts.oneIn(2) && start != std::string::npos) {
            const std::size_t end = text.find_first_of(" \t/:\n", start);
            if (end != std::string::npos) {
                beginning = text.substr(start, end + 1 + texts.below(25) - start);
            }
        }
        const std::size_t from = texts.oneIn(2) ? 0 : texts.below(size() + 2);
        EXPECT_EQ(lines_.indexOfLineBeginning(beginning, from),
                  plain_.indexOfLineBeginning(beginning, from))
            << beginning << ", from " << from;
    }

    void compareTranslations(FewTexts& texts) {
        const std::string keyword = texts.keyword();
        const MaybeText spec = texts.spec();
        bool isOneInserted = false;
        lines_.visitInserted([&](std::size_t /*index*/, std::string_view line) {
            isOneInserted = isOneInserted || languageOf(line, keyword, spec);
        });
        const auto found = lines_.translations(keyword, spec);
        if (!found) {
            EXPECT_TRUE(isOneInserted && plain_.hadLineFeedInLine);
            return;
        }
        EXPECT_FALSE(isOneInserted && plain_.hasLineFeedInLine());
        std::vector<std::pair<std::size_t, MaybeText>> actual;
        for (const OrbPPDLines::LineID line : *found) {
            actual.emplace_back(lines_.indexOf(line), OrbPPDLines::languageOfTranslation(
                                                          lines_.base().line(line), keyword));
        }
        decltype(actual) expected;
        for (std::size_t i = 0; i < size(); ++i) {
            if (const MaybeText language = languageOf(plain_.lines[i], keyword, spec)) {
                expected.emplace_back(i, language);
            }
        }
        EXPECT_EQ(actual, expected) << keyword << ", " << spec.value_or("(null)");
    }

    /// Each line by its index, and by what it is one of: the index beneath, or those inserted.
    void compareWhole() {
        ASSERT_EQ(lines_.size(), size());
        ASSERT_EQ(textsOf(lines_), plain_.lines);
        ASSERT_EQ(lines_.endsWithLineFeed(), plain_.endsWithLineFeed);
        std::vector<MaybeText> told(size());
        std::size_t last = size();
        lines_.visitInserted([&](std::size_t index, std::string_view line) {
            ASSERT_LT(index, last) << "not from the last to the first";
            last = index;
            told[index] = line;
        });
        for (OrbPPDLines::LineID line = 0; line < lines_.base().size(); ++line) {
            if (!lines_.isGone(line)) {
                const std::size_t index = lines_.indexOf(line);
                ASSERT_LT(index, size());
                ASSERT_EQ(told[index], std::nullopt) << "two lines have one index";
                told[index] = lines_.base().line(line);
            }
        }
        ASSERT_EQ(told, std::vector<MaybeText>(plain_.lines.begin(), plain_.lines.end()));
    }

  private:
    OrbPPDLines lines_;
    PlainLines plain_;
};

/// Some texts that come from each other, and share what they have in common.
class Family {
  public:
    Family(FewTexts& texts, std::size_t lineCount, bool mayHaveLineFeedInLine)
        : texts_(texts), mayHaveLineFeedInLine_(mayHaveLineFeedInLine) {
        std::string text;
        for (std::size_t i = 0; i < lineCount; ++i) {
            text += texts.line() + (i + 1 < lineCount || texts.oneIn(2) ? "\n" : "");
        }
        pairs_.assign(3, Pair(makePPDText(std::move(text))));
    }

    void step() {
        Pair& pair = pairs_.at(texts_.below(pairs_.size()));
        switch (texts_.below(20)) {
            case 0:
            case 1:
            case 2:
            case 3:
            case 4:
                return insert(pair);
            case 5:
            case 6: {
                const std::size_t index = texts_.below(pair.size() + 1);
                return pair.erase(index, std::min(pair.size() - index, texts_.below(4)));
            }
            case 7:
                return texts_.oneIn(4) ? pair.eraseSomeOfTheBase(texts_) : void();
            case 8:
                return pair.setEndsWithLineFeed(texts_.oneIn(2));
            case 9:
                return texts_.oneIn(4) ? share(pair) : pair.askOften(texts_);
            case 10:
            case 11:
                return pair.compareTranslations(texts_);
            case 12:
            case 13:
                return pair.compareEnd(texts_.below(pair.size() + 1));
            case 14:
            case 15:
                return pair.compareBeginning(texts_);
            default:
                return pair.compareAttribute(texts_);
        }
    }

    void insert(Pair& pair) {
        // Half of them side by side.
        const std::size_t index =
            texts_.oneIn(2) ? std::min<std::size_t>(5, pair.size()) : texts_.below(pair.size() + 1);
        std::string line = texts_.line();
        if (mayHaveLineFeedInLine_ && texts_.oneIn(20)) {
            line += "\n" + texts_.line();
        }
        pair.insert(index, line, texts_.below(line.size() + 1));
    }

    /// One of the others becomes a copy of this one, or the next text that is made of it.
    void share(Pair& pair) {
        Pair& other = pairs_.at(texts_.below(pairs_.size()));
        if (texts_.oneIn(2)) {
            other = Pair(pair);
            return;
        }
        made_.emplace_back(pair.text(), pair.expectedText());
        if (texts_.oneIn(2)) {
            EXPECT_EQ(*made_.back().first, made_.back().second);
        }
        // Of a text of its own, because reading a text makes its bytes.
        const PPDText text = pair.text();
        other = Pair(text);
    }

    void compareWhole() {
        for (Pair& pair : pairs_) {
            pair.compareWhole();
        }
        // Texts stay what they were when they were made, whatever became of the lists.
        for (const auto& [text, expected] : made_) {
            ASSERT_EQ(*text, expected);
        }
    }

  private:
    FewTexts& texts_;
    bool mayHaveLineFeedInLine_;
    std::vector<Pair> pairs_;
    std::vector<std::pair<PPDText, std::string>> made_;
};

void runSequences(std::uint32_t firstSeed, std::uint32_t count, std::size_t fewestLines,
                  std::size_t stepCount) {
    for (std::uint32_t seed = firstSeed; seed < firstSeed + count; ++seed) {
        FewTexts texts(seed);
        Family family(texts, fewestLines + texts.below(30), seed % 3 == 0);
        for (std::size_t step = 1; step <= stepCount; ++step) {
            family.step();
            if (step % 40 == 0) {
                family.compareWhole();
            }
            ASSERT_FALSE(::testing::Test::HasFailure()) << "seed " << seed << ", step " << step;
        }
    }
}

TEST(OrbPPDLinesModel, AgreesWithAPlainListOfStringsOverShortTexts) {
    runSequences(1, 24, 0, 480);
}

// Long enough that reading a text anew is not worth it at first.
TEST(OrbPPDLinesModel, AgreesWithAPlainListOfStringsOverLongTexts) {
    runSequences(100, 2, 400, 240);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
