#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>
#include <utility>

#include <unistd.h>

#include <gtest/gtest.h>

#include "tests/promises/random_user.h"
#include "tests/support/moves_house.h"
#include "tests/support/sanitized.h"

namespace gruk {

namespace {

using test::MovesHouse;
using test::RandomUser;
using test::RandomUserCounts;

constexpr std::size_t usualSequences = 10'000;
constexpr std::size_t stepsEach = 8;

/// How many sequences this run plays; the trace of system calls asks for fewer.
std::size_t sequences()
{
    const char* const asked = std::getenv("GRUK_SEQUENCES");
    return asked != nullptr ? static_cast<std::size_t>(std::atol(asked))
                            : test::unlessSanitized(usualSequences);
}

/// Every fourth sequence is played on a file system that cannot promise not to replace, where a
/// place-holder takes the name first.
bool needsPlaceHolders(std::uint64_t seed)
{
    return seed % 4 == 0;
}

MoveCalls callsFor(std::uint64_t seed, std::size_t& placeHolders)
{
    MoveCalls calls = test::withoutWaiting();
    if (needsPlaceHolders(seed)) {
        calls.moveWithoutReplacing = [](int, const char*, int, const char*) { return -EINVAL; };
        calls.moveOver = [&placeHolders, live = std::move(calls.moveOver)](
                             int fromDirectory, const char* from, int toDirectory, const char* to) {
            ++placeHolders;
            return live(fromDirectory, from, toDirectory, to);
        };
    }
    return calls;
}

/// A call that does nothing but show in a trace where a service begins and ends.
void mark(const char* name)
{
    (void)::access(name, F_OK);
}

TEST(Promises, randomSequencesEndWithEveryFileAccountedFor)
{
    RandomUserCounts all;
    std::size_t placeHolders = 0;
    for (std::uint64_t seed = 1; seed <= sequences(); ++seed) {
        const MovesHouse house;
        bool isRight = true;
        RandomUser user(house, seed, callsFor(seed, placeHolders),
                        [&](const std::string& name, const std::function<void()>& operation) {
                            house.ageFolders();
                            const std::multiset<std::string> before = house.census();
                            mark("gruk-service-begins");
                            operation();
                            mark("gruk-service-ends");
                            if (before != house.census()) {
                                ADD_FAILURE() << name << " of seed " << seed;
                                isRight = false;
                            }
                        });
        user.furnish();
        for (std::size_t step = 0; step < stepsEach && isRight; ++step) {
            user.act();
        }
        ASSERT_TRUE(isRight);
        all.operations += user.counts().operations;
        all.moved += user.counts().moved;
        all.putBack += user.counts().putBack;
        all.refused += user.counts().refused;
        all.edits += user.counts().edits;
    }
    EXPECT_GT(all.moved, sequences());
    EXPECT_GT(all.putBack, sequences() / 10);
    EXPECT_GT(placeHolders, sequences() / 4);
    test::reportPromise(
        "random sequences",
        std::to_string(sequences()) + " sequences, " + std::to_string(all.operations)
            + " operations between " + std::to_string(all.edits) + " edits of the user's own, "
            + std::to_string(all.moved) + " items moved (" + std::to_string(placeHolders)
            + " moves over a place-holder, forth or back), " + std::to_string(all.putBack)
            + " put back, " + std::to_string(all.refused)
            + " refused; every file accounted for after each");
}

}  // namespace

}  // namespace gruk
