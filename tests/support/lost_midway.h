#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "app/model/app_model.h"
#include "tests/support/environment.h"
#include "tests/support/lost_ways.h"
#include "tests/support/model_house.h"
#include "tests/support/moments.h"

namespace gruk::test {

/// A house whose Desktop is a patrolled realm of five loose files, two of them findings, with a
/// rule that files pictures. It can go at each step that an operation makes on the disk: at each
/// look at its bookmark and at each call of a service.
class LostMidway {
public:
    explicit LostMidway(const RealmPlace& place = {});
    ~LostMidway();
    LostMidway(const LostMidway&) = delete;
    LostMidway& operator=(const LostMidway&) = delete;

    /// Lets `happens` run at that step of `operation`; whether it had so many.
    bool run(std::size_t step, const std::function<void(LostMidway&)>& operation,
             const std::function<void()>& happens);

    [[nodiscard]] ModelHouse& house() { return *house_; }
    [[nodiscard]] AppModel& model() { return *house_->model; }
    [[nodiscard]] const FileURL& desktop() const { return desktop_; }
    /// The steps of whatever is at work, for a test that arms them itself.
    [[nodiscard]] Moments& moments() { return *moments_; }

    [[nodiscard]] std::string complaint() { return model().errorMessage().value_or(""); }
    [[nodiscard]] std::string message() { return model().lastActionMessage().value_or(""); }
    /// What was told before the operation.
    [[nodiscard]] const std::string& formerMessage() const { return formerMessage_; }

    /// Every file of the house but the program's own, by name and size; now, before the operation,
    /// and at the loss.
    [[nodiscard]] std::multiset<std::string> files() const;
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
    void watchSteps(ModelCollaborators& all);

    RealmPlace place_;
    std::shared_ptr<Moments> moments_ = std::make_shared<Moments>();
    bool isPrepared_ = false;
    int openAccesses_ = 0;
    std::string formerMessage_;
    std::multiset<std::string> filesBefore_;
    std::multiset<std::string> filesAtLoss_;
    std::set<std::string> originalPaths_;
    EnvironmentVariable temporary_ = temporaryFilesInMemory();
    std::unique_ptr<ModelHouse> house_;
    FileURL desktop_;
};

/// Plays each operation that changes the disk, with the realm going at each of its steps, and
/// expects the sentences for what it came to, no half-done file, the accesses released and the
/// program's own files in order. Stops at the first that fails. `afterwards` runs when the
/// operation has told its sentence: it expects that nothing was lost, and may give the realm back.
void playLosses(const MakeGoing& makeGoing,
                const std::function<void(LostMidway&, const LostWay&)>& afterwards);

}  // namespace gruk::test
