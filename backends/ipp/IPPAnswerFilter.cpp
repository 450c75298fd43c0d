#include "backends/ipp/IPPAnswerFilter.h"

#include <algorithm>
#include <array>
#include <optional>

#include "text/ASCII.h"

namespace TkPPDUpdating {

namespace {

// RFC 8010, section 3.5: delimiter and value tags.
using Tag = unsigned char;
constexpr Tag kEndOfAttributes = 0x03;
constexpr Tag kPrinterGroup = 0x04;
constexpr Tag kFirstValue = 0x10;
constexpr Tag kLastOutOfBand = 0x1F;
constexpr Tag kInteger = 0x21;
constexpr Tag kBoolean = 0x22;
constexpr Tag kEnum = 0x23;
constexpr Tag kOctetString = 0x30;
constexpr Tag kDateTime = 0x31;
constexpr Tag kResolution = 0x32;
constexpr Tag kRangeOfInteger = 0x33;
constexpr Tag kBeginCollection = 0x34;
constexpr Tag kTextWithLanguage = 0x35;
constexpr Tag kNameWithLanguage = 0x36;
constexpr Tag kEndCollection = 0x37;
constexpr Tag kText = 0x41;
constexpr Tag kName = 0x42;
constexpr Tag kFirstString = kText;
constexpr Tag kReservedString = 0x43;
constexpr Tag kLastString = 0x49;
constexpr Tag kMemberName = 0x4A;

constexpr std::size_t kHeaderLength = 8;
/// RFC 8011, section 5.1: no text, URI or octet string is longer.
constexpr std::size_t kLongestString = 1023;

bool isString(Tag tag) {
    return (tag >= kFirstString && tag <= kLastString && tag != kReservedString) ||
           tag == kTextWithLanguage || tag == kNameWithLanguage;
}

bool isOutOfBand(Tag tag) {
    return tag >= kFirstValue && tag <= kLastOutOfBand;
}

std::size_t lengthAt(std::string_view bytes, std::size_t at) {
    return static_cast<std::size_t>(static_cast<unsigned char>(bytes[at])) << 8U |
           static_cast<unsigned char>(bytes[at + 1]);
}

/// A language and a text, each behind its length, and nothing else: the text. Nothing for other
/// bytes.
std::optional<std::string_view> textBehindLanguage(std::string_view value) {
    if (value.size() < 4) {
        return std::nullopt;
    }
    const std::size_t language = lengthAt(value, 0);
    const bool isWhole = value.size() >= 4 + language &&
                         value.size() == 4 + language + lengthAt(value, 2 + language);
    return isWhole ? std::optional(value.substr(4 + language)) : std::nullopt;
}

/// RFC 8011, section 5.1.16: dots per inch or per centimetre. libcups hands any other on as a value
/// of an enumeration that has none for it.
bool isResolutionUnit(char unit) {
    return unit == '\x03' || unit == '\x04';
}

bool hasLanguage(Tag tag) {
    return tag == kTextWithLanguage || tag == kNameWithLanguage;
}

/// The same syntax for a value whose language was left out.
Tag withoutLanguage(Tag tag) {
    return tag == kTextWithLanguage ? kText : tag == kNameWithLanguage ? kName : tag;
}

/// RFC 8011, section 5.1.4, and capital letters: libcups (2.4.20) refuses an answer as a whole for
/// a name with any other.
bool isCharacterOfName(char character) {
    return isASCIILetterOrDigit(character) || character == '-' || character == '.' ||
           character == '_';
}

/// The one length of all values of the syntax (RFC 8010, section 3.9); nothing when it has none.
std::optional<std::size_t> fixedLengthOf(Tag tag) {
    switch (tag) {
        case kInteger:
        case kEnum:
            return 4;
        case kBoolean:
            return 1;
        case kDateTime:
            return 11;
        case kResolution:
            return 9;
        case kRangeOfInteger:
            return 8;
        case kBeginCollection:
        case kEndCollection:
            return 0;
        default:
            return isOutOfBand(tag) ? std::optional<std::size_t>(0) : std::nullopt;
    }
}

const char* reasonStringIsMalformed(Tag tag, std::string_view value) {
    if (value.size() > kLongestString) {
        return "is longer than 1023 bytes";
    }
    const auto text = hasLanguage(tag) ? textBehindLanguage(value) : std::optional(value);
    if (!text) {
        return "is no text with its language";
    }
    // libcups would end the text there.
    const bool hasNUL = tag != kOctetString && text->find('\0') != std::string_view::npos;
    return hasNUL ? "has the character U+0000" : nullptr;
}

const char* reasonValueIsMalformed(Tag tag, std::string_view value) {
    if (const auto length = fixedLengthOf(tag)) {
        if (value.size() != *length) {
            return "has the wrong length for its syntax";
        }
        return tag == kResolution && !isResolutionUnit(value.back())
                   ? "has a unit that IPP does not know"
                   : nullptr;
    }
    return isString(tag) || tag == kOctetString ? reasonStringIsMalformed(tag, value)
                                                : "has a syntax that IPP does not know";
}

/// What stands in a set for a value that was taken out, so that the others keep their places:
/// nothing that a reader of the set would take for a value. As in the message, with the lengths of
/// name and value in front.
std::string placeholder(Tag syntax) {
    const auto value = [syntax](std::string_view bytes) {
        std::string record{static_cast<char>(syntax), '\0', '\0', '\0',
                           static_cast<char>(bytes.size())};
        return record += bytes;
    };
    using namespace std::string_view_literals;
    switch (syntax) {
        case kInteger:
        case kEnum:
            return value("\x80\0\0\0"sv);  // The smallest number: no level, no state.
        case kBoolean:
            return value("\0"sv);
        case kDateTime:
            return value(std::string(11, '\0'));
        case kResolution:
            return value("\0\0\0\0\0\0\0\0\3"sv);  // No dots, in a unit that there is.
        case kRangeOfInteger:
            return value(std::string(8, '\0'));
        case kBeginCollection:
            return value({}) +
                   std::string{static_cast<char>(kEndCollection), '\0', '\0', '\0', '\0'};
        default:
            return value({});  // The empty text, which is no name of anything.
    }
}

/// The values of one set must have one syntax; libcups takes different kinds of text together.
bool canStandInOneSet(Tag first, Tag other) {
    return first == other || (isString(first) && isString(other));
}

/// One tag with its name and value, as it stands in the message.
struct Record {
    Tag tag = 0;
    std::string_view name;
    std::string_view value;

