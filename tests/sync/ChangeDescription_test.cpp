#include "sync/ChangeDescription.h"

#include <gmock/gmock.h>

#include <ctime>
#include <string>

#include "tests/support/ParsedPPD.h"

namespace TkPPDUpdating::Testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::string> described(std::string_view before, std::string_view after,
                                   const std::vector<std::string>& languages = {"en"}) {
    const auto was = parsedPPD(before);
    const auto is = parsedPPD(after);
    return describedChanges(*was, *is, PPDChangesBetween(*was, *is), languages);
}

std::string duplexer(const std::string& choice) {
    return "*OpenUI *ZrAutoDuplexerInstalled/Automatic Duplexer: Boolean\n"
           "*de.Translation ZrAutoDuplexerInstalled/Duplexeinheit: \"\"\n"
           "*DefaultZrAutoDuplexerInstalled: " +
           choice +
           "\n"
           "*ZrAutoDuplexerInstalled False/Not Installed: \"\"\n"
           "*de.ZrAutoDuplexerInstalled False/Nicht installiert: \"\"\n"
           "*ZrAutoDuplexerInstalled True/Installed: \"\"\n"
           "*de.ZrAutoDuplexerInstalled True/Installiert: \"\"\n"
           "*CloseUI: *ZrAutoDuplexerInstalled\n";
}

struct Type {
    std::string ID;
    std::string name;
};

/// A PPD with these custom media types, as the updater writes them, numbered from 1.
std::string media(const std::vector<Type>& types, const std::string& defaultChoice = "Plain") {
    std::string choices;
    std::string properties;
    std::string category;
    for (std::size_t index = 0; index < types.size(); ++index) {
        const std::string choice = "custom" + std::to_string(index + 1);
        choices += "*MediaType " + choice + "/" + types[index].name + ": \"<</MediaType(" + choice +
                   ")>>setpagedevice\"\n*de.MediaType " + choice + "/" + types[index].name +
                   ": \"\"\n";
        properties += "*ZrChoiceProperties MediaType." + choice + ": \"MediaID=" + types[index].ID +
                      ";ParentMediaID=1;\"\n";
        category += (category.empty() ? "" : " ") + choice;
    }
    return "*OpenUI *MediaType/Media Type: PickOne\n*DefaultMediaType: " + defaultChoice +
           "\n*MediaType Plain/Plain Paper: \"\"\n" + choices + "*CloseUI: *MediaType\n" +
           properties +
           (types.empty() ? "" : "*ZrMediaTypeCategory custom/Custom: \"" + category + "\"\n");
}

TEST(ChangeDescription, NothingIsSaidOfEqualPPDs) {
    EXPECT_THAT(described(duplexer("True"), duplexer("True")), IsEmpty());
}

TEST(ChangeDescription, ADefaultIsSaidWithTheTextsOfThePPD) {
    EXPECT_THAT(described(duplexer("False"), duplexer("True")),
                ElementsAre("Automatic Duplexer: Not Installed -> Installed"));
}

TEST(ChangeDescription, ADefaultIsSaidInTheUsersLanguage) {
    EXPECT_THAT(described(duplexer("False"), duplexer("True"), {"de_DE", "de"}),
                ElementsAre("Duplexeinheit: Nicht installiert -> Installiert"));
    EXPECT_THAT(described(duplexer("False"), duplexer("True"), {"fr"}),
                ElementsAre("Automatic Duplexer: Not Installed -> Installed"));
}

TEST(ChangeDescription, AChoiceThatThePPDLacksIsSaidByItsKeyword) {
    EXPECT_THAT(described(duplexer("Unknown"), duplexer("True")),
                ElementsAre("Automatic Duplexer: Unknown -> Installed"));
}

TEST(ChangeDescription, ChoicesOfOneTextAreToldApartByTheirKeywords) {
    const std::vector<Type> types = {{"1", "Gloss"}, {"2", "Gloss"}};
    EXPECT_THAT(described(media(types, "custom1"), media(types, "custom2")),
                ElementsAre("Media Type: Gloss (custom1) -> Gloss (custom2)"));
}

TEST(ChangeDescription, TheFourPageSizeLinesAreOneWhileTheyAgree) {
    const auto PPD = [](const std::string& size, const std::string& area) {
        return "*OpenUI *PageSize/Media Size: PickOne\n*DefaultPageSize: " + size +
               "\n*PageSize A4/A4: \"\"\n*PageSize Letter/US Letter: \"\"\n*CloseUI: *PageSize\n"
               "*OpenUI *PageRegion/Region: PickOne\n*DefaultPageRegion: " +
               size +
               "\n*PageRegion A4/A4: \"\"\n*PageRegion Letter/US Letter: \"\"\n*CloseUI: "
               "*PageRegion\n*DefaultImageableArea: " +
               area + "\n*DefaultPaperDimension: " + size + "\n";
    };
    EXPECT_THAT(described(PPD("Letter", "Letter"), PPD("A4", "A4")),
                ElementsAre("Media Size: US Letter -> A4"));
    EXPECT_THAT(described(PPD("Letter", "Letter"), PPD("A4", "A5")),
                ElementsAre("Media Size: US Letter -> A4", "DefaultImageableArea: Letter -> A5"));
    EXPECT_THAT(described(PPD("A4", "Letter"), PPD("A4", "A4")),
                ElementsAre("DefaultImageableArea: Letter -> A4"));
}

