#include "core/actions/realm_rules.h"

#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/actions/organise_service.h"
#include "tests/support/fake_disk.h"

namespace gruk {

namespace {

using test::FakeDisk;
using testing::IsEmpty;

const FileURL realm = FileURL::directory("/realm");

RealmRule rule(FileKind kind, std::string name, bool applyAfterPatrol = false)
{
    return {UUID::random(), kind, std::move(name), applyAfterPatrol};
}

/// The filing that is offered after a patrol of `disk` under `rules`.
std::optional<OrganisePlan> offered(FakeDisk& disk, const std::vector<RealmRule>& rules)
{
    const std::vector<RealmRule> active = RealmRules::afterPatrol(rules);
    return RealmRules::filingPlan(
        OrganiseService(disk.organiseCalls())
            .planOrganise(realm, realm, RealmRules::folderOverrides(active)),
        active);
}

TEST(RealmRules, noRulesGiveAnEmptyMap)
{
    EXPECT_THAT(RealmRules::folderOverrides({}), IsEmpty());
}

TEST(RealmRules, ofTwoRulesForOneKindTheLaterHolds)
{
    EXPECT_EQ(RealmRules::folderOverrides({rule(FileKind::image, "A"), rule(FileKind::image, "B")}),
              (FolderOverrides{{FileKind::image, "B"}}));
}

TEST(RealmRules, theTwentyFirstRuleHasNoEffect)
{
    std::vector<RealmRule> rules(20, rule(FileKind::image, "A"));
    rules[19] = rule(FileKind::video, "V");
    rules.push_back(rule(FileKind::image, "late"));
    EXPECT_EQ(RealmRules::folderOverrides(rules),
              (FolderOverrides{{FileKind::image, "A"}, {FileKind::video, "V"}}));
    rules.back() = rule(FileKind::pdf, "late");
    EXPECT_FALSE(RealmRules::folderOverrides(rules).contains(FileKind::pdf));
}

TEST(RealmRules, ofAFilingOnlyWhatTheRulesStillSayIsLeft)
{
    const std::vector<RealmRule> images = {rule(FileKind::image, "A", true)};
    const OrganisePlan filing{realm,
                              {{FileKind::image, "A", {realm.appending("a.png")}, 1},
                               {FileKind::video, "V", {realm.appending("v.mov")}, 1}}};
    const std::optional<OrganisePlan> left = RealmRules::stillRuled(filing, images);
    ASSERT_TRUE(left);
    EXPECT_EQ(left->realm, realm);
    EXPECT_EQ(left->moves, std::vector{filing.moves[0]});
    EXPECT_EQ(RealmRules::stillRuled(filing, {}), std::nullopt);
    EXPECT_EQ(RealmRules::stillRuled(filing, {rule(FileKind::image, "B", true)}), std::nullopt)
        << "another folder was asked for since";
}

TEST(RealmRules, aRuleThatDoesNotApplyAfterPatrolRenamesButIsNeverOffered)
{
    FakeDisk disk;
    disk.addFile("/realm/a.png", FileKind::image);
    const std::vector<RealmRule> rules = {rule(FileKind::image, "Pictures")};
    const OrganisePlan manual = OrganiseService(disk.organiseCalls())
                                    .planOrganise(realm, realm, RealmRules::folderOverrides(rules));
    ASSERT_EQ(manual.moves.size(), 1U);
    EXPECT_EQ(manual.moves[0].destinationFolderName, "Pictures");
    EXPECT_FALSE(offered(disk, rules));
}

TEST(RealmRules, aFolderNameOfAnExistingFolderMakesThatTheDestination)
{
    FakeDisk disk;
    disk.addFile("/realm/a.png", FileKind::image);
    disk.addFolder("/realm/Kept");
    const auto plan = offered(disk, {rule(FileKind::image, "Kept", true)});
    ASSERT_TRUE(plan);
    ASSERT_EQ(plan->moves.size(), 1U);
    EXPECT_EQ(plan->moves[0].destinationFolderName, "Kept");
    EXPECT_EQ(plan->moves[0].files, std::vector<FileURL>{FileURL("/realm/a.png")});
}

TEST(RealmRules, aRuleWhoseKindHasNoLooseFilesYieldsNoFilingPlan)
{
    FakeDisk disk;
    disk.addFile("/realm/n.txt", FileKind::document);
    EXPECT_FALSE(offered(disk, {rule(FileKind::image, "Pictures", true)}));
}

TEST(RealmRules, onlyTheKindsOfTheRulesAreOffered)
{
    FakeDisk disk;
    disk.addFile("/realm/a.png", FileKind::image);
    disk.addFile("/realm/n.txt", FileKind::document);
    const auto plan = offered(
        disk, {rule(FileKind::image, "Pictures", true), rule(FileKind::document, "Papers")});
    ASSERT_TRUE(plan);
    ASSERT_EQ(plan->moves.size(), 1U);
    EXPECT_EQ(plan->moves[0].kind, FileKind::image);
    EXPECT_FALSE(offered(disk, {rule(FileKind::folder, "Folders", true)}));
}

TEST(RealmRules, comeBackAsTheyWereWritten)
{
    const std::vector<RealmRule> rules = {
        rule(FileKind::image, "Bilder & \"Fotos\"/\xC3\xA9", true), rule(FileKind::other, "")};
    EXPECT_EQ(RealmRules::decoded(RealmRules::encoded(rules)), rules);
    EXPECT_EQ(RealmRules::decoded("[]"), std::vector<RealmRule>());
}

TEST(RealmRules, areWrittenWithFourKeys)
{
    const RealmRule one{*UUID::parse("01234567-89AB-CDEF-0123-456789ABCDEF"), FileKind::pdf, "PDFs",
                        true};
    EXPECT_EQ(RealmRules::encoded({one}),
              R"([{"id":"01234567-89AB-CDEF-0123-456789ABCDEF","kind":"pdf",)"
              R"("destinationFolderName":"PDFs","applyAfterPatrol":true}])");
}

TEST(RealmRules, oneObjectLackingAKeyLosesTheWholeArrayToReading)
{
    const std::string good = R"({"id":"01234567-89AB-CDEF-0123-456789ABCDEF","kind":"pdf",)"
                             R"("destinationFolderName":"PDFs","applyAfterPatrol":true})";
    EXPECT_TRUE(RealmRules::decoded("[" + good + "]"));
    for (
        const char* bad :
        {R"({"kind":"pdf","destinationFolderName":"P","applyAfterPatrol":true})",
         R"({"id":"x","kind":"pdf","destinationFolderName":"P","applyAfterPatrol":true})",
         R"({"id":"01234567-89AB-CDEF-0123-456789ABCDEF","kind":"PDF","destinationFolderName":"P","applyAfterPatrol":true})",
         R"({"id":"01234567-89AB-CDEF-0123-456789ABCDEF","kind":"pdf","destinationFolderName":"P","applyAfterPatrol":1})",
         R"({"id":"01234567-89AB-CDEF-0123-456789ABCDEF","kind":"pdf","destinationFolderName":"P"})",
         "1"}) {
        EXPECT_FALSE(RealmRules::decoded("[" + good + "," + bad + "]")) << bad;
    }
    EXPECT_FALSE(RealmRules::decoded(""));
    EXPECT_FALSE(RealmRules::decoded("{}"));
}

}  // namespace

}  // namespace gruk