    bool isDelimiter() const { return tag < kFirstValue; }
};

/// Splits a message into records.
class Records {
  public:
    explicit Records(std::string_view bytes) : bytes_(bytes) {}

    /// Nothing, with the reason in `error`, when the bytes end too early.
    std::optional<Record> next(std::string& error) {
        const std::size_t start = at_;
        Record record;
        if (at_ >= bytes_.size()) {
            error = "the answer is cut short: it has no end";
            return std::nullopt;
        }
        record.tag = static_cast<Tag>(bytes_[at_++]);
        if (!record.isDelimiter()) {
            const auto name = lengthAndBytes();
            const auto value = name ? lengthAndBytes() : std::nullopt;
            if (!value) {
                error = "the answer is cut short in the value at byte " + std::to_string(start);
                return std::nullopt;
            }
            record.name = *name;
            record.value = *value;
        }
        return record;
    }

  private:
    std::optional<std::string_view> lengthAndBytes() {
        if (bytes_.size() - at_ < 2) {
            return std::nullopt;
        }
        const std::size_t length = lengthAt(bytes_, at_);
        if (bytes_.size() - at_ - 2 < length) {
            return std::nullopt;
        }
        at_ += 2 + length;
        return bytes_.substr(at_ - length, length);
    }

    std::string_view bytes_;
    std::size_t at_ = kHeaderLength;
};

/// The value that is being read: one record, or all those of a collection. Members are held to the
/// same rules as attributes, so that libcups takes the whole value or does not see it.
class Value {
  public:
    /// Takes the next record, which is no delimiter; a name counts for the first one only. False,
    /// for one that can only begin something else, when a collection has not ended.
    bool take(const Record& record) {
        if (depth_ > 0 && !record.name.empty()) {
            fail("is a collection that does not end");
            return false;
        }
        ++records_;
        if (depth_ == 0 && (record.tag == kEndCollection || record.tag == kMemberName)) {
            fail("is a member outside of a collection");
        } else if (record.tag == kEndCollection) {
            fail(reasonValueIsMalformed(record.tag, record.value));
            endMember();
            --depth_;
        } else if (record.tag == kMemberName) {
            takeMemberName(record.value);
        } else {
            takeValue(record);
        }
        if (!reason_) {
            append(record);
        }
        return true;
    }

    /// Ends a collection that a delimiter or the end of the message cuts.
    void cut() { fail("is a collection that does not end"); }

    bool isComplete() const { return depth_ == 0; }
    /// Null for a good value.
    const char* reason() const { return reason_; }
    std::size_t records() const { return records_; }
    /// The records of a good value as they are handed on, the first without its name.
    const std::string& bytes() const { return bytes_; }

  private:
    static constexpr Tag kNoMember = 0;
    static constexpr Tag kNamedMember = 1;

