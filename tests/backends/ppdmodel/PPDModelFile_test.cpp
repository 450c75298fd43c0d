#include "backends/ppdmodel/PPDModelFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/TemporaryDirectory.h"

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
    values.reserve(attributes.size());
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
    std::string name;
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
    testing::Values(
        LineCase{"QuotedValue", "*Name: \"text\"", "Name", "", {}, "text"},
        LineCase{"PlainValue", "*Name: plain", "Name", "", {}, "plain"},
        LineCase{"PlainValueWithoutBlankAfterColon", "*Name:plain", "Name", "", {}, "plain"},
        LineCase{"PlainValueLosesBlanksAroundIt",
                 "*Name: \t plain  words \t ",
                 "Name",
                 "",
                 {},
                 "plain  words"},
        LineCase{"QuotedValueKeepsItsBlanks", "*Name: \" kept \"", "Name", "", {}, " kept "},
        LineCase{"NothingAfterColonIsNoValue", "*Name:", "Name", "", {}, {}},
        LineCase{"OnlyBlanksAfterColonIsNoValue", "*Name: \t ", "Name", "", {}, {}},
        LineCase{"EmptyQuotedValueIsEmpty", "*Name: \"\"", "Name", "", {}, ""},
        LineCase{"QuoteInsideAPlainValueStays", "*Name: say \"it\"", "Name", "", {}, "say \"it\""},
        LineCase{"RestAfterClosingQuoteIsIgnored",
                 "*Name: \"value\" ignored: \"too\"",
                 "Name",
                 "",
                 {},
                 "value"},
        LineCase{"TextAfterClosingQuoteIsIgnored",
                 "*Name: \"value\"/Translation",
                 "Name",
                 "",
                 {},
                 "value"},
        LineCase{"ColonInsideAPlainValueStays", "*Name: a: b", "Name", "", {}, "a: b"},
        LineCase{"BlankBeforeColonIsNoSpec", "*Name : plain", "Name", "", {}, "plain"},
        LineCase{"Spec", "*Name Spec: plain", "Name", "Spec", {}, "plain"},
        LineCase{
            "SpecLosesBlanksAroundIt", "*Name \t Spec \t : plain", "Name", "Spec", {}, "plain"},
        LineCase{"SpecAndText", "*Name Spec/Text: plain", "Name", "Spec", "Text", "plain"},
        LineCase{"SpecLosesBlanksBeforeText", "*Name Spec /Text: plain", "Name", "Spec", "Text",
                 "plain"},
        LineCase{"TextKeepsItsBlanks", "*Name Spec/ Text : plain", "Name", "Spec", " Text ",
                 "plain"},
        LineCase{"EmptyTextIsEmpty", "*Name Spec/: plain", "Name", "Spec", "", "plain"},
        LineCase{"TextMayHoldASlash", "*Name Spec/A/B: plain", "Name", "Spec", "A/B", "plain"},
        LineCase{"SpecMayHoldBlanks", "*Name Two Words/Text: plain", "Name", "Two Words", "Text",
                 "plain"},
        LineCase{"TextWithoutSpec", "*Name/Text: plain", "Name", "", "Text", "plain"},
        LineCase{"TextEndsAtItsFirstColon", "*Name Spec/Size: big: \"x\"", "Name", "Spec", "Size",
                 "big: \"x\""},
        LineCase{"HexadecimalPartsStayAsWritten", "*Name Spec/Caf<C3A9>: \"<41>\"", "Name", "Spec",
                 "Caf<C3A9>", "<41>"},
        LineCase{"TextInUTF8", "*Name Spec/Caf\xC3\xA9: x", "Name", "Spec", "Caf\xC3\xA9", "x"},
        LineCase{"KeywordWithLanguage", "*fr.Name Spec/Texte: \"\"", "fr.Name", "Spec", "Texte",
                 ""},
        LineCase{"QueryKeyword", "*?Name: \"query\"", "?Name", "", {}, "query"},
        LineCase{"CarriageReturnAtTheEndIsDropped", "*Name Spec/Text: plain \r", "Name", "Spec",
                 "Text", "plain"},
        LineCase{"CarriageReturnAfterTheColonIsNoValue", "*Name:\r", "Name", "", {}, {}},
        LineCase{"OnlyOneCarriageReturnIsDropped", "*Name: plain\r\r", "Name", "", {}, "plain\r"},
        LineCase{"CarriageReturnInsideTheLineStays", "*Name: \"a\rb\"\r", "Name", "", {}, "a\rb"},
        LineCase{"OtherWhiteSpaceIsNoBlank",
                 "*Name\xC2\xA0"
                 "Spec: \vplain\f",
                 "Name\xC2\xA0"
                 "Spec",
                 "",
                 {},
                 "\vplain\f"},
        LineCase{"QuoteBeforeTheColonOpensNoValue",
                 "*Name \"Spec: plain",
                 "Name",
                 "\"Spec",
                 {},
                 "plain"},
        LineCase{"PercentInsideAKeywordIsNoComment", "*Name%: plain", "Name%", "", {}, "plain"},
        LineCase{"EmptyKeyword", "*: plain", "", "", {}, "plain"}),
    [](const testing::TestParamInfo<LineCase>& lineCase) { return lineCase.param.name; });

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

