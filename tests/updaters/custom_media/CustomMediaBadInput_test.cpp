#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/updaters/custom_media/CustomMediaTestSupport.h"

namespace TkPPDUpdating {
namespace {

using namespace Testing;
using testing::HasSubstr;

using CustomMediaBadInput = CustomMediaTest;

std::string repeated(std::string_view part, std::size_t count) {
    std::string text;
    for (; count > 0; --count) {
        text += part;
    }
    return text;
}

TEST_F(CustomMediaBadInput, LongNamesAreCutToWholeCharactersOfAtMost79Bytes) {
    struct Case {
        std::string name;
        std::string written;
    };
    std::vector<Case> cases = {
        {repeated("x", 79), repeated("x", 79)},
        {repeated("x", 80), repeated("x", 79)},
        {repeated("x", 100), repeated("x", 79)},
        // Two bytes each, after one of one byte to make 79.
        {"x" + repeated("é", 39), "x" + repeated("é", 39)},
        {repeated("é", 40), repeated("é", 39)},
        {repeated("é", 50), repeated("é", 39)},
        // Three bytes each.
        {"x" + repeated("紙", 26), "x" + repeated("紙", 26)},
        {"xx" + repeated("紙", 26), "xx" + repeated("紙", 25)},
        {"x" + repeated("紙", 33), "x" + repeated("紙", 26)},
        // Four bytes each, two UTF-16 units.
        {"xxx" + repeated("😀", 19), "xxx" + repeated("😀", 19)},
        {repeated("😀", 20), repeated("😀", 19)},
        {repeated("😀", 25), repeated("😀", 19)},
    };
    for (const Case& each : cases) {
        const std::string text = updatedText(PPDWith(), {mediaType(each.name)});
        EXPECT_THAT(text, HasSubstr("*fr.MediaType custom1/" + each.written + ": \"\"\n"))
            << each.name;
        EXPECT_EQ(updatedText(text, {}), PPDWith()) << each.name;
    }
}

TEST_F(CustomMediaBadInput, ALongNameIsASCIIWhenWhatIsLeftOfItIs) {
    const std::string kept = repeated("x", 79);
    EXPECT_THAT(updatedText(PPDWith(), {mediaType(kept + "é")}),
                HasSubstr(choiceLines("custom1", kept)));
}

TEST_F(CustomMediaBadInput, NamesWithSignsOfTheFormatAreWrittenAsTheyAreAndRemovedWhole) {
    for (const std::string name :
         {"A/B", "/", "A:B", ":", "A: \"x\"", "A\"B", "\"", "<41>", "<<", ">", "*MediaType", "%@",
          "%d%s%n", "\\", "*End", "*CloseUI: *MediaType", " ", ""}) {
        const std::string text = updatedText(PPDWith(), {mediaType(name), mediaType("Second")});
        EXPECT_THAT(text, HasSubstr(choiceLines("custom1", name))) << name;
        EXPECT_EQ(updatedText(text, {}), PPDWith()) << name;
    }
}

TEST_F(CustomMediaBadInput, NamesWithSlashesAndBracketsComeBackAsTheyWere) {
    for (const std::string name : {"A/B", "/", "<41>", "<<", ">", "A \"B\" C", "%@"}) {
        const std::string text = updatedText(PPDWith(), {mediaType(name)});
        const auto type = OrbPPDCustomMediaUpdater::customMediaTypeWithCodeName_PPDfile(
            "custom1", parsed(text).get());
        ASSERT_TRUE(type) << name;
        EXPECT_EQ(type->name(), name);
    }
}

TEST_F(CustomMediaBadInput, ANameComesBackUpToItsFirstColon) {
    // A translation text ends at a colon (PPD specification 4.3).
    const std::string text = updatedText(PPDWith(), {mediaType("A4: glossy")});
    const auto type = OrbPPDCustomMediaUpdater::customMediaTypeWithCodeName_PPDfile(
        "custom1", parsed(text).get());
    ASSERT_TRUE(type);
    EXPECT_EQ(type->name(), "A4");
}

TEST_F(CustomMediaBadInput, TextsThatBreakTheLineAreWrittenAsTheyAre) {
    // Whoever hands media types to the library checks them; the backends do.
    EXPECT_THAT(updatedText(PPDWith(), {mediaType("A\n*Evil: x")}),
                HasSubstr("*MediaType custom1/A\n*Evil: x: \"<<"));
    EXPECT_THAT(updatedText(PPDWith(), {mediaType("A", "1\n2", "3\"4")}),
                HasSubstr("*ZrChoiceProperties MediaType.custom1: "
                          "\"MediaID=1\n2;ParentMediaID=3\"4;\"\n"));
    EXPECT_THAT(updatedText(PPDWith(),
                            {mediaType("A", "1", "2", profile("file:///p/a%0A%22b.icc", "q\n1"))}),
                HasSubstr("*cupsICCProfile ..q\n1/a\n\"b: \"/p/a\n\"b.icc\"\n"));
}

TEST_F(CustomMediaBadInput, IdentifiersWithSignsOfTheFormatAreWrittenAsTheyAre) {
    const std::string text =
        updatedText(PPDWith(), {mediaType("A", "1;ZrICCProfileId2=None", "a=b")});
    EXPECT_THAT(text, HasSubstr("*ZrChoiceProperties MediaType.custom1: "
                                "\"MediaID=1;ZrICCProfileId2=None;ParentMediaID=a=b;\"\n"));
    // The qualifier that the media ID passes itself off as is taken for one.
    EXPECT_EQ(updatedText(text, {}).find("*ZrICCProfileId2 None/None"), std::string::npos);
}

TEST_F(CustomMediaBadInput, QualifiersWithSignsOfTheFormatAreRemovedAgain) {
    for (const std::string qualifier : {"a/b", "a:b", "a b", "a.b.c", "é", "<41>", "A", "q=1"}) {
        const std::string text =
            updatedText(PPDWith(), {mediaType("A", "1", "2", profile("file:///a.icc", qualifier))});
        EXPECT_THAT(text, HasSubstr("*ZrICCProfileId2 " + qualifier + "/a: \"\"\n"));
        EXPECT_EQ(updatedText(text, {}), PPDWith()) << qualifier;
    }
}

TEST_F(CustomMediaBadInput, IdentifiersThatBreakTheFormOfAPPDLeaveTheProfileRemovable) {
    // Reading them back refuses them; the removal needs the qualifier beside them all the same.
    for (const std::string ID : {"12\t01", "12\x7F", "12\u0085", "12\u2028", "12\r"}) {
        const std::string text =
            updatedText(PPDWith(), {mediaType("A", ID, "3", profile("file:///p/gloss.icc", "q1"))});
        EXPECT_THAT(text, HasSubstr("*cupsICCProfile ..q1/gloss: \"/p/gloss.icc\"\n"));
        EXPECT_EQ(updatedText(text, {}), PPDWith()) << testing::PrintToString(ID);
    }
}

/// The processor time that the run takes, in seconds.
double secondsOf(const std::function<void()>& run) {
    const std::clock_t before = std::clock();
    run();
    return static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
}

// These take a fraction of a second; with a look-up for each repetition, minutes.
constexpr double kPatience = 10;
constexpr std::size_t kMany = 30000;

TEST_F(CustomMediaBadInput, ANameRepeatedInTheCategoryIsLookedUpOnce) {
    const std::string text = PPDWith("", "",
                                     "*ZrMediaTypeCategory custom/C: \"" + repeated("c ", kMany) +
                                         "\"\n" + "*ZrChoiceProperties MediaType.c: \"\n" +
                                         repeated("abcdefgh\n", kMany) + "*End\n");
    EXPECT_LT(secondsOf([&] { EXPECT_EQ(updatedText(text, {}), PPDWith()); }), kPatience);
}

TEST_F(CustomMediaBadInput, ANameRepeatedInTheCategoryIsReadBackOnce) {
    constexpr std::size_t kProperties = 10000;
    const auto source =
        parsed(PPDWith(choiceLines("c", "A"), "",
                       repeated("*ZrChoiceProperties MediaType.c: \"MediaID=1;\"\n", kProperties) +
                           "*ZrMediaTypeCategory custom/C: \"" + repeated("c ", kMany) + "\"\n"));
    OrbPPDCustomMediaUpdater updater;
    OrbDictionary context;
    EXPECT_LT(secondsOf([&] {
                  EXPECT_EQ(*updater.updatedPPDContentsForContents_PPDFile_context(
                                makePPDText(PPDWith()), source.get(), &context),
                            PPDWith());
              }),
              kPatience);
}

TEST_F(CustomMediaBadInput, AThousandMediaTypesAreWrittenAndRemoved) {
    OrbCustomMediaTypes types;
    for (int i = 1; i <= 1000; ++i) {
        const std::string number = std::to_string(i);
        types.push_back(mediaType("Type " + number, number, "3",
                                  profile("file:///p/" + number + ".icc", "q" + number)));
    }
    const std::string text = updatedText(PPDWith(), types);
    EXPECT_THAT(text, HasSubstr(choiceLines("custom1000", "Type 1000")));
    EXPECT_THAT(text, HasSubstr("*ZrChoiceProperties MediaType.custom1000: "
                                "\"MediaID=1000;ParentMediaID=3;ZrICCProfileId2=q1000;\"\n"));
    EXPECT_THAT(text, HasSubstr("custom1000\"\n*End\n"));
    // No line is longer than a PPD line may be.
    std::size_t longest = 0;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = text.find('\n', start);
        longest = std::max(longest, end - start);
        start = end + 1;
    }
    EXPECT_LE(longest, 255U);
    EXPECT_EQ(updatedText(text, types), text);
    EXPECT_EQ(updatedText(text, {}), PPDWith());
}

TEST_F(CustomMediaBadInput, OneProfileForAllMediaTypesIsRemovedAsOftenAsItWasWritten) {
    OrbCustomMediaTypes types;
    const auto shared = profile("file:///p/gloss.icc", "q1");
    for (int i = 1; i <= 300; ++i) {
        types.push_back(mediaType("Type", "1", "2", shared));
    }
    const std::string text = updatedText(PPDWith(), types);
    EXPECT_EQ(updatedText(text, types), text);
    EXPECT_EQ(updatedText(text, {}), PPDWith());
}

TEST_F(CustomMediaBadInput, TwoProfilesWithOneQualifierAreBothWritten) {
    const std::string text =
        updatedText(PPDWith(), {mediaType("A", "1", "2", profile("file:///p/a.icc", "q1")),
                                mediaType("B", "3", "4", profile("file:///p/b.icc", "q1"))});
    EXPECT_THAT(text, HasSubstr("*cupsICCProfile ..q1/a: \"/p/a.icc\"\n"));
    EXPECT_THAT(text, HasSubstr("*cupsICCProfile ..q1/b: \"/p/b.icc\"\n"));
    EXPECT_EQ(updatedText(text, {}), PPDWith());
}

}  // namespace
}  // namespace TkPPDUpdating
