#include "core/actions/scoped_access.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace gruk {

TEST(ScopedAccess, theLastReferenceStopsTheAccess)
{
    std::vector<std::string> stopped;
    auto access =
        std::make_shared<ScopedAccess>(FileURL::directory("/realm"), true,
                                       [&](const FileURL& url) { stopped.push_back(url.path()); });
    auto second = access;
    access.reset();
    EXPECT_TRUE(stopped.empty());
    EXPECT_TRUE(second->didStartAccessing());
    EXPECT_EQ(second->url().path(), "/realm");
    second.reset();
    EXPECT_EQ(stopped, std::vector<std::string>{"/realm"});
}

TEST(ScopedAccess, aRefusedAccessIsNotStopped)
{
    int stops = 0;
    {
        const ScopedAccess access(FileURL::directory("/realm"), false,
                                  [&](const FileURL&) { ++stops; });
        EXPECT_FALSE(access.didStartAccessing());
    }
    EXPECT_EQ(stops, 0);
}

TEST(ScopedAccess, withoutAFunctionThereIsNothingToBalance)
{
    EXPECT_NO_THROW(ScopedAccess(FileURL::directory("/realm"), true, nullptr));
}

}  // namespace gruk
