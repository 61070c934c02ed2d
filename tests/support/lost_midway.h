#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "tests/support/lost_access.h"

namespace gruk::test {

/// Where the realm stands, if not simply in the house.
struct RealmPlace {
    /// Relative to the house.
    std::string realm = "Desktop";
    /// Runs before the realm is made; takes the path of the house.
    std::function<void(const std::string& house)> prepare = nullptr;
    /// Runs before the house is taken down.
    std::function<void()> cleanUp = nullptr;
    /// May put other collaborators in.
    std::function<void(ModelCollaborators&)> change = nullptr;
};

/// A house in which something happens at the n-th call that the services make on the disk from a
/// certain moment on. Its Desktop is a patrolled realm of five loose files, two of them findings.
class LostMidway {
public:
    explicit LostMidway(const RealmPlace& place = {});
    ~LostMidway();
    LostMidway(const LostMidway&) = delete;
    LostMidway& operator=(const LostMidway&) = delete;

    /// Lets `happens` run at that call of `operation`; whether it had so many.
    bool run(std::size_t call, const std::function<void(LostMidway&)>& operation,
             const std::function<void(LostMidway&)>& happens);

    [[nodiscard]] AppModel& model() { return *lost_->house.model; }
    [[nodiscard]] LostAccess& lost() { return *lost_; }
    [[nodiscard]] const LostAccess& lost() const { return *lost_; }
    [[nodiscard]] std::string complaint() { return model().errorMessage().value_or(""); }
    [[nodiscard]] std::string message() { return model().lastActionMessage().value_or(""); }

    /// What was told before the operation, and the files before it and at the loss.
    [[nodiscard]] const std::string& formerMessage() const { return formerMessage_; }
    [[nodiscard]] const std::multiset<std::string>& filesBefore() const { return filesBefore_; }
    [[nodiscard]] const std::multiset<std::string>& filesAtLoss() const { return filesAtLoss_; }

    /// The paths of the realm's files at the beginning, and now.
    [[nodiscard]] const std::set<std::string>& originalPaths() const { return originalPaths_; }
    [[nodiscard]] std::set<std::string> paths() const;

    /// How many accesses are open.
    [[nodiscard]] int openAccesses() const { return openAccesses_; }

    /// Undoes whatever can be undone.
    void undoEverything();

private:
    void enter();
    void countAccesses(ModelCollaborators& all);

    RealmPlace place_;
    std::function<void(LostMidway&)> happens_;
    std::size_t left_ = 0;
    bool isArmed_ = false;
    bool isPrepared_ = false;
    int openAccesses_ = 0;
    std::string formerMessage_;
    std::multiset<std::string> filesBefore_;
    std::multiset<std::string> filesAtLoss_;
    std::set<std::string> originalPaths_;
    /// In memory, where there is room: hundreds of houses are set up and taken down.
    EnvironmentVariable temporary_;
    std::unique_ptr<LostAccess> lost_;
};

/// How a realm is lost.
struct Loss {
    RealmPlace place = {};
    /// The first call at which it comes.
    std::size_t firstCall = 0;
    std::function<void(LostMidway&)> happens;
    /// Runs when the operation has told its sentence; expects that nothing was lost, and gives the
    /// realm back where it can.
    std::function<void(LostMidway&)> afterwards;
};

/// Plays each operation that changes the disk, with the loss at every third of its calls, and
/// expects the sentences for what it came to, no half-done file, the accesses released and the
/// program's own files in order. Stops at the first that fails.
void playLosses(const std::function<Loss()>& makeLoss);

}  // namespace gruk::test
