#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <any>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core_interface/TkCSKeys.h"
#include "tests/support/MediaDoubles.h"
#include "tests/updaters/custom_media/CustomMediaTestSupport.h"
#include "updaters/custom_media/OrbPPDCustomMediaUpdater.h"

namespace TkPPDUpdating {
namespace {

using namespace Testing;
using testing::ElementsAre;
using testing::HasSubstr;

/// The media type that is read back from the text under the choice name "custom1".
MediaType readBack(const std::string& text) {
    return OrbPPDCustomMediaUpdater::customMediaTypeWithCodeName_PPDfile("custom1",
                                                                         parsed(text).get());
}

/// The text after the media types of the PPD in `source` were written into `text`.
std::string copied(const std::string& text, const std::string& source) {
    OrbPPDCustomMediaUpdater updater;
    const PPDText result = updater.updatedPPDContentsForContents_PPDFile_context(
        makePPDText(text), parsed(source).get(), nullptr);
    return result ? *result : "(null)";
}

constexpr std::string_view kProperties =
    "*ZrChoiceProperties MediaType.custom1: \"MediaID=1;ParentMediaID=2;\"\n";

using CustomMediaReadBack = CustomMediaTest;

TEST_F(CustomMediaReadBack, ANullNameOrPPDGivesNothing) {
    const auto file = parsed(PPDWith(choiceLines("custom1", "A"), "", kProperties));
    using Updater = OrbPPDCustomMediaUpdater;
    EXPECT_EQ(Updater::customMediaTypeWithCodeName_PPDfile(std::nullopt, file.get()), nullptr);
    EXPECT_EQ(Updater::customMediaTypeWithCodeName_PPDfile("custom1", nullptr), nullptr);
    EXPECT_EQ(Updater::ICCProfileWithQualifierVer2_PPDFile(std::nullopt, file.get()), nullptr);
    EXPECT_EQ(Updater::ICCProfileWithQualifierVer2_PPDFile("q1", nullptr), nullptr);
}

TEST_F(CustomMediaReadBack, AChoiceWithPropertiesGivesAMediaType) {
    const MediaType type = readBack(PPDWith(choiceLines("custom1", "Glossy"), "", kProperties));
    ASSERT_TRUE(type);
    EXPECT_EQ(type->name(), "Glossy");
    EXPECT_EQ(type->mediaID(), "1");
    EXPECT_EQ(type->parentMediaID(), "2");
    EXPECT_EQ(type->ICCProfile(), nullptr);
}

TEST_F(CustomMediaReadBack, WithoutTheOptionOrTheChoiceThereIsNone) {
    EXPECT_EQ(readBack(PPDWith("", "", kProperties)), nullptr);
    EXPECT_EQ(
        readBack("*PPD-Adobe: \"4.3\"\n" + choiceLines("custom1", "A") + std::string(kProperties)),
        nullptr);
    EXPECT_EQ(readBack(PPDWith(choiceLines("Custom1", "A"), "", kProperties)), nullptr);
}

TEST_F(CustomMediaReadBack, BothIdentifiersAreNeeded) {
    for (const std::string value :
         {"", "MediaID=1;", "ParentMediaID=2;", "MediaID=;ParentMediaID=2;",
          "MediaID=1;ParentMediaID=;", "MediaID=1;ParentMediaID=2", "mediaID=1;parentMediaID=2;",
          "MediaID=1;ParentMediaID=2;x"}) {
        EXPECT_EQ(readBack(PPDWith(choiceLines("custom1", "A"), "",
                                   "*ZrChoiceProperties MediaType.custom1: \"" + value + "\"\n")),
                  nullptr)
            << value;
    }
    EXPECT_EQ(readBack(PPDWith(choiceLines("custom1", "A"))), nullptr);
    EXPECT_EQ(readBack(PPDWith(choiceLines("custom1", "A"), "",
                               "*ZrChoiceProperties MediaType.custom1:\n")),
              nullptr);
}

TEST_F(CustomMediaReadBack, TheLastPropertiesLineCounts) {
    const MediaType type =
        readBack(PPDWith(choiceLines("custom1", "A"), "",
                         "*ZrChoiceProperties MediaType.custom1: \"MediaID=9;ParentMediaID=9;\"\n" +
                             std::string(kProperties)));
    ASSERT_TRUE(type);
    EXPECT_EQ(type->mediaID(), "1");
    EXPECT_EQ(readBack(PPDWith(choiceLines("custom1", "A"), "",
                               std::string(kProperties) +
                                   "*ZrChoiceProperties MediaType.custom1: \"MediaID=9;\"\n")),
              nullptr);
}

TEST_F(CustomMediaReadBack, TheLastEnglishTextReplacesTheName) {
    const MediaType type =
        readBack(PPDWith(choiceLines("custom1", "A") + "*en.MediaType custom1/First: \"\"\n"
                                                       "*en.MediaType custom1/Papier glacé: \"\"\n",
                         "", kProperties));
    ASSERT_TRUE(type);
    EXPECT_EQ(type->name(), "Papier glacé");
}

std::vector<std::string> keys(const OrbDictionary& parameters) {
    std::vector<std::string> all;
    for (const auto& entry : parameters) {
        all.push_back(entry.first);
    }
    return all;
}

std::string text(const OrbDictionary& parameters, std::string_view key) {
    const auto entry = parameters.find(key);
    const auto* value =
        entry == parameters.end() ? nullptr : std::any_cast<std::string>(&entry->second);
    return value ? *value : "(null)";
}

TEST_F(CustomMediaReadBack, TheCoreLibraryMakesTheMediaTypeFromTheseParameters) {
    const auto core = std::make_shared<const Testing::RememberingCore>();
    OrbCoreInterface::setCore(core);
    readBack(PPDWith(choiceLines("custom1", "Glossy"), "",
                     "*cupsICCProfile ..q1/gloss: \"/p/gloss.icc\"\n"
                     "*ZrChoiceProperties MediaType.custom1: "
                     "\"MediaID=1;ParentMediaID=2;ZrICCProfileId2=q1;\"\n"));
    EXPECT_THAT(keys(core->mediaTypeParameters),
                ElementsAre("CodeName", "ICCProfile", "MediaID", "Name", "ParentMediaID"));
    EXPECT_EQ(text(core->mediaTypeParameters, kTkPPDCustomMediaTypeCodeNameKey), "custom1");
    EXPECT_EQ(text(core->mediaTypeParameters, kTkPPDCustomMediaTypeNameKey), "Glossy");
    EXPECT_EQ(text(core->mediaTypeParameters, kTkPPDCustomMediaTypeIDKey), "1");
    EXPECT_EQ(text(core->mediaTypeParameters, kTkPPDCustomMediaTypeParentIDKey), "2");
    EXPECT_THAT(keys(core->profileParameters),
                ElementsAre("ProfileName", "ProfileURL", "QualifierVer2"));
    // The qualifier is the profile's name, too.
    EXPECT_EQ(text(core->profileParameters, kTkPPDProfileNameKey), "q1");
    EXPECT_EQ(text(core->profileParameters, kTkPPDProfileURLKey), "file:///p/gloss.icc");
    EXPECT_EQ(text(core->profileParameters, kTkPPDProfileQualifierVer2Key), "q1");
}

TEST_F(CustomMediaReadBack, WithoutANameTheParametersStopBehindTheChoiceName) {
    const auto core = std::make_shared<const Testing::RememberingCore>();
    OrbCoreInterface::setCore(core);
    for (const std::string choice : {"*MediaType custom1: \"\"\n",
                                     "*MediaType custom1/A: \"\"\n*en.MediaType custom1: \"\"\n"}) {
        core->mediaTypeParameters.clear();
        readBack(PPDWith(choice, "", kProperties));
        EXPECT_THAT(keys(core->mediaTypeParameters), ElementsAre("CodeName")) << choice;
    }
}

TEST_F(CustomMediaReadBack, WithoutAProfileTheParametersHaveNone) {
    const auto core = std::make_shared<const Testing::RememberingCore>();
    OrbCoreInterface::setCore(core);
    for (const std::string qualifier : {"", "ZrICCProfileId2=q1;"}) {
        readBack(PPDWith(choiceLines("custom1", "A"), "",
                         "*ZrChoiceProperties MediaType.custom1: \"MediaID=1;ParentMediaID=2;" +
                             qualifier + "\"\n"));
        EXPECT_THAT(keys(core->mediaTypeParameters),
                    ElementsAre("CodeName", "MediaID", "Name", "ParentMediaID"))
            << qualifier;
    }
}

TEST_F(CustomMediaReadBack, WithoutACoreLibraryThereIsNone) {
    const auto file = parsed(PPDWith(choiceLines("custom1", "A"), "",
                                     "*cupsICCProfile ..q1: \"/a\"\n" + std::string(kProperties)));
    OrbCoreInterface::setCore(nullptr);
    EXPECT_EQ(OrbPPDCustomMediaUpdater::customMediaTypeWithCodeName_PPDfile("custom1", file.get()),
              nullptr);
    EXPECT_EQ(OrbPPDCustomMediaUpdater::ICCProfileWithQualifierVer2_PPDFile("q1", file.get()),
              nullptr);
}

TEST_F(CustomMediaReadBack, AQualifierWithoutProfileLineGivesAMediaTypeWithoutProfile) {
    for (const std::string line :
         {"", "*cupsICCProfile ..q2/gloss: \"/p/gloss.icc\"\n",
          "*cupsICCProfile ..q1/gloss: \"\"\n", "*cupsICCProfile ..q1/gloss:\n",
          "*cupsICCProfile RGB..q1/gloss: \"/p/gloss.icc\"\n"}) {
        const MediaType type =
            readBack(PPDWith(choiceLines("custom1", "A"), "",
                             line + "*ZrChoiceProperties MediaType.custom1: "
                                    "\"MediaID=1;ParentMediaID=2;ZrICCProfileId2=q1;\"\n"));
        ASSERT_TRUE(type) << line;
        EXPECT_EQ(type->ICCProfile(), nullptr) << line;
    }
}

TEST_F(CustomMediaReadBack, AnEmptyQualifierIsNone) {
    const MediaType type = readBack(PPDWith(choiceLines("custom1", "A"), "",
                                            "*cupsICCProfile ..: \"/p/gloss.icc\"\n"
                                            "*ZrChoiceProperties MediaType.custom1: "
                                            "\"MediaID=1;ParentMediaID=2;ZrICCProfileId2=;\"\n"));
    ASSERT_TRUE(type);
    EXPECT_EQ(type->ICCProfile(), nullptr);
}

TEST_F(CustomMediaReadBack, TheFirstProfileLineCounts) {
    const auto first = OrbPPDCustomMediaUpdater::ICCProfileWithQualifierVer2_PPDFile(
        "q1", parsed(PPDWith("", "",
                             "*cupsICCProfile ..q1/first: \"/p/first.icc\"\n"
                             "*cupsICCProfile ..q1/last: \"/p/last.icc\"\n"))
                  .get());
    ASSERT_TRUE(first);
    EXPECT_EQ(first->URL(), "file:///p/first.icc");
    EXPECT_EQ(first->qualifierVer2(), "q1");
    const auto empty = OrbPPDCustomMediaUpdater::ICCProfileWithQualifierVer2_PPDFile(
        "q1", parsed(PPDWith("", "",
                             "*cupsICCProfile ..q1/first: \"\"\n"
                             "*cupsICCProfile ..q1/last: \"/p/last.icc\"\n"))
                  .get());
    EXPECT_EQ(empty, nullptr);
}

TEST_F(CustomMediaReadBack, ARelativeProfilePathCountsFromTheWorkingDirectory) {
    const auto read = OrbPPDCustomMediaUpdater::ICCProfileWithQualifierVer2_PPDFile(
        "q1", parsed(PPDWith("", "", "*cupsICCProfile ..q1: \"gloss.icc\"\n")).get());
    ASSERT_TRUE(read);
    const std::string_view URL = read->URL().value_or("");
    EXPECT_TRUE(URL.starts_with("file:///")) << URL;
    EXPECT_TRUE(URL.ends_with("/gloss.icc")) << URL;
}

TEST_F(CustomMediaReadBack, FileNamesComeBackAsTheSameURL) {
    for (const char* name : {"two%20words", "50%25", "a%23b", "a%3Fb", "glac%C3%A9", "%E7%B4%99",
                             "%F0%9F%98%80", "a+b", "b;c=d", "(1)", "%5B1%5D", "%3Cx%3E"}) {
        const std::string URL = "file:///profiles/" + std::string(name) + ".icc";
        const std::string written =
            updatedText(PPDWith(), {mediaType("A", "1", "2", profile(URL, "q1"))});
        const MediaType type = readBack(written);
        ASSERT_TRUE(type) << URL;
        ASSERT_TRUE(type->ICCProfile()) << URL;
        EXPECT_EQ(type->ICCProfile()->URL(), URL);
    }
}

TEST_F(CustomMediaReadBack, CopiesTheBlockOfAPPDInTheOrderOfItsCategory) {
    const std::string source =
        PPDWith(choiceLines("b", "Bee") + choiceLines("a", "Ay"), "",
                "*ZrChoiceProperties MediaType.a: \"MediaID=1;ParentMediaID=2;\"\n"
                "*ZrChoiceProperties MediaType.b: \"MediaID=3;ParentMediaID=4;\"\n" +
                    categoryLines("a b"));
    EXPECT_EQ(copied(PPDWith(), source),
              updatedText(PPDWith(), {mediaType("Ay", "1", "2"), mediaType("Bee", "3", "4")}));
}

TEST_F(CustomMediaReadBack, ReadingTheResultGivesTheSameBlockAgain) {
    const std::string text = updatedText(
        PPDWith(), {mediaType("Glossy Brochure", "1201", "3", profile("file:///p/g.icc", "q1")),
                    mediaType("Papier glacé", "1202", "4", profile("file:///p/%23.icc", "q 2")),
                    mediaType("Heavy Card", "// 12", "a=b")});
    EXPECT_EQ(copied(text, text), text);
    EXPECT_EQ(copied(PPDWith(), text), text);
}

TEST_F(CustomMediaReadBack, ChoicesThatShareAQualifierShareItsFirstProfileWhichIsLookedUpOnce) {
    const auto core = std::make_shared<const Testing::RememberingCore>();
    OrbCoreInterface::setCore(core);
    const auto properties = [](const std::string& choice, const std::string& qualifier) {
        return "*ZrChoiceProperties MediaType." + choice +
               ": \"MediaID=1;ParentMediaID=2;ZrICCProfileId2=" + qualifier + ";\"\n";
    };
    const std::string source =
        PPDWith(choiceLines("a", "Ay") + choiceLines("b", "Bee") + choiceLines("c", "Sea") +
                    choiceLines("d", "Dee"),
                "",
                "*cupsICCProfile ..q/one: \"/p/one.icc\"\n"
                "*cupsICCProfile ..q/two: \"/p/two.icc\"\n"
                "*cupsICCProfile ..r/three: \"/p/three.icc\"\n" +
                    properties("a", "q") + properties("b", "q") + properties("c", "r") +
                    properties("d", "q") + categoryLines("a b c d"));
    const std::string result = copied(PPDWith(), source);
    EXPECT_EQ(core->profiles, 2);
    const auto one = profile("file:///p/one.icc", "q");
    EXPECT_EQ(result, updatedText(PPDWith(),
                                  {mediaType("Ay", "1", "2", one), mediaType("Bee", "1", "2", one),
                                   mediaType("Sea", "1", "2", profile("file:///p/three.icc", "r")),
                                   mediaType("Dee", "1", "2", one)}));
}

TEST_F(CustomMediaReadBack, TheLastCategoryLineCounts) {
    const std::string choices = choiceLines("a", "Ay") + choiceLines("b", "Bee");
    const std::string properties =
        "*ZrChoiceProperties MediaType.a: \"MediaID=1;ParentMediaID=2;\"\n"
        "*ZrChoiceProperties MediaType.b: \"MediaID=3;ParentMediaID=4;\"\n";
    EXPECT_EQ(copied(PPDWith(),
                     PPDWith(choices, "", properties + categoryLines("a") + categoryLines("b"))),
              updatedText(PPDWith(), {mediaType("Bee", "3", "4")}));
}

TEST_F(CustomMediaReadBack, EmptyPiecesAndUnusableNamesAreLeftOut) {
    const std::string source =
        PPDWith(choiceLines("a", "Ay") + choiceLines("b", "Bee"), "",
                "*ZrChoiceProperties MediaType.a: \"MediaID=1;ParentMediaID=2;\"\n"
                "*ZrChoiceProperties MediaType.b: \"MediaID=3;\"\n" +
                    categoryLines("  b\tabsent  a "));
    EXPECT_EQ(copied(PPDWith(), source), updatedText(PPDWith(), {mediaType("Ay", "1", "2")}));
}

TEST_F(CustomMediaReadBack, APPDWithoutCategoryOnlyRemovesTheEarlierBlock) {
    const std::string text = updatedText(PPDWith(), {mediaType("Old")});
    EXPECT_EQ(copied(text, PPDWith(choiceLines("custom1", "A"), "", kProperties)), PPDWith());
    EXPECT_EQ(copied(text, PPDWith("", "", "*ZrMediaTypeCategory custom/Custom:\n")), PPDWith());
    EXPECT_EQ(copied(text, PPDWith("", "", "*ZrMediaTypeCategory custom/Custom: \"\"\n")),
              PPDWith());
    OrbPPDCustomMediaUpdater updater;
    const PPDText withoutPPD =
        updater.updatedPPDContentsForContents_PPDFile_context(makePPDText(text), nullptr, nullptr);
    ASSERT_TRUE(withoutPPD);
    EXPECT_EQ(*withoutPPD, PPDWith());
}

TEST_F(CustomMediaReadBack, AChoiceWithoutANameIsCopiedWithoutAnything) {
    const std::string source = PPDWith("*MediaType custom1: \"\"\n", "",
                                       std::string(kProperties) + categoryLines("custom1"));
    EXPECT_EQ(copied(PPDWith(), source),
              updatedText(PPDWith(), {mediaType(std::nullopt, std::nullopt, std::nullopt)}));
}

TEST_F(CustomMediaReadBack, EscapesInThePropertiesMakeNoLinesOfTheirOwn) {
    // A value without quotes around it may hold quoted strings, and these any character.
    for (const std::string value :
         {R"(MediaID="1\n*cupsFilter: x";ParentMediaID=2;)", R"(MediaID=1;ParentMediaID="2\"";)"}) {
        const std::string source = PPDWith(
            choiceLines("custom1", "A"), "",
            "*ZrChoiceProperties MediaType.custom1: " + value + "\n" + categoryLines("custom1"));
        EXPECT_EQ(copied(PPDWith(), source), PPDWith()) << value;
    }
    const std::string harmless = R"(MediaID="1";ParentMediaID="2\U00e9";)";
    EXPECT_THAT(copied(PPDWith(), PPDWith(choiceLines("custom1", "A"), "",
                                          "*ZrChoiceProperties MediaType.custom1: " + harmless +
                                              "\n" + categoryLines("custom1"))),
                HasSubstr("\"MediaID=1;ParentMediaID=2é;\"\n"));
}

TEST_F(CustomMediaReadBack, AnUnwritablePropertyThatIsNotUsedDropsNoType) {
    for (const std::string property :
         {R"(Other="a\n*cupsFilter: x";)", R"(ZrICCProfileId2="q\U2028";)"}) {
        const std::string source =
            PPDWith(choiceLines("custom1", "A"), "",
                    "*ZrChoiceProperties MediaType.custom1: MediaID=1;ParentMediaID=2;" + property +
                        "\n" + categoryLines("custom1"));
        EXPECT_EQ(copied(PPDWith(), source), updatedText(PPDWith(), {mediaType("A", "1", "2")}))
            << property;
    }
}

}  // namespace
}  // namespace TkPPDUpdating
