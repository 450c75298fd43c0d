// The reading of statements, on which the guard builds, agrees with libcups.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ppd/PPDStatements.h"
#include "ppd/PPDTextFile.h"
#include "tests/hostile/LibcupsReading.h"

namespace TkPPDUpdating::Testing {
namespace {

/// libcups keeps 80 bytes of a text.
constexpr std::size_t kLongestText = 80;

struct TextAndValue {
    std::string text;
    std::string value;
    bool operator==(const TextAndValue&) const = default;
};
using Statements = std::map<std::pair<std::string, std::string>, std::vector<TextAndValue>>;

std::string withLineFeeds(std::string_view value) {
    std::string text;
    for (std::size_t at = 0; at < value.size(); ++at) {
        const bool isPair = value.substr(at, 2) == "\r\n";
        text += value[at] == '\r' ? '\n' : value[at];
        at += isPair ? 1 : 0;
    }
    return text;
}

Statements statementsOf(std::string_view text) {
    Statements statements;
    for (const PPDStatement& each : PPDStatementsOfText(text)) {
        statements[{std::string(each.keyword), std::string(each.optionKeyword)}].push_back(
            {decodedPPDTranslation(each.text).substr(0, kLongestText), withLineFeeds(each.value)});
    }
    return statements;
}

/// Expects that each choice and attribute that libcups knows is one of the statements.
void expectAgreement(const std::string& text, const std::string& what) {
    std::string error;
    const auto facts = libcupsReading(text, error);
    ASSERT_TRUE(facts) << what << ": " << error;
    const Statements statements = statementsOf(text);
    std::size_t compared = 0;
    for (const LibcupsFact& fact : *facts) {
        // The choice "Custom" is made by libcups, which tells a name of the PPD's own apart by a
        // line before it.
        const bool isMade = fact.kind == "choice" && fact.optionKeyword == "Custom";
        if ((fact.kind != "choice" && fact.kind != "attribute") || isMade) {
            continue;
        }
        const bool isMarked = fact.optionKeyword.starts_with("_custom");
        const auto found =
            statements.find({fact.keyword, fact.optionKeyword.substr(isMarked ? 1 : 0)});
        ASSERT_NE(found, statements.end()) << what << ": " << fact.shown();
        const bool isThere =
            std::any_of(found->second.begin(), found->second.end(), [&](const TextAndValue& each) {
                // A choice without a text has its keyword for one.
                const bool isSameText = each.text == fact.text ||
                                        (each.text.empty() && fact.text == fact.optionKeyword);
                return isSameText && each.value == fact.value;
            });
        EXPECT_TRUE(isThere) << what << ": " << fact.shown() << "\nread as "
                             << found->second.front().text << ": " << found->second.front().value;
        ++compared;
    }
    EXPECT_GT(compared, 5U) << what;
}

TEST(PPDStatementsInLibcups, AgreeOnTheSamples) {
    for (const char* const name : {"zr-inkjet", "zr-office", "zr-compact"}) {
        const PPDText text = PPDTextWithContentsOfFile(
            std::string(TKPPDUPDATING_SOURCE_DIR "/samples/ppd/") + name + ".ppd");
        ASSERT_NE(text, nullptr);
        expectAgreement(*text, name);
    }
}

TEST(PPDStatementsInLibcups, AgreeOnOddLines) {
    const std::string head =
        "*PPD-Adobe: \"4.3\"\n*LanguageEncoding: UTF-8\n*OpenUI *MediaType/Media: PickOne\n"
        "*DefaultMediaType: a\n*MediaType a/A: \"\"\n*MediaType b/B: \"\"\n*MediaType c: \"x\"\n"
        "*CloseUI: *MediaType\n";
    for (const std::string lines :
         {"*One: 1\r*Two: 2\r\n*Three: 3\n\r*Four: 4\n*Five: 5\n",
          "*Long: \"one\ntwo\n\n three\"\n*End\n*After: x\n", "*Blank:   x y  \t\n*Next: 1\n",
          "*Spec a/Text: \"v\"\n*Spec b: w\n*Spec  c / d : \"e\"\n",
          "*Spec a/A<42><0943>D: x\n*Spec b/<4 1>: y\n*Spec c/<x>: z\n",
          "*Spec a/Glossy:  (/etc/passwd) run: \"code\"\n", "*Colon: a: b\n*% c: \"d\n*Next: 1\n",
          "*Inner: a \"quoted\" word\n*Next: 1\n", "\n \t\n*Spec a/Tab\there: x\n\n",
          "*Long: \"one\r\ntwo\"\r\n*End\r\n*After: x\r\n"}) {
        expectAgreement(head + lines, lines);
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
