// The four operations as a caller in C has them, beside what the library gives a caller in C++.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "backends/ppdmodel/PPDModelCore.h"
#include "backends/recorded/RecordedDeviceStatus.h"
#include "core_interface/OrbCoreInterface.h"
#include "manager/OrbPPDConcreteUpdatingManager.h"
#include "tests/c_interface/CManager.h"
#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {
namespace {

using testing::HasSubstr;

std::string contentsOf(const std::string& path) {
    return *OrbPPDConcreteUpdatingManager::PPDContentsForFileAtPath(path);
}

/// Two sides of a comparison are not made in the same second.
[[maybe_unused]] const int kTimeIsSet = setenv("ZrEPRLastUpdateTime", "252532800", 1);

/// What the library's own operation gives for the recording.
std::string textOfTheLibrary() {
    auto schemes = std::make_shared<DeviceStatusSchemes>();
    registerRecordedDeviceStatus(*schemes);
    OrbCoreInterface::setCommunicationServices(schemes);
    OrbCoreInterface::setCore(std::make_shared<const PPDModelCore>());
    const PPDText text = OrbPPDConcreteUpdatingManager().updatedPPDContentsForFile_deviceURI(
        kOfficePPD, "file:" + kOfficeRecording);
    OrbCoreInterface::setCommunicationServices(nullptr);
    return text ? *text : "";
}

std::map<std::string, std::string> takenValues(TkPPDUpdatingValue* values, std::size_t count) {
    std::map<std::string, std::string> taken;
    for (std::size_t index = 0; index < count; ++index) {
        const TkPPDUpdatingValue& each = values[index];
        EXPECT_EQ(each.value.bytes[each.value.length], '\0');
        taken.emplace(std::string(each.key.bytes, each.key.length),
                      std::string(each.value.bytes, each.value.length));
    }
    EXPECT_EQ(taken.size(), count);
    TkPPDUpdating_free(values);
    return taken;
}

TEST(COperations, GiveTheBytesOfTheLibrary) {
    const std::string expected = textOfTheLibrary();
    ASSERT_NE(expected, contentsOf(kOfficePPD));
    CManager manager;
    const std::string recording = contentsOf(kOfficeRecording);
    const std::string URI = "file:" + kOfficeRecording;
    for (const auto& source : {sourceOfKind(TkPPDUpdatingFromDeviceURI, URI),
                               sourceOfKind(TkPPDUpdatingFromRecording, recording)}) {
        EXPECT_EQ(manager.update(kOfficePPD, &source), TkPPDUpdatingDone) << manager.message();
        EXPECT_EQ(manager.contents, expected);
        EXPECT_EQ(manager.note(), "");
    }
}

TEST(COperations, LeaveWhatWasNotToldAndSaySo) {
    CManager manager;
    const auto silentOnAll = sourceOfKind(TkPPDUpdatingFromRecording, R"({"Told": []})");
    EXPECT_EQ(
        TkPPDUpdating_unregisterUpdater(manager.get(), textOf("OrbPPDDefaultPageSizeUpdater")),
        TkPPDUpdatingDone);
    EXPECT_EQ(manager.update(kOfficePPD, &silentOnAll), TkPPDUpdatingDone) << manager.message();
    EXPECT_EQ(manager.contents, contentsOf(kOfficePPD));
    EXPECT_THAT(manager.note(), HasSubstr("duplexer"));

    // The same answer without the list tells that there is nothing.
    const auto none = sourceOfKind(TkPPDUpdatingFromRecording, "{}");
    EXPECT_EQ(manager.update(kOfficePPD, &none), TkPPDUpdatingDone);
    EXPECT_NE(manager.contents, contentsOf(kOfficePPD));
    EXPECT_EQ(manager.note(), "");
}

struct Recorder {
    std::string recording;
    int calls = 0;
    int result = 0;
    bool throws = false;
};

int recorded(void* context, TkPPDUpdatingAnswer* answer) {
    auto& recorder = *static_cast<Recorder*>(context);
    ++recorder.calls;
    if (recorder.throws) {
        throw std::runtime_error("thrown by the caller's own function");
    }
    if (!recorder.recording.empty()) {
        EXPECT_EQ(TkPPDUpdatingAnswer_setText(answer, textOf(recorder.recording)),
                  TkPPDUpdatingDone);
    }
    return recorder.result;
}

TEST(COperations, TakeTheStatusFromAFunctionOnceAndOnlyWhenItIsNeeded) {
    CManager manager;
    Recorder recorder{contentsOf(kOfficeRecording)};
    const auto source = sourceOfFunction(recorded, &recorder);
    EXPECT_EQ(manager.update(kOfficePPD, &source), TkPPDUpdatingDone) << manager.message();
    EXPECT_EQ(manager.contents, textOfTheLibrary());
    EXPECT_EQ(recorder.calls, 1);

    const TemporaryDirectory directory;
    const std::string plain = directory.write("plain.ppd", "*PPD-Adobe: \"4.3\"\n");
    EXPECT_EQ(manager.update(plain, &source), TkPPDUpdatingDone) << manager.message();
    EXPECT_EQ(recorder.calls, 1);
}

TEST(COperations, EndWithWhatAFunctionDidWrong) {
    CManager manager;
    Recorder failing{"{}", 0, 7};
    const auto fails = sourceOfFunction(recorded, &failing);
    EXPECT_EQ(manager.update(kOfficePPD, &fails), TkPPDUpdatingNoStatus);
    Recorder silent;
    const auto saysNothing = sourceOfFunction(recorded, &silent);
    EXPECT_EQ(manager.update(kOfficePPD, &saysNothing), TkPPDUpdatingCallFailed);
    Recorder wrong{"[]"};
    const auto saysNonsense = sourceOfFunction(recorded, &wrong);
    EXPECT_EQ(manager.update(kOfficePPD, &saysNonsense), TkPPDUpdatingBadRecording);
}

TEST(COperations, LetNoExceptionThrough) {
    CManager manager;
    Recorder throwing{"{}", 0, 0, true};
    const auto source = sourceOfFunction(recorded, &throwing);
    EXPECT_EQ(manager.update(kOfficePPD, &source), TkPPDUpdatingInternalError);
    EXPECT_EQ(manager.message(), "thrown by the caller's own function");

    const TemporaryDirectory directory;
    const std::string broken = directory.write(
        "broken.ppd", "*PPD-Adobe: \"4.3\"\n*ZrMaxSupportedResolution: 600\n*cupsLanguages:\n");
    const auto resolution =
        sourceOfKind(TkPPDUpdatingFromRecording, R"({"MaxSupportedResolution": 1200})");
    EXPECT_EQ(manager.update(broken, &resolution), TkPPDUpdatingBrokenAttribute);
}

TEST(COperations, GiveValuesForAPPDSortedByTheirKeys) {
    const CManager manager;
    const std::string recording = contentsOf(kOfficeRecording);
    const auto source = sourceOfKind(TkPPDUpdatingFromRecording, recording);
    TkPPDUpdatingValue* values = nullptr;
    std::size_t count = 0;
    ASSERT_EQ(TkPPDUpdating_PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile(
                  manager.get(), &source, textOf(kOfficePPD), &values, &count),
              TkPPDUpdatingDone)
        << manager.message();
    for (std::size_t index = 1; index < count; ++index) {
        EXPECT_LT(std::string(values[index - 1].key.bytes), std::string(values[index].key.bytes));
    }
    auto taken = takenValues(values, count);
    EXPECT_EQ(taken["ZrMaxSupportedResolution"], "1200");
    EXPECT_EQ(taken["ZrEPRPageTypes"], "Text");
}

TEST(COperations, GiveNoArrayWhenThereAreNoValues) {
    const CManager manager;
    const TemporaryDirectory directory;
    const std::string plain = directory.write("plain.ppd", "*PPD-Adobe: \"4.3\"\n");
    const auto source = sourceOfKind(TkPPDUpdatingFromRecording, "{}");
    auto* values = reinterpret_cast<TkPPDUpdatingValue*>(1);
    std::size_t count = 1;
    EXPECT_EQ(TkPPDUpdating_PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile(
                  manager.get(), &source, textOf(plain), &values, &count),
              TkPPDUpdatingDone)
        << manager.message();
    EXPECT_EQ(values, nullptr);
    EXPECT_EQ(count, 0U);
}

/// A server root with the PPD of the queue "office"; no scheduler is asked.
class COperationsOfQueues : public testing::Test {
  protected:
    void SetUp() override {
        directory_.write("ppd/office.ppd", contentsOf(kOfficePPD));
        ASSERT_EQ(::setenv("CUPS_SERVERROOT", directory_.path().c_str(), 1), 0);
        ASSERT_EQ(::setenv("CUPS_SERVER", (directory_.path() / "nobody").c_str(), 1), 0);
    }