TEST(PPDModelFile, TakesBlankLinesBeforeTheFirst) {
    EXPECT_TRUE(PPDModelFile::fileWithText(makePPDText("\n \t\n\r\n*PPD-Adobe: \"4.3\"\n")));
}

TEST(PPDModelFile, NeedsNoMoreOfTheFirstLineThanItsBeginning) {
    EXPECT_TRUE(PPDModelFile::fileWithText(makePPDText("*PPD-Adobe")));
    EXPECT_TRUE(PPDModelFile::fileWithText(makePPDText("*PPD-Adobe-4.3: x")));
    EXPECT_FALSE(PPDModelFile::fileWithText(makePPDText("*PPD-Adob")));
    EXPECT_FALSE(PPDModelFile::fileWithText(makePPDText("*ppd-adobe: \"4.3\"\n")));
}

TEST(PPDModelFile, TheFirstLineIsAnAttributeToo) {
    EXPECT_THAT(values(fileWithLines("")->attributesForName("PPD-Adobe")), ElementsAre("4.3"));
}

TEST(PPDModelFile, GivesNothingForNoText) {
    std::string reason;
    EXPECT_FALSE(PPDModelFile::fileWithText(nullptr, &reason));
    EXPECT_EQ(reason, "there is no text");
    EXPECT_FALSE(PPDModelFile::fileWithText(nullptr));
}

TEST(PPDModelFile, RefusesATextThatIsNotUTF8AndSaysWhere) {
    EXPECT_EQ(reasonForText("*PPD-Adobe: \xE9\n"), "is not valid UTF-8 at byte 12");
    EXPECT_EQ(reasonForText("*PPD-Adobe: \xC0\xAF\n"), "is not valid UTF-8 at byte 12");
    EXPECT_EQ(reasonForText("*PPD-Adobe: \xED\xA0\x80\n"), "is not valid UTF-8 at byte 12");
    EXPECT_EQ(reasonForText("\xFF\xFE*"), "is not valid UTF-8 at byte 0");
}

TEST(PPDModelFile, GivesTheReasonOnlyToACallerThatWantsIt) {
    EXPECT_FALSE(PPDModelFile::fileWithText(makePPDText("")));
    EXPECT_FALSE(PPDModelFile::fileWithText(makePPDText("*PPD-Adobe: \"")));
    EXPECT_FALSE(PPDModelFile::fileWithText(makePPDText("*PPD-Adobe: \xFF")));
    EXPECT_FALSE(PPDModelFile::fileWithContentsOfFile("/nonexistent/file.ppd"));
}

TEST(PPDModelFile, KeepsACarriageReturnWithoutALineFeed) {
    const auto file = fileWithLines("*A: plain\r");
    EXPECT_THAT(values(file->attributesForName("A")), ElementsAre("plain\r"));
}

