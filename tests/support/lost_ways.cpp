#include "tests/support/lost_ways.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "tests/support/private_mounts.h"
#include "tests/support/temporary_directory.h"

namespace gruk::test {

namespace {

namespace fs = std::filesystem;

void putAside(const std::string& folder)
{
    fs::rename(folder, folder + " renamed");
}

void putBack(const std::string& folder)
{
    fs::rename(folder + " renamed", folder);
}

}  // namespace

LostWay renamed()
{
    return {"renamed", putAside, putBack};
}

LostWay removed()
{
    return {"removed", [](const std::string& folder) { fs::remove_all(folder); }, nullptr};
}

LostWay replaced()
{
    return {"replaced",
            [](const std::string& folder) {
                putAside(folder);
                makeLookAlike(folder);
            },
            [](const std::string& folder) {
                fs::rename(folder, folder + " of another");
                putBack(folder);
            },
            true};
}

LostWay closed()
{
    return {"closed", [](const std::string& folder) { fs::permissions(folder, fs::perms::none); },
            [](const std::string& folder) { fs::permissions(folder, fs::perms::owner_all); }};
}

LostWay pulledOut(const std::shared_ptr<PulledDisk>& disk)
{
    return {"pulled out", [disk](const std::string&) { disk->pullOut(); },
            [disk](const std::string&) { disk->plugIn(); }, true};
}

RealmPlace placeOn(const std::shared_ptr<PulledDisk>& disk)
{
    return {"disk/Desktop", [disk](const std::string& house) { disk->prepare(house); },
            [disk] { disk->pullOut(); }};
}

void inEachWay(const std::function<void(const MakeGoing&)>& play)
{
    for (const LostWay& way : {renamed(), removed(), replaced()}) {
        play([&] { return Going{way}; });
    }
}

void asItIsClosed(const std::function<void(const MakeGoing&)>& play)
{
    const auto body = [&](const TemporaryDirectory&) {
        play([] { return Going{closed()}; });
        return !testing::Test::HasFailure();
    };
    const TemporaryDirectory directory;
    EXPECT_TRUE(succeedsAsOrdinaryUser(body, directory));
}

bool asItsDiskIsPulledOut(const std::function<void(const MakeGoing&)>& play)
{
    const auto run = runWithPrivateMounts([&]() -> std::string {
        play([] {
            const auto disk = std::make_shared<PulledDisk>();
            return Going{pulledOut(disk), placeOn(disk)};
        });
        return testing::Test::HasFailure() ? "see above" : "";
    });
    EXPECT_EQ(run.complaint, "");
    return run.isPermitted;
}

void playMoments(const std::string& name, std::size_t leastMoments,
                 const std::function<bool(std::size_t moment)>& play)
{
    std::size_t moment = 0;
    for (bool isReached = true; isReached && !testing::Test::HasFailure(); ++moment) {
        SCOPED_TRACE(name + ", moment " + std::to_string(moment));
        isReached = play(moment);
    }
    EXPECT_GT(moment, leastMoments) << name;
}

}  // namespace gruk::test
