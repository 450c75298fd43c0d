#include "backends/ppdmodel/PPDModelFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace TkPPDUpdating {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Text = std::optional<std::string>;

const std::string kFirstLine = "*PPD-Adobe: \"4.3\"\n";

std::shared_ptr<const PPDModelFile> fileWithLines(const std::string& lines) {
    std::string reason;
    auto file = PPDModelFile::fileWithText(makePPDText(kFirstLine + lines), &reason);
    EXPECT_TRUE(file) << reason << " in: " << lines;
    return file;
}

Text owned(std::optional<std::string_view> view) {
    return view ? Text(*view) : std::nullopt;
}

std::vector<Text> values(const std::vector<const OrbPPDAttribute*>& attributes) {
    std::vector<Text> values;
    for (const OrbPPDAttribute* attribute : attributes) {
        values.push_back(owned(attribute->value()));
    }
    return values;
}

std::string reasonForText(std::string text) {
    std::string reason;
    EXPECT_FALSE(PPDModelFile::fileWithText(makePPDText(std::move(text)), &reason));
    return reason;
}

/// One line, what its attribute is found by, and what it holds.
struct LineCase {
    std::string line;
    std::string keyword;
    std::string spec;
    Text text;
    Text value;
};

std::ostream& operator<<(std::ostream& stream, const LineCase& lineCase) {
    return stream << lineCase.line;
}

class PPDModelFileLine : public testing::TestWithParam<LineCase> {};