    /// The language of a text is left out, which is of no use here.
    void append(const Record& record) {
        const std::string_view value =
            hasLanguage(record.tag) ? *textBehindLanguage(record.value) : record.value;
        const bool isOfMember = depth_ > 0 && isString(record.tag);
        bytes_ +=
            static_cast<char>(withoutLanguage(isOfMember ? memberSyntax_[depth_] : record.tag));
        bytes_.append(2, '\0');
        bytes_ += static_cast<char>(value.size() >> 8U);
        bytes_ += static_cast<char>(value.size() & 0xFFU);
        bytes_ += value;
    }

    /// Null is no reason.
    void fail(const char* reason) {
        if (!reason_) {
            reason_ = reason;
        }
    }

    void takeMemberName(std::string_view name) {
        constexpr std::size_t kLongestName = 255;
        if (name.empty() || name.size() > kLongestName ||
            !std::ranges::all_of(name, isCharacterOfName)) {
            fail("has a member with a bad name");
        }
        endMember();
        if (depth_ <= IPPAnswerFilter::kDeepestCollection) {
            memberSyntax_[depth_] = kNamedMember;
        }
    }

    /// At the next name, and at the end of the collection.
    void endMember() {
        if (depth_ <= IPPAnswerFilter::kDeepestCollection &&
            memberSyntax_[depth_] == kNamedMember) {
            fail("has a member without a value");
        }
    }

    void takeValue(const Record& record) {
        if (depth_ > 0) {
            checkMemberSet(record.tag);
        }
        fail(reasonValueIsMalformed(record.tag, record.value));
        if (record.tag == kBeginCollection) {
            ++depth_;
            if (depth_ > IPPAnswerFilter::kDeepestCollection) {
                fail("is nested too deep");
            } else {
                memberSyntax_[depth_] = kNoMember;
            }
        }
    }

    void checkMemberSet(Tag tag) {
        if (depth_ > IPPAnswerFilter::kDeepestCollection) {
            return;
        }
        Tag& syntax = memberSyntax_[depth_];
        if (syntax == kNoMember) {
            fail("has a member without a name");
        } else if (syntax == kNamedMember) {
            syntax = tag;
        } else if (!canStandInOneSet(syntax, tag)) {
            fail("has a member with values of different syntaxes");
        }
    }

    std::size_t depth_ = 0;
    std::size_t records_ = 0;
    const char* reason_ = nullptr;
    std::string bytes_;
    /// By depth: the syntax of the member that is being read.
    std::array<Tag, IPPAnswerFilter::kDeepestCollection + 1> memberSyntax_{};
};

/// The attribute that is being read.
struct Attribute {
    std::string_view name;
    bool isKept = false;
    std::size_t count = 0;
    /// Whether a value with the name stands in the result.
    bool isNamed = false;
    /// The syntax of the first value that was kept.
    std::optional<Tag> syntax;
    /// Values that were taken out before it.
    std::size_t leadingGaps = 0;
    /// The first value is an out-of-band one, which is right when it stands alone.
    bool beginsOutOfBand = false;
};

/// One run over an answer.
class Run {
  public:
    Run(const IPPAnswerFilter::Names& wanted, const IPPAnswerFilter::Names& besides,
        std::size_t mostAttributes, DroppedValues& dropped)
        : wanted_(wanted), besides_(besides), mostAttributes_(mostAttributes), dropped_(dropped) {}

    /// No bytes and the reason in `error` when the answer is no whole message.
    IPPFilteredAnswer filter(std::string_view answer, std::string& error) {
        result_.bytes = answer.substr(0, kHeaderLength);
        Records records(answer);
        auto record = records.next(error);
        while (record && record->tag != kEndOfAttributes) {
            if (record->isDelimiter()) {
                group_ = record->tag;
                attribute_.reset();
                record = records.next(error);
            } else {
                record = takeValue(*record, records, error);
            }
        }
        if (!record) {
            return {};
        }
        result_.bytes += static_cast<char>(kEndOfAttributes);
        return std::move(result_);
    }

  private:
    /// Gives the record behind the value; nothing, with the reason in `error`, when there is none
    /// or nothing more is read.
    std::optional<Record> takeValue(const Record& first, Records& records, std::string& error) {
        if (!first.name.empty()) {
            if (++attributes_ > mostAttributes_) {
                error =
                    "the answer has more than " + std::to_string(mostAttributes_) + " attributes";
                return std::nullopt;
            }
            const bool isWanted = group_ == kPrinterGroup && wanted_.contains(first.name);
            attribute_.emplace();
            attribute_->name = first.name;
            attribute_->isKept =
                isWanted || (group_ == kPrinterGroup && besides_.contains(first.name));
            result_.hasWanted = result_.hasWanted || isWanted;
        }
        Value value;
        value.take(first);
        auto record = records.next(error);
        while (record && !value.isComplete()) {
            if (record->isDelimiter()) {
                value.cut();
                break;
            }
            if (!value.take(*record)) {
                break;
            }
            record = records.next(error);
        }
        // What stands behind a delimiter without a name belongs to nothing.
        if (record && attribute_) {
            ++attribute_->count;
            keep(first.tag, value);
        }
        return record;
    }

