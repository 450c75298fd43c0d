#pragma once

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ppd/OrbPPDLines.h"
#include "ppd/PPDConstants.h"
#include "ppd/PPDText.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// A run of lines: the index of the first one and how many there are. A range of nothing has the
/// location `kTkPPDProcessorPPDEndLocation` and the length 0.
struct OrbPPDLineRange {
    std::size_t location = kTkPPDProcessorPPDEndLocation;  ///< The first line, from 0.
    std::size_t length = 0;                                ///< How many there are.

    friend bool operator==(const OrbPPDLineRange&, const OrbPPDLineRange&) = default;
};

/// Reads and edits one PPD text line by line: finds attributes by keyword, option keyword ("spec")
/// and value, deletes them with their translation lines, and inserts new ones.
///
/// It is made for one text, used by one updater on one thread, its `content` taken once at the end.
/// Keywords are given without the asterisk ("PageSize"). Text is UTF-8; comparisons in
/// `scanLine...` ignore case by simple Unicode case folding. Lengths are bytes of UTF-8.
///
/// The text is split once and joined once. Absence is an empty range or nothing; the only errors
/// are `std::out_of_range` from the operations that say so.
class TKPPDUPDATING_PUBLIC OrbPPDProcessor {
  public:
    OrbPPDProcessor() = default;
    OrbPPDProcessor(const OrbPPDProcessor&) = delete;
    OrbPPDProcessor& operator=(const OrbPPDProcessor&) = delete;
    ~OrbPPDProcessor() = default;

    /// A new processor over `content`, which may be null: then there are no lines and nothing is
    /// found.
    static std::unique_ptr<OrbPPDProcessor> processorWithPPDContent(PPDText content);

    /// What `processorWithPPDContent` calls on a fresh processor; gives the processor itself.
    /// ("PDD" is how the operation is called.)
    OrbPPDProcessor& initWithPDDContent(PPDText content);

    /// The PPD as one text. After an edit it is joined from the lines, each followed by a line
    /// feed, and kept. Every such join leaves one empty line at the end of `lines`, so that an edit
    /// after it adds one more line feed to the end of the text. Null when there is neither a text
    /// nor lines.
    PPDText content();

    /// Stores the text itself; null means that it is to be rebuilt from the lines. Lines that were
    /// split already stay as they are.
    void setContent(PPDText content);

    /// `setContent` with null: to be called after an edit of `lines`.
    void clearContent();

    /// The lines, split at line feeds on first use (a carriage return stays at the end of its line;
    /// one empty last part is dropped). Owned by the processor; null while there is no text. A
    /// caller may edit them and must then call `clearContent`.
    OrbPPDLines* lines();

    /// Line index at which the next insertion goes; starts at 0.
    std::size_t insertLocation() const { return insertLocation_; }
    /// Stores the index, or the number of lines when it is greater than that.
    void setInsertLocation(std::size_t index);

    /// The language codes of the PPD's translations: the value of "cupsLanguages" (CUPS PPD
    /// extensions: cupsLanguages) split at every single space; empty when there is none. Read once,
    /// then kept. Raises what `valueForAttributeWithKeyword_spec` raises.
    const std::vector<std::string>& localizations();
    void setLocalizations(std::vector<std::string> localizations);  ///< Instead of the PPD's.

    /// Whether the line is the attribute. Compared from the left, ignoring case: "*", the keyword;
    /// with a spec, one or more spaces, the spec, and ":" or "/"; without one, ":" directly. With a
    /// value, one or more spaces then and the value as a prefix of the rest. (So a line with a
    /// translation text does not match a look-up with a value.)
    static bool scanLine_forAttributeWithKeyword_spec_value(std::string_view line,
                                                            std::string_view keyword,
                                                            std::optional<std::string_view> spec,
                                                            std::optional<std::string_view> value);

    /// The lines of the first attribute that matches. A line with exactly one double quote opens a
    /// value that runs to the next line "*End", inclusive; without one the attribute counts as not
    /// found. A null keyword finds nothing.
    OrbPPDLineRange rangeOfAttributeWithKeyword_spec_value(std::optional<std::string_view> keyword,
                                                           std::optional<std::string_view> spec,
                                                           std::optional<std::string_view> value);

