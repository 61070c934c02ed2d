#include "core/realm/stable_hash.h"

#include <gtest/gtest.h>

#include "tests/core/realm/realm_vectors.h"

namespace gruk {

TEST(StableHash, theEmptyTextHashesToTheOffsetBasis)
{
    EXPECT_EQ(stableHash(""), 0xcbf29ce484222325U);
}

TEST(StableHash, theWorkedValuesHold)
{
    EXPECT_EQ(stableHash("/"), 0xaf63a24c860189feU);
    EXPECT_EQ(stableHash("/Volumes/Archive"), 0x9a1fae9ad27e6308U);
}

TEST(StableHash, aNonASCIIPathHashesByItsBytesUnchanged)
{
    EXPECT_NE(stableHash("/\u00e9"), stableHash("/e\u0301"));
    EXPECT_NE(stableHash("/\xff"), stableHash("/\ufffd"));
    // A byte above 127 is not taken for a negative number: basis xor 0xff, times the prime.
    EXPECT_EQ(stableHash("\xff"), (0xcbf29ce484222325U ^ 0xffU) * 0x100000001b3U);
}

TEST(StableHash, agreesWithTheTableOnEveryPath)
{
    const auto lines = test::vectorLines("identity");
    EXPECT_GE(lines.size(), 1000U);
    for (const test::VectorLine& line : lines) {
        ASSERT_EQ(stableHash(test::vectorPath(line.fields.at(0))),
                  test::vectorInteger(line.fields.at(1)))
            << "line " << line.number;
    }
}

}  // namespace gruk
