#include "text/FileURL.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace TkPPDUpdating {
namespace {

using namespace std::string_view_literals;

void expectPaths(const std::vector<std::pair<std::string_view, std::string_view>>& cases) {
    for (const auto& [URL, path] : cases) {
        EXPECT_EQ(pathFromFileURL(URL), path) << URL;
    }
}

void expectNoPath(const std::vector<std::string_view>& URLs) {
    for (const std::string_view URL : URLs) {
        EXPECT_EQ(pathFromFileURL(URL), std::nullopt) << URL;
    }
}

TEST(FileURL, GivesTheAbsolutePathOfAURLOfThisMachine) {
    expectPaths({{"file:///p", "/p"},
                 {"file:///", "/"},
                 {"file:///a/b.json", "/a/b.json"},
                 {"file://localhost/a/b", "/a/b"},
                 {"file:/a/b", "/a/b"},
                 {"file:////a", "//a"},
                 {"file:///a/../b/./c", "/a/../b/./c"}});
}

TEST(FileURL, GivesARelativePathAsItIs) {
    expectPaths({{"file:printer.json", "printer.json"},
                 {"file:./a/b", "./a/b"},
                 {"file:../a", "../a"},
                 {"file:a%20b", "a b"}});
}

TEST(FileURL, TakesSchemeAndHostInAnyCase) {
    expectPaths({{"FILE:///p", "/p"}, {"fIlE:p", "p"}, {"file://LocalHost/P", "/P"}});
}

TEST(FileURL, DecodesPercentEscapesOnce) {
    expectPaths({{"file:///a%20b", "/a b"},
                 {"file:///%41%7a%7A", "/Azz"},
                 {"file:///caf%C3%a9", "/caf\xC3\xA9"},
                 {"file:///a%2Fb", "/a/b"},
                 {"file:///100%25", "/100%"},
                 {"file:///%2541", "/%41"},
                 {"file:///a%3Fb%23c", "/a?b#c"},
                 {"file:///%FF", "/\xFF"}});
}

TEST(FileURL, KeepsWhatIsNotEncodedThoughItShouldBe) {
    expectPaths({{"file:///a b", "/a b"}, {"file:///caf\xC3\xA9", "/caf\xC3\xA9"}});
}

TEST(FileURL, DoesNotTakeAPlusForASpace) {
    expectPaths({{"file:///a+b", "/a+b"}});
}

TEST(FileURL, GivesNothingForABadPercentEscape) {
    expectNoPath({"file:///%zz", "file:///%0", "file:///%", "file:///a%4", "file:///%4g",
                  "file:///%g4", "file:///%%41", "file:///%-1", "file:p%"});
}

TEST(FileURL, GivesNothingForANULByte) {
    expectNoPath({"file:///a%00", "file:%00", "file:///a\0b"sv});
}

TEST(FileURL, GivesNothingForAnotherHost) {
    expectNoPath({"file://server/p", "file://localhost.example/p", "file://localhos/p",
                  "file://localhost:80/p", "file://user@localhost/p", "file://127.0.0.1/p",
                  "file://p"});
}

TEST(FileURL, GivesNothingForAQueryOrAFragment) {
    expectNoPath({"file:///p?q", "file:///p#f", "file:///p?", "file:///p#", "file:p?q"});
}

TEST(FileURL, GivesNothingWithoutAPath) {
    expectNoPath({"file:", "file://", "file://localhost"});
}

TEST(FileURL, GivesNothingForAnotherScheme) {
    expectNoPath({"", "file", "/p", "http:///p", "files:///p", "xfile:///p", " file:///p"});
}

TEST(FileURL, IsMadeOfAPathWithEverythingElseEncoded) {
    EXPECT_EQ(fileURLFromPath("/"), "file:///");
    EXPECT_EQ(fileURLFromPath("/profiles/gloss.icc"), "file:///profiles/gloss.icc");
    EXPECT_EQ(fileURLFromPath("/AZaz09-._~!$&'()*+,;=:@"), "file:///AZaz09-._~!$&'()*+,;=:@");
    EXPECT_EQ(fileURLFromPath("/a b\"%<>[]?#\\^`{|}"),
              "file:///a%20b%22%25%3C%3E%5B%5D%3F%23%5C%5E%60%7B%7C%7D");
    EXPECT_EQ(fileURLFromPath("/caf\xC3\xA9\n\x7F"), "file:///caf%C3%A9%0A%7F");
}

TEST(FileURL, GivesBackThePathThatItWasMadeOf) {
    for (unsigned byte = 1; byte < 256; ++byte) {
        const std::string path = "/a" + std::string(1, static_cast<char>(byte)) + "/b";
        EXPECT_EQ(pathFromFileURL(fileURLFromPath(path)), path) << byte;
    }
    EXPECT_EQ(pathFromFileURL(fileURLFromPath("//host/p")), "//host/p");
    EXPECT_EQ(pathFromFileURL(fileURLFromPath("/%41")), "/%41");
}

TEST(FileURL, MakesAPathAbsolute) {
    EXPECT_EQ(absolutePath("/a/../b"), "/a/../b") << "is absolute already";
    const std::string here = std::filesystem::current_path().string();
    EXPECT_EQ(absolutePath("a/../b"), here + "/b");
    EXPECT_EQ(absolutePathFromFileURL("file:b%20c"), here + "/b c");
    EXPECT_EQ(absolutePathFromFileURL("file:///b"), "/b");
    EXPECT_EQ(absolutePathFromFileURL("http://host/b"), std::nullopt);
}

TEST(FileURL, GivesTheFileNameWithoutExtension) {
    const std::vector<std::pair<std::string_view, std::string_view>> cases{
        {"/p/gloss.icc", "gloss"},
        {"/p/a.b.icc", "a.b"},
        {"/p/.icc", ".icc"},
        {"/p/gloss", "gloss"},
        {"/p/gloss/", "gloss"},
        {"/p/a.b/", "a"},
        {"a.icc", "a"},
        {"/", "/"},
        {"//", "/"},
        {"", ""},
        {"/p/a.", "a"}};
    for (const auto& [path, name] : cases) {
        EXPECT_EQ(fileNameWithoutExtension(path), name) << path;
    }
}

}  // namespace
}  // namespace TkPPDUpdating
