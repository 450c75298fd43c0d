#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <string>

#include "tests/support/CodeBlocks.h"

namespace TkPPDUpdating::Testing {
namespace {

namespace fs = std::filesystem;

/// Whether a page may name that file or folder, from the root of the sources or from its own
/// folder; a class is named without its ending.
bool exists(const std::string& path, const fs::path& page) {
    const fs::path root = TKPPDUPDATING_SOURCE_DIR;
    return fs::exists(root / path) || fs::exists(root / (path + ".h")) ||
           fs::exists(root / page.parent_path() / path);
}

TEST(NamedFiles, AreThere) {
    // Folders of the sources; "ppd/NAME.ppd" stands for a file of the CUPS server root.
    const std::regex named(
        "\\b(backends|benchmarks|c_interface|cmake|core_interface|docs|examples|exports|fuzz|"
        "manager|packaging|ppd|resources|samples|"
        "scripts|sync|tests|text|tools|updaters)/(?!NAME)[A-Za-z0-9_./-]*[A-Za-z0-9_/]");
    for (const std::string page :
         {"README.md", "CONTRIBUTING.md", "SECURITY.md", "docs/architecture.md", "docs/README.md",
          "docs/fleet.md", "docs/versions.md", "docs/adding-a-scheme.md", "docs/c-interface.md",
          "docs/ipp-mapping.md", "docs/one-line.md", "docs/recorded-status.md", "docs/sync.md",
          "samples/README.md"}) {
        const std::string text = textOfSource(page);
        for (std::sregex_iterator each(text.begin(), text.end(), named), end; each != end; ++each) {
            const bool isPartOfLongerPath =
                each->position() > 0 &&
                std::string("/.").find(text[static_cast<std::size_t>(each->position()) - 1]) !=
                    std::string::npos;
            if (!isPartOfLongerPath) {
                EXPECT_TRUE(exists(each->str(), page)) << page << " names " << each->str();
            }
        }
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
