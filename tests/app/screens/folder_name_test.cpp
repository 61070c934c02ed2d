#include "app/screens/folder_name.h"

#include <gtest/gtest.h>

namespace gruk {

TEST(FolderName, spaceAndLineBreaksAroundItAreNoPartOfIt)
{
    EXPECT_EQ(FolderName::trimmed(QStringLiteral(" \n\tMy pictures \r\n")),
              QStringLiteral("My pictures"));
    EXPECT_EQ(FolderName::trimmed(QStringLiteral(" \n ")), QString());
}

TEST(FolderName, anyNameThatAFolderCanHaveIsTaken)
{
    for (const QString& name :
         {QStringLiteral("Images"), QStringLiteral("a.b."), QStringLiteral("…"),
          QStringLiteral("Bilder & Töne"), QStringLiteral("🗂"), QString(255, QLatin1Char('a'))}) {
        EXPECT_EQ(FolderName::refusal(name), QString()) << name.toStdString();
    }
}

TEST(FolderName, aRefusalSaysWhy)
{
    EXPECT_EQ(FolderName::refusal({}), QStringLiteral("A folder needs a name."));
    for (const char* name : {".", "..", ".hidden", "./x"}) {
        EXPECT_EQ(FolderName::refusal(QString::fromLatin1(name)),
                  QStringLiteral("A name that begins with “.” would hide the folder."));
    }
    for (const char* name : {"/", "a/b", "a/"}) {
        EXPECT_EQ(FolderName::refusal(QString::fromLatin1(name)),
                  QStringLiteral("A folder's name can't have a “/” in it."));
    }
    EXPECT_EQ(FolderName::refusal(QStringLiteral("a\nb")),
              QStringLiteral("A folder's name can't have a line break in it."));
    EXPECT_EQ(FolderName::refusal(QString(128, QChar(0xE4))),
              QStringLiteral("This name is too long for a folder."));
}

}  // namespace gruk
