#ifdef TKPPDUPDATING_WITH_CUPS
#include "tools/StatusURIOptions.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/support/TemporaryDirectory.h"
#include "tests/tools/ToolRun.h"

namespace TkPPDUpdating::Testing {
namespace {

using Pairs = std::vector<std::pair<std::string, std::pair<std::string, std::string>>>;

TEST(StatusURIOptionsTest, AQueuesNameEndsBeforeTheSchemeOfTheURI) {
    const Pairs accepted = {
        {"office=ipp://host/ipp/print", {"office", "ipp://host/ipp/print"}},
        {" office\t= snmp://host \r", {"office", "snmp://host"}},
        {"a=b=ipp://host/?x=y", {"a=b", "ipp://host/?x=y"}},
        {"q=ipp://host/?u=file:x", {"q", "ipp://host/?u=file:x"}},
        {"q=file:printer.json", {"q", "file:printer.json"}},
        {"q=host", {"q", "host"}},
        {"B\xC3\xBCro=ipp://h/", {"B\xC3\xBCro", "ipp://h/"}},
    };
    for (const auto& [text, parts] : accepted) {
        std::string reason;
        const auto pair = StatusURIOptions::pairIn(text, reason);
        ASSERT_TRUE(pair) << text << ": " << reason;
        EXPECT_EQ(std::pair(pair->queueName, pair->URI), parts) << text;
    }
}

TEST(StatusURIOptionsTest, WhatIsNoPairIsRefusedWithItsReason) {
    const std::vector<std::pair<std::string, std::string>> refused = {
        {"", "\"\" is no QUEUE=URI"},
        {"office", "\"office\" is no QUEUE=URI"},
        {"ipp://host/", "\"ipp://host/\" is no QUEUE=URI"},
        {"=ipp://host/", "\"\" cannot be the name of a queue"},
        {"a/b=ipp://host/", "\"a/b\" cannot be the name of a queue"},
        {"a b=ipp://host/", "\"a b\" cannot be the name of a queue"},
        {"office=", "\"office=\" names no URI"},
        {"\x1B[2J", "\"\\x1B[2J\" is no QUEUE=URI"},
    };
    for (const auto& [text, expected] : refused) {
        std::string reason;
        EXPECT_FALSE(StatusURIOptions::pairIn(text, reason)) << text;
        EXPECT_EQ(reason, expected);
    }
}

/// The run of a "sync" that ends before it talks to a scheduler.
ToolRun sync(std::vector<std::string> arguments, const TemporaryDirectory& directory) {
    arguments.insert(arguments.begin(), {"sync", "--server", "127.0.0.1:1", "office"});
    return runTool(arguments, {.directory = directory.path().string()});
}

TEST(StatusURIOptionsTest, AWrongArgumentIsAnErrorOfUsage) {
    const TemporaryDirectory directory;
    const std::string hint = " (\"tkppdupdate sync --help\" tells the usage)\n";
    const ToolRun none = sync({"--status-uri", "office"}, directory);
    EXPECT_EQ(none.exitStatus, 2);
    EXPECT_EQ(none.errors, "tkppdupdate: --status-uri: \"office\" is no QUEUE=URI" + hint);
    const ToolRun twice =
        sync({"--status-uri", "office=ipp://a/", "--status-uri", "office=ipp://b/"}, directory);
    EXPECT_EQ(twice.exitStatus, 2);
    EXPECT_EQ(twice.errors, "tkppdupdate: --status-uri names the queue \"office\" twice\n");
}

TEST(StatusURIOptionsTest, AMistakenURIEndsTheRunWithWhatToWriteInstead) {
    const TemporaryDirectory directory;
    const ToolRun run = sync({"--status-uri", "office=socket://host:9100"}, directory);
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors,
              "tkppdupdate: the device \"socket://host:9100\": no backend for the scheme "
              "\"socket\"; write ipp://host/ipp/print\n");
}

TEST(StatusURIOptionsTest, ASocketIsForWhoeverAsksOverPostScript) {
    const TemporaryDirectory directory;
    for (const std::string URI : {"socket:", "socket://host:0", "socket://me@host"}) {
        const ToolRun run = sync({"--ask-postscript", "--status-uri", "office=" + URI}, directory);
        EXPECT_EQ(run.exitStatus, 1) << URI;
        EXPECT_NE(run.errors.find("write socket://HOST"), std::string::npos) << run.errors;
        directory.write("places", "\noffice=" + URI + "\n");
        const ToolRun file = sync({"--ask-postscript", "--status-uris", "places"}, directory);
        EXPECT_NE(file.errors.find("places: line 2: "), std::string::npos) << file.errors;
        EXPECT_NE(file.errors.find("write socket://HOST"), std::string::npos) << file.errors;
    }
    const ToolRun fine = sync(
        {"--dry-run", "--ask-postscript", "--status-uri", "office=socket://host:9100"}, directory);
    EXPECT_EQ(fine.errors.find("socket"), std::string::npos) << fine.errors;
}

TEST(StatusURIOptionsTest, AWrongLineOfAFileIsNamedByFileAndLine) {
    const TemporaryDirectory directory;
    const std::vector<std::pair<std::string, std::string>> wrong = {
        {"# fine\na=ipp://h/\nb\n", "line 3: \"b\" is no QUEUE=URI"},
        {"a/b=ipp://h/", "line 1: \"a/b\" cannot be the name of a queue"},
        {"\n\na=ipp://h/\r\nb=ipp://h/\r\na=ipp://i/\r\n",
         "line 5: \"a\" has a URI in line 3 already"},
        {"a=h\n",
         "line 1: the device \"h\": the device URI has no scheme; write ipp://h/ipp/print"},
        {"a=ipp://me:secret@:x/\n",
         "line 1: the device \"ipp://:x/\": the URI names no IPP printer; write "
         "ipp://HOST/ipp/print"},
        {"a=ipp://h/ # fine\nb=#ipp://h/\n",
         "line 2: the device \"#ipp://h/\": the device URI has "
         "no scheme; write ipp://HOST/ipp/print, or file:PATH for a recorded status"},
        {"a=\xFF\n", "is not valid UTF-8 at byte 2"},
    };
    for (const auto& [text, reason] : wrong) {
        directory.write("places", text);
        const ToolRun run = sync({"--status-uris", "places"}, directory);
        EXPECT_EQ(run.exitStatus, 1) << text;
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.errors, "tkppdupdate: places: " + reason + "\n");
    }
    const ToolRun missing = sync({"--status-uris", "nowhere"}, directory);
    EXPECT_EQ(missing.exitStatus, 1);
    EXPECT_EQ(missing.errors, "tkppdupdate: nowhere: No such file or directory\n");
}

TEST(StatusURIOptionsTest, AQueueOfTheCommandLineThatIsNotOfTheRunIsAWarning) {
    const TemporaryDirectory directory;
    directory.write("places", "third=ipp://h/\n");
    const ToolRun run = sync({"--dry-run", "--status-uri", "office=ipp://h/", "--status-uri",
                              "offise=ipp://h/", "--status-uris", "places"},
                             directory);
    EXPECT_EQ(run.errors,
              "tkppdupdate: warning: --status-uri: \"offise\" is no queue of this run\n");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
#endif
