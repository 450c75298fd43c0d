#include "backends/ipp/IPPAnswerFilter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "backends/ipp/IPPStatusMapping.h"
#include "backends/libcups/IPPMessage.h"
#include "core_interface/TkCSKeys.h"
#include "tests/support/IPPBytes.h"

namespace TkPPDUpdating::Testing {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::string_literals;
using namespace std::string_view_literals;

struct Filtered {
    IPPFilteredAnswer answer;
    std::string error;
    DroppedValues dropped{IPPStatusMapping::meaningOfDrop};
};

Filtered filtered(const std::string& answer) {
    const auto names = IPPStatusMapping::requestedAttributes();
    Filtered result;
    result.answer = IPPAnswerFilter({names.begin(), names.end()}, 10'000)
                        .filtered(answer, result.dropped, result.error);
    return result;
}

/// The status of an answer that the filter takes, as far as libcups takes what it hands on.
std::shared_ptr<const ReportedDeviceStatus> statusOf(const std::string& answer) {
    Filtered result = filtered(answer);
    const IPPMessage message = IPPMessageWithBytes(result.answer.bytes);
    return message ? IPPStatusMapping::statusForAnswer(IPPAnswer(
                         message.get(), std::move(result.dropped), result.answer.syntaxes))
                   : nullptr;
}

std::string resolutionOf(const ReportedDeviceStatus& status) {
    const auto* value =
        status.statusValueForKey<OrbCSNumberOrString>(kTkCSMaxSupportedResolutionKey);
    return value ? value->stringValue() : "not reported";
}

TEST(IPPAnswerFilter, TakesAResolutionWithAnUnknownUnitOut) {
    for (const char unit : {'\0', '\2', '\5', 'D', '\x7F', '\xFF'}) {
        IPPBytes bytes;
        bytes.value(0x32, "printer-resolution-supported", "\0\0\x01\x2C\0\0\x01\x2C\3"sv);
        bytes.value(0x32, "", std::string("\0\0\x09\x60\0\0\x09\x60", 8) + unit);
        bytes.value(0x32, "", "\0\0\x02\x58\0\0\x02\x58\3"sv);
        const auto status = statusOf(bytes.end());
        ASSERT_NE(status, nullptr);
        EXPECT_EQ(resolutionOf(*status), "600");
        EXPECT_THAT(
            status->droppedValues(),
            ElementsAre("printer-resolution-supported: value 2 has a unit that IPP does not "
                        "know, this resolution is left out"));
    }
}

TEST(IPPAnswerFilter, LeavesGapsThatItWouldPassItself) {
    IPPBytes bytes;
    bytes.value(0x32, "printer-resolution-supported", "\0\0\x01\x2C\0\0\x01\x2C\3"sv);
    bytes.value(0x32, "", "\0\0\x01\x2C\0\0\x01\x2C\7"sv);
    bytes.integer("marker-levels", 3).value(0x21, "", "x");
    bytes.keyword("marker-types", "ink").value(0x44, "", std::string(2000, 'x'));
    const Filtered once = filtered(bytes.end());
    Filtered twice = filtered(once.answer.bytes);
    EXPECT_EQ(twice.answer.bytes, once.answer.bytes);
    EXPECT_THAT(twice.dropped.takeReasons(), IsEmpty());
}

TEST(IPPAnswerFilter, TakesACollectionWhoseEndHasAValueOut) {
    IPPBytes bytes;
    bytes.value(0x34, "media-col-database", "")
        .value(0x4A, "", "media-type")
        .value(0x42, "", "Bad Gloss")
        .value(0x37, "", "x");
    bytes.value(0x34, "", "")
        .value(0x4A, "", "media-type")
        .value(0x42, "", "My Gloss")
        .value(0x37, "", "");
    bytes.keyword("sides-supported", "two-sided-long-edge");
    const auto status = statusOf(bytes.end());
    ASSERT_NE(status, nullptr);
    const auto* types = status->statusValueForKey<OrbCustomMediaTypes>(kTkCSCustomMediaTypesKey);
    ASSERT_NE(types, nullptr);
    ASSERT_EQ(types->size(), 1U);
    EXPECT_EQ(types->front()->name(), "My Gloss");
    EXPECT_NE(status->statusValueForKey<OrbCSDeviceAccessories>(kTkCSDeviceAccessoriesKey),
              nullptr);
    EXPECT_THAT(status->droppedValues(),
                ElementsAre("media-col-database: value 1 has the wrong length for its syntax, this "
                            "media type is left out"));
}

/// A media type with another member before its name.
std::string answerWithMember(const std::string& name) {
    IPPBytes bytes;
    bytes.value(0x34, "media-col-database", "")
        .value(0x4A, "", name)
        .value(0x21, "", "\0\0\0\1"sv)
        .value(0x4A, "", "media-type")
        .value(0x42, "", "My Gloss")
        .value(0x37, "", "");
    return bytes.keyword("sides-supported", "two-sided-long-edge").end();
}

// RFC 8011, section 5.1.4: the characters of a name. libcups takes capitals for such, too.
TEST(IPPAnswerFilter, TakesACollectionOutForAMemberWhoseNameIsNone) {
    for (const char character : "\1 !\"*,/:;@[]^`{}~\x7F\x80\xC3\xFF"s) {
        const auto status = statusOf(answerWithMember("media"s + character + "size"));
        ASSERT_NE(status, nullptr) << int{character};
        EXPECT_EQ(status->statusValueForKey<OrbCustomMediaTypes>(kTkCSCustomMediaTypesKey), nullptr)
            << int{character};
        EXPECT_NE(status->statusValueForKey<OrbCSDeviceAccessories>(kTkCSDeviceAccessoriesKey),
                  nullptr);
        EXPECT_THAT(status->droppedValues(),
                    ElementsAre("media-col-database: value 1 has a member with a bad name, this "
                                "media type is left out"));
    }
    for (const char* name : {"x", "0", "-", ".", "_", "vendor.com_Size-2"}) {
        const auto status = statusOf(answerWithMember(name));
        ASSERT_NE(status, nullptr) << name;
        EXPECT_THAT(status->droppedValues(), IsEmpty()) << name;
    }
}

// libcups would hold, and write, what the printer did not send.
TEST(IPPAnswerFilter, TakesACollectionOutForAMemberWithoutAValueAlsoAtItsEnd) {
    IPPBytes bytes;
    bytes.value(0x34, "media-col-database", "")
        .value(0x4A, "", "media-type")
        .value(0x42, "", "My Gloss")
        .value(0x4A, "", "media-color")
        .value(0x37, "", "");
    bytes.value(0x34, "", "")
        .value(0x4A, "", "media-color")
        .value(0x4A, "", "media-type")
        .value(0x42, "", "My Silk")
        .value(0x37, "", "");
    bytes.value(0x34, "", "").value(0x37, "", "");
    const auto status = statusOf(bytes.end());
    ASSERT_NE(status, nullptr);
    EXPECT_THAT(status->droppedValues(),
                ElementsAre("media-col-database: value 1 has a member without a value, this media "
                            "type is left out",
                            "media-col-database: value 2 has a member without a value, this media "
                            "type is left out"));
}

TEST(IPPAnswerFilter, LeavesLanguagesOut) {
    IPPBytes bytes;
    bytes.keyword("marker-types", "ink").keyword("", "ink").keyword("", "ink");
    bytes.value(0x42, "marker-names", "Red")
        .value(0x36, "", "\0\2de\0\4Blau"sv)
        .value(0x42, "", "Green");
    bytes.value(0x34, "media-col-database", "")
        .value(0x4A, "", "media-type")
        .value(0x36, "", "\0\2en\0\7My Gold"sv)
        .value(0x37, "", "");
    Filtered result = filtered(bytes.end());
    EXPECT_THAT(result.dropped.takeReasons(), IsEmpty());
    EXPECT_EQ(result.answer.bytes.find("\0\2de"sv), std::string::npos);
    EXPECT_EQ(result.answer.bytes.find("\0\2en"sv), std::string::npos);
    const auto status = statusOf(bytes.bytes());
    ASSERT_NE(status, nullptr);
    const auto* pens =
        status->statusValueForKey<OrbCSPensConfiguration>(kTkCSInstalledPensConfigurationKey);
    ASSERT_NE(pens, nullptr);
    EXPECT_EQ(pens->PPDAttributeValues.find(kTkCSPPDPenDyesKey)->second, "Red,Blau,Green");
    const auto* types = status->statusValueForKey<OrbCustomMediaTypes>(kTkCSCustomMediaTypesKey);
    ASSERT_NE(types, nullptr);
    ASSERT_EQ(types->size(), 1U);
    EXPECT_EQ(types->front()->name(), "My Gold");
}

/// An answer with every syntax that a printer may use.
std::string answerOfAllSyntaxes() {
    IPPBytes bytes;
    bytes.keyword("sides-supported", "one-sided").keyword("", "two-sided-long-edge");
    bytes.value(0x13, "media-source-supported", "");
    bytes.value(0x30, "printer-supply", "type=ink;level=3;").value(0x30, "", "type=toner;");
    bytes.value(0x41, "printer-supply-description", "A").value(0x35, "", "\0\2en\0\1B"sv);
    bytes.integer("marker-levels", 3).value(0x13, "", "").integer("", -3);
    bytes.value(0x23, "marker-low-levels", "\0\0\0\1"sv);
    bytes.value(0x22, "marker-types", "\1"sv).value(0x33, "marker-types", "\0\0\0\1\0\0\0\2"sv);
    bytes.value(0x31, "marker-names", "\x07\xE9\1\2\3\4\5\6+\0\0"sv);
    bytes.value(0x32, "printer-resolution-supported", "\0\0\x02\x58\0\0\x02\x58\3"sv);
    bytes.value(0x45, "printer-icc-profiles", "http://p/").value(0x43, "urf-supported", "x");
    bytes.value(0x34, "media-col-database", "")
        .value(0x4A, "", "media-size")
        .value(0x34, "", "")
        .value(0x4A, "", "x-dimension")
        .integer("", 21000)
        .value(0x37, "", "")
        .value(0x4A, "", "media-type")
        .value(0x44, "", "stationery")
        .value(0x36, "", "\0\2en\0\1B"sv)
        .value(0x37, "", "");
    bytes.value(0x42, "media-type-supported", "My Gloss").keyword("", "stationery");
    return bytes.end();
}

TEST(IPPAnswerFilter, HandsTheSyntaxOfEachValueOn) {
    IPPBytes bytes;
    bytes.keyword("sides-supported", "one-sided");
    bytes.keyword("nobody-asked", "for-this");
    bytes.keyword("media-type-supported", "stationery")
        .value(0x42, "", "My Gloss")
        .value(0x42, "", "Nul\0"s)
        .value(0x36, "", "\0\2en\0\7My Silk"sv)
        .keyword("", "vendor-felt");
    EXPECT_THAT(filtered(bytes.end()).answer.syntaxes, ElementsAre("\x44", "\x44\x42\x44\x42\x44"));
}

/// The part of an answer that the filter hands on.
std::string printerGroupOf(const std::string& answer) {
    return answer.substr(answer.find('\4'));
}

// CUPS 2.4.10 refuses an answer with a set of texts of different kinds.
TEST(IPPAnswerFilter, MakesTheTextsOfASetOfOneKindAndTellsTheirSyntaxesBesides) {
    IPPBytes bytes;
    bytes.value(0x44, "media-type-supported", "stationery")
        .value(0x42, "", "My Gloss")
        .value(0x36, "", "\0\2en\0\1A"sv)
        .value(0x41, "", "B");
    IPPBytes ofOneKind;
    ofOneKind.value(0x44, "media-type-supported", "stationery")
        .value(0x44, "", "My Gloss")
        .value(0x44, "", "A")
        .value(0x44, "", "B");
    const Filtered result = filtered(bytes.end());
    EXPECT_EQ(printerGroupOf(result.answer.bytes), printerGroupOf(ofOneKind.end()));
    EXPECT_EQ(result.answer.syntaxes, std::vector<std::string>{"\x44\x42\x42\x41"});
}

TEST(IPPAnswerFilter, MakesTheTextsOfAMemberOfOneKind) {
    const auto database = [](unsigned char first, unsigned char second) {
        return IPPBytes()
            .value(0x34, "media-col-database", "")
            .value(0x4A, "", "media-type")
            .value(first, "", "stationery")
            .value(second, "", "My Gloss")
            .value(0x37, "", "")
            .end();
    };
    const auto handedOn = [&database](unsigned char first, unsigned char second) {
        return printerGroupOf(filtered(database(first, second)).answer.bytes);
    };
    EXPECT_EQ(handedOn(0x44, 0x42), printerGroupOf(database(0x44, 0x44)));
    EXPECT_EQ(handedOn(0x42, 0x41), printerGroupOf(database(0x42, 0x42)));
}

TEST(IPPAnswerFilter, KnowsWhetherAnythingWantedWasThere) {
    EXPECT_FALSE(filtered(IPPBytes().end()).answer.hasWanted);
    IPPBytes other;
    other.keyword("nobody-asked", "for-this").delimiter(0x02).keyword("sides-supported", "x");
    EXPECT_FALSE(filtered(other.end()).answer.hasWanted);
    IPPBytes empty;
    empty.value(0x13, "sides-supported", "");
    EXPECT_TRUE(filtered(empty.end()).answer.hasWanted);
}

TEST(IPPAnswerFilter, KeepsWhatIsAskedForBesidesWithoutCountingIt) {
    IPPBytes bytes;
    bytes.value(0x41, "printer-make-and-model", "Zr Office 20").keyword("other", "x");
    DroppedValues dropped;
    std::string error;
    const auto answer = IPPAnswerFilter({"sides-supported"}, 10, {"printer-make-and-model"})
                            .filtered(bytes.end(), dropped, error);
    EXPECT_FALSE(answer.hasWanted);
    EXPECT_NE(answer.bytes.find("Zr Office 20"), std::string::npos);
    EXPECT_EQ(answer.bytes.find("other"), std::string::npos);
}

TEST(IPPAnswerFilter, GivesNothingThatLibcupsRefusesOrHoldsLessOf) {
    const std::string whole = answerOfAllSyntaxes();
    std::mt19937 random(7);
    const auto below = [&random](std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
    };
    // Tags, lengths and their neighbours: what a change of one byte makes most trouble with.
    const std::string bytes =
        "\x00\x01\x02\x03\x04\x13\x21\x30\x32\x34\x35\x36\x37\x41\x42\x4A\x7F\xFF"s;
    std::size_t taken = 0;
    for (int number = 0; number < 20'000; ++number) {
        std::string answer = whole;
        for (std::size_t changes = 1 + below(3); changes > 0; --changes) {
            const std::size_t at = 8 + below(answer.size() - 8);
            switch (below(3)) {
                case 0:
                    answer[at] = bytes[below(bytes.size())];
                    break;
                case 1:
                    answer.insert(at, 1, bytes[below(bytes.size())]);
                    break;
                default:
                    answer.erase(at, 1);
            }
        }
        const Filtered result = filtered(answer);
        if (!result.answer.bytes.empty()) {
            ++taken;
            ASSERT_NE(IPPMessageWithBytes(result.answer.bytes), nullptr) << "answer " << number;
        }
    }
    EXPECT_GT(taken, 1'000U);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
