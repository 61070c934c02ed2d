#include "platform/foundation/text_search.h"

#include <gtest/gtest.h>

namespace gruk {

TEST(TextSearch, caseDoesNotMatter)
{
    EXPECT_TRUE(localizedCaseInsensitiveContains("Photos", "PHOTO"));
    EXPECT_TRUE(localizedCaseInsensitiveContains("PHOTOS", "hot"));
    EXPECT_TRUE(localizedCaseInsensitiveContains("Ähre", "ä"));
    EXPECT_TRUE(localizedCaseInsensitiveContains("ДОМ", "дом"));
    EXPECT_TRUE(localizedCaseInsensitiveContains("ΟΔΟΣ", "οδος"));
    EXPECT_TRUE(localizedCaseInsensitiveContains("Straße", "STRASSE"));
    EXPECT_FALSE(localizedCaseInsensitiveContains("Photos", "fotos"));
}

TEST(TextSearch, theTextIsSearchedAsTypedBlanksAndAll)
{
    EXPECT_TRUE(localizedCaseInsensitiveContains("a b", " "));
    EXPECT_FALSE(localizedCaseInsensitiveContains("ab", " "));
    EXPECT_FALSE(localizedCaseInsensitiveContains("ab", "ab "));
}

TEST(TextSearch, theEmptyTextIsInEveryText)
{
    EXPECT_TRUE(localizedCaseInsensitiveContains("a", ""));
    EXPECT_TRUE(localizedCaseInsensitiveContains("", ""));
    EXPECT_FALSE(localizedCaseInsensitiveContains("", "a"));
}

TEST(TextSearch, anAccentedLetterIsTheSameHoweverItIsPutTogether)
{
    const char* composed = "Caf\u00e9";
    const char* decomposed = "Cafe\u0301";
    EXPECT_TRUE(localizedCaseInsensitiveContains(composed, decomposed));
    EXPECT_TRUE(localizedCaseInsensitiveContains(decomposed, composed));
    EXPECT_EQ(searchKey(composed), searchKey(decomposed));
}

TEST(TextSearch, aLetterIsNotFoundInTheSameLetterWithAnAccent)
{
    EXPECT_FALSE(localizedCaseInsensitiveContains("Caf\u00e9", "cafe"));
    // No composed form exists of this one.
    EXPECT_FALSE(localizedCaseInsensitiveContains("q\u0301", "q"));
    EXPECT_TRUE(localizedCaseInsensitiveContains("q\u0301 q", "q"));
}

TEST(TextSearch, theDotlessLetterIsAnotherLetterInEveryLocale)
{
    EXPECT_TRUE(localizedCaseInsensitiveContains("TITLE", "title"));
    EXPECT_FALSE(localizedCaseInsensitiveContains("t\u0131tle", "title"));
}

TEST(TextSearch, bytesThatAreNoTextCountAsTheReplacementCharacter)
{
    EXPECT_TRUE(localizedCaseInsensitiveContains("A\xff"
                                                 "b",
                                                 "a\ufffd"));
    EXPECT_TRUE(localizedCaseInsensitiveContains("A\xff"
                                                 "b",
                                                 "B"));
    EXPECT_TRUE(localizedCaseInsensitiveContains("\xc3", "\xa9"));
    EXPECT_FALSE(localizedCaseInsensitiveContains("\xc3", "\u00e9"));
}

}  // namespace gruk
