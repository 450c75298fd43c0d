// What the capability updaters make of the sample PPDs, and what CUPS's own checker says to it.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/updaters/capabilities/DuplexSamples.h"

namespace TkPPDUpdating::Testing {
namespace {

std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    std::istringstream stream{std::string(text)};
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

/// What cupstestppd says of the text when it finds an error in it; empty when it finds none.
std::string errorsIn(const std::string& text) {
    const TemporaryDirectory folder;
    const std::string file = folder.write("sample.ppd", text);
    std::FILE* const pipe = ::popen(("LC_ALL=C cupstestppd '" + file + "' 2>&1").c_str(), "r");
    if (!pipe) {
        return "cupstestppd does not run";
    }
    std::string output;
    std::array<char, 1024> part{};
    while (std::fgets(part.data(), part.size(), pipe)) {
        output += part.data();
    }
    const int status = ::pclose(pipe);
    const bool hasPassed = status == 0 && output.find(": PASS") != std::string::npos &&
                           output.find("FAIL") == std::string::npos;
    return hasPassed ? std::string() : output;
}

PPDText sample(std::string_view name) {
    return PPDTextWithContentsOfFile(samplePath(name));
}

/// Whether the line is one of those that go when an office printer has no duplexer.
bool belongsToDuplex(const std::string& line) {
    const auto has = [&](std::string_view part) { return line.find(part) != std::string::npos; };
    return line.starts_with("*% Duplex <-> ") ||
           (line.starts_with("*UIConstraints:") && (has("*Duplex ") || line.ends_with("*Duplex")));
}

/// Whether the line is one of a page size for two-sided use, worked out without an expression.
bool isOfDuplexPageSize(const std::string& line) {
    std::string_view keyword = std::string_view(line).substr(0, line.find(' '));
    keyword = keyword.substr(std::min(keyword.rfind('.') + 1, keyword.size()));
    keyword = keyword.starts_with('*') ? keyword.substr(1) : keyword;
    const bool isPageSize = keyword == "PageSize" || keyword == "PageRegion" ||
                            keyword == "ImageableArea" || keyword == "PaperDimension";
    const std::string_view option =
        isPageSize ? std::string_view(line).substr(line.find(' ') + 1) : std::string_view();
    return option.substr(0, option.find_first_of("/:")).ends_with(".ZrDuplex");
}

/// The lines without the group, the lines of `goes` and, in place, with the replacements.
std::vector<std::string> expectedLines(
    const std::string& text, bool (*goes)(const std::string&),
    const std::vector<std::pair<std::string, std::string>>& replacements) {
    std::vector<std::string> expected;
    bool isInGroup = false;
    for (std::string line : linesOf(text)) {
        isInGroup = isInGroup || line.starts_with("*OpenGroup: ZrTwoSidedPrinting");
        if (!isInGroup && !goes(line)) {
            for (const auto& [before, after] : replacements) {
                line = line == before ? after : line;
            }
            expected.push_back(line);
        }
        isInGroup = isInGroup && !line.starts_with("*CloseGroup: ZrTwoSidedPrinting");
    }
    return expected;
}

TEST(DuplexSamples, HaveNoErrorAfterAnyAnswer) {
    const auto paths = samplePaths();
    ASSERT_GE(paths.size(), 3U);
    for (const std::string& path : paths) {
        const PPDText text = PPDTextWithContentsOfFile(path);
        ASSERT_TRUE(text) << path;
        for (const DeviceAnswer& answer : kDeviceAnswers) {
            EXPECT_EQ(errorsIn(*updatedSample(text, answer)), "") << path << ", " << answer.name;
        }
    }
}

TEST(DuplexSamples, HaveNoErrorWithTheBlocksOfAnyVersion) {
    for (const char* const name : {"zr-office.ppd", "zr-compact.ppd"}) {
        const PPDText text = sample(name);
        ASSERT_TRUE(text) << name;
        for (const char* const version :
             {"1.1", "1.2", "1.3", "1.4", "1.5", "1.6", "1.7", "2.0", "2.1", "2.2", "2.3", "2.4"}) {
            std::string ofVersion = *text;
            const std::size_t line = ofVersion.find("*cupsVersion: ");
            ASSERT_NE(line, std::string::npos) << name;
            ofVersion.replace(line, ofVersion.find('\n', line) - line,
                              std::string("*cupsVersion: ") + version);
            if (version == std::string("1.1")) {  // before PPDs in several languages
                const std::size_t languages = ofVersion.find("*cupsLanguages:");
                ofVersion.erase(languages, ofVersion.find('\n', languages) + 1 - languages);
            }
            const PPDText content = makePPDText(ofVersion);
            const auto appended = [&](const OrbPPDDeviceCapabilitiesUpdater& updater) {
                const PPDText result =
                    updater
                        .contentsByInsertingInstallableOptionsWithConstraintsForContents_CUPSVersion(
                            content, std::string(version));
                return result == content ? std::string("nothing was appended") : errorsIn(*result);
            };
            EXPECT_EQ(appended(OrbPPDDeviceCapabilitiesUpdater()), "") << name << " " << version;
            EXPECT_EQ(appended(OrbPPDNonInstallableDuplexUpdater()), "") << name << " " << version;
        }
    }
}

TEST(DuplexSamples, OfficePrinterWithADuplexerGetsTheBlockAndNothingElseMoves) {
    const PPDText text = sample("zr-office.ppd");
    ASSERT_TRUE(text);
    auto expected = linesOf(*text);
    std::replace(expected.begin(), expected.end(), std::string("*ZrDeviceCapabilities: Undetected"),
                 std::string("*ZrDeviceCapabilities: Detected"));
    std::replace(expected.begin(), expected.end(), std::string("*ZrAutoDuplexCapability: Unknown"),
                 std::string("*ZrAutoDuplexCapability: True"));
    expected.emplace_back();
    const auto block = linesOf(
        OrbPPDDeviceCapabilitiesUpdater().insertingStringForCUPSVersion("2.2").value_or("none"));
    expected.insert(expected.end(), block.begin(), block.end());
    EXPECT_EQ(linesOf(*updatedSample(text, {"installed", true})), expected);
    EXPECT_EQ(linesOf(*updatedSample(text, {"silent", std::nullopt})), expected);
}

TEST(DuplexSamples, OfficePrinterWithoutADuplexerLosesItsDuplexSupportAndNothingElseMoves) {
    const PPDText text = sample("zr-office.ppd");
    ASSERT_TRUE(text);
    const auto expected =
        expectedLines(*text, belongsToDuplex,
                      {{"*ZrDeviceCapabilities: Undetected", "*ZrDeviceCapabilities: Detected"},
                       {"*ZrAutoDuplexCapability: Unknown", "*ZrAutoDuplexCapability: False"}});
    EXPECT_EQ(linesOf(*updatedSample(text, {"not installed", false})), expected);
}

TEST(DuplexSamples, CompactPrinterWithoutTheUnitLosesItsPageSizesTooAndNothingElseMoves) {
    const PPDText text = sample("zr-compact.ppd");
    ASSERT_TRUE(text);
    const auto goes = [](const std::string& line) {
        return belongsToDuplex(line) || isOfDuplexPageSize(line);
    };
    const auto expected = expectedLines(
        *text, goes,
        {{"*ZrNonInstallableDuplex: Unknown", "*ZrNonInstallableDuplex: Not Installed"}});
    ASSERT_LT(expected.size(), linesOf(*text).size());
    EXPECT_EQ(linesOf(*updatedSample(text, {"not installed", false})), expected);
}

TEST(DuplexSamples, ExpressionTakesExactlyTheLinesOfPageSizesForTwoSidedUse) {
    std::size_t taken = 0;
    for (const std::string& path : samplePaths()) {
        const PPDText text = PPDTextWithContentsOfFile(path);
        ASSERT_TRUE(text) << path;
        auto expected = linesOf(*text);
        taken += std::erase_if(expected, isOfDuplexPageSize);
        EXPECT_EQ(linesOf(*OrbPPDNonInstallableDuplexUpdater()
                               .contentsByRemovingDuplexSafePageSizesForContents(text)),
                  expected)
            << path;
    }
    EXPECT_GT(taken, 0U);
}

TEST(DuplexSamples, AreSettledByOneRun) {
    for (const std::string& path : samplePaths()) {
        for (const DeviceAnswer& first : kDeviceAnswers) {
            const PPDText once = updatedSample(PPDTextWithContentsOfFile(path), first);
            for (const DeviceAnswer& second : kDeviceAnswers) {
                EXPECT_EQ(updatedSample(once, second), once)
                    << path << ", " << first.name << ", then " << second.name;
            }
        }
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
