#include <gtest/gtest.h>

#include <any>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "manager/OrbPPDUpdatingContext.h"
#include "tests/manager/ManagerTestSupport.h"

namespace TkPPDUpdating {
namespace {

using URI = std::optional<std::string_view>;

// ---- reading the file

struct UnreadableText {
    const char* name;
    std::string bytes;
};

void PrintTo(const UnreadableText& text, std::ostream* stream) {
    *stream << text.name;
}

class TextThatIsNotUTF8 : public Testing::ManagerTest,
                          public testing::WithParamInterface<UnreadableText> {};

TEST_P(TextThatIsNotUTF8, GivesNullBeforeAnyUpdaterIsCreated) {
    useUpdaters<A>();
    const std::string bad = directory.write("bad.ppd", "*PPD-Adobe: \"4.3\"\n" + GetParam().bytes);
    core = std::make_shared<Testing::FakeCore>(Testing::FakeCore::Files{{bad, file}},
                                               Testing::FakeCore::Files{{"office", queueFile}});
    OrbCoreInterface::setCore(core);
    EXPECT_EQ(OrbPPDConcreteUpdatingManager::PPDContentsForFileAtPath(bad), nullptr);
    EXPECT_EQ(manager.updatedPPDContentsForFile_deviceURI(bad, "ipp://p"), nullptr);
    EXPECT_EQ(manager.updatedPPDContentsForFile_queueName(bad, "office"), nullptr);
    EXPECT_EQ(A::script.instancesMade, 0);
}

INSTANTIATE_TEST_SUITE_P(InFile, TextThatIsNotUTF8,
                         testing::ValuesIn(std::vector<UnreadableText>{
                             {"Latin1",
                              "Gr\xF6\xDF"
                              "e"},
                             {"LoneContinuationByte", "a\x80z"},
                             {"CutOffCharacter", "a\xE2\x82"},
                             {"OverlongSlash", "a\xC0\xAFz"},
                             {"Surrogate", "a\xED\xA0\x80z"},
                             {"AboveTheLastCodePoint", "a\xF4\x90\x80\x80z"},
                             {"UTF16", std::string("\xFF\xFE*\0P\0", 6)},
                         }),
                         [](const auto& parameter) { return std::string(parameter.param.name); });

class UpdatingAFile : public Testing::ManagerTest {};

TEST_F(UpdatingAFile, ReadsTheWholeTextOfAFile) {
    const std::string bytes =
        "\xEF\xBB\xBF*PPD\r\n\tGr\xC3\xB6\xC3\x9F"
        "e \xF0\x9F\x96\xA8\n\nno last line feed";
    EXPECT_EQ(textOf(OrbPPDConcreteUpdatingManager::PPDContentsForFileAtPath(
                  directory.write("any.ppd", bytes))),
              bytes);
    EXPECT_EQ(textOf(OrbPPDConcreteUpdatingManager::PPDContentsForFileAtPath(
                  directory.write("empty.ppd", ""))),
              "");
}

TEST_F(UpdatingAFile, GivesNullForAFileThatDoesNotExistBeforeAnyUpdaterIsCreated) {
    useUpdaters<A>();
    for (const std::string& missing :
         {(directory.path() / "missing.ppd").string(), directory.path().string(), std::string()}) {
        EXPECT_EQ(OrbPPDConcreteUpdatingManager::PPDContentsForFileAtPath(missing), nullptr);
        EXPECT_EQ(manager.updatedPPDContentsForFile_deviceURI(missing, "ipp://p"), nullptr);
        EXPECT_EQ(manager.updatedPPDContentsForFile_queueName(missing, "office"), nullptr);
    }
    EXPECT_EQ(A::script.instancesMade, 0);
}

TEST_F(UpdatingAFile, GivesNullWhenTheCoreLibraryDoesNotParseIt) {
    useUpdaters<A>();
    EXPECT_EQ(manager.updatedPPDContentsForFile_deviceURI(unparsablePath, "ipp://p"), nullptr);
    EXPECT_EQ(manager.updatedPPDContentsForFile_queueName(unparsablePath, "office"), nullptr);
    EXPECT_EQ(core->askedPaths, (std::vector<std::string>{unparsablePath, unparsablePath}));
    EXPECT_EQ(A::script.instancesMade, 0);
}

TEST_F(UpdatingAFile, GivesNullWithoutACoreLibrary) {
    OrbCoreInterface::setCore(nullptr);
    EXPECT_EQ(manager.updatedPPDContentsForFile_deviceURI(path, "ipp://p"), nullptr);
    EXPECT_EQ(manager.updatedPPDContentsForFile_queueName(path, "office"), nullptr);
}

// ---- from a device

class UpdatingFromADevice : public Testing::ManagerTest {};

TEST_F(UpdatingFromADevice, GivesTheFilesOwnBytesWhenNoUpdaterApplies) {
    const std::string bytes =
        "*PPD\r\nGr\xC3\xB6\xC3\x9F"
        "e\nno last line feed";
    directory.write("printer.ppd", bytes);
    EXPECT_EQ(textOf(manager.updatedPPDContentsForFile_deviceURI(path, "ipp://p")), bytes);
    useUpdaters<A>();
    A::script.isApplicable = [](const OrbPPDFile*) { return false; };
    EXPECT_EQ(textOf(manager.updatedPPDContentsForFile_deviceURI(path, "ipp://p")), bytes);
    EXPECT_EQ(A::script.timesRun, 0);
}

TEST_F(UpdatingFromADevice, GivesTheFilesOwnBytesWhenNoUpdaterChangesAnything) {
    useUpdaters<A, B>();
    EXPECT_EQ(textOf(manager.updatedPPDContentsForFile_deviceURI(path, "ipp://p")),
              "the PPD's text");
    EXPECT_EQ(A::script.timesRun, 1);
    EXPECT_EQ(B::script.timesRun, 1);
}

TEST_F(UpdatingFromADevice, AsksTheUpdatersWithTheParsedFile) {
    useUpdaters<A>();
    const OrbPPDFile* asked = nullptr;
    A::script.isApplicable = [&](const OrbPPDFile* PPDFile) {
        asked = PPDFile;
        return true;
    };
    manager.updatedPPDContentsForFile_deviceURI(path, "ipp://p");
    EXPECT_EQ(asked, file.get());
    EXPECT_EQ(core->askedPaths, std::vector<std::string>{path});
    EXPECT_TRUE(core->askedQueueNames.empty());
}

TEST_F(UpdatingFromADevice, HandsTheTextTheURIAndAnEmptyContextToTheUpdater) {
    useUpdaters<A>();
    A::script.updateFromDevice = [](const PPDText& contents, URI deviceURI,
                                    OrbDictionary* context) {
        EXPECT_EQ(*contents, "the PPD's text");
        EXPECT_EQ(deviceURI, "any text: not checked");
        EXPECT_NE(context, nullptr);
        EXPECT_TRUE(context && context->empty());
        return makePPDText("changed");
    };
    EXPECT_EQ(textOf(manager.updatedPPDContentsForFile_deviceURI(path, "any text: not checked")),
              "changed");
    EXPECT_TRUE(services->requests.empty()) << "nobody needed the device";
}

TEST_F(UpdatingFromADevice, PassesOnThatThereIsNoURI) {
    useUpdaters<A>();
    A::script.updateFromDevice = [](const PPDText&, URI deviceURI, OrbDictionary*) -> PPDText {
        EXPECT_EQ(deviceURI, std::nullopt);
        return makePPDText("changed");
    };
    EXPECT_EQ(textOf(manager.updatedPPDContentsForFile_deviceURI(path, std::nullopt)), "changed");
}

TEST_F(UpdatingFromADevice, HandsAnEmptyURIOnAsOne) {
    useUpdaters<A>();
    A::script.updateFromDevice = [](const PPDText&, URI deviceURI, OrbDictionary*) -> PPDText {
        EXPECT_EQ(deviceURI, "");
        return makePPDText("changed");
    };
    EXPECT_EQ(textOf(manager.updatedPPDContentsForFile_deviceURI(path, "")), "changed");
}

TEST_F(UpdatingFromADevice, HandsTheResultOfOneUpdaterToTheNext) {
    useUpdaters<A, B, C>();
    const auto append = [](const PPDText& contents, URI, OrbDictionary*) {
        return makePPDText(*contents + "+");
    };
    A::script.updateFromDevice = B::script.updateFromDevice = C::script.updateFromDevice = append;
    EXPECT_EQ(textOf(manager.updatedPPDContentsForFile_deviceURI(path, "ipp://p")),
              "the PPD's text+++");
}

TEST_F(UpdatingFromADevice, KeepsTheTextWhereAnUpdaterGivesNull) {
    useUpdaters<A, B, C>();
    // Whichever order they run in: one of three gives null, and neither stops the others nor
    // loses what they changed.
    std::vector<PPDText> given;
    A::script.updateFromDevice = C::script.updateFromDevice =
        [](const PPDText& contents, URI, OrbDictionary*) { return makePPDText(*contents + "+"); };
    B::script.updateFromDevice = [](const PPDText&, URI, OrbDictionary*) { return PPDText(); };
    EXPECT_EQ(textOf(manager.updatedPPDContentsForFile_deviceURI(path, "ipp://p")),
              "the PPD's text++");
}

TEST_F(UpdatingFromADevice, PassesTheSameTextOnAfterAnUpdaterThatGaveNull) {
    useUpdaters<A, B>();
    std::vector<const std::string*> given;
    A::script.updateFromDevice =
        B::script.updateFromDevice = [&](const PPDText& contents, URI, OrbDictionary*) {
            given.push_back(contents.get());
            return PPDText();
        };
    const PPDText result = manager.updatedPPDContentsForFile_deviceURI(path, "ipp://p");
    ASSERT_EQ(given.size(), 2U);
    EXPECT_EQ(given[0], given[1]);
    EXPECT_EQ(result.get(), given[0]) << "an unchanged text is not copied";
}

TEST_F(UpdatingFromADevice, TakesAnEmptyTextForAChange) {
    useUpdaters<A>();
    A::script.updateFromDevice = [](const PPDText&, URI, OrbDictionary*) {
        return makePPDText("");
    };
    EXPECT_EQ(textOf(manager.updatedPPDContentsForFile_deviceURI(path, "ipp://p")), "");
}

TEST_F(UpdatingFromADevice, SharesOneContextWithinARunAndNotBetweenRuns) {
    useUpdaters<A, B>();
    std::vector<std::size_t> entriesSeen;
    A::script.updateFromDevice =
        B::script.updateFromDevice = [&](const PPDText&, URI, OrbDictionary* context) {
            entriesSeen.push_back(context->size());
            (*context)["Entry" + std::to_string(context->size())] = 1;
            return PPDText();
        };
    manager.updatedPPDContentsForFile_deviceURI(path, "ipp://p");
    manager.updatedPPDContentsForFile_deviceURI(path, "ipp://p");
    EXPECT_EQ(entriesSeen, (std::vector<std::size_t>{0, 1, 0, 1}));
}

TEST_F(UpdatingFromADevice, AsksTheDeviceOnceInARun) {
    useUpdaters<A, B, C>();
    std::vector<std::shared_ptr<const OrbCSDeviceStatus>> seen;
    A::script.updateFromDevice = B::script.updateFromDevice =
        C::script.updateFromDevice = [&](const PPDText&, URI deviceURI, OrbDictionary* context) {
            seen.push_back(OrbPPDUpdatingContext::deviceStatusForURI_inContext(deviceURI, context));
            return PPDText();
        };
    manager.updatedPPDContentsForFile_deviceURI(path, "ipp://p");
    EXPECT_EQ(seen, (std::vector<std::shared_ptr<const OrbCSDeviceStatus>>(3, status)));
    ASSERT_EQ(services->requests.size(), 1U);
    EXPECT_EQ(services->requests[0].deviceURI, "ipp://p");
    ASSERT_TRUE(services->requests[0].parameters.has_value());
    EXPECT_TRUE(services->requests[0].parameters->empty()) << "filter mode is for values only";
    manager.updatedPPDContentsForFile_deviceURI(path, "ipp://q");
    ASSERT_EQ(services->requests.size(), 2U) << "the next run asks anew";
    EXPECT_EQ(services->requests[1].deviceURI, "ipp://q");
}

TEST_F(UpdatingFromADevice, ReleasesTheContextAtTheEnd) {
    useUpdaters<A>();
    std::weak_ptr<int> watched;
    A::script.updateFromDevice = [&](const PPDText&, URI, OrbDictionary* context) {
        auto entry = std::make_shared<int>(1);
        watched = entry;
        (*context)["Entry"] = entry;
        return PPDText();
    };
    manager.updatedPPDContentsForFile_deviceURI(path, "ipp://p");
    EXPECT_TRUE(watched.expired());
}

TEST_F(UpdatingFromADevice, CarriesNothingButTheCurrentTextFromOneUpdaterToTheNext) {
    useUpdaters<A, B, C>();
    // Each updater leaves a text behind; when the next one runs, all but the newest are gone.
    std::vector<std::weak_ptr<const std::string>> replaced;
    A::script.updateFromDevice = B::script.updateFromDevice =
        C::script.updateFromDevice = [&](const PPDText& contents, URI, OrbDictionary*) {
            for (const auto& earlier : replaced) {
                EXPECT_TRUE(earlier.expired());
            }
            replaced.push_back(contents.bytes());
            return makePPDText(*contents + "+");
        };
    const PPDText result = manager.updatedPPDContentsForFile_deviceURI(path, "ipp://p");
    EXPECT_EQ(textOf(result), "the PPD's text+++");
    EXPECT_EQ(replaced.size(), 3U);
    EXPECT_TRUE(replaced.back().expired());
}

TEST_F(UpdatingFromADevice, LetsEachUpdaterGoBeforeTheNextRuns) {
    useUpdaters<A, B, C>();
    std::vector<int> alive;
    A::script.updateFromDevice = B::script.updateFromDevice =
        C::script.updateFromDevice = [&](const PPDText&, URI, OrbDictionary*) -> PPDText {
        alive.push_back(A::script.instancesAlive + B::script.instancesAlive +
                        C::script.instancesAlive);
        return nullptr;
    };
    manager.updatedPPDContentsForFile_deviceURI(path, "ipp://p");
    EXPECT_EQ(alive, (std::vector<int>{3, 2, 1}));
}

TEST_F(UpdatingFromADevice, MakesFreshUpdatersForEveryOperation) {
    useUpdaters<A>();
    for (int operation = 1; operation <= 3; ++operation) {
        manager.updatedPPDContentsForFile_deviceURI(path, "ipp://p");
        EXPECT_EQ(A::script.instancesMade, operation);
        EXPECT_EQ(A::script.timesRun, operation);
        EXPECT_EQ(A::script.instancesAlive, 0);
    }
}

TEST_F(UpdatingFromADevice, PassesOnTheOutOfRangeErrorAndStaysUsable) {
    useUpdaters<A, B>();
    const auto before = manager.registeredClasses();
    std::weak_ptr<int> watched;
    A::script.updateFromDevice = [&](const PPDText&, URI, OrbDictionary* context) -> PPDText {
        auto entry = std::make_shared<int>(1);
        watched = entry;
        (*context)["Entry"] = entry;
        throw std::out_of_range("an attribute ends at its colon");
    };
    EXPECT_THROW(manager.updatedPPDContentsForFile_deviceURI(path, "ipp://p"), std::out_of_range);
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(A::script.instancesAlive, 0);
    EXPECT_EQ(B::script.instancesAlive, 0);
    EXPECT_EQ(manager.registeredClasses(), before);

    A::script.updateFromDevice = [](const PPDText& contents, URI, OrbDictionary* context) {
        EXPECT_TRUE(context->empty());
        return makePPDText(*contents + "+");
    };
    EXPECT_EQ(textOf(manager.updatedPPDContentsForFile_deviceURI(path, "ipp://p")),
              "the PPD's text+");
}

TEST_F(UpdatingFromADevice, DoesNotWriteTheFile) {
    useUpdaters<A>();
    A::script.updateFromDevice = [](const PPDText&, URI, OrbDictionary*) {
        return makePPDText("changed");
    };
    manager.updatedPPDContentsForFile_deviceURI(path, "ipp://p");
    EXPECT_EQ(textOf(OrbPPDConcreteUpdatingManager::PPDContentsForFileAtPath(path)),
              "the PPD's text");
}

// ---- from a queue

class UpdatingFromAQueue : public Testing::ManagerTest {};

TEST_F(UpdatingFromAQueue, GivesNullWithoutAQueueNameThoughTheFileIsFine) {
    useUpdaters<A>();
    EXPECT_EQ(manager.updatedPPDContentsForFile_queueName(path, std::nullopt), nullptr);
    EXPECT_TRUE(core->askedPaths.empty());
    EXPECT_TRUE(core->askedQueueNames.empty());
    EXPECT_EQ(A::script.instancesMade, 0);
}

TEST_F(UpdatingFromAQueue, GivesNullForAQueueWithoutAPPDThoughTheFileWasReadAndParsed) {
    useUpdaters<A>();
    EXPECT_EQ(manager.updatedPPDContentsForFile_queueName(path, "attic"), nullptr);
    EXPECT_EQ(core->askedPaths, std::vector<std::string>{path});
    EXPECT_EQ(core->askedQueueNames, std::vector<std::string>{"attic"});
    EXPECT_EQ(A::script.timesRun, 0);
}

TEST_F(UpdatingFromAQueue, GivesNullForAQueueWithoutAPPDAlsoWhenNoUpdaterApplies) {
    EXPECT_EQ(manager.updatedPPDContentsForFile_queueName(path, "attic"), nullptr);
    useUpdaters<A>();
    A::script.isApplicable = [](const OrbPPDFile*) { return false; };
    EXPECT_EQ(manager.updatedPPDContentsForFile_queueName(path, "attic"), nullptr);
    EXPECT_EQ(core->askedQueueNames, (std::vector<std::string>{"attic", "attic"}));
}

TEST_F(UpdatingFromAQueue, AsksTheUpdatersBeforeItLooksForTheQueue) {
    useUpdaters<A>();
    A::script.isApplicable = [this](const OrbPPDFile*) {
        EXPECT_TRUE(core->askedQueueNames.empty());
        return true;
    };
    manager.updatedPPDContentsForFile_queueName(path, "attic");
    EXPECT_EQ(A::script.timesAskedIfApplicable, 1);
    EXPECT_EQ(core->askedQueueNames, std::vector<std::string>{"attic"});
}

TEST_F(UpdatingFromAQueue, DoesNotLookForTheQueueOfAFileThatCannotBeReadOrParsed) {
    manager.updatedPPDContentsForFile_queueName((directory.path() / "missing").string(), "office");
    manager.updatedPPDContentsForFile_queueName(unparsablePath, "office");
    EXPECT_TRUE(core->askedQueueNames.empty());
}

TEST_F(UpdatingFromAQueue, HandsTheNameOfTheQueueToTheCoreLibraryAsItIs) {
    for (const char* name : {"office", "", "../office", "of/fice", "Büro"}) {
        manager.updatedPPDContentsForFile_queueName(path, name);
    }
    EXPECT_EQ(core->askedQueueNames,
              (std::vector<std::string>{"office", "", "../office", "of/fice", "Büro"}));
}

TEST_F(UpdatingFromAQueue, AsksWithTheFilesPPDAndTakesTheValuesFromTheQueues) {
    useUpdaters<A>();
    A::script.isApplicable = [this](const OrbPPDFile* PPDFile) {
        EXPECT_EQ(PPDFile, file.get());
        return true;
    };
    A::script.updateFromPPD = [this](const PPDText& contents, const OrbPPDFile* PPDFile,
                                     OrbDictionary* context) {
        EXPECT_EQ(*contents, "the PPD's text");
        EXPECT_EQ(PPDFile, queueFile.get());
        EXPECT_TRUE(context && context->empty());
        return makePPDText("changed");
    };
    A::script.updateFromDevice = [](const PPDText&, URI, OrbDictionary*) -> PPDText {
        ADD_FAILURE() << "there is no device on this path";
        return nullptr;
    };
    EXPECT_EQ(textOf(manager.updatedPPDContentsForFile_queueName(path, "office")), "changed");
    EXPECT_TRUE(services->requests.empty());
}

TEST_F(UpdatingFromAQueue, GivesTheFilesOwnBytesWhenNoUpdaterAppliesOrChangesAnything) {
    EXPECT_EQ(textOf(manager.updatedPPDContentsForFile_queueName(path, "office")),
              "the PPD's text");
    useUpdaters<A, B>();
    B::script.isApplicable = [](const OrbPPDFile*) { return false; };
    EXPECT_EQ(textOf(manager.updatedPPDContentsForFile_queueName(path, "office")),
              "the PPD's text");
    EXPECT_EQ(A::script.timesRun, 1);
    EXPECT_EQ(B::script.timesRun, 0);
}

TEST_F(UpdatingFromAQueue, ChainsTheUpdatersAndKeepsTheTextWhereOneGivesNull) {
    useUpdaters<A, B, C>();
    A::script.updateFromPPD =
        C::script.updateFromPPD = [](const PPDText& contents, const OrbPPDFile*, OrbDictionary*) {
            return makePPDText(*contents + "+");
        };
    EXPECT_EQ(textOf(manager.updatedPPDContentsForFile_queueName(path, "office")),
              "the PPD's text++");
    EXPECT_EQ(B::script.timesRun, 1);
}

TEST_F(UpdatingFromAQueue, SharesOneContextWithinARunAndNotBetweenRuns) {
    useUpdaters<A, B>();
    std::vector<std::size_t> entriesSeen;
    A::script.updateFromPPD =
        B::script.updateFromPPD = [&](const PPDText&, const OrbPPDFile*, OrbDictionary* context) {
            entriesSeen.push_back(context->size());
            (*context)["Entry" + std::to_string(context->size())] = 1;
            return PPDText();
        };
    manager.updatedPPDContentsForFile_queueName(path, "office");
    manager.updatedPPDContentsForFile_queueName(path, "office");
    EXPECT_EQ(entriesSeen, (std::vector<std::size_t>{0, 1, 0, 1}));
}

TEST_F(UpdatingFromAQueue, CarriesNothingButTheCurrentTextFromOneUpdaterToTheNext) {
    useUpdaters<A, B, C>();
    std::vector<std::weak_ptr<const std::string>> replaced;
    A::script.updateFromPPD = B::script.updateFromPPD =
        C::script.updateFromPPD = [&](const PPDText& contents, const OrbPPDFile*, OrbDictionary*) {
            for (const auto& earlier : replaced) {
                EXPECT_TRUE(earlier.expired());
            }
            replaced.push_back(contents.bytes());
            return makePPDText(*contents + "+");
        };
    manager.updatedPPDContentsForFile_queueName(path, "office");
    EXPECT_EQ(replaced.size(), 3U);
}

TEST_F(UpdatingFromAQueue, PassesOnTheOutOfRangeErrorAndStaysUsable) {
    useUpdaters<A>();
    A::script.updateFromPPD = [](const PPDText&, const OrbPPDFile*, OrbDictionary*) -> PPDText {
        throw std::out_of_range("an attribute ends at its colon");
    };
    EXPECT_THROW(manager.updatedPPDContentsForFile_queueName(path, "office"), std::out_of_range);
    EXPECT_EQ(A::script.instancesAlive, 0);
    A::script.updateFromPPD = nullptr;
    EXPECT_EQ(textOf(manager.updatedPPDContentsForFile_queueName(path, "office")),
              "the PPD's text");
}

TEST_F(UpdatingFromADevice, ATextInMemoryIsUpdatedLikeAFileAndWithTheStatusOfItsContext) {
    useUpdaters<A>();
    std::shared_ptr<const OrbCSDeviceStatus> seen;
    A::script.updateFromDevice = [&](const PPDText& contents, auto deviceURI, auto* context) {
        seen = OrbPPDUpdatingContext::deviceStatusForURI_inContext(deviceURI, context);
        EXPECT_EQ(deviceURI, "ipp://printer");
        return makePPDText(*contents + "!");
    };
    const auto given = std::make_shared<const Testing::FakeDeviceStatus>();
    EXPECT_EQ(textOf(manager.updatedPPDContentsForContents_PPDFile_deviceURI_context(
                  makePPDText("a text"), *file, "ipp://printer",
                  OrbPPDUpdatingContext::contextWithDeviceStatus_parameters(given, nullptr))),
              "a text!");
    EXPECT_EQ(seen, given);
    EXPECT_TRUE(services->requests.empty());
    EXPECT_TRUE(core->askedPaths.empty());
}

TEST_F(UpdatingFromAQueue, ATextInMemoryIsUpdatedLikeAFile) {
    useUpdaters<A>();
    A::script.updateFromPPD = [&](const PPDText& contents, const OrbPPDFile* PPDFile, auto*) {
        EXPECT_EQ(PPDFile, queueFile.get());
        return makePPDText(*contents + "!");
    };
    EXPECT_EQ(textOf(manager.updatedPPDContentsForContents_PPDFile_queueName(makePPDText("a text"),
                                                                             *file, "office")),
              "a text!");
    EXPECT_EQ(manager.updatedPPDContentsForContents_PPDFile_queueName(makePPDText("a text"), *file,
                                                                      "no such queue"),
              nullptr);
    EXPECT_TRUE(core->askedPaths.empty());
}

}  // namespace
}  // namespace TkPPDUpdating
