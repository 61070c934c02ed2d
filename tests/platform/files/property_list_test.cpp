#include "platform/files/property_list.h"

#include <cstdint>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "platform/foundation/utf8.h"

namespace gruk {

namespace {

using Texts = std::vector<std::string>;
using namespace std::string_literals;

// Written by an independent encoder.
constexpr std::string_view trueList =
    "62706c6973743030090800000000000001010000000000000001000000000000000000000000000000"
    "09";
constexpr std::string_view falseList =
    "62706c697374303008080000000000000101000000000000000100000000000000000000000000000009";
constexpr std::string_view textsList =
    "62706c6973743030a201025f101968747470733a2f2f6578616d706c652e6f72672f612e7a69705f1014"
    "68747470733a2f2f6578616d706c652e6f72672f080b2700000000000001010000000000000003000000"
    "0000000000000000000000003e";
constexpr std::string_view unicodeList =
    "62706c6973743030a1016f101c00680074007400700073003a002f002f006500780061006d0070006c00"
    "65002e006f00720067002f0067007200fc00df00650020d83dde00080a00000000000001010000000000"
    "00000200000000000000000000000000000045";
constexpr std::string_view emptyArrayList =
    "62706c6973743030a0080000000000000101000000000000000100000000000000000000000000000009";
constexpr std::string_view sharedTextList =
    "62706c6973743030a30101025261615162080c0f00000000000001010000000000000003000000000000"
    "00000000000000000011";

// Lists of other things: a dictionary, an array with a number, one with an array, a number, a
// text, data.
// Each in parentheses, since a literal goes over two lines.
const std::vector<std::string_view> otherLists{
    ("62706c6973743030d1010251615162080b0d0000000000000101000000000000000300000000000000000000"
     "00000000000f"),
    ("62706c6973743030a2010251611001080b0d0000000000000101000000000000000300000000000000000000"
     "00000000000f"),
    ("62706c6973743030a101a1025161080a0c000000000000010100000000000000030000000000000000000000"
     "000000000e"),
    ("62706c6973743030100108000000000000010100000000000000010000000000000000000000000000000a"),
    ("62706c6973743030516108000000000000010100000000000000010000000000000000000000000000000a"),
    ("62706c69737430304361626308000000000000010100000000000000010000000000000000000000000000000c")};

std::string bytesOf(std::string_view hex)
{
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
        bytes += static_cast<char>(std::stoi(std::string(hex.substr(i, 2)), nullptr, 16));
    }
    return bytes;
}

std::string bigEndian(std::uint64_t number, std::size_t length)
{
    std::string bytes(length, '\0');
    for (std::size_t i = length; i-- > 0; number >>= 8U) {
        bytes[i] = static_cast<char>(number & 0xFFU);
    }
    return bytes;
}

/// A binary list of these encoded objects, the first of them the root, with two-byte offsets and
/// references.
std::string binaryList(const std::vector<std::string>& objects)
{
    std::string bytes = "bplist00";
    std::string table;
    for (const std::string& object : objects) {
        table += bigEndian(bytes.size(), 2);
        bytes += object;
    }
    const std::size_t tableStart = bytes.size();
    return bytes + table + "\0\0\0\0\0\0\2\2"s + bigEndian(objects.size(), 8) + bigEndian(0, 8)
           + bigEndian(tableStart, 8);
}

/// An encoded array of `count` references, all to the object `index`.
std::string arrayOf(std::size_t count, std::size_t index)
{
    std::string object = "\xAF\x11" + bigEndian(count, 2);
    for (std::size_t i = 0; i < count; ++i) {
        object += bigEndian(index, 2);
    }
    return object;
}

std::string textOf(std::size_t length)
{
    return "\x5F\x11" + bigEndian(length, 2) + std::string(length, 'x');
}

std::string xmlList(const std::string& content)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n" + content
           + "\n</plist>\n";
}

TEST(PropertyList, readsABinaryBoolean)
{
    EXPECT_EQ(propertyListBoolean(bytesOf(trueList)), true);
    EXPECT_EQ(propertyListBoolean(bytesOf(falseList)), false);
    EXPECT_EQ(propertyListTexts(bytesOf(trueList)), std::nullopt);
}

TEST(PropertyList, readsBinaryTexts)
{
    EXPECT_EQ(propertyListTexts(bytesOf(textsList)),
              (Texts{"https://example.org/a.zip", "https://example.org/"}));
    EXPECT_EQ(propertyListTexts(bytesOf(unicodeList)),
              (Texts{"https://example.org/gr\xC3\xBC\xC3\x9F"
                     "e \xF0\x9F\x98\x80"}));
    EXPECT_EQ(propertyListTexts(bytesOf(emptyArrayList)), Texts{});
    EXPECT_EQ(propertyListTexts(bytesOf(sharedTextList)), (Texts{"aa", "aa", "b"}));
    EXPECT_EQ(propertyListBoolean(bytesOf(textsList)), std::nullopt);
}

TEST(PropertyList, readsXML)
{
    EXPECT_EQ(propertyListBoolean(xmlList("<true/>")), true);
    EXPECT_EQ(propertyListBoolean(xmlList("<false/>")), false);
    EXPECT_EQ(propertyListTexts(xmlList("<array><string>a &amp; b</string><string>c</string>"
                                        "</array>")),
              (Texts{"a & b", "c"}));
    EXPECT_EQ(propertyListTexts(xmlList("<array><array><string>a</string></array></array>")),
              std::nullopt);
    EXPECT_EQ(propertyListTexts(xmlList("<array><integer>1</integer></array>")), std::nullopt);
    EXPECT_EQ(propertyListTexts(xmlList("<string>a</string>")), std::nullopt);
}

