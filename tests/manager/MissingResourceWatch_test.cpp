#include "manager/MissingResourceWatch.h"

#include <gtest/gtest.h>

#include <thread>

namespace TkPPDUpdating::Testing {
namespace {

/// What the watch around an operation makes of it: its result, or the error in brackets.
template <typename Operation>
std::string watched(const Operation& operation) {
    try {
        return MissingResourceWatch::resultOf(operation);
    } catch (const MissingResourceError& error) {
        return "[" + std::string(error.what()) + "]";
    }
}

TEST(MissingResourceWatch, GivesTheResultWhenNothingWasMissing) {
    EXPECT_EQ(watched([] { return "result"; }), "result");
}

TEST(MissingResourceWatch, RaisesWhatWasMissingFirst) {
    EXPECT_EQ(watched([] {
                  MissingResourceWatch::tell("one");
                  MissingResourceWatch::tell("two");
                  return "result";
              }),
              "[one]");
}

TEST(MissingResourceWatch, IsForItsOwnScope) {
    EXPECT_EQ(watched([] {
                  return watched([] {
                             MissingResourceWatch::tell("inner");
                             return "result";
                         }) +
                         " in the outer";
              }),
              "[inner] in the outer");
    MissingResourceWatch::tell("nobody");
    EXPECT_EQ(watched([] { return "result"; }), "result");
}

TEST(MissingResourceWatch, LearnsAgainOnceTheInnerOneIsGone) {
    EXPECT_EQ(watched([] {
                  std::string inner = watched([] { return "result"; });
                  MissingResourceWatch::tell("outer");
                  return inner;
              }),
              "[outer]");
}

TEST(MissingResourceWatch, IsAroundAnOperationWithoutAResultAsWell) {
    bool isRun = false;
    EXPECT_NO_THROW(MissingResourceWatch::resultOf([&] { isRun = true; }));
    EXPECT_TRUE(isRun);
    EXPECT_THROW(MissingResourceWatch::resultOf([] { MissingResourceWatch::tell("one"); }),
                 MissingResourceError);
}

TEST(MissingResourceWatch, IsForItsOwnThread) {
    EXPECT_EQ(watched([] {
                  std::thread([] { MissingResourceWatch::tell("another's"); }).join();
                  return "result";
              }),
              "result");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
