#include "platform/foundation/text_order.h"

#include <gtest/gtest.h>
#include <unicode/coll.h>

#include <algorithm>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

namespace gruk {
namespace {

/// The order as ICU alone tells it, with no table and no shortcut.
class PlainOrder {
public:
    PlainOrder()
    {
        UErrorCode status = U_ZERO_ERROR;
        collator_.reset(icu::Collator::createInstance(icu::Locale::getRoot(), status));
        collator_->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
    }
    std::strong_ordering operator()(const std::string& a, const std::string& b) const
    {
        UErrorCode status = U_ZERO_ERROR;
        const int order = static_cast<int>(collator_->compareUTF8(a, b, status));
        return order != 0 ? order <=> 0 : a.compare(b) <=> 0;
    }

private:
    std::unique_ptr<icu::Collator> collator_;
};

std::string randomName(std::mt19937& random)
{
    static const std::vector<std::string> pieces = {
        "a",  "A",    "b",    "B",    "z",    "Z",  "e",  "E",  "l",  "L", "0",      "1",      "2",
        "9",  "00",   "10",   "-",    "_",    ".",  ",",  " ",  "(",  ")", "+",      "~",      "$",
        "#",  "'",    "`",    "^",    "&",    "é",  "É",  "ä",  "ß",  "ñ", "\u0301", "\u00b7", "ø",
        "д",  "Д",    "я",    "α",    "Ω",    "中", "文", "ア", "ｱ",  "٣", "１",     "🙂",     "\t",
        "\n", "\x01", "\x7f", "\xff", "\xc3", "ŀ",  "Ǆ",  "ﬁ",  "ki", "ss"};
    std::string name;
    const auto count = 1 + random() % 7;
    for (unsigned i = 0; i < count; ++i) {
        // Mostly the plain ones, so that the others stand in every place among them.
        name += pieces[random() % (random() % 3 == 0 ? pieces.size() : 31)];
    }
    return name;
}

TEST(TextOrder, agreesWithTheCollationOnEveryPairOfNames)
{
    const PlainOrder plain;
    std::mt19937 random(20261120);
    for (int round = 0; round < 300'000; ++round) {
        const std::string a = randomName(random);
        std::string b = randomName(random);
        if (random() % 2 == 0) {
            // A common beginning is where the shortcuts could go wrong.
            b = a.substr(0, random() % (a.size() + 1)) + b;
        }
        ASSERT_EQ(localizedStandardCompareNames(a, b), plain(a, b)) << a << " | " << b;
    }
}

TEST(TextOrder, theRanksOfManyNamesAreTheirPlacesInTheOrder)
{
    std::mt19937 random(20261121);
    for (int round = 0; round < 60; ++round) {
        std::vector<std::string> names;
        for (unsigned i = 0; i < 500; ++i) {
            std::string name = randomName(random);
            if (!names.empty() && random() % 2 == 0) {
                const std::string& other = names[random() % names.size()];
                name.insert(0, other.substr(0, random() % (other.size() + 1)));
            }
            names.push_back(std::move(name));
        }
        const std::vector<std::string_view> views(names.begin(), names.end());
        const std::vector<std::uint32_t> ranks = localizedNameRanks(views);
        std::vector<std::uint32_t> order(names.size());
        std::iota(order.begin(), order.end(), 0U);
        std::stable_sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
            return localizedStandardCompareNames(names[a], names[b]) < 0;
        });
        for (std::uint32_t place = 0; place < order.size(); ++place) {
            ASSERT_EQ(ranks[order[place]], place) << names[order[place]];
        }
    }
}

TEST(TextOrder, theRanksOfVeryLongNamesAndNumbersAreTheirPlacesInTheOrder)
{
    const std::vector<std::string> names = {std::string(300, '9'),
                                            "1" + std::string(299, '0'),
                                            std::string(254, '9'),
                                            std::string(255, '1'),
                                            std::string(400, 'a') + "b",
                                            std::string(400, 'a') + "B",
                                            std::string(400, 'a') + "\u00e9",
                                            "file10",
                                            "file2",
                                            "file02",
                                            "",
                                            "\xff"};
    const std::vector<std::string_view> views(names.begin(), names.end());
    const std::vector<std::uint32_t> ranks = localizedNameRanks(views);
    for (std::size_t a = 0; a < names.size(); ++a) {
        for (std::size_t b = 0; b < names.size(); ++b) {
            EXPECT_EQ(ranks[a] <=> ranks[b], localizedStandardCompareNames(names[a], names[b]))
                << names[a] << " | " << names[b];
        }
    }
    EXPECT_TRUE(localizedNameRanks({}).empty());
}

