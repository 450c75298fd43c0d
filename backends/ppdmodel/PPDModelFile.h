#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "backends/ppdmodel/PPDModelAttribute.h"
#include "core_interface/OrbPPDFile.h"
#include "ppd/PPDText.h"

namespace TkPPDUpdating {

/// A parsed PPD (PPD specification 4.3, CUPS PPD extensions; the accepted grammar is in
/// docs/architecture.md), which reads lines of its text when they are asked for. Keywords are
/// compared exactly.
class PPDModelFile : public OrbPPDFile {
  public:
    /// Parses a text. Null when it is null, not valid UTF-8 or no PPD; the reason then goes to
    /// `*reason` when that is not null: one phrase with the place (line from 1, byte from 0),
    /// without a file name.
    static std::shared_ptr<const PPDModelFile> fileWithText(PPDText text,
                                                            std::string* reason = nullptr);

    /// Reads and parses the file at `path`. Null and the reason as above, also when the file cannot
    /// be read.
    static std::shared_ptr<const PPDModelFile> fileWithContentsOfFile(
        const std::string& path, std::string* reason = nullptr);

    PPDModelFile(const PPDModelFile&) = delete;
    PPDModelFile& operator=(const PPDModelFile&) = delete;
    ~PPDModelFile() override;

    const OrbPPDOption* optionForName(std::string_view optionName) const override;
    std::vector<const OrbPPDAttribute*> attributesForName(std::string_view name) const override;
    std::vector<const OrbPPDAttribute*> attributesForName_spec(
        std::string_view name, std::string_view spec) const override;
    const OrbPPDPageSize* pageSizeForName(std::string_view name) const override;

    /// The text that was parsed.
    const PPDText& text() const;

    /// All attributes, in file order, translation lines included. Valid as long as the model.
    std::span<const PPDModelAttribute> attributes() const;

    /// The keywords of all options (UI keywords), in file order, each once.
    std::vector<std::string_view> optionNames() const;

    /// The main keywords of all attributes, sorted, each once.
    std::vector<std::string_view> mainKeywords() const;

  private:
    struct Contents;
    explicit PPDModelFile(std::unique_ptr<Contents> contents);
    static std::shared_ptr<const PPDModelFile> fileWithValidText(PPDText text, std::string& reason);

    std::unique_ptr<Contents> contents_;
};

}  // namespace TkPPDUpdating
