// A full disk, a resource that is replaced while it is in use, an environment that somebody hostile
// has made.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "backends/ppdmodel/PPDModelCore.h"
#include "backends/ppdmodel/PPDModelFile.h"
#include "core_interface/OrbCoreInterface.h"
#include "manager/MissingResourceWatch.h"
#include "manager/OrbClass.h"
#include "manager/OrbPPDConcreteUpdatingManager.h"
#include "resources/ResourceFolder.h"
#include "tests/support/FileContents.h"
#include "tests/support/RunProgram.h"
#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {
namespace {

namespace fs = std::filesystem;

const std::string kSamples = TKPPDUPDATING_SOURCE_DIR "/samples/";

/// Runs a shell script in a name space of mounts, in which it may mount.
ProgramResult runWithMounts(const std::string& script, const std::vector<std::string>& arguments) {
    std::vector<std::string> command = {"unshare", "--mount"};
    if (::geteuid() != 0) {
        command.insert(command.end(), {"--user", "--map-root-user"});
    }
    command.insert(command.end(), {"sh", "-euc", script, "sh"});
    command.insert(command.end(), arguments.begin(), arguments.end());
    return runProgram(command);
}

/// A file system of 15 pages with `free` of them free; the tool runs there with what follows.
constexpr const char* kOnAFullDisk = R"sh(
folder=$1 tool=$2 samples=$3 free=$4; shift 4
export ZrEPRLastUpdateTime=800000000
mount -t tmpfs -o size=61440 none "$folder"
cp "$samples/ppd/zr-office.ppd" "$folder/a.ppd"
dd if=/dev/zero of="$folder/filler" bs=4096 count=64 2>/dev/null || true
truncate -s "-$((free * 4096))" "$folder/filler"
status=0
"$tool" update "$folder/a.ppd" --device-uri "file:$samples/status/zr-office-all.json" "$@" >/dev/null ||
    status=$?
rm "$folder/filler"
ls -A "$folder" >&2
echo "status=$status"
cat "$folder/a.ppd"
)sh";

TEST(FullDisk, LeavesTheOldFileOrTheNewOne) {
    const std::string before = contentsOfFile(kSamples + "ppd/zr-office.ppd");
    const TemporaryDirectory directory;
    std::string whole;
    for (int free = 8; free >= 0; --free) {
        const ProgramResult run =
            runWithMounts(kOnAFullDisk, {directory.path().string(), TKPPDUPDATING_MOVED_TOOL,
                                         kSamples, std::to_string(free), "--in-place"});
        ASSERT_EQ(run.exitStatus, 0)
            << "this test mounts a file system in a name space of its own (unshare --mount): "
            << run.standardError;
        const std::size_t end = run.standardOutput.find('\n');
        const std::string status = run.standardOutput.substr(0, end);
        const std::string after = run.standardOutput.substr(end + 1);
        if (status == "status=0") {
            whole = whole.empty() ? after : whole;
            EXPECT_NE(after, before) << free;
            EXPECT_EQ(after, whole) << free;
            EXPECT_EQ(run.standardError, "a.ppd\n") << free;
        } else {
            EXPECT_EQ(status, "status=1") << free;
            EXPECT_EQ(after, before) << free;
            EXPECT_THAT(run.standardError,
                        testing::MatchesRegex("tkppdupdate: [^\n]*: (cannot be written|no new file "
                                              "can be made in its folder): No space left on "
                                              "device\na\\.ppd\n"))
                << free;
        }
        // The new text takes five pages.
        EXPECT_EQ(status == "status=0", free >= 5) << free;
    }
}

/// What is told of an update with that environment, and nothing else in it.
ProgramResult updateWith(const std::map<std::string, std::string>& environment) {
    std::vector<std::string> command = {"env", "-i"};
    for (const auto& [name, value] : environment) {
        command.push_back(name + "=" + value);
    }
    command.insert(command.end(),
                   {TKPPDUPDATING_MOVED_TOOL, "update", kSamples + "ppd/zr-inkjet.ppd",
                    "--device-uri", "file:" + kSamples + "status/zr-inkjet-all.json", "--skip",
                    "OrbPPDDefaultPageSizeUpdater", "--skip", "OrbPPDEstimatedPagesUpdater"});
    return runProgram(command);
}

