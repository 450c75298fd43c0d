#include "ppd/PPDTextContents.h"

#include "ppd/PPDTextIndex.h"

namespace TkPPDUpdating {

const std::shared_ptr<const PPDTextIndex>& PPDTextContents::index() const {
    std::call_once(isIndexMade_,
                   [this] { index_ = std::make_shared<const PPDTextIndex>(bytes()); });
    return index_;
}

}  // namespace TkPPDUpdating
