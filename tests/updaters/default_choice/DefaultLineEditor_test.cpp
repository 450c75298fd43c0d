#include "updaters/default_choice/DefaultLineEditor.h"

#include <gtest/gtest.h>

#include "tests/updaters/default_choice/DefaultChoiceTestSupport.h"

namespace TkPPDUpdating::Testing {
namespace {

const char* const kText =
    "*P\n*DefaultA: Y\n*A X/L: \"\"\n*A Y/L: \"\"\n*DefaultB: Y\n*B X/L: \"\"\n";

TEST(DefaultLineEditor, TellsWhetherItSetTheChoice) {
    DefaultLineEditor editor(makePPDText(kText));
    EXPECT_TRUE(editor.setDefaultChoice("A", "X"));
    EXPECT_TRUE(editor.setDefaultChoiceIfPossible("B", "X"));
    EXPECT_EQ(textOf(editor.takeContents()),
              "*P\n*DefaultA: X\n*A X/L: \"\"\n*A Y/L: \"\"\n*DefaultB: X\n*B X/L: \"\"\n");
}

TEST(DefaultLineEditor, SetsNothingInNoText) {
    DefaultLineEditor editor(nullptr);
    EXPECT_FALSE(editor.setDefaultChoice("A", "X"));
    EXPECT_FALSE(editor.setDefaultChoiceIfPossible("A", "X"));
    EXPECT_EQ(editor.takeContents(), nullptr);
}

TEST(DefaultLineEditor, HasNoTextAfterAFailure) {
    DefaultLineEditor editor(makePPDText(kText));
    EXPECT_TRUE(editor.setDefaultChoice("A", "X"));
    EXPECT_FALSE(editor.setDefaultChoice("A", "Z"));
    EXPECT_FALSE(editor.setDefaultChoice("B", "X"));
    EXPECT_FALSE(editor.setDefaultChoiceIfPossible("B", "X"));
    EXPECT_EQ(editor.takeContents(), nullptr);
}

TEST(DefaultLineEditor, GoesOnAfterAChoiceThatWasNotPossible) {
    const PPDText text = makePPDText(kText);
    DefaultLineEditor untouched(text);
    EXPECT_FALSE(untouched.setDefaultChoiceIfPossible("A", "Z"));
    EXPECT_EQ(untouched.takeContents(), text);
    DefaultLineEditor editor(text);
    EXPECT_FALSE(editor.setDefaultChoiceIfPossible("A", "Z"));
    EXPECT_TRUE(editor.setDefaultChoice("B", "X"));
    EXPECT_EQ(textOf(editor.takeContents()),
              "*P\n*DefaultA: Y\n*A X/L: \"\"\n*A Y/L: \"\"\n*DefaultB: X\n*B X/L: \"\"\n");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
