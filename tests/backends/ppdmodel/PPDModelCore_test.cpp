#include "backends/ppdmodel/PPDModelCore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <any>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "backends/schemes/PlainICCProfile.h"
#include "core_interface/OrbCoreInterface.h"
#include "core_interface/TkCSKeys.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/TestDoubles.h"

namespace TkPPDUpdating {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

const std::string kPPD = "*PPD-Adobe: \"4.3\"\n*A: x\n";

/// A core over a server root of its own.
class PPDModelCoreQueues : public testing::Test {
  protected:
    PPDModelCoreQueues() {
        OrbCoreInterface::setEnvironment(std::make_shared<const Testing::FakeEnvironment>(
            std::map<std::string, std::string>{{"CUPS_SERVERROOT", root.path().string()}}));
    }

    std::string reasonFor(const std::string& queueName) {
        std::string reason;
        EXPECT_FALSE(core.queuePPDFile(queueName, reason)) << queueName;
        EXPECT_FALSE(core.PPDFileForQueueWithName(queueName)) << queueName;
        return reason;
    }

    Testing::CoreInterfaceScope scope;
    Testing::TemporaryDirectory root;
    PPDModelCore core;
};

TEST_F(PPDModelCoreQueues, FindsTheQueuesPPDUnderTheServerRoot) {
    root.write("ppd/office.ppd", kPPD);
    const auto file = core.PPDFileForQueueWithName("office");
    ASSERT_TRUE(file);
    EXPECT_THAT(file->attributesForName("A"), SizeIs(1));
}

TEST_F(PPDModelCoreQueues, FindsAQueueWhoseNameIsNotASCII) {
    root.write("ppd/B\xC3\xBCro.ppd", kPPD);
    EXPECT_TRUE(core.PPDFileForQueueWithName("B\xC3\xBCro"));
}

TEST_F(PPDModelCoreQueues, NamesTheFileOfAQueueThatIsNotThere) {
    EXPECT_EQ(reasonFor("office"),
              root.path().string() + "/ppd/office.ppd: No such file or directory");
}

TEST_F(PPDModelCoreQueues, NamesTheFileThatIsNoPPD) {
    const std::string path = root.write("ppd/office.ppd", "<html>");
    EXPECT_EQ(reasonFor("office"), path + ": is no PPD: line 1 does not begin with \"*PPD-Adobe\"");
}

TEST_F(PPDModelCoreQueues, LooksUnderEtcCUPSWhenNoServerRootIsSet) {
    for (const std::map<std::string, std::string>& variables :
         {std::map<std::string, std::string>{},
          std::map<std::string, std::string>{{"CUPS_SERVERROOT", ""}}}) {
        OrbCoreInterface::setEnvironment(
            std::make_shared<const Testing::FakeEnvironment>(variables));
        std::string reason;
        EXPECT_FALSE(core.queuePPDFile("no-such-queue-of-any-machine", reason));
        EXPECT_EQ(reason.rfind("/etc/cups/ppd/no-such-queue-of-any-machine.ppd: ", 0), 0U)
            << reason;
    }
}

TEST_F(PPDModelCoreQueues, OpensNothingForANameThatNoQueueCanHave) {
    root.write("ppd/ok.ppd", kPPD);
    root.write("secret.ppd", kPPD);
    bool asked = false;
    const PPDModelCore withSource([&asked](const std::string&, std::string&) {
        asked = true;
        return makePPDText(kPPD);
    });
    for (const char* name : {"", ".", "..", "../secret", "../ppd/ok", "/ok", "a b"}) {
        EXPECT_EQ(reasonFor(name), "cannot be the name of a queue") << name;
        EXPECT_FALSE(withSource.PPDFileForQueueWithName(name)) << name;
    }
    EXPECT_FALSE(asked);
}

TEST_F(PPDModelCoreQueues, AsksTheSourceBeforeTheServerRoot) {
    root.write("ppd/office.ppd", "<html>");
    std::vector<std::string> asked;
    const PPDModelCore withSource([&asked](const std::string& name, std::string&) {
        asked.push_back(name);
        return makePPDText(kPPD);
    });
    EXPECT_TRUE(withSource.PPDFileForQueueWithName("office"));
    EXPECT_THAT(asked, ElementsAre("office"));
}

TEST_F(PPDModelCoreQueues, LooksNowhereElseWhenTheSourceAnswersThatThereIsNone) {
    root.write("ppd/office.ppd", kPPD);
    const PPDModelCore withSource([](const std::string&, std::string& reason) {
        reason = "the scheduler has no PPD for it";
        return PPDText();
    });
    std::string reason;
    EXPECT_FALSE(withSource.queuePPDFile("office", reason));
    EXPECT_EQ(reason, "the scheduler has no PPD for it");
}

TEST_F(PPDModelCoreQueues, LooksUnderTheServerRootWhenTheSourceDoesNotAnswer) {
    const PPDModelCore withSource([](const std::string&, std::string& reason) {
        reason = "the scheduler does not answer";
        return std::nullopt;
    });
    root.write("ppd/office.ppd", kPPD);
    EXPECT_TRUE(withSource.PPDFileForQueueWithName("office"));
    std::string reason;
    EXPECT_FALSE(withSource.queuePPDFile("other", reason));
    EXPECT_EQ(reason, "the scheduler does not answer; " + root.path().string() +
                          "/ppd/other.ppd: No such file or directory");
}

TEST_F(PPDModelCoreQueues, GivesNothingWhenTheSourcesTextIsNoPPD) {
    root.write("ppd/office.ppd", kPPD);
    const PPDModelCore withSource(
        [](const std::string&, std::string&) { return makePPDText("*PPD-Adobe: \xFF"); });
    std::string reason;
    EXPECT_FALSE(withSource.queuePPDFile("office", reason));
    EXPECT_EQ(reason, "the queue's PPD is not valid UTF-8 at byte 12");
}

TEST(PPDModelCore, ParsesAPPDFile) {
    const Testing::TemporaryDirectory directory;
    const PPDModelCore core;
    EXPECT_TRUE(core.PPDFileWithContentsOfFile(directory.write("a.ppd", kPPD)));
    EXPECT_FALSE(core.PPDFileWithContentsOfFile(directory.write("b.ppd", "")));
    EXPECT_FALSE(core.PPDFileWithContentsOfFile((directory.path() / "c.ppd").string()));
    EXPECT_FALSE(core.PPDFileWithContentsOfFile(""));
}

TEST(PPDModelCore, MakesACustomMediaTypeOfItsParameters) {
    const PPDModelCore core;
    const std::shared_ptr<const OrbICCProfile> profile =
        std::make_shared<const PlainICCProfile>("file:///p", "q", std::nullopt);
    const auto type = core.customMediaTypeWithPPDParameters(
        {{std::string(kTkPPDCustomMediaTypeCodeNameKey), std::string("custom1")},
         {std::string(kTkPPDCustomMediaTypeNameKey), std::string("Glossy")},
         {std::string(kTkPPDCustomMediaTypeIDKey), std::string("1201")},
         {std::string(kTkPPDCustomMediaTypeParentIDKey), std::string("3")},
         {std::string(kTkPPDCustomMediaTypeICCProfileKey), profile}});
    ASSERT_TRUE(type);
    EXPECT_EQ(type->name(), "Glossy");
    EXPECT_EQ(type->mediaID(), "1201");
    EXPECT_EQ(type->parentMediaID(), "3");
    EXPECT_EQ(type->ICCProfile(), profile);
}

TEST(PPDModelCore, TakesAParameterOfAnotherTypeAsMissing) {
    const PPDModelCore core;
    const auto type = core.customMediaTypeWithPPDParameters(
        {{std::string(kTkPPDCustomMediaTypeNameKey), "a literal is no std::string"},
         {std::string(kTkPPDCustomMediaTypeIDKey), 1201},
         {std::string(kTkPPDCustomMediaTypeParentIDKey), std::any()},
         {std::string(kTkPPDCustomMediaTypeICCProfileKey), std::string("file:///p")}});
    ASSERT_TRUE(type);
    EXPECT_EQ(type->name(), std::nullopt);
    EXPECT_EQ(type->mediaID(), std::nullopt);
    EXPECT_EQ(type->parentMediaID(), std::nullopt);
    EXPECT_FALSE(type->ICCProfile());
    EXPECT_TRUE(core.customMediaTypeWithPPDParameters({}));
}

TEST(PPDModelCore, MakesAProfileOfItsParameters) {
    const PPDModelCore core;
    const auto profile = core.profileWithPPDParameters(
        {{std::string(kTkPPDProfileNameKey), std::string("Gloss")},
         {std::string(kTkPPDProfileURLKey), std::string("file:///gloss.icc")},
         {std::string(kTkPPDProfileQualifierVer2Key), std::string("q1")}});
    ASSERT_TRUE(profile);
    EXPECT_EQ(profile->URL(), "file:///gloss.icc");
    EXPECT_EQ(profile->qualifierVer2(), "q1");
    EXPECT_EQ(profile->profileID(), std::nullopt);
    const auto empty = core.profileWithPPDParameters({{std::string(kTkPPDProfileURLKey), 7}});
    ASSERT_TRUE(empty);
    EXPECT_EQ(empty->URL(), std::nullopt);
    EXPECT_EQ(empty->qualifierVer2(), std::nullopt);
}

TEST(PPDModelCore, ComparesProfilesByURLQualifierAndNumber) {
    const PlainICCProfile profile("file:///p", "q", 7);
    EXPECT_TRUE(profile.isEqual(PlainICCProfile("file:///p", "q", 7)));
    EXPECT_FALSE(profile.isEqual(PlainICCProfile("file:///P", "q", 7)));
    EXPECT_FALSE(profile.isEqual(PlainICCProfile("file:///p", "r", 7)));
    EXPECT_FALSE(profile.isEqual(PlainICCProfile("file:///p", "q", 8)));
    EXPECT_FALSE(profile.isEqual(PlainICCProfile("file:///p", "q", std::nullopt)));
    EXPECT_FALSE(profile.isEqual(PlainICCProfile(std::nullopt, "q", 7)));
    EXPECT_FALSE(profile.isEqual(PlainICCProfile("file:///p", std::nullopt, 7)));
    EXPECT_TRUE(PlainICCProfile({}, {}, {}).isEqual(PlainICCProfile({}, {}, {})));
}

TEST(PPDModelCore, WritesTheQualifierOfASpecifierInDecimal) {
    const PPDModelCore core;
    EXPECT_EQ(core.specifierVer2WithProfileID(0)->CUPSQualifier(), "0");
    EXPECT_EQ(core.specifierVer2WithProfileID(UINT64_MAX)->CUPSQualifier(), "18446744073709551615");
}

TEST(PPDModelCore, ServesTheClassOperationsOnceItIsSet) {
    const Testing::CoreInterfaceScope scope;
    const Testing::TemporaryDirectory directory;
    const std::string path = directory.write("ppd/office.ppd", kPPD);
    OrbCoreInterface::setEnvironment(std::make_shared<const Testing::FakeEnvironment>(
        std::map<std::string, std::string>{{"CUPS_SERVERROOT", directory.path().string()}}));
    OrbCoreInterface::setCore(std::make_shared<const PPDModelCore>());
    EXPECT_TRUE(OrbPPDFile::PPDFileWithContentsOfFile(path));
    EXPECT_TRUE(OrbPPDFile::PPDFileForQueueWithName("office"));
    EXPECT_TRUE(OrbCustomMediaType::customMediaTypeWithPPDParameters({}));
    EXPECT_TRUE(OrbICCProfile::profileWithPPDParameters({}));
    EXPECT_EQ(OrbCUPSICCProfileSpecifier::specifierVer2WithProfileID(7)->CUPSQualifier(), "7");
}

TEST(PPDModelCore, TheClassOperationsGiveNothingWithoutACore) {
    const Testing::CoreInterfaceScope scope;
    OrbCoreInterface::setCore(nullptr);
    EXPECT_FALSE(OrbPPDFile::PPDFileWithContentsOfFile("/dev/null"));
    EXPECT_FALSE(OrbPPDFile::PPDFileForQueueWithName("office"));
    EXPECT_FALSE(OrbCustomMediaType::customMediaTypeWithPPDParameters({}));
    EXPECT_FALSE(OrbICCProfile::profileWithPPDParameters({}));
    EXPECT_FALSE(OrbCUPSICCProfileSpecifier::specifierVer2WithProfileID(7));
}

}  // namespace
}  // namespace TkPPDUpdating
