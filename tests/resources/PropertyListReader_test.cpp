#include "resources/PropertyListReader.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {
namespace {

using namespace std::string_view_literals;

constexpr std::string_view kProlog =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n";

std::string plist(std::string_view value) {
    return "<plist version=\"1.0\">" + std::string(value) + "</plist>";
}

struct Accepted {
    const char* name;
    std::string_view text;
    PropertyList expected;
};

void PrintTo(const Accepted& each, std::ostream* out) {
    *out << each.text;
}

class AcceptedValue : public testing::TestWithParam<Accepted> {};

TEST_P(AcceptedValue, IsReadAsItsType) {
    std::string reason;
    const auto value = PropertyListReader::propertyListWithText(plist(GetParam().text), &reason);
    ASSERT_TRUE(value) << reason;
    EXPECT_TRUE(*value == GetParam().expected);
}

PropertyList string(std::string_view text) {
    return {std::string(text)};
}
PropertyList integer(std::int64_t number) {
    return {number};
}
PropertyList real(double number) {
    return {number};
}
PropertyList data(std::string_view bytes) {
    return {PropertyList::Data{{bytes.begin(), bytes.end()}}};
}

INSTANTIATE_TEST_SUITE_P(
    PropertyListReader, AcceptedValue,
    testing::Values(
        Accepted{"EmptyDictionary", "<dict></dict>", {PropertyList::Dictionary()}},
        Accepted{"EmptyDictionaryTag", "<dict/>", {PropertyList::Dictionary()}},
        Accepted{"Dictionary",
                 " <dict> <key>a</key>\n<true/> <!-- c --> <key>b</key><string>x</string></dict> ",
                 {PropertyList::Dictionary{{"a", {true}}, {"b", string("x")}}}},
        Accepted{
            "EmptyKey", "<dict><key/><false/></dict>", {PropertyList::Dictionary{{"", {false}}}}},
        Accepted{"Array",
                 "<array><integer>1</integer><array/></array>",
                 {PropertyList::Array{integer(1), {PropertyList::Array()}}}},
        Accepted{"EmptyString", "<string></string>", string("")},
        Accepted{"EmptyStringTag", "<string />", string("")},
        Accepted{"StringKeepsItsSpaces", "<string> a\n\tb </string>", string(" a\n\tb ")},
        Accepted{"LineEnds", "<string>a\r\nb\rc&#13;</string>", string("a\nb\nc\r")},
        Accepted{"Entities", "<string>&lt;&gt;&amp;&apos;&quot;</string>", string("<>&'\"")},
        Accepted{"EntityIsNotReadTwice", "<string>&amp;lt;</string>", string("&lt;")},
        Accepted{"CharacterReferences", "<string>&#65;&#x42;&#xe9;&#x20AC;&#x1F5A8;</string>",
                 string("AB\xC3\xA9\xE2\x82\xAC\xF0\x9F\x96\xA8")},
        Accepted{"CDATA", "<string>a<![CDATA[<b>&amp;]]]]><![CDATA[>]]></string>",
                 string("a<b>&amp;]]>")},
        Accepted{"CommentInAString", "<string>a<!-- b -->c</string>", string("ac")},
        Accepted{"NonASCII", "<string>\xC3\xA9</string>", string("\xC3\xA9")},
        Accepted{"Integer", "<integer>-42</integer>", integer(-42)},
        Accepted{"IntegerWithPlus", "<integer>+7</integer>", integer(7)},
        Accepted{"LargestInteger", "<integer>9223372036854775807</integer>", integer(INT64_MAX)},
        Accepted{"SmallestInteger", "<integer>-9223372036854775808</integer>", integer(INT64_MIN)},
        Accepted{"Real", "<real>-1.5e3</real>", real(-1500)},
        Accepted{"RealWithoutFraction", "<real>2</real>", real(2)},
        Accepted{"True", "<true/>", {true}}, Accepted{"False", "<false></false>", {false}},
        Accepted{"Date",
                 "<date>2001-01-01T00:00:01Z</date>",
                 {PropertyList::Date(std::chrono::seconds(978307201))}},
        Accepted{"DateOnALeapDay",
                 "<date>2024-02-29T23:59:59Z</date>",
                 {PropertyList::Date(std::chrono::seconds(1709251199))}},
        Accepted{"Data", "<data>\n TWFu\n TQ== </data>", data("ManM")},
        Accepted{"DataOfTwoBytes", "<data>TWE=</data>", data("Ma")},
        Accepted{"EmptyData", "<data/>", data("")}),
    [](const auto& each) { return std::string(each.param.name); });

struct Refused {
    const char* name;
    std::string_view text;
    std::string_view reason;
};

void PrintTo(const Refused& each, std::ostream* out) {
    *out << each.text;
}

class RefusedText : public testing::TestWithParam<Refused> {};

TEST_P(RefusedText, GivesNothingAndSaysWhereAndWhy) {
    std::string reason;
    EXPECT_FALSE(PropertyListReader::propertyListWithText(GetParam().text, &reason));
    EXPECT_EQ(reason, GetParam().reason);
    EXPECT_FALSE(PropertyListReader::propertyListWithText(GetParam().text)) << "without a slot";
}

INSTANTIATE_TEST_SUITE_P(
    Text, RefusedText,
    testing::Values(
        Refused{"Empty", "", "line 1: the text ends too early"},
        Refused{"NotXML", "a\nb", "line 1: character data where a tag is expected"},
        Refused{"OtherRoot", "\n<list/>", "line 2: no element plist that holds a value"},
        Refused{"EmptyRoot", "<plist/>", "line 1: no element plist that holds a value"},
        Refused{"RootWithoutValue", "<plist></plist>",
                "line 1: an end tag where a value is expected"},
        Refused{"OtherVersion", "<plist version=\"2.0\"><true/></plist>",
                "line 1: a property list of another version than 1.0"},
        Refused{"OtherAttribute", "<plist a=\"1.0\"><true/></plist>",
                "line 1: a property list of another version than 1.0"},
        Refused{"TwoValues", "<plist><true/>\n<true/></plist>",
                "line 2: the end of the element plist is missing"},
        Refused{"NoEnd", "<plist><true/>\n", "line 2: the text ends too early"},
        Refused{"SomethingAfter", "<plist><true/></plist>\n<plist/>",
                "line 2: something follows the property list"},
        Refused{"TextBetween", "<plist>x<true/></plist>",
                "line 1: character data where a tag is expected"},
        Refused{"UnknownElement", "<plist><list/></plist>",
                "line 1: an element that property lists do not have"},
        Refused{"NestedPlist", "<plist><plist><true/></plist></plist>",
                "line 1: an element that property lists do not have"},
        Refused{"OtherCase", "<plist><Dict/></plist>",
                "line 1: an element that property lists do not have"},
        Refused{"AttributeOfAValue", "<plist><string a=\"b\">x</string></plist>",
                "line 1: an attribute that property lists do not have"},
        Refused{"WrongEndTag", "<plist><string>x</key></plist>",
                "line 1: the end of the element string is missing"},
        Refused{"ElementInAString", "<plist><string>x<true/></string></plist>",
                "line 1: the end of the element string is missing"},
        Refused{"TextInABoolean", "<plist><true>x</true></plist>",
                "line 1: character data where a tag is expected"},
        Refused{"TagNeverEnds", "<plist><true", "line 1: a malformed tag"},
        Refused{"ProcessingInstruction", "<plist><?a b?><true/></plist>",
                "line 1: a tag without a name"},
        Refused{"CommentNeverEnds", "<plist><!-- <true/></plist>", "line 1: a comment never ends"},
        Refused{"HyphensInAComment", "<!-- a -- b --><plist><true/></plist>",
                "line 1: two hyphens inside a comment"},
        Refused{"CDATANeverEnds", "<plist><string><![CDATA[x</string></plist>",
                "line 1: a CDATA section never ends"},
        Refused{"CDATAEndAlone", "<plist><string>a]]>b</string></plist>",
                "line 1: \"]]>\" outside a CDATA section"},
        Refused{"NotUTF8", "<plist>\n<string>\xFF</string></plist>", "line 2: not valid UTF-8"},
        Refused{"NUL", "<plist><string>a\0b</string></plist>"sv,
                "line 1: a character that XML does not allow"},
        Refused{"ControlCharacter", "<plist><string>\x01</string></plist>",
                "line 1: a character that XML does not allow"},
        Refused{"NonCharacter", "<plist><string>\xEF\xBF\xBE</string></plist>",
                "line 1: a character that XML does not allow"}),
    [](const auto& each) { return std::string(each.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Prolog, RefusedText,
    testing::Values(
        Refused{"OtherXMLVersion", "<?xml version=\"1.1\"?><plist><true/></plist>",
                "line 1: not XML 1.0 in UTF-8"},
        Refused{"OtherEncoding",
                "<?xml version=\"1.0\" encoding=\"UTF-16\"?><plist><true/></plist>",
                "line 1: not XML 1.0 in UTF-8"},
        Refused{"MalformedDeclaration", "<?xml version?><plist><true/></plist>",
                "line 1: a malformed XML declaration"},
        Refused{"DeclarationAfterASpace", " <?xml version=\"1.0\"?><plist><true/></plist>",
                "line 1: a tag without a name"},
        Refused{"OtherDocumentType", "<!DOCTYPE html><plist><true/></plist>",
                "line 1: another document type than plist"},
        Refused{"DocumentTypeThatDeclares",
                "<!DOCTYPE plist [<!ENTITY a \"b\">]>\n<plist><string>&a;</string></plist>",
                "line 1: a document type with declarations of its own"},
        Refused{"ExternalSubsetAndDeclarations",
                "<!DOCTYPE plist SYSTEM \"file:///etc/passwd\" "
                "[<!ENTITY a SYSTEM \"file:///etc/passwd\">]><plist><string>&a;</string></plist>",
                "line 1: a document type with declarations of its own"},
        Refused{"DocumentTypeQuoteNeverEnds", "<!DOCTYPE plist SYSTEM \"x><plist/>",
                "line 1: a quote is never closed"}),
    [](const auto& each) { return std::string(each.param.name); });

INSTANTIATE_TEST_SUITE_P(
    References, RefusedText,
    testing::Values(Refused{"UnknownEntity", "<plist><string>\n&nbsp;</string></plist>",
                            "line 2: an entity that XML does not define"},
                    Refused{"LoneAmpersand", "<plist><string>a & b</string></plist>",
                            "line 1: an ampersand that begins no reference"},
                    Refused{"WithoutSemicolon", "<plist><string>&amp </string></plist>",
                            "line 1: a reference without a semicolon"},
                    Refused{"ToNUL", "<plist><string>&#0;</string></plist>",
                            "line 1: a reference to no character"},
                    Refused{"ToASurrogate", "<plist><string>&#xD800;</string></plist>",
                            "line 1: a reference to no character"},
                    Refused{"BeyondUnicode", "<plist><string>&#x110000;</string></plist>",
                            "line 1: a reference to no character"},
                    Refused{"BeyondAllNumbers", "<plist><string>&#99999999999;</string></plist>",
                            "line 1: a reference to no character"},
                    Refused{"NotANumber", "<plist><string>&#x;</string></plist>",
                            "line 1: a reference to no character"}),
    [](const auto& each) { return std::string(each.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Values, RefusedText,
    testing::Values(
        Refused{"ValueWithoutKey", "<plist><dict><true/></dict></plist>",
                "line 1: a value without a key in a dictionary"},
        Refused{"KeyWithoutValue", "<plist><dict><key>a</key></dict></plist>",
                "line 1: an end tag where a value is expected"},
        Refused{"KeyForAValue", "<plist><dict><key>a</key><key>b</key></dict></plist>",
                "line 1: an element that property lists do not have"},
        Refused{"KeyTwice", "<plist><dict><key>a</key><true/>\n<key>a</key><true/></dict></plist>",
                "line 2: a key that the dictionary has already"},
        Refused{"KeyInAnArray", "<plist><array><key>a</key></array></plist>",
                "line 1: an element that property lists do not have"},
        Refused{"EmptyInteger", "<plist><integer/></plist>",
                "line 1: no value of the type integer"},
        Refused{"IntegerWithSpace", "<plist><integer> 1</integer></plist>",
                "line 1: no value of the type integer"},
        Refused{"IntegerTooLarge", "<plist><integer>9223372036854775808</integer></plist>",
                "line 1: no value of the type integer"},
        Refused{"IntegerWithFraction", "<plist><integer>1.5</integer></plist>",
                "line 1: no value of the type integer"},
        Refused{"IntegerWithTwoSigns", "<plist><integer>+-1</integer></plist>",
                "line 1: no value of the type integer"},
        Refused{"RealThatIsNone", "<plist><real>one</real></plist>",
                "line 1: no value of the type real"},
        Refused{"RealThatIsNotFinite", "<plist><real>inf</real></plist>",
                "line 1: no value of the type real"},
        Refused{"RealTooLarge", "<plist><real>1e999</real></plist>",
                "line 1: no value of the type real"},
        Refused{"DateInAnotherForm", "<plist><date>2001-01-01 00:00:00Z</date></plist>",
                "line 1: no value of the type date"},
        Refused{"DateThatIsTooShort", "<plist><date>2001-01-01</date></plist>",
                "line 1: no value of the type date"},
        Refused{"DateThatDoesNotExist", "<plist><date>2023-02-29T00:00:00Z</date></plist>",
                "line 1: no value of the type date"},
        Refused{"HourThatDoesNotExist", "<plist><date>2023-02-28T24:00:00Z</date></plist>",
                "line 1: no value of the type date"},
        Refused{"MinuteThatDoesNotExist", "<plist><date>2023-02-28T23:60:00Z</date></plist>",
                "line 1: no value of the type date"},
        Refused{"SecondThatDoesNotExist", "<plist><date>2023-02-28T23:59:60Z</date></plist>",
                "line 1: no value of the type date"},
        Refused{"DataOfAnotherAlphabet", "<plist><data>TW_u</data></plist>",
                "line 1: no value of the type data"},
        Refused{"DataCutShort", "<plist><data>TWF</data></plist>",
                "line 1: no value of the type data"},
        Refused{"DataAfterPadding", "<plist><data>TQ==TWFu</data></plist>",
                "line 1: no value of the type data"},
        Refused{"DataWithTooMuchPadding", "<plist><data>T===</data></plist>",
                "line 1: no value of the type data"}),
    [](const auto& each) { return std::string(each.param.name); });

TEST(PropertyListReader, PassesOverPrologAndComments) {
    for (const std::string& prolog :
         {std::string(kProlog), "\xEF\xBB\xBF" + std::string(kProlog),
          std::string("<?xml version='1.0' encoding='utf-8' standalone='yes'?>"),
          std::string("<!DOCTYPE plist SYSTEM \"file:///does/not/exist\">"),
          std::string("<!DOCTYPE plist>"), std::string("<!-- a --> <!---->\n")}) {
        const auto value =
            PropertyListReader::propertyListWithText(prolog + plist("<true/>") + "\n<!-- b -->\n");
        ASSERT_TRUE(value) << prolog;
        EXPECT_EQ(value->as<bool>() ? *value->as<bool>() : false, true) << prolog;
    }
}

TEST(PropertyListReader, BoundsTheNesting) {
    const auto nested = [](std::size_t depth) {
        std::string text;
        for (std::size_t i = 0; i < depth; ++i) {
            text += "<array>";
        }
        for (std::size_t i = 0; i < depth; ++i) {
            text += "</array>";
        }
        return plist(text);
    };
    EXPECT_TRUE(PropertyListReader::propertyListWithText(nested(64)));
    std::string reason;
    EXPECT_FALSE(PropertyListReader::propertyListWithText(nested(65), &reason));
    EXPECT_EQ(reason, "line 1: values nested too deeply");
    EXPECT_FALSE(PropertyListReader::propertyListWithText(nested(1000000), &reason));
}

TEST(PropertyListReader, ReadsATextOfMegabytesInOnePass) {
    std::string text = "<dict>";
    for (int i = 0; i < 100000; ++i) {
        const std::string number = std::to_string(i);
        text += "<key>" + number + "</key>\n<string>&lt;" + number + "</string>";
    }
    const auto value = PropertyListReader::propertyListWithText(plist(text + "</dict>"));
    ASSERT_TRUE(value);
    ASSERT_NE(value->stringForKey("99999"), nullptr);
    EXPECT_EQ(*value->stringForKey("99999"), "<99999");
}

TEST(PropertyListReader, EveryTextCutShortIsRefused) {
    const std::string whole =
        std::string(kProlog) +
        plist("<dict><key>a</key><string>&amp;<![CDATA[x]]></string><!-- c --></dict>");
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_FALSE(PropertyListReader::propertyListWithText(whole.substr(0, length))) << length;
    }
    EXPECT_TRUE(PropertyListReader::propertyListWithText(whole));
}

TEST(PropertyListReader, ReadsAFile) {
    const TemporaryDirectory folder;
    const std::string file = folder.write("a.plist", plist("<string>x</string>"));
    const auto value = PropertyListReader::propertyListWithContentsOfFile(file);
    ASSERT_TRUE(value && value->as<std::string>());
    EXPECT_EQ(*value->as<std::string>(), "x");
}

TEST(PropertyListReader, SaysWhyAFileIsRefused) {
    const TemporaryDirectory folder;
    std::string reason;
    const auto read = [&](const std::string& path) {
        reason.clear();
        return PropertyListReader::propertyListWithContentsOfFile(path, &reason).has_value();
    };
    EXPECT_FALSE(read((folder.path() / "missing").string()));
    EXPECT_EQ(reason, "No such file or directory");
    EXPECT_FALSE(read(folder.path().string()));
    EXPECT_EQ(reason, "is a directory");
    EXPECT_FALSE(read(folder.write("a.plist", "<plist>\n")));
    EXPECT_EQ(reason, "line 2: the text ends too early");
}

TEST(PropertyList, GivesATextOnlyForAKeyThatHasOne) {
    const auto value = PropertyListReader::propertyListWithText(
        plist("<dict><key>a</key><string>x</string><key>b</key><true/></dict>"));
    ASSERT_TRUE(value);
    ASSERT_NE(value->stringForKey("a"), nullptr);
    EXPECT_EQ(*value->stringForKey("a"), "x");
    EXPECT_EQ(value->stringForKey("b"), nullptr);
    EXPECT_EQ(value->stringForKey("c"), nullptr);
    EXPECT_EQ(PropertyList{true}.stringForKey("a"), nullptr);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
