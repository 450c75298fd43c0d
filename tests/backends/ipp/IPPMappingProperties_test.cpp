// What holds of every answer that a printer can give, tried with random ones. How many is set by
// the environment variable IPP_MAPPING_ANSWERS, the first seed by IPP_MAPPING_SEED.
#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <cstddef>
#include <iterator>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "backends/ipp/IPPStatusMapping.h"
#include "backends/ppdmodel/PPDModelCore.h"
#include "backends/ppdmodel/PPDModelFile.h"
#include "core_interface/TkCSKeys.h"
#include "manager/OrbPPDConcreteUpdatingManager.h"
#include "tests/backends/ipp/IPPTestMessage.h"
#include "tests/support/HarmlessText.h"
#include "tests/support/NumberFromEnvironment.h"
#include "tests/support/TestDoubles.h"

namespace TkPPDUpdating::Testing {
namespace {

constexpr std::array<const char*, 3> kSamples = {"zr-inkjet", "zr-office", "zr-compact"};

/// The main keywords that the updaters write by what they are: the values of a printer, the custom
/// media block with its translation lines, and what the capability blocks of the resources declare
/// (an installable duplex unit with its constraints).
bool mayBeWritten(std::string keyword) {
    const std::size_t stop = keyword.find('.');
    if (stop != std::string::npos) {  // A translation: "de.MediaType".
        keyword.erase(0, stop + 1);
    }
    static const std::set<std::string, std::less<>> kKeywords = {"MediaType",
                                                                 "cupsICCProfile",
                                                                 "ZrICCProfileId2",
                                                                 "ZrChoiceProperties",
                                                                 "ZrMediaTypeCategory",
                                                                 "ZrDeviceCapabilities",
                                                                 "ZrAutoDuplexCapability",
                                                                 "ZrNonInstallableDuplex",
                                                                 "OpenGroup",
                                                                 "CloseGroup",
                                                                 "OpenUI",
                                                                 "CloseUI",
                                                                 "OrderDependency",
                                                                 "UIConstraints",
                                                                 "cupsUIConstraints",
                                                                 "cupsUIResolver",
                                                                 "Translation",
                                                                 "ZrAutoDuplexerInstalled",
                                                                 "DefaultZrAutoDuplexerInstalled",
                                                                 "End"};
    return kKeywords.contains(keyword);
}

/// What printers say and what breaks PPDs.
const std::vector<std::string> kParts = {"one-sided",
                                         "two-sided-long-edge",
                                         "main",
                                         "tray-2",
                                         "type=ink;",
                                         "level=40;",
                                         "colorantname=cyan;",
                                         "RS300-600",
                                         "stationery",
                                         "My Gloss",
                                         "\"",
                                         "\n",
                                         "\r",
                                         "\n*",
                                         "*cupsFilter: \"x\"",
                                         "*End",
                                         ":",
                                         "/",
                                         " ",
                                         ",",
                                         ";",
                                         "=",
                                         "<0A>",
                                         "\xC3\xA9",
                                         "\xC3",
                                         "\xE2\x80\xA8",
                                         "\xC2\x85",
                                         "\x7F",
                                         "\t",
                                         "\x1B[2J",
                                         "custom1",
                                         "--",
                                         "%s",
                                         "\xF0\x9F\x96\xA8",
                                         "ink-cartridge",
                                         "#00FFFF",
                                         "*MediaType x/y: \"\"",
                                         "file:///a/b.icc",
                                         "file:///a%0Ab",
                                         "q1",
                                         "..",
                                         "gloss",
                                         "\\",
                                         "(",
                                         ">"};

class RandomAnswers {
  public:
    explicit RandomAnswers(unsigned seed) : random_(seed) {}

    IPPTestMessage next() {
        IPPTestMessage answer;
        for (const char* name : IPPStatusMapping::requestedAttributes()) {
            for (int copies = below(8) == 0 ? 2 : below(4) > 0; copies > 0; --copies) {
                addAttribute(answer, name);
            }
        }
        return answer;
    }

  private:
    int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }

