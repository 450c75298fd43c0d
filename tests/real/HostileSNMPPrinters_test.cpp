// Printers that answer SNMP as they should, slowly, wrongly and with malice.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/resource.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "backends/schemes/ReportedDeviceStatus.h"
#include "backends/snmp/PrinterMIB.h"
#include "backends/snmp/SNMPSchemes.h"
#include "core_interface/OrbCSOptionQuestions.h"
#include "core_interface/TkCSKeys.h"
#include "tests/backends/snmp/SNMPTestRows.h"
#include "tests/support/HostileSNMPResponder.h"
#include "tests/support/SanitizerInUse.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/TestDoubles.h"

namespace TkPPDUpdating::Testing {
namespace {

using namespace std::chrono_literals;
using namespace SNMPBytes;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

/// How asking a printer ended.
struct Asked {
    std::shared_ptr<const OrbCSDeviceStatus> status;
    std::string error;
    OrbCSError::Cause cause = OrbCSError::Cause::unknown;
    std::chrono::milliseconds time{0};

    std::vector<std::string> dropped() const {
        return status ? ReportedDeviceStatus::droppedValuesOf(*status)
                      : std::vector<std::string>{"no status"};
    }
    std::vector<std::string> told() const {
        std::vector<std::string> entries;
        if (const auto all = status ? OrbCSPartialStatus::toldEntriesOf(*status) : std::nullopt) {
            entries.assign(all->begin(), all->end());
        }
        return entries;
    }
    std::string resolution() const {
        const auto* value =
            status ? status->statusValueForKey<OrbCSNumberOrString>(kTkCSMaxSupportedResolutionKey)
                   : nullptr;
        return value ? value->stringValue() : "none";
    }
};

Asked ask(const std::string& URI, const SNMPDeviceStatusLimits& limits,
          const OrbDictionary* parameters = nullptr) {
    DeviceStatusSchemes schemes;
    registerSNMPDeviceStatus(schemes, limits);
    Asked asked;
    const auto begin = std::chrono::steady_clock::now();
    OrbCSError error;
    asked.status = schemes.deviceStatusWithURI_parameters_error(URI, parameters, &error);
    asked.error = error.reason;
    asked.cause = error.cause;
    asked.time = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now() - begin);
    return asked;
}

/// Limits that a silent printer uses up soon; slow machines have their time all the same.
SNMPDeviceStatusLimits shortLimits() {
    SNMPDeviceStatusLimits limits;
    limits.time = 600ms;
    limits.filterModeTime = 300ms;
    return limits;
}

class HostileSNMPPrinters : public testing::Test {
  protected:
    /// The community is not this machine's.
    void SetUp() override { setServerRoot(root_.path().string()); }

    static void setServerRoot(const std::string& root) {
        OrbCoreInterface::setEnvironment(std::make_shared<const FakeEnvironment>(
            std::map<std::string, std::string>{{"CUPS_SERVERROOT", root}}));
    }

    Asked askAnswering(std::function<std::string(const SNMPSeenRequest& request)> answer,
                       const SNMPDeviceStatusLimits& limits = {}) {
        const HostileSNMPResponder printer(HostileSNMPResponder::answering(std::move(answer)));
        return ask(printer.URI(), limits);
    }

    /// A laser printer whose answers to questions about one column are another's.
    Asked askWithColumn(const SNMPColumn& column,
                        const std::function<std::string(const SNMPSeenRequest& request)>& answer) {
        const SNMPObjects laser(SNMPTables::kLaser);
        const Name root = name(column.identifier);
        return askAnswering([=](const SNMPSeenRequest& request) {
            const Name& first = request.names.front();
            const bool isAsked =
                first.size() >= root.size() && std::equal(root.begin(), root.end(), first.begin());
            return isAsked ? answer(request) : laser.answerTo(request);
        });
    }

