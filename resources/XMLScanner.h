#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace TkPPDUpdating {

/// What is wrong with an XML text: "line N: cause".
class XMLError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Reads an XML 1.0 text from its start to its end, piece by piece: tags, character data and what
/// may stand between them. It keeps views only; the text must outlive it. Every operation raises
/// `XMLError` where the text is not well formed or holds what the class does not take: a document
/// type with declarations of its own, a processing instruction, an entity that XML does not
/// define.
class XMLScanner {
  public:
    explicit XMLScanner(std::string_view text) : text_(text) {}

    /// A start tag, an end tag or an empty-element tag (which is both).
    struct Tag {
        std::string_view name;
        bool opens = false;
        bool closes = false;
        /// The one attribute that is taken, or empty.
        std::string_view attributeName;
        std::string_view attributeValue;
    };

    /// Passes over byte order mark, XML declaration, comments and a document type that names
    /// `rootName`.
    void skipProlog(std::string_view rootName);

    /// Passes over white space and comments.
    void skipMisc();

    /// Whether nothing is left.
    bool isAtEnd() const { return position_ == text_.size(); }

    /// Passes over white space and comments and reads the tag after them.
    Tag nextTag();

    /// Reads character data up to the next tag: references resolved, CDATA sections taken as they
    /// are, comments left out, line ends made line feeds.
    std::string characterData();

    /// Ends the reading with an error at the place reached.
    [[noreturn]] void fail(const std::string& cause) const;

    /// The same for a text of which `before` is the part before the place.
    [[noreturn]] static void failAfter(std::string_view before, const std::string& cause);

  private:
    bool skip(std::string_view literal);
    void expect(std::string_view literal, const char* cause);
    bool skipSpaces();
    bool skipComment();
    void skipDeclaration();
    void skipDocumentType(std::string_view rootName);
    std::string_view name(const char* missing);
    std::string_view quoted();
    /// What stands before the next `end`, which is passed over.
    std::string_view upTo(std::string_view end, const char* missing);
    void readReference(std::string& data);
    void readCharacterReference(std::string_view reference, std::string& data);
    void append(std::string_view characters, std::string& data) const;
    /// Appends the first of the characters, one byte that does not stand for itself.
    void appendOddByte(std::string_view characters, std::string& data) const;

    std::string_view text_;
    std::size_t position_ = 0;
};

}  // namespace TkPPDUpdating
