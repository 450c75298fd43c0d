// The sample PPDs after a run, as the scheduler and applications read them through libcups.
#include <cups/ppd.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

#include "tests/updaters/capabilities/DuplexSamples.h"

namespace TkPPDUpdating::Testing {
namespace {

struct Close {
    void operator()(ppd_file_t* file) const { ::ppdClose(file); }
};
using LibcupsPPD = std::unique_ptr<ppd_file_t, Close>;

/// The sample after a run with a device that gives that answer, with its defaults marked.
LibcupsPPD updated(std::string_view name, std::optional<bool> isInstalled) {
    const PPDText text = PPDTextWithContentsOfFile(samplePath(name));
    if (!text) {
        return nullptr;
    }
    const TemporaryDirectory folder;
    const std::string file =
        folder.write("sample.ppd", *updatedSample(text, {"answer", isInstalled}));
    LibcupsPPD ppd(::ppdOpenFile(file.c_str()));
    if (ppd) {
        ::ppdMarkDefaults(ppd.get());
    }
    return ppd;
}

bool hasOption(const LibcupsPPD& ppd, const char* name) {
    return ::ppdFindOption(ppd.get(), name) != nullptr;
}

std::string markedChoice(const LibcupsPPD& ppd, const char* option) {
    const ppd_choice_t* const choice = ::ppdFindMarkedChoice(ppd.get(), option);
    return choice ? choice->choice : "";
}

int constraintsOf(const LibcupsPPD& ppd, std::string_view option) {
    int count = 0;
    for (int i = 0; i < ppd->num_consts; ++i) {
        count += option == ppd->consts[i].option1 || option == ppd->consts[i].option2 ? 1 : 0;
    }
    return count;
}

bool hasGroup(const LibcupsPPD& ppd, std::string_view name) {
    for (int i = 0; i < ppd->num_groups; ++i) {
        if (name == ppd->groups[i].name || name == ppd->groups[i].text) {
            return true;
        }
    }
    return false;
}

int duplexPageSizes(const LibcupsPPD& ppd) {
    int count = 0;
    for (int i = 0; i < ppd->num_sizes; ++i) {
        count += std::string_view(ppd->sizes[i].name).ends_with(".ZrDuplex") ? 1 : 0;
    }
    return count;
}

void expectNoTraceOfDuplex(const LibcupsPPD& ppd) {
    EXPECT_FALSE(hasOption(ppd, "Duplex"));
    EXPECT_FALSE(hasOption(ppd, "ZrAutoDuplexerInstalled"));
    EXPECT_FALSE(hasGroup(ppd, "ZrTwoSidedPrinting"));
    EXPECT_EQ(constraintsOf(ppd, "Duplex"), 0);
    EXPECT_EQ(::ppdFindAttr(ppd.get(), "DefaultDuplex", nullptr), nullptr);
    EXPECT_EQ(::ppdConflicts(ppd.get()), 0);
}

void expectInstallableDuplex(const LibcupsPPD& ppd, std::string_view defaultChoice) {
    ASSERT_TRUE(hasOption(ppd, "Duplex"));
    const ppd_option_t* const option = ::ppdFindOption(ppd.get(), "ZrAutoDuplexerInstalled");
    ASSERT_TRUE(option);
    EXPECT_EQ(option->ui, PPD_UI_BOOLEAN);
    EXPECT_EQ(option->num_choices, 2);
    EXPECT_EQ(markedChoice(ppd, "ZrAutoDuplexerInstalled"), defaultChoice);
    EXPECT_EQ(::ppdConflicts(ppd.get()), 0) << "the defaults go together";
    ::ppdMarkOption(ppd.get(), "ZrAutoDuplexerInstalled", "False");
    EXPECT_EQ(::ppdConflicts(ppd.get()), 0) << "one side goes without the duplexer";
    ::ppdMarkOption(ppd.get(), "Duplex", "DuplexNoTumble");
    EXPECT_GT(::ppdConflicts(ppd.get()), 0) << "two sides need the duplexer";
    ::ppdMarkOption(ppd.get(), "ZrAutoDuplexerInstalled", "True");
    EXPECT_EQ(::ppdConflicts(ppd.get()), 0) << "two sides go with the duplexer";
}

TEST(LibcupsView, OfficePrinterWithADuplexerHasTheOption) {
    for (const auto answer : {std::optional(true), std::optional<bool>()}) {
        const LibcupsPPD ppd = updated("zr-office.ppd", answer);
        ASSERT_TRUE(ppd);
        expectInstallableDuplex(ppd, "True");
    }
}

TEST(LibcupsView, OfficePrinterWithoutADuplexerHasNoTraceOfIt) {
    const LibcupsPPD ppd = updated("zr-office.ppd", false);
    ASSERT_TRUE(ppd);
    expectNoTraceOfDuplex(ppd);
    EXPECT_TRUE(hasOption(ppd, "DuplexUnitFan"));
    EXPECT_GT(constraintsOf(ppd, "DuplexUnitFan"), 0);
}

TEST(LibcupsView, CompactPrinterThatIsSilentHasTheOption) {
    const LibcupsPPD ppd = updated("zr-compact.ppd", std::nullopt);
    ASSERT_TRUE(ppd);
    EXPECT_GT(duplexPageSizes(ppd), 0);
    expectInstallableDuplex(ppd, "False");
}

TEST(LibcupsView, CompactPrinterWithTheUnitKeepsDuplexWithoutAnInstallableOption) {
    const LibcupsPPD ppd = updated("zr-compact.ppd", true);
    ASSERT_TRUE(ppd);
    EXPECT_TRUE(hasOption(ppd, "Duplex"));
    EXPECT_FALSE(hasOption(ppd, "ZrAutoDuplexerInstalled"));
    EXPECT_GT(duplexPageSizes(ppd), 0);
}

TEST(LibcupsView, CompactPrinterWithoutTheUnitHasNoTraceOfItNorItsPageSizes) {
    const LibcupsPPD ppd = updated("zr-compact.ppd", false);
    ASSERT_TRUE(ppd);
    expectNoTraceOfDuplex(ppd);
    EXPECT_EQ(duplexPageSizes(ppd), 0);
    EXPECT_GT(ppd->num_sizes, 0);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
