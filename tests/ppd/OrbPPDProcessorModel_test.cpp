#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <optional>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>

#include "ppd/OrbPPDProcessor.h"
#include "tests/ppd/PPDTextModel.h"
#include "tests/ppd/ProcessorTesting.h"
#include "tests/support/NumberFromEnvironment.h"

namespace TkPPDUpdating::Testing {
namespace {

using MaybeText = std::optional<std::string>;

/// Texts that are made to be confused with each other: few keywords in many spellings, separators
/// where they do not belong, quotes that open and never close.
class HostileTexts {
  public:
    explicit HostileTexts(std::uint32_t seed) : random_(seed) {}

    std::size_t below(std::size_t bound) { return random_() % bound; }
    bool oneIn(std::size_t times) { return below(times) == 0; }

    std::string keyword() {
        return oneOf({"Key",     "key",    "KEY",      "Foo",      "K",        "\xE2\x84\xAA",
                      "k",       "S",      "\xC5\xBF", "\xC3\x89", "\xC3\xA9", "Key A",
                      "Key a:b", "a:b",    "a",        "A/B",      "",         "Key:",
                      ".Key",    "en.Key", "fr.Key",   "EN.K",     "a:b.Key",  "cupsLanguages"});
    }
    std::string spec() {
        return oneOf({"A", "a", "B", "S", "\xC5\xBF", "\xC3\xA9", "A B", "a:b", "a/b", "A ", "",
                      " A", "a:", "/", ":", "Text"});
    }
    std::string text() {
        return oneOf({"Text", "", " 12", "5\" disk", "\xC3\xA9t\xC3\xA9", "a:b", "a/b", " Foo",
                      std::string(80, 'x'), std::string(78, 'x') + "\xF0\x9F\x98\x80"});
    }
    std::string value() {
        return oneOf({"12",
                      "1",
                      "",
                      " ",
                      "\"\"",
                      "\"x\"",
                      "\"open",
                      "close\"",
                      "\"a\" \"b\"",
                      "Foo",
                      "foo",
                      "FooBar",
                      "\xC3\xA9",
                      "\xF0\x9F\x98\x80",
                      "a\"b",
                      "12\r",
                      "*End",
                      "1 ",
                      "\"de fr\"",
                      "\"en  de\"",
                      std::string(300, 'v'),
                      longValue()});
    }
    std::string line() {
        switch (below(12)) {
            case 0:
                return oneOf({"*End", "*End", "*End", "*end", "*End ", " *End", "*End\r", ""});
            case 1:
                return oneOf({"text\"", "*", "*:", "* :", "Key: 12", " *Key: 12", "*%Key: 12",
                              "*Key", "*Key A", "*Key\tA: 12", "*Key:12", "*K A/",
                              "*\xE2\x84\xAA:"});
            case 2:
                return oneOf({"*cupsLanguages: \"en fr\"", "*cupsLanguages: \"fr  de\"",
                              "*cupsLanguages: fr a:b", "*CUPSLANGUAGES: \"\"", "*cupsLanguages: 1",
                              "*en.Key: \"\"", "*fr.Key A/Text: \"\"", "*.Key: \"\"",
                              "*a:b.Key: \"\"", "*en.cupsLanguages: \"\""});
            default: {
                std::string line = "*" + keyword();
                if (oneIn(2)) {
                    line += spaces() + spec() + (oneIn(2) ? "/" + text() : "");
                }
                return line + ":" + (oneIn(8) ? "" : spaces()) + value();
            }
        }
    }

    MaybeText maybe(std::string text, std::size_t presentOutOf4) {
        return below(4) < presentOutOf4 ? MaybeText(std::move(text)) : std::nullopt;
    }

  private:
    std::string oneOf(std::initializer_list<std::string> texts) {
        return texts.begin()[below(texts.size())];
    }
    std::string spaces() { return std::string(1 + (oneIn(4) ? below(3) : 0), ' '); }
    std::string longValue() {
        std::string words = oneIn(2) ? "\"" : "";
        for (std::size_t length = 0; length < 400;) {
            const std::size_t word = below(60);
            words += std::string(word, 'w') + " ";
            length += word + 1;
        }
        return words + (words.front() == '"' ? "end\"" : "end");
    }

    std::mt19937 random_;
};

/// One PPD as processor and as model, edited alike.
class Pair {
  public:
    Pair(std::string content, HostileTexts& texts)
        : processor_(processorOver(content)), model_(std::move(content)), texts_(texts) {}

