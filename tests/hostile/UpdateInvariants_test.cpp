// That the judge of updates sees what it is to see.
#include "tests/hostile/UpdateInvariants.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace TkPPDUpdating::Testing {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kBefore =
    "*PPD-Adobe: \"4.3\"\n"
    "*cupsFilter: \"a 0 b\"\n"
    "*ZrPenDyes: C,M,Y,K\n"
    "*ZrAutoDuplexCapability: Unknown\n"
    "*OpenUI *MediaType/Media: PickOne\n"
    "*DefaultMediaType: Plain\n"
    "*MediaType Plain/Plain: \"<</MediaType(Plain)>>setpagedevice\"\n"
    "*CloseUI: *MediaType\n"
    "*OpenGroup: ZrTwoSidedPrinting/Two-Sided\n"
    "*OpenUI *Duplex/Duplex: PickOne\n"
    "*DefaultDuplex: None\n"
    "*Duplex None/Off: \"\"\n"
    "*CloseUI: *Duplex\n"
    "*CloseGroup: ZrTwoSidedPrinting\n"
    "*UIConstraints: *Duplex None *MediaType Plain\n"
    "*Tail: \"first\nsecond\"\n"
    "*End\n";

struct Edit {
    std::string from;
    std::string to;
};

std::vector<std::string> findingsAfter(const std::vector<Edit>& edits) {
    std::string after = kBefore;
    for (const auto& [from, to] : edits) {
        const std::size_t at = after.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        after.replace(at, from.size(), to);
    }
    return UpdateInvariants(kBefore).findingsIn(after);
}

TEST(UpdateInvariants, LetWhatUpdatersDoPass) {
    EXPECT_THAT(findingsAfter({}), IsEmpty());
    EXPECT_THAT(findingsAfter({{"C,M,Y,K", "C,M"}, {"Unknown", "True"}}), IsEmpty());
    EXPECT_THAT(
        findingsAfter({{"*CloseUI: *MediaType\n",
                        "*MediaType custom1/Felt: \"<</MediaType(custom1)>>setpagedevice\"\n"
                        "*CloseUI: *MediaType\n"},
                       {"*End\n",
                        "*End\n*ZrChoiceProperties MediaType.custom1: \"MediaID=f;\"\n"
                        "*ZrMediaTypeCategory custom/Custom: \"custom1\"\n"}}),
        IsEmpty());
}

TEST(UpdateInvariants, TakeTwoFullStopsForTheNameOfAProfileWhereSomethingNamesIt) {
    const std::string head = "*PPD-Adobe: \"4.3\"\n*OpenUI *ZrICCProfileId2: PickOne\n";
    const std::string choice = "*ZrICCProfileId2 ../felt: \"\"\n";
    const std::string rest = "*CloseUI: *ZrICCProfileId2\n";
    const std::string block =
        "*cupsICCProfile ..../felt: \"/p/felt.icc\"\n"
        "*ZrChoiceProperties MediaType.custom1: \"MediaID=f;ZrICCProfileId2=..;\"\n";
    UpdateInvariants invariants(head + rest);
    EXPECT_THAT(invariants.findingsInLines(head + choice + rest + block), IsEmpty());
    EXPECT_THAT(invariants.findingsInLines(head + choice + rest), Contains(HasSubstr("../felt")));
}

TEST(UpdateInvariants, LetWhatGoesWithADuplexerGo) {
    EXPECT_THAT(findingsAfter({{"*OpenGroup: ZrTwoSidedPrinting/Two-Sided\n"
                                "*OpenUI *Duplex/Duplex: PickOne\n*DefaultDuplex: None\n"
                                "*Duplex None/Off: \"\"\n*CloseUI: *Duplex\n"
                                "*CloseGroup: ZrTwoSidedPrinting\n"
                                "*UIConstraints: *Duplex None *MediaType Plain\n",
                                ""}}),
                IsEmpty());
}

