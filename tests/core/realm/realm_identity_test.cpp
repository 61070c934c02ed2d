#include "core/realm/realm_identity.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "tests/core/realm/realm_vectors.h"

namespace gruk {

namespace {

std::string words(const RealmIdentity& identity)
{
    std::string text;
    for (const std::string_view word :
         {rawString(identity.shape), rawString(identity.division), rawString(identity.primary),
          rawString(identity.secondary), rawString(identity.charge), rawString(identity.species)}) {
        text += text.empty() ? "" : " ";
        text += word;
    }
    return text;
}

}  // namespace

TEST(RealmIdentity, theWorkedValuesHold)
{
    EXPECT_EQ(words(RealmIdentity::derive("/")), "banner striped fernDark ink tree human");
    EXPECT_EQ(words(RealmIdentity::derive("/Volumes/Archive")), "square plain teal sand tree gruk");
}

TEST(RealmIdentity, theEmptyPathHasAnIdentityAndIsNoError)
{
    const RealmIdentity expected{FieldShape::square, Division::plain, Tincture::blue,
                                 Tincture::ink,      Charge::tree,    Species::wizard};
    EXPECT_EQ(RealmIdentity::derive(""), expected);
}

TEST(RealmIdentity, aTrailingSlashGivesAnUnrelatedIdentity)
{
    EXPECT_NE(RealmIdentity::derive("/Data"), RealmIdentity::derive("/Data/"));
}

TEST(RealmIdentity, twoUnicodeFormsOfTheSameNameGiveDifferentIdentities)
{
    EXPECT_NE(RealmIdentity::derive("/na\u00efve"), RealmIdentity::derive("/nai\u0308ve"));
}

TEST(RealmIdentity, forAllPathsPrimaryDiffersFromSecondary)
{
    std::set<Tincture> primaries;
    std::set<Tincture> secondaries;
    for (int i = 0; i < 20'000; ++i) {
        const RealmIdentity identity = RealmIdentity::derive("/realm " + std::to_string(i));
        ASSERT_NE(identity.primary, identity.secondary);
        primaries.insert(identity.primary);
        secondaries.insert(identity.secondary);
    }
    EXPECT_EQ(primaries.size(), tinctureCount);
    EXPECT_EQ(secondaries.size(), tinctureCount);
}

TEST(RealmIdentity, agreesWithTheTableOnEveryPath)
{
    const auto lines = test::vectorLines("identity");
    EXPECT_GE(lines.size(), 1000U);
    for (const test::VectorLine& line : lines) {
        std::string expected;
        for (std::size_t i = 2; i < line.fields.size(); ++i) {
            expected += (i == 2 ? "" : " ") + line.fields[i];
        }
        ASSERT_EQ(words(RealmIdentity::derive(test::vectorPath(line.fields.at(0)))), expected)
            << "line " << line.number;
    }
}

}  // namespace gruk
