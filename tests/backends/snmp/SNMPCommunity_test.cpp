#include "backends/snmp/SNMPCommunity.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>

#include "tests/support/TemporaryDirectory.h"
#include "tests/support/TestDoubles.h"

namespace TkPPDUpdating::Testing {
namespace {

TEST(SNMPCommunity, IsTheFirstOfTheConfiguration) {
    const std::map<std::string, std::string> cases = {
        {"Community secret\n", "secret"},
        {"Address @LOCAL\nCommunity secret", "secret"},
        {"  community\t two words  \r\n", "two words"},
        {"COMMUNITY a\nCommunity b\n", "a"},
        {"Community \\#1 # the first\n", "#1"},
        {"Community a\\b\n", "a\\b"},
        {"Community\nCommunity b\n", "b"},
    };
    for (const auto& [text, community] : cases) {
        EXPECT_EQ(SNMPCommunity::communityInConfiguration(text), community) << text;
    }
}

TEST(SNMPCommunity, IsPublicWhenTheConfigurationNamesNone) {
    for (const char* text : {"", "\n\n", "# Community secret\n", "Address @LOCAL\n",
                             "Community # none\n", "CommunityName x\n", "Communit x\n"}) {
        EXPECT_EQ(SNMPCommunity::communityInConfiguration(text), "public") << text;
    }
}

class ConfiguredCommunity : public testing::Test {
  protected:
    std::string configured() {
        OrbCoreInterface::setEnvironment(std::make_shared<const FakeEnvironment>(
            std::map<std::string, std::string>{{"CUPS_SERVERROOT", root_.path().string()}}));
        return SNMPCommunity::configured(warning_);
    }

    CoreInterfaceScope scope_;
    TemporaryDirectory root_;
    std::string warning_;
};

TEST_F(ConfiguredCommunity, StandsInTheServerRoot) {
    root_.write("snmp.conf", "Community ours\n");
    EXPECT_EQ(configured(), "ours");
    EXPECT_EQ(warning_, "");
}

TEST_F(ConfiguredCommunity, IsPublicWithoutAFile) {
    EXPECT_EQ(configured(), "public");
    EXPECT_EQ(warning_, "");
}

TEST_F(ConfiguredCommunity, SaysWhenTheFileCannotBeRead) {
    std::filesystem::create_directory(root_.path() / "snmp.conf");
    EXPECT_EQ(configured(), "public");
    EXPECT_EQ(warning_, (root_.path() / "snmp.conf").string() +
                            " cannot be read, so the community \"public\" was taken");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