    template <typename List>
    std::string oneOf(const List& list) {
        return list[static_cast<std::size_t>(below(static_cast<int>(std::size(list))))];
    }

    std::string text() {
        std::string made;
        for (int parts = below(5); parts >= 0; --parts) {
            made += oneOf(kParts);
        }
        if (below(30) == 0) {
            made.append(static_cast<std::size_t>(below(1200)), 'x');
        }
        return made;
    }

    ipp_tag_t textSyntax() {
        // Most often a name: of media types, only those are the administrator's.
        constexpr std::array<ipp_tag_t, 6> kSyntaxes = {IPP_TAG_NAME,    IPP_TAG_NAME, IPP_TAG_NAME,
                                                        IPP_TAG_KEYWORD, IPP_TAG_TEXT, IPP_TAG_URI};
        return kSyntaxes[static_cast<std::size_t>(below(6))];
    }

    void addAttribute(IPPTestMessage& answer, const char* name) {
        const std::string_view key = name;
        if ((key == "media-col-database" || key == "printer-icc-profiles") && below(8) > 0) {
            addCollections(answer, name);
        } else if (key.find("resolution") != std::string_view::npos && below(4) > 0) {
            answer.resolution(name, below(5000) - 10, below(5000),
                              static_cast<ipp_res_t>(below(6)));
        } else if (key.find("level") != std::string_view::npos && below(4) > 0) {
            answer.integers(name, {below(400) - 10, below(400) - 10});
        } else if (key == "printer-supply" || key == "printer-input-tray") {
            answer.octets(name, {text(), text() + std::string(1, '\0'), text()});
        } else {
            addTexts(answer, name);
        }
    }

    void addTexts(IPPTestMessage& answer, const char* name) {
        std::vector<std::string> values;
        for (int count = below(4); count >= 0; --count) {
            values.push_back(text());
        }
        std::vector<const char*> pointers;
        for (const std::string& value : values) {
            pointers.push_back(value.c_str());
        }
        answer.texts(name, textSyntax(), pointers);
    }

    void addCollections(IPPTestMessage& answer, const char* name) {
        std::vector<std::string> texts(12);
        for (std::string& value : texts) {
            value = text();
        }
        std::vector<IPPTestMessage::Collection> collections;
        for (std::size_t index = 0; index < texts.size(); index += 6) {
            collections.push_back({{"media-type", textSyntax(), texts[index].c_str()},
                                   {"media-key", textSyntax(), texts[index + 1].c_str()},
                                   {"media-info", textSyntax(), texts[index + 2].c_str()},
                                   {"profile-name", textSyntax(), texts[index + 3].c_str()},
                                   {"profile-url", textSyntax(), texts[index + 4].c_str()},
                                   {"profile-uri", textSyntax(), texts[index + 5].c_str()}});
        }
        answer.collections(name, collections);
    }

