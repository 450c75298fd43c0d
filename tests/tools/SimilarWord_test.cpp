#include "tools/SimilarWord.h"

#include <gtest/gtest.h>

namespace TkPPDUpdating::Testing {
namespace {

const std::vector<std::string> kWords = {"update", "updaters", "values", "--device-uri", "--help"};

TEST(SimilarWord, IsAFewMistakesOfTheHandAway) {
    EXPECT_EQ(similarWord("upate", kWords), "update") << "one left out";
    EXPECT_EQ(similarWord("uppdate", kWords), "update") << "one too many";
    EXPECT_EQ(similarWord("udpate", kWords), "update") << "two swapped";
    EXPECT_EQ(similarWord("updxte", kWords), "update") << "another one";
    EXPECT_EQ(similarWord("updater", kWords), "update") << "the first of two that are equally near";
    EXPECT_EQ(similarWord("VALUES", kWords), "values");
}

TEST(SimilarWord, DoesNotCountHyphensAndUnderscores) {
    EXPECT_EQ(similarWord("--deviceuri", kWords), "--device-uri");
    EXPECT_EQ(similarWord("--device_uri", kWords), "--device-uri");
    EXPECT_EQ(similarWord("help", kWords), "--help");
}

TEST(SimilarWord, IsNoneWhenAllAreFar) {
    EXPECT_EQ(similarWord("restart", kWords), "");
    EXPECT_EQ(similarWord("u", kWords), "");
    EXPECT_EQ(similarWord("--", kWords), "");
    EXPECT_EQ(similarWord("", kWords), "");
    EXPECT_EQ(similarWord("update", {}), "");
    EXPECT_EQ(similarWord("upd", kWords), "") << "three of three are missing";
}

TEST(SimilarWord, OfALongTextIsNotLookedFor) {
    EXPECT_EQ(similarWord(std::string(65, 'x'), {std::string(65, 'x')}), "");
    EXPECT_EQ(similarWord(std::string(64, 'x'), {std::string(65, 'x')}), "");
    EXPECT_EQ(similarWord(std::string(64, 'x'), {std::string(64, 'x')}), std::string(64, 'x'));
}

TEST(SimilarWord, IsAskedFor) {
    EXPECT_EQ(questionForSimilarWord("upate", kWords), "; did you mean \"update\"?");
    EXPECT_EQ(questionForSimilarWord("restart", kWords), "");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
