#include "tools/AtomicReplacement.h"
#include "tests/support/FileContents.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/TemporaryDirectory.h"
#include "tests/tools/SmallPPD.h"
#include "tests/tools/ToolRun.h"
#include "text/FileDescriptor.h"
#include "tools/Failure.h"

namespace TkPPDUpdating::Testing {
namespace {

constexpr mode_t kModeBits = 07777;

mode_t modeOf(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_mode & kModeBits : 0;
}

std::size_t filesIn(const TemporaryDirectory& directory) {
    using Iterator = std::filesystem::directory_iterator;
    return static_cast<std::size_t>(std::distance(Iterator(directory.path()), Iterator()));
}

/// Runs a shell script that gets the tool as $0 and the arguments from $1 on.
ToolRun runScript(const std::string& script, const std::vector<std::string>& arguments) {
    std::vector<std::string> command = {"sh", "-c", script, TKPPDUPDATING_TOOL};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return runCommand(command);
}

std::string reasonForFailure(const std::string& path) {
    try {
        replaceFileAtomically(path, "new");
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.place(), path);
        EXPECT_EQ(failure.status(), ExitStatus::noResult);
        return failure.what();
    }
    return "no failure";
}

TEST(AtomicReplacementTest, KeepsTheModeOfTheReplacedFile) {
    const TemporaryDirectory directory;
    const std::string file = directory.write("a.ppd", "old");
    ASSERT_EQ(::chmod(file.c_str(), 0640), 0);
    replaceFileAtomically(file, "new");
    EXPECT_EQ(contentsOfFile(file), "new");
    EXPECT_EQ(modeOf(file), 0640U);
    EXPECT_EQ(filesIn(directory), 1U);
}

TEST(AtomicReplacementTest, KeepsTheOwnerOfTheReplacedFileOrFails) {
    const TemporaryDirectory directory;
    const std::string file = directory.write("a.ppd", "old");
    if (::chown(file.c_str(), 7, 7) != 0) {
        // Only root can give a file away; the own user's file keeps its owner all the same.
        replaceFileAtomically(file, "new");
        struct stat status {};
        ASSERT_EQ(::stat(file.c_str(), &status), 0);
        EXPECT_EQ(status.st_uid, ::geteuid());
        return;
    }
    replaceFileAtomically(file, "new");
    struct stat status {};
    ASSERT_EQ(::stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, 7U);
    EXPECT_EQ(status.st_gid, 7U);
}

TEST(AtomicReplacementTest, KeepsAFileThatMayOnlyBeWritten) {
    const TemporaryDirectory directory;
    const std::string file = directory.write("a.ppd", "old");
    ASSERT_EQ(::chmod(file.c_str(), 0200), 0);
    replaceFileAtomically(file, "new");
    EXPECT_EQ(modeOf(file), 0200U);
    EXPECT_EQ(std::filesystem::file_size(file), 3U);
}

TEST(AtomicReplacementTest, GivesANewFileTheModeThatTheUmaskLeaves) {
    const TemporaryDirectory directory;
    const std::string file = (directory.path() / "a.ppd").string();
    const mode_t before = ::umask(027);
    replaceFileAtomically(file, "new");
    ::umask(before);
    EXPECT_EQ(contentsOfFile(file), "new");
    EXPECT_EQ(modeOf(file), 0640U);
}

TEST(AtomicReplacementTest, ReplacesTheFileBehindASymbolicLinkAndKeepsTheLink) {
    const TemporaryDirectory directory;
    const std::string file = directory.write("real/a.ppd", "old");
    const auto middle = directory.path() / "middle.ppd";
    const auto link = directory.path() / "link.ppd";
    std::filesystem::create_symlink("real/a.ppd", middle);
    std::filesystem::create_symlink(middle, link);
    replaceFileAtomically(link.string(), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_TRUE(std::filesystem::is_symlink(middle));
    EXPECT_EQ(contentsOfFile(file), "new");
}

TEST(AtomicReplacementTest, MakesTheFileThatASymbolicLinkNames) {
    const TemporaryDirectory directory;
    const auto link = directory.path() / "link.ppd";
    std::filesystem::create_symlink("a.ppd", link);
    replaceFileAtomically(link.string(), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(contentsOfFile((directory.path() / "a.ppd").string()), "new");
}

TEST(AtomicReplacementTest, RefusesACircleOfSymbolicLinks) {
    const TemporaryDirectory directory;
    const auto link = directory.path() / "link.ppd";
    std::filesystem::create_symlink("link.ppd", link);
    EXPECT_EQ(reasonForFailure(link.string()),
              "cannot be written: Too many levels of symbolic links");
}

TEST(AtomicReplacementTest, RefusesADirectory) {
    const TemporaryDirectory directory;
    EXPECT_EQ(reasonForFailure(directory.path().string()), "cannot be written: Is a directory");
}

TEST(AtomicReplacementTest, RefusesAFolderThatDoesNotExist) {
    const TemporaryDirectory directory;
    EXPECT_EQ(reasonForFailure((directory.write("file", "old") + "/a.ppd")),
              "no new file can be made in its folder: Not a directory");
    EXPECT_EQ(reasonForFailure((directory.path() / "none/a.ppd").string()),
              "no new file can be made in its folder: No such file or directory; make the folder "
              "first");
}

TEST(AtomicReplacementTest, RefusesAFolderThatCannotBeWrittenTo) {
    // /proc refuses new files to root, too.
    EXPECT_TRUE(reasonForFailure("/proc/tkppdupdate.ppd").starts_with("no new file can be made"));
}

TEST(AtomicReplacementTest, WritesIntoADeviceAsItIs) {
    EXPECT_EQ(reasonForFailure("/dev/full"), "cannot be written: No space left on device");
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
    replaceFileAtomically("/dev/zero", "new");
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/zero"));
}

TEST(AtomicReplacementTest, DoesNotWaitForTheReaderOfANamedPipe) {
    const TemporaryDirectory directory;
    const std::string pipe = (directory.path() / "pipe").string();
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(reasonForFailure(pipe), "cannot be written: nobody reads from this named pipe");
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
    EXPECT_EQ(filesIn(directory), 1U);
}

TEST(AtomicReplacementTest, WritesMoreIntoANamedPipeThanItHolds) {
    const TemporaryDirectory directory;
    const std::string pipe = (directory.path() / "pipe").string();
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const FileDescriptor reader(::open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    ASSERT_TRUE(reader.isOpen());
    ASSERT_EQ(::fcntl(reader.get(), F_SETFL, 0), 0);
    // As long as this one is open, the reader waits for more.
    FileDescriptor writer(::open(pipe.c_str(), O_WRONLY | O_CLOEXEC));
    const std::string bytes(1U << 20U, 'n');
    std::string read;
    std::thread reading([&] {
        std::string buffer(4096, '\0');
        ssize_t count = 0;
        while ((count = ::read(reader.get(), buffer.data(), buffer.size())) > 0) {
            read.append(buffer, 0, static_cast<std::size_t>(count));
        }
    });
    EXPECT_NO_THROW(replaceFileAtomically(pipe, bytes));
    EXPECT_TRUE(writer.close());
    reading.join();
    EXPECT_TRUE(read == bytes) << read.size();
}

TEST(AtomicReplacementTest, WritesToTheFileBehindStandardOutputWhereItStands) {
    const TemporaryDirectory directory;
    const std::string ppd = directory.write("a.ppd", kPlainPPD);
    const std::string all = (directory.path() / "all").string();
    const ToolRun run = runScript(
        "{ echo before; \"$0\" update \"$1\" --device-uri \"file:" TKPPDUPDATING_SOURCE_DIR
        "/samples/status/zr-office-silent.json\" "
        "--output /dev/stdout; echo after; } >\"$2\"",
        {ppd, all});
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    EXPECT_EQ(contentsOfFile(all), "before\n" + std::string(kPlainPPD) + "after\n");
}

TEST(AtomicReplacementTest, MakesNoFileForStandardOutputThatHasNoNameAnyMore) {
    const TemporaryDirectory directory;
    const std::string ppd = directory.write("a.ppd", kPlainPPD);
    const std::string gone = (directory.path() / "gone").string();
    const ToolRun run = runScript(
        "exec 3<>\"$2\"; rm \"$2\"; \"$0\" update \"$1\" --device-uri "
        "\"file:" TKPPDUPDATING_SOURCE_DIR
        "/samples/status/zr-office-silent.json\" "
        "--output /dev/stdout >&3 && cat /proc/self/fd/3",
        {ppd, gone});
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    EXPECT_EQ(run.output, kPlainPPD);
    EXPECT_EQ(filesIn(directory), 1U);
}

TEST(AtomicReplacementTest, FailsForStandardOutputThatIsClosed) {
    const TemporaryDirectory directory;
    const ToolRun run =
        runTool({"update", directory.write("a.ppd", kPlainPPD), "--device-uri",
                 "file:" TKPPDUPDATING_SOURCE_DIR "/samples/status/zr-office-silent.json",
                 "--output", "/dev/stdout"},
                {.redirection = ">&-"});
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_EQ(run.errors, "tkppdupdate: /dev/stdout: cannot be written: Bad file descriptor\n");
}

TEST(AtomicReplacementTest, RefusesAnOpenFileOfAnotherProcess) {
    const TemporaryDirectory directory;
    const std::string ppd = directory.write("a.ppd", kPlainPPD);
    const std::string old = directory.write("old", "old");
    const ToolRun run = runScript(
        "exec 3<>\"$2\"; \"$0\" update \"$1\" --device-uri \"file:" TKPPDUPDATING_SOURCE_DIR
        "/samples/status/zr-office-silent.json\" "
        "--output /proc/$$/fd/3; exit $?",
        {ppd, old});
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_NE(run.errors.find("cannot be replaced: it is an open file"), std::string::npos)
        << run.errors;
    EXPECT_EQ(contentsOfFile(old), "old");
}

TEST(AtomicReplacementTest, LeavesTheOldFileAndNothingElseWhenTheDiskIsFull) {
    const TemporaryDirectory directory;
    const std::string file = directory.write("a.ppd", "old");
    // A limit on the size of files stands in for a full disk: the write fails half-way.
    const ToolRun run = runScript(
        "trap '' XFSZ; ulimit -f 1;"
        "exec \"$0\" update \"$1\" --device-uri \"file:" TKPPDUPDATING_SOURCE_DIR
        "/samples/status/zr-office-silent.json\" --output \"$2\"",
        {directory.write("large.ppd",
                         "*PPD-Adobe: \"4.3\"\n*Long: " + std::string(100000, 'x') + "\n"),
         file});
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_EQ(run.errors, "tkppdupdate: " + file + ": cannot be written: File too large\n");
    EXPECT_EQ(contentsOfFile(file), "old");
    EXPECT_EQ(filesIn(directory), 2U);
}

TEST(AtomicReplacementTest, LeavesTheOldOrTheNewFileAndNothingElseWhenInterrupted) {
    const TemporaryDirectory directory;
    const std::string before(1U << 20U, 'o');
    const std::string after(1U << 20U, 'n');
    const std::string file = directory.write("a.ppd", before);
    for (unsigned delay = 0; delay < 20000; delay += 1000) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            while (true) {
                replaceFileAtomically(file, before);
                replaceFileAtomically(file, after);
            }
        }
        ::usleep(delay);
        ::kill(child, SIGINT);
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFSIGNALED(status));
        const std::string content = contentsOfFile(file);
        EXPECT_TRUE(content == before || content == after);
        EXPECT_EQ(filesIn(directory), 1U);
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
