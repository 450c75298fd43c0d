#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/support/FileContents.h"
#include "tests/updaters/custom_media/CustomMediaTestSupport.h"

namespace TkPPDUpdating {
namespace {

using namespace Testing;

std::string replaced(std::string text, std::string_view part, std::string_view by) {
    const std::size_t at = text.find(part);
    EXPECT_NE(at, std::string::npos) << part;
    return text.replace(at, part.size(), by);
}

/// PPDs with custom media: the ink-jet sample and what others could look like.
std::vector<std::string> startTexts() {
    const std::string inkJet =
        contentsOfFile(TKPPDUPDATING_SOURCE_DIR "/samples/ppd/zr-inkjet.ppd");
    EXPECT_FALSE(inkJet.empty());
    const std::string languages = "*cupsLanguages: \"en de fr es ja\"\n";
    std::string withCarriageReturns;
    for (const char character : PPDWith()) {
        withCarriageReturns += character == '\n' ? "\r\n" : std::string(1, character);
    }
    std::string manyConstraints = PPDWith();
    for (int i = 0; i < 1500; ++i) {
        manyConstraints += "*UIConstraints: *MediaType Plain *PageSize " + std::to_string(i) + "\n";
    }
    return {
        inkJet,
        inkJet.substr(0, inkJet.size() - 1),
        replaced(inkJet, languages, ""),
        replaced(inkJet, languages, "*cupsLanguages: \"fr  de\"\n"),
        replaced(inkJet, languages, "*cupsLanguages: \"fr fr en en\"\n"),
        PPDWith(),
        PPDWith() + "\n\n",
        withCarriageReturns,
        manyConstraints,
    };
}

/// Random media types whose texts can stand in a PPD, with profiles that are shared now and then
/// and some that cannot be written.
class RandomMediaTypes {
  public:
    explicit RandomMediaTypes(unsigned seed) : random_(seed) {}

    std::size_t below(std::size_t limit) { return random_() % limit; }

    OrbCustomMediaTypes list() {
        OrbCustomMediaTypes types;
        std::vector<Profile> profiles = {nullptr};
        for (std::size_t count = below(5) == 0 ? below(80) : below(6); count > 0; --count) {
            if (below(2) == 0) {
                profiles.push_back(newProfile());
            }
            // One after the other: compilers differ in the order in which arguments are made.
            auto name = maybe(text());
            auto mediaID = maybe(text());
            auto parentMediaID = maybe(text());
            types.push_back(mediaType(std::move(name), std::move(mediaID), std::move(parentMediaID),
                                      profiles[below(profiles.size())]));
        }
        return types;
    }

    /// A list whose media types all have a name and identifiers, and whose profiles have qualifiers
    /// of their own, as a reading back needs: it finds the first profile of a qualifier for all.
    OrbCustomMediaTypes completeList() {
        OrbCustomMediaTypes types;
        std::map<std::string, Profile> profiles;
        for (const MediaType& each : list()) {
            Profile only = each->ICCProfile();
            if (only) {
                only = profiles.emplace(qualifierOf(*only), only).first->second;
            }
            types.push_back(mediaType(std::string(each->name().value_or("Name")),
                                      std::string(each->mediaID().value_or("1")),
                                      std::string(each->parentMediaID().value_or("2")), only));
        }
        return types;
    }

  private:
    static std::string qualifierOf(const OrbICCProfile& profile) {
        return profile.qualifierVer2() ? std::string(*profile.qualifierVer2())
                                       : std::to_string(profile.profileID().value_or(0));
    }

    std::optional<std::string> maybe(std::string text) {
        return below(8) == 0 ? std::nullopt : std::optional(std::move(text));
    }

    std::string text() {
        static constexpr std::string_view kPieces[] = {"Glossy", "7",  "glacé", "光沢", "😀", "(x)",
                                                       "a b",    "/y", "<41>",  "&",    "'", "%"};
        std::string made = "T";
        for (std::size_t count = below(6); count > 0; --count) {
            made += kPieces[below(std::size(kPieces))];
        }
        return made;
    }

    Profile newProfile() {
        // Qualifiers that no line of the start texts has. Some paths are too long to be written,
        // some profiles have no file.
        const std::string number = std::to_string(below(1000));
        const std::string folder(below(6) == 0 ? 250 : below(20), 'f');
        const std::string URL = "file:///p" + folder + "/gl%C3%A9%20" + number + ".icc";
        switch (below(5)) {
            case 0:
                return profile(URL, std::nullopt, below(1000) + 1000);
            case 1:
                return profile(std::nullopt, "own" + number);
            case 2:
                return profile(URL, std::nullopt);
            default:
                return profile(URL, "own" + number + (below(3) == 0 ? ".B x" : ""));
        }
    }

    std::mt19937 random_;
};

class CustomMediaProperties : public CustomMediaTest {};

TEST_F(CustomMediaProperties, ListBAfterListAGivesTheSameAsListBAlone) {
    const auto starts = startTexts();
    RandomMediaTypes random(42);
    for (int round = 0; round < 400; ++round) {
        const std::string& start = starts[random.below(starts.size())];
        const auto first = random.list();
        auto second = random.list();
        if (second.empty()) {
            second.push_back(mediaType("Name"));
        }
        const std::string afterFirst = updatedText(start, first);
        ASSERT_EQ(updatedText(afterFirst, second), updatedText(start, second))
            << "round " << round << ", after\n"
            << afterFirst;
    }
}

TEST_F(CustomMediaProperties, TheEmptyListAfterListAGivesTheStartWithAFinalLineFeed) {
    const auto starts = startTexts();
    RandomMediaTypes random(43);
    for (int round = 0; round < 400; ++round) {
        const std::string& start = starts[random.below(starts.size())];
        auto types = random.list();
        types.push_back(mediaType("Name"));
        const std::string after = updatedText(start, types);
        ASSERT_NE(after, start);
        ASSERT_EQ(updatedText(after, {}), start.ends_with('\n') ? start : start + "\n")
            << "round " << round << ", after\n"
            << after;
    }
}

TEST_F(CustomMediaProperties, RunningTwiceGivesTheSameAsOnce) {
    const auto starts = startTexts();
    RandomMediaTypes random(44);
    for (int round = 0; round < 200; ++round) {
        auto types = random.list();
        types.push_back(mediaType("Name"));
        const std::string once = updatedText(starts[random.below(starts.size())], types);
        ASSERT_EQ(updatedText(once, types), once);
    }
}

TEST_F(CustomMediaProperties, ReadingTheResultBackGivesTheSameBlock) {
    const auto starts = startTexts();
    RandomMediaTypes random(45);
    for (int round = 0; round < 200; ++round) {
        // Without cupsLanguages a name that is not ASCII still has its English line.
        const std::string& start = starts[random.below(starts.size())];
        const std::string written = updatedText(start, random.completeList());
        OrbPPDCustomMediaUpdater updater;
        const PPDText again = updater.updatedPPDContentsForContents_PPDFile_context(
            makePPDText(written), parsed(written).get(), nullptr);
        ASSERT_TRUE(again);
        ASSERT_EQ(*again, written) << "round " << round;
    }
}

}  // namespace
}  // namespace TkPPDUpdating
