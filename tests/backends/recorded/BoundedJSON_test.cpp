#include "backends/recorded/BoundedJSON.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace TkPPDUpdating {
namespace {

using nlohmann::json;
using namespace std::string_view_literals;

std::string errorFor(std::string_view text) {
    std::string error;
    EXPECT_FALSE(JSONWithText(text, error)) << text;
    return error;
}

TEST(BoundedJSON, ReadsEveryKindOfValue) {
    std::string error;
    const auto value = JSONWithText(
        R"( {"a": [1, -2, 0.5, true, false, null, "\u00e9\ud83d\ude00\n"], "b": {}} )", error);
    ASSERT_TRUE(value) << error;
    EXPECT_EQ((*value)["a"],
              (json{1, -2, 0.5, true, false, nullptr, "\xC3\xA9\xF0\x9F\x98\x80\n"}));
    EXPECT_EQ((*value)["b"], json::object());
    EXPECT_EQ(value->size(), 2U);
}

TEST(BoundedJSON, ReadsNestedContainersInOrder) {
    std::string error;
    const auto value = JSONWithText(R"([[1, [2]], {"x": {"y": [3]}, "z": 4}, 5])", error);
    ASSERT_TRUE(value) << error;
    EXPECT_EQ(value->dump(), R"([[1,[2]],{"x":{"y":[3]},"z":4},5])");
}

TEST(BoundedJSON, ReadsAScalarAsAWholeText) {
    std::string error;
    EXPECT_EQ(JSONWithText("7", error), json(7));
    EXPECT_EQ(JSONWithText("\"x\"", error), json("x"));
}

TEST(BoundedJSON, OfMembersOfOneNameTheLastCounts) {
    std::string error;
    EXPECT_EQ(JSONWithText(R"({"a": {"b": 1}, "a": 2, "c": 3, "a": {"d": 4}})", error),
              (json{{"a", {{"d", 4}}}, {"c", 3}}));
}

TEST(BoundedJSON, CountsLinesFromTheFirstOfThePart) {
    std::string error;
    EXPECT_FALSE(JSONWithText("[1,\n]", error, 7));
    EXPECT_NE(error.find("is not JSON at line 8, column 1"), std::string::npos) << error;
    EXPECT_FALSE(JSONWithText(std::string(40, '['), error, 7));
    EXPECT_NE(error.find("at line 7, column 33"), std::string::npos) << error;
}

TEST(BoundedJSON, NamesLineAndColumnOfASyntaxError) {
    const std::vector<std::pair<std::string_view, std::string>> cases{
        {"", "line 1, column 1"},
        {"  ", "line 1, column 3"},
        {"hello", "line 1, column 1"},
        {"{\"a\": tru}", "line 1, column 10"},
        {"{\n  \"a\": 1\n  \"b\": 2\n}", "line 3, column 5"},
        {"[1, 2", "line 1, column 6"},
        {"[1,\n]", "line 2, column 1"},
        {"[1] x", "line 1, column 5"},
        {"{\"a\": 01}", "line 1, column 8"},
        {"[\"a\n\"]", "line 1, column 4"},
    };
    for (const auto& [text, place] : cases) {
        EXPECT_EQ(errorFor(text).substr(0, 15 + place.size() + 1), "is not JSON at " + place + ":")
            << text;
    }
}

TEST(BoundedJSON, RefusesInvalidUTF8AndBadEscapesWithTheirPlace) {
    for (const std::string_view text :
         {"[\"\xFF\"]"sv, "[\"\xC0\xAF\"]"sv, "[\"\xED\xA0\x80\"]"sv, "[\"\xF4\x90\x80\x80\"]"sv,
          R"(["\ud800"])"sv, R"(["\udc00"])"sv, R"(["\ud800\u0041"])"sv, R"(["\x41"])"sv,
          R"(["\u12"])"sv, "[\"a\0b\"]"sv, "\0"sv, "\xFF\xFE["sv}) {
        EXPECT_EQ(errorFor(text).substr(0, 22), "is not JSON at line 1,") << text;
    }
}

TEST(BoundedJSON, RefusesANULThatTheParserTakesForTheEnd) {
    EXPECT_EQ(errorFor("[1]\0"sv), "is not JSON at line 1, column 4: a NUL byte");
    EXPECT_EQ(errorFor("{}\n \0 and more"sv), "is not JSON at line 2, column 2: a NUL byte");
    EXPECT_EQ(errorFor("[1,\0 2]"sv).substr(0, 32), "is not JSON at line 1, column 4:");
}

TEST(BoundedJSON, SaysWhatIsWrongButNotWhatItRead) {
    const std::string secret(100'000, 'x');
    const std::string error = errorFor("[\"" + secret);
    EXPECT_NE(error.find("missing closing quote"), std::string::npos) << error;
    EXPECT_EQ(error.find("xx"), std::string::npos);
    EXPECT_LT(error.size(), 120U);
    EXPECT_EQ(errorFor("[1}").find('\n'), std::string::npos);
}

TEST(BoundedJSON, RefusesANumberBeyondADoubleWithItsPlace) {
    EXPECT_EQ(errorFor("[1, 1e999]"), "has a number out of range at line 1, column 9");
    EXPECT_EQ(errorFor("-1e999"), "has a number out of range at line 1, column 6");
    EXPECT_LT(errorFor(std::string(1'000'000, '9')).size(), 80U);
}

TEST(BoundedJSON, ReadsAnIntegerBeyond64BitsAsADouble) {
    std::string error;
    const auto value = JSONWithText("18446744073709551616", error);
    ASSERT_TRUE(value) << error;
    EXPECT_TRUE(value->is_number_float());
    EXPECT_EQ(value->get<double>(), 18446744073709551616.0);
}

TEST(BoundedJSON, NestsThirtyTwoLevelsDeepAndNoDeeper) {
    std::string error;
    EXPECT_TRUE(JSONWithText(std::string(32, '[') + std::string(32, ']'), error)) << error;
    EXPECT_EQ(errorFor(std::string(33, '[') + std::string(33, ']')),
              "nests deeper than 32 levels at line 1, column 33");
    EXPECT_EQ(errorFor("\n" + std::string(33, '[')),
              "nests deeper than 32 levels at line 2, column 33");
}

TEST(BoundedJSON, RefusesAMillionLevelsOfNesting) {
    std::string objects;
    for (int level = 0; level < 1'000'000; ++level) {
        objects += "{\"a\":";
    }
    EXPECT_EQ(errorFor(objects), "nests deeper than 32 levels at line 1, column 161");
    EXPECT_EQ(errorFor(std::string(1'000'000, '[')),
              "nests deeper than 32 levels at line 1, column 33");
}

TEST(BoundedJSON, DoesNotCountBracketsInStringsOrSideBySide) {
    std::string error;
    EXPECT_TRUE(
        JSONWithText("[\"" + std::string(100, '[') + "\\\"" + std::string(100, '{') + "\"]", error))
        << error;
    std::string sideBySide = "[[]";
    for (int i = 0; i < 100; ++i) {
        sideBySide += ",[{}]";
    }
    EXPECT_TRUE(JSONWithText(sideBySide + "]", error)) << error;
}

}  // namespace
}  // namespace TkPPDUpdating
