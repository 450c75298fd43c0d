#include "updaters/capabilities/DuplexOwnership.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "ppd/PPDStatements.h"

namespace TkPPDUpdating {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Lines = std::vector<std::string>;
using Statements = std::vector<PPDStatement>;

Lines linesThat(const std::function<bool(const PPDStatement&)>& belong,
                const Statements& statements) {
    Lines lines;
    for (const PPDStatement& each : statements) {
        if (belong(each)) {
            lines.emplace_back(each.lines);
        }
    }
    return lines;
}

Lines ofDuplex(const std::string& text) {
    const Statements statements = PPDStatementsOfText(text);
    return linesThat(statementsOfDuplex(statements, {}), statements);
}

TEST(DuplexOwnership, TheTwoSidedGroupGoesWithItsFirstAndLastLine) {
    EXPECT_THAT(ofDuplex("*OpenGroup: General/General\n"
                         "*CloseGroup: General\n"
                         "*OpenGroup: ZrTwoSidedPrinting/Two-Sided Printing\n"
                         "*OpenUI *Duplex/Two-Sided: PickOne\n"
                         "*CloseUI: *Duplex\n"
                         "*CloseGroup: ZrTwoSidedPrinting/Two-Sided Printing\n"
                         "*ZrTail: \"end\"\n"),
                ElementsAre("*OpenGroup: ZrTwoSidedPrinting/Two-Sided Printing",
                            "*OpenUI *Duplex/Two-Sided: PickOne", "*CloseUI: *Duplex",
                            "*CloseGroup: ZrTwoSidedPrinting/Two-Sided Printing"));
}

TEST(DuplexOwnership, OnlyAPairOfLinesMakesTheGroup) {
    EXPECT_THAT(ofDuplex("*CloseGroup: ZrTwoSidedPrinting\n*OpenGroup: ZrTwoSidedPrinting\n"
                         "*OpenUI *Duplex/Two-Sided: PickOne\n"),
                IsEmpty());
    EXPECT_THAT(ofDuplex("*ZrHead: \"x\"\n*CloseGroup: ZrTwoSidedPrinting\n"), IsEmpty());
    EXPECT_THAT(ofDuplex("*OpenGroup: ZrTwoSided\n*CloseGroup: ZrTwoSided\n"), IsEmpty());
    EXPECT_THAT(ofDuplex("*OpenGroup: ZrTwoSidedPrintingToo\n*CloseGroup: ZrTwoSidedPrintingToo\n"),
                IsEmpty());
    EXPECT_THAT(ofDuplex("*OpenGroup: ZrTwoSidedPrintingToo\n*CloseGroup: ZrTwoSidedPrinting\n"),
                IsEmpty());
    EXPECT_THAT(ofDuplex("*OpenGroup: ZrTwoSidedPrinting\n*CloseGroup: ZrTwoSidedPrintingToo\n"),
                IsEmpty());
    // In other words than those that the updater searches for.
    EXPECT_THAT(ofDuplex("*OpenGroup:ZrTwoSidedPrinting\n*CloseGroup: ZrTwoSidedPrinting\n"),
                IsEmpty());
    EXPECT_THAT(ofDuplex("*OpenGroup: ZrTwoSidedPrinting\n*CloseGroup :ZrTwoSidedPrinting\n"),
                IsEmpty());
    EXPECT_THAT(ofDuplex(""), IsEmpty());
}

TEST(DuplexOwnership, TheGroupGoesAsAWhole) {
    const std::string group =
        "*OpenGroup: ZrTwoSidedPrinting\n*A: 1\n*CloseGroup: ZrTwoSidedPrinting\n";
    const std::string line = "*A: 1\n";
    const auto linesThatGo = [](const std::string& before, const std::string& after) {
        const Statements statements = PPDStatementsOfText(before);
        return linesThat(statementsOfDuplex(statements, PPDStatementsOfText(after)), statements);
    };
    const auto all =
        ElementsAre("*OpenGroup: ZrTwoSidedPrinting", "*A: 1", "*CloseGroup: ZrTwoSidedPrinting");
    EXPECT_THAT(linesThatGo(line + group + line, line + line), all);
    EXPECT_THAT(linesThatGo(line + group, line), all);
    EXPECT_THAT(linesThatGo(group + line, line), all);
    // One of its lines is left.
    EXPECT_THAT(linesThatGo(line + group, line + line), IsEmpty());
    EXPECT_THAT(linesThatGo(group + line, line + line), IsEmpty());
    EXPECT_THAT(linesThatGo(group, line), IsEmpty());
}

TEST(DuplexOwnership, AConstraintThatEndsWithTheOptionEndsWithALineFeed) {
    const std::string constraint = "*UIConstraints: *A B *Duplex";
    EXPECT_THAT(ofDuplex(constraint + "\n*Z: 1\n"), ElementsAre(constraint));
    EXPECT_THAT(ofDuplex(constraint + "\r\n*Z: 1\r\n"), IsEmpty());
    // Nothing behind it shows what ends it.
    EXPECT_THAT(ofDuplex("*Z: 1\n" + constraint + "\n"), IsEmpty());
    EXPECT_THAT(ofDuplex(constraint), IsEmpty());
}

TEST(DuplexOwnership, TheFirstLineThatClosesTheGroupEndsIt) {
    EXPECT_THAT(ofDuplex("*OpenGroup: ZrTwoSidedPrinting\n*OpenGroup: Inner\n*CloseGroup: Inner\n"
                         "*CloseGroup: ZrTwoSidedPrinting\n*CloseGroup: ZrTwoSidedPrinting\n"),
                ElementsAre("*OpenGroup: ZrTwoSidedPrinting", "*OpenGroup: Inner",
                            "*CloseGroup: Inner", "*CloseGroup: ZrTwoSidedPrinting"));
}

TEST(DuplexOwnership, NothingOfAGroupThatIsStillThereGoes) {
    const std::string group =
        "*OpenGroup: ZrTwoSidedPrinting\n*Duplex None/Off: \"\"\n"
        "*CloseGroup: ZrTwoSidedPrinting\n";
    const Statements one = PPDStatementsOfText(group);
    const std::string twice = group + group;
    const Statements two = PPDStatementsOfText(twice);
    EXPECT_THAT(linesThat(statementsOfDuplex(one, one), one), IsEmpty());
    EXPECT_THAT(linesThat(statementsOfDuplex(one, two), one), IsEmpty());
    EXPECT_THAT(linesThat(statementsOfDuplex(two, one), two),
                ElementsAre("*OpenGroup: ZrTwoSidedPrinting", "*Duplex None/Off: \"\"",
                            "*CloseGroup: ZrTwoSidedPrinting"));
}

TEST(DuplexOwnership, ConstraintsThatNameDuplexAndTheCommentAboveThemGo) {
    const Lines going = {
        "*% Duplex <-> MediaType", "*UIConstraints: *Duplex DuplexNoTumble *MediaType Felt",
        "*UIConstraints: *MediaType Felt *Duplex",
        // PPDs of some printers have a blank at the end.
        "*UIConstraints: *MediaType Felt *Duplex ", "*UIConstraints: *MediaType\t*Duplex Tumble",
        "*UIConstraints:*Duplex Tumble *MediaType", "*UIConstraints: *Duplexes A *Duplex B",
        "*UIConstraints: *MediaType Felt  *Duplex Tumble",
        "*UIConstraints: \"*Duplex Tumble *MediaType Felt\""};
    const Lines staying = {"*% Duplexer <-> MediaType", "*% MediaType: % Duplex <-> MediaType",
                           "*UIConstraints: *DuplexUnit True *MediaType Felt",
                           "*UIConstraints: *MediaType Duplex *PageSize A4",
                           "*UIConstraints: *MediaType x*Duplex *PageSize A4", "*UIConstraints:",
                           // In other words than those that the updater searches for.
                           "*UIConstraints :*Duplex Tumble *MediaType Felt",
                           "*UIConstraints: *Duplex\tTumble *MediaType Felt",
                           "*UIConstraints: *MediaType Felt *Duplex\t",
                           "*UIConstraints: \"*MediaType Felt *Duplex\"",
                           "*UIConstraints: \"x\"*Duplex Tumble *MediaType Felt",
                           "*NonUIConstraints: *Duplex Tumble *MediaType Felt"};
    std::string text;
    for (const Lines& lines : {going, staying}) {
        for (const std::string& line : lines) {
            text += line + "\n";
        }
    }
    EXPECT_EQ(ofDuplex(text), going);
}

TEST(DuplexOwnership, WithAnExpressionTheStatementsBelongThatItMatches) {
    const Statements statements = PPDStatementsOfText(
        "*PageSize A4.Duplex/A4: \"\"\n*PageSize A4/A4: \"\"\n*PageRegion A4.Duplex/A4: \"\"\n");
    EXPECT_THAT(linesThat(statementsThatMatch("^[*]PageSize .*[.]Duplex"), statements),
                ElementsAre("*PageSize A4.Duplex/A4: \"\""));
    EXPECT_THAT(linesThat(statementsThatMatch(std::nullopt), statements), IsEmpty());
    EXPECT_THAT(linesThat(statementsThatMatch("("), statements), IsEmpty());
}

TEST(DuplexOwnership, AStatementOfSeveralLinesBelongsWhenEachOfThemMatches) {
    const Statements statements = PPDStatementsOfText(
        "*PageSize A4/A4: \"a\nb Duplex\"\n*End\n*PageSize A5/A5: \"Duplex\nDuplex\"\n");
    EXPECT_THAT(linesThat(statementsThatMatch("Duplex"), statements),
                ElementsAre("*PageSize A5/A5: \"Duplex\nDuplex\""));
}

TEST(DuplexOwnership, TheStatementsOfABlockBelongToItAndNothingElse) {
    const Statements statements = PPDStatementsOfText(
        "*OpenGroup: InstallableOptions/Options\n*OpenUI *Unit/Unit: Boolean\n"
        "*DefaultUnit: True\n*CloseUI: *Unit\n*CloseGroup: InstallableOptions\n");
    const auto block = [] {
        return std::optional<std::string>(
            "\n*OpenGroup: InstallableOptions/Options\n*OpenUI *Unit/Unit: Boolean\n"
            "*DefaultUnit: False\n*CloseUI: *Unit\n");
    };
    EXPECT_THAT(linesThat(statementsOfBlock(block), statements),
                ElementsAre("*OpenGroup: InstallableOptions/Options", "*OpenUI *Unit/Unit: Boolean",
                            "*CloseUI: *Unit"));
    EXPECT_THAT(
        linesThat(statementsOfBlock([] { return std::optional<std::string>(); }), statements),
        IsEmpty());
}

TEST(DuplexOwnership, AStatementOfABlockBelongsToItInTheSameOptionAndGroupOnly) {
    const auto block = [] {
        return std::optional<std::string>(
            "*OpenGroup: Options\n*OpenUI *Unit: Boolean\n*Unit True: \"\"\n*CloseUI: *Unit\n"
            "*CloseGroup: Options\n*UIConstraints: *Duplex *Unit\n");
    };
    const auto belonging = [&](const std::string& text) {
        return linesThat(statementsOfBlock(block), PPDStatementsOfText(text));
    };
    EXPECT_THAT(belonging("*Unit True: \"\"\n*UIConstraints: *Duplex *Unit\n"),
                ElementsAre("*UIConstraints: *Duplex *Unit"));
    EXPECT_THAT(belonging("*OpenUI *Unit: Boolean\n*Unit True: \"\"\n*CloseUI: *Unit\n"),
                IsEmpty());
    EXPECT_THAT(belonging("*OpenGroup: Options\n*OpenUI *Other: Boolean\n*Unit True: \"\"\n"),
                ElementsAre("*OpenGroup: Options"));
}

TEST(DuplexOwnership, ABlockIsAskedForOnceAndNotBeforeItIsNeeded) {
    int asked = 0;
    const auto belongs = statementsOfBlock([&asked] {
        ++asked;
        return std::optional<std::string>("*DefaultUnit: True\n");
    });
    EXPECT_EQ(asked, 0);
    const Statements statements = PPDStatementsOfText("*DefaultUnit: True\n*CloseUI: *Unit\n");
    EXPECT_THAT(linesThat(belongs, statements), ElementsAre("*DefaultUnit: True"));
    EXPECT_EQ(asked, 1);
}

TEST(DuplexOwnership, TheCUPSVersionIsTheFirstOneWithoutOptionKeyword) {
    EXPECT_EQ(CUPSVersionOfStatements(PPDStatementsOfText(
                  "*cupsVersion x: \"1.1\"\n*CUPSversion: \"1.2\"\n*cupsVersion: \"1.4\"\n"
                  "*cupsVersion: \"1.5\"\n")),
              "1.4");
    EXPECT_EQ(CUPSVersionOfStatements(PPDStatementsOfText("*PPD-Adobe: \"4.3\"\n")), std::nullopt);
}

}  // namespace
}  // namespace TkPPDUpdating