    std::mt19937 random_;
};

/// Not even a quote, which every reader of a PPD takes for the end of a value.
bool isHarmless(std::string_view text) {
    return isHarmlessText(text, "\"");
}

void expectHarmless(const std::optional<std::string_view>& text) {
    EXPECT_TRUE(!text || isHarmless(*text)) << *text;
}

void expectHarmlessTexts(const ReportedDeviceStatus& status) {
    for (const std::string& reason : status.droppedValues()) {
        // "is given twice" and the like: our own words.
        EXPECT_TRUE(isHarmless(reason)) << reason;
    }
    if (const auto* pens =
            status.statusValueForKey<OrbCSPensConfiguration>(kTkCSInstalledPensConfigurationKey)) {
        for (const auto& [key, value] : pens->PPDAttributeValues) {
            expectHarmless(value);
            EXPECT_LE(value.size(), 200U);
        }
    }
    if (const auto* types =
            status.statusValueForKey<OrbCustomMediaTypes>(kTkCSCustomMediaTypesKey)) {
        for (const auto& type : *types) {
            expectHarmless(type->name());
            expectHarmless(type->mediaID());
            if (const auto profile = type->ICCProfile()) {
                expectHarmless(profile->URL());
                expectHarmless(profile->qualifierVer2());
            }
        }
    }
}

std::set<std::string> mainKeywords(const std::string& text) {
    const auto file = PPDModelFile::fileWithText(makePPDText(text));
    std::set<std::string> keywords;
    if (file) {
        for (const std::string_view keyword : file->mainKeywords()) {
            keywords.emplace(keyword);
        }
    }
    return keywords;
}

TEST(IPPMappingProperties, NoAnswerMakesTheUpdatersWriteWhatIsNotTheirs) {
    const unsigned long answers = numberFromEnvironment("IPP_MAPPING_ANSWERS", 1000);
    const auto seed = static_cast<unsigned>(numberFromEnvironment("IPP_MAPPING_SEED", 1));
    const CoreInterfaceScope scope;
    OrbCoreInterface::setCore(std::make_shared<const PPDModelCore>());
    OrbCoreInterface::setEnvironment(std::make_shared<const FakeEnvironment>(
        std::map<std::string, std::string>{{"ZrCurrentLocaleIdentifier", "en_US"}}));
    OrbPPDConcreteUpdatingManager manager;
    std::array<std::string, kSamples.size()> paths;
    std::array<std::set<std::string>, kSamples.size()> before;
    for (std::size_t index = 0; index < kSamples.size(); ++index) {
        paths[index] =
            std::string(TKPPDUPDATING_SOURCE_DIR "/samples/ppd/") + kSamples[index] + ".ppd";
        const auto text = OrbPPDConcreteUpdatingManager::PPDContentsForFileAtPath(paths[index]);
        ASSERT_NE(text, nullptr);
        before[index] = mainKeywords(*text);
        ASSERT_FALSE(before[index].empty());
    }
    RandomAnswers random(seed);
    unsigned long changed = 0;
    for (unsigned long number = 0; number < answers && !testing::Test::HasFailure(); ++number) {
        const auto status = random.next().status();
        expectHarmlessTexts(*status);
        OrbCoreInterface::setCommunicationServices(
            std::make_shared<const FakeCommunicationServices>(status));
        const std::size_t sample = number % kSamples.size();
        const PPDText after = manager.updatedPPDContentsForFile_deviceURI(paths[sample], "ipp://x");
        ASSERT_NE(after, nullptr) << "answer " << number;
        const auto keywords = mainKeywords(*after);
        ASSERT_FALSE(keywords.empty()) << "answer " << number << ": the result does not parse";
        for (const std::string& keyword : keywords) {
            EXPECT_TRUE(before[sample].contains(keyword) || mayBeWritten(keyword))
                << "answer " << number << ": " << keyword;
        }
        changed += after->find("custom1") != std::string_view::npos ? 1 : 0;
    }
    // The answers are not so wild that nothing gets through.
    EXPECT_GT(changed, answers / 20);
}

/// A printer as printers are, of which single values can be taken away, as the answer's filter does
/// it with malformed ones.
struct TameAnswer {
    /// The values of each attribute.
    std::map<std::string, std::vector<std::string>> texts;
    std::vector<int> levels;

    std::shared_ptr<const ReportedDeviceStatus> status() const {
        IPPTestMessage answer;
        for (const auto& [name, values] : texts) {
            std::vector<const char*> pointers;
            for (const std::string& value : values) {
                pointers.push_back(value.c_str());
            }
            if (name == "printer-input-tray" || name == "printer-supply") {
                answer.octets(name.c_str(), values);
            } else {
                const bool isKeyword = name.find("supported") != std::string::npos;
                answer.texts(name.c_str(), isKeyword ? IPP_TAG_KEYWORD : IPP_TAG_NAME, pointers);
            }
        }
        if (!levels.empty()) {
            answer.integers("marker-levels", levels);
        }
        return answer.status();
    }
};

class TameAnswers {
  public:
    explicit TameAnswers(unsigned seed) : random_(seed) {}

