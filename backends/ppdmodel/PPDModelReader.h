#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "backends/ppdmodel/PPDModelAttribute.h"
#include "ppd/PPDTextIndex.h"

namespace TkPPDUpdating {

/// Reads the attributes of a PPD text line by line (PPD specification 4.3, section 3: the grammar
/// of a main-keyword line).
class PPDModelReader {
  public:
    /// The index must outlive the reader, and its text all attributes.
    explicit PPDModelReader(const PPDTextIndex& index) : index_(&index), text_(*index.text()) {}

    /// False, and the reason with the place in `reason`, when the text is no PPD, holds a NUL byte,
    /// or a quoted value in it never closes.
    bool isPPD(std::string& reason) const;

    /// The attribute that begins on the line; nothing when none does.
    std::optional<PPDModelAttribute> attributeAt(PPDTextIndex::Line line) const;

  private:
    bool beginsAsPPD(std::string& reason) const;
    std::string_view quotedValue(std::size_t start) const;

    const PPDTextIndex* index_;
    std::string_view text_;
};

}  // namespace TkPPDUpdating
