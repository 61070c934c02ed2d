#include "core/actions/organise_service.h"

#include <string>
#include <vector>

#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/actions/stash_service.h"
#include "tests/support/environment.h"
#include "tests/support/fake_disk.h"
#include "tests/support/private_mounts.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

using Reason = StashFailure::Reason;
using test::FakeDisk;
using testing::ElementsAre;
using testing::IsEmpty;

const FileURL realm = FileURL::directory("/realm");

StashFailure failure(const std::string& path, Reason reason, std::string message = {})
{
    return {FileURL(path), reason, std::move(message)};
}

OrganisePlan planOf(const std::vector<std::string>& files, const std::string& folder = "Images")
{
    OrganisePlan::CategoryMove move;
    move.kind = FileKind::image;
    move.destinationFolderName = folder;
    for (const std::string& file : files) {
        move.files.emplace_back(file);
    }
    return {realm, {move}};
}

TEST(OrganiseService, movesWhatThePlanSaysAndWritesTheJournal)
{
    FakeDisk disk;
    disk.addFile("/realm/a.png", FileKind::image);
    disk.addFile("/realm/n.txt", FileKind::document);
    const OrganiseService service(disk.organiseCalls());
    const StashOperation operation =
        service.applyPlan(service.planOrganise(realm, realm, {}), realm);
    EXPECT_EQ(operation.hoardFolder, realm);
    EXPECT_THAT(
        operation.moved,
        ElementsAre(StashedItem{FileURL("/realm/a.png"), FileURL("/realm/Images/a.png")},
                    StashedItem{FileURL("/realm/n.txt"), FileURL("/realm/Documents/n.txt")}));
    EXPECT_THAT(operation.failures, IsEmpty());
    EXPECT_EQ(disk.journals.at("/realm"), (StashJournalFile{realm, operation.moved, disk.now}));
}

TEST(OrganiseService, anEmptyPlanReturnsNoFolderAndWritesNoJournal)
{
    FakeDisk disk;
    const StashOperation operation =
        OrganiseService(disk.organiseCalls()).applyPlan({realm, {}}, realm);
    EXPECT_EQ(operation, StashOperation());
    EXPECT_THAT(disk.journals, IsEmpty());
}

TEST(OrganiseService, filesThatClaimAnyLengthDoNotStopAPlan)
{
    const test::TemporaryDirectory disk;
    disk.folder("mount");
    // Of such lengths there are files only on disks of memory.
    const test::MountedRun run = test::runWithPrivateMounts([&]() -> std::string {
        test::mountMemory(disk.path("mount"));
        disk.folder("mount/realm");
        for (const char* name : {"a.png", "b.png", "c.png"}) {
            const std::string path = disk.file("mount/realm/" + std::string(name));
            if (::truncate(path.c_str(), off_t{1} << 62) != 0) {
                return "no such file can be made";
            }
        }
        const FileURL folder = FileURL::directory(disk.path("mount/realm"));
        const OrganisePlan plan = OrganiseService().planOrganise(folder, folder, {});
        return plan.moves.size() == 1 && plan.moves[0].totalBytes == 3 * (Bytes{1} << 50U)
                   ? ""
                   : "another sum";
    });
    if (!run.isPermitted) {
        GTEST_SKIP() << "this process may not mount anything";
    }
    EXPECT_EQ(run.complaint, "");
}

TEST(OrganiseService, aFileAlreadyInTheDestinationFailsAndTheOthersGoOn)
{
    FakeDisk disk;
    disk.addFile("/realm/a.png", FileKind::image);
    disk.addFile("/realm/b.png", FileKind::image);
    disk.addFolder("/realm/Images");
    disk.add("/realm/Images/a.png");
    const StashOperation operation =
        OrganiseService(disk.organiseCalls())
            .applyPlan(planOf({"/realm/a.png", "/realm/b.png"}), realm);
    EXPECT_THAT(operation.failures,
                ElementsAre(failure("/realm/a.png", Reason::destinationExists)));
    EXPECT_EQ(operation.moved.size(), 1U);
    EXPECT_TRUE(disk.has("/realm/a.png"));
}

