#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "core/actions/stash_records.h"
#include "core/actions/trash_records.h"
#include "platform/files/move_calls.h"
#include "tests/support/moves_house.h"

namespace gruk::test {

/// What a service answered, as far as every service answers alike.
struct ScenarioOutcome {
    std::size_t moved = 0;
    /// The words of each failure; empty for those that have none.
    std::vector<std::string> failures;
    /// Whether each failure that must have words has some.
    bool hasWords = true;
};

/// One operation of one service on a furnished house: everything up to it is done by the system's
/// calls, the operation itself by those that a test hands in.
struct MoveScenario {
    std::string name;
    /// Makes the house ready and returns the operation.
    std::function<std::function<ScenarioOutcome(const MoveCalls&)>(const MovesHouse&)> prepare;
};

/// Trash, stash, organise, and the undo of each.
[[nodiscard]] std::vector<MoveScenario> moveScenarios();

}  // namespace gruk::test
