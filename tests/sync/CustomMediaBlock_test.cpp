#include "sync/CustomMediaBlock.h"

#include <gtest/gtest.h>

#include "tests/sync/CustomMediaPPD.h"

namespace TkPPDUpdating::Testing {
namespace {

using Names = std::vector<std::string>;
using Places = std::vector<std::optional<std::size_t>>;

CustomMediaEntry entry(const std::string& choice, const std::string& mediaID,
                       const std::string& name) {
    return {choice, {mediaID, name}, "", "", ""};
}

TEST(CustomMediaBlockTest, ReadsTheTypesOfTheCategoryInItsOrder) {
    const auto block = customMediaBlock(
        *parsedPPD("*MediaType custom1/Gloss: \"\"\n"
                   "*MediaType custom2: \"\"\n"
                   "*en.MediaType custom2/B\xC3\xBCtten: \"\"\n"
                   "*de.MediaType custom2/Anders: \"\"\n"
                   "*MediaType custom3/Not Listed: \"\"\n"
                   "*cupsICCProfile ..q1/gloss: \"/profiles/gloss.icc\"\n"
                   "*ZrChoiceProperties MediaType.custom1: "
                   "\"MediaID=12;ParentMediaID=3;ZrICCProfileId2=q1;\"\n"
                   "*ZrChoiceProperties MediaType.custom2: \"MediaID=13;\"\n"
                   "*ZrMediaTypeCategory custom/Custom: \"custom2  custom1 custom2 gone\"\n"));
    ASSERT_EQ(block.size(), 3U);
    EXPECT_EQ(block[0].choice, "custom2");
    EXPECT_EQ(block[0].identity.name, "B\xC3\xBCtten");
    EXPECT_EQ(block[0].identity.mediaID, "13");
    EXPECT_EQ(block[0].profileQualifier, "");
    EXPECT_EQ(block[1].choice, "custom1");
    EXPECT_EQ(block[1].identity.name, "Gloss");
    EXPECT_EQ(block[1].identity.mediaID, "12");
    EXPECT_EQ(block[1].parentMediaID, "3");
    EXPECT_EQ(block[1].profileQualifier, "q1");
    EXPECT_EQ(block[1].profilePath, "/profiles/gloss.icc");
    EXPECT_EQ(block[2].choice, "gone");
    EXPECT_EQ(block[2].identity.mediaID, "");
}

TEST(CustomMediaBlockTest, APPDWithoutCategoryHasNone) {
    EXPECT_TRUE(customMediaBlock(*parsedPPD("*MediaType custom1/Gloss: \"\"\n")).empty());
}

TEST(CustomMediaBlockTest, TheNumberOfAChoiceIsThatBehindCustom) {
    const std::vector<std::pair<std::string, std::size_t>> numbers = {
        {"custom1", 1},
        {"custom10", 10},
        {"custom", 0},
        {"custom0", 0},
        {"custom01", 0},
        {"Custom1", 0},
        {"custom-1", 0},
        {"custom1a", 0},
        {"", 0},
        {"1", 0},
        {"custom99999999999999999999", 0}};
    for (const auto& [choice, number] : numbers) {
        EXPECT_EQ(entry(choice, "", "").number(), number) << choice;
    }
}

TEST(CustomMediaBlockTest, ATypeIsTheSameByItsIDAndElseByItsName) {
    const std::vector<MediaTypeIdentity> earlier = {
        {"1", "Gloss"}, {"2", "Matte"}, {"", "Canvas"}, {"9", "Gone"}};
    const std::vector<MediaTypeIdentity> later = {
        {"3", "Matte"}, {"1", "Renamed"}, {"4", "Canvas"}, {"5", "Gloss"}};
    EXPECT_EQ(sameMediaTypes(earlier, later), (Places{1, 0, 2, std::nullopt}));
}

TEST(CustomMediaBlockTest, TheIDCountsMoreThanTheNameAndEachTypeOnce) {
    const std::vector<MediaTypeIdentity> earlier = {{"1", "A"}, {"2", "B"}};
    const std::vector<MediaTypeIdentity> later = {{"2", "A"}, {"1", "B"}};
    EXPECT_EQ(sameMediaTypes(earlier, later), (Places{1, 0}));
    const std::vector<MediaTypeIdentity> alike = {{"1", "A"}, {"1", "A"}, {"1", "A"}};
    EXPECT_EQ(sameMediaTypes(alike, std::span(alike).first(2)), (Places{0, 1, std::nullopt}));
}

TEST(CustomMediaBlockTest, KnownTypesKeepTheirNumberAndOthersFillTheGaps) {
    const std::vector<CustomMediaEntry> block = {
        entry("custom1", "1", "A"), entry("custom2", "2", "B"), entry("custom3", "3", "C")};
    EXPECT_EQ(namesOf(inEarlierPlaces(block, {mediaType("X", "7"), mediaType("C", "3"),
                                              mediaType("Y", "8"), mediaType("A", "1")})),
              (Names{"A", "X", "C", "Y"}));
}

TEST(CustomMediaBlockTest, ANumberBeyondTheCountIsGivenUp) {
    const std::vector<CustomMediaEntry> block = {
        entry("custom1", "1", "A"), entry("custom2", "2", "B"), entry("custom3", "3", "C")};
    EXPECT_EQ(namesOf(inEarlierPlaces(block, {mediaType("C", "3"), mediaType("B", "2")})),
              (Names{"C", "B"}));
}

TEST(CustomMediaBlockTest, WithoutABlockTheOrderIsThePrinters) {
    EXPECT_EQ(namesOf(inEarlierPlaces({}, {mediaType("B", "2"), nullptr, mediaType("A", "1")})),
              (Names{"B", "A"}));
}

TEST(CustomMediaBlockTest, ANameIsComparedAsThePPDHasIt) {
    const std::string longName(100, 'x');
    const std::vector<CustomMediaEntry> block = {entry("custom1", "", "A"),
                                                 entry("custom2", "", std::string(79, 'x'))};
    EXPECT_EQ(namesOf(inEarlierPlaces(block, {mediaType(longName, "2"), mediaType("B", "1")})),
              (Names{"B", longName}));
}

TEST(CustomMediaBlockTest, TypesThatWereNotToldAreCompletedFromThePPD) {
    std::vector<CustomMediaEntry> block = {entry("custom1", "1", "A"), entry("custom2", "2", "B")};
    block[1].parentMediaID = "3";
    block[1].profileQualifier = "q1";
    block[1].profilePath = "/profiles/b c.icc";
    const auto completed = completedMediaTypes(block, {mediaType("X", "7"), mediaType("A", "1")});
    ASSERT_TRUE(completed);
    EXPECT_EQ(namesOf(*completed), (Names{"X", "A", "B"}));
    const auto& type = completed->back();
    EXPECT_EQ(type->mediaID(), "2");
    EXPECT_EQ(type->parentMediaID(), "3");
    ASSERT_TRUE(type->ICCProfile());
    EXPECT_EQ(type->ICCProfile()->URL(), "file:///profiles/b%20c.icc");
    EXPECT_EQ(type->ICCProfile()->qualifierVer2(), "q1");
    EXPECT_FALSE(completed->front()->ICCProfile());
}

TEST(CustomMediaBlockTest, ATypeThatCannotBeWrittenAgainIsNotCompleted) {
    EXPECT_FALSE(completedMediaTypes({entry("custom1", "", "A")}, {}));
    EXPECT_FALSE(completedMediaTypes({entry("custom1", "1", "A \"B\"")}, {}));
    EXPECT_FALSE(completedMediaTypes({entry("custom1", "a=b", "A")}, {}));
    EXPECT_TRUE(completedMediaTypes({}, {}));
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
