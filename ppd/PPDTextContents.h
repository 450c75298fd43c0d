#pragma once

#include <memory>
#include <mutex>
#include <string>

namespace TkPPDUpdating {

class OrbPPDLines;
class PPDTextIndex;

/// What stands behind a text: its bytes, or what they are made of. May be used by several threads.
class PPDTextContents {
  public:
    PPDTextContents() = default;
    PPDTextContents(const PPDTextContents&) = delete;
    PPDTextContents& operator=(const PPDTextContents&) = delete;
    virtual ~PPDTextContents() = default;

    /// The bytes, made when somebody asks for them first; never null.
    virtual const std::shared_ptr<const std::string>& bytes() const = 0;

    /// The lines of another text, with changes, that this one is made of; null when the bytes were
    /// there first.
    virtual const OrbPPDLines* changedLines() const { return nullptr; }

    /// The index of the bytes, made when somebody asks for it first; never null.
    const std::shared_ptr<const PPDTextIndex>& index() const;

  private:
    mutable std::once_flag isIndexMade_;
    mutable std::shared_ptr<const PPDTextIndex> index_;
};

}  // namespace TkPPDUpdating