    /// The value of the first attribute that matches: what stands between its first two double
    /// quotes, else what follows the colon and the spaces after it, trailing blanks included. Lines
    /// are joined with one space. Nothing when the attribute is absent, its quote is not closed, or
    /// the unquoted value is one UTF-16 unit long. Raises `std::out_of_range` when nothing but
    /// spaces follows the colon of an unquoted value.
    std::optional<std::string> valueForAttributeWithKeyword_spec(
        std::optional<std::string_view> keyword, std::optional<std::string_view> spec);

    /// Removes the first attribute that matches and, for each language of `localizations` and for
    /// "en", the first attribute whose keyword is the language, a full stop and the keyword, with
    /// that spec. Gives the index where the attribute stood, or `kTkPPDProcessorPPDEndLocation`
    /// when there was none (and nothing changed). Raises what `localizations` raises.
    std::size_t deleteAttributeWithKeyword_spec_value(std::optional<std::string_view> keyword,
                                                      std::optional<std::string_view> spec,
                                                      std::optional<std::string_view> value);

    /// Inserts an attribute at `insertLocation`, which moves behind it; the value is written as it
    /// is. With spec and text the text is shortened (`PPDSavvyNameFromString`) and one translation
    /// line for each language follows; a text that is not ASCII stands in the translation lines
    /// only, "en" first.
    ///
    /// False, and nothing changed, when keyword or value is null, there are no lines, or the line
    /// takes 256 bytes or more and `wrap` is false or a word in it is too long to wrap. Raises
    /// `std::out_of_range` when lines were removed so that `insertLocation` lies past the last one,
    /// and what `localizations` raises.
    bool insertAttributeWithKeyword_spec_text_value_wrap(std::optional<std::string_view> keyword,
                                                         std::optional<std::string_view> spec,
                                                         std::optional<std::string_view> text,
                                                         std::optional<std::string_view> value,
                                                         bool wrap);

    /// The attribute line wrapped at single spaces, greedily, and "*End" after it when it took more
    /// than one line. A joining space is not counted, so that a line can reach 256 bytes. Nothing
    /// when a word takes more than 255 bytes. ("Wraped" is how the operation is called.)
    static std::optional<std::vector<std::string>> linesWrapedToPPDMaxWidthForAttributeString(
        std::string_view line);

    /// Whether every character is ASCII; an empty text is.
    static bool isASCIIString(std::string_view string);

    /// The string when it takes less than 80 bytes, else its longest prefix of whole characters
    /// that takes at most 79 (PPD specification 4.3: translation strings).
    static std::string_view PPDSavvyNameFromString(std::string_view string);

  private:
    /// The places of one language in the order in which translations are deleted.
    using Places = std::vector<std::size_t>;

    /// The lines of an attribute's translations into one language.
    struct Translations {
        std::vector<OrbPPDLines::LineID> lines;
        /// The first of them that no turn has come to.
        std::size_t next = 0;
    };
    using TranslationsByLanguage = std::map<const Places*, Translations>;

    /// By the place in the list of languages: the translations of which one is to be deleted, or
    /// none where the translation has to be looked up.
    using Turn = std::pair<std::size_t, Translations*>;

    OrbPPDLineRange rangeOfAttributeAt(std::size_t index) const;
    void erase(const OrbPPDLineRange& range);
    void deleteTranslations(std::string_view keyword, std::optional<std::string_view> spec);
    void deleteTranslation(std::string_view language, std::string_view keyword,
                           std::optional<std::string_view> spec);
    TranslationsByLanguage translationsByLanguage(const std::vector<OrbPPDLines::LineID>& lines,
                                                  std::string_view keyword);
    std::vector<Turn> turnsOf(TranslationsByLanguage& translations) const;
    void deleteNext(Translations& translations);
    void readLanguages();
    bool insertMainLine(bool wrap);
    void insertLine(std::initializer_list<std::string_view> parts);

    PPDText content_;
    std::optional<OrbPPDLines> lines_;
    std::optional<std::vector<std::string>> localizations_;
    /// Of each language, case ignored: that of `localizations`, then "en".
    std::map<std::string, Places, std::less<>> languages_;
    /// The places of those that hold what ends a keyword.
    Places uncommonLanguages_;
    /// Whether `content` was joined since the lines were last asked for, which leaves an empty one.
    bool leavesEmptyLine_ = false;
    /// The lines to be inserted; kept because it has the room.
    std::string newText_;
    std::size_t insertLocation_ = 0;
};

}  // namespace TkPPDUpdating