    TemporaryDirectory directory_;
    CManager manager_;
};

TEST_F(COperationsOfQueues, TakeTheValuesOfAQueue) {
    const std::string recording = contentsOf(kOfficeRecording);
    const auto source = sourceOfKind(TkPPDUpdatingFromRecording, recording);
    TkPPDUpdatingValue* values = nullptr;
    std::size_t count = 0;
    ASSERT_EQ(TkPPDUpdating_PPDUpdatingValuesForQueueWithName_deviceURI(
                  manager_.get(), textOf("office"), &source, &values, &count),
              TkPPDUpdatingDone)
        << manager_.message();
    EXPECT_EQ(takenValues(values, count)["ZrMaxSupportedResolution"], "1200");

    // Without a source, as for a printer that gives no status.
    ASSERT_EQ(TkPPDUpdating_PPDUpdatingValuesForQueueWithName_deviceURI(
                  manager_.get(), textOf("office"), nullptr, &values, &count),
              TkPPDUpdatingDone)
        << manager_.message();
    EXPECT_EQ(takenValues(values, count).count("ZrMaxSupportedResolution"), 0U);
}

TEST_F(COperationsOfQueues, UpdateAPPDByThatOfAQueue) {
    std::string installed = contentsOf(kOfficePPD);
    const std::string before = "*DefaultZrLowerTrayInstalled: False";
    const std::size_t place = installed.find(before);
    ASSERT_NE(place, std::string::npos);
    installed.replace(place, before.size(), "*DefaultZrLowerTrayInstalled: True");
    directory_.write("ppd/office.ppd", installed);
    char* contents = nullptr;
    std::size_t length = 0;
    ASSERT_EQ(TkPPDUpdating_updatedPPDContentsForFile_queueName(
                  manager_.get(), textOf(kOfficePPD), textOf("office"), &contents, &length),
              TkPPDUpdatingDone)
        << manager_.message();
    EXPECT_THAT(std::string(contents, length), HasSubstr("*DefaultZrLowerTrayInstalled: True"));
    TkPPDUpdating_free(contents);
}

TEST_F(COperationsOfQueues, NameAQueueThatIsNotThere) {
    char* contents = nullptr;
    std::size_t length = 0;
    EXPECT_EQ(TkPPDUpdating_updatedPPDContentsForFile_queueName(
                  manager_.get(), textOf(kOfficePPD), textOf("nowhere"), &contents, &length),
              TkPPDUpdatingNoPPD);
    EXPECT_THAT(manager_.message(), HasSubstr("nowhere"));
}

TEST(COperations, RunSideBySideInManagersOfTheirOwn) {
    const std::string expected = textOfTheLibrary();
    const std::string recording = contentsOf(kOfficeRecording);
    std::vector<std::thread> threads;
    std::vector<std::string> results(4);
    for (std::string& result : results) {
        threads.emplace_back([&result, &recording] {
            CManager manager;
            const auto source = sourceOfKind(TkPPDUpdatingFromRecording, recording);
            manager.update(kOfficePPD, &source);
            result = manager.contents;
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_THAT(results, testing::Each(expected));
}

int useManagerMeanwhile(void* context, TkPPDUpdatingAnswer* answer) {
    auto* const manager = static_cast<TkPPDUpdatingManager*>(context);
    EXPECT_EQ(TkPPDUpdating_unregisterUpdater(manager, textOf("OrbPPDCustomMediaUpdater")),
              TkPPDUpdatingBadArgument);
    return TkPPDUpdatingAnswer_setText(answer, textOf("{}"));
}

TEST(COperations, RefuseAManagerThatIsAtWork) {
    CManager manager;
    const auto source = sourceOfFunction(useManagerMeanwhile, manager.get());
    EXPECT_EQ(manager.update(kOfficePPD, &source), TkPPDUpdatingDone) << manager.message();
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
