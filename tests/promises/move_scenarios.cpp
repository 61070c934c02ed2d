#include "tests/promises/move_scenarios.h"

#include <type_traits>

#include "core/actions/organise_service.h"
#include "core/actions/stash_service.h"
#include "core/actions/trash_service.h"

namespace gruk::test {

namespace {

using Operation = std::function<ScenarioOutcome(const MoveCalls&)>;

void furnish(const MovesHouse& house)
{
    house.home().fileWith("realm/a.png", "a picture");
    house.home().fileWith("realm/notes.txt", "words");
    house.home().fileWith("realm/folder/inside", "deep");
    house.home().symbolicLink("realm/link", "nowhere");
    house.home().fileWith("realm/\xFF bytes", "odd name");
    house.home().fileWith("outside/a.png", "not ours");
}

template <typename Failures>
ScenarioOutcome outcomeOf(std::size_t moved, const Failures& failures)
{
    ScenarioOutcome outcome;
    outcome.moved = moved;
    for (const auto& failure : failures) {
        outcome.failures.push_back(failure.message);
        using Reason = decltype(failure.reason);
        bool needsWords = failure.reason == Reason::couldNotRestore;
        if constexpr (std::is_same_v<Reason, TrashFailure::Reason>) {
            needsWords = needsWords || failure.reason == Reason::couldNotTrash;
        } else {
            needsWords = needsWords || failure.reason == Reason::couldNotStash
                         || failure.reason == Reason::couldNotWriteJournal;
        }
        outcome.hasWords = outcome.hasWords && (!needsWords || !failure.message.empty());
    }
    return outcome;
}

std::vector<TrashRequest> requests(const MovesHouse& house)
{
    std::vector<TrashRequest> list;
    for (const char* name : {"a.png", "folder", "link", "\xFF bytes"}) {
        const FileURL url = house.realm().appending(name);
        list.push_back({url, 1, TrashService::currentIdentity(url).value()});
    }
    return list;
}

Operation prepareTrash(const MovesHouse& house)
{
    furnish(house);
    return [&house, list = requests(house)](const MoveCalls& calls) {
        const TrashOperation operation = TrashService(calls).moveToTrash(list, house.realm());
        return outcomeOf(operation.moved.size(), operation.failures);
    };
}

Operation prepareUndoOfTrash(const MovesHouse& house)
{
    furnish(house);
    const auto moved =
        TrashService(withoutWaiting()).moveToTrash(requests(house), house.realm()).moved;
    return [&house, moved](const MoveCalls& calls) {
        const RestoreOperation operation = TrashService(calls).restore(moved, house.realm());
        return outcomeOf(operation.restored.size(), operation.failures);
    };
}

Operation prepareStash(const MovesHouse& house)
{
    furnish(house);
    return [&house](const MoveCalls& calls) {
        const StashOperation operation =
            StashService(calls).stashDesktop(house.realm(), house.realm());
        return outcomeOf(operation.moved.size(), operation.failures);
    };
}

Operation prepareOrganise(const MovesHouse& house)
{
    furnish(house);
    const OrganisePlan plan =
        OrganiseService(withoutWaiting()).planOrganise(house.realm(), house.realm(), {});
    return [&house, plan](const MoveCalls& calls) {
        const StashOperation operation = OrganiseService(calls).applyPlan(plan, house.realm());
        return outcomeOf(operation.moved.size(), operation.failures);
    };
}

Operation undoOf(const MovesHouse& house, const std::vector<StashedItem>& moved)
{
    return [&house, moved](const MoveCalls& calls) {
        const StashRestoreOperation operation = StashService(calls).restore(moved, house.realm());
        return outcomeOf(operation.restored.size(), operation.failures);
    };
}

Operation prepareUndoOfStash(const MovesHouse& house)
{
    furnish(house);
    return undoOf(house,
                  StashService(withoutWaiting()).stashDesktop(house.realm(), house.realm()).moved);
}

Operation prepareUndoOfOrganise(const MovesHouse& house)
{
    furnish(house);
    const OrganiseService service(withoutWaiting());
    return undoOf(
        house,
        service.applyPlan(service.planOrganise(house.realm(), house.realm(), {}), house.realm())
            .moved);
}

}  // namespace

std::vector<MoveScenario> moveScenarios()
{
    return {{"trash", prepareTrash},       {"undo of trash", prepareUndoOfTrash},
            {"stash", prepareStash},       {"undo of stash", prepareUndoOfStash},
            {"organise", prepareOrganise}, {"undo of organise", prepareUndoOfOrganise}};
}

}  // namespace gruk::test