TEST_P(PPDModelFileLine, IsReadAsKeywordSpecTextAndValue) {
    const LineCase& expected = GetParam();
    const auto file = fileWithLines(expected.line + "\n");
    ASSERT_TRUE(file);
    const auto attributes = file->attributesForName(expected.keyword);
    ASSERT_EQ(attributes.size(), 1U);
    EXPECT_EQ(owned(attributes[0]->text()), expected.text);
    EXPECT_EQ(owned(attributes[0]->value()), expected.value);
    const auto found = file->attributesForName_spec(expected.keyword, expected.spec);
    if (expected.spec.empty()) {
        EXPECT_THAT(found, IsEmpty());
    } else {
        EXPECT_THAT(found, ElementsAre(attributes[0]));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Lines, PPDModelFileLine,
    testing::Values(LineCase{"*Name: \"text\"", "Name", "", {}, "text"},
                    LineCase{"*Name: plain", "Name", "", {}, "plain"},
                    LineCase{"*Name:plain", "Name", "", {}, "plain"},
                    LineCase{"*Name: \t plain  words \t ", "Name", "", {}, "plain  words"},
                    LineCase{"*Name: \" kept \"", "Name", "", {}, " kept "},
                    LineCase{"*Name:", "Name", "", {}, {}},
                    LineCase{"*Name: \t ", "Name", "", {}, {}},
                    LineCase{"*Name: \"\"", "Name", "", {}, ""},
                    LineCase{"*Name: say \"it\"", "Name", "", {}, "say \"it\""},
                    LineCase{"*Name: \"value\" ignored: \"too\"", "Name", "", {}, "value"},
                    LineCase{"*Name: \"value\"/Translation", "Name", "", {}, "value"},
                    LineCase{"*Name: a: b", "Name", "", {}, "a: b"},
                    LineCase{"*Name : plain", "Name", "", {}, "plain"},
                    LineCase{"*Name Spec: plain", "Name", "Spec", {}, "plain"},
                    LineCase{"*Name \t Spec \t : plain", "Name", "Spec", {}, "plain"},
                    LineCase{"*Name Spec/Text: plain", "Name", "Spec", "Text", "plain"},
                    LineCase{"*Name Spec /Text: plain", "Name", "Spec", "Text", "plain"},
                    LineCase{"*Name Spec/ Text : plain", "Name", "Spec", " Text ", "plain"},
                    LineCase{"*Name Spec/: plain", "Name", "Spec", "", "plain"},
                    LineCase{"*Name Spec/A/B: plain", "Name", "Spec", "A/B", "plain"},
                    LineCase{"*Name Two Words/Text: plain", "Name", "Two Words", "Text", "plain"},
                    LineCase{"*Name/Text: plain", "Name", "", "Text", "plain"},
                    LineCase{"*Name Spec/Size: big: \"x\"", "Name", "Spec", "Size", "big: \"x\""},
                    LineCase{"*Name Spec/Caf<C3A9>: \"<41>\"", "Name", "Spec", "Caf<C3A9>", "<41>"},
                    LineCase{"*Name Spec/Caf\xC3\xA9: x", "Name", "Spec", "Caf\xC3\xA9", "x"},
                    LineCase{"*fr.Name Spec/Texte: \"\"", "fr.Name", "Spec", "Texte", ""},
                    LineCase{"*?Name: \"query\"", "?Name", "", {}, "query"}));

TEST(PPDModelFile, RefusesATextThatIsNoPPDAndSaysWhere) {
    EXPECT_EQ(reasonForText(""), "is no PPD: it is empty");
    EXPECT_EQ(reasonForText(" \n\t\r\n"), "is no PPD: it is blank");
    EXPECT_EQ(reasonForText("<html>\n*PPD-Adobe: \"4.3\"\n"),
              "is no PPD: line 1 does not begin with \"*PPD-Adobe\"");
    EXPECT_EQ(reasonForText("\r\n \n*% comment\n*PPD-Adobe: \"4.3\"\n"),
              "is no PPD: line 3 does not begin with \"*PPD-Adobe\"");
    EXPECT_EQ(reasonForText(" *PPD-Adobe: \"4.3\"\n"),
              "is no PPD: line 1 does not begin with \"*PPD-Adobe\"");
    EXPECT_EQ(reasonForText("\xEF\xBB\xBF*PPD-Adobe: \"4.3\"\n"),
              "is no PPD: it begins with a byte order mark");
}

TEST(PPDModelFile, RefusesAQuotedValueThatNeverClosesAndSaysOnWhichLineItOpens) {
    EXPECT_EQ(reasonForText(kFirstLine + "*A: \"x\"\n*B: \"open\n*C: x\n"),
              "has a quoted value that never closes, opened on line 3");
}

TEST(PPDModelFile, RefusesANULByteAndSaysWhereItIs) {
    EXPECT_EQ(reasonForText("*PPD-Adobe: x\n" + std::string(1, '\0')), "has a NUL byte at byte 14");
}

TEST(PPDModelFile, GivesAttributesInFileOrder) {
    const auto file = fileWithLines("*A x: 1\n*B: 2\n*A y: 3\n*A x: 4\n");
    EXPECT_THAT(values(file->attributesForName("A")), ElementsAre("1", "3", "4"));
    EXPECT_THAT(values(file->attributesForName_spec("A", "x")), ElementsAre("1", "4"));
    EXPECT_THAT(file->attributesForName("C"), IsEmpty());
    EXPECT_THAT(file->attributesForName_spec("B", "x"), IsEmpty());
}

TEST(PPDModelFile, JoinsTheLinesOfAQuotedValueWithOneSpace) {
    const auto file = fileWithLines("*A: \"one\r\n  two\n*B: not an attribute\n\" tail\n*C: x\n");
    EXPECT_THAT(values(file->attributesForName("A")),
                ElementsAre("one   two *B: not an attribute "));
    EXPECT_THAT(file->attributesForName("B"), IsEmpty());
    EXPECT_THAT(values(file->attributesForName("C")), ElementsAre("x"));
}

TEST(PPDModelFile, FindsOptionsChoicesAndDefaults) {
    const auto file = fileWithLines(
        "*OpenUI *Duplex/Two-Sided: PickOne\n*DefaultDuplex: None\n*Duplex None/Off: \"\"\n"
        "*Duplex None/Again: \"\"\n*CloseUI: *Duplex\n*JCLOpenUI *Tone: Boolean\n");
    const OrbPPDOption* duplex = file->optionForName("Duplex");
    ASSERT_TRUE(duplex);
    EXPECT_EQ(duplex->defaultChoiceName(), "None");
    ASSERT_TRUE(duplex->choiceForName("None"));
    EXPECT_EQ(duplex->choiceForName("None")->text(), "Off");
    EXPECT_FALSE(duplex->choiceForName("none"));
    EXPECT_FALSE(duplex->choiceForName(""));
    const OrbPPDOption* tone = file->optionForName("Tone");
    ASSERT_TRUE(tone);
    EXPECT_EQ(tone->defaultChoiceName(), std::nullopt);
    EXPECT_FALSE(file->optionForName("duplex"));
    EXPECT_FALSE(file->optionForName(""));
    EXPECT_THAT(file->optionNames(), ElementsAre("Duplex", "Tone"));
}

TEST(PPDModelFile, FindsAPageSizeUnderAnyOfItsThreeKeywords) {
    const auto file = fileWithLines(
        "*PageSize A4/A4: \"\"\n*ImageableArea A5: \"\"\n*PaperDimension A6: \"\"\n*PageRegion A7: "
        "\"\"\n");
    EXPECT_TRUE(file->pageSizeForName("A4"));
    EXPECT_TRUE(file->pageSizeForName("A5"));
    EXPECT_TRUE(file->pageSizeForName("A6"));
    EXPECT_FALSE(file->pageSizeForName("A7"));
    EXPECT_FALSE(file->pageSizeForName("a4"));
    EXPECT_FALSE(file->pageSizeForName(""));
}

}  // namespace
}  // namespace TkPPDUpdating
