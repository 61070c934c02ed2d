#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/lost_midway.h"

namespace gruk::test {

/// An operation of a user that looks at the realm or changes it, and what it may say when the
/// realm goes during it.
struct LostOperation {
    std::string name;
    /// Done while all is well.
    std::function<void(LostMidway&)> before;
    /// During which the realm goes.
    std::function<void(LostMidway&)> run;
    /// Looks at what is told; to the letter, by what was moved.
    std::function<void(LostMidway&)> check;
    /// What it complains of when the realm has gone before it; empty where it is silent.
    std::string withoutAccess = {};
    /// For so many of its first steps it takes whichever folder stands at the path for the realm.
    std::size_t goesByPathFor = 0;
    /// It has enough steps to be hit so often.
    std::size_t leastLosses = 12;
};

[[nodiscard]] std::vector<LostOperation> lostOperations();

}  // namespace gruk::test
