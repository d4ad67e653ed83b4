// The three formats, and files that are made to hurt.
#include "freedesktop/preferences/property_list_file.h"

#include <clocale>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "tests/freedesktop/preferences/property_list_testing.h"

namespace quorvel::freedesktop {
namespace {

using namespace std::string_literals;
using platform::NSDate;
using platform::PropertyListArray;
using platform::PropertyListData;
using platform::PropertyListDictionary;
using platform::PropertyListValue;

std::string bigEndian(std::uint64_t value, int width) {
    std::string bytes;
    for (int i = width - 1; i >= 0; --i) {
        bytes += static_cast<char>(value >> (8 * i) & 0xFFU);
    }
    return bytes;
}

// A binary list of these objects, the first of which is the root; references have two bytes.
std::string binary(const std::vector<std::string>& objects) {
    std::string bytes = "bplist00";
    std::string offsets;
    for (const std::string& object : objects) {
        offsets += bigEndian(bytes.size(), 4);
        bytes += object;
    }
    const std::size_t table = bytes.size();
    return bytes + offsets + std::string(6, '\0') + '\x04' + '\x02' + bigEndian(objects.size(), 8) +
           bigEndian(0, 8) + bigEndian(table, 8);
}

std::string marker(unsigned kind, std::size_t count) {
    if (count < 15) {
        return {static_cast<char>(kind << 4U | count)};
    }
    return std::string{static_cast<char>(kind << 4U | 0xFU), '\x12'} + bigEndian(count, 4);
}

std::string text(const std::string& ascii) {
    return marker(5, ascii.size()) + ascii;
}

std::string container(unsigned kind, std::size_t count, const std::vector<unsigned>& references) {
    std::string bytes = marker(kind, count);
    for (const unsigned reference : references) {
        bytes += bigEndian(reference, 2);
    }
    return bytes;
}

TEST(XmlPropertyList, HasEveryKind) {
    const auto list = parseXmlObject(R"(<dict>
        <key>yes</key><true/> <key>no</key><false></false>
        <key>int</key><integer>-42</integer> <key>hex</key><integer>0x1F</integer>
        <key>big</key><integer>18446744073709551615</integer>
        <key>real</key><real>1.75</real>
        <key>text</key><string>Gr&#252;&#xDF;e &amp; &lt;b&gt; <![CDATA[<&>]]>!</string>
        <key>empty</key><string/>
        <key>date</key><date>2026-03-10T10:00:00Z</date>
        <key>data</key><data> AQID
        BA== </data>
        <!-- <dict> -- >
        --><key>list</key><array><integer>1</integer><string>two</string><array/></array>
        <key>inner</key><dict><key>a</key><string>b</string></dict></dict>)");
    EXPECT_EQ(entry<bool>(list, "yes"), true);
    EXPECT_EQ(entry<bool>(list, "no"), false);
    EXPECT_EQ(entry<std::int64_t>(list, "int"), -42);
    EXPECT_EQ(entry<std::int64_t>(list, "hex"), 31);
    EXPECT_EQ(entry<std::uint64_t>(list, "big"), 18446744073709551615U);
    EXPECT_EQ(entry<double>(list, "real"), 1.75);
    EXPECT_EQ(entry<std::string>(list, "text"), "Grüße & <b> <&>!");
    EXPECT_EQ(entry<std::string>(list, "empty"), "");
    EXPECT_EQ(entry<NSDate>(list, "date"), NSDate{794829600});
    EXPECT_EQ(entry<PropertyListData>(list, "data"),
              (PropertyListData{std::byte{1}, std::byte{2}, std::byte{3}, std::byte{4}}));
    EXPECT_EQ(entry<PropertyListArray>(list, "list").size(), 3U);
    EXPECT_EQ(entry<PropertyListDictionary>(list, "inner").size(), 1U);
}

TEST(XmlPropertyList, NumbersDoNotFollowTheLocale) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    bool comma = false;
    for (const char* locale : {"de_DE.UTF-8", "fr_FR.UTF-8", "de_DE.utf8"}) {
        comma = comma || std::setlocale(LC_ALL, locale) != nullptr;
    }
    EXPECT_EQ(as<double>(parseXmlObject("<real>1.75</real>")), 1.75);
    EXPECT_EQ(as<double>(parseXmlObject("<real>-2.5e3</real>")), -2500);
    std::setlocale(LC_ALL, before.c_str());
    if (!comma) {
        GTEST_SKIP() << "no locale with a decimal comma is installed; read under " << before;
    }
}

TEST(XmlPropertyList, IsParsedLikeThePlatformDoes) {
    EXPECT_EQ(as<std::string>(parseXmlObject("<string>a</string>")), "a");
    EXPECT_EQ(entry<std::string>(parse("<dict><key>a</key><string>b</string></dict>"), "a"), "b");
    EXPECT_EQ(as<std::int64_t>(parse("<plist><integer>7</integer></plist> junk <")), 7);
    EXPECT_EQ(as<std::int64_t>(parse("\xEF\xBB\xBF<plist><integer>7</integer></plist>")), 7);
    EXPECT_EQ(as<std::int64_t>(parse("\n <plist><integer>7</integer></plist>")), 7);
    EXPECT_EQ(as<std::int64_t>(parse("<!DOCTYPE plist [ <!ENTITY a \">\"> ]><plist>"
                                     "<integer>7</integer></plist>")),
              7);
    const std::string ascii = "<plist><string>h</string></plist>";
    std::string utf16 = "\xFE\xFF";
    for (const char c : ascii) {
        utf16 += '\0';
        utf16 += c;
    }
    EXPECT_EQ(as<std::string>(parse(utf16)), "h");
    EXPECT_EQ(as<std::string>(parseXmlObject("<string>a\xFFz]]&gt;</string>")), "a\uFFFDz]]>");
    EXPECT_EQ(as<std::string>(parseXmlObject("<string> a\n b </string>")), " a\n b ");
}

TEST(XmlPropertyList, LastOfTwoEntriesCounts) {
    const auto list = parseXmlObject(
        "<dict><key>a</key><integer>1</integer><key>a</key><integer>2</integer></dict>");
    EXPECT_EQ(entry<std::int64_t>(list, "a"), 2);
}

TEST(XmlPropertyList, ReportsWhatIsWrong) {
    EXPECT_EQ(problemOf(parse("<plist><dict><key>a</key>")), "the XML breaks off");
    EXPECT_EQ(problemOf(parse("<plist><dict></array>")), "the elements of the XML do not match");
    EXPECT_EQ(problemOf(parse("<plist><true/><true/></plist>")),
              "the XML has more than one object");
    EXPECT_EQ(problemOf(parse("<plist><sum/></plist>")),
              "the XML has elements that are not those of a property list");
    EXPECT_EQ(problemOf(parse("<plist>a</plist>")), "the XML has text between its elements");
    EXPECT_EQ(problemOf(parse("<plist></plist>")), "the XML holds no object");
    EXPECT_EQ(problemOf(parseXmlObject("<string>&lol;</string>")), "the XML has an unknown entity");
    EXPECT_EQ(problemOf(parseXmlObject("<string>&</string>")), "the XML has an unknown entity");
    EXPECT_EQ(problemOf(parseXmlObject("<string><true/></string>")),
              "the XML has elements that are not those of a property list");
    for (const char* object :
         {"<dict><key>a</key></dict>", "<dict><string>a</string></dict>",
          "<dict><key>a</key><key>b</key></dict>", "<array><key>a</key></array>", "<key>a</key>"}) {
        EXPECT_EQ(problemOf(parseXmlObject(object)),
                  "the XML has a key without a value, or a value without a key")
            << object;
    }
    EXPECT_FALSE(parse("<plist><integer>&lt;a</integer></plist>"));
}

TEST(XmlPropertyList, HostileListsTakeBoundedTime) {
    const Stopwatch watch;
    std::string deep;
    for (int i = 0; i < 200000; ++i) {
        deep += "<array>";
    }
    EXPECT_EQ(problemOf(parse("<plist>" + deep)), "it is nested too deep");
    std::string many = "<plist><array>";
    for (int i = 0; i < 300000; ++i) {
        many += "<true/>";
    }
    EXPECT_EQ(problemOf(parse(many + "</array></plist>")), "it holds too many objects");
    std::string entities;
    for (int i = 0; i < 400000; ++i) {
        entities += "&amp;";
    }
    EXPECT_EQ(as<std::string>(parseXmlObject("<string>" + entities + "</string>")),
              std::string(400000, '&'));
    std::string sections;
    for (int i = 0; i < 200000; ++i) {
        sections += "]]&gt;";
    }
    EXPECT_EQ(as<std::string>(parseXmlObject("<string>" + sections + "</string>")).size(), 600000U);
    std::string wide = "<dict>";
    for (int i = 0; i < 90000; ++i) {
        wide += "<key>k" + std::to_string(i) + "</key><true/>";
    }
    EXPECT_EQ(as<PropertyListDictionary>(parseXmlObject(wide + "</dict>")).size(), 90000U);
    EXPECT_FALSE(parse("<plist>" + std::string(1 << 22, '<')));
    EXPECT_FALSE(parse("<plist><integer>" + std::string(1 << 22, '9') + "</integer>"));
    EXPECT_LT(watch.seconds(), 10);
}

TEST(BinaryPropertyList, HasEveryKind) {
    const std::string real = "\x23"s + bigEndian(0x3FFC000000000000U, 8); // 1.75
    const std::string date = "\x33"s + bigEndian(0x41C7B018A0000000U, 8); // some 794,833,216
    const auto list = parse(
        binary({container(0xD, 9, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18}),
                text("yes"), text("byte"), text("int"), text("real"), text("text"), text("wide"),
                text("data"), text("date"), text("list"), "\x09"s, "\x10\xFF"s,
                "\x13"s + bigEndian(static_cast<std::uint64_t>(-42), 8), real,
                text("a longer text, of more than 15"), marker(6, 2) + "\0\xFC\x65\xE5"s,
                marker(4, 2) + "\x01\x02"s, date, container(0xA, 2, {10, 11})}));
    EXPECT_EQ(entry<bool>(list, "yes"), true);
    EXPECT_EQ(entry<std::int64_t>(list, "byte"), 255);
    EXPECT_EQ(entry<std::int64_t>(list, "int"), -42);
    EXPECT_EQ(entry<double>(list, "real"), 1.75);
    EXPECT_EQ(entry<std::string>(list, "text"), "a longer text, of more than 15");
    EXPECT_EQ(entry<std::string>(list, "wide"), "ü日");
    EXPECT_EQ(entry<PropertyListData>(list, "data"),
              (PropertyListData{std::byte{1}, std::byte{2}}));
    EXPECT_EQ(entry<NSDate>(list, "date").timeIntervalSinceReferenceDate,
              std::trunc(0x1.7B018Ap29));
    EXPECT_EQ(entry<PropertyListArray>(list, "list").size(), 2U);
}

