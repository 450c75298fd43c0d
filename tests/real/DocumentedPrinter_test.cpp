// The example of docs/ipp-mapping.md, with a real printer.
#include <gtest/gtest.h>

#include <string>

#include "tests/real/SimulatedPrinter.h"
#include "tests/support/CodeBlocks.h"
#include "tests/support/RunProgram.h"

namespace TkPPDUpdating::Testing {
namespace {

std::string withURI(std::string text, const std::string& URI) {
    const std::string documented = "ipp://localhost:18632/ipp/print";
    for (std::size_t at = text.find(documented); at != std::string::npos;
         at = text.find(documented, at + URI.size())) {
        text.replace(at, documented.size(), URI);
    }
    return text;
}

TEST(DocumentedPrinter, GivesTheDocumentedStatus) {
    ASSERT_EQ(SimulatedPrinter::missingPrograms(), "");
    const std::string page = textOfSource("docs/ipp-mapping.md");
    const auto attributes = codeBlocksOf(page, "");
    const auto sessions = codeBlocksOf(page, "console");
    ASSERT_EQ(attributes.size(), 1U);
    ASSERT_EQ(sessions.size(), 1U);

    const SimulatedPrinter printer(attributes[0]);
    const ProgramResult result = runProgram({TKPPDUPDATING_TOOL, "status", printer.URI()});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ("$ tkppdupdate status " + printer.URI() + "\n" + result.standardError +
                  result.standardOutput,
              withURI(sessions[0], printer.URI()));
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
