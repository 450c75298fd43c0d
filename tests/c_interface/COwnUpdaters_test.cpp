// Updaters that callers in C describe by a struct of call-backs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/c_interface/CManager.h"
#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {
namespace {

using testing::HasSubstr;

const char* const kPPD =
    "*PPD-Adobe: \"4.3\"\n"
    "*OpenUI *ZrStapler/Stapler: Boolean\n*DefaultZrStapler: False\n"
    "*ZrStapler False/Not installed: \"\"\n*ZrStapler True/Installed: \"\"\n*CloseUI: *ZrStapler\n"
    "*ZrNote: none\n";
const char* const kWithStapler =
    R"({"DeviceAccessories": [{"name": "Stapler", "isInstalled": true}]})";

/// What the call-backs of a test do.
struct Calls {
    std::function<int(const TkPPDUpdatingStatus*, TkPPDUpdatingAnswer*)> values;
    std::function<int(const TkPPDUpdatingPPD*, int*)> isApplicable;
};

int callValues(void* context, const TkPPDUpdatingStatus* status, TkPPDUpdatingAnswer* answer) {
    return static_cast<Calls*>(context)->values(status, answer);
}

int callIsApplicable(void* context, const TkPPDUpdatingPPD* PPD, int* applies) {
    return static_cast<Calls*>(context)->isApplicable(PPD, applies);
}

std::string valueOf(const TkPPDUpdatingStatus* status, std::string_view entry) {
    TkPPDUpdatingText value = {};
    return TkPPDUpdatingStatus_value(status, textOf(entry), &value)
               ? std::string(value.bytes, value.length)
               : "nothing";
}

class COwnUpdaters : public testing::Test {
  protected:
    COwnUpdaters() {
        updater_.size = sizeof updater_;
        updater_.name = textOf("StaplerUpdater");
        updater_.context = &calls_;
        updater_.keywords = keywords_.data();
        updater_.values = callValues;
        calls_.values = [](const TkPPDUpdatingStatus* status, TkPPDUpdatingAnswer* answer) {
            return static_cast<int>(TkPPDUpdatingAnswer_setValue(
                answer, textOf("DefaultZrStapler"),
                textOf(valueOf(status, "DeviceAccessories.Stapler") == "True" ? "True" : "False")));
        };
    }

    TkPPDUpdatingResult registered() {
        return TkPPDUpdating_registerUpdater(manager_.get(), &updater_);
    }
    TkPPDUpdatingResult updated(std::string_view recording) {
        const auto source = sourceOfKind(TkPPDUpdatingFromRecording, recording);
        return manager_.update(PPD_, &source);
    }