TEST(PPDModelFile, ReadsTheLastLineWithoutALineFeed) {
    EXPECT_THAT(values(fileWithLines("*A: plain")->attributesForName("A")), ElementsAre("plain"));
    EXPECT_THAT(values(fileWithLines("*A: \"x\"")->attributesForName("A")), ElementsAre("x"));
    EXPECT_THAT(values(fileWithLines("*A: \"x\ny\"")->attributesForName("A")), ElementsAre("x y"));
    EXPECT_THAT(values(fileWithLines("*A:")->attributesForName("A")), ElementsAre(std::nullopt));
    EXPECT_THAT(fileWithLines("*")->attributesForName(""), IsEmpty());
}

TEST(PPDModelFile, SkipsCommentsWhateverTheyHold) {
    const auto file = fileWithLines("*% a: \"open\n*%A: x\n*%\n*B: y\n");
    EXPECT_THAT(file->mainKeywords(), ElementsAre("B", "PPD-Adobe"));
}

TEST(PPDModelFile, SkipsLinesThatDoNotBeginWithAnAsterisk) {
    const auto file = fileWithLines(" *A: x\n\t*A: x\nA: \"open\n\n%*A: x\n\r\n*B: y\n");
    EXPECT_THAT(file->mainKeywords(), ElementsAre("B", "PPD-Adobe"));
}

TEST(PPDModelFile, SkipsLinesWithoutAColon) {
    const auto file =
        fileWithLines("*End\n*A\n*A Spec\n*A Spec/Text\n*A \"open\n*\n*A \n*A Spec/\n*B: y\n");
    EXPECT_THAT(file->mainKeywords(), ElementsAre("B", "PPD-Adobe"));
}

TEST(PPDModelFile, ReadsTheEndLineAfterAValueOfSeveralLinesAsNoAttribute) {
    const auto file = fileWithLines("*A: \"one\ntwo\"\n*End\n*B: y\n");
    EXPECT_THAT(values(file->attributesForName("A")), ElementsAre("one two"));
    EXPECT_THAT(file->attributesForName("End"), IsEmpty());
    EXPECT_THAT(values(file->attributesForName("B")), ElementsAre("y"));
}

TEST(PPDModelFile, JoinsAlsoEmptyLinesOfAQuotedValue) {
    const auto file = fileWithLines("*A: \"\n\none\n\r\n\"\n*B: \"\n\"\n*C: \"\r\n\r\n\"\n");
    EXPECT_THAT(values(file->attributesForName("A")), ElementsAre("  one  "));
    EXPECT_THAT(values(file->attributesForName("B")), ElementsAre(" "));
    EXPECT_THAT(values(file->attributesForName("C")), ElementsAre("  "));
}

TEST(PPDModelFile, KeepsBlanksOfTheLinesOfAQuotedValue) {
    const auto file = fileWithLines("*A: \"one \n\ttwo\r\r\nthree\r\"\n");
    EXPECT_THAT(values(file->attributesForName("A")), ElementsAre("one  \ttwo\r three\r"));
}

TEST(PPDModelFile, AQuotedValueHoldsCommentsAndKeywordLines) {
    const auto file = fileWithLines("*A: \"one\n*% no comment\n*End\n*B: x\"y\n*C: z\n");
    EXPECT_THAT(values(file->attributesForName("A")), ElementsAre("one *% no comment *End *B: x"));
    EXPECT_THAT(file->attributesForName("B"), IsEmpty());
    EXPECT_THAT(values(file->attributesForName("C")), ElementsAre("z"));
}

TEST(PPDModelFile, AStrayQuoteTakesLinesIntoAValueUntilTheNextQuote) {
    const auto file = fileWithLines("*A: \"one\n*B: \"two\"\n*C: x\n");
    EXPECT_THAT(values(file->attributesForName("A")), ElementsAre("one *B: "));
    EXPECT_THAT(values(file->attributesForName("C")), ElementsAre("x"));
}

TEST(PPDModelFile, ComparesNamesExactly) {
    const auto file = fileWithLines("*Name Spec: x\n*name spec: y\n");
    EXPECT_THAT(values(file->attributesForName("Name")), ElementsAre("x"));
    EXPECT_THAT(values(file->attributesForName("name")), ElementsAre("y"));
    EXPECT_THAT(file->attributesForName("NAME"), IsEmpty());
    EXPECT_THAT(file->attributesForName("Nam"), IsEmpty());
    EXPECT_THAT(file->attributesForName("*Name"), IsEmpty());
    EXPECT_THAT(file->attributesForName_spec("Name", "spec"), IsEmpty());
    EXPECT_THAT(file->attributesForName_spec("Name", ""), IsEmpty());
}

