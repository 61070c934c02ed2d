#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "core/actions/organise_service.h"
#include "core/actions/realm_rules.h"
#include "core/actions/stash_service.h"
#include "core/actions/trash_service.h"
#include "tests/support/moves_house.h"

namespace gruk::test {

/// What the operations of a random user came to.
struct RandomUserCounts {
    std::size_t operations = 0;
    std::size_t moved = 0;
    std::size_t putBack = 0;
    std::size_t refused = 0;
    std::size_t edits = 0;
};

/// A user who trashes, tidies, organises, files and undoes at random, and edits files of their own
/// in between; the same for the same seed. One thread.
class RandomUser {
public:
    /// `around` runs each operation of a service, and may look at the disk before and after it.
    using Around = std::function<void(const std::string& name, const std::function<void()>&)>;

    RandomUser(const MovesHouse& house, std::uint64_t seed, const MoveCalls& calls, Around around);

    /// Puts a few items into the realm.
    void furnish();
    /// One edit or one operation of a service.
    void act();

    [[nodiscard]] const RandomUserCounts& counts() const { return counts_; }

private:
    [[nodiscard]] std::size_t pick(std::size_t count);
    [[nodiscard]] bool chance(std::size_t oneIn) { return pick(oneIn) == 0; }
    [[nodiscard]] std::string anyName();
    [[nodiscard]] std::optional<std::string> anyItem();
    [[nodiscard]] std::string anyFolder();

    void edit();
    void make(const std::string& path);
    /// Perhaps puts an item of another program into the Trash, under a name that was ours.
    void takeNameInTrash(const std::string& path);
    void trash();
    void undoTrash();
    void stash();
    void organise(bool byRules);
    void undoMoves(std::optional<StashOperation>& slot);
    void count(std::size_t moved, std::size_t refused);

    using Move = std::pair<std::string, std::string>;
    /// Runs one operation, and complains unless just the items that it names went, each from its
    /// one place to its other, with everything below it; `operate` returns those moves.
    void run(const std::string& name, const std::function<std::vector<Move>()>& operate);
    /// The number and mode of every item in realm and Trash, folders too, by path.
    [[nodiscard]] std::map<std::string, std::uint64_t> numbers() const;

    const MovesHouse& house_;
    std::mt19937_64 random_;
    Around around_;
    TrashService trash_;
    StashService stash_;
    OrganiseService organise_;
    std::optional<TrashOperation> lastTrash_;
    std::optional<StashOperation> lastStash_;
    std::optional<StashOperation> lastOrganise_;
    RandomUserCounts counts_;
    std::size_t made_ = 0;
};

}  // namespace gruk::test
