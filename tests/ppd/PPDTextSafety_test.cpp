#include "ppd/PPDTextSafety.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/text/UTF8Encoding.h"
#include "text/UnicodeWhiteSpace.h"

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

bool canStandInAnyText(char32_t codePoint) {
    return codePoint >= 0x20 && (codePoint < 0x7F || codePoint > 0x9F) && codePoint != U'"' &&
           codePoint != 0x2028 && codePoint != 0x2029 && !isSurrogate(codePoint);
}

/// What the kind refuses besides, told in another way than the table tells it.
struct KindOfText {
    const char* name;
    PrinterText kind;
    std::function<bool(char32_t)> isAllowed;
};

bool isOfKeyword(char32_t codePoint) {
    return codePoint < 0x80 &&
           std::u32string_view(
               U"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._-+")
                   .find(codePoint) != std::u32string_view::npos;
}

std::function<bool(char32_t)> allBut(std::u32string_view characters) {
    return [characters](char32_t codePoint) {
        return characters.find(codePoint) == std::u32string_view::npos;
    };
}

class EveryKind : public testing::TestWithParam<KindOfText> {};

TEST_P(EveryKind, RefusesExactlyItsCharacters) {
    constexpr std::size_t kTogether = 100;
    const bool takesSlashes = GetParam().kind == PrinterText::profilePath;
    const auto isRefused = [&](const std::string& characters) {
        // In the middle, where no rule of a first, last or file name's character applies.
        return reasonPrinterTextIsRefused(GetParam().kind,
                                          "a" + characters + (takesSlashes ? "/b" : "b"))
            .has_value();
    };
    // Beyond ASCII, those that are accepted are asked for together, and of the planes that hold few
    // characters each 17th that is refused, which takes less time.
    std::string accepted;
    std::size_t count = 0;
    for (char32_t codePoint = 0; codePoint <= kLastCodePoint; ++codePoint) {
        const bool isAllowed = canStandInAnyText(codePoint) && GetParam().isAllowed(codePoint);
        if (!isAllowed && codePoint > 0x1FFFF && codePoint % 17 != 0 &&
            codePoint != kLastCodePoint) {
            continue;
        }
        const std::string character = encodedUTF8(codePoint);
        if (!isAllowed || codePoint < 0x80) {
            ASSERT_NE(isRefused(character), isAllowed) << std::hex << std::uint32_t{codePoint};
        } else {
            accepted += character;
            ++count;
        }
        if (count == kTogether || (codePoint == kLastCodePoint && count > 0)) {
            ASSERT_FALSE(isRefused(accepted)) << "before " << std::hex << std::uint32_t{codePoint};
            accepted.clear();
            count = 0;
        }
    }
}

TEST_P(EveryKind, AcceptsTheEmptyText) {
    EXPECT_EQ(reasonPrinterTextIsRefused(GetParam().kind, ""), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    PPDTextSafety, EveryKind,
    testing::Values(KindOfText{"Plain", PrinterText::plain, allBut(U"")},
                    KindOfText{"UnquotedValue", PrinterText::unquotedValue, allBut(U"*<>")},
                    KindOfText{"PageTypeName", PrinterText::pageTypeName, allBut(U"*<>,")},
                    KindOfText{"MediaTypeName", PrinterText::mediaTypeName, allBut(U":<>")},
                    KindOfText{"MediaID", PrinterText::mediaID,
                               [](char32_t codePoint) {
                                   return isOfKeyword(codePoint) || codePoint == U' ' ||
                                          (codePoint > 0x9F && !isUnicodeWhiteSpace(codePoint));
                               }},
                    KindOfText{"ProfileQualifier", PrinterText::profileQualifier, isOfKeyword},
                    KindOfText{"ProfilePath", PrinterText::profilePath, allBut(U"*<>")},
                    KindOfText{"PensCodeName", PrinterText::pensCodeName,
                               [](char32_t codePoint) {
                                   return codePoint > 0x20 && codePoint < 0x7F &&
                                          codePoint != U'/' && codePoint != U':';
                               }}),
    [](const auto& kind) { return kind.param.name; });

void expectReason(PrinterText kind, const std::string& text, const std::string& reason) {
    EXPECT_EQ(reasonPrinterTextIsRefused(kind, text).value_or("accepted"), reason) << text;
}

TEST(PPDTextSafety, AMediaIDHasSpacesInTheMiddleOnly) {
    expectReason(PrinterText::mediaID, "a b  c", "accepted");
    expectReason(PrinterText::mediaID, " a", "begins with a space, so its media type is left out");
    expectReason(PrinterText::mediaID, "a ", "ends with a space, so its media type is left out");
    expectReason(PrinterText::mediaID, " ", "begins with a space, so its media type is left out");
}

TEST(PPDTextSafety, AQualifierFitsBehindTwoFullStopsInAnOptionKeyword) {
    expectReason(PrinterText::profileQualifier, std::string(38, 'q'), "accepted");
    expectReason(PrinterText::profileQualifier, std::string(39, 'q'),
                 "is longer than 38 characters, so the profile is left out");
}

TEST(PPDTextSafety, ACodeNameFitsInAnOptionKeyword) {
    expectReason(PrinterText::pensCodeName, std::string(40, '~'), "accepted");
    expectReason(PrinterText::pensCodeName, std::string(41, '~'), "is longer than 40 characters");
}

TEST(PPDTextSafety, AColonMayStandInAPathButNotInTheNameThatIsShown) {
    for (const char* path : {"/a:b/c.icc", "/a/b.i:c", "/a:b/", "/c:"}) {
        const bool isInName = std::string_view(path) == "/a:b/" || std::string_view(path) == "/c:";
        EXPECT_EQ(reasonPrinterTextIsRefused(PrinterText::profilePath, path).has_value(), isInName)
            << path;
    }
    expectReason(PrinterText::profilePath, "/a:b/c:d.icc",
                 "has the character U+003A at byte 6, so the profile is left out");
    expectReason(PrinterText::profilePath, "/.a:b",
                 "has the character U+003A at byte 3, so the profile is left out");
}

TEST(PPDTextSafety, TheReasonSaysWhatGoesWithTheText) {
    expectReason(PrinterText::plain, "\n", "has the character U+000A at byte 0");
    expectReason(PrinterText::unquotedValue, "6*", "has the character U+002A at byte 1");
    expectReason(PrinterText::pageTypeName, "A,B",
                 "has the character U+002C at byte 1, so the whole list is left out");
    expectReason(PrinterText::mediaTypeName, "a\"",
                 "has the character U+0022 at byte 1, so its media type is left out");
    expectReason(PrinterText::profileQualifier, "\xFF",
                 "is not valid UTF-8 at byte 0, so the profile is left out");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
