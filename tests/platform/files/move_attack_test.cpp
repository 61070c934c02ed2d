#include <atomic>
#include <filesystem>
#include <functional>
#include <iostream>
#include <string>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/files/metadata.h"
#include "platform/files/moves.h"
#include "platform/files/trash.h"
#include "platform/foundation/errors.h"
#include "tests/support/trash_house.h"

// A thread that puts links and other files in the way while items are moved.

namespace gruk {

namespace {

using test::itemRecord;
using test::stands;
using test::TrashHouse;
using test::TreeRecord;
using test::treeRecord;

constexpr int rounds = 10'000;

/// Runs `swap` over and over in a thread of its own until the object is gone.
class Attacker {
public:
    explicit Attacker(std::function<void()> swap)
        : thread_([this, swap = std::move(swap)] {
              while (!isOver_) {
                  swap();
                  ++swaps_;
              }
          })
    {
        while (swaps_ == 0) {
            std::this_thread::yield();
        }
    }
    ~Attacker()
    {
        isOver_ = true;
        thread_.join();
        std::cout << "swaps: " << swaps_ << "\n";
    }
    Attacker(const Attacker&) = delete;
    Attacker& operator=(const Attacker&) = delete;

private:
    std::atomic<bool> isOver_ = false;
    std::atomic<int> swaps_ = 0;
    std::thread thread_;
};

/// A root with an item in a folder, a folder to move to, and outside of it the same names.
class Field {
public:
    Field()
    {
        for (const char* place : {"root/folder/item", "outside/folder/item", "outside/item"}) {
            house_.directory().fileWith(place, place);
        }
        house_.directory().folder("root/target");
        house_.directory().folder("outside/target");
        outside_ = treeRecord(path("outside"));
        item_ = itemRecord(path("root/folder/item"));
        facts_ = itemFacts(url("root/folder/item"));
    }

    [[nodiscard]] std::string path(const std::string& relative) const
    {
        return house_.path(relative);
    }
    [[nodiscard]] FileURL url(const std::string& relative) const { return house_.url(relative); }
    [[nodiscard]] const TrashHouse& house() const { return house_; }
    [[nodiscard]] bool isOutsideUntouched() const
    {
        return treeRecord(path("outside")) == outside_;
    }
    [[nodiscard]] bool isItem(const std::string& at) const
    {
        return stands(at) && itemRecord(at) == item_;
    }
    [[nodiscard]] MoveConditions conditions() const
    {
        return {url("root"), ItemIdentity{facts_.deviceID, facts_.inode, facts_.type}};
    }