struct MediaChange {
    std::vector<Type> before;
    std::vector<Type> after;
    std::vector<std::string> lines;
};

TEST(ChangeDescription, CustomMediaTypesAreCountedByTheirIDs) {
    const Type gloss = {"1201", "Glossy"};
    const Type card = {"1202", "Card"};
    const Type canvas = {"1203", "Canvas"};
    for (const MediaChange& change : std::vector<MediaChange>{
             {{}, {gloss, card}, {"Media Type: 2 custom types added"}},
             {{gloss}, {}, {"Media Type: 1 custom type removed"}},
             {{gloss}, {card, canvas}, {"Media Type: 2 custom types added, 1 removed"}},
             {{gloss, card}, {card}, {"Media Type: 1 custom type removed"}},
             {{gloss}, {canvas, gloss}, {"Media Type: 1 custom type added"}},
             {{gloss, card}, {card, gloss}, {"Media Type: custom types in another order"}},
             {{gloss}, {{"1201", "Gloss"}}, {"Media Type: 1 custom type changed"}},
             {{gloss, card},
              {{"1201", "Gloss"}, canvas},
              {"Media Type: 1 custom type added, 1 removed, 1 changed"}},
             {{gloss}, {gloss, gloss}, {"Media Type: 1 custom type added"}}}) {
        EXPECT_EQ(described(media(change.before), media(change.after)), change.lines);
    }
}

TEST(ChangeDescription, ADriversOwnChoicesAreNoCustomTypes) {
    std::string more = media({{"1", "Gloss"}});
    more.insert(more.find("*CloseUI"), "*MediaType Film/Film: \"\"\n");
    EXPECT_THAT(described(media({}), more),
                ElementsAre("Media Type: 1 choice added", "Media Type: 1 custom type added"));
}

TEST(ChangeDescription, AProfileIsItsChoiceAndItsPath) {
    const auto PPD = [](const std::string& choices, const std::string& paths) {
        return "*OpenUI *ZrICCProfileId2/Color Profile: PickOne\n*DefaultZrICCProfileId2: Auto\n" +
               choices + "*CloseUI: *ZrICCProfileId2\n" + paths;
    };
    const std::string choice = "*ZrICCProfileId2 q1/gloss: \"\"\n";
    const std::string path = "*cupsICCProfile ..q1/gloss: \"/a.icc\"\n";
    EXPECT_THAT(described(PPD("", ""), PPD(choice, path)),
                ElementsAre("Color Profile: 1 choice added"));
    EXPECT_THAT(described(PPD(choice, path), PPD(choice, "*cupsICCProfile ..q1/gloss: \"/b\"\n")),
                ElementsAre("Color Profile: 1 choice changed"));
}

TEST(ChangeDescription, AnAttributeIsSaidWithItsTextOrKeyword) {
    EXPECT_THAT(described("*ZrMaxSupportedResolution: 600\n", "*ZrMaxSupportedResolution: 1200\n"),
                ElementsAre("ZrMaxSupportedResolution: 600 -> 1200"));
    EXPECT_THAT(described("*ZrX/Pages Left: 1\n", "*ZrX/Pages Left: 2\n"),
                ElementsAre("Pages Left: 1 -> 2"));
    const std::string german = "*de.Translation ZrX/Restseiten: \"\"\n";
    EXPECT_THAT(described(german + "*ZrX/Pages Left: 1\n", german + "*ZrX/Pages Left: 2\n", {"de"}),
                ElementsAre("Restseiten: 1 -> 2"));
    EXPECT_THAT(described("*ZrX a/A: \"1\"\n", "*ZrX a/A: \"2\"\n"), ElementsAre("ZrX a: 1 -> 2"));
}

TEST(ChangeDescription, AnAttributeComesGoesAndIsEmpty) {
    EXPECT_THAT(described("", "*ZrX: 1\n"), ElementsAre("ZrX: (none) -> 1"));
    EXPECT_THAT(described("*ZrX: 1\n", ""), ElementsAre("ZrX: 1 -> (none)"));
    EXPECT_THAT(described("*ZrX: 1\n", "*ZrX: \n"), ElementsAre("ZrX: 1 -> (empty)"));
    EXPECT_THAT(described("*ZrX a/A: \"1\"\n", "*ZrX a/<42>: \"1\"\n"),
                ElementsAre("ZrX a: A -> B"));
}

