// XML that is hostile, in other encodings, or not quite XML.
#include "freedesktop/preferences/xml_property_list.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/freedesktop/preferences/property_list_testing.h"

namespace quorvel::freedesktop {
namespace {

using namespace std::string_literals;
using platform::PropertyListArray;
using platform::PropertyListData;
using platform::PropertyListDictionary;

constexpr const char* forbidden = "the XML has a character that XML forbids";

ParsedList parseDeclared(const std::string& encoding, const std::string& text) {
    return parse("<?xml version=\"1.0\" encoding=\"" + encoding + "\"?><plist><string>" + text +
                 "</string></plist>");
}

// ASCII as UTF-16.
std::string utf16(std::string_view text, bool bigEndian) {
    std::string bytes;
    for (const char c : text) {
        bytes += bigEndian ? "\0"s + c : c + "\0"s;
    }
    return bytes;
}

// "Char ::= #x9 | #xA | #xD | [#x20-#xD7FF] | ..." (XML 1.0, 2.2)
TEST(XmlCharacters, ForbiddenOnesMakeTheListUnreadable) {
    for (int byte = 0; byte < 0x20; ++byte) {
        const std::string character(1, static_cast<char>(byte));
        const bool allowed = byte == '\t' || byte == '\n' || byte == '\r';
        for (const std::string& object : {"<string>a" + character + "b</string>",
                                          "<dict><key>a" + character + "b</key><true/></dict>",
                                          "<string><![CDATA[" + character + "]]></string>"}) {
            const auto list = parseXmlObject(object);
            EXPECT_EQ(list.hasValue(), allowed) << byte;
            EXPECT_EQ(problemOf(list), allowed ? "" : forbidden) << byte;
        }
    }
    for (const std::string& object : {"<integer>1\0</integer>"s, "<!--\0--><true/>"s, "\0<true/>"s,
                                      "<true a=\"\0\"/>"s, "<tr\0ue/>"s}) {
        EXPECT_FALSE(parseXmlObject(object)) << object;
    }
    EXPECT_FALSE(parseXmlObject("<string>\uFFFE</string>"));
}

// "Characters referred to using character references MUST match the production for Char."
// (XML 1.0, 4.1)
TEST(XmlCharacters, ReferencesToForbiddenOnesToo) {
    for (const char* reference : {"&#0;", "&#x0;", "&#1;", "&#31;", "&#xD800;", "&#xFFFE;",
                                  "&#x110000;", "&#99999999999999999999;"}) {
        EXPECT_EQ(problemOf(parseXmlObject("<string>"s + reference + "</string>")), forbidden)
            << reference;
    }
    EXPECT_EQ(as<std::string>(parseXmlObject("<string>&#9;&#x1F600;</string>")), "\t😀");
}

TEST(XmlCharacters, IgnoresEverythingAfterTheRoot) {
    EXPECT_EQ(as<bool>(parse("<plist><true/></plist>\0\x01<"s)), true);
    EXPECT_EQ(as<PropertyListDictionary>(parse("<dict/>\0"s)).size(), 0U);
}

TEST(XmlEncoding, IsTheOneThatIsDeclared) {
    EXPECT_EQ(as<std::string>(parseDeclared("UTF-8", "é")), "é");
    EXPECT_EQ(as<std::string>(parseDeclared("utf8", "é")), "é");
    EXPECT_EQ(as<std::string>(parseDeclared("ISO-8859-1", "\xE9\xDF")), "éß");
    EXPECT_EQ(as<std::string>(parseDeclared("iso-8859-1", "\xE9")), "é");
    EXPECT_EQ(as<std::string>(parseDeclared("latin1", "\xE9")), "é");
    EXPECT_EQ(as<std::string>(parseDeclared("US-ASCII", "e")), "e");
    EXPECT_EQ(as<std::string>(parseDeclared("windows-1252", "\x80\x93\xE9\x94")), "€“é”");
    EXPECT_EQ(as<std::string>(parseDeclared("CP1252", "\x9F")), "Ÿ");
    EXPECT_EQ(as<std::string>(parse("\n<?xml version='1.0' encoding='windows-1252'?>"
                                    "<plist><string>\x80</string></plist>")),
              "€");
}

TEST(XmlEncoding, CharactersThatItLacksMakeTheListUnreadable) {
    EXPECT_FALSE(parseDeclared("US-ASCII", "\xE9"));
    EXPECT_FALSE(parseDeclared("ascii", "\xE9"));
    EXPECT_FALSE(parseDeclared("windows-1252", "\x81"));
    EXPECT_EQ(problemOf(parseDeclared("ISO-8859-1", "\0"s)), forbidden);
}

TEST(XmlEncoding, UnknownEncodingsAreUnreadable) {
    for (const char* encoding : {"klingon", "UTF-16", "UTF-7", "EBCDIC-CP-US", "UTF-32"}) {
        EXPECT_EQ(problemOf(parseDeclared(encoding, "a")), "the XML is in an unknown encoding")
            << encoding;
    }
}

TEST(XmlEncoding, Utf16IsParsedWithAndWithoutAMark) {
    const std::string list =
        "<?xml version=\"1.0\" encoding=\"UTF-16\"?><plist><integer>7</integer></plist>";
    for (const bool bigEndian : {false, true}) {
        const std::string bytes = utf16(list, bigEndian);
        EXPECT_EQ(as<std::int64_t>(parse(bytes)), 7);
        EXPECT_EQ(as<std::int64_t>(parse((bigEndian ? "\xFE\xFF" : "\xFF\xFE") + bytes)), 7);
        EXPECT_FALSE(parse(utf16("<plist><string>a\0</string></plist>"s, bigEndian)));
    }
}

TEST(XmlEncoding, AMarkCountsForMoreThanTheDeclaration) {
    EXPECT_EQ(as<std::string>(parse("\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>"
                                    "<plist><string>é</string></plist>")),
              "é");
    EXPECT_EQ(as<std::int64_t>(parse("\xFF\xFE" + utf16("<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
                                                        "<plist><integer>7</integer></plist>",
                                                        false))),
              7);
}

TEST(XmlEntities, OnlyThePredefinedEntitiesAreKnown) {
    EXPECT_EQ(as<std::string>(parseXmlObject("<string>&lt;&gt;&amp;&quot;&apos;</string>")),
              "<>&\"'");
    const std::string declared =
        "<!DOCTYPE plist [<!ENTITY a \"b\"><!ENTITY c SYSTEM \"file:///etc/hostname\">]>";
    EXPECT_EQ(as<bool>(parse(declared + "<plist version=\"&a;\"><true/></plist>")), true);
    for (const char* reference : {"&a;", "&c;", "&d;", "&", "&;", "& ", "&lt"}) {
        EXPECT_EQ(problemOf(parse(declared + "<plist><string>" + reference + "</string></plist>")),
                  "the XML has an unknown entity")
            << reference;
    }
    EXPECT_FALSE(parse(declared + "<plist>&a;</plist>"));
    EXPECT_FALSE(parse(declared + "<plist version=\"&c;\"><true/></plist>"));
}

TEST(XmlEntities, NoneMakesTheListGrow) {
    const Stopwatch watch;
    std::string laughs = "<!DOCTYPE plist [<!ENTITY l0 \"ha\">";
    for (int i = 1; i < 60; ++i) {
        const std::string one = "&l" + std::to_string(i - 1) + ";";
        laughs += "<!ENTITY l" + std::to_string(i) + " \"" + one + one + "\">";
    }
    EXPECT_EQ(problemOf(parse(laughs + "]><plist><string>&l59;</string></plist>")),
              "the XML declares entities");
    EXPECT_FALSE(parse(laughs + "]><plist a=\"&l59;\"><true/></plist>"));
    const std::string wide(1 << 20, 'a');
    std::string references;
    for (int i = 0; i < 1 << 20; ++i) {
        references += "&a;";
    }
    EXPECT_EQ(problemOf(parse("<!DOCTYPE plist [<!ENTITY a \"" + wide + "\">]><plist b=\"" +
                              references + "\"><true/></plist>")),
              "the XML declares entities");
    EXPECT_LT(watch.seconds(), 5);
}

// Each one of these names the one before: a reader that follows them within itself runs out of
// stack.
TEST(XmlEntities, NoneNests) {
    std::string chain = "<!DOCTYPE plist [<!ENTITY a0 \"\">";
    for (int i = 1; i < 100000; ++i) {
        chain += "<!ENTITY a" + std::to_string(i) + " \"&a" + std::to_string(i - 1) + ";\">";
    }
    for (const char* end : {"<!ATTLIST plist b CDATA \"&a99999;\">]><plist><true/></plist>",
                            "]><plist b=\"&a99999;\"><true/></plist>"}) {
        EXPECT_EQ(problemOf(parse(chain + end)), "the XML declares entities");
    }
}

TEST(XmlDeclarations, AreBounded) {
    const Stopwatch watch;
    const auto listWith = [](int count) {
        std::string list = "<!DOCTYPE plist [<!ATTLIST true ";
        for (int i = 0; i < count; ++i) {
            list += "a" + std::to_string(i) + " CDATA 'b' ";
        }
        return list + ">]><plist><true/></plist>";
    };
    EXPECT_EQ(as<bool>(parse(listWith(100))), true);
    EXPECT_EQ(problemOf(parse(listWith(500000))), "the XML declares too many attributes");
    EXPECT_LT(watch.seconds(), 5);
}

TEST(XmlBounds, LargeAndDeepListsTakeBoundedTime) {
    const Stopwatch watch;
    std::string deep;
    for (int i = 0; i < 200000; ++i) {
        deep += "<dict><key>a</key>";
    }
    EXPECT_EQ(problemOf(parse("<plist>" + deep)), "it is nested too deep");
    const std::size_t large = std::size_t{15} << 20U;
    EXPECT_EQ(
        as<std::string>(parseXmlObject("<string>" + std::string(large, 'a') + "</string>")).size(),
        large);
    EXPECT_EQ(problemOf(parseDeclared("windows-1252", std::string(large, '\x80'))),
              "its texts are too large"); // three bytes each
    EXPECT_EQ(problemOf(parse("<plist>" + std::string(std::size_t{100} << 20U, ' '))),
              "it is too large");
    EXPECT_FALSE(parse("<plist " + std::string(large, 'a')));
    EXPECT_FALSE(parse("<plist><!--" + std::string(large, '-')));
    std::string halfComments = "<plist>";
    std::string halfLiterals = "<!DOCTYPE plist [";
    for (int i = 0; i < 1000000; ++i) {
        halfComments += "<!--";
        halfLiterals += "<!a \"";
    }
    EXPECT_FALSE(parse(halfComments));
    EXPECT_FALSE(parse(halfLiterals));
    std::string attributes;
    for (int i = 0; i < 500000; ++i) {
        attributes += " a" + std::to_string(i) + "=''";
    }
    EXPECT_EQ(as<bool>(parse("<plist" + attributes + "><true/></plist>")), true);
    EXPECT_LT(watch.seconds(), 100); // under sanitizers, on a busy machine
}

TEST(XmlComments, MayHoldDashes) {
    for (const char* comment :
         {"<!-- a -- b -->", "<!----- a ----->", "<!---->", "<!-- -- --- -->"}) {
        const std::string list = "<plist>"s + comment + "<array>" + comment +
                                 "<integer>-7</integer>" + comment + "</array></plist>";
        const auto array = as<PropertyListArray>(parse(list));
        ASSERT_EQ(array.size(), 1U) << comment;
        EXPECT_EQ(std::get<std::int64_t>(array[0].value), -7);
    }
}

TEST(XmlComments, TextThatResemblesACommentStays) {
    EXPECT_EQ(as<std::string>(parseXmlObject("<string><![CDATA[<!-- a - b -->]]>-</string>")),
              "<!-- a - b -->-");
    EXPECT_EQ(as<std::int64_t>(parse("<!DOCTYPE plist SYSTEM \"<!--\"><plist><integer>-7</integer>"
                                     "<!-- - --></plist>")),
              -7);
    EXPECT_EQ(as<std::int64_t>(parse(
                  "<?xml version=\"1.0\"?><?a <!-- ?><plist><integer>-7</integer><!----></plist>")),
              -7);
}

TEST(XmlStructure, AnInvalidValueMakesTheListUnreadable) {
    for (const char* object : {"<integer>a</integer>", "<integer/>", "<real>1,5</real>", "<date/>",
                               "<date>today</date>", "<integer>99999999999999999999</integer>"}) {
        EXPECT_EQ(problemOf(parseXmlObject(object)), "the XML has an invalid value") << object;
    }
    EXPECT_EQ(as<PropertyListData>(parseXmlObject("<data/>")).size(), 0U);
    EXPECT_EQ(as<bool>(parseXmlObject("<true>no</true>")), true);
}

TEST(XmlStructure, ReportsWhatIsWrong) {
    EXPECT_EQ(problemOf(parse("<plist><true a=b/></plist>")), "the XML is malformed");
    EXPECT_EQ(problemOf(parse("<!-- nothing -->")), "the XML breaks off");
    EXPECT_EQ(problemOf(parse("<?xml version=\"1.0\"?>")), "the XML breaks off");
    EXPECT_EQ(problemOf(parse("<plist><true/>")), "the XML breaks off");
    EXPECT_EQ(problemOf(parse("<plist><string>a")), "the XML breaks off");
    EXPECT_EQ(problemOf(parse("<plist><string><![CDATA[a")), "the XML breaks off");
    EXPECT_EQ(problemOf(parse("<plist><stri")), "the XML breaks off");
}

} // namespace
} // namespace quorvel::freedesktop
