// What no printer can do to a PPD, tried with random hostile recordings and IPP answers; libcups is
// the judge. How many of each is set by the environment variable HOSTILE_TEXTS_CASES, the first
// seed by HOSTILE_TEXTS_SEED; HOSTILE_TEXTS_PPDS is a folder of further PPDs, which get the
// attributes of the samples.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "backends/recorded/RecordedDeviceStatus.h"
#include "ppd/PPDTextFile.h"
#include "tests/hostile/EnrichedPPD.h"
#include "tests/hostile/HostileStatuses.h"
#include "tests/hostile/UpdateUnderTest.h"
#include "tests/samples/SamplePrinters.h"
#include "tests/support/NumberFromEnvironment.h"

namespace TkPPDUpdating::Testing {
namespace {

using Status = std::shared_ptr<const OrbCSDeviceStatus>;

PPDText withAttributes(const std::string& text) {
    return makePPDText(enrichedPPD(text));
}

class HostileTexts : public testing::Test {
  protected:
    void SetUp() override {
        for (const char* const sample : {"zr-inkjet", "zr-office", "zr-compact"}) {
            add(sample, PPDTextWithContentsOfFile(PPDPathOf(sample)));
        }
        // Custom media on all of the samples.
        add("zr-office with media", withAttributes(*texts_.at("zr-office")));
        if (const char* const folder = std::getenv("HOSTILE_TEXTS_PPDS")) {
            for (const auto& file : std::filesystem::directory_iterator(folder)) {
                const PPDText text = PPDTextWithContentsOfFile(file.path().string());
                ASSERT_NE(text, nullptr) << file.path();
                add(file.path().filename().string(), withAttributes(*text));
            }
        }
    }

    void tryAll(const std::function<Status()>& nextStatus) {
        const unsigned long cases = numberFromEnvironment("HOSTILE_TEXTS_CASES", 120);
        std::size_t findings = 0;
        std::map<std::string, std::size_t> refusals;
        std::size_t withMedia = 0;
        std::size_t withProfiles = 0;
        for (unsigned long number = 0; number < cases && findings < 20; ++number) {
            auto& [name, ppd] = ppds_[number % ppds_.size()];
            const Status status = nextStatus();
            ASSERT_NE(status, nullptr);
            const auto outcome = ppd->outcomeWith(status);
            for (const std::string& finding : outcome.findings) {
                ADD_FAILURE() << "case " << number << ", " << name << ": " << finding << "\n"
                              << RecordedDeviceStatus::JSONForStatus(*status);
            }
            findings += outcome.findings.size();
            withMedia += outcome.mediaTypes > 0 ? 1 : 0;
            withProfiles += outcome.profiles > 0 ? 1 : 0;
            ++refusals[outcome.refusal.value_or("accepted")];
        }
        std::cout << cases << " cases on " << ppds_.size() << " PPDs, " << withMedia
                  << " with custom media, " << withProfiles << " with profiles, "
                  << cases - refusals["accepted"] << " refused by the guard, " << findings
                  << " findings\n";
        for (const auto& [reason, count] : refusals) {
            std::cout << "  " << count << " times: " << reason << "\n";
        }
        // Not so hostile that nothing gets through.
        EXPECT_GT(withMedia, cases / 20);
        refusals_ = std::move(refusals);
    }

    std::map<std::string, std::size_t> refusals_;
    const unsigned seed_ = static_cast<unsigned>(numberFromEnvironment("HOSTILE_TEXTS_SEED", 1));

  private:
    void add(const std::string& name, const PPDText& text) {
        ASSERT_NE(text, nullptr) << name;
        texts_[name] = text;
        ppds_.emplace_back(name, std::make_unique<UpdateUnderTest>(text));
    }

    const SampleWorld world_{"en_US"};
    std::map<std::string, PPDText> texts_;
    std::vector<std::pair<std::string, std::unique_ptr<UpdateUnderTest>>> ppds_;
};

TEST_F(HostileTexts, OfRecordingsDoNoHarm) {
    HostileStatuses statuses(seed_);
    tryAll([&]() -> Status {
        std::string error;
        const std::string recording = statuses.recording();
        Status status = RecordedDeviceStatus::statusWithJSON(recording, error);
        EXPECT_NE(status, nullptr) << error << "\n" << recording;
        return status;
    });
    for (const auto& [reason, count] : refusals_) {
        // What a table of characters cannot see: a name that is taken, and an attribute's text that
        // is too long for a line with its keyword.
        EXPECT_TRUE(reason == "accepted" || reason.ends_with(" would be there twice") ||
                    reason.starts_with("it would lose a line of Zr"))
            << count << " times: " << reason;
    }
}

TEST_F(HostileTexts, OfIPPAnswersDoNoHarm) {
    HostileStatuses statuses(seed_);
    tryAll([&]() -> Status { return statuses.answer().status(); });
    for (const auto& [reason, count] : refusals_) {
        EXPECT_EQ(reason, "accepted") << count << " times";
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