TEST(PPDModelFile, ListsMainKeywordsSortedEachOnce) {
    const auto file = fileWithLines("*b: x\n*B: x\n*a y: x\n*b: x\n*a: x\n*End\n");
    EXPECT_THAT(file->mainKeywords(), ElementsAre("B", "PPD-Adobe", "a", "b"));
}

TEST(PPDModelFile, AnOptionIsOpenedByANameWithAnAsterisk) {
    const auto file = fileWithLines(
        "*OpenUI *A/Text: PickOne\n*OpenUI *B: PickMany\n*JCLOpenUI *C/Text<3A>: Boolean\n"
        "*OpenUI *D:\n*OpenUI  *E : \"PickOne\"\n");
    EXPECT_THAT(file->optionNames(), ElementsAre("A", "B", "C", "D", "E"));
}

TEST(PPDModelFile, OtherLinesOpenNoOption) {
    const auto file = fileWithLines(
        "*OpenUI A: PickOne\n*OpenUI *: PickOne\n*OpenUI: *B\n*OpenUI *C\n*openUI *D: PickOne\n"
        "*CloseUI: *E\n*OpenGroup: F\n*DefaultG: x\n*G x: \"\"\n*OpenUI * H: PickOne\n"
        "*OpenUI/Text: *I\n");
    // "* H" is the asterisk and the name " H", which nothing looks up.
    EXPECT_THAT(file->optionNames(), ElementsAre(" H"));
    for (const char* name : {"A", "", "B", "C", "D", "E", "F", "G", "H", "I"}) {
        EXPECT_FALSE(file->optionForName(name)) << name;
    }
}

TEST(PPDModelFile, ListsOptionsInFileOrderEachOnce) {
    const auto file = fileWithLines(
        "*JCLOpenUI *Z: PickOne\n*OpenUI *B: PickOne\n*OpenUI *A: PickOne\n*JCLOpenUI *B: "
        "PickOne\n*OpenUI *Z: PickOne\n");
    EXPECT_THAT(file->optionNames(), ElementsAre("Z", "B", "A"));
}

TEST(PPDModelFile, AnOptionsDefaultIsTheValueOfItsFirstDefaultLine) {
    const auto file = fileWithLines(
        "*DefaultA: before\n*OpenUI *A: PickOne\n*DefaultA: after\n*OpenUI *B: PickOne\n"
        "*DefaultB:\n*DefaultB: second\n*OpenUI *C: PickOne\n*DefaultC: \"quoted\"\n"
        "*OpenUI *D: PickOne\n*DefaultD: \"\"\n*OpenUI *E: PickOne\n*Default: E\n*defaultE: x\n");
    EXPECT_EQ(file->optionForName("A")->defaultChoiceName(), "before");
    EXPECT_EQ(file->optionForName("B")->defaultChoiceName(), std::nullopt);
    EXPECT_EQ(file->optionForName("C")->defaultChoiceName(), "quoted");
    EXPECT_EQ(file->optionForName("D")->defaultChoiceName(), "");
    EXPECT_EQ(file->optionForName("E")->defaultChoiceName(), std::nullopt);
}

TEST(PPDModelFile, AChoiceIsTheFirstAttributeOfItsNameWhereverItStands) {
    const auto file = fileWithLines(
        "*A x/Outside: \"\"\n*OpenUI *A: PickOne\n*A x/Inside: \"\"\n*A y: \"\"\n*A z/: \"\"\n"
        "*A: \"none\"\n*CloseUI: *A\n*A two words/Late: \"\"\n");
    const OrbPPDOption* option = file->optionForName("A");
    ASSERT_TRUE(option);
    EXPECT_EQ(option->choiceForName("x")->text(), "Outside");
    EXPECT_EQ(option->choiceForName("y")->text(), std::nullopt);
    EXPECT_EQ(option->choiceForName("z")->text(), "");
    EXPECT_EQ(option->choiceForName("two words")->text(), "Late");
    EXPECT_FALSE(option->choiceForName("two"));
    EXPECT_FALSE(option->choiceForName("X"));
    EXPECT_FALSE(option->choiceForName(""));
}