    /// Makes one random step with both; false when they have failed alike in a deletion, after
    /// which nothing is promised.
    bool step() {
        switch (texts_.below(16)) {
            case 0:
            case 1:
                return remove();
            case 2:
            case 3:
                insert();
                return true;
            case 4:
                setInsertLocation();
                return true;
            case 5:
                if (texts_.oneIn(3)) {
                    EXPECT_EQ(*processor_->content(), model_.content());
                }
                return true;
            case 6:
                editALine();
                return true;
            case 7:
                localizations();
                return true;
            case 8:
            case 9:
            case 10:
                value();
                return true;
            default:
                range();
                return true;
        }
    }

    /// Inserts lines at one place until the blocks in which the processor keeps them must split.
    void insertManyLinesAtOnePlace() {
        const std::size_t index = texts_.below(model_.lines().size() + 1);
        story_ << "insert many lines at " << index << "\n";
        for (std::size_t i = 0; i < 700; ++i) {
            // Behind the last one, or anywhere among those before.
            const std::size_t here = index + (texts_.oneIn(2) ? texts_.below(i + 1) : i);
            const std::string line = texts_.line();
            processor_->lines()->insert(here, line);
            model_.insertLine(here, line);
        }
        processor_->clearContent();
        model_.clearContent();
    }

    /// Removes so many lines at one place that whole blocks go.
    void removeManyLinesAtOnePlace() {
        const std::size_t size = model_.lines().size();
        const std::size_t index = texts_.below(size + 1);
        const std::size_t count = std::min<std::size_t>(size - index, texts_.below(1200));
        story_ << "remove " << count << " lines at " << index << "\n";
        processor_->lines()->erase(index, count);
        for (std::size_t i = 0; i < count; ++i) {
            model_.eraseLine(index);
        }
        processor_->clearContent();
        model_.clearContent();
    }

    void compareWhole() {
        ASSERT_EQ(linesOf(*processor_), model_.lines());
        ASSERT_EQ(processor_->insertLocation(), model_.insertLocation());
        ASSERT_EQ(*processor_->content(), model_.content());
    }

    /// What was done, for the message of a failure.
    std::string story() const { return story_.str(); }

  private:
    /// Both results, or both errors, must be equal; whether there was a result.
    template <typename OfProcessor, typename OfModel>
    static bool same(const OfProcessor& ofProcessor, const OfModel& ofModel) {
        using Result = decltype(ofModel());
        std::optional<Result> actual;
        std::optional<Result> expected;
        try {
            actual = ofProcessor();
        } catch (const std::out_of_range&) {
        }
        try {
            expected = ofModel();
        } catch (const std::out_of_range&) {
        }
        EXPECT_EQ(actual, expected);
        return expected.has_value();
    }

    void chooseArguments(const char* operation) {
        keyword_ = texts_.oneIn(50) ? std::nullopt : MaybeText(texts_.keyword());
        spec_ = texts_.maybe(texts_.spec(), 2);
        value_ = texts_.maybe(texts_.value(), 1);
        story_ << operation << " [" << keyword_.value_or("(null)") << "] ["
               << spec_.value_or("(null)") << "] [" << value_.value_or("(null)") << "]\n";
    }

    void range() {
        chooseArguments("range");
        same(
            [&] {
                const auto range =
                    processor_->rangeOfAttributeWithKeyword_spec_value(keyword_, spec_, value_);
                return PPDTextModel::Range(range.location, range.length);
            },
            [&] { return model_.range(keyword_, spec_, value_); });
    }

    void value() {
        chooseArguments("value");
        same([&] { return processor_->valueForAttributeWithKeyword_spec(keyword_, spec_); },
             [&] { return model_.value(keyword_, spec_); });
    }

    void localizations() {
        story_ << "localizations\n";
        same([&] { return processor_->localizations(); }, [&] { return model_.localizations(); });
    }

    bool remove() {
        chooseArguments("delete");
        return same(
            [&] {
                return processor_->deleteAttributeWithKeyword_spec_value(keyword_, spec_, value_);
            },
            [&] { return model_.remove(keyword_, spec_, value_); });
    }

