#include "resources/PropertyListCache.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>

#include "resources/ResourceFolder.h"
#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {
namespace {

std::string plist(std::string_view text) {
    return "<plist version=\"1.0\"><dict><key>K</key><string>" + std::string(text) +
           "</string></dict></plist>";
}

/// The text under "K"; "(none)" when the file cannot be read.
std::string readText(const std::string& path) {
    const auto list = sharedPropertyListWithContentsOfFile(path);
    const std::string* const text = list ? list->stringForKey("K") : nullptr;
    return text ? *text : "(none)";
}

TEST(PropertyListCache, GivesWhatTheFileHolds) {
    const TemporaryDirectory folder;
    EXPECT_EQ(readText(folder.write("a.plist", plist("one"))), "one");
    EXPECT_EQ(readText(folder.write("b.plist", plist("two"))), "two");
}

TEST(PropertyListCache, ReadsAFileThatChangedAtOnce) {
    const TemporaryDirectory folder;
    // Of the same size, within the same tick of the clock.
    for (int i = 0; i < 100; ++i) {
        const std::string text = std::to_string(1000 + i);
        ASSERT_EQ(readText(folder.write("a.plist", plist(text))), text);
    }
}

TEST(PropertyListCache, ReadsAFileThatWasPutInThePlaceOfAnother) {
    const TemporaryDirectory folder;
    const std::string path = folder.write("a.plist", plist("one"));
    ASSERT_EQ(readText(path), "one");
    std::filesystem::rename(folder.write("b.plist", plist("two")), path);
    EXPECT_EQ(readText(path), "two");
}

TEST(PropertyListCache, GivesNothingForAFileThatCannotBeReadOrIsGone) {
    const TemporaryDirectory folder;
    const std::string path = folder.write("a.plist", plist("one"));
    ASSERT_EQ(readText(path), "one");
    std::filesystem::remove(path);
    EXPECT_EQ(readText(path), "(none)");
    EXPECT_EQ(readText(folder.write("b.plist", "no property list")), "(none)");
    EXPECT_EQ(readText(folder.path().string()), "(none)");
}

// The library's own, which has not changed for a while.
TEST(PropertyListCache, KeepsTheListOfAFileThatStaysTheSame) {
    const auto folder = ResourceFolder::path();
    ASSERT_TRUE(folder);
    const std::string path = *folder + "/TkPPDUpdatingData.plist";
    const auto first = sharedPropertyListWithContentsOfFile(path);
    ASSERT_TRUE(first);
    EXPECT_EQ(sharedPropertyListWithContentsOfFile(path), first);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
