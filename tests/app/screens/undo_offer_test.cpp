#include "app/screens/undo_offer.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "tests/support/model_house.h"

namespace gruk {

namespace {

/// A Desktop as the open realm, of which something can be moved in each of the three ways.
class UndoOffer : public testing::Test {
protected:
    UndoOffer()
    {
        house.directory.file("Desktop/report.pdf", 40'960);
        house.directory.file("Desktop/report (1).pdf", 40'960);
        house.directory.file("Desktop/photo.png", 10);
        house.makePatrolledRealm("Desktop");
        house.allowTrash();
    }
    void trash()
    {
        ASSERT_FALSE(house.model->findings().empty());
        house.model->moveFindingsToTrash({house.model->findings().front()});
        ASSERT_TRUE(house.model->lastTrashOperation());
    }
    [[nodiscard]] QString label()
    {
        const auto offer = undoOffer(*house.model);
        return offer ? offer->label : QString();
    }

    test::ModelHouse house;
};

const QString undo = QStringLiteral("Undo");
const QString putBack = QStringLiteral("Put everything back");

}  // namespace

TEST_F(UndoOffer, theTrashComesBeforeTheDesktopBeforeAnOrganise)
{
    trash();
    house.model->organise(*house.model->organisePlanForActiveRealm());
    ASSERT_TRUE(house.model->lastOrganiseOperation());
    house.model->tidyDesktop();
    ASSERT_TRUE(house.model->lastStashOperation());

    EXPECT_EQ(label(), undo);
    undoOffer(*house.model)->run();
    EXPECT_FALSE(house.model->lastTrashOperation());
    EXPECT_EQ(label(), putBack);
    undoOffer(*house.model)->run();
    EXPECT_FALSE(house.model->lastStashOperation());
    EXPECT_TRUE(house.model->lastOrganiseOperation());
    EXPECT_EQ(label(), putBack);
    undoOffer(*house.model)->run();
    EXPECT_FALSE(house.model->lastOrganiseOperation());
    EXPECT_TRUE(std::filesystem::exists(house.directory.path("Desktop/photo.png")));
    EXPECT_FALSE(undoOffer(*house.model));
}

TEST_F(UndoOffer, namesWhatItPutsBack)
{
    house.model->tidyDesktop();
    EXPECT_EQ(undoOffer(*house.model)->description,
              QStringLiteral("Puts 4 items back on the Desktop"));
    house.model->undoLastStash();

    house.model->organise(*house.model->organisePlanForActiveRealm());
    EXPECT_EQ(undoOffer(*house.model)->description,
              QStringLiteral("Puts 4 items back where they were in Desktop"));
    house.model->undoLastOrganise();

    trash();
    EXPECT_EQ(undoOffer(*house.model)->description,
              QStringLiteral("Puts report (1).pdf back from the Trash"));
}

TEST_F(UndoOffer, countsWhatIsMoreThanOne)
{
    house.directory.file("Desktop/report (2).pdf", 40'960);
    house.patrol();
    house.model->moveFindingsToTrash(house.model->findings());
    ASSERT_EQ(house.model->lastTrashOperation()->moved.size(), 2U);
    EXPECT_EQ(undoOffer(*house.model)->description,
              QStringLiteral("Puts 2 items back from the Trash"));
}

TEST_F(UndoOffer, anOrganiseIsTakenBackInAnotherRealmToo)
{
    house.model->organise(*house.model->organisePlanForActiveRealm());
    const FileURL other = house.makeRealm("Other");
    house.settle();
    ASSERT_TRUE(undoOffer(*house.model));
    undoOffer(*house.model)->run();
    EXPECT_TRUE(std::filesystem::exists(house.directory.path("Desktop/photo.png")));
    EXPECT_EQ(house.model->activeRootURL(), other);
}

TEST_F(UndoOffer, anOrganiseIsTakenBackAlthoughTheOpenRealmIsNoLongerThere)
{
    house.model->organise(*house.model->organisePlanForActiveRealm());
    house.makeRealm("Other");
    house.settle();
    std::filesystem::remove_all(house.directory.path("Other"));
    undoOffer(*house.model)->run();
    EXPECT_TRUE(std::filesystem::exists(house.directory.path("Desktop/photo.png")));
}

}  // namespace gruk