    /// Exchanges two names in one step, as an attacker would.
    void exchange(const std::string& one, const std::string& other) const
    {
        static_cast<void>(::renameat2(AT_FDCWD, path(one).c_str(), AT_FDCWD, path(other).c_str(),
                                      RENAME_EXCHANGE));
    }

private:
    TrashHouse house_;
    TreeRecord outside_;
    std::string item_;
    ItemFacts facts_;
};

/// How often something was moved and how often it was refused.
struct Outcome {
    int moved = 0;
    int refused = 0;
};

void count(Outcome& outcome, const std::function<void()>& move)
{
    try {
        move();
        ++outcome.moved;
    } catch (const FileError&) {
        ++outcome.refused;
    }
}

void tell(const Outcome& outcome)
{
    std::cout << "moved " << outcome.moved << ", refused " << outcome.refused << "\n";
    EXPECT_GT(outcome.moved, 0) << "an attack that refuses everything shows nothing";
    EXPECT_GT(outcome.refused, 0) << "an attack that never hits shows nothing";
}

/// The item to a folder beside and back again.
void moveThereAndBack(const Field& field, Outcome& outcome, const MoveCalls& calls)
{
    for (int i = 0; i < rounds; ++i) {
        count(outcome, [&] {
            moveItem(field.url("root/folder/item"), field.url("root/target/item"),
                     field.conditions(), calls);
        });
        count(outcome, [&] {
            moveItem(field.url("root/target/item"), field.url("root/folder/item"),
                     field.conditions(), calls);
        });
    }
}

void trashAndRestore(const Field& field, Outcome& outcome, const MoveCalls& calls)
{
    for (int i = 0; i < rounds; ++i) {
        count(outcome, [&] {
            const FileURL now = trashItem(field.url("root/folder/item"), field.conditions(), calls);
            for (int attempt = 0; attempt < 10'000; ++attempt) {
                try {
                    return restoreTrashedItem(now, field.url("root/folder/item"),
                                              {field.url("root"), std::nullopt}, calls);
                } catch (const FileError&) {
                    std::this_thread::yield();
                }
            }
            ADD_FAILURE() << "never came back";
        });
    }
}

TEST(MoveAttack, anItemThatIsSwappedIsNeverMovedInItsPlace)
{
    const Field field;
    const MoveCalls calls = test::unsynchronizedCalls();
    field.house().directory().symbolicLink("root/link", field.path("outside/item"));
    field.house().directory().fileWith("root/other", "another file");
    const std::string link = itemRecord(field.path("root/link"));
    const std::string other = itemRecord(field.path("root/other"));
    Outcome outcome;
    {
        const Attacker attacker([&, turn = 0]() mutable {
            const std::string lure = ++turn % 2 == 0 ? "root/link" : "root/other";
            field.exchange("root/folder/item", lure);
            field.exchange("root/folder/item", lure);
        });
        moveThereAndBack(field, outcome, calls);
        trashAndRestore(field, outcome, calls);
    }
    tell(outcome);
    EXPECT_TRUE(field.isOutsideUntouched());
    int items = 0;
    int others = 0;
    int links = 0;
    for (const auto& [path, record] : treeRecord(field.house().directory().path())) {
        items += field.isItem(field.path(path)) ? 1 : 0;
        others += record == other ? 1 : 0;
        links += record == link ? 1 : 0;
    }
    EXPECT_EQ(std::tuple(items, others, links), std::tuple(1, 1, 1)) << "nothing is lost";
}

TEST(MoveAttack, aParentThatBecomesALinkLeadsNothingOut)
{
    const Field field;
    const MoveCalls calls = test::unsynchronizedCalls();
    field.house().directory().symbolicLink("root/lure", field.path("outside/folder"));
    Outcome outcome;
    {
        const Attacker attacker([&] {
            field.exchange("root/folder", "root/lure");
            field.exchange("root/folder", "root/lure");
        });
        for (int i = 0; i < rounds; ++i) {
            // Without an identity, too: the way alone must hold.
            const MoveConditions conditions{field.url("root"), std::nullopt};
            count(outcome, [&] {
                moveItem(field.url("root/folder/item"), field.url("root/target/item"), conditions,
                         calls);
            });
            count(outcome, [&] {
                moveItem(field.url("root/target/item"), field.url("root/folder/item"), conditions,
                         calls);
            });
        }
        trashAndRestore(field, outcome, calls);
    }
    tell(outcome);
    EXPECT_TRUE(field.isOutsideUntouched());
    EXPECT_TRUE(field.isItem(field.path("root/folder/item"))
                || field.isItem(field.path("root/target/item")));
}

TEST(MoveAttack, aDestinationThatBecomesALinkLeadsNothingOut)
{
    const Field field;
    const MoveCalls calls = test::unsynchronizedCalls();
    field.house().directory().symbolicLink("root/lure", field.path("outside/target"));
    Outcome outcome;
    {
        const Attacker attacker([&] {
            field.exchange("root/target", "root/lure");
            field.exchange("root/target", "root/lure");
        });
        for (int i = 0; i < rounds; ++i) {
            const MoveConditions conditions = field.conditions();
            count(outcome, [&] {
                moveItem(field.url("root/folder/item"), field.url("root/target/item"), conditions,
                         calls);
            });
            count(outcome, [&] {
                moveItem(field.url("root/target/item"), field.url("root/folder/item"), conditions,
                         calls);
            });
            count(outcome, [&] {
                replaceOwnFile(field.url("root/target/.journal"), "text", conditions, calls);
            });
        }
    }
    tell(outcome);
    EXPECT_TRUE(field.isOutsideUntouched());
    EXPECT_TRUE(field.isItem(field.path("root/folder/item"))
                || field.isItem(field.path("root/target/item")));
}

}  // namespace

}  // namespace gruk
