#pragma once

#include <cups/ipp.h>

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "backends/schemes/DroppedValues.h"
#include "ppd/PPDTextSafety.h"

namespace TkPPDUpdating {

/// A printer's answer to Get-Printer-Attributes (RFC 8011, section 4.2.5), read with suspicion: it
/// gives only values of the syntax that is asked for, and texts only when they can stand in a PPD
/// line; the reason for each value that it drops is kept. Names are those of attributes in the
/// printer group.
class IPPAnswer {
  public:
    /// Texts longer than this (bytes) are dropped: no name that a PPD shows is nearly as long.
    static constexpr std::size_t kLongestText = 255;

    /// `answer` is not owned and may be null; it must outlive the object. `syntaxes` are those that
    /// `IPPAnswerFilter` saw; without them, libcups's word for the whole set counts. `dropped`
    /// holds the reasons for what was dropped before, and the names of attributes that were not
    /// asked for.
    explicit IPPAnswer(ipp_t* answer, DroppedValues dropped = DroppedValues(),
                       std::vector<std::string> syntaxes = {})
        : answer_(answer), dropped_(std::move(dropped)), syntaxes_(std::move(syntaxes)) {}

    struct Text {
        std::string text;
        /// Whether it has the syntax of a name rather than of a keyword (RFC 8011, section 5.1).
        bool isName = false;
    };

    /// The first attribute of that name with one of the syntaxes, or null. Others of the name are
    /// dropped; an out-of-band value ("no-value", "unknown") is not reported, and no error.
    ipp_attribute_t* attribute(const std::string& name, std::initializer_list<ipp_tag_t> accepted);

    /// Keywords and names, one element for each value, in the printer's order; nothing for one that
    /// was dropped. Nothing when the attribute is missing or of another syntax.
    std::optional<std::vector<std::optional<Text>>> keywordsOrNames(const std::string& name);

    /// Texts, names, keywords or octet strings as they are, one element for each value, in the
    /// printer's order; nothing for one that is empty. For what is only compared, and for lists of
    /// fields: what is used of them goes through `usable`. Empty when the attribute is missing.
    std::vector<std::optional<std::string>> uncheckedTexts(const std::string& name);

    /// The text, when it may be handed over as one of that kind; else nothing, with the reason kept
    /// under that place.
    std::optional<std::string> usable(std::string_view text, PrinterText kind,
                                      const std::string& place);

    /// Integers, in the printer's order; empty when the attribute is missing.
    std::vector<int> integers(const std::string& name);

    /// The collections, in the printer's order, owned by the message.
    std::vector<ipp_t*> collections(const std::string& name);

    /// A member of a collection.
    struct Member {
        /// Nothing when it is missing or dropped.
        std::optional<std::string> text;
        bool isName = false;
        /// Whether it is there and was dropped.
        bool isRefused = false;
    };

    /// One member of a collection (RFC 8010, section 3.1.6), its first value, which is to be a text
    /// of that kind. `place` names the collection in the reason.
    Member member(ipp_t* collection, const char* name, PrinterText kind, const std::string& place);

    /// What the printer says under that name, for people: all values as libcups writes them, any
    /// bytes, cut to `longest` with "..." at the end. Nothing when the attribute is missing.
    std::optional<std::string> shownValue(const char* name, std::size_t longest) const;

    DroppedValues& dropped() { return dropped_; }

  private:
    std::optional<std::string> text(ipp_attribute_t* attribute, int index, const std::string& place,
                                    PrinterText kind = PrinterText::plain);
    bool isName(ipp_attribute_t* attribute, int index) const;

    ipp_t* answer_;
    DroppedValues dropped_;
    std::vector<std::string> syntaxes_;
};

}  // namespace TkPPDUpdating
