#include "app/desktop/file_dialog_open_panel.h"

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QWidget>
#include <gtest/gtest.h>

#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

/// Asks the panel and keeps its answer.
struct Asked {
    bool isAnswered = false;
    std::optional<FileURL> answer;

    void by(OpenPanel& panel, OpenPanelRequest request)
    {
        panel.chooseDirectory(std::move(request)).then([this](const std::optional<FileURL>& url) {
            isAnswered = true;
            answer = url;
        });
    }
};

QFileDialog* openDialog(const QWidget& window)
{
    return window.findChild<QFileDialog*>();
}

}  // namespace

TEST(FileDialogOpenPanel, asksForOneFolderWithItsWordsAndDoesNotBlock)
{
    const test::TemporaryDirectory directory;
    Asked asked;
    QWidget window;
    FileDialogOpenPanel panel;
    panel.setParentWindow(&window);
    asked.by(panel, {"A message.", "Grant Access", directory.url()});
    EXPECT_FALSE(asked.isAnswered);
    const QFileDialog* dialog = openDialog(window);
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("A message."));
    EXPECT_EQ(dialog->labelText(QFileDialog::Accept), QStringLiteral("Grant Access"));
    EXPECT_EQ(dialog->fileMode(), QFileDialog::Directory);
    EXPECT_EQ(QFile::encodeName(dialog->directory().absolutePath()).toStdString(),
              directory.path());
}

TEST(FileDialogOpenPanel, answersWithTheFolderThatWasChosen)
{
    const test::TemporaryDirectory directory;
    const std::string folder = directory.folder("wanted");
    Asked asked;
    QWidget window;
    FileDialogOpenPanel panel;
    panel.setParentWindow(&window);
    asked.by(panel, {"", "", directory.url()});
    QFileDialog* dialog = openDialog(window);
    dialog->selectFile(QFile::decodeName(folder.c_str()));
    Q_EMIT dialog->finished(QDialog::Accepted);
    ASSERT_TRUE(asked.isAnswered);
    EXPECT_EQ(asked.answer, FileURL::directory(folder));
}

TEST(FileDialogOpenPanel, answersWithNoneWhenItIsCancelled)
{
    Asked asked;
    QWidget window;
    FileDialogOpenPanel panel;
    panel.setParentWindow(&window);
    asked.by(panel, {});
    openDialog(window)->reject();
    EXPECT_TRUE(asked.isAnswered);
    EXPECT_FALSE(asked.answer);
}

TEST(FileDialogOpenPanel, aSecondRequestWhileItIsOpenEndsWithNone)
{
    Asked first;
    Asked second;
    QWidget window;
    FileDialogOpenPanel panel;
    panel.setParentWindow(&window);
    first.by(panel, {});
    second.by(panel, {});
    EXPECT_FALSE(first.isAnswered);
    EXPECT_TRUE(second.isAnswered);
    EXPECT_EQ(window.findChildren<QFileDialog*>().size(), 1);
}

TEST(FileDialogOpenPanel, aWindowThatEndsWhileItIsOpenAnswersWithNone)
{
    Asked asked;
    FileDialogOpenPanel panel;
    {
        QWidget window;
        panel.setParentWindow(&window);
        asked.by(panel, {});
        EXPECT_FALSE(asked.isAnswered);
    }
    EXPECT_TRUE(asked.isAnswered);
    EXPECT_FALSE(asked.answer);
}

}  // namespace gruk