TEST(UpdateInvariants, LetTheFirstOfTwoGroupsOfADuplexerGo) {
    const std::string first =
        "*OpenGroup: ZrTwoSidedPrinting/Two\n*OpenUI *Duplex/Duplex: PickOne\n"
        "*DefaultDuplex: None\n*Duplex None/Off: \"\"\n*CloseUI: *Duplex\n"
        "*CloseGroup: ZrTwoSidedPrinting\n";
    const std::string rest =
        "*OpenGroup: Other/Other\n*OpenUI *A/A: PickOne\n*A x/X: \"\"\n*CloseUI: *A\n"
        "*CloseGroup: Other\n*OpenGroup: ZrTwoSidedPrinting/Two\n*OpenUI *B/B: PickOne\n"
        "*B y/Y: \"\"\n*CloseUI: *B\n*CloseGroup: ZrTwoSidedPrinting\n";
    UpdateInvariants invariants(kBefore + first + rest);
    const std::string before = kBefore;
    const std::size_t start = before.find("*OpenGroup");
    const std::size_t end = before.find("*Tail");
    // Of three, the first; then it is the second that is the first.
    EXPECT_THAT(invariants.findingsIn(before.substr(0, start) + before.substr(end) + first + rest),
                IsEmpty());
    UpdateInvariants invariantsOfTwo(before.substr(0, start) + before.substr(end) + first + rest);
    EXPECT_THAT(invariantsOfTwo.findingsIn(before.substr(0, start) + before.substr(end) + rest),
                IsEmpty());
    EXPECT_THAT(invariantsOfTwo.findingsIn(before.substr(0, start) + before.substr(end)),
                Contains(HasSubstr("lost")));
}

TEST(UpdateInvariants, TakeNothingForGoneThatIsThereTwice) {
    const std::string head = "*PPD-Adobe: \"4.3\"\n";
    const std::string opening = "*OpenUI *MediaType/Media: PickOne\n";
    const std::string type = "*MediaType custom1/Felt: \"<</MediaType(custom1)>>setpagedevice\"\n";
    const std::string closing = "*CloseUI: *MediaType\n";
    const std::string group = "*OpenGroup: ZrTwoSidedPrinting/Two\n";
    const std::string rest = "*CloseGroup: ZrTwoSidedPrinting\n*Tail: 1\n";
    UpdateInvariants invariants(head + opening + closing + group + opening + type + closing + rest);
    EXPECT_THAT(invariants.findingsInLines(head + opening + type + closing + group + opening +
                                           closing + rest),
                IsEmpty());
    EXPECT_THAT(
        invariants.findingsInLines(head + opening + type + group + opening + closing + rest),
        Contains(HasSubstr("*OpenGroup")));
}

TEST(UpdateInvariants, SeeALineThatIsNobodys) {
    EXPECT_THAT(findingsAfter({{"*ZrPenDyes", "*cupsFilter: \"x 0 sh\"\n*ZrPenDyes"}}),
                Contains(HasSubstr("filter")));
    EXPECT_THAT(findingsAfter({{"second", "third"}}), Contains(HasSubstr("third")));
    EXPECT_THAT(findingsAfter({{"*cupsFilter: \"a 0 b\"\n", ""}}), Contains(HasSubstr("a 0 b")));
    EXPECT_THAT(findingsAfter({{"*ZrPenDyes: C,M,Y,K\n", "*ZrPenDyes: C\n*New: 1\n"}}),
                Contains(HasSubstr("*New: 1")));
}

TEST(UpdateInvariants, SeeForeignCodeBehindAChoice) {
    EXPECT_THAT(
        findingsAfter({{"*CloseUI: *MediaType\n",
                        "*MediaType custom1/Felt: (x) run: \"<</MediaType(custom1)>>"
                        "setpagedevice\"\n*CloseUI: *MediaType\n"},
                       {"*End\n", "*End\n*ZrMediaTypeCategory custom/Custom: \"custom1\"\n"}}),
        Contains(HasSubstr("foreign code")));
    EXPECT_THAT(findingsAfter({{"<</MediaType(Plain)>>", "<</MediaType(custom1)>>"}}),
                Contains(HasSubstr("choice MediaType Plain")));
}

TEST(UpdateInvariants, TakeAQuoteForTheBeginningOfAValueOnlyBehindAColonAndOutsideOfComments) {
    const std::string head = "*PPD-Adobe: \"4.3\"\n";
    for (const std::string line : {"*ZrPenDyes\"\n", "*ZrPen\"Dyes: 1\n", "*% : \"\n"}) {
        UpdateInvariants invariants(head + line + "*Tail: \"1\"\n");
        EXPECT_THAT(invariants.findingsInLines(head + line + "\n*Tail: \"1\"\n"), IsEmpty());
        EXPECT_THAT(invariants.findingsInLines(head + line + "*New: 1\n*Tail: \"1\"\n"),
                    Contains("a line that is new or another: *New: 1"));
    }
    UpdateInvariants invariants(head + "*Tail: \"1\n\"\n");
    EXPECT_THAT(invariants.findingsInLines(head + "*Tail: \"1\n\n\"\n"),
                Contains("a line is lost: *Tail: \"1\n\""));
}

