#include "ppd/PPDText.h"

#include <gtest/gtest.h>

#include <string>

namespace TkPPDUpdating::Testing {
namespace {

TEST(PPDText, IsNullUntilItIsMadeAndAfterItWasReset) {
    PPDText text;
    EXPECT_FALSE(text);
    EXPECT_EQ(text, nullptr);
    text = makePPDText("*A: 1\n");
    EXPECT_TRUE(text);
    text.reset();
    EXPECT_FALSE(text);
    EXPECT_EQ(text, nullptr);
}

TEST(PPDText, GivesItsBytesOrNull) {
    const PPDText text = makePPDText("*A: 1\n");
    ASSERT_NE(text.get(), nullptr);
    EXPECT_EQ(*text.get(), "*A: 1\n");
    EXPECT_EQ(text.get(), &*text);
    EXPECT_EQ(PPDText().get(), nullptr);
}

TEST(PPDText, AnEmptyTextIsNotNull) {
    const PPDText text = makePPDText("");
    EXPECT_TRUE(text);
    ASSERT_NE(text.get(), nullptr);
    EXPECT_EQ(*text, "");
}

TEST(PPDText, IsEqualToItselfAndToNoOtherOfTheSameBytes) {
    const PPDText text = makePPDText("*A: 1\n");
    const PPDText copy = text;  // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_EQ(text, copy);
    EXPECT_NE(text, makePPDText("*A: 1\n"));
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
