// What callers in C may get wrong: each has a result and a line that names the argument.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/c_interface/CManager.h"
#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr std::size_t kTwoToThe31 = std::size_t{1} << 31U;

/// A text in front of memory that nobody may read.
class TextBeforeNothing {
  public:
    explicit TextBeforeNothing(std::string_view text) {
        const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
        size_ = 2 * page;
        memory_ = static_cast<char*>(
            ::mmap(nullptr, size_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
        EXPECT_EQ(::mprotect(memory_ + page, page, PROT_NONE), 0);
        EXPECT_LE(text.size(), page);
        start_ = memory_ + page - text.size();
        std::memcpy(start_, text.data(), text.size());
        text_ = {start_, text.size()};
    }
    TextBeforeNothing(const TextBeforeNothing&) = delete;
    TextBeforeNothing& operator=(const TextBeforeNothing&) = delete;
    ~TextBeforeNothing() { ::munmap(memory_, size_); }

    std::string_view text() const { return text_; }

  private:
    std::size_t size_ = 0;
    char* memory_ = nullptr;
    char* start_ = nullptr;
    std::string_view text_;
};

TEST(CArguments, WithoutAManagerEveryCallSaysSo) {
    EXPECT_EQ(TkPPDUpdatingManager_create(nullptr), TkPPDUpdatingBadArgument);
    std::array<char*, 1> contents = {};
    std::size_t length = 1;
    std::array<TkPPDUpdatingValue*, 1> values = {};
    const TkPPDUpdatingText path = textOf(kOfficePPD);
    EXPECT_EQ(TkPPDUpdating_updatedPPDContentsForFile_deviceURI(nullptr, path, nullptr,
                                                                contents.data(), &length),
              TkPPDUpdatingBadArgument);
    EXPECT_EQ(length, 0U);
    EXPECT_EQ(TkPPDUpdating_updatedPPDContentsForFile_queueName(nullptr, path, path,
                                                                contents.data(), &length),
              TkPPDUpdatingBadArgument);
    EXPECT_EQ(TkPPDUpdating_PPDUpdatingValuesForQueueWithName_deviceURI(nullptr, path, nullptr,
                                                                        values.data(), &length),
              TkPPDUpdatingBadArgument);
    EXPECT_EQ(TkPPDUpdating_PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile(
                  nullptr, nullptr, path, values.data(), &length),
              TkPPDUpdatingBadArgument);
    EXPECT_EQ(TkPPDUpdating_registerUpdater(nullptr, nullptr), TkPPDUpdatingBadArgument);
    EXPECT_EQ(TkPPDUpdating_unregisterUpdater(nullptr, path), TkPPDUpdatingBadArgument);
    EXPECT_THAT(TkPPDUpdating_message(nullptr), HasSubstr("null"));
    EXPECT_STREQ(TkPPDUpdating_note(nullptr), "");
    TkPPDUpdatingManager_free(nullptr);
    TkPPDUpdating_free(nullptr);
}

TEST(CArguments, WithoutAPlaceForTheResultACallSaysWhichIsMissing) {
    const CManager manager;
    const TkPPDUpdatingText path = textOf(kOfficePPD);
    const auto recording = sourceOfKind(TkPPDUpdatingFromRecording, "{}");
    char* contents = nullptr;
    TkPPDUpdatingValue* values = nullptr;
    std::size_t length = 0;
    EXPECT_EQ(TkPPDUpdating_updatedPPDContentsForFile_deviceURI(manager.get(), path, nullptr,
                                                                nullptr, &length),
              TkPPDUpdatingBadArgument);
    EXPECT_EQ(manager.message(), "contents: is null");
    EXPECT_EQ(TkPPDUpdating_updatedPPDContentsForFile_queueName(manager.get(), path, path,
                                                                &contents, nullptr),
              TkPPDUpdatingBadArgument);
    EXPECT_EQ(manager.message(), "length: is null");
    EXPECT_EQ(TkPPDUpdating_PPDUpdatingValuesForQueueWithName_deviceURI(manager.get(), path,
                                                                        nullptr, nullptr, &length),
              TkPPDUpdatingBadArgument);
    EXPECT_EQ(manager.message(), "values: is null");
    EXPECT_EQ(TkPPDUpdating_PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile(
                  manager.get(), &recording, path, &values, nullptr),
              TkPPDUpdatingBadArgument);
    EXPECT_EQ(manager.message(), "count: is null");
    EXPECT_EQ(TkPPDUpdating_PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile(
                  manager.get(), nullptr, path, &values, &length),
              TkPPDUpdatingBadArgument);
    EXPECT_EQ(manager.message(), "source: is null");
    EXPECT_EQ(TkPPDUpdating_registerUpdater(manager.get(), nullptr), TkPPDUpdatingBadArgument);
    EXPECT_EQ(manager.message(), "updater: is null");
}

struct BadText {
    const char* name;
    TkPPDUpdatingText text;
    const char* message;
};

class CBadText : public testing::TestWithParam<BadText> {};

TEST_P(CBadText, IsRefusedWithItsNameBeforeAByteIsRead) {
    const CManager manager;
    char* contents = nullptr;
    std::size_t length = 0;
    EXPECT_EQ(TkPPDUpdating_updatedPPDContentsForFile_deviceURI(manager.get(), GetParam().text,
                                                                nullptr, &contents, &length),
              TkPPDUpdatingBadArgument);
    EXPECT_EQ(manager.message(), std::string("path: ") + GetParam().message);

    TkPPDUpdatingStatusSource source = {};
    source.kind = TkPPDUpdatingFromDeviceURI;
    source.text = GetParam().text;
    EXPECT_EQ(TkPPDUpdating_updatedPPDContentsForFile_deviceURI(manager.get(), textOf(kOfficePPD),
                                                                &source, &contents, &length),
              TkPPDUpdatingBadArgument);
    EXPECT_EQ(manager.message(), std::string("device URI: ") + GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, CBadText,
    testing::Values(BadText{"Null", {nullptr, 0}, "is null"},
                    BadText{"NullWithLength", {nullptr, 7}, "is null"},
                    BadText{"Empty", {"x", 0}, "is empty"},
                    BadText{"Of2To31",
                            {"x", kTwoToThe31},
                            "takes 2147483648 bytes; at most 65535 are possible"},
                    BadText{"WithoutEnd", {"x", TkPPDUpdatingNoEnd}, "the text has no end"},
                    BadText{"WithNULInside", {"a\0b", 3}, "byte 1 is NUL"}),
    [](const auto& each) { return each.param.name; });

TEST(CArguments, ARecordingOf2To31BytesIsRefusedBeforeAByteIsRead) {
    CManager manager;
    auto source = sourceOfKind(TkPPDUpdatingFromRecording, "{}");
    source.text.length = kTwoToThe31;
    EXPECT_EQ(manager.update(kOfficePPD, &source), TkPPDUpdatingBadArgument);
    EXPECT_THAT(manager.message(), StartsWith("recording: takes 2147483648 bytes"));
}

TEST(CArguments, ATextInAnArrayEndsAtItsFirstNULAndHasNoEndWithoutOne) {
    EXPECT_EQ(TkPPDUpdatingTextInArray("abc\0def", 8).length, 3U);
    EXPECT_EQ(TkPPDUpdatingTextInArray("abcdef", 6).length, TkPPDUpdatingNoEnd);
    EXPECT_EQ(TkPPDUpdatingTextInArray(nullptr, 6).length, TkPPDUpdatingNoEnd);
    EXPECT_EQ(TkPPDUpdatingTextOfString(nullptr).length, 0U);
    EXPECT_EQ(TkPPDUpdatingTextOfString("abc").length, 3U);
}

TEST(CArguments, NothingBehindATextIsRead) {
    CManager manager;
    const TextBeforeNothing recording(R"({"MaxSupportedResolution": 1200})");
    const TextBeforeNothing path(kOfficePPD);
    const auto source = sourceOfKind(TkPPDUpdatingFromRecording, recording.text());
    EXPECT_EQ(manager.update(path.text(), &source), TkPPDUpdatingDone) << manager.message();
    const TextBeforeNothing cut(R"({"MaxSupportedResolution": 12)");
    const auto cutSource = sourceOfKind(TkPPDUpdatingFromRecording, cut.text());
    EXPECT_EQ(manager.update(path.text(), &cutSource), TkPPDUpdatingBadRecording);
}

TEST(CArguments, AKindOfSourceThatDoesNotExistIsRefused) {
    CManager manager;
    for (const int kind : {0, 4, -1}) {
        auto source = sourceOfKind(TkPPDUpdatingFromRecording, "{}");
        std::memcpy(&source.kind, &kind, sizeof kind);
        EXPECT_EQ(manager.update(kOfficePPD, &source), TkPPDUpdatingBadArgument);
        EXPECT_EQ(manager.message(), "source: there is no kind " + std::to_string(kind));
    }
    const auto nobody = sourceOfFunction(nullptr, nullptr);
    EXPECT_EQ(manager.update(kOfficePPD, &nobody), TkPPDUpdatingBadArgument);
    EXPECT_EQ(manager.message(), "source: its function is null");
}

TEST(CArguments, MistakesInADeviceURIAreToldFromASilentPrinter) {
    CManager manager;
    const TemporaryDirectory directory;
    const std::string cut = "file:" + directory.write("cut.json", "{\"LinTable\": ");
    const std::string silent = "file:" + directory.write("silent.json", "null");
    const std::vector<std::pair<std::string, TkPPDUpdatingResult>> cases = {
        {"192.168.1.5", TkPPDUpdatingBadDeviceURI},
        {"carrier-pigeon://loft", TkPPDUpdatingBadDeviceURI},
        {"file:/no/such/recording.json", TkPPDUpdatingBadRecording},
        {cut, TkPPDUpdatingBadRecording},
        {silent, TkPPDUpdatingNoStatus}};
    for (const auto& [URI, result] : cases) {
        const auto source = sourceOfKind(TkPPDUpdatingFromDeviceURI, URI);
        EXPECT_EQ(manager.update(kOfficePPD, &source), result) << URI;
        EXPECT_THAT(manager.message(), StartsWith("device URI: ")) << URI;
    }
}

TEST(CArguments, AMalformedRecordingIsRefusedWithThePlace) {
    CManager manager;
    const auto source = sourceOfKind(TkPPDUpdatingFromRecording, "{\n\"LinTable\": 7}");
    EXPECT_EQ(manager.update(kOfficePPD, &source), TkPPDUpdatingBadRecording);
    EXPECT_THAT(manager.message(), HasSubstr("LinTable"));
    const auto cut = sourceOfKind(TkPPDUpdatingFromRecording, "{\n\"LinTable\": ");
    EXPECT_EQ(manager.update(kOfficePPD, &cut), TkPPDUpdatingBadRecording);
    EXPECT_THAT(manager.message(), HasSubstr("line 2"));
}

TEST(CArguments, AFileThatIsNoPPDIsNamedWithTheReason) {
    CManager manager;
    const TemporaryDirectory directory;
    const std::string noPPD = directory.write("letter.txt", "Dear reader\n");
    EXPECT_EQ(manager.update(noPPD, nullptr), TkPPDUpdatingNoPPD);
    EXPECT_THAT(manager.message(), StartsWith(noPPD + ": "));
    const std::string missing = directory.path() / "missing.ppd";
    EXPECT_EQ(manager.update(missing, nullptr), TkPPDUpdatingNoPPD);
    EXPECT_THAT(manager.message(), StartsWith(missing + ": "));
}

TEST(CArguments, EveryResultHasAMeaning) {
    for (int result = 0; result <= TkPPDUpdatingInternalError + 1; ++result) {
        EXPECT_STRNE(TkPPDUpdating_meaning(static_cast<TkPPDUpdatingResult>(result)), "");
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