TEST(UpdateInvariants, TakeACarriageReturnForTheEndOfALine) {
    const std::string head = "*PPD-Adobe: \"4.3\"\n*OpenUI *A: \"a\n*B: \"b\rc\": d\n";
    UpdateInvariants invariants(head);
    EXPECT_THAT(invariants.findingsInLines(head + "*ZrPenDyes: \n"), IsEmpty());
    EXPECT_THAT(invariants.findingsInLines(head + "*New: 1\n"),
                Contains("a line that is new or another: *New: 1"));
    UpdateInvariants invariantsOfTwo("*A: 1\r*B: 2\r\n");
    EXPECT_THAT(invariantsOfTwo.findingsInLines("*A: 1\r\n*B: 2\r\n"),
                Contains(HasSubstr("*A: 1")));
}

TEST(UpdateInvariants, LetBlankLinesComeAndGo) {
    // The second of two carriage returns ends a line in which nothing stands.
    const std::string with = "*PPD-Adobe: \"4.3\"\n*A: 1\r\r\n*B: 2\n";
    const std::string without = "*PPD-Adobe: \"4.3\"\n*A: 1\r*B: 2\n";
    EXPECT_THAT(UpdateInvariants(with).findingsInLines(without), IsEmpty());
    EXPECT_THAT(UpdateInvariants(without).findingsInLines(with), IsEmpty());
    EXPECT_THAT(UpdateInvariants(with).findingsInLines("*PPD-Adobe: \"4.3\"\n*A: 1\r*C: 3\n"),
                ElementsAre("a line that is new or another: *C: 3", "a line is lost: *B: 2"));
}

TEST(UpdateInvariants, KnowTheGroupThatStandsInNoValue) {
    const std::string group =
        "*OpenGroup: ZrTwoSidedPrinting/Two\n*A: 1\n*CloseGroup: ZrTwoSidedPrinting\n";
    const std::string head = "*PPD-Adobe: \"4.3\"\n*Note: \"\n" + group + "\"\n";
    UpdateInvariants invariants(head + group + "*B: 2\n");
    EXPECT_THAT(invariants.findingsInLines(head + "*B: 2\n"), IsEmpty());
    EXPECT_THAT(invariants.findingsInLines(head), Contains("a line is lost: *B: 2"));
}

TEST(UpdateInvariants, KnowThePageSizesThatStandInNoValue) {
    const std::string head = "*PPD-Adobe: \"4.3\"\n";
    const std::string other = "*A: 1\n";
    const std::string size = "*PageSize A4.ZrDuplex/A4 D: \"\"\n";
    // Without the line in the value nothing ends that.
    const std::string rest = "*Note: \"\n*PageSize A5.ZrDuplex/A5 D: \"\n*B: 2\n";
    UpdateInvariants invariants(head + other + size + rest);
    EXPECT_THAT(invariants.findingsIn(head + other + rest), IsEmpty());
    EXPECT_THAT(invariants.findingsIn(head + rest), Contains("a line is lost: *A: 1"));
}

TEST(UpdateInvariants, TakeNoNewKeywordWithASlash) {
    const std::string head = "*PPD-Adobe: \"4.3\"\n";
    for (const std::string line :
         {"*en/de.MediaType custom1/Felt: \"\"\n", "*MediaType/de custom1: \"\"\n"}) {
        EXPECT_THAT(UpdateInvariants(head).findingsInLines(head + line),
                    Contains(HasSubstr("a line that is new or another")));
    }
    EXPECT_THAT(
        UpdateInvariants(head + "*en/de.MediaType custom1/Felt: \"\"\n").findingsInLines(head),
        IsEmpty());
}

TEST(UpdateInvariants, SeeATextThatLibcupsDoesNotOpen) {
    EXPECT_THAT(UpdateInvariants(kBefore).findingsIn(std::string("\n") + kBefore),
                Contains(HasSubstr("libcups does not open it any more")));
    EXPECT_THAT(findingsAfter({{"*CloseUI: *MediaType\n", ""}}),
                Contains(HasSubstr("a line is lost: *CloseUI")));
    EXPECT_THAT(findingsAfter({{"C,M,Y,K", "C,M\xC3"}}), Contains(HasSubstr("UTF-8")));
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
