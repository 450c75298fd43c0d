#include "sync/PPDChange.h"

#include <gmock/gmock.h>

#include <string>

#include "tests/support/ParsedPPD.h"

namespace TkPPDUpdating {

/// For messages of tests that fail.
void PrintTo(const PPDChange& change, std::ostream* stream) {
    const auto shown = [](const std::optional<PPDChange::State>& state) {
        return state ? "[" + state->text.value_or("no text") + "|" + state->value + "]" : "nothing";
    };
    *stream << change.keyword << "," << change.optionKeyword << ": " << shown(change.before) << " "
            << shown(change.after);
}

namespace Testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using State = PPDChange::State;

std::vector<PPDChange> changes(std::string_view before, std::string_view after) {
    return PPDChangesBetween(*parsedPPD(before), *parsedPPD(after));
}

State value(std::string text) {
    return {std::nullopt, std::move(text)};
}

TEST(PPDChange, AnAttributeWithAnotherValueChanged) {
    EXPECT_THAT(
        changes("*A: 1\n*ZrResolution: 600\n*B: 2\n", "*A: 1\n*ZrResolution: 1200\n*B: 2\n"),
        ElementsAre(PPDChange{"ZrResolution", "", value("600"), value("1200")}));
}

TEST(PPDChange, AnOptionKeywordMakesItAnotherAttribute) {
    EXPECT_THAT(changes("*Size A: \"1\"\n", "*Size B: \"1\"\n"),
                ElementsAre(PPDChange{"Size", "A", value("1"), std::nullopt},
                            PPDChange{"Size", "B", std::nullopt, value("1")}));
}

TEST(PPDChange, ATextIsPartOfTheState) {
    EXPECT_THAT(
        changes("*Type custom1/Gloss: \"x\"\n", "*Type custom1/Canvas: \"x\"\n"),
        ElementsAre(PPDChange{"Type", "custom1", State{"Gloss", "x"}, State{"Canvas", "x"}}));
    EXPECT_THAT(changes("*Type custom1/: \"x\"\n", "*Type custom1: \"x\"\n"),
                ElementsAre(PPDChange{"Type", "custom1", State{"", "x"}, value("x")}));
}

TEST(PPDChange, WhatWentComesFirstInTheOrderBeforeThenWhatCameInTheOrderAfter) {
    EXPECT_THAT(changes("*B: 1\n*Gone: 1\n*A: 1\n", "*New2: 1\n*A: 2\n*New1: 1\n*B: 2\n"),
                ElementsAre(PPDChange{"B", "", value("1"), value("2")},
                            PPDChange{"Gone", "", value("1"), std::nullopt},
                            PPDChange{"A", "", value("1"), value("2")},
                            PPDChange{"New2", "", std::nullopt, value("1")},
                            PPDChange{"New1", "", std::nullopt, value("1")}));
}

TEST(PPDChange, ALineOfARepeatedKeywordWentOrCame) {
    EXPECT_THAT(changes("*UIConstraints: *A *B\n*UIConstraints: *C *D\n",
                        "*UIConstraints: *C *D\n*UIConstraints: *E *F\n"),
                ElementsAre(PPDChange{"UIConstraints", "", value("*A *B"), std::nullopt},
                            PPDChange{"UIConstraints", "", std::nullopt, value("*E *F")}));
}

TEST(PPDChange, EqualLinesAreCounted) {
    EXPECT_THAT(changes("*P q: \"\"\n", "*P q: \"\"\n*P q: \"\"\n*P q: \"\"\n"),
                ElementsAre(PPDChange{"P", "q", std::nullopt, value("")},
                            PPDChange{"P", "q", std::nullopt, value("")}));
    EXPECT_THAT(changes("*P q: \"\"\n*P q: \"\"\n", "*P q: \"\"\n"),
                ElementsAre(PPDChange{"P", "q", value(""), std::nullopt}));
}

TEST(PPDChange, NothingDiffersWhereOnlyTheWritingDoes) {
    EXPECT_THAT(changes("*A:   1\n*B: 2\n", "*B: 2\r\n*A: 1\n"), IsEmpty());
    EXPECT_THAT(changes("*% a comment\n*A: \"\"\n", "*A:\n"), IsEmpty());
}

TEST(PPDChange, TranslationLinesDoNotCount) {
    for (const char* keyword :
         {"de.MediaType", "zh_TW.MediaType", "zh-Hans.MediaType", "en.ZrX", "ast.Translation"}) {
        EXPECT_THAT(changes("", "*" + std::string(keyword) + " a/b: \"\"\n"), IsEmpty()) << keyword;
    }
    for (const char* keyword : {"MediaType", "Zr.MediaType", "d.MediaType", "deutsch.MediaType",
                                "de_.MediaType", "de_1.MediaType", "de"}) {
        EXPECT_THAT(changes("", "*" + std::string(keyword) + " a/b: \"\"\n"),
                    ElementsAre(PPDChange{keyword, "a", std::nullopt, State{"b", ""}}))
            << keyword;
    }
}

TEST(PPDChange, TheirKeywordsAreSortedAndNamedOnce) {
    EXPECT_THAT(keywordsOfPPDChanges(changes("*B: 1\n", "*C x: 1\n*C y: 1\n*A: 1\n")),
                ElementsAre("A", "B", "C"));
    EXPECT_THAT(keywordsOfPPDChanges({}), IsEmpty());
}

}  // namespace
}  // namespace Testing
}  // namespace TkPPDUpdating