TEST(HostileEnvironment, ChangesNothingOfTheResult) {
    const ProgramResult plain = updateWith({});
    ASSERT_EQ(plain.exitStatus, 0) << plain.standardError;
    const std::string longText(100'000, 'x');
    const std::string odd = "\xFF\x1B[31m\n../../etc/passwd%n%s";
    for (const char* name : {"LC_ALL",
                             "LC_CTYPE",
                             "LC_NUMERIC",
                             "LC_COLLATE",
                             "LC_MESSAGES",
                             "LC_PAPER",
                             "LANG",
                             "LANGUAGE",
                             "LOCPATH",
                             "NLSPATH",
                             "GCONV_PATH",
                             "TMPDIR",
                             "HOME",
                             "TZ",
                             "PATH",
                             "TERM",
                             "COLUMNS",
                             "CUPS_SERVER",
                             "CUPS_SERVERROOT",
                             "CUPS_DATADIR",
                             "XDG_RUNTIME_DIR",
                             "MIBDIRS",
                             "SNMPCONFPATH",
                             "POSIXLY_CORRECT",
                             "NO_COLOR",
                             "IFS",
                             "BASH_ENV"}) {
        for (const std::string& value :
             {std::string(), std::string("tr_TR.UTF-8"), std::string("de_DE"), longText, odd}) {
            const ProgramResult result = updateWith({{"PATH", "/usr/bin:/bin"}, {name, value}});
            EXPECT_EQ(result.exitStatus, 0) << name << ": " << result.standardError;
            EXPECT_EQ(result.standardOutput, plain.standardOutput) << name;
            EXPECT_EQ(result.standardError, plain.standardError) << name;
        }
    }
}

/// A folder of resources whose property list somebody replaces again and again, in every way that
/// one can be replaced.
class ReplacedResource {
  public:
    ReplacedResource()
        : good_(contentsOfFile(TKPPDUPDATING_SOURCE_DIR "/resources/TkPPDUpdatingData.plist")) {
        directory_.write("TkPPDUpdatingData.plist", good_);
        ResourceFolder::setPath(directory_.path().string());
    }
    ReplacedResource(const ReplacedResource&) = delete;
    ReplacedResource& operator=(const ReplacedResource&) = delete;
    ~ReplacedResource() { ResourceFolder::setPath(std::nullopt); }

    void replaceUntil(const std::atomic<bool>& isOver) const {
        const fs::path file = directory_.path() / "TkPPDUpdatingData.plist";
        for (int round = 0; !isOver; ++round) {
            switch (round % 4) {
                case 0:
                    fs::rename(directory_.write("new", good_), file);
                    break;
                case 1:
                    directory_.write("TkPPDUpdatingData.plist", good_);  // In place, byte for byte.
                    break;
                case 2:
                    directory_.write(
                        "TkPPDUpdatingData.plist",
                        good_.substr(0, static_cast<std::size_t>(round) * 37 % good_.size()));
                    break;
                default:
                    fs::remove(file);
            }
            std::this_thread::yield();
        }
    }

  private:
    TemporaryDirectory directory_;
    std::string good_;
};

/// The text with the block of the duplexer from the resource, or null when data was missing for it.
PPDText updatedText(const std::shared_ptr<const PPDModelFile>& PPD) {
    OrbPPDConcreteUpdatingManager manager;
    const auto classes = manager.registeredClasses();  // A copy.
    for (const OrbClass* updaterClass : classes) {
        if (updaterClass->name() != "OrbPPDDeviceCapabilitiesUpdater") {
            manager.unregisterUpdaterClass(updaterClass);
        }
    }
    try {
        return MissingResourceWatch::resultOf([&] {
            return manager.updatedPPDContentsForContents_PPDFile_deviceURI_context(
                PPD->text(), *PPD, std::nullopt, {});
        });
    } catch (const MissingResourceError&) {
        return nullptr;
    }
}

TEST(ReplacedResource, GivesTheRightTextOrNone) {
    OrbCoreInterface::setCore(std::make_shared<PPDModelCore>());
    const auto PPD = PPDModelFile::fileWithContentsOfFile(kSamples + "ppd/zr-office.ppd");
    ASSERT_TRUE(PPD);
    const PPDText right = updatedText(PPD);
    ASSERT_TRUE(right);
    ASSERT_NE(*right, *PPD->text());
    const ReplacedResource resource;
    std::atomic<bool> isOver{false};
    std::thread somebody([&] { resource.replaceUntil(isOver); });
    int given = 0;
    int refused = 0;
    for (int count = 0; count < 300; ++count) {
        const PPDText text = updatedText(PPD);
        given += text ? 1 : 0;
        refused += text ? 0 : 1;
        if (text && *text != *right) {
            ADD_FAILURE() << *text;
            break;
        }
    }
    isOver = true;
    somebody.join();
    // Both did happen.
    EXPECT_GT(given, 0);
    EXPECT_GT(refused, 0);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