TEST(PPDModelFile, AChoiceOfOneOptionIsNoneOfAnother) {
    const auto file =
        fileWithLines("*OpenUI *A: PickOne\n*A x: \"\"\n*OpenUI *B: PickOne\n*B y: \"\"\n");
    EXPECT_TRUE(file->optionForName("A")->choiceForName("x"));
    EXPECT_FALSE(file->optionForName("A")->choiceForName("y"));
    EXPECT_FALSE(file->optionForName("B")->choiceForName("x"));
}

TEST(PPDModelFile, KeepsItsTextAndWhatItHandedOutAsLongAsItLives) {
    PPDText text = makePPDText(kFirstLine + "*A s/T: \"one\ntwo\"\n");
    auto file = PPDModelFile::fileWithText(text);
    ASSERT_TRUE(file);
    EXPECT_EQ(file->text(), text);
    text.reset();
    const OrbPPDAttribute* attribute = file->attributesForName("A").at(0);
    EXPECT_EQ(attribute->value(), "one two");
    EXPECT_EQ(attribute->text(), "T");
    EXPECT_EQ(file->attributesForName_spec("A", "s").at(0), attribute);
}

TEST(PPDModelFile, IsReadFromAFile) {
    const Testing::TemporaryDirectory directory;
    const std::string path = directory.write("a.ppd", kFirstLine + "*A: x\r\n");
    const auto file = PPDModelFile::fileWithContentsOfFile(path);
    ASSERT_TRUE(file);
    EXPECT_THAT(values(file->attributesForName("A")), ElementsAre("x"));
    EXPECT_EQ(*file->text(), kFirstLine + "*A: x\r\n");
}

TEST(PPDModelFile, SaysWhyAFileCannotBeReadOrParsed) {
    const Testing::TemporaryDirectory directory;
    const auto reasonForPath = [](const std::string& path) {
        std::string reason;
        EXPECT_FALSE(PPDModelFile::fileWithContentsOfFile(path, &reason)) << path;
        return reason;
    };
    EXPECT_EQ(reasonForPath((directory.path() / "none.ppd").string()), "No such file or directory");
    EXPECT_EQ(reasonForPath(directory.path().string()), "is a directory");
    EXPECT_EQ(reasonForPath(directory.write("latin1.ppd", "*PPD-Adobe: \"4.3\"\n*A: \xE9\n")),
              "is not valid UTF-8 at byte 22");
    EXPECT_EQ(reasonForPath(directory.write("empty.ppd", "")), "is no PPD: it is empty");
    EXPECT_EQ(reasonForPath(directory.write("open.ppd", kFirstLine + "*A: \"x\n")),
              "has a quoted value that never closes, opened on line 2");
    EXPECT_EQ(reasonForPath(directory.write("page.ppd", "<!DOCTYPE html>\n<html></html>\n")),
              "is no PPD: line 1 does not begin with \"*PPD-Adobe\"");
}

TEST(PPDModelFile, CountsTheLineOfAnOpenQuoteAfterCarriageReturnsAndLongValues) {
    EXPECT_EQ(reasonForText("*PPD-Adobe: \"4.3\"\r\n*A: \"one\r\ntwo\r\nthree\"\r\n*B: \"open\r\n"),
              "has a quoted value that never closes, opened on line 5");
    EXPECT_EQ(reasonForText("*PPD-Adobe: \"4.3\n\n"),
              "has a quoted value that never closes, opened on line 1");
}

TEST(PPDModelFile, ItsAttributesAreInFileOrderWithTheirTranslations) {
    const auto PPD = fileWithLines("*B b: \"2\"\n*de.B b/zwei: \"\"\n*A: 1\n*B a: \"3\"\n");
    std::string names;
    for (const PPDModelAttribute& attribute : PPD->attributes()) {
        names += std::string(attribute.keyword()) + "/" + std::string(attribute.spec()) + " ";
    }
    EXPECT_EQ(names, "PPD-Adobe/ B/b de.B/b A/ B/a ");
}

}  // namespace
}  // namespace TkPPDUpdating