    /// Values of parallel attributes (marker-names, marker-levels) belong together by their places,
    /// so that one that is taken out leaves a gap.
    void keep(Tag tag, const Value& value) {
        if (!attribute_->isKept) {
            return;
        }
        // RFC 8010, section 3.5.2: an out-of-band value stands for the whole attribute. It reports
        // nothing, and so need not be handed on.
        if (isOutOfBand(tag) && attribute_->count == 1 && !value.reason()) {
            attribute_->beginsOutOfBand = true;
            leaveGap();
            return;
        }
        if (attribute_->beginsOutOfBand) {
            dropped_.add(attribute_->name, 1, kNoValueInSet);
            attribute_->beginsOutOfBand = false;
        }
        if (const char* reason = reasonNotToKeep(tag, value)) {
            dropped_.add(attribute_->name, attribute_->count, reason);
            leaveGap();
            return;
        }
        const std::size_t records = attribute_->leadingGaps + value.records();
        if (!hasRoomFor(records)) {
            dropped_.add(attribute_->name, attribute_->count, "is one too many");
            return;
        }
        values_ += records;
        if (!attribute_->syntax) {
            attribute_->syntax = withoutLanguage(tag);
            for (; attribute_->leadingGaps > 0; --attribute_->leadingGaps) {
                append(placeholder(*attribute_->syntax), *attribute_->syntax);
            }
        }
        append(value.bytes(), withoutLanguage(tag));
    }

    const char* reasonNotToKeep(Tag tag, const Value& value) const {
        if (value.reason()) {
            return value.reason();
        }
        if (isOutOfBand(tag)) {
            return kNoValueInSet;
        }
        return attribute_->syntax && !canStandInOneSet(*attribute_->syntax, tag)
                   ? "has another syntax than the first"
                   : nullptr;
    }

    bool hasRoomFor(std::size_t records) const {
        return values_ + records <= IPPAnswerFilter::kMostValues;
    }

    void leaveGap() {
        if (!attribute_->syntax) {
            ++attribute_->leadingGaps;
        } else if (hasRoomFor(1)) {
            ++values_;
            append(placeholder(*attribute_->syntax), *attribute_->syntax);
        }
    }

    /// The records of one value, which have no name: the first value of an attribute gets it.
    void append(std::string_view records, Tag syntax) {
        const std::string_view name = attribute_->isNamed ? std::string_view() : attribute_->name;
        std::string& bytes = result_.bytes;
        if (!attribute_->isNamed) {
            attribute_->isNamed = true;
            result_.syntaxes.emplace_back();
        }
        if (bytes.size() == kHeaderLength) {
            bytes += static_cast<char>(kPrinterGroup);
        }
        result_.syntaxes.back() += static_cast<char>(syntax);
        // One kind of text for the whole set: libcups takes any mixture as that of its first value
        // (2.4.2), or refuses most of them, with the whole answer (2.4.10).
        bytes += isString(static_cast<Tag>(records.front()))
                     ? static_cast<char>(*attribute_->syntax)
                     : records.front();
        bytes += static_cast<char>(name.size() >> 8U);
        bytes += static_cast<char>(name.size() & 0xFFU);
        bytes += name;
        bytes += records.substr(3);
    }

    static constexpr const char* kNoValueInSet = "says that there is no value";

    const IPPAnswerFilter::Names& wanted_;
    const IPPAnswerFilter::Names& besides_;
    std::size_t mostAttributes_;
    DroppedValues& dropped_;
    IPPFilteredAnswer result_;
    Tag group_ = 0;
    std::optional<Attribute> attribute_;
    std::size_t attributes_ = 0;
    std::size_t values_ = 0;
};

}  // namespace

IPPFilteredAnswer IPPAnswerFilter::filtered(std::string_view answer, DroppedValues& dropped,
                                            std::string& error) const {
    if (answer.size() < kHeaderLength) {
        error = "the answer is cut short: it has no whole header";
        return {};
    }
    return Run(wanted_, besides_, mostAttributes_, dropped).filter(answer, error);
}

}  // namespace TkPPDUpdating