    CoreInterfaceScope scope_;
    TemporaryDirectory root_;
};

const std::vector<std::string> kAllEntries = {
    "DeviceAccessories.Duplexer", "DeviceAccessories.Tray2", "InstalledPensConfiguration.ZrPenDyes",
    "InstalledPensConfiguration.ZrPenInkSufficient", "MaxSupportedResolution"};

std::vector<std::string> allBut(std::string_view entry) {
    auto entries = kAllEntries;
    std::erase(entries, entry);
    return entries;
}

TEST_F(HostileSNMPPrinters, ADecentPrinterIsAskedInVersionTwoAndFewRequests) {
    const SNMPObjects laser(SNMPTables::kLaser);
    const HostileSNMPResponder printer(HostileSNMPResponder::answering(
        [&](const SNMPSeenRequest& request) { return laser.answerTo(request); }));
    const Asked asked = ask(printer.URI(), {});
    EXPECT_EQ(asked.told(), kAllEntries) << asked.error;
    EXPECT_THAT(asked.dropped(), IsEmpty());
    EXPECT_EQ(asked.resolution(), "1200");
    EXPECT_LE(printer.requests().size(), 8U);
    for (const SNMPSeenRequest& request : printer.requests()) {
        EXPECT_EQ(request.version, 1);
        EXPECT_EQ(request.tag, kGetBulkRequest);
        EXPECT_EQ(request.community, "public");
    }
}

TEST_F(HostileSNMPPrinters, APrinterOfVersionOneOnlyIsAskedInThatThen) {
    const SNMPObjects laser(SNMPTables::kLaser);
    const HostileSNMPResponder printer(
        [&](const SNMPSeenRequest& request, const HostileSNMPResponder::Sender& send) {
            if (request.version == 0) {
                send(laser.answerTo(request), false);
            }
        });
    const Asked asked = ask(printer.URI(), {.time = 3s});
    EXPECT_EQ(asked.told(), kAllEntries) << asked.error;
    EXPECT_EQ(asked.resolution(), "1200");
    EXPECT_EQ(printer.requests().back().tag, kGetNextRequest);
}

TEST_F(HostileSNMPPrinters, TheCommunityOfTheSchedulerIsUsed) {
    root_.write("snmp.conf", "Community our-own\n");
    const SNMPObjects laser(SNMPTables::kLaser);
    const HostileSNMPResponder printer(HostileSNMPResponder::answering(
        [&](const SNMPSeenRequest& request) { return laser.answerTo(request); }));
    EXPECT_NE(ask(printer.URI(), {}).status, nullptr);
    for (const SNMPSeenRequest& request : printer.requests()) {
        EXPECT_EQ(request.community, "our-own");
    }
}

TEST_F(HostileSNMPPrinters, NoAnswerEndsInTimeInEveryVersion) {
    const HostileSNMPResponder printer(
        [](const SNMPSeenRequest& /*request*/, const HostileSNMPResponder::Sender& /*send*/) {});
    const Asked asked = ask(printer.URI(), shortLimits());
    EXPECT_EQ(asked.error, "there was no answer over SNMP");
    EXPECT_EQ(asked.cause, OrbCSError::Cause::timeout);
    EXPECT_LT(asked.time, 600ms);
    std::vector<int> versions;
    for (const SNMPSeenRequest& request : printer.requests()) {
        versions.push_back(request.version);
    }
    EXPECT_EQ(versions, (std::vector<int>{1, 1, 0, 0}));
}

TEST_F(HostileSNMPPrinters, TheLimitIsShorterInFilterMode) {
    const HostileSNMPResponder printer(
        [](const SNMPSeenRequest& /*request*/, const HostileSNMPResponder::Sender& /*send*/) {});
    const OrbDictionary parameters = {{std::string(kTkCSIsCUPSFilterModeKey), true}};
    const Asked asked = ask(printer.URI(), {.time = 15s, .filterModeTime = 300ms}, &parameters);
    EXPECT_EQ(asked.status, nullptr);
    EXPECT_LT(asked.time, 2s);
}

TEST_F(HostileSNMPPrinters, AHostOnWhichNobodyListensIsGivenUpAtOnce) {
    std::string URI;
    {
        const HostileSNMPResponder gone({});
        URI = gone.URI();
    }
    const Asked asked = ask(URI, {});
    EXPECT_EQ(asked.error, "nothing answers SNMP there");
    EXPECT_EQ(asked.cause, OrbCSError::Cause::noConnection);
    EXPECT_LT(asked.time, 2s);
}

TEST_F(HostileSNMPPrinters, ACommunityThatCannotBeReadIsPartOfTheReason) {
    std::filesystem::create_directory(root_.path() / "snmp.conf");
    const HostileSNMPResponder printer(
        [](const SNMPSeenRequest& /*request*/, const HostileSNMPResponder::Sender& /*send*/) {});
    EXPECT_THAT(ask(printer.URI(), shortLimits()).error,
                HasSubstr("/snmp.conf cannot be read, so the community \"public\" was taken"));
}

TEST_F(HostileSNMPPrinters, WaitingEndsWhenItIsCancelled) {
    std::atomic<bool> isCancelled{false};
    const HostileSNMPResponder printer(
        [&](const SNMPSeenRequest& /*request*/, const HostileSNMPResponder::Sender& /*send*/) {
            isCancelled = true;
        });
    const Asked asked = ask(printer.URI(), {.isCancelled = &isCancelled});
    EXPECT_EQ(asked.error, "interrupted");
    EXPECT_EQ(asked.cause, OrbCSError::Cause::cancelled);
    EXPECT_LT(asked.time, 2s);
}

TEST_F(HostileSNMPPrinters, AnAnswerFromElsewhereDoesNotCount) {
    const SNMPObjects laser(SNMPTables::kLaser);
    const HostileSNMPResponder printer(
        [&](const SNMPSeenRequest& request, const HostileSNMPResponder::Sender& send) {
            send(laser.answerTo(request), true);
        });
    EXPECT_EQ(ask(printer.URI(), shortLimits()).error, "there was no answer over SNMP");
}

TEST_F(HostileSNMPPrinters, WhatIsNoAnswerToTheRequestDoesNotCount) {
    using Answer = std::function<std::string(const SNMPSeenRequest& request)>;
    const std::string cell =
        variable(name(PrinterMIB::prtMediaPathType.identifier, {1, 1}), integer(3));
    const std::vector<std::pair<const char*, Answer>> answers = {
        {"another ID", [&](const auto& request) { return message(1, request.ID + 1, cell); }},
        {"ID 0", [&](const auto& /*request*/) { return message(1, 0, cell); }},
        {"another version",
         [&](const auto& request) { return message(1 - request.version, request.ID, cell); }},
        {"version 3", [&](const auto& request) { return message(3, request.ID, cell); }},
        {"a report",
         [&](const auto& request) { return message(request.version, request.ID, cell, kReport); }},
        {"a request",
         [&](const auto& request) {
             return message(request.version, request.ID, cell, kGetNextRequest);
         }},
        {"nothing", [](const auto& /*request*/) { return std::string(); }},
        {"a byte", [](const auto& /*request*/) { return std::string("0"); }},
        {"zeros", [](const auto& /*request*/) { return std::string(60'000, '\0'); }},
        {"cut short",
         [&](const auto& request) {
             return request.answer(cell).substr(0, request.answer(cell).size() - 1);
         }},
        {"a length beyond the end",
         [&](const auto& request) {
             std::string bytes = request.answer(cell);
             bytes[1] = static_cast<char>(bytes[1] + 10);
             return bytes;
         }},
        {"a huge length", [](const auto& /*request*/) {
             return std::string("\x30\x84\xFF\xFF\xFF\xFF\x02\x01\x01");
         }}};
    for (const auto& [what, answer] : answers) {
        EXPECT_EQ(askAnswering(answer, {.time = 180ms}).error, "there was no answer over SNMP")
            << what;
    }
}

TEST_F(HostileSNMPPrinters, AnAnswerAmongRubbishIsFound) {
    const SNMPObjects laser(SNMPTables::kLaser);
    const HostileSNMPResponder printer(
        [&](const SNMPSeenRequest& request, const HostileSNMPResponder::Sender& send) {
            send("rubbish", false);
            send(message(request.version, request.ID + 1, ""), false);
            send(laser.answerTo(request), false);
            send(laser.answerTo(request), false);
        });
    EXPECT_EQ(ask(printer.URI(), {}).told(), kAllEntries);
}

TEST_F(HostileSNMPPrinters, ALostPacketIsAskedForAgain) {
    const SNMPObjects laser(SNMPTables::kLaser);
    std::atomic<int> number{0};
    const HostileSNMPResponder printer(
        [&](const SNMPSeenRequest& request, const HostileSNMPResponder::Sender& send) {
            if (++number % 2 == 0) {
                send(laser.answerTo(request), false);
            }
        });
    EXPECT_EQ(ask(printer.URI(), {.time = 3s}).told(), kAllEntries);
}

TEST_F(HostileSNMPPrinters, ALateAnswerToAnEarlierQuestionIsNotTakenForTheNext) {
    const SNMPObjects laser(SNMPTables::kLaser);
    // Every answer comes once more with the next request.
    std::string before;
    const HostileSNMPResponder printer(
        [&](const SNMPSeenRequest& request, const HostileSNMPResponder::Sender& send) {
            send(before, false);
            before = laser.answerTo(request);
            send(before, false);
        });
    const Asked asked = ask(printer.URI(), {});
    EXPECT_EQ(asked.told(), kAllEntries);
    EXPECT_EQ(asked.resolution(), "1200");
}

TEST_F(HostileSNMPPrinters, APrinterThatFallsSilentGivesNoStatus) {
    const SNMPObjects laser(SNMPTables::kLaser);
    std::atomic<int> number{0};
    const HostileSNMPResponder printer(
        [&](const SNMPSeenRequest& request, const HostileSNMPResponder::Sender& send) {
            if (++number <= 2) {
                send(laser.answerTo(request), false);
            }
        });
    const Asked asked = ask(printer.URI(), shortLimits());
    EXPECT_EQ(asked.error, "there was no whole answer over SNMP");
    EXPECT_LT(asked.time, 1s);
}

TEST_F(HostileSNMPPrinters, AnAgentThatIsNoPrinterGivesNoStatus) {
    SNMPObjects computer;
    computer.set(name("1.3.6.1.2.1.1.1.0"), octets("a computer"));
    computer.set(name("1.3.6.1.2.1.99.1"), octets("something else"));
    for (const bool hasObjects : {true, false}) {
        const SNMPObjects objects = hasObjects ? computer : SNMPObjects();
        EXPECT_EQ(
            askAnswering([&](const auto& request) { return objects.answerTo(request); }).error,
            "it has none of a printer's tables");
    }
}

TEST_F(HostileSNMPPrinters, NamesThatDoNotIncreaseEndTheirColumn) {
    const SNMPColumn& column = PrinterMIB::prtMediaPathType;
    const auto path = [&](std::uint32_t number) {
        return variable(name(column.identifier, {1, number}), integer(5));
    };
    for (const auto& variables : {path(1) + path(1), path(2) + path(1), path(7)}) {
        std::atomic<int> questions{0};
        const Asked asked = askWithColumn(column, [&](const SNMPSeenRequest& request) {
            ++questions;
            return request.answer(variables);
        });
        EXPECT_EQ(asked.told(), allBut("DeviceAccessories.Duplexer"));
        EXPECT_THAT(asked.dropped(), Contains("prtMediaPathType: was not read to its end, so "
                                              "nothing is made of it"));
        EXPECT_LE(questions, 2);
    }
}

TEST_F(HostileSNMPPrinters, ErrorsEndTheColumnsOfTheirTable) {
    constexpr int kGeneralError = 5;
    for (const int status : {1, kGeneralError, 16, -1, 2147483647}) {
        const Asked asked =
            askWithColumn(PrinterMIB::prtMediaPathType, [status](const SNMPSeenRequest& request) {
                return message(request.version, request.ID, "", kResponse, status, 1);
            });
        EXPECT_EQ(asked.told(), allBut("DeviceAccessories.Duplexer")) << status;
    }
    const Asked empty =
        askWithColumn(PrinterMIB::prtMediaPathType,
                      [](const SNMPSeenRequest& request) { return request.answer(""); });
    EXPECT_EQ(empty.told(), allBut("DeviceAccessories.Duplexer"));
}

TEST_F(HostileSNMPPrinters, APrinterForWhichAnAnswerIsTooBigIsAskedForLess) {
    const SNMPObjects laser(SNMPTables::kLaser);
    constexpr int kTooBig = 1;
    const Asked asked = askAnswering([&](const SNMPSeenRequest& request) {
        return request.repetitions > 1
                   ? message(request.version, request.ID, "", kResponse, kTooBig, 0)
                   : laser.answerTo(request);
    });
    EXPECT_EQ(asked.told(), kAllEntries);
}

TEST_F(HostileSNMPPrinters, MoreVariablesThanAskedForAreNotLookedAt) {
    const SNMPColumn& column = PrinterMIB::prtMediaPathType;
    const Asked asked = askWithColumn(column, [&](const SNMPSeenRequest& request) {
        std::string variables;
        for (std::uint32_t number = 1; number <= 3000; ++number) {
            variables += variable(name(column.identifier, {1, number}), integer(5));
        }
        return request.answer(request.names.front().size() == 11 ? variables : "");
    });
    EXPECT_EQ(asked.told(), allBut("DeviceAccessories.Duplexer")) << asked.error;
}

/// A printer that always has one more row.
std::string endlessAnswer(const SNMPSeenRequest& request, std::string_view value) {
    std::string variables;
    auto names = request.names;
    for (int repetition = 0; repetition < request.repetitions; ++repetition) {
        for (Name& each : names) {
            if (each.size() == 11) {
                each.insert(each.end(), {1, 0});
            }
            ++each.back();
            variables += variable(each, value);
        }
    }
    return request.answer(variables);
}

TEST_F(HostileSNMPPrinters, TablesWithoutEndAreBounded) {
    std::atomic<int> cells{0};
    const Asked asked = askAnswering([&](const SNMPSeenRequest& request) {
        cells += static_cast<int>(request.names.size()) * request.repetitions;
        return endlessAnswer(request, integer(3));
    });
    EXPECT_EQ(asked.error, "its tables have more than 10000 cells");
    EXPECT_EQ(asked.cause, OrbCSError::Cause::brokenAnswer);
    EXPECT_LT(asked.time, 15s);
    EXPECT_LE(cells, 10'100);
}

TEST_F(HostileSNMPPrinters, TablesOfLongTextsStayWithinTheirMemory) {
    rusage before{};
    rusage after{};
    getrusage(RUSAGE_SELF, &before);
    const std::string text = octets(std::string(2000, 'x'));
    const Asked asked =
        askAnswering([&](const SNMPSeenRequest& request) { return endlessAnswer(request, text); });
    getrusage(RUSAGE_SELF, &after);
    EXPECT_EQ(asked.error, "its tables have more than 10000 cells");
#if !TKPPDUPDATING_ADDRESS_SANITIZER  // It keeps what was freed.
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 32 * 1024);
#endif
}

TEST_F(HostileSNMPPrinters, ASlowTableWithoutEndEndsInTime) {
    const HostileSNMPResponder printer(
        [](const SNMPSeenRequest& request, const HostileSNMPResponder::Sender& send) {
            std::this_thread::sleep_for(50ms);
            send(endlessAnswer(request, integer(3)), false);
        });
    const Asked asked = ask(printer.URI(), shortLimits());
    EXPECT_EQ(asked.error, "there was no whole answer over SNMP");
    EXPECT_GE(asked.time, 500ms);
    EXPECT_LT(asked.time, 2s);
}

TEST_F(HostileSNMPPrinters, RubbishWithoutEndEndsInTime) {
    const HostileSNMPResponder printer(
        [](const SNMPSeenRequest& request, const HostileSNMPResponder::Sender& send) {
            for (int count = 0; count < 300; ++count) {
                send(message(request.version, request.ID + 1 + count, ""), false);
                std::this_thread::sleep_for(1ms);
            }
        });
    const Asked asked = ask(printer.URI(), shortLimits());
    EXPECT_EQ(asked.status, nullptr);
    EXPECT_LT(asked.time, 2s);
}

TEST_F(HostileSNMPPrinters, StringsOfEveryLengthAndEncodingAreDroppedOrHarmless) {
    const SNMPColumn& column = PrinterMIB::prtMarkerColorantValue;
    const std::vector<std::string> texts = {std::string(60'000, 'x'),
                                            std::string(256, 'x'),
                                            "cy\xE0n",
                                            std::string("\0c\0y", 4),
                                            std::string("\xFE\xFF\0c", 4),
                                            "\x83\x43\x83\x93\x83\x4E",
                                            "\xC0\xAF",
                                            "\xED\xA0\x80",
                                            "a\nb",
                                            "a\"b",
                                            "\x1B[2J",
                                            "<0A>*cupsFilter",
                                            "a\xE2\x80\xA8"};
    for (const std::string& text : texts) {
        const Asked asked = askWithColumn(column, [&](const SNMPSeenRequest& request) {
            const Name first = name(column.identifier, {1, 1});
            return request.names.front() < first
                       ? request.answer(variable(first, octets(text)))
                       : request.answer(variable(name("1.3.6.1.2.1.44"), integer(1)));
        });
        EXPECT_EQ(asked.told(),
                  (std::vector<std::string>{"DeviceAccessories.Duplexer", "DeviceAccessories.Tray2",
                                            "MaxSupportedResolution"}))
            << text.size();
        EXPECT_THAT(asked.dropped(), Contains(HasSubstr("prtMarkerColorantValue.1.1: ")));
        for (const std::string& reason : asked.dropped()) {
            EXPECT_LT(reason.size(), 150U);
        }
    }
}

TEST_F(HostileSNMPPrinters, NumbersThatAreNoneAreNotTold) {
    const SNMPColumn& column = PrinterMIB::prtMarkerAddressabilityXFeedDir;
    constexpr unsigned char kCounter64 = 0x46;
    const std::vector<std::string> values = {
        integer(-1),         integer(-2147483648LL),
        integer(2147483647), integer(INT64_MIN),
        value(kInteger, ""), octets("600"),
        value(kNull, ""),    value(kCounter64, std::string(8, '\x7F'))};
    for (const std::string& number : values) {
        SNMPObjects printer(SNMPTables::kLaser);
        printer.set(name(column.identifier, {1, 1}), number);
        const Asked asked =
            askAnswering([&](const SNMPSeenRequest& request) { return printer.answerTo(request); },
                         shortLimits());
        EXPECT_EQ(asked.resolution(), "none");
    }
}

TEST_F(HostileSNMPPrinters, ColumnsOfDifferentLengthsMakeNoWrongValue) {
    for (const SNMPColumn& column :
         {PrinterMIB::prtInputName, PrinterMIB::prtInputStatus, PrinterMIB::prtInputType}) {
        std::string rows = SNMPTables::kLaser;
        const std::string cell = std::string(column.name) + ".1.3";
        const std::size_t begin = rows.find(cell);
        rows.erase(begin, rows.find('\n', begin) + 1 - begin);
        const SNMPObjects printer(rows);
        const Asked asked =
            askAnswering([&](const SNMPSeenRequest& request) { return printer.answerTo(request); });
        EXPECT_EQ(asked.told(), allBut("DeviceAccessories.Tray2")) << column.name;
    }
}

TEST_F(HostileSNMPPrinters, RandomlyDamagedAnswersNeverEndTheProcess) {
    const SNMPObjects laser(SNMPTables::kLaser);
    std::mt19937 random(1);
    const auto below = [&random](std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
    };
    int answered = 0;
    for (int printers = 0; printers < 20; ++printers) {
        const Asked asked = askAnswering(
            [&](const SNMPSeenRequest& request) {
                std::string bytes = laser.answerTo(request);
                for (std::size_t changes = below(4); changes > 0; --changes) {
                    bytes[below(bytes.size())] = static_cast<char>(below(256));
                }
                return below(10) == 0 ? bytes.substr(0, below(bytes.size())) : bytes;
            },
            {.time = 120ms});
        answered += asked.status ? 1 : 0;
        EXPECT_TRUE(asked.status || !asked.error.empty());
        EXPECT_LT(asked.time, 2s);
    }
    EXPECT_GT(answered, 0);
}

TEST_F(HostileSNMPPrinters, ManyAreAskedSideBySide) {
    const SNMPObjects laser(SNMPTables::kLaser);
    const HostileSNMPResponder good(HostileSNMPResponder::answering(
        [&](const SNMPSeenRequest& request) { return laser.answerTo(request); }));
    const HostileSNMPResponder silent(
        [](const SNMPSeenRequest& /*request*/, const HostileSNMPResponder::Sender& /*send*/) {});
    constexpr std::size_t kThreads = 20;
    std::vector<Asked> asked(kThreads);
    std::vector<std::thread> threads;
    const auto begin = std::chrono::steady_clock::now();
    for (std::size_t index = 0; index < kThreads; ++index) {
        threads.emplace_back([&, index] {
            const bool isGood = index % 2 == 0;
            asked[index] = ask(isGood ? good.URI() : silent.URI(), {.time = 900ms});
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 3s);
    for (std::size_t index = 0; index < kThreads; ++index) {
        EXPECT_EQ(asked[index].status != nullptr, index % 2 == 0) << asked[index].error;
    }
}

/// What a printer is asked about three options of a PPD.
OrbDictionary threeQuestions() {
    const std::map<std::string, std::string, std::less<>> choices = {{"1", "False"}, {"2", "True"}};
    auto questions = std::make_shared<OrbCSSNMPQuestions>();
    questions->questions = {{"Option1", ".1.3.6.1.4.1.99.1.0", choices, ""},
                            {"Option2", "no number", choices, ""},
                            {"Option3", "1.3.6.1.4.1.99.3.0", choices, ""}};
    return {
        {std::string(kTkCSSNMPQuestionsKey), std::shared_ptr<const OrbCSSNMPQuestions>(questions)}};
}

OrbCSInstalledOptions installedOf(const Asked& asked) {
    const auto* const installed =
        asked.status
            ? asked.status->statusValueForKey<OrbCSInstalledOptions>(kTkCSInstalledOptionsKey)
            : nullptr;
    return installed ? *installed : OrbCSInstalledOptions();
}

TEST_F(HostileSNMPPrinters, ObjectsThatAPPDAsksForAreAskedForBesidesEachByItself) {
    SNMPObjects laser(SNMPTables::kLaser);
    laser.set(name("1.3.6.1.4.1.99.1.0"), integer(2));
    const OrbDictionary parameters = threeQuestions();
    // A printer of version 1 is silent for a third of it.
    const SNMPDeviceStatusLimits limits = {.time = 3s};
    for (const int version : {1, 0}) {
        const HostileSNMPResponder printer(
            [&](const SNMPSeenRequest& request, const HostileSNMPResponder::Sender& send) {
                if (request.version == version) {
                    send(laser.answerTo(request), false);
                }
            });
        const Asked asked = ask(printer.URI(), limits, &parameters);
        EXPECT_EQ(installedOf(asked), (OrbCSInstalledOptions{{"Option1", "True"}})) << version;
        EXPECT_THAT(asked.dropped(),
                    testing::IsSupersetOf({"Option2: its question names no object",
                                           "Option3: the printer has no such object"}));
        EXPECT_THAT(asked.told(), Contains("InstalledOptions"));
        EXPECT_THAT(asked.told(), Contains("DeviceAccessories.Duplexer"));
        EXPECT_THAT(ask(printer.URI(), limits).told(), testing::Not(Contains("InstalledOptions")));
    }
}

TEST_F(HostileSNMPPrinters, SilenceAboutAnObjectLeavesTheRest) {
    SNMPObjects laser(SNMPTables::kLaser);
    laser.set(name("1.3.6.1.4.1.99.3.0"), octets("1"));
    const HostileSNMPResponder printer(
        [&](const SNMPSeenRequest& request, const HostileSNMPResponder::Sender& send) {
            if (request.tag != kGetRequest || request.names.front() != name("1.3.6.1.4.1.99.1.0")) {
                send(laser.answerTo(request), false);
            }
        });
    SNMPDeviceStatusLimits limits;
    limits.time = 3s;
    const OrbDictionary parameters = threeQuestions();
    const Asked asked = ask(printer.URI(), limits, &parameters);
    EXPECT_EQ(installedOf(asked), (OrbCSInstalledOptions{{"Option3", "False"}}));
    EXPECT_THAT(asked.dropped(), Contains("Option1: the printer did not answer in time"));
    EXPECT_EQ(asked.resolution(), "1200");
}

TEST_F(HostileSNMPPrinters, URIsThatNameNoneAreRefused) {
    for (const char* URI : {"snmp:", "snmp://", "snmp:host", "snmp://u:p@host", "snmp://host/path",
                            "snmp://host:0", "snmp://host?x", "snmp://ho st"}) {
        const Asked asked = ask(URI, {});
        EXPECT_EQ(asked.error,
                  "the URI names no SNMP printer (snmp://HOST or snmp://HOST:PORT does)")
            << URI;
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
