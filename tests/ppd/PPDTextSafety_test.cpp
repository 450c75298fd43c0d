#include "ppd/PPDTextSafety.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "tests/ppd/UTF8Encoding.h"

namespace TkPPDUpdating::Testing {
namespace {

TEST(PPDTextSafety, RefusesExactlyControlsSeparatorsAndDoubleQuotes) {
    for (char32_t codePoint = 0; codePoint <= kLastCodePoint; ++codePoint) {
        const bool isRefused = codePoint < 0x20 || (codePoint >= 0x7F && codePoint <= 0x9F) ||
                               codePoint == U'"' || codePoint == 0x2028 || codePoint == 0x2029 ||
                               isSurrogate(codePoint);
        ASSERT_EQ(reasonTextCannotStandInPPDLine(encodedUTF8(codePoint)).has_value(), isRefused)
            << std::hex << std::uint32_t{codePoint};
    }
}

TEST(PPDTextSafety, AcceptsTextsOfOneLine) {
    for (const std::string_view text : {"", " ", "Glossy Brochure", "*End", "a:b/c;d%e'f",
                                        "caf\xC3\xA9", "\xE7\xB4\x99 \xF0\x9F\x98\x80", "<C3A9>"}) {
        EXPECT_EQ(reasonTextCannotStandInPPDLine(text), std::nullopt) << text;
    }
}

TEST(PPDTextSafety, RefusesWhatIsNotUTF8) {
    for (const std::string_view text : {"\xFF", "abc\xE9", "\xC3", "\xED\xA0\x80", "\xC0\x8A"}) {
        EXPECT_TRUE(reasonTextCannotStandInPPDLine(text)) << ::testing::PrintToString(text);
    }
}

TEST(PPDTextSafety, TheReasonTellsTheOffsetAndHoldsNothingOfTheText) {
    struct {
        const char* text;
        const char* offset;
    } const cases[] = {
        {"secret-word\n*cupsFilter: x", "11"},
        {"secret-word\"", "11"},
        {"secret-word\xC2\x9F", "11"},
        {"secret-word \xE2\x80\xA8", "12"},
        {"secret-word\xFF", "11"},
    };
    for (const auto& [text, offset] : cases) {
        const auto reason = reasonTextCannotStandInPPDLine(text);
        ASSERT_TRUE(reason) << text;
        EXPECT_NE(reason->find(offset), std::string::npos) << *reason;
        EXPECT_EQ(reason->find("secret"), std::string::npos) << *reason;
        EXPECT_EQ(reasonTextCannotStandInPPDLine(*reason), std::nullopt) << *reason;
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
