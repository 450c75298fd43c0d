#include "tools/UnifiedDiff.h"
#include "tests/support/FileContents.h"

#include <gtest/gtest.h>

#include <chrono>
#include <random>

#include "tests/support/TemporaryDirectory.h"
#include "tests/tools/ToolRun.h"

namespace TkPPDUpdating::Testing {
namespace {

/// What patch(1) makes of `before` with the diff.
std::string patched(const std::string& before, const std::string& diff,
                    const std::string& name = "a.ppd") {
    const TemporaryDirectory directory;
    directory.write(name, before);
    directory.write("a.diff", diff);
    // The file's name comes from the diff, as a user's would.
    const ToolRun run = runCommand({"patch", "-p0", "--input=a.diff", "--no-backup-if-mismatch"},
                                   {.directory = directory.path()});
    EXPECT_EQ(run.exitStatus, 0) << run.output << run.errors;
    EXPECT_EQ(run.output.find("fuzz"), std::string::npos) << run.output;
    return contentsOfFile((directory.path() / name).string());
}

std::string numberedLines(int count, const std::string& ending = "\n") {
    std::string lines;
    for (int number = 1; number <= count; ++number) {
        lines += "*Line " + std::to_string(number) + ending;
    }
    return lines;
}

TEST(UnifiedDiffTest, IsEmptyForEqualTexts) {
    EXPECT_EQ(unifiedDiff("a.ppd", "a\n", "a\n", DiffStyle::forPrograms), "");
}

TEST(UnifiedDiffTest, ShowsThreeLinesOfContextAroundEachChange) {
    const std::string before = numberedLines(20);
    std::string after = before;
    after.replace(after.find("*Line 5\n"), 8, "*Line five\n");
    after.replace(after.find("*Line 20\n"), 9, "");
    EXPECT_EQ(unifiedDiff("a.ppd", before, after, DiffStyle::forPrograms),
              "--- a.ppd\n+++ a.ppd\n"
              "@@ -2,7 +2,7 @@\n *Line 2\n *Line 3\n *Line 4\n-*Line 5\n+*Line five\n *Line 6\n"
              " *Line 7\n *Line 8\n"
              "@@ -17,4 +17,3 @@\n *Line 17\n *Line 18\n *Line 19\n-*Line 20\n");
}

TEST(UnifiedDiffTest, TellsOfAMissingLastLineFeed) {
    EXPECT_EQ(unifiedDiff("a.ppd", "a", "a\n", DiffStyle::forPrograms),
              "--- a.ppd\n+++ a.ppd\n@@ -1,1 +1,1 @@\n-a\n\\ No newline at end of file\n+a\n");
    EXPECT_EQ(unifiedDiff("a.ppd", "a\n", "a", DiffStyle::forPrograms),
              "--- a.ppd\n+++ a.ppd\n@@ -1,1 +1,1 @@\n-a\n+a\n\\ No newline at end of file\n");
    EXPECT_EQ(unifiedDiff("a.ppd", "a\nz", "b\nz", DiffStyle::forPrograms),
              "--- a.ppd\n+++ a.ppd\n@@ -1,2 +1,2 @@\n-a\n+b\n z\n\\ No newline at end of file\n");
}

TEST(UnifiedDiffTest, PatchMakesTheNewTextOfTheOld) {
    struct Case {
        std::string before, after;
    };
    const Case cases[] = {{"a\nb\n", "a\nc\n"},
                          {"a", "a\n"},
                          {"a\n", "a"},
                          {"a", "b"},
                          {"", "a\n"},
                          {"a\r\nb\r\n", "a\r\nc\r\n"},
                          {"a\r\nb\r\n", "a\nb\r\n"},
                          {"a\r\nb", "a\r\nc"},
                          {"a\rb\rc\n", "a\rB\rc\n"},
                          {"--- a\n", "+++ a\n"},
                          {numberedLines(1000), numberedLines(300) + "new\n" + numberedLines(200)},
                          {numberedLines(50, "\r\n"), numberedLines(60, "\r\n")}};
    for (const auto& [before, after] : cases) {
        EXPECT_EQ(patched(before, unifiedDiff("a.ppd", before, after, DiffStyle::forPrograms)),
                  after)
            << unifiedDiff("a.ppd", before, after, DiffStyle::forPrograms);
    }
}

TEST(UnifiedDiffTest, PatchMakesTheNewTextOfRandomEdits) {
    for (const unsigned seed : {1U, 2U, 3U, 4U, 5U}) {
        std::mt19937 random(seed);
        std::string before;
        std::string after;
        for (int line = 0; line < 3000; ++line) {
            const std::string text = "*Line" + std::to_string(random() % 20) + ": \"\"\n";
            before += random() % 10 == 0 ? "" : text;
            after += random() % 10 == 0 ? "" : text;
        }
        EXPECT_EQ(patched(before, unifiedDiff("a.ppd", before, after, DiffStyle::forPrograms)),
                  after)
            << "seed " << seed;
    }
}

TEST(UnifiedDiffTest, PatchFindsAFileWithAnUnusualName) {
    for (const std::string name : {"my printer.ppd", "M\xC3\xA9tro.ppd", "a\"b.ppd", "a\\b.ppd"}) {
        EXPECT_EQ(patched("a\n", unifiedDiff(name, "a\n", "b\n", DiffStyle::forPrograms), name),
                  "b\n")
            << name;
    }
}

TEST(UnifiedDiffTest, KeepsANameWithALineFeedInItsHeaderLine) {
    const std::string diff = unifiedDiff("a\nb.ppd", "a\n", "b\n", DiffStyle::forPrograms);
    EXPECT_TRUE(diff.starts_with("--- \"a\\012b.ppd\"\n+++ \"a\\012b.ppd\"\n")) << diff;
}

TEST(UnifiedDiffTest, ColoursRemovedAndAddedLinesForATerminal) {
    EXPECT_EQ(unifiedDiff("a.ppd", "a\nb\n", "a\nc", DiffStyle::colouredForTerminal),
              "\033[1m--- a.ppd\033[0m\n\033[1m+++ a.ppd\033[0m\n\033[36m@@ -1,2 +1,2 @@\033[0m\n"
              " a\n\033[31m-b\033[0m\n\033[32m+c\033[0m\n\\ No newline at end of file\n");
}

TEST(UnifiedDiffTest, SendsNoControlCharacterOfATextToATerminal) {
    for (const DiffStyle style : {DiffStyle::forTerminal, DiffStyle::colouredForTerminal}) {
        const std::string diff = unifiedDiff("a.ppd", "\033]0;x\a\tb\n", "\033[2J\tc\r\n", style);
        EXPECT_NE(diff.find("-\\x1B]0;x\\x07\tb"), std::string::npos) << diff;
        EXPECT_NE(diff.find("+\\x1B[2J\tc\\x0D"), std::string::npos) << diff;
    }
}

TEST(UnifiedDiffTest, SendsNoEscapeSequenceToATerminalWithoutColour) {
    const std::string diff = unifiedDiff("a.ppd", "\033[2Ja\n",
                                         "\xC2\x9B"
                                         "31mb\n",
                                         DiffStyle::forTerminal);
    EXPECT_EQ(diff,
              "--- a.ppd\n+++ a.ppd\n@@ -1,1 +1,1 @@\n-\\x1B[2Ja\n+\\xC2\\x9B"
              "31mb\n");
}

TEST(UnifiedDiffTest, TakesLittleTimeForALargeTextThatChangesThroughout) {
    // 40,000 lines of which not one stays: the worst case of a textbook differ is quadratic.
    std::string before;
    std::string after;
    for (int line = 0; line < 40000; ++line) {
        before += "*Before " + std::to_string(line * 7919 % 40009) + ": \"x\"\n";
        after += "*After " + std::to_string(line * 7907 % 40009) + ": \"x\"\n*Common: \"\"\n";
        before += "*Common: \"\"\n*Common: \"\"\n";
    }
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(unifiedDiff("a.ppd", before, after, DiffStyle::forPrograms).empty());
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
