#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

class OrbPPDLines;
class PPDTextContents;
class PPDTextIndex;

/// A whole PPD text (UTF-8): immutable and shared, so that it passes from updater to updater
/// without a copy. Null means no text (never an empty one), and two equal values are the same text,
/// not only the same bytes.
///
/// A text knows its lines (`OrbPPDLines`), or which lines of another text it was made of and what
/// was changed; its bytes are put together when somebody asks for them, once. It may be used by
/// several threads.
class TKPPDUPDATING_PUBLIC PPDText {
  public:
    PPDText() = default;
    PPDText(std::nullptr_t) {}  ///< NOLINT(google-explicit-constructor): no text

    explicit operator bool() const { return contents_ != nullptr; }  ///< Whether there is one.
    friend bool operator==(const PPDText&, const PPDText&) = default;
    friend bool operator==(const PPDText& text, std::nullptr_t) { return !text; }
    void reset() { contents_.reset(); }  ///< Makes it null.

    /// The bytes; the text must not be null. They live as long as the text, or a copy of it.
    const std::string& operator*() const { return *bytes(); }
    const std::string* operator->() const { return bytes().get(); }                 ///< Not null.
    const std::string* get() const { return contents_ ? bytes().get() : nullptr; }  ///< Or null.
    /// The same, to be held without the text; the text must not be null.
    const std::shared_ptr<const std::string>& bytes() const;

    /// What one pass over the bytes finds out, made once; the text must not be null.
    const std::shared_ptr<const PPDTextIndex>& index() const;

  private:
    friend class OrbPPDLines;
    friend PPDText makePPDText(std::string content);

    explicit PPDText(std::shared_ptr<const PPDTextContents> contents);

    std::shared_ptr<const PPDTextContents> contents_;
};

/// Makes a text of its own from `content`.
TKPPDUPDATING_PUBLIC PPDText makePPDText(std::string content);

}  // namespace TkPPDUpdating
