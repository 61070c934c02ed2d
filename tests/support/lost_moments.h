#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/lost_midway.h"

namespace gruk::test {

/// How a patrol lists the folders of a realm.
enum class Walk { live, byPath };

/// A patrolled realm with two folders in it, which goes at some moment of what the pool and the
/// main thread do for it, piece by piece.
class LostMoments {
public:
    static constexpr std::size_t formerPatrols = 3;
    /// Seven files and two folders, of which each holds one of the files.
    static constexpr std::size_t entryCount = 9;

    LostMoments(RealmPlace place, Walk walk);

    [[nodiscard]] LostMidway& midway() { return midway_; }
    [[nodiscard]] AppModel& model() { return midway_.model(); }
    [[nodiscard]] std::vector<ScanSnapshot> stored();

    /// Lets `happens` run at that moment from now on.
    void arm(std::size_t moment, std::function<void()> happens);
    [[nodiscard]] bool isReached() { return midway_.moments().isReached(); }

    /// Runs work and main thread to the end, piece by piece, each of them a moment.
    void settle();

    /// What holds after a patrol, whatever became of it.
    void expectAtRest();
    /// That a patrol was told as it came out: with the realm as it was, or in words. One that was
    /// not begun says `withoutAccess`, or what was said before.
    void expectPatrolTold(const std::string& complete, const std::string& withoutAccess);

    /// What was told before the realm went.
    [[nodiscard]] const std::string& formerMessage() const { return formerMessage_; }

private:
    [[nodiscard]] static RealmPlace told(RealmPlace place, Walk walk);

    LostMidway midway_;
    std::string formerMessage_;
};

/// What happens while the realm goes.
struct LostScene {
    /// Runs the operation and looks at what became of it.
    std::function<void(LostMoments&)> play;
    /// Done while all is well.
    std::function<void(LostMoments&)> before = nullptr;
};

/// Plays `scene` with the realm going at one moment after the other, until it has no more moments;
/// for `inEachWay` and the others.
[[nodiscard]] std::function<void(const MakeGoing&)>
eachMomentOf(const LostScene& scene, const std::vector<Walk>& walks = {Walk::live});

}  // namespace gruk::test
