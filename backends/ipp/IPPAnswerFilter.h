#pragma once

#include <cstddef>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "backends/schemes/DroppedValues.h"

namespace TkPPDUpdating {

/// What is left of an answer.
struct IPPFilteredAnswer {
    /// A message; empty when there is none.
    std::string bytes;
    /// For each attribute of the message, in its order, the syntax of each of its values, one byte
    /// each: libcups says of a set of keywords and names that all of them are of one kind.
    std::vector<std::string> syntaxes;
    /// Whether the printer sent a wanted attribute at all, be it without a value or malformed.
    bool hasWanted = false;
};

/// Takes out of the bytes of an IPP answer (RFC 8010) what was asked for and is well formed, before
/// libcups reads it.
///
/// libcups refuses a whole answer for one malformed value, follows collections as deep as they go
/// and makes objects of hundreds of bytes out of ten: a printer must neither spoil the rest of its
/// answer nor use our stack and memory up. So attributes that nobody asked for are left out, and so
/// is each value whose length or syntax is wrong, that is nested too deep, that is a member outside
/// of a collection or a collection that does not end. Such a collection ends where a record has a
/// name, which members have not (RFC 8010, section 3.1.6), or a delimiter stands: every record
/// tells its own length, so what follows is read as well as after a good value. The pass is linear
/// and keeps nothing but the bytes that it gives back.
class IPPAnswerFilter {
  public:
    /// The most wire-level values that are kept, members of collections included.
    static constexpr std::size_t kMostValues = 100'000;
    /// The deepest collection: media-col-database needs two levels.
    static constexpr std::size_t kDeepestCollection = 8;

    using Names = std::set<std::string, std::less<>>;

    /// `wanted` are the names of the attributes to keep; those of `besides` are kept, too, but
    /// without one of `wanted` the printer has sent nothing that was wanted.
    IPPAnswerFilter(Names wanted, std::size_t mostAttributes, Names besides = {})
        : wanted_(std::move(wanted)),
          besides_(std::move(besides)),
          mostAttributes_(mostAttributes) {}

    /// The bytes of an equal answer with only the wanted, well-formed values in its printer group.
    /// In a set that has others, a value that was dropped leaves a gap in its place: an empty text
    /// or collection, the smallest integer, a resolution of nothing. No bytes, with the reason in
    /// `error`, when the answer is cut short or has too many attributes. Reasons for dropped values
    /// go to `dropped`.
    IPPFilteredAnswer filtered(std::string_view answer, DroppedValues& dropped,
                               std::string& error) const;

  private:
    Names wanted_;
    Names besides_;
    std::size_t mostAttributes_;
};

}  // namespace TkPPDUpdating
