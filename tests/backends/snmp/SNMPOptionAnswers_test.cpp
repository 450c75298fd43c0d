#include "backends/snmp/SNMPOptionAnswers.h"

#include <gtest/gtest.h>

#include <string>

namespace TkPPDUpdating::Testing {
namespace {

const SNMPName kName = {1, 3, 6, 1, 4, 1, 99, 1, 0};

OrbCSObjectQuestion trays() {
    return {"OptionTray",
            "1.3.6.1.4.1.99.1.0",
            {{"1", "None"}, {"2", "Tray500"}, {"big", "Tray2000"}},
            ""};
}

SNMPAnswer answer(decltype(SNMPVariable::value) value, const SNMPName& name = kName) {
    SNMPAnswer answer;
    answer.variables.push_back({name, std::move(value), false});
    return answer;
}

/// The choice, or in parentheses why there is none.
std::string choiceOf(const SNMPAnswer& answer, const OrbCSObjectQuestion& question = trays()) {
    std::string reason;
    const auto choice = choiceOfAnswer(question, kName, answer, reason);
    EXPECT_EQ(choice.has_value(), reason.empty());
    return choice ? *choice : "(" + reason + ")";
}

TEST(SNMPOptionAnswers, AreNumbersAndTextsThatThePPDNames) {
    EXPECT_EQ(choiceOf(answer(std::int64_t{2})), "Tray500");
    EXPECT_EQ(choiceOf(answer(std::string("1"))), "None");
    EXPECT_EQ(choiceOf(answer(std::string(" big\r\n"))), "Tray2000");
    EXPECT_EQ(choiceOf(answer(std::string("big\0\0\0", 6))), "Tray2000");
}

TEST(SNMPOptionAnswers, EverythingElseIsNoneAndNoTextOfThePrinterIsTold) {
    const std::string other = "(the answer is none of those that the PPD names)";
    for (const std::string& text :
         {std::string("3"), std::string(""), std::string("Tray500"), std::string("big\n*Evil: 1"),
          std::string("bi\0g", 4), std::string(1024, 'x'), std::string("\xFF")}) {
        EXPECT_EQ(choiceOf(answer(text)), other) << text;
    }
    EXPECT_EQ(choiceOf(answer(std::int64_t{-1})), other);
    EXPECT_EQ(choiceOf(answer(std::monostate())), other) << "a value of another syntax";
    EXPECT_EQ(choiceOf(answer(std::int64_t{2}, {1, 3, 6, 1, 4, 1, 99, 2, 0})), other)
        << "the answer of another object";
}

TEST(SNMPOptionAnswers, WhatStandsForTheOthersIsForThoseThatAreThere) {
    OrbCSObjectQuestion question = trays();
    question.choiceForOthers = "Tray1000";
    EXPECT_EQ(choiceOf(answer(std::int64_t{7}), question), "Tray1000");
    EXPECT_EQ(choiceOf(answer(std::int64_t{1}), question), "None");
    EXPECT_EQ(choiceOf(answer(std::monostate()), question),
              "(the answer is none of those that the PPD names)");
    SNMPAnswer missing = answer(std::monostate());
    missing.variables.front().isEnd = true;
    EXPECT_EQ(choiceOf(missing, question), "(the printer has no such object)");
}

TEST(SNMPOptionAnswers, ObjectsThatAreNotThereAndErrorsAreToldApart) {
    EXPECT_EQ(choiceOf(SNMPAnswer()), "(the printer has no such object)");
    SNMPAnswer several = answer(std::int64_t{1});
    several.variables.push_back(several.variables.front());
    EXPECT_EQ(choiceOf(several), "(the printer has no such object)");
    EXPECT_EQ(choiceOf({.errorStatus = 2, .errorIndex = 1, .variables = {}}),
              "(the printer has no such object)");
    EXPECT_EQ(choiceOf({.errorStatus = 5, .errorIndex = 1, .variables = {}}),
              "(the printer answers with an error)");
}

TEST(SNMPOptionAnswers, IdentifiersAreDottedNumbers) {
    EXPECT_EQ(SNMPNameOfIdentifier("1.3.6.1.4.1.99.1.0"), kName);
    EXPECT_EQ(SNMPNameOfIdentifier(".1.3.6.1.4.1.99.1.0"), kName);
    EXPECT_EQ(SNMPNameOfIdentifier("2.999.4294967295"), (SNMPName{2, 999, 4294967295}));
    for (const std::string& text :
         {std::string(""), std::string("."), std::string("1"), std::string("1."),
          std::string("1..3"), std::string("..1.3"), std::string("1.3.x"), std::string("1.3 "),
          std::string(" 1.3"), std::string("1.3.-1"), std::string("1.3.4294967296"),
          std::string("3.1"), std::string("1.40"), std::string("iso.3"), std::string("1.3\0", 4)}) {
        EXPECT_EQ(SNMPNameOfIdentifier(text), std::nullopt) << text;
    }
    std::string many = "1.3";
    for (int count = 2; count < 128; ++count) {
        many += ".1";
    }
    EXPECT_EQ(SNMPNameOfIdentifier(many)->size(), 128U);
    EXPECT_EQ(SNMPNameOfIdentifier(many + ".1"), std::nullopt);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