    TemporaryDirectory directory_;
    std::string PPD_ = directory_.write("stapler.ppd", kPPD);
    CManager manager_;
    Calls calls_;
    std::array<const char*, 2> keywords_ = {"DefaultZrStapler", nullptr};
    std::array<const char*, 2> entries_ = {"DeviceAccessories.Stapler", nullptr};
    TkPPDUpdatingUpdater updater_ = {};
};

TEST_F(COwnUpdaters, WriteTheirValuesWhereTheLinesStand) {
    ASSERT_EQ(registered(), TkPPDUpdatingDone) << manager_.message();
    EXPECT_EQ(updated(kWithStapler), TkPPDUpdatingDone) << manager_.message();
    std::string expected = kPPD;
    expected.replace(expected.find("DefaultZrStapler: False"), 23, "DefaultZrStapler: True");
    EXPECT_EQ(manager_.contents, expected);
}

TEST_F(COwnUpdaters, KeepTheirLinesWhenWhatTheyReadWasNotTold) {
    updater_.entries = entries_.data();
    ASSERT_EQ(registered(), TkPPDUpdatingDone);
    int calls = 0;
    calls_.values = [&calls](const TkPPDUpdatingStatus*, TkPPDUpdatingAnswer*) { return ++calls; };
    EXPECT_EQ(updated(R"({"Told": ["LinTable"]})"), TkPPDUpdatingDone) << manager_.message();
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(manager_.contents, kPPD);
    EXPECT_THAT(manager_.note(), HasSubstr("kept: "));
}

TEST_F(COwnUpdaters, GiveTheirValuesBesideTheOthers) {
    ASSERT_EQ(registered(), TkPPDUpdatingDone);
    const auto source = sourceOfKind(TkPPDUpdatingFromRecording, kWithStapler);
    TkPPDUpdatingValue* values = nullptr;
    std::size_t count = 0;
    ASSERT_EQ(TkPPDUpdating_PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile(
                  manager_.get(), &source, textOf(PPD_), &values, &count),
              TkPPDUpdatingDone);
    ASSERT_EQ(count, 1U);
    EXPECT_STREQ(values->key.bytes, "DefaultZrStapler");
    EXPECT_STREQ(values->value.bytes, "True");
    TkPPDUpdating_free(values);
}

TEST_F(COwnUpdaters, ReadWhatAStatusSays) {
    calls_.values = [](const TkPPDUpdatingStatus* status, TkPPDUpdatingAnswer*) {
        EXPECT_EQ(valueOf(status, "DeviceAccessories.Stapler"), "False");
        EXPECT_EQ(valueOf(status, "DeviceAccessories.Duplexer"), "nothing");
        EXPECT_EQ(valueOf(status, "MaxSupportedResolution"), "1200");
        EXPECT_EQ(valueOf(status, "LinTable"), "252532800");
        EXPECT_EQ(valueOf(status, "InstalledPensConfiguration.codeName"), "FourPens");
        EXPECT_EQ(valueOf(status, "InstalledPensConfiguration.ZrPenDyes"), "C,M,Y,K");
        EXPECT_EQ(valueOf(status, "InstalledPensConfiguration.ZrPenFamilyIDs"), "nothing");
        EXPECT_EQ(valueOf(status, "CustomMediaTypes"), "nothing");
        EXPECT_EQ(valueOf(status, ""), "nothing");
        EXPECT_EQ(TkPPDUpdatingStatus_value(status, textOf("LinTable"), nullptr), 0);
        EXPECT_EQ(valueOf(nullptr, "LinTable"), "nothing");
        return 0;
    };
    ASSERT_EQ(registered(), TkPPDUpdatingDone);
    EXPECT_EQ(updated(R"({"DeviceAccessories": [{"name": "Stapler"}],
                         "MaxSupportedResolution": 1200, "LinTable": {"timestamp": 252532800},
                         "InstalledPensConfiguration": {"codeName": "FourPens",
                             "PPDAttributeValues": {"ZrPenDyes": "C,M,Y,K"}}})"),
              TkPPDUpdatingDone)
        << manager_.message();
    EXPECT_EQ(manager_.contents, kPPD);
}

TEST_F(COwnUpdaters, HaveNoStatusWhereThereIsNone) {
    bool isNull = false;
    calls_.values = [&isNull](const TkPPDUpdatingStatus* status, TkPPDUpdatingAnswer*) {
        isNull = status == nullptr;
        return 0;
    };
    ASSERT_EQ(registered(), TkPPDUpdatingDone);
    EXPECT_EQ(manager_.update(PPD_, nullptr), TkPPDUpdatingDone) << manager_.message();
    EXPECT_TRUE(isNull);
}

TEST_F(COwnUpdaters, LookAtThePPDToSayWhetherTheyApply) {
    updater_.isApplicable = callIsApplicable;
    bool applies = false;
    calls_.isApplicable = [&applies](const TkPPDUpdatingPPD* PPD, int* answer) {
        TkPPDUpdatingText value = {};
        EXPECT_EQ(TkPPDUpdatingPPD_value(PPD, textOf("DefaultZrStapler"), &value), 1);
        EXPECT_EQ(std::string(value.bytes, value.length), "False");
        EXPECT_EQ(TkPPDUpdatingPPD_value(PPD, textOf("ZrFolder"), &value), 0);
        EXPECT_EQ(TkPPDUpdatingPPD_value(nullptr, textOf("ZrNote"), &value), 0);
        EXPECT_EQ(TkPPDUpdatingPPD_hasChoice(PPD, textOf("ZrStapler"), textOf("True")), 1);
        EXPECT_EQ(TkPPDUpdatingPPD_hasChoice(PPD, textOf("ZrStapler"), textOf("Twice")), 0);
        EXPECT_EQ(TkPPDUpdatingPPD_hasChoice(PPD, textOf("ZrFolder"), textOf("True")), 0);
        EXPECT_EQ(TkPPDUpdatingPPD_hasChoice(nullptr, textOf("ZrStapler"), textOf("True")), 0);
        *answer = applies ? 1 : 0;
        return 0;
    };
    ASSERT_EQ(registered(), TkPPDUpdatingDone);
    EXPECT_EQ(updated(kWithStapler), TkPPDUpdatingDone);
    EXPECT_EQ(manager_.contents, kPPD);
    applies = true;
    EXPECT_EQ(updated(kWithStapler), TkPPDUpdatingDone);
    EXPECT_NE(manager_.contents, kPPD);
}