TEST(OrganiseService, aPlainFileAtTheFoldersNameMakesEachMoveFail)
{
    FakeDisk disk;
    disk.addFile("/realm/a.png", FileKind::image);
    disk.add("/realm/Images");
    const StashOperation operation =
        OrganiseService(disk.organiseCalls()).applyPlan(planOf({"/realm/a.png"}), realm);
    EXPECT_THAT(operation.failures,
                ElementsAre(failure("/realm/a.png", Reason::couldNotStash, "not a folder")));
    EXPECT_THAT(disk.record, ElementsAre("move /realm/a.png -> /realm/Images/a.png"));
    EXPECT_EQ(operation.hoardFolder, realm);
    EXPECT_THAT(disk.journals, IsEmpty());
}

TEST(OrganiseService, applyingAPlanTwiceFailsForEachFileAndKeepsTheFirstJournal)
{
    FakeDisk disk;
    disk.addFile("/realm/a.png", FileKind::image);
    disk.addFile("/realm/b.png", FileKind::image);
    const OrganiseService service(disk.organiseCalls());
    const OrganisePlan plan = planOf({"/realm/a.png", "/realm/b.png"});
    const StashOperation first = service.applyPlan(plan, realm);
    disk.now.secondsSince1970 += 60;
    const StashOperation second = service.applyPlan(plan, realm);
    EXPECT_THAT(second.moved, IsEmpty());
    EXPECT_THAT(second.failures, ElementsAre(failure("/realm/a.png", Reason::destinationExists),
                                             failure("/realm/b.png", Reason::destinationExists)));
    EXPECT_EQ(disk.journals.at("/realm").items, first.moved);
    EXPECT_NE(disk.journals.at("/realm").createdAt, disk.now);
}

TEST(OrganiseService, aFileThatVanishedSincePlanningFailsAndTheOthersGoOn)
{
    FakeDisk disk;
    disk.addFile("/realm/b.png", FileKind::image);
    const StashOperation operation =
        OrganiseService(disk.organiseCalls())
            .applyPlan(planOf({"/realm/a.png", "/realm/b.png"}), realm);
    EXPECT_THAT(operation.failures,
                ElementsAre(failure("/realm/a.png", Reason::couldNotStash, "no such item")));
    EXPECT_EQ(operation.moved.size(), 1U);
}

TEST(OrganiseService, aFolderThatCannotBeMadeFailsItsFilesAndOtherCategoriesGoOn)
{
    FakeDisk disk;
    disk.addFile("/realm/a.png", FileKind::image);
    disk.addFile("/realm/n.txt", FileKind::document);
    disk.refusals["/realm/Images"] = "";
    const OrganiseService service(disk.organiseCalls());
    const StashOperation operation =
        service.applyPlan(service.planOrganise(realm, realm, {}), realm);
    EXPECT_THAT(operation.failures, ElementsAre(failure("/realm/a.png", Reason::couldNotStash,
                                                        "Unknown filesystem error")));
    EXPECT_EQ(operation.moved.size(), 1U);
}

TEST(OrganiseService, twoKindsFillOneFolder)
{
    FakeDisk disk;
    disk.addFile("/realm/a.png", FileKind::image);
    disk.addFile("/realm/b.mov", FileKind::video);
    const OrganiseService service(disk.organiseCalls());
    const StashOperation operation = service.applyPlan(
        service.planOrganise(realm, realm,
                             {{FileKind::image, "Media"}, {FileKind::video, "Media"}}),
        realm);
    EXPECT_THAT(operation.failures, IsEmpty());
    EXPECT_TRUE(disk.has("/realm/Media/a.png"));
    EXPECT_TRUE(disk.has("/realm/Media/b.mov"));
}