TEST(PropertyList, everythingElseIsNone)
{
    for (const std::string_view hex : otherLists) {
        EXPECT_EQ(propertyListBoolean(bytesOf(hex)), std::nullopt) << hex;
        EXPECT_EQ(propertyListTexts(bytesOf(hex)), std::nullopt) << hex;
    }
    for (const std::string& bytes :
         {""s, "bplist00"s, "bplist"s, "true"s, "{\"a\":1}"s, "<"s, "<plist>"s, "<?xml"s,
          std::string(100, '\0'), std::string(100, '\xFF'), "bplist00" + std::string(32, '\xFF')}) {
        EXPECT_EQ(propertyListBoolean(bytes), std::nullopt) << bytes;
        EXPECT_EQ(propertyListTexts(bytes), std::nullopt) << bytes;
    }
}

TEST(PropertyList, aTextThatIsNoUTF8IsNone)
{
    EXPECT_EQ(propertyListTexts(binaryList({"\xA1\0\1"s, "\x51\xFF"})), std::nullopt);
}

TEST(PropertyList, isNotFilledUpByArraysInArrays)
{
    std::vector<std::string> objects;
    for (std::size_t i = 1; i <= 20; ++i) {
        objects.push_back(arrayOf(100, i));
    }
    objects.push_back(textOf(10));
    const std::string bytes = binaryList(objects);
    ASSERT_LT(bytes.size(), 10'000U);
    EXPECT_EQ(propertyListTexts(bytes), std::nullopt);
}

TEST(PropertyList, isNotFilledUpByOneLongTextUsedOftenTimes)
{
    EXPECT_EQ(propertyListTexts(binaryList({arrayOf(15'000, 1), textOf(30'000)})), std::nullopt);
    const auto few = propertyListTexts(binaryList({arrayOf(100, 1), textOf(30'000)}));
    EXPECT_EQ(few.value_or(Texts()).size(), 100U);
}

TEST(PropertyList, refusesDeepNestingAndLongBytes)
{
    std::string deep;
    for (int i = 0; i < 9'000; ++i) {
        deep += "<array>";
    }
    EXPECT_EQ(propertyListTexts("<plist>" + deep), std::nullopt);
    const std::string blanks(65'536, ' ');
    EXPECT_EQ(propertyListBoolean(xmlList("<true/>" + blanks)), std::nullopt);
}

TEST(PropertyList, survivesBeingCutOffAnywhere)
{
    for (const std::string_view hex : {trueList, textsList, unicodeList, sharedTextList}) {
        const std::string whole = bytesOf(hex);
        for (std::size_t length = 0; length < whole.size(); ++length) {
            // A copy of its own, so that reading past its end is seen by a sanitizer.
            const std::vector<char> part(whole.begin(),
                                         whole.begin() + static_cast<std::ptrdiff_t>(length));
            const std::string_view bytes(part.data(), part.size());
            EXPECT_EQ(propertyListBoolean(bytes), std::nullopt) << length;
            EXPECT_EQ(propertyListTexts(bytes), std::nullopt) << length;
        }
    }
}

void expectSoundAnswer(const std::string& bytes)
{
    (void)propertyListBoolean(bytes);
    if (const auto texts = propertyListTexts(bytes)) {
        for (const std::string& text : *texts) {
            EXPECT_TRUE(isValidUTF8(text));
        }
    }
}

TEST(PropertyList, survivesEveryFlippedBit)
{
    for (const std::string_view hex : {trueList, textsList, unicodeList, sharedTextList}) {
        const std::string whole = bytesOf(hex);
        for (std::size_t bit = 0; bit < whole.size() * 8; ++bit) {
            std::string bytes = whole;
            bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ (1 << (bit % 8)));
            expectSoundAnswer(bytes);
        }
    }
}

TEST(PropertyList, survivesEveryValueOfEveryByte)
{
    const std::string whole = bytesOf(textsList);
    for (std::size_t at = 0; at < whole.size(); ++at) {
        for (int value = 0; value < 256; ++value) {
            std::string bytes = whole;
            bytes[at] = static_cast<char>(value);
            expectSoundAnswer(bytes);
        }
    }
}

RC_GTEST_PROP(PropertyList, survivesAnyDamage, ())
{
    std::string bytes = bytesOf(*rc::gen::element(textsList, unicodeList, sharedTextList));
    const int count = *rc::gen::inRange(1, 12);
    for (int i = 0; i < count; ++i) {
        bytes[*rc::gen::inRange<std::size_t>(0, bytes.size())] =
            *rc::gen::element('\0', '\1', '\2', '\x08', '\x7F', '\x80', '\xA1', '\xAF', '\xD1',
                              '\x5F', '\x6F', '\x1F', '\x10', '\x13', '\xFF');
    }
    expectSoundAnswer(bytes);
}

RC_GTEST_PROP(PropertyList, survivesDamagedXML, ())
{
    std::string bytes = xmlList("<array><string>a &amp; b</string><string><![CDATA[c]]></string>"
                                "</array>");
    const int count = *rc::gen::inRange(1, 8);
    for (int i = 0; i < count; ++i) {
        const auto at = *rc::gen::inRange<std::size_t>(0, bytes.size());
        if (*rc::gen::arbitrary<bool>()) {
            bytes[at] = *rc::gen::elementOf("<>/&;![]?=\"' \0a\xFF"s);
        } else {
            bytes.erase(at, *rc::gen::inRange<std::size_t>(1, 6));
            bytes += ' ';
        }
    }
    expectSoundAnswer(bytes);
}

}  // namespace

}  // namespace gruk