    void insert() {
        chooseArguments("insert");
        value_ = texts_.oneIn(20) ? std::nullopt : MaybeText(texts_.value());
        const MaybeText text = texts_.maybe(texts_.text(), 2);
        const bool wrap = texts_.oneIn(2);
        story_ << "  with [" << text.value_or("(null)") << "] [" << value_.value_or("(null)")
               << "] wrap " << wrap << " at " << model_.insertLocation() << "\n";
        same(
            [&] {
                return processor_->insertAttributeWithKeyword_spec_text_value_wrap(
                    keyword_, spec_, text, value_, wrap);
            },
            [&] { return model_.insert(keyword_, spec_, text, value_, wrap); });
    }

    void setInsertLocation() {
        const std::size_t location = texts_.oneIn(4) ? kTkPPDProcessorPPDEndLocation
                                                     : texts_.below(model_.lines().size() + 3);
        story_ << "insert location " << location << "\n";
        processor_->setInsertLocation(location);
        model_.setInsertLocation(location);
        EXPECT_EQ(processor_->insertLocation(), model_.insertLocation());
    }

    void editALine() {
        const std::size_t size = model_.lines().size();
        if (size > 0 && texts_.oneIn(2)) {
            const std::size_t index = texts_.below(size);
            story_ << "erase line " << index << "\n";
            processor_->lines()->erase(index, 1);
            model_.eraseLine(index);
        } else {
            const std::size_t index = texts_.below(size + 1);
            const std::string line = texts_.line();
            story_ << "insert line " << index << " [" << line << "]\n";
            processor_->lines()->insert(index, line);
            model_.insertLine(index, line);
        }
        processor_->clearContent();
        model_.clearContent();
    }

    std::unique_ptr<OrbPPDProcessor> processor_;
    PPDTextModel model_;
    HostileTexts& texts_;
    MaybeText keyword_;
    MaybeText spec_;
    MaybeText value_;
    std::ostringstream story_;
};

void runSequence(std::uint32_t seed, std::size_t lineCount, std::size_t stepCount,
                 std::size_t stepsBetweenManyLines = SIZE_MAX) {
    HostileTexts texts(seed);
    // Most texts name their languages first, so that deletions seldom end in an error.
    std::string content = texts.oneIn(8) ? "" : "*cupsLanguages: \"en fr  a:b\"\n";
    for (std::size_t i = 0; i < lineCount; ++i) {
        content += texts.line();
        content += i + 1 < lineCount || !texts.oneIn(4) ? "\n" : "";
    }
    Pair pair(content, texts);
    for (std::size_t i = 0; i < stepCount && !::testing::Test::HasFailure(); ++i) {
        if (!pair.step()) {
            return;
        }
        if (texts.oneIn(stepsBetweenManyLines)) {
            pair.insertManyLinesAtOnePlace();
            pair.removeManyLinesAtOnePlace();
        }
    }
    pair.compareWhole();
    if (::testing::Test::HasFailure()) {
        ADD_FAILURE() << "seed " << seed << ", " << lineCount << " lines:\n"
                      << (content.size() < 5000 ? content : "(long)") << "\n--- steps:\n"
                      << pair.story();
    }
}

/// How many times as many sequences as usual are run: the whole number in the environment variable
/// TKPPDUPDATING_MORE_SEQUENCES, for a long hunt after a change of the processor.
std::uint32_t timesAsManySequences() {
    return static_cast<std::uint32_t>(
        std::max(1UL, numberFromEnvironment("TKPPDUPDATING_MORE_SEQUENCES", 1)));
}

TEST(OrbPPDProcessorModel, AgreesWithAPlainListOfStringsOverManyShortTexts) {
    constexpr std::uint32_t kFirstSeed = 20010101;
    const std::uint32_t count = 1000 * timesAsManySequences();
    for (std::uint32_t seed = kFirstSeed; seed < kFirstSeed + count; ++seed) {
        HostileTexts sizes(~seed);
        runSequence(seed, sizes.below(40), 10 + sizes.below(60));
        if (HasFailure()) {
            return;
        }
    }
}

TEST(OrbPPDProcessorModel, AgreesWithAPlainListOfStringsOverLongTexts) {
    constexpr std::uint32_t kFirstSeed = 42;
    const std::uint32_t count = 3 * timesAsManySequences();
    for (std::uint32_t seed = kFirstSeed; seed < kFirstSeed + count; ++seed) {
        HostileTexts sizes(~seed);
        // Five to ten blocks at the start, which split and go several times.
        runSequence(seed, 1200 + sizes.below(1300), 120, 25);
        if (HasFailure()) {
            return;
        }
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
