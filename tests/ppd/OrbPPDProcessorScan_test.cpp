#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <string_view>

#include "ppd/OrbPPDProcessor.h"

namespace TkPPDUpdating::Testing {
namespace {

constexpr std::nullopt_t kNone = std::nullopt;

struct Scan {
    std::string_view line;
    std::string_view keyword;
    std::optional<std::string_view> spec;
    std::optional<std::string_view> value;
};

std::ostream& operator<<(std::ostream& out, const Scan& scan) {
    return out << '[' << scan.line << "] for " << scan.keyword << ", spec "
               << scan.spec.value_or("none") << ", value " << scan.value.value_or("none");
}

bool matches(const Scan& scan) {
    return OrbPPDProcessor::scanLine_forAttributeWithKeyword_spec_value(scan.line, scan.keyword,
                                                                        scan.spec, scan.value);
}

void expectMatches(std::initializer_list<Scan> scans) {
    for (const Scan& scan : scans) {
        EXPECT_TRUE(matches(scan)) << scan;
    }
}

void expectNoMatches(std::initializer_list<Scan> scans) {
    for (const Scan& scan : scans) {
        EXPECT_FALSE(matches(scan)) << scan;
    }
}

TEST(OrbPPDProcessorScanLine, AKeywordBetweenAsteriskAndColonMatches) {
    expectMatches({
        {"*Key: 1", "Key", kNone, kNone},
        {"*Key:1", "Key", kNone, kNone},
        {"*Key:", "Key", kNone, kNone},
        {"*Key: \"x\"", "Key", kNone, kNone},
        {"*fr.Key: \"\"", "fr.Key", kNone, kNone},
        {"*Key::", "Key", kNone, kNone},
        {"*: 1", "", kNone, kNone},
    });
}

TEST(OrbPPDProcessorScanLine, AnythingBeforeAsteriskOrKeywordOrColonIsNoMatch) {
    expectNoMatches({
        {"", "Key", kNone, kNone},
        {"", "", kNone, kNone},
        {"*", "Key", kNone, kNone},
        {"*", "", kNone, kNone},
        {"Key: 1", "Key", kNone, kNone},
        {" *Key: 1", "Key", kNone, kNone},
        {"\t*Key: 1", "Key", kNone, kNone},
        {"**Key: 1", "Key", kNone, kNone},
        {"* Key: 1", "Key", kNone, kNone},
        {"*%Key: 1", "Key", kNone, kNone},
        {"*Ke", "Key", kNone, kNone},
        {"*Key", "Key", kNone, kNone},
        {"*Key 1", "Key", kNone, kNone},
        {"*Key : 1", "Key", kNone, kNone},
        {"*Key\t: 1", "Key", kNone, kNone},
        {"*Key/Text: 1", "Key", kNone, kNone},
        {"*KeyMore: 1", "Key", kNone, kNone},
        {"*fr.Key: 1", "Key", kNone, kNone},
    });
}

TEST(OrbPPDProcessorScanLine, ALineWithASpecNeverMatchesALookUpWithout) {
    expectNoMatches({
        {"*PageSize Letter/US Letter: \"x\"", "PageSize", kNone, kNone},
        {"*PageSize Letter: \"x\"", "PageSize", kNone, kNone},
        {"*PageSize Letter: \"x\"", "PageSize", kNone, "\"x\""},
    });
}

TEST(OrbPPDProcessorScanLine, ASpecAfterSpacesAndBeforeColonOrSlashMatches) {
    expectMatches({
        {"*PageSize Letter/US Letter: \"x\"", "PageSize", "Letter", kNone},
        {"*PageSize Letter: \"x\"", "PageSize", "Letter", kNone},
        {"*PageSize    Letter: \"x\"", "PageSize", "Letter", kNone},
        {"*PageSize Letter:", "PageSize", "Letter", kNone},
        {"*PageSize Letter/", "PageSize", "Letter", kNone},
        {"*PageSize Letter/no colon at all", "PageSize", "Letter", kNone},
    });
}

TEST(OrbPPDProcessorScanLine, ASpecElsewhereIsNoMatch) {
    expectNoMatches({
        {"*PageSize: Letter", "PageSize", "Letter", kNone},
        {"*PageSizeLetter: 1", "PageSize", "Letter", kNone},
        {"*PageSize\tLetter: 1", "PageSize", "Letter", kNone},
        {"*PageSize \tLetter: 1", "PageSize", "Letter", kNone},
        {"*PageSize\xC2\xA0Letter: 1", "PageSize", "Letter", kNone},  // no-break space
        {"*PageSize Letter : 1", "PageSize", "Letter", kNone},
        {"*PageSize Letter.Small: 1", "PageSize", "Letter", kNone},
        {"*PageSize Letters: 1", "PageSize", "Letter", kNone},
        {"*PageSize Letter", "PageSize", "Letter", kNone},
        {"*PageSize Lette", "PageSize", "Letter", kNone},
        {"*PageSize A4/Letter: 1", "PageSize", "Letter", kNone},
        {"*PageSize ", "PageSize", "Letter", kNone},
        {"*PageSize", "PageSize", "Letter", kNone},
    });
}

TEST(OrbPPDProcessorScanLine, AValueAfterSpacesMatchesAsAPrefix) {
    expectMatches({
        {"*Key: Foo", "Key", kNone, "Foo"},
        {"*Key: FooBar", "Key", kNone, "Foo"},
        {"*Key:    Foo", "Key", kNone, "Foo"},
        {"*Key: \"x\"", "Key", kNone, "\"x\""},
        {"*Key: \"x\" y", "Key", kNone, "\"x"},
        {"*Key Spec: Foo", "Key", "Spec", "Foo"},
        {"*Key Spec:  Foo Bar", "Key", "Spec", "Foo B"},
        {"*Key: ", "Key", kNone, ""},
        {"*Key: Foo", "Key", kNone, ""},
    });
}

TEST(OrbPPDProcessorScanLine, AnotherValueOrOneWithoutSpaceBeforeItIsNoMatch) {
    expectNoMatches({
        {"*Key:Foo", "Key", kNone, "Foo"},
        {"*Key:\tFoo", "Key", kNone, "Foo"},
        {"*Key: \tFoo", "Key", kNone, "Foo"},
        {"*Key: Bar", "Key", kNone, "Foo"},
        {"*Key: Fo", "Key", kNone, "Foo"},
        {"*Key: \"Foo\"", "Key", kNone, "Foo"},
        {"*Key: Bar Foo", "Key", kNone, "Foo"},
        {"*Key:", "Key", kNone, "Foo"},
        {"*Key:", "Key", kNone, ""},
        {"*Key Spec:Foo", "Key", "Spec", "Foo"},
    });
}

TEST(OrbPPDProcessorScanLine, AValueNeverMatchesALineWithATranslationText) {
    expectNoMatches({
        {"*PageSize Letter/US Letter: \"x\"", "PageSize", "Letter", "\"x\""},
        {"*Key Spec/Foo: Foo", "Key", "Spec", "Foo"},
        {"*Key Spec/: Foo", "Key", "Spec", "Foo"},
    });
}

TEST(OrbPPDProcessorScanLine, AValueMatchesATranslationTextThatBeginsWithSpacesAndTheValue) {
    expectMatches({{"*Key Spec/ Foo: Bar", "Key", "Spec", "Foo"}});
}

TEST(OrbPPDProcessorScanLine, LetterCaseIsIgnoredEverywhere) {
    expectMatches({
        {"*pagesize: A4", "PageSize", kNone, kNone},
        {"*PAGESIZE a4: x", "pagesize", "A4", kNone},
        {"*Key Spec: FOO", "kEY", "sPEC", "foo"},
        {"*CL\xC3\x89: \xC3\xA9t\xC3\xA9", "cl\xC3\xA9", kNone, "\xC3\x89T\xC3\x89"},
        {"*\xE2\x84\xAA: 1", "k", kNone, kNone},                         // Kelvin sign
        {"*k: 1", "\xE2\x84\xAA", kNone, kNone},                         // and the other way
        {"*Key \xC5\xBFpec: 1", "Key", "Spec", kNone},                   // long s
        {"*Key \xF0\x90\x90\x80: 1", "Key", "\xF0\x90\x90\xA8", kNone},  // Deseret
        {"*\xCE\xA3: 1", "\xCF\x82", kNone, kNone},                      // sigma and final sigma
    });
}

TEST(OrbPPDProcessorScanLine, CaseIsFoldedCharacterByCharacterWhateverTheLanguage) {
    expectNoMatches({
        {"*STRASSE: 1",
         "stra\xC3\x9F"
         "e",
         kNone, kNone},                               // sharp s is not two letters
        {"*I: 1", "\xC4\xB1", kNone, kNone},          // dotless i
        {"*\xC4\xB0: 1", "i", kNone, kNone},          // I with a dot
        {"*E\xCC\x81: 1", "\xC3\xA9", kNone, kNone},  // not composed
    });
}

TEST(OrbPPDProcessorScanLine, SeparatorsInsideTheArgumentsAreTakenLiterally) {
    expectMatches({
        {"*a:b: 1", "a:b", kNone, kNone},
        {"*a:b: 1", "a", kNone, kNone},
        {"*Key Spec: 1", "Key Spec", kNone, kNone},
        {"*Key One Two: 1", "Key", "One Two", kNone},
        {"*Key One Two: 1", "Key One", "Two", kNone},
        {"*Key a:b: 1", "Key", "a:b", kNone},
        {"*Key a:b: 1", "Key", "a", kNone},
        {"*Key a/b/Text: 1", "Key", "a/b", kNone},
        {"*Key a/b/Text: 1", "Key", "a", kNone},
        {"*Key A : 1", "Key", "A ", kNone},
        {"*Key : 1", "Key", "", kNone},
        {"*Key  /Text: 1", "Key", "", kNone},
    });
}

TEST(OrbPPDProcessorScanLine, AllSpacesAreSkippedSoThatAnArgumentThatBeginsWithOneNeverMatches) {
    expectNoMatches({
        {"*Key  Spec: 1", "Key", " Spec", kNone},
        {"*Key:  Foo", "Key", kNone, " Foo"},
    });
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
