#include "ppd/PPDLineKeys.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace TkPPDUpdating::Testing {
namespace {

using Kind = PPDLineKeys::Kind;
using Lines = std::vector<PPDLineKeys::Line>;

class KeysOfText {
  public:
    KeysOfText(std::string text, Kind kind)
        : index_(std::make_shared<const std::string>(std::move(text))), keys_(index_, kind) {}

    Lines lines(std::string_view keyword, std::optional<std::string_view> spec) const {
        Lines lines;
        EXPECT_FALSE(keys_.visitLines(keyword, spec, [&](PPDLineKeys::Line line) {
            lines.push_back(line);
            return false;
        }));
        return lines;
    }

    const PPDLineKeys& keys() const { return keys_; }

  private:
    PPDTextIndex index_;
    PPDLineKeys keys_;
};

constexpr const char* kOptions =
    "*Key A: 1\n"
    "*Key A \t/Text: 2\n"
    "*Key  B: 3\n"
    "*key a: 4\n"
    "*Key\tA: 5\n"
    "*Key A\n"
    "*Key: 6\n"
    "*en.Key A: 7\n"
    "*Key Long/Text: 8\n"
    "*Key Long : 9\n";

TEST(PPDLineKeys, FindsOptionsAsTheyAreWrittenWithoutTheBlanksAround) {
    const KeysOfText keys(kOptions, Kind::kExact);
    EXPECT_EQ(keys.lines("Key", "A"), (Lines{0, 1, 4}));
    EXPECT_EQ(keys.lines("Key", "B"), Lines{2});
    EXPECT_EQ(keys.lines("key", "a"), Lines{3});
    EXPECT_EQ(keys.lines("Key", ""), Lines{6});
    EXPECT_EQ(keys.lines("en.Key", "A"), Lines{7});
    EXPECT_EQ(keys.lines("Key", "Long"), (Lines{8, 9}));
    EXPECT_EQ(keys.lines("Key", " Long\t"), (Lines{8, 9}));
    EXPECT_EQ(keys.lines("Key", "Lon"), Lines());
    EXPECT_EQ(keys.lines("Key", "a"), Lines());
}

TEST(PPDLineKeys, FindsOptionsAndTheirTranslationsWhateverTheCase) {
    const KeysOfText keys(kOptions, Kind::kIgnoringCase);
    EXPECT_EQ(keys.lines("KEY", "a"), (Lines{0, 1, 3, 4, 7}));
    EXPECT_EQ(keys.lines("fr.Key", "LONG"), (Lines{8, 9}));
    EXPECT_EQ(keys.lines("Key", "C"), Lines());
}

TEST(PPDLineKeys, FindsNamesWithWhatEndsThemElsewhereAtEveryPlaceWhereTheyMayEnd) {
    const KeysOfText keys(
        "*a:b: 1\n"
        "*a:b/c: 2\n"
        "*Key a:b/T: 3\n"
        "*Key a::b: 4\n"
        "*A:B: 5\n"
        "*a:b x:y/T: 6\n"
        "*a:b.Key z: 7\n",
        Kind::kEveryEnd);
    EXPECT_EQ(keys.lines("a:b", std::nullopt), (Lines{0, 4}));
    EXPECT_EQ(keys.lines("a:b/c", std::nullopt), Lines{1});
    EXPECT_EQ(keys.lines("Key", "a:b"), Lines{2});
    EXPECT_EQ(keys.lines("Key", "A:B/t"), Lines{2});
    EXPECT_EQ(keys.lines("Key", "a:"), Lines{3});
    EXPECT_EQ(keys.lines("Key", "a::b"), Lines{3});
    EXPECT_EQ(keys.lines("a:b", "x"), Lines{5});
    EXPECT_EQ(keys.lines("a:b", "x:y"), Lines{5});
    EXPECT_EQ(keys.lines("a:b.Key", "z"), Lines{6});
    EXPECT_EQ(keys.lines("a:c", std::nullopt), Lines());
}

TEST(PPDLineKeys, FindsTranslationsOfSuchNamesByWhatFollowsTheirLastFullStop) {
    const KeysOfText keys(
        "*Key a:b: 1\n"
        "*en.Key a:b/T: 2\n"
        "*fr.en.Key a:b: 3\n"
        "*en.a:b: 4\n"
        "*x:en.Key a:b: 5\n",
        Kind::kEveryEnd);
    EXPECT_EQ(keys.lines("Key", "a:b"), (Lines{0, 1, 2}));
    EXPECT_EQ(keys.lines("en.Key", "a:b"), Lines{1});
    EXPECT_EQ(keys.lines("a:b", std::nullopt), Lines{3});
    EXPECT_EQ(keys.lines("en.a:b", std::nullopt), Lines{3});
    EXPECT_EQ(keys.lines("x:en.Key", "a:b"), Lines{4});
}

TEST(PPDLineKeys, VisitsUntilALineIsAccepted) {
    const KeysOfText keys(kOptions, Kind::kExact);
    Lines visited;
    EXPECT_TRUE(keys.keys().visitLines("Key", "A", [&](PPDLineKeys::Line line) {
        visited.push_back(line);
        return line == 1;
    }));
    EXPECT_EQ(visited, (Lines{0, 1}));
}

TEST(PPDLineKeys, FindsNothingWhereNoLineHasAKeyword) {
    for (const Kind kind : {Kind::kExact, Kind::kIgnoringCase, Kind::kEveryEnd}) {
        EXPECT_EQ(KeysOfText("", kind).lines("Key", "a:b"), Lines());
        EXPECT_EQ(KeysOfText("Key A: 1\n", kind).lines("Key", "A"), Lines());
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
