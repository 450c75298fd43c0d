#include "ppd/PPDText.h"

#include <mutex>
#include <optional>
#include <utility>

#include "ppd/OrbPPDLines.h"
#include "ppd/PPDTextIndex.h"

namespace TkPPDUpdating {

/// Either the bytes were there first, or the lines of another text with changes.
struct PPDText::Contents {
    explicit Contents(std::string content)
        : bytes(std::make_shared<const std::string>(std::move(content))) {}
    explicit Contents(OrbPPDLines changedLines) : lines(std::move(changedLines)) {}

    std::optional<OrbPPDLines> lines;
    mutable std::once_flag areBytesMade;
    mutable std::shared_ptr<const std::string> bytes;
    mutable std::once_flag isIndexMade;
    mutable std::shared_ptr<const PPDTextIndex> index;
};

PPDText::PPDText(std::shared_ptr<const Contents> contents) : contents_(std::move(contents)) {}

PPDText::PPDText(OrbPPDLines lines)
    : contents_(std::make_shared<const Contents>(std::move(lines))) {}

const std::shared_ptr<const std::string>& PPDText::bytes() const {
    const Contents& contents = *contents_;
    if (contents.lines) {
        std::call_once(contents.areBytesMade, [&contents] {
            contents.bytes = std::make_shared<const std::string>(contents.lines->bytes());
        });
    }
    return contents.bytes;
}

const std::shared_ptr<const PPDTextIndex>& PPDText::index() const {
    std::call_once(contents_->isIndexMade,
                   [this] { contents_->index = std::make_shared<const PPDTextIndex>(bytes()); });
    return contents_->index;
}

const OrbPPDLines* PPDText::changedLines() const {
    return contents_->lines ? &*contents_->lines : nullptr;
}

PPDText makePPDText(std::string content) {
    return PPDText(std::make_shared<const PPDText::Contents>(std::move(content)));
}

}  // namespace TkPPDUpdating
