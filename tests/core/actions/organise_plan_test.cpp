#include <map>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/actions/organise_service.h"
#include "tests/support/environment.h"
#include "tests/support/fake_disk.h"

namespace gruk {

namespace {

using test::FakeDisk;
using testing::ElementsAre;
using testing::IsEmpty;

const FileURL realm = FileURL::directory("/realm");

OrganisePlan planned(FakeDisk& disk, const FolderOverrides& overrides = {})
{
    return OrganiseService(disk.organiseCalls()).planOrganise(realm, realm, overrides);
}

std::vector<std::string> names(const OrganisePlan::CategoryMove& move)
{
    std::vector<std::string> result;
    for (const FileURL& file : move.files) {
        result.emplace_back(file.lastPathComponent());
    }
    return result;
}

TEST(OrganisePlan, defaultFolderNames)
{
    const std::map<FileKind, std::string> expected = {{FileKind::screenshot, "Screenshots"},
                                                      {FileKind::image, "Images"},
                                                      {FileKind::video, "Video"},
                                                      {FileKind::audio, "Audio"},
                                                      {FileKind::pdf, "PDFs"},
                                                      {FileKind::archive, "Archives"},
                                                      {FileKind::installer, "Installers"},
                                                      {FileKind::document, "Documents"},
                                                      {FileKind::application, "Apps"},
                                                      {FileKind::folder, ""},
                                                      {FileKind::other, "Bits and Bobs"}};
    for (const FileKind kind : allFileKinds) {
        EXPECT_EQ(OrganiseDefaults::folderName(kind), expected.at(kind));
    }
}

TEST(OrganisePlan, gathersLooseFilesByKindInTheOrderOfTheKinds)
{
    FakeDisk disk;
    disk.addFile("/realm/z.txt", FileKind::document, 10);
    disk.addFile("/realm/a.png", FileKind::image, 1);
    disk.addFile("/realm/b.png", FileKind::image, 2);
    disk.addFile("/realm/Screenshot 1.png", FileKind::screenshot, 4);
    const OrganisePlan plan = planned(disk);
    EXPECT_EQ(plan.realm, realm);
    ASSERT_EQ(plan.moves.size(), 3U);
    EXPECT_EQ(plan.moves[0].kind, FileKind::screenshot);
    EXPECT_EQ(plan.moves[1].kind, FileKind::image);
    EXPECT_EQ(plan.moves[1].destinationFolderName, "Images");
    EXPECT_THAT(names(plan.moves[1]), ElementsAre("a.png", "b.png"));
    EXPECT_EQ(plan.moves[1].totalBytes, 3);
    EXPECT_EQ(plan.moves[2].kind, FileKind::document);
    EXPECT_THAT(disk.record, IsEmpty());
}

TEST(OrganisePlan, aRealmHoldingOnlyFoldersAndHiddenFilesGivesAnEmptyPlan)
{
    FakeDisk disk;
    disk.addFolder("/realm/folder");
    disk.addFile("/realm/folder/inside.png", FileKind::image);
    disk.addFile("/realm/.hidden.png", FileKind::image);
    EXPECT_THAT(planned(disk).moves, IsEmpty());
}

TEST(OrganisePlan, aNameBeginningWithADotIsSkippedWhateverItsKind)
{
    FakeDisk disk;
    for (const FileKind kind : allFileKinds) {
        disk.addFile("/realm/." + std::string(rawString(kind)), kind);
    }
    EXPECT_THAT(planned(disk).moves, IsEmpty());
}

TEST(OrganisePlan, anEntryNamedLikeADestinationIsSkippedUntilAnOverrideRenamesThat)
{
    FakeDisk disk;
    disk.addFile("/realm/Images", FileKind::other);
    EXPECT_THAT(planned(disk).moves, IsEmpty());
    const OrganisePlan renamed = planned(disk, {{FileKind::image, "Pictures"}});
    ASSERT_EQ(renamed.moves.size(), 1U);
    EXPECT_EQ(renamed.moves[0].kind, FileKind::other);
    EXPECT_EQ(renamed.moves[0].destinationFolderName, "Bits and Bobs");
}

TEST(OrganisePlan, aFolderNamedLikeADestinationIsSkippedEitherWay)
{
    FakeDisk disk;
    disk.addFolder("/realm/Images");
    EXPECT_THAT(planned(disk).moves, IsEmpty());
    EXPECT_THAT(planned(disk, {{FileKind::image, "Pictures"}}).moves, IsEmpty());
}

TEST(OrganisePlan, aNameWithTheHoardMarkAnywhereIsSkippedADocumentToo)
{
    FakeDisk disk;
    disk.addFile("/realm/my Hoard \xE2\x80\x94 notes.txt", FileKind::document);
    disk.addFile("/realm/my Hoard - notes.txt", FileKind::document);
    const OrganisePlan plan = planned(disk);
    ASSERT_EQ(plan.moves.size(), 1U);
    EXPECT_THAT(names(plan.moves[0]), ElementsAre("my Hoard - notes.txt"));
}

TEST(OrganisePlan, movesNeverHoldAKindTwiceNorFolders)
{
    FakeDisk disk;
    for (const FileKind kind : allFileKinds) {
        disk.addFile("/realm/1" + std::string(rawString(kind)), kind);
        disk.addFile("/realm/2" + std::string(rawString(kind)), kind);
    }
    const OrganisePlan plan = planned(disk);
    ASSERT_EQ(plan.moves.size(), allFileKinds.size() - 1);
    for (std::size_t i = 0; i < plan.moves.size(); ++i) {
        EXPECT_NE(plan.moves[i].kind, FileKind::folder);
        EXPECT_EQ(plan.moves[i].files.size(), 2U);
        if (i > 0) {
            EXPECT_LT(plan.moves[i - 1].kind, plan.moves[i].kind);
        }
    }
}

TEST(OrganisePlan, theSortIsCaseSensitive)
{
    FakeDisk disk;
    disk.addFile("/realm/apple", FileKind::other);
    disk.addFile("/realm/Zebra", FileKind::other);
    EXPECT_THAT(names(planned(disk).moves[0]), ElementsAre("Zebra", "apple"));
}

TEST(OrganisePlan, twoOverridesMayNameOneFolder)
{
    FakeDisk disk;
    disk.addFile("/realm/a", FileKind::image);
    disk.addFile("/realm/b", FileKind::video);
    const OrganisePlan plan =
        planned(disk, {{FileKind::image, "Media"}, {FileKind::video, "Media"}});
    ASSERT_EQ(plan.moves.size(), 2U);
    EXPECT_EQ(plan.moves[0].destinationFolderName, "Media");
    EXPECT_EQ(plan.moves[1].destinationFolderName, "Media");
}

TEST(OrganisePlan, anOverrideThatNamesAnExistingEntryKeepsThatEntryOut)
{
    FakeDisk disk;
    disk.addFile("/realm/a.png", FileKind::image);
    disk.addFile("/realm/notes", FileKind::other);
    const OrganisePlan plan = planned(disk, {{FileKind::image, "notes"}});
    ASSERT_EQ(plan.moves.size(), 1U);
    EXPECT_EQ(plan.moves[0].kind, FileKind::image);
}

TEST(OrganisePlan, everyRefusalIsAnEmptyPlan)
{
    const test::EnvironmentVariable home("HOME", "/home/a");
    FakeDisk disk;
    disk.addFile("/realm/a.png", FileKind::image);
    disk.addFile("/home/a/a.png", FileKind::image);
    const OrganiseService service(disk.organiseCalls());
    const OrganisePlan outside =
        service.planOrganise(FileURL::directory("/realm/./"), FileURL::directory("/else"), {});
    EXPECT_EQ(outside.realm.path(), "/realm");
    EXPECT_THAT(outside.moves, IsEmpty());
    EXPECT_THAT(service.planOrganise(FileURL("/home/a"), FileURL("/"), {}).moves, IsEmpty());
    disk.refusals["/realm"] = "unreadable";
    EXPECT_THAT(planned(disk).moves, IsEmpty());
}

}  // namespace

}  // namespace gruk
