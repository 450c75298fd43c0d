// The steps of a release, as CONTRIBUTING.md has them, hold for another version than this one.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/CodeBlocks.h"
#include "tests/support/FileContents.h"
#include "tests/support/RunProgram.h"
#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

const std::string kSources = TKPPDUPDATING_SOURCE_DIR;
const std::string kVersion = TKPPDUPDATING_VERSION;

std::string releaseSection() {
    const std::string page = textOfSource("CONTRIBUTING.md");
    const std::size_t start = page.find("## Release\n");
    EXPECT_NE(start, std::string::npos);
    return page.substr(start, page.find("\n## ", start + 1) - start);
}

/// Folders at the root that are of the sources: not what is built, nor what keeps their history.
bool isOfTheSources(const fs::path& path) {
    const std::string name = path.filename().string();
    return !name.starts_with(".git") && !name.starts_with("build");
}

std::string escaped(const std::string& version) {
    return std::regex_replace(version, std::regex(R"(\.)"), R"(\.)");
}

TEST(ReleaseSteps, TheVersionStandsInTheProjectLineAndTheListOfChangesOnly) {
    const std::string series = kVersion.substr(0, kVersion.rfind('.'));
    const std::regex stated("(^|[^0-9.])" + escaped(kVersion) + "([^0-9.]|\\.[^0-9]|$)|" +
                            "tkppdupdating" + escaped(series) + "([^0-9]|$)");
    std::vector<std::string> places;
    for (const auto& top : fs::directory_iterator(kSources)) {
        const std::string name = top.path().filename().string();
        if (!isOfTheSources(top.path()) || name == "samples" || name == "fuzz") {
            continue;
        }
        const auto look = [&](const fs::path& path) {
            if (fs::is_regular_file(path) && fs::file_size(path) < (1U << 20U)) {
                const std::string contents = contentsOfFile(path);
                // An expression takes its time: it looks only where it could find something.
                if (contents.find(kVersion) == std::string::npos &&
                    contents.find("tkppdupdating" + series) == std::string::npos) {
                    return;
                }
                std::istringstream lines(contents);
                for (std::string line; std::getline(lines, line);) {
                    if (std::regex_search(line, stated)) {
                        places.push_back(fs::relative(path, kSources).string());
                    }
                }
            }
        };
        look(top.path());
        if (top.is_directory()) {
            for (const auto& each : fs::recursive_directory_iterator(top.path())) {
                look(each.path());
            }
        }
    }
    std::ranges::sort(places);
    EXPECT_THAT(places, testing::ElementsAre("CHANGELOG.md", "CMakeLists.txt"));
}

TEST(ReleaseSteps, NameScriptsAndPresetsThatThereAre) {
    const std::string section = releaseSection();
    const std::string presets = textOfSource("CMakePresets.json");
    const std::regex named(R"(scripts/([a-z-]+)|--preset ([a-z]+))");
    std::size_t count = 0;
    for (std::sregex_iterator each(section.begin(), section.end(), named), end; each != end;
         ++each, ++count) {
        if ((*each)[1].matched) {
            const fs::path script = kSources + "/scripts/" + each->str(1);
            ASSERT_TRUE(fs::exists(script)) << script;
            EXPECT_NE(fs::status(script).permissions() & fs::perms::owner_exec, fs::perms::none);
        } else {
            EXPECT_THAT(presets, HasSubstr("\"name\": \"" + each->str(2) + "\""));
        }
    }
    EXPECT_GE(count, 8U);
}

/// A copy of the sources that got the version 9.8.7 by the first step.
class AnotherVersion : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_THAT(releaseSection(), HasSubstr("the version in the `project()` line"));
        ASSERT_THAT(releaseSection(), HasSubstr("the date\n   in `CHANGELOG.md`"));
        fs::create_directory(copy());
        for (const auto& each : fs::directory_iterator(kSources)) {
            if (isOfTheSources(each.path())) {
                fs::copy(each.path(), copy() / each.path().filename(),
                         fs::copy_options::recursive | fs::copy_options::copy_symlinks);
            }
        }
        replace("CMakeLists.txt", "VERSION " + kVersion, "VERSION 9.8.7");
        // "not released", or the date of its release.
        const std::string changes = contentsOfFile(copy() / "CHANGELOG.md");
        std::smatch heading;
        ASSERT_TRUE(std::regex_search(changes, heading,
                                      std::regex("## " + escaped(kVersion) + ", [^\n]+\n")))
            << "CHANGELOG.md has no section of version " << kVersion;
        replace("CHANGELOG.md", heading.str(), "## 9.8.7, 2031-02-03\n");
    }

    fs::path copy() const { return directory_.path() / "copy"; }

    void replace(const std::string& path, const std::string& old, const std::string& text) const {
        std::string contents = contentsOfFile(copy() / path);
        const std::size_t at = contents.find(old);
        ASSERT_NE(at, std::string::npos) << path << " has no \"" << old << "\"";
        contents.replace(at, old.size(), text);
        std::ofstream(copy() / path, std::ios::binary) << contents;
    }

    ProgramResult run(const std::vector<std::string>& command) const {
        ProgramSurroundings surroundings;
        surroundings.workingDirectory = copy().string();
        return runProgram(command, surroundings);
    }

    TemporaryDirectory directory_;
};