    TameAnswer next() {
        TameAnswer answer;
        set(answer, "sides-supported", 3, {"one-sided", "two-sided-long-edge", "sideways"});
        const std::size_t inputs = below(5);
        set(answer, "media-source-supported", inputs,
            {"main", "tray-1", "tray-2", "by-pass-tray", "alternate", "auto", "envelope"});
        const std::vector<std::string> types = {"sheetFeedAutoRemovableTray", "sheetFeedManual",
                                                "sheetFeedAutoNonRemovableTray", "other",
                                                "unknown"};
        for (std::size_t index = 0; index < inputs; ++index) {
            answer.texts["printer-input-tray"].push_back(
                "type=" + oneOf(types) +
                ";name=" + oneOf({"Tray 1", "Tray 2", "MP Tray", "Cassette", ""}) + ";");
        }
        const std::size_t supplies = below(5);
        set(answer, "marker-types", supplies, {"ink", "toner", "ink", "fuser", "unknown"});
        set(answer, "marker-names", supplies, {"Photo", "Matte", "Black", "Cyan"});
        for (std::size_t index = 0; index < supplies; ++index) {
            answer.levels.push_back(static_cast<int>(below(5)) - 3);
        }
        return answer;
    }

    std::size_t below(std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_);
    }

    /// Leaves one value out; its place stays empty.
    void damage(TameAnswer& answer) {
        if (!answer.levels.empty() && below(6) == 0) {
            answer.levels[below(answer.levels.size())] = INT_MIN;
            return;
        }
        auto attribute = answer.texts.begin();
        std::advance(attribute, static_cast<std::ptrdiff_t>(below(answer.texts.size())));
        if (attribute->second.empty()) {
            return;
        }
        std::string& value = attribute->second[below(attribute->second.size())];
        const std::size_t field = value.find(below(2) == 0 ? "type=" : "name=");
        if (field == std::string::npos) {
            value.clear();
        } else {
            value.erase(field, value.find(';', field) + 1 - field);
        }
    }

  private:
    std::string oneOf(const std::vector<std::string>& list) { return list[below(list.size())]; }

    void set(TameAnswer& answer, const std::string& name, std::size_t count,
             const std::vector<std::string>& list) {
        for (std::size_t index = 0; index < count; ++index) {
            answer.texts[name].push_back(oneOf(list));
        }
    }

    std::mt19937 random_;
};

/// What a status tells of accessories and pens.
std::map<std::string, std::string> toldValues(const ReportedDeviceStatus& status) {
    std::map<std::string, std::string> told;
    if (const auto* all =
            status.statusValueForKey<OrbCSDeviceAccessories>(kTkCSDeviceAccessoriesKey)) {
        for (const OrbCSDeviceAccessory& each : *all) {
            told[each.name.value_or("?")] = each.isInstalled ? "installed" : "not installed";
        }
    }
    if (const auto* pens =
            status.statusValueForKey<OrbCSPensConfiguration>(kTkCSInstalledPensConfigurationKey)) {
        told.insert(pens->PPDAttributeValues.begin(), pens->PPDAttributeValues.end());
    }
    return told;
}

TEST(IPPMappingProperties, AValueThatIsMissingNeverMakesAnotherStatus) {
    const unsigned long answers = numberFromEnvironment("IPP_MAPPING_ANSWERS", 1000);
    TameAnswers random(static_cast<unsigned>(numberFromEnvironment("IPP_MAPPING_SEED", 1)));
    std::map<std::string, unsigned long> timesTold;
    for (unsigned long number = 0; number < answers && !testing::Test::HasFailure(); ++number) {
        TameAnswer answer = random.next();
        const auto whole = toldValues(*answer.status());
        random.damage(answer);
        for (const auto& [key, value] : toldValues(*answer.status())) {
            ++timesTold[key];
            const auto before = whole.find(key);
            EXPECT_TRUE(before == whole.end() || before->second == value)
                << "answer " << number << ": " << key << " was " << before->second << " and is "
                << value;
        }
    }
    EXPECT_EQ(timesTold.size(), 4U);
    for (const auto& [key, times] : timesTold) {
        EXPECT_GT(times, answers / 50) << key;
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
