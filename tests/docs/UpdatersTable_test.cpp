#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "manager/OrbPPDConcreteUpdatingManager.h"
#include "tests/support/CodeBlocks.h"

namespace TkPPDUpdating::Testing {
namespace {

/// The first column of the table below the page's heading "The updaters".
std::vector<std::string> classesOfPage() {
    constexpr std::string_view kRow = "| OrbPPD";
    std::vector<std::string> classes;
    std::istringstream page(textOfSource("docs/architecture.md"));
    bool isInSection = false;
    for (std::string line; std::getline(page, line);) {
        isInSection = line.starts_with("## ") ? line == "## The updaters" : isInSection;
        if (isInSection && line.starts_with(kRow)) {
            classes.push_back(line.substr(2, line.find(' ', 2) - 2));
        }
    }
    return classes;
}

TEST(UpdatersTable, NamesTheClassesOfAFreshManagerInTheOrderInWhichTheyRun) {
    std::vector<std::string> classes;
    const OrbPPDConcreteUpdatingManager fresh;
    for (const OrbClass* each : fresh.registeredClasses()) {
        classes.emplace_back(each->name());
    }
    EXPECT_EQ(classesOfPage(), classes);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
