#include "updaters/attributes/OrbPPDAttributesUpdater.h"

#include <gtest/gtest.h>

#include <array>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/InvalidOperation.h"
#include "tests/updaters/attributes/AttributeUpdaterRuns.h"

namespace TkPPDUpdating::Testing {
namespace {

constexpr std::array<std::string_view, 3> kNames = {"ZrA", "ZrB", "ZrC"};

/// Three attributes whose values the test sets.
class ThreeAttributesUpdater : public OrbPPDAttributesUpdater {
  public:
    ThreeAttributesUpdater() = default;
    explicit ThreeAttributesUpdater(OrbPPDUpdatingValues newValues)
        : values(std::move(newValues)) {}

    std::span<const std::string_view> attributeNames() const override { return kNames; }

    std::optional<OrbPPDUpdatingValues> attributesFromDeviceWithURI_context(
        std::optional<std::string_view> deviceURI, OrbDictionary* context) override {
        ++timesAsked;
        lastURI = deviceURI;
        lastContext = context;
        return values;
    }

    std::optional<OrbPPDUpdatingValues> values;
    int timesAsked = 0;
    std::optional<std::string_view> lastURI;
    OrbDictionary* lastContext = nullptr;
};

/// Names no attribute and leaves the values to the base class.
class UnfinishedUpdater : public OrbPPDAttributesUpdater {
  public:
    std::span<const std::string_view> attributeNames() const override { return {}; }
};

std::string textWithValues(OrbPPDUpdatingValues values, std::string text) {
    ThreeAttributesUpdater updater(std::move(values));
    return *updater.updatedPPDContentsForContents_deviceURI_context(makePPDText(std::move(text)),
                                                                    kAnyURI, nullptr);
}

std::string textCopiedFrom(const std::string& source, std::string text) {
    ThreeAttributesUpdater updater;
    const auto sourcePPD = parsedPPD(source);
    EXPECT_TRUE(sourcePPD) << source;
    return *updater.updatedPPDContentsForContents_PPDFile_context(makePPDText(std::move(text)),
                                                                  sourcePPD.get(), nullptr);
}

// Applicability

TEST(OrbPPDAttributesUpdater, AppliesToAPPDWithAtLeastOneOfItsAttributes) {
    struct {
        std::string_view line;
        bool applies;
    } const cases[] = {
        {"*ZrA: 1", true},
        {"*ZrB: 1", true},
        {"*ZrC: 1", true},
        {"*ZrC:", true},
        {"*ZrB Spec/Text: \"1\"", true},
        {"*ZrD: 1", false},
        {"*ZrAB: 1", false},
        {"*zra: 1", false},
        {"*% *ZrA: 1", false},
        {"*fr.ZrA: 1", false},
    };
    for (const auto& [line, applies] : cases) {
        const auto PPDFile = parsedPPD(ppdOfLines({line}));
        ASSERT_TRUE(PPDFile) << line;
        EXPECT_EQ(ThreeAttributesUpdater().isApplicableForPPDFile(PPDFile.get()), applies) << line;
    }
}

TEST(OrbPPDAttributesUpdater, WithoutAttributeNamesAppliesToNothing) {
    const auto PPDFile = parsedPPD(ppdOfLines({"*ZrA: 1"}));
    EXPECT_FALSE(UnfinishedUpdater().isApplicableForPPDFile(PPDFile.get()));
}

TEST(OrbPPDAttributesUpdater, DoesNotApplyToNoPPD) {
    EXPECT_FALSE(ThreeAttributesUpdater().isApplicableForPPDFile(nullptr));
}

// Updating from the device

TEST(OrbPPDAttributesUpdater, ANewValueStandsAtTheLineOfTheOldOne) {
    EXPECT_EQ(textWithValues({{"ZrA", "new"}}, "*One: 1\n*ZrA: old\n*Two: 2\n"),
              "*One: 1\n*ZrA: new\n*Two: 2\n");
}

TEST(OrbPPDAttributesUpdater, AnAttributeThatTheTextLacksIsAppendedAtItsEnd) {
    EXPECT_EQ(textWithValues({{"ZrA", "new"}, {"ZrB", "b"}}, "*ZrA: old\n*Two: 2\n"),
              "*ZrA: new\n*Two: 2\n*ZrB: b\n");
}

TEST(OrbPPDAttributesUpdater, AttributesAreWrittenInTheOrderOfTheirNames) {
    EXPECT_EQ(textWithValues({{"ZrC", "3"}, {"ZrA", "1"}, {"ZrB", "2"}}, "*One: 1\n"),
              "*One: 1\n*ZrA: 1\n*ZrB: 2\n*ZrC: 3\n");
}

TEST(OrbPPDAttributesUpdater, TheLineOfAKeywordWithoutValueIsUntouched) {
    EXPECT_EQ(textWithValues({{"ZrA", "a"}, {"ZrC", "c"}}, "*ZrA: 1\n*ZrB:  2 \n*ZrC: 3\n"),
              "*ZrA: a\n*ZrB:  2 \n*ZrC: c\n");
}

TEST(OrbPPDAttributesUpdater, AValueOfAnotherKeywordIsIgnored) {
    EXPECT_EQ(textWithValues({{"ZrD", "4"}}, "*ZrA: 1\n*ZrD: 0\n"), "*ZrA: 1\n*ZrD: 0\n");
}

TEST(OrbPPDAttributesUpdater, AnEmptyValueLeavesColonAndOneBlank) {
    EXPECT_EQ(textWithValues({{"ZrA", ""}}, "*ZrA: old\n"), "*ZrA: \n");
}

TEST(OrbPPDAttributesUpdater, AValueIsWrittenAsItStands) {
    for (const std::string value :
         {"\"quoted\"", "%@", "a:b/c", " leading", "trailing ", "\xC3\xA9", "*End"}) {
        EXPECT_EQ(textWithValues({{"ZrA", value}}, "*ZrA: old\n"), "*ZrA: " + value + "\n")
            << value;
    }
}

TEST(OrbPPDAttributesUpdater, ALineOf255BytesIsWritten) {
    const std::string value(255 - std::string("*ZrA: ").size(), 'v');
    EXPECT_EQ(textWithValues({{"ZrA", value}}, "*ZrA: old\n*Two: 2\n"),
              "*ZrA: " + value + "\n*Two: 2\n");
}

TEST(OrbPPDAttributesUpdater, ALineOf256BytesIsRefusedAfterTheOldLineWasDeleted) {
    const std::string value(256 - std::string("*ZrA: ").size(), 'v');
    EXPECT_EQ(textWithValues({{"ZrA", value}}, "*ZrA: old\n*Two: 2\n"), "*Two: 2\n");
}

TEST(OrbPPDAttributesUpdater, TheLimitOfALineIsCountedInBytesOfUTF8) {
    std::string value;  // 125 letters of two bytes
    for (int i = 0; i < 125; ++i) {
        value += "\xC3\xA9";
    }
    ASSERT_EQ(("*ZrA: " + value).size(), 256U);
    EXPECT_EQ(textWithValues({{"ZrA", value}}, "*ZrA: old\n*Two: 2\n"), "*Two: 2\n");
}

TEST(OrbPPDAttributesUpdater, ATooLongValueOfAnAttributeThatTheTextLacksChangesNothing) {
    EXPECT_EQ(textWithValues({{"ZrA", std::string(300, 'v')}}, "*One: 1\n"), "*One: 1\n");
}

TEST(OrbPPDAttributesUpdater, ARefusedLineDoesNotKeepTheOthersFromBeingWritten) {
    EXPECT_EQ(
        textWithValues({{"ZrA", std::string(300, 'v')}, {"ZrB", "b"}}, "*ZrA: old\n*ZrB: old\n"),
        "*ZrB: b\n");
}

TEST(OrbPPDAttributesUpdater, AnOldValueOfSeveralLinesGoesWhole) {
    EXPECT_EQ(textWithValues({{"ZrA", "new"}}, "*ZrA: \"one\ntwo\nthree\"\n*End\n*Two: 2\n"),
              "*ZrA: new\n*Two: 2\n");
}

TEST(OrbPPDAttributesUpdater, TheTranslationLinesOfTheOldAttributeGoWithIt) {
    EXPECT_EQ(textWithValues({{"ZrA", "new"}},
                             "*cupsLanguages: \"de fr\"\n*ZrA: old\n*de.ZrA: alt\n*fr.ZrA: vieux\n"
                             "*en.ZrA: old\n*it.ZrA: vecchio\n"),
              "*cupsLanguages: \"de fr\"\n*ZrA: new\n*it.ZrA: vecchio\n");
}

TEST(OrbPPDAttributesUpdater, OnlyTheFirstOfSeveralLinesIsReplaced) {
    EXPECT_EQ(textWithValues({{"ZrA", "new"}}, "*ZrA: one\n*ZrA: two\n"), "*ZrA: new\n*ZrA: two\n");
}

TEST(OrbPPDAttributesUpdater, ALineWithAnOptionKeywordIsNotTheAttribute) {
    EXPECT_EQ(textWithValues({{"ZrA", "new"}}, "*ZrA Spec: one\n*Two: 2\n"),
              "*ZrA Spec: one\n*Two: 2\n*ZrA: new\n");
}

TEST(OrbPPDAttributesUpdater, ALineWhoseKeywordDiffersInCaseIsReplaced) {
    EXPECT_EQ(textWithValues({{"ZrA", "new"}}, "*zra: one\n*Two: 2\n"), "*ZrA: new\n*Two: 2\n");
}

TEST(OrbPPDAttributesUpdater, AnEditedTextEndsWithALineFeed) {
    EXPECT_EQ(textWithValues({{"ZrA", "new"}}, "*ZrA: old"), "*ZrA: new\n");
}

TEST(OrbPPDAttributesUpdater, WithoutValuesTheTextItselfComesBack) {
    ThreeAttributesUpdater updater;
    const PPDText text = makePPDText("*ZrA: old");
    EXPECT_EQ(updater.updatedPPDContentsForContents_deviceURI_context(text, kAnyURI, nullptr),
              text);
    updater.values = OrbPPDUpdatingValues();
    EXPECT_EQ(updater.updatedPPDContentsForContents_deviceURI_context(text, kAnyURI, nullptr),
              text);
}

TEST(OrbPPDAttributesUpdater, NoTextStaysNoText) {
    ThreeAttributesUpdater updater(OrbPPDUpdatingValues{{"ZrA", "new"}});
    EXPECT_EQ(updater.updatedPPDContentsForContents_deviceURI_context(nullptr, kAnyURI, nullptr),
              nullptr);
    const auto source = parsedPPD(ppdOfLines({"*ZrA: new"}));
    EXPECT_EQ(updater.updatedPPDContentsForContents_PPDFile_context(nullptr, source.get(), nullptr),
              nullptr);
}

TEST(OrbPPDAttributesUpdater, TheDeviceIsAskedOnceWithTheURIAndTheContext) {
    ThreeAttributesUpdater updater(OrbPPDUpdatingValues{{"ZrA", "1"}, {"ZrB", "2"}});
    OrbDictionary context;
    updater.updatedPPDContentsForContents_deviceURI_context(makePPDText("*ZrA: old\n"), kAnyURI,
                                                            &context);
    EXPECT_EQ(updater.timesAsked, 1);
    EXPECT_EQ(updater.lastURI, kAnyURI);
    EXPECT_EQ(updater.lastContext, &context);
}

TEST(OrbPPDAttributesUpdater, ASecondRunChangesNothingFurther) {
    const OrbPPDUpdatingValues values = {{"ZrA", "a"}, {"ZrB", ""}, {"ZrC", "c:\"d\""}};
    const std::string once = textWithValues(values, "*ZrB: old\n*Two: 2\n");
    EXPECT_EQ(textWithValues(values, once), once);
}

TEST(OrbPPDAttributesUpdater, ALanguagesLineThatEndsAtItsColonIsAnOutOfRangeError) {
    ThreeAttributesUpdater updater(OrbPPDUpdatingValues{{"ZrA", "new"}});
    EXPECT_THROW(updater.updatedPPDContentsForContents_deviceURI_context(
                     makePPDText("*ZrA: old\n*cupsLanguages:\n"), kAnyURI, nullptr),
                 std::out_of_range);
}

// Copying from another PPD

TEST(OrbPPDAttributesUpdater, CopiesTheValueOfTheFirstAttributeOfAKeyword) {
    EXPECT_EQ(textCopiedFrom(ppdOfLines({"*ZrA: first", "*ZrA: second"}), "*One: 1\n*ZrA: old\n"),
              "*One: 1\n*ZrA: first\n");
}

TEST(OrbPPDAttributesUpdater, CopiesAQuotedValueWithoutItsQuotes) {
    EXPECT_EQ(textCopiedFrom(ppdOfLines({"*ZrA: \"a b\""}), "*ZrA: old\n"), "*ZrA: a b\n");
}

TEST(OrbPPDAttributesUpdater, CopiesAnEmptyQuotedValueAsAnEmptyValue) {
    EXPECT_EQ(textCopiedFrom(ppdOfLines({"*ZrA: \"\""}), "*ZrA: old\n"), "*ZrA: \n");
}

TEST(OrbPPDAttributesUpdater, AFirstAttributeWithoutAValueIsCopiedAsADeletion) {
    EXPECT_EQ(textCopiedFrom(ppdOfLines({"*ZrA:", "*ZrA: second"}), "*ZrA: old\n*Two: 2\n"),
              "*Two: 2\n");
}

TEST(OrbPPDAttributesUpdater, AnAttributeWithoutAValueThatTheTextLacksChangesNothing) {
    EXPECT_EQ(textCopiedFrom(ppdOfLines({"*ZrA:"}), "*Two: 2"), "*Two: 2");
}

TEST(OrbPPDAttributesUpdater, AKeywordThatTheSourceLacksIsSkipped) {
    EXPECT_EQ(textCopiedFrom(ppdOfLines({"*ZrB: b"}), "*ZrA: old\n*ZrB: old\n"),
              "*ZrA: old\n*ZrB: b\n");
}

TEST(OrbPPDAttributesUpdater, CopiesAnAttributeThatTheTextLacksToItsEnd) {
    EXPECT_EQ(textCopiedFrom(ppdOfLines({"*ZrC: c"}), "*ZrA: old\n"), "*ZrA: old\n*ZrC: c\n");
}

TEST(OrbPPDAttributesUpdater, ACopiedLineOf256BytesIsRefusedAfterTheOldLineWasDeleted) {
    const std::string value(256 - std::string("*ZrA: ").size(), 'v');
    EXPECT_EQ(textCopiedFrom(ppdOfLines({"*ZrA: \"" + value + "\""}), "*ZrA: old\n*Two: 2\n"),
              "*Two: 2\n");
}

TEST(OrbPPDAttributesUpdater, WithoutASourceTheTextItselfComesBack) {
    const PPDText text = makePPDText("*ZrA: old");
    EXPECT_EQ(ThreeAttributesUpdater().updatedPPDContentsForContents_PPDFile_context(text, nullptr,
                                                                                     nullptr),
              text);
}

TEST(OrbPPDAttributesUpdater, CopyingAsksNoDeviceAndLeavesTheContextAlone) {
    ThreeAttributesUpdater updater(OrbPPDUpdatingValues{{"ZrA", "from the device"}});
    OrbDictionary context;
    const auto source = parsedPPD(ppdOfLines({"*ZrA: from the queue"}));
    EXPECT_EQ(*updater.updatedPPDContentsForContents_PPDFile_context(makePPDText("*ZrA: old\n"),
                                                                     source.get(), &context),
              "*ZrA: from the queue\n");
    EXPECT_EQ(updater.timesAsked, 0);
    EXPECT_TRUE(context.empty());
}

// Values only

TEST(OrbPPDAttributesUpdater, ItsValuesAreExactlyThoseFromTheDevice) {
    ThreeAttributesUpdater updater;
    OrbDictionary context;
    const std::optional<OrbPPDUpdatingValues> answers[] = {
        std::nullopt, OrbPPDUpdatingValues{}, OrbPPDUpdatingValues{{"ZrA", "1"}, {"Other", ""}}};
    for (const auto& answer : answers) {
        updater.values = answer;
        EXPECT_EQ(updater.PPDUpdatingValuesForPPDFile_deviceURI_context(nullptr, kAnyURI, &context),
                  answer);
    }
    EXPECT_EQ(updater.timesAsked, 3);
    EXPECT_EQ(updater.lastURI, kAnyURI);
    EXPECT_EQ(updater.lastContext, &context);
}

TEST(OrbPPDAttributesUpdater, ValuesThatNoSubclassProvidesAreAnInvalidOperation) {
    UnfinishedUpdater updater;
    EXPECT_EQ(messageOfInvalidOperation(
                  [&] { updater.attributesFromDeviceWithURI_context(kAnyURI, nullptr); }),
              "OrbPPDAttributesUpdater does not implement attributesFromDeviceWithURI_context");
}

TEST(OrbPPDAttributesUpdater, OwnsItsAttributesAndNothingElse) {
    const OrbPPDOwnedLines owned = ThreeAttributesUpdater().ownedLines({}, {});
    EXPECT_EQ(owned.attributes, (std::vector<std::string>{"ZrA", "ZrB", "ZrC"}));
    EXPECT_TRUE(owned.defaultsOfOptions.empty());
    EXPECT_TRUE(owned.choices.empty());
    EXPECT_FALSE(owned.mayTakeAway || owned.mayAdd);
}

// Writing one attribute

TEST(OrbPPDAttributesUpdater, TheInsertLocationEndsBehindTheWrittenLine) {
    const auto processor = OrbPPDProcessor::processorWithPPDContent(
        makePPDText("*One: 1\n*Two: 2\n*ZrA: old\n*Four: 4\n"));
    ThreeAttributesUpdater updater;
    updater.updateAttributeName_attributeValue_withPPDProcessor("ZrA", "new", *processor);
    EXPECT_EQ(processor->insertLocation(), 3U);
    updater.updateAttributeName_attributeValue_withPPDProcessor("ZrB", "b", *processor);
    EXPECT_EQ(processor->insertLocation(), 5U);
    EXPECT_EQ(*processor->content(), "*One: 1\n*Two: 2\n*ZrA: new\n*Four: 4\n*ZrB: b\n");
}

TEST(OrbPPDAttributesUpdater, WritingWithoutAValueDeletesTheAttribute) {
    const auto processor =
        OrbPPDProcessor::processorWithPPDContent(makePPDText("*ZrA: old\n*Two: 2\n"));
    ThreeAttributesUpdater updater;
    updater.updateAttributeName_attributeValue_withPPDProcessor("ZrA", std::nullopt, *processor);
    EXPECT_EQ(*processor->content(), "*Two: 2\n");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
