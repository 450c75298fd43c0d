#include "ppd/StringsFileFormat.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace TkPPDUpdating {
namespace {

using testing::Eq;
using testing::Optional;

struct Reading {
    const char* what;
    std::string_view text;
    StringsDictionary dictionary;
};

/// Checks that each text reads as the dictionary beside it.
void expectAllRead(const std::vector<Reading>& readings) {
    for (const Reading& each : readings) {
        EXPECT_THAT(propertyListFromStringsFileFormat(each.text), Optional(Eq(each.dictionary)))
            << each.what << ": " << each.text;
    }
}

void expectAllMalformed(const std::vector<std::string_view>& texts) {
    for (const std::string_view text : texts) {
        EXPECT_EQ(propertyListFromStringsFileFormat(text), std::nullopt) << text;
    }
}

TEST(StringsFileWriter, EmptyDictionaryGivesTheEmptyText) {
    EXPECT_EQ(zrlumen_keysAndValuesInPPDStringsFileFormat({}), "");
}

TEST(StringsFileWriter, WritesPairsSortedByKeyWithASemicolonAfterEach) {
    EXPECT_EQ(
        zrlumen_keysAndValuesInPPDStringsFileFormat({{"ParentMediaID", "4"}, {"MediaID", "1202"}}),
        "MediaID=1202;ParentMediaID=4;");
}

TEST(StringsFileWriter, UpperCaseKeysSortBeforeLowerCaseOnes) {
    EXPECT_EQ(zrlumen_keysAndValuesInPPDStringsFileFormat({{"a", "1"}, {"Z", "2"}, {"b", "3"}}),
              "Z=2;a=1;b=3;");
}

TEST(StringsFileWriter, AKeySortsBeforeALongerOneThatBeginsWithIt) {
    EXPECT_EQ(zrlumen_keysAndValuesInPPDStringsFileFormat({{"ab", "1"}, {"a", "2"}}), "a=2;ab=1;");
}

TEST(StringsFileWriter, SortsByUTF16UnitsSoThatSurrogatesComeBeforeU_E000) {
    // U+10000 is D800 DC00 in UTF-16, U+E000 is E000, U+D7FF is D7FF.
    EXPECT_EQ(zrlumen_keysAndValuesInPPDStringsFileFormat(
                  {{"\uE000", "3"}, {"\U00010000", "2"}, {"\uD7FF", "1"}, {"\uFFFD", "4"}}),
              "\uD7FF=1;\U00010000=2;\uE000=3;\uFFFD=4;");
}

TEST(StringsFileWriter, QuotesAndEscapesNothing) {
    EXPECT_EQ(zrlumen_keysAndValuesInPPDStringsFileFormat({{"k=;\"", "v=;\"\\"}}),
              "k=;\"=v=;\"\\;");
}

TEST(StringsFileReader, ReadsWhatTheWriterMakes) {
    const std::vector<StringsDictionary> dictionaries = {
        {},
        {{"MediaID", "1202"}, {"ParentMediaID", "4"}},
        {{"MediaID", "1201"}, {"ParentMediaID", "3"}, {"ZrICCProfileId2", "q1"}},
        {{"key", ""}},
        {{"", "value"}},
        {{"key", "a value with blanks  within"}},
        {{"key", "Papier glacé"}, {"ключ", "光沢紙"}},
        {{"key", "a=b"}},
        {{"key", "say \"hi\" twice"}},
        {{"key", "it's"}},
        {{"key", "\\n\\U00e9"}},
        {{"key", "{a, b}"}, {"other", "<0fbd>"}},
        {{"key", "//server/share"}},
        {{"key", "/*"}},
        {{"key", "/* all of it */"}},
        {{"key", "http://host/a//b"}},
        {{"key", "a/*b*/c"}},
        {{"key", "a // b"}},
        {{"key", "a /* b"}},
        {{"key", "a /* b */ c"}},
        {{"a//b", "c"}, {"d /* e", "f"}},
        {{"MediaID", "x /* y"}, {"ParentMediaID", "z */ 2"}, {"ZrICCProfileId2", "q1"}},
        {{"MediaID", "x /* y"}, {"ParentMediaID", "z */"}, {"ZrICCProfileId2", "q1"}},
        {{"MediaID", "x // y"}, {"ParentMediaID", "z // 2"}},
    };
    for (const StringsDictionary& each : dictionaries) {
        const std::string text = zrlumen_keysAndValuesInPPDStringsFileFormat(each);
        EXPECT_THAT(propertyListFromStringsFileFormat(text), Optional(Eq(each))) << text;
    }
}

TEST(StringsFileReader, ReadsRandomDictionariesThatTheWriterMade) {
    // Everything that can stand in a value, but for what makes the written form ambiguous: ";",
    // "=" in a key, a leading quote, blanks at the ends, and comments (kept out by having "/" only
    // where no blank comes before it).
    const std::vector<std::string_view> pieces = {"a", "Z", "0",  "_",  ".", ":",
                                                  "-", "$", "é",  "紙", "😀", "a b",
                                                  "'", "(", "x/", "x*", "%", "\\"};
    std::mt19937 random(20010101);
    const auto word = [&](bool isKey) {
        std::string text;
        const std::size_t count = random() % 6 + (isKey ? 1 : 0);
        for (std::size_t i = 0; i < count; ++i) {
            text += pieces[random() % pieces.size()];
        }
        return text;
    };
    for (int round = 0; round < 2000; ++round) {
        StringsDictionary dictionary;
        for (std::size_t i = random() % 5; i > 0; --i) {
            dictionary.insert_or_assign(word(true), word(false));
        }
        const std::string text = zrlumen_keysAndValuesInPPDStringsFileFormat(dictionary);
        ASSERT_THAT(propertyListFromStringsFileFormat(text), Optional(Eq(dictionary))) << text;
    }
}

TEST(StringsFileReader, TextWithoutPairsIsAnEmptyDictionary) {
    expectAllRead({
        {"nothing", "", {}},
        {"blanks", " \t\r\n\v\f\u2028\u2029", {}},
        {"a comment", "/* a = b; */", {}},
        {"a line comment that the text ends with", "// a = b;", {}},
    });
}

TEST(StringsFileReader, BlanksMayStandAroundWords) {
    expectAllRead({
        {"spaces", "  a  =  b  ;  c  =  d  ;  ", {{"a", "b"}, {"c", "d"}}},
        {"every blank", "\ta\r\n=\vb\f;\u2028c\u2029=d;\n", {{"a", "b"}, {"c", "d"}}},
        {"around quoted strings", " \"a\" = \"b\" ; ", {{"a", "b"}}},
        {"within a bare word they belong to it", "a key = a  value;", {{"a key", "a  value"}}},
    });
}

TEST(StringsFileReader, BareWordsHoldEverythingButTheirSeparators) {
    expectAllRead({
        {"signs", "a_b.c:d-e$f/g=h_i.j:k-l$m/n;", {{"a_b.c:d-e$f/g", "h_i.j:k-l$m/n"}}},
        {"an equals sign in a value", "a=b=c;", {{"a", "b=c"}}},
        {"a quote that does not come first", "a\"b=c\"d;", {{"a\"b", "c\"d"}}},
        {"an apostrophe is no quote", "'a'='b';", {{"'a'", "'b'"}}},
        {"a backslash is no escape", "a=\\n;", {{"a", "\\n"}}},
        {"controls that are no blanks", "a=\x08;b=\x0E;", {{"a", "\x08"}, {"b", "\x0E"}}},
    });
}

TEST(StringsFileReader, AKeyAloneIsItsOwnValue) {
    expectAllRead({
        {"bare", "a;b = c;", {{"a", "a"}, {"b", "c"}}},
        {"quoted", "\"a b\" ;", {{"a b", "a b"}}},
        {"quoted and empty", "\"\";", {{"", ""}}},
    });
}

TEST(StringsFileReader, TheLastValueOfAKeyCounts) {
    expectAllRead({{"twice", "a=1;b=2;a=3;", {{"a", "3"}, {"b", "2"}}}});
}

TEST(StringsFileReader, QuotedStringsMayHoldSeparatorsAndComments) {
    expectAllRead({
        {"separators", "\"a=b;\" = \"c=d;\";", {{"a=b;", "c=d;"}}},
        {"comments", "\"/* a */\" = \"// b\";", {{"/* a */", "// b"}}},
        {"line breaks and blanks", "\" a\n\" = \"\";", {{" a\n", ""}}},
        {"bare beside quoted", "a = \"b\"; \"c\" = d;", {{"a", "b"}, {"c", "d"}}},
    });
}

TEST(StringsFileReader, EscapesInQuotedStrings) {
    expectAllRead({
        {"letters", R"("k" = "\a\b\f\n\r\t\v";)", {{"k", "\a\b\f\n\r\t\v"}}},
        {"quote and backslash", R"("\"" = "\\";)", {{"\"", "\\"}}},
        {"any other character", R"("k" = "\q\'\/\8";)", {{"k", "q'/8"}}},
        {"an escaped line break", "\"k\" = \"a\\\nb\";", {{"k", "a\nb"}}},
        {"octal",
         R"("k" = "\101\60\7x\3511";)",
         {{"k",
           "A0\ax\u00E9"
           "1"}}},
        {"octal up to what is no octal digit",
         R"("k" = "\18\129";)",
         {{"k",
           "\x01"
           "8\n9"}}},
        {"the largest octal", R"("k" = "\377";)", {{"k", "\u00FF"}}},
        {"a UTF-16 unit of every length", R"("k" = "\U0041\U00e9\U7D19";)", {{"k", "Aé紙"}}},
        {"the largest digits of either case", R"("k" = "\U00ff\U00FF";)", {{"k", "\u00FF\u00FF"}}},
        {"a surrogate pair", R"("k" = "\UD83D\UDE00";)", {{"k", "😀"}}},
        {"the first and the last surrogates",
         R"("k" = "\UD800\UDC00\UDBFF\UDFFF";)",
         {{"k", "\U00010000\U0010FFFF"}}},
        {"the units around the surrogates",
         R"("k" = "\UD7FF\UE000\UFFFD";)",
         {{"k", "\uD7FF\uE000\uFFFD"}}},
    });
}