// Eight bytes are signed; sixteen hold what is too large for that.
TEST(BinaryPropertyList, HasUnsignedNumbersAndReferences) {
    constexpr std::uint64_t topBit = std::uint64_t{1} << 63U;
    for (const std::uint64_t number : {topBit, ~std::uint64_t{0}}) {
        const auto list = parse(binary({"\x14"s + bigEndian(0, 8) + bigEndian(number, 8)}));
        EXPECT_EQ(as<std::uint64_t>(list), number);
    }
    EXPECT_EQ(
        as<std::int64_t>(parse(binary({"\x14"s + bigEndian(0, 8) + bigEndian(topBit - 1, 8)}))),
        std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(as<std::int64_t>(parse(binary({"\x13"s + bigEndian(topBit, 8)}))),
              std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(entry<std::int64_t>(parse(binary({"\x80\x05"s})), "CF$UID"), 5);
}

TEST(PropertyListFile, AnIntegerAboveTheSignedRangeIsALargeFloat) {
    const auto large = [](const ParsedList& list) {
        return list ? platform::floatValue(*list) : 0;
    };
    EXPECT_EQ(large(parseXmlObject("<integer>18446744073709551615</integer>")), 0x1p64F);
    EXPECT_EQ(large(parse(binary({"\x14"s + bigEndian(0, 8) + bigEndian(~std::uint64_t{0}, 8)}))),
              0x1p64F);
}

TEST(BinaryPropertyList, DamagedListsAreRefused) {
    const std::string good = binary({container(0xD, 1, {1, 2}), text("key"), "\x10\x07"s});
    ASSERT_EQ(entry<std::int64_t>(parse(good), "key"), 7);
    for (std::size_t size = 6; size < good.size(); ++size) { // less is an old list of one text
        EXPECT_FALSE(parse(std::string_view(good).substr(0, size))) << size;
    }
    EXPECT_EQ(problemOf(parse("bplist99" + good.substr(8))),
              "its binary format is of an unknown version");
    for (const std::string& bytes :
         {binary({container(0xA, 1, {7})}), binary({container(0xD, 1, {1, 1}), "\x08"s}),
          binary({marker(5, 4000000) + "a"}), binary({"\x5F\x13"s + std::string(8, '\xFF')}),
          binary({"\x6F\x13"s + std::string(8, '\xFF')}),
          binary({"\xAF\x13"s + bigEndian(0x8000000000000000U, 8)}), binary({"\x17"s}),
          binary({"\x00"s}), binary({"\xC0"s}), binary({""}), binary({})}) {
        EXPECT_EQ(problemOf(parse(bytes)), "the binary list is damaged");
    }
}

// The library's texts end at a NUL, and it asserts that a text in UTF-16 has none.
TEST(BinaryPropertyList, ANulInATextIsNoCharacter) {
    const std::string narrow = marker(5, 3) + "a\0b"s;
    const std::string wide = marker(6, 3) + "\0a\0\0\0b"s;
    for (const std::string& odd : {narrow, wide}) {
        EXPECT_EQ(as<std::string>(parse(binary({odd}))), "a\uFFFDb");
        EXPECT_EQ(as<PropertyListArray>(parse(binary({container(0xA, 2, {1, 1}), odd}))).size(),
                  2U);
        EXPECT_EQ(entry<bool>(parse(binary({container(0xD, 1, {1, 2}), odd, "\x09"s})), "a\uFFFDb"),
                  true);
        EXPECT_EQ(
            entry<std::string>(parse(binary({container(0xD, 1, {1, 2}), text("key"), odd})), "key"),
            "a\uFFFDb");
    }
    const std::string halves = marker(6, 2) + "\x01\x00\x00\x61"s; // no unit is 0
    EXPECT_EQ(as<std::string>(parse(binary({halves}))), "\u0100a");
}

// The text's characters are the array and the truth value, and its NUL is the array's second
// reference: replaced, it refers to object 255, a text with a NUL that nothing referred to before.
TEST(BinaryPropertyList, ANulThatIsPartOfAnotherObjectMakesTheListDamaged) {
    const std::string text = "\x54"s, array = "\xA2\x02\x00"s, truth = "\x09"s,
                      hidden = "\x61\0\0"s;
    const std::string objects = text + array + truth + hidden; // from the eighth byte
    const std::string offsets = "\x0C\x09\x08"s + std::string(252, '\x0C') + "\x0D";
    const std::string bytes = "bplist00" + objects + offsets + std::string(6, '\0') + "\x01\x01" +
                              bigEndian(offsets.size(), 8) + bigEndian(1, 8) +
                              bigEndian(8 + objects.size(), 8);
    EXPECT_EQ(problemOf(parse(bytes)), "the binary list is damaged");
}

TEST(BinaryPropertyList, EveryChangedByteIsSurvived) {
    const std::string good =
        binary({container(0xD, 2, {1, 2, 3, 4}), text("key"), text("list"), "\x10\x07"s,
                container(0xA, 3, {1, 3, 5}), "\x23"s + std::string(8, '\x40')});
    for (std::size_t at = 0; at < good.size(); ++at) {
        for (int value = 0; value < 256; ++value) {
            std::string bytes = good;
            bytes[at] = static_cast<char>(value);
            const auto list = parse(bytes);
            EXPECT_EQ(list.hasValue(), problemOf(list).empty());
        }
    }
}

TEST(BinaryPropertyList, HostileListsTakeBoundedTime) {
    const Stopwatch watch;
    std::vector<std::string> bomb;
    for (unsigned i = 1; i < 12; ++i) {
        bomb.push_back(container(0xA, 10, std::vector<unsigned>(10, i)));
    }
    bomb.push_back(text("boom"));
    EXPECT_EQ(problemOf(parse(binary(bomb))), "it holds too many objects");
    EXPECT_EQ(problemOf(parse(binary({container(0xA, 1, {0})}))), "it is nested too deep");
    std::vector<std::string> deep;
    for (unsigned i = 1; i < 60000; ++i) {
        deep.push_back(container(0xA, 1, {i}));
    }
    deep.push_back(text("end"));
    EXPECT_EQ(problemOf(parse(binary(deep))), "it is nested too deep");
    EXPECT_EQ(problemOf(parse(binary({container(0xA, 100, std::vector<unsigned>(100, 1)),
                                      text(std::string(1 << 20, 'x'))}))),
              "its texts are too large");
    EXPECT_LT(watch.seconds(), 5);
}

TEST(OldPropertyList, IsRead) {
    const auto list = parse(R"(// settings
        { textSize = 18; "date text" = 'a "b"'; list = (one, "two", ); short; nested = { a = (); };
          data = <0fbd 77>; /* none */ escaped = "\"\n\\\101\U00fc\Ud83d\ude00"; })");
    EXPECT_EQ(entry<std::string>(list, "textSize"), "18");
    EXPECT_EQ(entry<std::string>(list, "date text"), "a \"b\"");
    EXPECT_EQ(entry<PropertyListArray>(list, "list").size(), 2U);
    EXPECT_EQ(entry<std::string>(list, "short"), "short");
    EXPECT_EQ(entry<PropertyListDictionary>(list, "nested").size(), 1U);
    EXPECT_EQ(entry<PropertyListData>(list, "data"),
              (PropertyListData{std::byte{0x0F}, std::byte{0xBD}, std::byte{0x77}}));
    EXPECT_EQ(entry<std::string>(list, "escaped"), "\"\n\\Aü😀");
    EXPECT_EQ(entry<std::string>(parse("a = b;\n\"c\" = d;"), "c"), "d");
    EXPECT_EQ(as<std::string>(parse("hello")), "hello");
    EXPECT_EQ(as<PropertyListDictionary>(parse(" \n\t")).size(), 0U);
}

TEST(OldPropertyList, NeedsItsPunctuation) {
    for (const char* bad :
         {"{ a = b }", "{ a = b; ", "( a b )", "( a, b", "<0f", "<0>", "\"abc", "{ a = b; } junk",
          "{ = b; }", "a = b", "#", "\\", "{ a = ; }", "this is no list"}) {
        const auto list = parse(bad);
        EXPECT_FALSE(list) << bad;
        EXPECT_EQ(problemOf(list), "it is not a property list") << bad;
    }
}

TEST(OldPropertyList, HostileListsTakeBoundedTime) {
    EXPECT_EQ(problemOf(parse(std::string(1 << 20, '('))), "it is nested too deep");
    std::string many = "(";
    for (int i = 0; i < 300000; ++i) {
        many += "a,";
    }
    EXPECT_EQ(problemOf(parse(many + ")")), "it holds too many objects");
}

TEST(PropertyListFile, EmptyBytesAreNothing) {
    EXPECT_EQ(problemOf(parse("")), "it is empty");
    EXPECT_FALSE(parse(""));
    EXPECT_EQ(problemOf(parse(std::string((16 << 20) + 1, ' '))), "it is too large");
}

} // namespace
} // namespace quorvel::freedesktop
