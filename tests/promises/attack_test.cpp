#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "core/actions/organise_service.h"
#include "core/actions/stash_service.h"
#include "core/actions/trash_service.h"
#include "tests/support/moves_house.h"
#include "tests/support/sanitized.h"

/// Another program of the same user swaps things in and out while the services work, as fast as it
/// can. What lies outside the authorised root must not move, whatever comes of the rest.

namespace gruk {

namespace {

namespace fs = std::filesystem;
using test::MovesHouse;

const std::size_t rounds = test::unlessSanitized(10'000);

/// Exchanges two names until it is told to stop, at an uneven pace; counts how often.
class Swapper {
public:
    Swapper(std::string one, std::string other)
        : thread_([this, one = std::move(one), other = std::move(other)] {
              while (!isOver_) {
                  if (::renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE)
                      == 0) {
                      ++swaps_;
                  }
                  // Pauses of any length, so that each step of a move is met in every state.
                  pause_ = pause_ * 6'364'136'223'846'793'005U + 1;
                  for (auto left = pause_ >> 48U; left > 0 && !isOver_; --left) {
                      std::atomic_signal_fence(std::memory_order_seq_cst);
                  }
              }
          })
    {
    }
    ~Swapper() { stop(); }
    Swapper(const Swapper&) = delete;
    Swapper& operator=(const Swapper&) = delete;

    void stop()
    {
        isOver_ = true;
        if (thread_.joinable()) {
            thread_.join();
        }
    }
    [[nodiscard]] std::size_t swaps() const { return swaps_; }

private:
    std::atomic<bool> isOver_ = false;
    std::atomic<std::size_t> swaps_ = 0;
    std::uint64_t pause_ = 1;
    std::thread thread_;
};

/// A realm with a folder "sub" that is worked on, and a folder outside with the same names in it.
class Attack : public testing::Test {
protected:
    Attack()
    {
        for (const char* place : {"realm/sub", "outside"}) {
            const std::string folder(place);
            house.home().fileWith(folder + "/item.png", "item in " + folder);
            house.home().fileWith(folder + "/Images/old.png", "old in " + folder);
            house.home().fileWith(folder + "/folder/deep.png", "deep in " + folder);
        }
        outside_ = MovesHouse::censusWithPaths(house.outside().path());
    }

    /// Puts everything back, as often as it takes while the way is swapped to and fro.
    template <typename Service, typename Item>
    static void putBack(const Service& service, std::vector<Item> items, const FileURL& root,
                        const Swapper& swapper)
    {
        const std::size_t patience = swapper.swaps() + 100'000;
        while (!items.empty() && swapper.swaps() < patience) {
            const auto operation = service.restore(items, root);
            std::erase_if(items, [&](const Item& item) {
                return std::ranges::find(operation.restored, item) != operation.restored.end();
            });
            std::this_thread::yield();
        }
        EXPECT_TRUE(items.empty()) << "could not be put back";
    }

    /// Moves things about under attack, and complains if anything outside did move.
    void workWhile(Swapper& swapper, const std::string& name)
    {
        const MoveCalls calls = test::withoutWaiting();
        const TrashService trash(calls);
        const StashService stash(calls);
        const OrganiseService organise(calls);
        const FileURL realm = house.realm();
        const FileURL sub = realm.appending("sub", FileURL::Names::directory);
        const FileURL item = sub.appending("item.png");
        std::size_t done = 0;
        for (std::size_t round = 0; round < rounds; ++round) {
            const auto identity = TrashService::currentIdentity(item);
            const TrashOperation trashed =
                trash.moveToTrash({{item, 1, identity.value_or(FileIdentity())}}, realm);
            if (!trashed.moved.empty()) {
                ASSERT_EQ(TrashService::currentIdentity(trashed.moved[0].trashURL), identity)
                    << "another item than the reviewed one is in the Trash";
            }
            putBack(trash, trashed.moved, realm, swapper);
            const StashOperation filed =
                organise.applyPlan({sub, {{FileKind::image, "Images", {item}, 0}}}, realm);
            ASSERT_EQ(MovesHouse::censusWithPaths(house.outside().path()), outside_);
            putBack(stash, filed.moved, realm, swapper);
            done += trashed.moved.size() + filed.moved.size();
            if (round % 100 == 0) {
                const StashOperation stashed = stash.stashDesktop(sub, realm);
                putBack(stash, stashed.moved, realm, swapper);
                ASSERT_EQ(MovesHouse::censusWithPaths(house.outside().path()), outside_);
            }
        }
        swapper.stop();
        EXPECT_GT(swapper.swaps(), 0U);
        EXPECT_EQ(MovesHouse::censusWithPaths(house.outside().path()), outside_);
        test::reportPromise("attack on the " + name,
                            std::to_string(rounds) + " rounds, " + std::to_string(swapper.swaps())
                                + " swaps meanwhile, " + std::to_string(done)
                                + " moves went through; nothing outside the root moved");
    }

    MovesHouse house;

private:
    std::multiset<std::string> outside_;
};

TEST_F(Attack, onTheItemMovesNothingOutsideTheRoot)
{
    house.home().symbolicLink("realm/decoy", house.outside().path() + "/item.png");
    Swapper swapper(house.home().path("realm/sub/item.png"), house.home().path("realm/decoy"));
    workWhile(swapper, "item");
}

TEST_F(Attack, onTheParentMovesNothingOutsideTheRoot)
{
    house.home().symbolicLink("realm/decoy", house.outside().path());
    Swapper swapper(house.home().path("realm/sub"), house.home().path("realm/decoy"));
    workWhile(swapper, "parent");
}

TEST_F(Attack, onTheDestinationMovesNothingOutsideTheRoot)
{
    house.home().symbolicLink("realm/decoy", house.outside().path() + "/Images");
    Swapper swapper(house.home().path("realm/sub/Images"), house.home().path("realm/decoy"));
    workWhile(swapper, "destination");
}

TEST_F(Attack, withAnotherFileMovesNothingButWhatWasReviewed)
{
    house.home().fileWith("realm/decoy", "another file");
    Swapper swapper(house.home().path("realm/sub/item.png"), house.home().path("realm/decoy"));
    workWhile(swapper, "item with another file");
}

}  // namespace

}  // namespace gruk