TEST_F(AnotherVersion, IsWhatLibrariesPackagesAndTheirChangelogSay) {
    const ProgramResult configured = run({"cmake", "--fresh", "--preset", "packages"});
    ASSERT_EQ(configured.exitStatus, 0) << configured.standardError;
    const fs::path build = copy() / "build/packages";
    EXPECT_THAT(contentsOfFile(build / "TkPPDUpdating.pc"), HasSubstr("\nVersion: 9.8.7\n"));
    EXPECT_THAT(contentsOfFile(build / "TkPPDUpdatingConfigVersion.cmake"),
                HasSubstr("PACKAGE_VERSION \"9.8.7\""));
    EXPECT_THAT(contentsOfFile(build / "versions.map"), HasSubstr("_9.8 "));
    const std::string ninja = contentsOfFile(build / "build.ninja");
    EXPECT_THAT(ninja, HasSubstr("libTkPPDUpdating.so.9.8.7"));
    EXPECT_THAT(ninja, HasSubstr("libTkPPDUpdatingC.so.9.8 "));
    EXPECT_THAT(ninja, testing::Not(HasSubstr(kVersion + "\\\"")));
    const std::string packages = contentsOfFile(build / "CPackConfig.cmake");
    EXPECT_THAT(packages, HasSubstr("CPACK_PACKAGE_VERSION \"9.8.7\""));
    EXPECT_THAT(packages, HasSubstr("\"libtkppdupdating9.8\""));

    // What CPack does with the files of the packages before it packs them.
    fs::create_directories(copy() / "staged/Tool/usr");
    std::ofstream(copy() / "stage.cmake")
        << "include(build/packages/CPackConfig.cmake)\nset(CPACK_COMPONENTS_ALL Tool)\n"
           "set(CPACK_TEMPORARY_DIRECTORY \"${CMAKE_CURRENT_LIST_DIR}/staged\")\n"
           "include(cmake/StagePackages.cmake NO_POLICY_SCOPE)\n";
    const ProgramResult staged = run({"cmake", "-P", "stage.cmake"});
    ASSERT_EQ(staged.exitStatus, 0) << staged.standardError;
    const std::string changelog =
        run({"gzip", "-dc", "staged/Tool/usr/share/doc/tkppdupdate/changelog.gz"}).standardOutput;
    EXPECT_THAT(changelog, testing::StartsWith("tkppdupdating (9.8.7) unstable; urgency=medium\n"));
    std::istringstream lines(changelog);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_TRUE(line.size() < 80 || line.starts_with(" -- ")) << line;
    }
    EXPECT_THAT(contentsOfFile(copy() / "staged/Tool/usr/share/doc/tkppdupdate/copyright"),
                testing::ContainsRegex("Copyright .* [0-9][0-9][0-9][0-9] "));
}

TEST_F(AnotherVersion, CannotBePackedWithoutItsChanges) {
    replace("CHANGELOG.md", "## 9.8.7", "## 9.8.6");
    fs::create_directories(copy() / "staged/Tool/usr");
    const ProgramResult staged =
        run({"cmake", "-DCPACK_COMPONENTS_ALL=Tool", "-DCPACK_DEBIAN_TOOL_PACKAGE_NAME=tkppdupdate",
             "-DCPACK_TEMPORARY_DIRECTORY=" + (copy() / "staged").string(),
             "-DCPACK_TKPPDUPDATING_SOURCES=" + copy().string(), "-DCPACK_PACKAGE_VERSION=9.8.7",
             "-P", "cmake/StagePackages.cmake"});
    EXPECT_NE(staged.exitStatus, 0);
    EXPECT_THAT(staged.standardError,
                HasSubstr("CHANGELOG.md has no entries for the version 9.8.7"));
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
