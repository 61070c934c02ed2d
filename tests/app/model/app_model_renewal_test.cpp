#include <algorithm>
#include <chrono>
#include <filesystem>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "app/model/app_model.h"
#include "tests/support/model_house.h"

namespace gruk {

namespace {

namespace fs = std::filesystem;
using test::ModelHouse;

/// A house whose realm "realm" is patrolled and browsed, sizes known: "Desktop" with two files, one
/// of them an old installer, and "other", which is never touched.
class AppModelRenewal : public testing::Test {
protected:
    static constexpr Bytes block = 4'096;

    AppModelRenewal()
    {
        const std::string old = house.directory.file("realm/Desktop/old.dmg", 3 * block);
        fs::last_write_time(old, fs::file_time_type::clock::now() - std::chrono::days(900));
        house.directory.file("realm/Desktop/picture.png", 2 * block);
        house.directory.file("realm/other/x", block);
        house.directory.folder("data");
        house.loop->setNow(Date::now());
        realm = house.makePatrolledRealm("realm");
        house.allowTrash();
        house.settle();
        EXPECT_EQ(sizeOf("Desktop"), 5 * block);
        untouched = node("other");
    }

    [[nodiscard]] AppModel& model() { return *house.model; }

    [[nodiscard]] std::shared_ptr<ScanNode> node(std::string_view name)
    {
        for (const auto& each : model().session().nodes()) {
            if (each->entry().name() == name) {
                return each;
            }
        }
        return nullptr;
    }
    /// -1 for what is not listed or not measured.
    [[nodiscard]] Bytes sizeOf(std::string_view name)
    {
        const auto row = node(name);
        return row && (row->aggregate() || !row->entry().isDirectory) ? row->displaySize() : -1;
    }

    void trash()
    {
        for (const ReviewFinding& finding : model().findings()) {
            if (finding.url.lastPathComponent() == "old.dmg") {
                model().moveFindingToTrash(finding,
                                           TrashService::currentIdentity(finding.url).value());
                house.settle();
                return;
            }
        }
        throw std::runtime_error("no finding");
    }

    ModelHouse house;
    FileURL realm;
    std::shared_ptr<ScanNode> untouched;
};

TEST_F(AppModelRenewal, measuresAnewWhatWasTrashedFromAndPutBack)
{
    trash();
    EXPECT_FALSE(fs::exists(house.directory.path("realm/Desktop/old.dmg")));
    EXPECT_EQ(sizeOf("Desktop"), 2 * block);
    EXPECT_EQ(sizeOf("other"), block);
    model().undoLastTrash();
    house.settle();
    EXPECT_EQ(sizeOf("Desktop"), 5 * block);
}

TEST_F(AppModelRenewal, measuresAnewAfterABatchToTheTrash)
{
    model().moveFindingsToTrash(model().findings());
    house.settle();
    EXPECT_EQ(sizeOf("Desktop"), 2 * block);
}

TEST_F(AppModelRenewal, listsTheFolderThatIsShownAnewWhenAnItemLeavesIt)
{
    model().session().open(FileURL::directory(house.directory.path("realm/Desktop")));
    house.settle();
    EXPECT_EQ(model().session().nodes().size(), 2U);
    trash();
    EXPECT_EQ(model().session().nodes().size(), 1U);
    model().undoLastTrash();
    house.settle();
    EXPECT_EQ(model().session().nodes().size(), 2U);
}

TEST_F(AppModelRenewal, measuresAnewAfterAnOrganiseAndItsUndo)
{
    const FileURL desktop = FileURL::directory(house.directory.path("realm/Desktop"));
    model().session().open(desktop);
    house.settle();
    house.directory.file("realm/loose.png", 7 * block);
    model().organise(model().organisePlanForActiveRealm().value());
    house.settle();
    model().session().goBack();
    house.settle();
    EXPECT_EQ(sizeOf("Images"), 7 * block);
    EXPECT_EQ(sizeOf("loose.png"), -1);
    model().undoLastOrganise();
    house.settle();
    EXPECT_EQ(sizeOf("Images"), 0);
    EXPECT_EQ(sizeOf("loose.png"), 7 * block);
}

TEST_F(AppModelRenewal, measuresAnewAfterAPatrol)
{
    house.directory.file("realm/Desktop/more", 10 * block);
    house.directory.file("realm/nothing in it");
    house.patrol();
    EXPECT_EQ(sizeOf("Desktop"), 15 * block);
    EXPECT_EQ(sizeOf("other"), block);
    EXPECT_EQ(sizeOf("nothing in it"), 0);
}

TEST_F(AppModelRenewal, aPatrolThatFailsLeavesTheRowsAsTheyAre)
{
    const auto desktop = node("Desktop");
    model().patrolActiveRealm();
    model().cancelPatrol();
    house.settle();
    EXPECT_EQ(node("Desktop"), desktop);
}

TEST(AppModelRenewalDesktop, aHoardAndItsUndoAreMeasuredAnew)
{
    constexpr Bytes block = 4'096;
    ModelHouse house;
    house.directory.file("Desktop/a", block);
    house.directory.file("Desktop/b", block);
    house.panel->answers.push_back(FileURL::directory(house.directory.path("Desktop")));
    house.model->grantDesktop();
    house.settle();
    const auto rows = [&] {
        std::multiset<Bytes> sizes;
        for (const auto& row : house.model->session().nodes()) {
            sizes.insert(row->displaySize());
        }
        return sizes;
    };
    EXPECT_EQ(rows(), (std::multiset<Bytes>{block, block}));
    house.model->tidyDesktop();
    house.settle();
    ASSERT_EQ(rows().size(), 1U);
    // With the journal.
    EXPECT_EQ(*rows().begin(), 3 * block);
    house.model->undoLastStash();
    house.settle();
    EXPECT_EQ(rows(), (std::multiset<Bytes>{block, block, block}));
}

}  // namespace

}  // namespace gruk
