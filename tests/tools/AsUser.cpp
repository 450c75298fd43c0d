#include "tests/tools/AsUser.h"

#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <exception>

#include "text/FileDescriptor.h"

namespace TkPPDUpdating::Testing {

namespace {

bool becomeNobody() {
    return ::setgroups(0, nullptr) == 0 && ::setresgid(kNobody, kNobody, kNobody) == 0 &&
           ::setresuid(kNobody, kNobody, kNobody) == 0;
}

std::string everythingFrom(int descriptor) {
    std::string text;
    std::array<char, 4096> buffer{};
    ssize_t count = 0;
    while ((count = ::read(descriptor, buffer.data(), buffer.size())) > 0) {
        text.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return text;
}

}  // namespace

bool isRoot() {
    return ::geteuid() == 0;
}

std::string asMyself(const std::function<std::string()>& action) {
    try {
        return action();
    } catch (const std::exception& error) {
        return error.what();
    }
}

std::string asUser(const std::function<std::string()>& action) {
    if (!isRoot()) {
        return asMyself(action);
    }
    std::array<int, 2> ends{};
    EXPECT_EQ(::pipe(ends.data()), 0);
    const FileDescriptor readEnd(ends[0]);
    FileDescriptor writeEnd(ends[1]);
    const pid_t child = ::fork();
    if (child == 0) {
        const std::string answer = becomeNobody() ? asMyself(action) : "cannot become nobody";
        ::_exit(writeAll(writeEnd.get(), answer) ? 0 : 1);
    }
    (void)writeEnd.close();
    std::string answer = everythingFrom(readEnd.get());
    int status = -1;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    return answer;
}

void giveTo(uid_t user, const std::string& path) {
    ASSERT_EQ(::lchown(path.c_str(), user, user), 0) << path;
}

uid_t ownerOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
    return status.st_uid;
}

}  // namespace TkPPDUpdating::Testing
