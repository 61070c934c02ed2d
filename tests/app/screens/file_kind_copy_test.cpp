#include "app/screens/file_kind_copy.h"

#include <iterator>
#include <utility>

#include <gtest/gtest.h>

namespace gruk {

TEST(FileKindCopy, everyKindHasItsName)
{
    const std::pair<FileKind, const char*> names[] = {
        {FileKind::screenshot, "Screenshot"},
        {FileKind::image, "Image"},
        {FileKind::video, "Video"},
        {FileKind::audio, "Audio"},
        {FileKind::pdf, "PDF"},
        {FileKind::archive, "Archive"},
        {FileKind::installer, "Installer"},
        {FileKind::document, "Document"},
        {FileKind::application, "Application"},
        {FileKind::folder, "Folder"},
        {FileKind::other, "Other"},
    };
    ASSERT_EQ(std::size(names), allFileKinds.size());
    for (const auto& [kind, name] : names) {
        EXPECT_EQ(nameOf(kind), QString::fromLatin1(name));
    }
}

TEST(FileKindCopy, withinASentenceANameIsLowerCaseUnlessItIsAnAbbreviation)
{
    EXPECT_EQ(nameInSentence(FileKind::screenshot), QStringLiteral("screenshot"));
    EXPECT_EQ(nameInSentence(FileKind::other), QStringLiteral("other"));
    EXPECT_EQ(nameInSentence(FileKind::pdf), QStringLiteral("PDF"));
}

}  // namespace gruk
