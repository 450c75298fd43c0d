#include "updaters/default_choice/UserLocale.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "tests/support/TestDoubles.h"

namespace TkPPDUpdating {
namespace {

struct LocaleCase {
    const char* name;
    std::map<std::string, std::string> variables;
    std::string identifier;
};

void PrintTo(const LocaleCase& each, std::ostream* stream) {
    *stream << each.name;
}

class UserLocale : public testing::TestWithParam<LocaleCase> {};

TEST_P(UserLocale, HasTheExpectedIdentifier) {
    EXPECT_EQ(userLocaleIdentifier(Testing::FakeEnvironment(GetParam().variables)),
              GetParam().identifier);
}

INSTANTIATE_TEST_SUITE_P(
    FromEnvironment, UserLocale,
    testing::ValuesIn(std::vector<LocaleCase>{
        {"LangAlone", {{"LANG", "de_DE"}}, "de_DE"},
        {"PaperBeforeLang", {{"LANG", "de_DE"}, {"LC_PAPER", "en_US"}}, "en_US"},
        {"AllBeforePaperAndLang",
         {{"LANG", "de_DE"}, {"LC_PAPER", "en_US"}, {"LC_ALL", "fr_FR"}},
         "fr_FR"},
        {"EmptyAllIsPassedOver", {{"LC_ALL", ""}, {"LC_PAPER", "en_US"}}, "en_US"},
        {"EmptyAllAndPaperArePassedOver",
         {{"LC_ALL", ""}, {"LC_PAPER", ""}, {"LANG", "sv_SE"}},
         "sv_SE"},
        {"OtherCategoriesDoNotCount", {{"LC_MESSAGES", "fr_FR"}, {"LANG", "sv_SE"}}, "sv_SE"},
        {"CodesetIsCutOff", {{"LANG", "en_US.UTF-8"}}, "en_US"},
        {"ModifierIsCutOff", {{"LANG", "de_DE@euro"}}, "de_DE"},
        {"CodesetAndModifierAreCutOff", {{"LANG", "sr_RS.UTF-8@latin"}}, "sr_RS"},
        {"LanguageAlone", {{"LANG", "en"}}, "en"},
        {"NoneIsPOSIX", {}, "en_US_POSIX"},
        {"AllEmptyIsPOSIX", {{"LC_ALL", ""}, {"LC_PAPER", ""}, {"LANG", ""}}, "en_US_POSIX"},
        {"CIsPOSIX", {{"LANG", "C"}}, "en_US_POSIX"},
        {"CWithCodesetIsPOSIX", {{"LANG", "C.UTF-8"}}, "en_US_POSIX"},
        {"POSIXIsPOSIX", {{"LC_ALL", "POSIX"}, {"LANG", "de_DE"}}, "en_US_POSIX"},
        {"CodesetAloneIsPOSIX", {{"LANG", ".UTF-8"}}, "en_US_POSIX"},
        {"LowerCaseIsNotC", {{"LANG", "c"}}, "c"},
        {"TheUpdatersOwnVariableDoesNotCount",
         {{"ZrCurrentLocaleIdentifier", "fr_FR"}, {"LANG", "sv_SE"}},
         "sv_SE"},
    }),
    [](const auto& parameter) { return std::string(parameter.param.name); });

}  // namespace
}  // namespace TkPPDUpdating