TEST(StringsFileReader, CommentsMayStandWhereBlanksMay) {
    expectAllRead({
        {"before, between and after",
         "/* x */ a /* x */ = /* x */ b /* x */ ; /* x */",
         {{"a", "b"}}},
        {"line comments", "// x;\na // x\n= // x;\r b // x\u2028; // x", {{"a", "b"}}},
        {"one after another", "/* x *//* y */// z\na=b;", {{"a", "b"}}},
        {"right behind a bare value's end", "a=b;/* x */c=d;// y", {{"a", "b"}, {"c", "d"}}},
        {"without anything in them", "/**/a=b /**/;//", {{"a", "b"}}},
        {"right behind a quoted string", "\"a\"/* x */=\"b\"/* x */;// x", {{"a", "b"}}},
        {"with separators in them", R"(a = "b" /* ; = */;)", {{"a", "b"}}},
        {"with an equals sign behind a bare value", "a = b /* = */;", {{"a", "b"}}},
        {"with stars and slashes in them", "/***/ a = b /* / * // /* **/;", {{"a", "b"}}},
    });
}

TEST(StringsFileReader, WhatOpensACommentWithinAWordIsText) {
    expectAllRead({
        {"a path that begins with two slashes",
         "a=//server/x;b=c;",
         {{"a", "//server/x"}, {"b", "c"}}},
        {"two slashes within a word", "a = b//c;", {{"a", "b//c"}}},
        {"a comment within a word", "a=b/*c*/d;", {{"a", "b/*c*/d"}}},
        {"right behind a word", "a=b/*c*/;d=e//f\n;", {{"a", "b/*c*/"}, {"d", "e//f"}}},
        {"right behind the equals sign", "a=/*c*/;", {{"a", "/*c*/"}}},
    });
}

