#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "backends/recorded/RecordedDeviceStatus.h"
#include "core_interface/TkCSKeys.h"
#include "tests/support/TemporaryDirectory.h"
#include "text/FileURL.h"

namespace TkPPDUpdating {
namespace {

using testing::ElementsAre;

constexpr std::string_view kRecording = R"({"MaxSupportedResolution": 1200})";

class RecordingBackend : public testing::Test {
  protected:
    RecordingBackend() { registerRecordedDeviceStatus(schemes); }

    bool givesTheRecording(const std::string& URI) {
        const auto status = schemes.deviceStatusWithURI_parameters_error(URI, nullptr, &error);
        return status &&
               status->statusValueForKey<OrbCSNumberOrString>(kTkCSMaxSupportedResolutionKey);
    }

    std::string errorFor(const std::string& URI) {
        EXPECT_FALSE(schemes.deviceStatusWithURI_parameters_error(URI, nullptr, &error)) << URI;
        return error.reason;
    }

    std::string errorForPath(const std::string& path) { return errorFor(fileURLFromPath(path)); }

    DeviceStatusSchemes schemes;
    Testing::TemporaryDirectory directory;
    OrbCSError error;
};

TEST_F(RecordingBackend, StandsBehindTheSchemeFile) {
    EXPECT_THAT(schemes.schemes(), ElementsAre("file"));
}

TEST_F(RecordingBackend, ReadsTheRecordingThatTheURINames) {
    const std::string path = directory.write("printer.json", kRecording);
    EXPECT_TRUE(givesTheRecording("file://" + path)) << error.reason;
    EXPECT_TRUE(givesTheRecording("FILE://localhost" + path)) << error.reason;
    EXPECT_TRUE(givesTheRecording("file:" + path)) << error.reason;
}

TEST_F(RecordingBackend, DecodesThePath) {
    const std::string path = directory.write("a b%\xC3\xA9.json", kRecording);
    EXPECT_TRUE(givesTheRecording(fileURLFromPath(path))) << error.reason;
    EXPECT_TRUE(givesTheRecording("file://" + directory.path().string() + "/a%20b%25%C3%A9.json"))
        << error.reason;
}

TEST_F(RecordingBackend, TakesARelativePathFromTheWorkingDirectory) {
    const std::string path = directory.write("printer.json", kRecording);
    // The working directory is the process's own, and other tests may run in it: it stays.
    const auto relative = std::filesystem::relative(path);
    EXPECT_TRUE(givesTheRecording("file:" + relative.string())) << error.reason;
}

TEST_F(RecordingBackend, SaysWhichURINamesNoFileHere) {
    for (const char* URI :
         {"file:", "file://server/p.json", "file:///p.json?x", "file:///p%zz", "file:///p%00"}) {
        EXPECT_EQ(errorFor(URI), "the device URI names no file of this machine") << URI;
    }
}

TEST_F(RecordingBackend, SaysWhichFileCannotBeReadAndWhy) {
    const std::string missing = (directory.path() / "missing.json").string();
    EXPECT_EQ(errorForPath(missing), missing + ": No such file or directory");
    const std::string folder = directory.path().string();
    EXPECT_EQ(errorForPath(folder), folder + ": is a directory");
    const std::string pipe = (directory.path() / "pipe").string();
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(errorForPath(pipe), pipe + ": is not a regular file");
    const std::string invalid = directory.write("invalid.json", "{\"a\": \"\xE9\"}");
    EXPECT_EQ(errorForPath(invalid), invalid + ": is not valid UTF-8 at byte 7");
}

TEST_F(RecordingBackend, SaysWhichFileMayNotBeRead) {
    if (::geteuid() == 0) {
        // The administrator may read every file, whatever its mode.
        const std::string beyondFile = directory.write("file", "x") + "/printer.json";
        EXPECT_EQ(errorForPath(beyondFile), beyondFile + ": Not a directory");
        return;
    }
    const std::string path = directory.write("secret.json", kRecording);
    ASSERT_EQ(::chmod(path.c_str(), 0), 0);
    EXPECT_EQ(errorForPath(path), path + ": Permission denied");
}

TEST_F(RecordingBackend, ReadsFourMebibytesAndNoMore) {
    constexpr auto kLargest = std::uintmax_t{4} * 1024 * 1024;
    const std::string path = directory.write(
        "large.json", std::string(kLargest - kRecording.size(), ' ') + std::string(kRecording));
    EXPECT_TRUE(givesTheRecording(fileURLFromPath(path))) << error.reason;
    // Sparse, so that the disk does not have to hold it.
    std::filesystem::resize_file(path, kLargest + 1);
    EXPECT_EQ(errorForPath(path), path + ": is larger than 4194304 bytes");
    std::filesystem::resize_file(path, kLargest * 1024);
    EXPECT_EQ(errorForPath(path), path + ": is larger than 4194304 bytes");
}

TEST_F(RecordingBackend, NamesTheFileAndThePlaceOfWhatIsWrongInIt) {
    const std::string wrong = directory.write("wrong.json", R"({"LinTable": {"timestamp": []}})");
    EXPECT_EQ(errorForPath(wrong),
              wrong + ": LinTable.timestamp: expected a number, found an array");
    const std::string empty = directory.write("empty.json", "");
    EXPECT_THAT(errorForPath(empty),
                testing::StartsWith(empty + ": is not JSON at line 1, column 1"));
}

}  // namespace
}  // namespace TkPPDUpdating
