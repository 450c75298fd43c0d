#include "resources/ResourceFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>

#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {
namespace {

namespace fs = std::filesystem;

constexpr const char* kSourceResources = TKPPDUPDATING_SOURCE_DIR "/resources";

/// A prefix with the object file that the library's code runs from and its data folder.
class Prefix {
  public:
    Prefix() { object_ = directory_.write("prefix/" TKPPDUPDATING_OBJECT_FOLDER "/object", ""); }

    void addData() const { directory_.write("prefix/" TKPPDUPDATING_DATA_FOLDER "/x", ""); }
    const fs::path& path() const { return directory_.path(); }
    const std::string& object() const { return object_; }
    fs::path data() const { return path() / "prefix" / TKPPDUPDATING_DATA_FOLDER; }

  private:
    TemporaryDirectory directory_;
    std::string object_;
};

/// The first line that the command writes.
std::string outputOf(const std::string& command) {
    std::FILE* const pipe = ::popen(command.c_str(), "r");
    std::string output;
    std::array<char, 256> part{};
    while (pipe && std::fgets(part.data(), part.size(), pipe)) {
        output += part.data();
    }
    if (pipe) {
        ::pclose(pipe);
    }
    return output.substr(0, output.find('\n'));
}

TEST(ResourceFolder, IsTheResourcesOfTheSourcesInTheBuildTree) {
    EXPECT_EQ(ResourceFolder::path(), kSourceResources);
    EXPECT_EQ(ResourceFolder::pathForObjectAt(TKPPDUPDATING_BINARY_DIR "/tests"), kSourceResources);
}

TEST(ResourceFolder, IsTheInstalledDataFolderOfTheObjectsPrefix) {
    const Prefix prefix;
    prefix.addData();
    const auto found = ResourceFolder::pathForObjectAt(prefix.object());
    ASSERT_TRUE(found);
    EXPECT_TRUE(fs::equivalent(*found, prefix.data())) << *found;
}

TEST(ResourceFolder, FollowsTheObjectWhenThePrefixMoves) {
    const Prefix prefix;
    prefix.addData();
    fs::rename(prefix.path() / "prefix", prefix.path() / "moved");
    const fs::path moved = prefix.path() / "moved";
    const auto found =
        ResourceFolder::pathForObjectAt((moved / TKPPDUPDATING_OBJECT_FOLDER / "object").string());
    ASSERT_TRUE(found);
    EXPECT_TRUE(fs::equivalent(*found, moved / TKPPDUPDATING_DATA_FOLDER)) << *found;
}

TEST(ResourceFolder, IsFoundThroughAFolderThatIsASymbolicLink) {
    const Prefix prefix;
    prefix.addData();
    const fs::path link = prefix.path() / "link";
    fs::create_directory_symlink(fs::path(prefix.object()).parent_path(), link);
    const auto found = ResourceFolder::pathForObjectAt((link / "object").string());
    ASSERT_TRUE(found);
    EXPECT_TRUE(fs::equivalent(*found, prefix.data())) << *found;
}

TEST(ResourceFolder, ComesFromAPrefixInsideTheBuildTreeBeforeTheSources) {
    const fs::path prefix = fs::path(TKPPDUPDATING_BINARY_DIR) / "resource-folder-test-prefix";
    fs::create_directories(prefix / TKPPDUPDATING_OBJECT_FOLDER);
    fs::create_directories(prefix / TKPPDUPDATING_DATA_FOLDER);
    const auto found =
        ResourceFolder::pathForObjectAt((prefix / TKPPDUPDATING_OBJECT_FOLDER / "object").string());
    EXPECT_TRUE(found && fs::equivalent(*found, prefix / TKPPDUPDATING_DATA_FOLDER));
    fs::remove_all(prefix);
}

TEST(ResourceFolder, IsNotLookedForBesideAnObjectElsewhere) {
    const TemporaryDirectory elsewhere;
    elsewhere.write("TkPPDUpdatingData.plist", "");
    elsewhere.write("resources/TkPPDUpdatingData.plist", "");
    const auto found = ResourceFolder::pathForObjectAt(elsewhere.write("program", ""));
    // What may be found is the data folder that the build was configured to be installed with.
    EXPECT_TRUE(!found || found->find(elsewhere.path().string()) == std::string::npos) << *found;
    EXPECT_EQ(ResourceFolder::pathForObjectAt(""), found);
}

TEST(ResourceFolder, CanBeSetAndTakenBack) {
    ResourceFolder::setPath("/somewhere");
    EXPECT_EQ(ResourceFolder::path(), "/somewhere");
    ResourceFolder::setPath(std::nullopt);
    EXPECT_EQ(ResourceFolder::path(), kSourceResources);
}

TEST(ResourceFolder, OfAnObjectThatWasLoadedByARelativePathIsThatOfItsPrefix) {
    const Prefix prefix;
    prefix.addData();
    fs::copy_file(TKPPDUPDATING_OBJECT, prefix.object(), fs::copy_options::overwrite_existing);
    const std::string folder = fs::path(prefix.object()).parent_path().string();
    const std::string around = "../" + fs::path(folder).filename().string() + "/object";
    for (const std::string& path : {std::string("./object"), around}) {
        const std::string found =
            outputOf("cd " + folder + " && " + TKPPDUPDATING_LOADER + " " + path);
        ASSERT_FALSE(found.empty()) << path;
        EXPECT_TRUE(fs::equivalent(found, prefix.data())) << found;
    }
}

TEST(ResourceFolder, OfAnObjectThatWasLoadedByARelativePathInTheBuildTreeIsThatOfTheSources) {
    const fs::path object(TKPPDUPDATING_OBJECT);
    EXPECT_EQ(outputOf("cd " + object.parent_path().string() + " && " + TKPPDUPDATING_LOADER +
                       " ./" + object.filename().string()),
              kSourceResources);
}

/// A program of its own, moved away from the build tree, run with a misleading name and working
/// directory.
TEST(ResourceFolder, OfARelocatedProgramDependsOnNeitherItsNameNorTheWorkingDirectory) {
    const Prefix prefix;
    prefix.addData();
    const fs::path program = prefix.path() / "prefix" / TKPPDUPDATING_PROGRAM_FOLDER / "probe";
    fs::create_directories(program.parent_path());
    fs::copy_file(TKPPDUPDATING_PROBE, program, fs::copy_options::overwrite_existing);
    const TemporaryDirectory elsewhere;
    fs::create_directories(elsewhere.path() / "share" / "TkPPDUpdating");
    fs::create_directories(elsewhere.path() / "bin");
    const std::string found = outputOf("cd " + (elsewhere.path() / "bin").string() + " && " +
                                       "bash -c 'exec -a ./probe \"$0\"' " + program.string());
    ASSERT_FALSE(found.empty());
    EXPECT_TRUE(fs::equivalent(found, prefix.data())) << found;
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