TEST_F(COwnUpdaters, FailTheOperationWithTheirNameWhenTheyFail) {
    ASSERT_EQ(registered(), TkPPDUpdatingDone);
    calls_.values = [](const TkPPDUpdatingStatus*, TkPPDUpdatingAnswer*) { return 5; };
    EXPECT_EQ(updated(kWithStapler), TkPPDUpdatingCallFailed);
    EXPECT_EQ(manager_.message(), "updater StaplerUpdater, values: ended with 5");
    calls_.values = [](const TkPPDUpdatingStatus*, TkPPDUpdatingAnswer* answer) {
        TkPPDUpdatingAnswer_setValue(answer, textOf("ZrNote"), textOf("of somebody else"));
        return 0;
    };
    EXPECT_EQ(updated(kWithStapler), TkPPDUpdatingCallFailed);
    EXPECT_THAT(manager_.message(), HasSubstr("\"ZrNote\" is none of its own"));
}

TEST_F(COwnUpdaters, CannotBringInAnotherLine) {
    ASSERT_EQ(registered(), TkPPDUpdatingDone);
    for (const std::string value : {"True\n*cupsFilter: x", "a \"quote", "\x01", ""}) {
        calls_.values = [&value](const TkPPDUpdatingStatus*, TkPPDUpdatingAnswer* answer) {
            EXPECT_EQ(
                TkPPDUpdatingAnswer_setValue(answer, textOf("DefaultZrStapler"), textOf(value)),
                TkPPDUpdatingBadArgument);
            return 0;  // Whether it looks at the result or not.
        };
        EXPECT_EQ(updated(kWithStapler), TkPPDUpdatingCallFailed) << value;
        EXPECT_THAT(manager_.message(), HasSubstr("value: "));
    }
    EXPECT_EQ(TkPPDUpdatingAnswer_setValue(nullptr, textOf("A"), textOf("b")),
              TkPPDUpdatingBadArgument);
    EXPECT_EQ(TkPPDUpdatingAnswer_setText(nullptr, textOf("{}")), TkPPDUpdatingBadArgument);
}

TEST_F(COwnUpdaters, AreRefusedWhenTheyAreNotWhole) {
    const TkPPDUpdatingUpdater whole = updater_;
    const auto refused = [&](const std::function<void()>& spoil, const std::string& reason) {
        updater_ = whole;
        spoil();
        EXPECT_EQ(registered(), TkPPDUpdatingBadArgument) << reason;
        EXPECT_THAT(manager_.message(), HasSubstr(reason));
    };
    refused([&] { updater_.size = 0; }, "its size");
    refused([&] { updater_.name = {}; }, "its name: is null");
    refused([&] { updater_.name = textOf("two words"); }, "letters and digits");
    refused([&] { updater_.name = textOf("OrbPPDCustomMediaUpdater"); }, "is taken");
    refused([&] { updater_.values = nullptr; }, "its function values: is null");
    refused([&] { updater_.keywords = nullptr; }, "its list of keywords: is null");
    refused([&] { updater_.keywords = keywords_.data() + 1; }, "its keywords are none");
    const std::array<const char*, 2> wrong = {"Zr: Stapler", nullptr};
    refused([&] { updater_.keywords = wrong.data(); }, "no main keyword");
    const std::vector<const char*> endless(1001, "ZrStapler");
    refused([&] { updater_.keywords = endless.data(); }, "have no null at their end");
    updater_ = whole;
    EXPECT_EQ(registered(), TkPPDUpdatingDone);
    EXPECT_EQ(registered(), TkPPDUpdatingBadArgument);
}

TEST_F(COwnUpdaters, CanBeTakenOutAgain) {
    ASSERT_EQ(registered(), TkPPDUpdatingDone);
    EXPECT_EQ(TkPPDUpdating_unregisterUpdater(manager_.get(), textOf("StaplerUpdater")),
              TkPPDUpdatingDone);
    EXPECT_EQ(updated(kWithStapler), TkPPDUpdatingDone);
    EXPECT_EQ(manager_.contents, kPPD);
    EXPECT_EQ(TkPPDUpdating_unregisterUpdater(manager_.get(), textOf("StaplerUpdater")),
              TkPPDUpdatingBadArgument);
    EXPECT_EQ(manager_.message(), "name: there is no updater \"StaplerUpdater\"");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
