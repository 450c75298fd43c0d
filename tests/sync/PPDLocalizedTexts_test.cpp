#include "sync/PPDLocalizedTexts.h"

#include <gmock/gmock.h>

#include "tests/support/ParsedPPD.h"
#include "tests/support/TestDoubles.h"

namespace TkPPDUpdating::Testing {
namespace {

struct Locale {
    std::map<std::string, std::string> environment;
    std::vector<std::string> languages;
};

TEST(UserLanguages, AreThoseOfTheLocaleOfMessages) {
    for (const Locale& locale :
         std::vector<Locale>{{{}, {"en"}},
                             {{{"LANG", "C"}}, {"en"}},
                             {{{"LANG", "POSIX"}}, {"en"}},
                             {{{"LANG", "C.UTF-8"}}, {"en"}},
                             {{{"LANG", "de_AT.UTF-8"}}, {"de_AT", "de"}},
                             {{{"LANG", "ca_ES@valencia"}}, {"ca_ES", "ca"}},
                             {{{"LANG", "eo"}}, {"eo"}},
                             {{{"LANG", "de_DE"}, {"LC_MESSAGES", "fr_FR"}}, {"fr_FR", "fr"}},
                             {{{"LANG", "de_DE"}, {"LC_MESSAGES", ""}}, {"de_DE", "de"}},
                             {{{"LC_ALL", "ja_JP"}, {"LC_MESSAGES", "fr_FR"}}, {"ja_JP", "ja"}},
                             {{{"LC_ALL", "C"}, {"LANG", "fr_FR"}}, {"en"}},
                             {{{"LC_PAPER", "de_DE"}}, {"en"}}}) {
        EXPECT_EQ(userLanguages(FakeEnvironment(locale.environment)), locale.languages)
            << ::testing::PrintToString(locale.environment);
    }
}

TEST(DecodedPPDText, HexadecimalPartsAreBytes) {
    const std::vector<std::pair<std::string, std::string>> table = {
        {"", ""},
        {"Plain Paper", "Plain Paper"},
        {"Papier glac<C3A9>", "Papier glac\xC3\xA9"},
        {"<C3A9><C3 a9>t<C3\tA9>", "\xC3\xA9\xC3\xA9t\xC3\xA9"},
        {"Taille <E9>", "Taille \xC3\xA9"},
        {"line<0A>feed", "line\nfeed"},
        {"<>", ""},
        {"odd <C3A>", "odd <C3A>"},
        {"a < b > c", "a < b > c"},
        {"<<41>", "<A"},
        {"open <41", "open <41"},
        {"1200<b2>x", "1200\xC2\xB2x"},
    };
    for (const auto& [text, decoded] : table) {
        EXPECT_EQ(decodedPPDText(text), decoded) << text;
    }
}

constexpr std::string_view kPPD =
    "*cupsLanguages: \"en de\"\n"
    "*OpenUI *MediaType/Media Type: PickOne\n"
    "*de.Translation MediaType/Medientyp: \"\"\n"
    "*de_AT.Translation MediaType/Medientyp, <C3B6>sterreichisch: \"\"\n"
    "*MediaType Plain/Plain Paper: \"\"\n"
    "*de.MediaType Plain/Normalpapier: \"\"\n"
    "*MediaType Thick: \"\"\n"
    "*MediaType Empty/: \"\"\n"
    "*MediaType custom1: \"\"\n"
    "*en.MediaType custom1/B\xC3\xBCttenpapier: \"\"\n"
    "*CloseUI: *MediaType\n"
    "*JCLOpenUI *JCLFast/Fast: Boolean\n"
    "*JCLCloseUI: *JCLFast\n"
    "*OpenUI *Bare: PickOne\n"
    "*CloseUI: *Bare\n"
    "*de.Translation ZrMaxSupportedResolution/H<C3B6>chste Aufl<C3B6>sung: \"\"\n";

struct Text {
    std::vector<std::string> languages;
    std::string option;
    std::string choice;
    std::string text;
};

TEST(PPDLocalizedTexts, AreThoseOfTheLanguageWhereThePPDHasIt) {
    const auto PPD = parsedPPD(kPPD);
    for (const Text& expected :
         std::vector<Text>{{{"en"}, "MediaType", "", "Media Type"},
                           {{"fr_FR", "fr"}, "MediaType", "", "Media Type"},
                           {{"de_DE", "de"}, "MediaType", "", "Medientyp"},
                           {{"de_AT", "de"}, "MediaType", "", "Medientyp, \xC3\xB6sterreichisch"},
                           {{"de"}, "JCLFast", "", "Fast"},
                           {{"de"}, "Bare", "", "Bare"},
                           {{"de"}, "Unknown", "", "Unknown"},
                           {{"de"}, "MediaType", "Plain", "Normalpapier"},
                           {{"fr"}, "MediaType", "Plain", "Plain Paper"},
                           {{"de"}, "MediaType", "Thick", "Thick"},
                           {{"de"}, "MediaType", "Empty", "Empty"},
                           {{"de"}, "MediaType", "custom1", "B\xC3\xBCttenpapier"},
                           {{"de"}, "MediaType", "custom2", "custom2"}}) {
        const PPDLocalizedTexts texts(*PPD, expected.languages);
        EXPECT_EQ(expected.choice.empty() ? texts.textOfOption(expected.option)
                                          : texts.textOfChoice(expected.option, expected.choice),
                  expected.text)
            << expected.languages.front() << " " << expected.option << " " << expected.choice;
    }
}

TEST(PPDLocalizedTexts, AKeywordHasOneInItsTranslationLineOnly) {
    const auto PPD = parsedPPD(kPPD);
    EXPECT_EQ(PPDLocalizedTexts(*PPD, {"de"}).translationOf("ZrMaxSupportedResolution"),
              "H\xC3\xB6"
              "chste Aufl\xC3\xB6sung");
    EXPECT_EQ(PPDLocalizedTexts(*PPD, {"fr"}).translationOf("ZrMaxSupportedResolution"),
              std::nullopt);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
