#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdlib>
#include <random>
#include <string>
#include <string_view>

#include "tests/support/NumberFromEnvironment.h"
#include "tests/updaters/capabilities/ChangedText.h"
#include "tests/updaters/capabilities/ConstraintRemovalModel.h"
#include "updaters/capabilities/PPDConstraintRemoval.h"

namespace TkPPDUpdating::Testing {
namespace {

using namespace std::string_view_literals;

constexpr unsigned kTextsInEveryRun = 5000;

/// scripts/check-constraint-removal asks for more.
unsigned long numberOfTexts() {
    return numberFromEnvironment("TKPPDUPDATING_RANDOM_TEXTS", kTextsInEveryRun);
}

/// Pieces of which a text is made at random: whole lines as they stand in PPDs, and fragments that
/// form them only when what stood between is removed.
constexpr std::array kPieces = {
    "*UIConstraints: *Duplex DuplexTumble *MediaType Glossy\n"sv,
    "*UIConstraints: *MediaType Glossy *Duplex\n"sv,
    "*UIConstraints: *MediaType Glossy *Duplex\r\n"sv,
    "*UIConstraints: *DuplexUnit False *InputSlot Lower\n"sv,
    "*UIConstraints:"sv,
    "UIConstraints: "sv,
    "*UI"sv,
    "Constraints: *Duplex "sv,
    "*% Duplex <-> MediaType\n"sv,
    "*% Duplex <-> "sv,
    "*% Dup"sv,
    "lex <-> "sv,
    "Duplex <-> \n"sv,
    "% "sv,
    "*"sv,
    "**"sv,
    "*Duplex"sv,
    "*Duplex "sv,
    "Duplex"sv,
    "*% "sv,
    " "sv,
    "\n"sv,
    "\n"sv,
    "\r\n"sv,
    "*PageSize A4/A4: \"\"\n"sv,
    "\0"sv,
};

constexpr std::array kKeywords = {"Duplex"sv, "Duplex"sv, "Duplex"sv, "Duplex"sv, "Duplex"sv,
                                  ""sv,       "*"sv,      "%"sv,      "Dup"sv};

template <typename Values>
std::string_view oneOf(const Values& values, std::mt19937& random) {
    return values[random() % values.size()];
}

std::string randomText(std::mt19937& random) {
    std::string text;
    for (auto pieces = random() % 60; pieces > 0; --pieces) {
        text += oneOf(kPieces, random);
    }
    return text;
}

TEST(ConstraintRemoval, GivesWhatTheWordByWordModelGivesForRandomTexts) {
    std::mt19937 random(20010101);  // NOLINT(cert-msc51-cpp): the same texts in every run
    unsigned changed = 0;
    const unsigned long count = numberOfTexts();
    for (unsigned long i = 0; i < count; ++i) {
        const std::string text = randomText(random);
        const std::string keyword(oneOf(kKeywords, random));
        const std::string expected = ConstraintRemovalModel::removed(text, keyword);
        const PPDText result = PPDTextByRemovingConstraints(makePPDText(text), keyword);
        ASSERT_EQ(*result, expected) << "keyword: " << keyword << "\ntext: " << text;
        changed += expected != text ? 1 : 0;
    }
    RecordProperty("texts", static_cast<int>(count));
    EXPECT_GT(changed, count / 3) << "too few texts have anything to remove";
}

TEST(ConstraintRemoval, GivesTheSameForRandomTextsThatUpdatersHaveChanged) {
    constexpr std::array kLines = {
        "*UIConstraints: *Duplex DuplexTumble *MediaType Glossy"sv,
        "*UIConstraints: *MediaType Glossy *Duplex"sv,
        "*UIConstraints: *DuplexUnit False *InputSlot Lower"sv,
        "*% Duplex <-> MediaType"sv,
        "x *% Duplex <-> MediaType"sv,
        "*"sv,
        ""sv,
    };
    std::mt19937 random(20010102);  // NOLINT(cert-msc51-cpp): the same texts in every run
    unsigned changed = 0;
    const unsigned long count = numberOfTexts() / 5;
    for (unsigned long i = 0; i < count; ++i) {
        const PPDText text = changedText(
            randomText(random), [&](std::size_t most) { return random() % (most + 1); },
            [&] { return oneOf(kLines, random); });
        const std::string& before = *text;
        const std::string expected = ConstraintRemovalModel::removed(before, "Duplex");
        ASSERT_EQ(*PPDTextByRemovingConstraints(text, "Duplex"), expected) << before;
        changed += expected != before ? 1 : 0;
    }
    EXPECT_GT(changed, count / 3) << "too few texts have anything to remove";
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
