#include "app/screens/scan_node_model.h"

#include <algorithm>

#include <QAbstractItemModelTester>
#include <QCoreApplication>
#include <QItemSelectionModel>
#include <gtest/gtest.h>

#include "tests/support/manual_run_loop.h"
#include "tests/support/manual_task_pool.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

constexpr std::size_t block = 4'096;

/// A session on real folders, whose walks run when the test says so, under a model that the
/// toolkit's own checker watches throughout.
class ScanNodeModelTest : public testing::Test {
protected:
    ScanNodeModelTest()
    {
        directory.file("notes.txt", 2 * block);
        directory.file("small/one", block);
        directory.file("large/one", 9 * block);
        session.open(directory.url());
        model = std::make_unique<ScanNodeModel>(session);
        tester = std::make_unique<QAbstractItemModelTester>(
            model.get(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    }

    void settle()
    {
        while (pool->runNext() || loop->run()) {
        }
    }

    [[nodiscard]] std::vector<std::string> names() const
    {
        std::vector<std::string> names;
        for (int row = 0; row < model->rowCount(); ++row) {
            names.emplace_back(model->node(row).entry().name());
        }
        return names;
    }

    [[nodiscard]] QString text(const std::string& name, int column,
                               int role = Qt::DisplayRole) const
    {
        const int row = model->rowOf(FileURL(directory.path(name))).value();
        return model->data(model->index(row, column), role).toString();
    }

    using Names = std::vector<std::string>;

    test::TemporaryDirectory directory;
    std::shared_ptr<test::ManualRunLoop> loop = std::make_shared<test::ManualRunLoop>();
    std::shared_ptr<test::ManualTaskPool> pool = std::make_shared<test::ManualTaskPool>();
    ScanSession session{std::make_shared<ScanEngine>(), pool, loop};
    std::unique_ptr<ScanNodeModel> model;
    std::unique_ptr<QAbstractItemModelTester> tester;
};

}  // namespace

TEST_F(ScanNodeModelTest, hasTheFourColumnsInTheirOrder)
{
    QStringList titles;
    for (int column = 0; column < model->columnCount(); ++column) {
        titles.append(model->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString());
    }
    EXPECT_EQ(titles, (QStringList{QStringLiteral("Name"), QStringLiteral("Size"),
                                   QStringLiteral("Kind"), QStringLiteral("Last Opened")}));
}

TEST_F(ScanNodeModelTest, showsNameSizeAndKind)
{
    EXPECT_EQ(text("notes.txt", ScanNodeModel::nameColumn), QStringLiteral("notes.txt"));
    EXPECT_EQ(text("notes.txt", ScanNodeModel::sizeColumn), QStringLiteral("8 KB"));
    EXPECT_EQ(text("notes.txt", ScanNodeModel::kindColumn), QStringLiteral("Document"));
    EXPECT_EQ(text("small", ScanNodeModel::kindColumn), QStringLiteral("Folder"));
    EXPECT_EQ(text("small", ScanNodeModel::sizeColumn, Qt::AccessibleTextRole),
              QStringLiteral("Being measured"));
}

TEST_F(ScanNodeModelTest, aNameThatIsNotUTF8IsShownAndFoundByItsBytes)
{
    directory.file("bad\xFFname");
    session.open(directory.url());
    EXPECT_EQ(text("bad\xFFname", ScanNodeModel::nameColumn), QStringLiteral("bad\uFFFDname"));
}

TEST_F(ScanNodeModelTest, sizesThatArriveMoveRowsToTheirPlace)
{
    EXPECT_EQ(names().front(), "notes.txt");
    settle();
    EXPECT_TRUE(model->isBehind());
    model->catchUp();
    EXPECT_FALSE(model->isBehind());
    EXPECT_EQ(names(), (Names{"large", "notes.txt", "small"}));
    EXPECT_EQ(text("large", ScanNodeModel::sizeColumn), QStringLiteral("37 KB"));
}

TEST_F(ScanNodeModelTest, manySizesThatArriveAreShownTogetherAndWithoutBeingAskedFor)
{
    int changes = 0;
    QObject::connect(model.get(), &ScanNodeModel::sizesChanged, model.get(), [&] { ++changes; });
    settle();
    EXPECT_EQ(changes, 0);
    while (model->isBehind()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(names(), (Names{"large", "notes.txt", "small"}));
}

TEST_F(ScanNodeModelTest, whatIsSelectedStaysSelectedWhenItsRowMoves)
{
    QItemSelectionModel selection(model.get());
    const int row = model->rowOf(FileURL(directory.path("small"))).value();
    selection.setCurrentIndex(model->index(row, 0),
                              QItemSelectionModel::Select | QItemSelectionModel::Rows);
    settle();
    model->catchUp();
    ASSERT_EQ(names(), (Names{"large", "notes.txt", "small"}));
    EXPECT_EQ(selection.currentIndex().row(), 2);
    EXPECT_TRUE(selection.isRowSelected(2));
    EXPECT_EQ(selection.selectedRows().size(), 1);
    session.setSortOrder(SortOrder::sizeAscending);
    EXPECT_EQ(names(), (Names{"small", "notes.txt", "large"}));
    EXPECT_EQ(selection.currentIndex().row(), 0);
    EXPECT_TRUE(selection.isRowSelected(0));
}

TEST_F(ScanNodeModelTest, anotherOrderAndAnotherFilterShowAtOnce)
{
    session.setSortOrder(SortOrder::name);
    EXPECT_EQ(names(), (Names{"large", "notes.txt", "small"}));
    session.setFilterText("L");
    EXPECT_EQ(names(), (Names{"large", "small"}));
    session.setFilterText("nothing of that name");
    EXPECT_EQ(model->rowCount(), 0);
    session.setFilterText("");
    EXPECT_EQ(model->rowCount(), 3);
}

TEST_F(ScanNodeModelTest, anotherFolderShowsAtOnce)
{
    session.open(FileURL::directory(directory.path("small")));
    EXPECT_EQ(names(), Names{"one"});
    session.goBack();
    EXPECT_EQ(model->rowCount(), 3);
    session.reset();
    EXPECT_EQ(model->rowCount(), 0);
}

TEST_F(ScanNodeModelTest, aFolderThatIsLeftWhileItsSizesArriveShowsNoneOfThem)
{
    ASSERT_TRUE(pool->runNext());
    loop->run();
    ASSERT_TRUE(model->isBehind());
    session.open(FileURL::directory(directory.path("small")));
    EXPECT_FALSE(model->isBehind());
    settle();
    model->catchUp();
    EXPECT_EQ(names(), Names{"one"});
}

TEST_F(ScanNodeModelTest, tellsWhereItemsStand)
{
    session.setSortOrder(SortOrder::name);
    EXPECT_EQ(model->rowsOf({FileURL(directory.path("small")), FileURL(directory.path("gone")),
                             FileURL(directory.path("large"))}),
              (std::vector<int>{0, 2}));
    EXPECT_EQ(model->rowOf(FileURL(directory.path("gone"))), std::nullopt);
}

}  // namespace gruk