TEST(StringsFileReader, ACommentThatCannotBeOneInTheMiddleOfAPairIsText) {
    expectAllRead({
        {"the line goes on to the end of the text", "a=b // c;d=e;", {{"a", "b // c"}, {"d", "e"}}},
        {"never closed", "a=b /* c;d=e;", {{"a", "b /* c"}, {"d", "e"}}},
        {"never closed, before a word", "a= /* b;c= // d;", {{"a", "/* b"}, {"c", "// d"}}},
        {"the word goes on behind it", "a=b /* c */ d;", {{"a", "b /* c */ d"}}},
        {"closed in a later pair only", "a=b /* c;d=e */;", {{"a", "b /* c"}, {"d", "e */"}}},
        {"the line goes on to a later pair", "a=b // c;d=e\n;", {{"a", "b // c"}, {"d", "e"}}},
    });
}

TEST(StringsFileReader, MalformedTextIsNoDictionary) {
    expectAllMalformed({
        "a",
        "a=",
        "a=b",
        "a=b;c",
        "a=b;c=d",
        "=",
        ";",
        "a=b;;",
        "/* only a comment */;",
        "\"a\"",
        "\"a\" = \"b\"",
        "\"a = b;",
        "a = \"b;",
        "a = \"b\\\";",
        "a = \"b\\",
        "a = \"b\" c;",
        "\"a\" b = c;",
        "\"a\"\"b\" = c;",
        "a = \"b\" = c;",
        "a = b; /* not closed",
        "a = b; /*/",
        "a = \"b\" /* not closed;",
        "a = \"b\" // c;",
    });
}