TEST(TextOrder, agreesWithTheCollationOnEveryPairOfPrintableCharacters)
{
    const PlainOrder plain;
    for (char x = ' '; x < 127; ++x) {
        for (char y = ' '; y < 127; ++y) {
            for (const char* tail : {"", "a", "1"}) {
                const std::string a = std::string("n") + x + tail;
                const std::string b = std::string("n") + y + tail;
                ASSERT_EQ(localizedStandardCompareNames(a, b), plain(a, b)) << a << " | " << b;
            }
        }
    }
}

TEST(TextOrder, isTotalOverAnyNames)
{
    std::mt19937 random(7);
    std::vector<std::string> names;
    for (int i = 0; i < 120; ++i) {
        names.push_back(randomName(random));
    }
    for (const auto& a : names) {
        for (const auto& b : names) {
            const auto order = localizedStandardCompareNames(a, b);
            EXPECT_EQ(order == 0, a == b);
            EXPECT_EQ(0 <=> localizedStandardCompareNames(b, a), order);
            for (const auto& c : names) {
                if (order < 0 && localizedStandardCompareNames(b, c) < 0) {
                    ASSERT_TRUE(localizedStandardCompareNames(a, c) < 0) << a << b << c;
                }
            }
        }
    }
}

TEST(TextOrder, comparesRunsOfDigitsByValue)
{
    EXPECT_TRUE(localizedStandardCompare("file2", "file10") < 0);
    EXPECT_TRUE(localizedStandardCompare("file10.txt", "File9.txt") > 0);
    EXPECT_TRUE(localizedStandardCompare("a1b", "a01b") > 0);
    EXPECT_TRUE(localizedStandardCompare("a001", "a2") < 0);
    const std::string longNumber(300, '7');
    EXPECT_TRUE(localizedStandardCompare(longNumber, longNumber + "1") < 0);
}

TEST(TextOrder, comparesWithoutCaseFirstAndPutsLowerCaseBeforeUpperOnATie)
{
    EXPECT_TRUE(localizedStandardCompare("Apple", "banana") < 0);
    EXPECT_TRUE(localizedStandardCompare("apple", "Apple") < 0);
    EXPECT_TRUE(localizedStandardCompare("Apple", "apples") < 0);
}

TEST(TextOrder, comparesAccentsAfterLettersAndBeforeCase)
{
    EXPECT_TRUE(localizedStandardCompare("resume", "résumé") < 0);
    EXPECT_TRUE(localizedStandardCompare("résumé", "resumes") < 0);
    EXPECT_TRUE(localizedStandardCompare("E", "é") < 0);
}

TEST(TextOrder, putsAFoldersWholeSubtreeRightAfterIt)
{
    std::vector<std::string> paths = {"a b", "a/b", "a", "a.txt", "a/b/c", "A/x", "a/c", "A", "ab"};
    std::sort(paths.begin(), paths.end(),
              [](const auto& x, const auto& y) { return localizedStandardCompare(x, y) < 0; });
    EXPECT_EQ(paths, (std::vector<std::string>{"a", "a/b", "a/b/c", "a/c", "A", "A/x", "a b",
                                               "a.txt", "ab"}));
}

TEST(TextOrder, letsBytesDecideWhatTheCollationLeavesEqual)
{
    EXPECT_TRUE(localizedStandardCompare("\xfe", "\xff") < 0);
    EXPECT_TRUE(localizedStandardCompare("caf\u00e9", "cafe\u0301") != 0);
    EXPECT_TRUE(localizedStandardCompare("same", "same") == 0);
}

TEST(TextOrder, hasACaseInsensitiveSiblingThatLeavesCaseEqual)
{
    EXPECT_TRUE(localizedCaseInsensitiveCompare("Report", "rEPORT") == 0);
    EXPECT_TRUE(localizedCaseInsensitiveCompare("file10", "file2") < 0);
    EXPECT_TRUE(localizedCaseInsensitiveCompare("e", "é") < 0);
}

}  // namespace
}  // namespace gruk