TEST(OrganiseService, aNameThatIsNoFoldersNameMovesNothing)
{
    for (const char* name : {"..", "a/b", "../elsewhere"}) {
        FakeDisk disk;
        disk.addFile("/realm/a.png", FileKind::image);
        const StashOperation operation =
            OrganiseService(disk.organiseCalls()).applyPlan(planOf({"/realm/a.png"}, name), realm);
        EXPECT_THAT(operation.moved, IsEmpty()) << name;
        ASSERT_EQ(operation.failures.size(), 1U) << name;
        EXPECT_EQ(operation.failures[0].reason, Reason::couldNotStash);
        EXPECT_THAT(operation.failures[0].message, testing::HasSubstr("name of a folder"));
        EXPECT_THAT(disk.record, IsEmpty());
    }
}

TEST(OrganiseService, anEmptyFolderNameMeansTheRealmWhereEachFileStandsAlready)
{
    for (const char* name : {"", "."}) {
        FakeDisk disk;
        disk.addFile("/realm/a.png", FileKind::image);
        const OrganiseService service(disk.organiseCalls());
        const OrganisePlan plan = service.planOrganise(realm, realm, {{FileKind::image, name}});
        ASSERT_EQ(plan.moves.size(), 1U);
        EXPECT_EQ(plan.moves[0].destinationFolderName, name);
        const StashOperation operation = service.applyPlan(plan, realm);
        EXPECT_THAT(operation.moved, IsEmpty());
        EXPECT_THAT(operation.failures,
                    ElementsAre(failure("/realm/a.png", Reason::destinationExists)));
        EXPECT_THAT(disk.record, IsEmpty());
    }
}

TEST(OrganiseService, aRealmOutsideTheRootOrProtectedIsRefused)
{
    const test::EnvironmentVariable home("HOME", "/realm");
    FakeDisk disk;
    disk.addFile("/realm/a.png", FileKind::image);
    const OrganiseService service(disk.organiseCalls());
    const OrganisePlan plan = planOf({"/realm/a.png"});
    EXPECT_EQ(service.applyPlan(plan, FileURL("/else")),
              (StashOperation{std::nullopt, {}, {{realm, Reason::outsideAuthorizedRoot, {}}}}));
    EXPECT_EQ(service.applyPlan(plan, realm),
              (StashOperation{std::nullopt, {}, {{realm, Reason::protectedLocation, {}}}}));
    EXPECT_THAT(disk.record, IsEmpty());
}

TEST(OrganiseService, aJournalThatCannotBeWrittenLeavesTheMovesStanding)
{
    FakeDisk disk;
    disk.addFile("/realm/a.png", FileKind::image);
    disk.journalRefusal = "full";
    const StashOperation operation =
        OrganiseService(disk.organiseCalls()).applyPlan(planOf({"/realm/a.png"}), realm);
    EXPECT_EQ(operation.moved.size(), 1U);
    EXPECT_EQ(operation.failures,
              (std::vector<StashFailure>{{realm, Reason::couldNotWriteJournal, "full"}}));
}

TEST(OrganiseService, undoAfterANewFileAppearedAtAnOldPathPutsTheOthersBack)
{
    FakeDisk disk;
    disk.addFile("/realm/a.png", FileKind::image);
    disk.addFile("/realm/b.png", FileKind::image);
    const StashOperation operation =
        OrganiseService(disk.organiseCalls())
            .applyPlan(planOf({"/realm/a.png", "/realm/b.png"}), realm);
    disk.add("/realm/a.png");
    const StashRestoreOperation undone = StashService(disk.stashCalls()).restore(operation.moved);
    EXPECT_THAT(undone.failures, ElementsAre(failure("/realm/a.png", Reason::destinationExists)));
    EXPECT_TRUE(disk.has("/realm/b.png"));
    EXPECT_TRUE(disk.has("/realm/Images/a.png"));
    EXPECT_TRUE(disk.journals.contains("/realm"));
}

}  // namespace

}  // namespace gruk