TEST(StringsFileReader, AWrongEscapeIsMalformed) {
    expectAllMalformed({
        R"(a = "\U";)",
        R"(a = "\U00e";)",
        R"(a = "\U00eg";)",
        R"(a = "\400";)",
        R"(a = "\777";)",
        R"(a = "\UD83D";)",
        R"(a = "\UD83Dx";)",
        R"(a = "\UD83D\U0041";)",
        R"(a = "\UDE00";)",
        R"(a = "\UDC00";)",
        R"(a = "\UDFFF";)",
        R"(a = "\UD83D\UDBFF";)",
        R"(a = "\UD83D\UE000";)",
        R"(a = "\UD83D--DE00";)",
        R"(a = "\UD83D\UDE0";)",
    });
}

TEST(StringsFileReader, ReadsAnyBytesWithoutReadingOutsideTheText) {
    constexpr std::string_view kCharacters = "a=;\"\\/* \nU0\xE2\x80\xA8\xFF";
    std::mt19937 random(1952);
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        for (std::size_t i = random() % 24; i > 0; --i) {
            text += kCharacters[random() % kCharacters.size()];
        }
        const std::vector<char> exact(text.begin(), text.end());
        const auto dictionary =
            propertyListFromStringsFileFormat(std::string_view(exact.data(), exact.size()));
        // Nothing that is read is longer than the text.
        if (dictionary) {
            for (const auto& [key, value] : *dictionary) {
                ASSERT_LE(key.size(), text.size());
                ASSERT_LE(value.size(), text.size());
            }
        }
    }
}

TEST(StringsFileReader, HostileCommentsTakeLinearTime) {
    std::string text = "a=b";
    for (int i = 0; i < 500000; ++i) {
        text += " /* // ";
    }
    const std::string value = text.substr(2, text.size() - 3);
    text += ';';
    EXPECT_THAT(propertyListFromStringsFileFormat(text),
                Optional(Eq(StringsDictionary{{"a", value}})));
}

}  // namespace
}  // namespace TkPPDUpdating
