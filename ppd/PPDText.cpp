#include "ppd/PPDText.h"

#include <utility>

#include "ppd/PPDTextContents.h"

namespace TkPPDUpdating {

namespace {

class BytesOfText : public PPDTextContents {
  public:
    explicit BytesOfText(std::string content)
        : bytes_(std::make_shared<const std::string>(std::move(content))) {}

    const std::shared_ptr<const std::string>& bytes() const override { return bytes_; }

  private:
    std::shared_ptr<const std::string> bytes_;
};

}  // namespace

PPDText::PPDText(std::shared_ptr<const PPDTextContents> contents)
    : contents_(std::move(contents)) {}

const std::shared_ptr<const std::string>& PPDText::bytes() const {
    return contents_->bytes();
}

const std::shared_ptr<const PPDTextIndex>& PPDText::index() const {
    return contents_->index();
}

PPDText makePPDText(std::string content) {
    return PPDText(std::make_shared<const BytesOfText>(std::move(content)));
}

}  // namespace TkPPDUpdating