TEST(ChangeDescription, AnOptionThatCameIsOneLineWithItsGroupDefaultAndConstraints) {
    const std::string block =
        "*OpenGroup: InstallableOptions/Installable Options\n"
        "*de.Translation InstallableOptions/Installierbare Optionen: \"\"\n" +
        duplexer("True") +
        "*OrderDependency: 10 AnySetup *ZrAutoDuplexerInstalled\n"
        "*CloseGroup: InstallableOptions\n"
        "*UIConstraints: *Duplex *ZrAutoDuplexerInstalled False\n"
        "*UIConstraints: *ZrAutoDuplexerInstalled False *Duplex\n";
    EXPECT_THAT(described("", block), ElementsAre("Automatic Duplexer: added to Installable "
                                                  "Options (Installed), with 2 constraints"));
    EXPECT_THAT(described("", block, {"de"}),
                ElementsAre("Duplexeinheit: added to Installierbare Optionen (Installiert), with 2 "
                            "constraints"));
    EXPECT_THAT(described("", duplexer("True")),
                ElementsAre("Automatic Duplexer: added (Installed)"));
}

std::string duplex(const std::string& pageSizes) {
    return "*UIConstraints: *Duplex DuplexTumble *MediaType Thick\n"
           "*UIConstraints: *MediaType Thick *Duplex DuplexTumble\n"
           "*UIConstraints: *Duplex None *PageSize A4.ZrDuplex\n"
           "*OpenUI *PageSize/Media Size: PickOne\n*DefaultPageSize: A4\n" +
           pageSizes +
           "*CloseUI: *PageSize\n"
           "*OpenGroup: ZrTwoSidedPrinting/Two-Sided Printing\n"
           "*OpenUI *Duplex/Two-Sided: PickOne\n*DefaultDuplex: None\n*Duplex None/Off: \"\"\n"
           "*CloseUI: *Duplex\n*CloseGroup: ZrTwoSidedPrinting\n";
}

TEST(ChangeDescription, DuplexSupportThatWentIsOneLineWithConstraintsAndPageSizes) {
    const std::string size = "*PageSize A4/A4: \"\"\n";
    const std::string kept = "*OpenUI *PageSize/Media Size: PickOne\n*DefaultPageSize: A4\n" +
                             size + "*CloseUI: *PageSize\n";
    const std::string extra =
        "*PageSize A4.ZrDuplex/A4 (Two-Sided): \"\"\n"
        "*ImageableArea A4.ZrDuplex/A4 (Two-Sided): \"\"\n";
    EXPECT_THAT(described(duplex(size + extra), kept),
                ElementsAre("Two-Sided: removed, with 3 constraints and 1 page size"));
    EXPECT_THAT(described(duplex(size), kept),
                ElementsAre("Two-Sided: removed, with 3 constraints"));
    EXPECT_THAT(described(kept, duplex(size + extra)),
                ElementsAre("Two-Sided: added to Two-Sided Printing (Off), with 3 constraints",
                            "Media Size: 1 page size added"));
}

TEST(ChangeDescription, ConstraintsOfOptionsThatStayAreCounted) {
    EXPECT_THAT(
        described("*UIConstraints: *A *B\n*UIConstraints: *B *A\n*NonUIConstraints: *A *B\n",
                  "*UIConstraints: *C *D\n"),
        ElementsAre("Constraints: 1 line added, 3 removed"));
}

TEST(ChangeDescription, ADeclarationOfAnOptionThatStaysIsAnAttribute) {
    std::string other = duplexer("True");
    other.replace(other.find("Automatic"), 9, "Auto<2D>");
    EXPECT_THAT(
        described(duplexer("True"), other),
        ElementsAre("OpenUI *ZrAutoDuplexerInstalled: Automatic Duplexer -> Auto- Duplexer"));
}

TEST(ChangeDescription, OnlyTheWritingOfLinesIsSaidToo) {
    EXPECT_THAT(described("*ZrX:1\n", "*ZrX: 1\n"),
                ElementsAre("no value, only how lines are written"));
}

TEST(ChangeDescription, PiecesOfThePPDAreShortenedByCharacters) {
    std::string eighty;
    for (int count = 0; count < 80; ++count) {
        eighty += "\xC3\xA9";
    }
    EXPECT_THAT(described("*ZrX: " + eighty + "\n", "*ZrX: " + eighty + "e\n"),
                ElementsAre("ZrX: " + eighty + " -> " + eighty + "..."));
}

/// The processor's time for that many lines of one attribute, each with a translation line.
double secondsForLines(int count) {
    std::string before;
    std::string after;
    for (int line = 0; line < count; ++line) {
        const std::string number = std::to_string(line);
        before += "*ZrX: b" + number + "\n";
        after += "*ZrX: a" + number + "\n*de.Translation ZrX/T: \"\"\n";
    }
    const std::clock_t begin = std::clock();
    EXPECT_EQ(described(before, after, {"de"}).size(), 2U * static_cast<std::size_t>(count));
    return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
}

TEST(ChangeDescription, ManyLinesOfOneNameTakeTimeInProportion) {
    EXPECT_LT(secondsForLines(20'000), 8 * secondsForLines(5'000));
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
