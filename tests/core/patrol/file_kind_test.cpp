#include "core/patrol/file_kind.h"

#include <gtest/gtest.h>

#include <string>

namespace gruk {

namespace {

FileKind kindOfFile(std::string_view name)
{
    return classify(name, false, false);
}

FileKind kindOfDirectory(std::string_view name)
{
    return classify(name, true, false);
}

struct Row {
    FileKind kind;
    std::initializer_list<const char*> extensions;
};

const Row table[] = {
    {FileKind::image,
     {"png", "jpg", "jpeg", "gif", "bmp", "tiff", "heic", "webp", "svg", "avif", "jxl", "tif"}},
    {FileKind::video,
     {"mov", "mp4", "avi", "mkv", "flv", "wmv", "m4v", "webm", "mpg", "mpeg", "ogv", "3gp"}},
    {FileKind::audio,
     {"mp3", "wav", "aac", "flac", "m4a", "wma", "ogg", "aiff", "opus", "oga", "mid"}},
    {FileKind::pdf, {"pdf"}},
    {FileKind::archive,
     {"zip", "gz", "tar", "7z", "rar", "bz2", "tgz", "xz", "zst", "lz4", "lzma", "tbz2", "txz"}},
    {FileKind::installer,
     {"dmg", "pkg", "exe", "msi", "deb", "rpm", "flatpak", "flatpakref", "snap", "run", "iso",
      "img"}},
    {FileKind::document,
     {"txt", "md", "doc", "docx", "pages", "xls", "xlsx", "key", "ppt", "pptx", "odt", "ods", "odp",
      "rtf", "csv", "epub"}},
    {FileKind::application, {"app", "AppImage"}},
};

}  // namespace

TEST(FileKind, rawStringsAreTheCaseNamesInDeclaredOrder)
{
    std::string names;
    for (const FileKind kind : allFileKinds) {
        names += std::string(rawString(kind)) + " ";
        EXPECT_EQ(fileKind(rawString(kind)), kind);
    }
    EXPECT_EQ(names, "screenshot image video audio pdf archive installer document application "
                     "folder other ");
}

TEST(FileKind, anyOtherRawStringIsNone)
{
    for (const char* text : {"", "Image", "image ", "folders", "gone"}) {
        EXPECT_EQ(fileKind(text), std::nullopt) << text;
    }
}

TEST(FileKind, everyExtensionOfTheTableGivesItsKindInAnyCase)
{
    for (const Row& row : table) {
        for (const std::string extension : row.extensions) {
            std::string upper = extension;
            for (char& c : upper) {
                c = static_cast<char>(c >= 'a' ? c - 'a' + 'A' : c);
            }
            EXPECT_EQ(kindOfFile("x." + extension), row.kind) << extension;
            EXPECT_EQ(kindOfFile("a.b." + upper), row.kind) << upper;
            EXPECT_EQ(kindOfFile("." + extension), row.kind) << extension;
            EXPECT_EQ(kindOfFile(extension), FileKind::other) << extension;
            EXPECT_EQ(kindOfFile("x." + extension + "x"),
                      extension == "xls" || extension == "doc" || extension == "ppt"
                          ? FileKind::document
                          : FileKind::other);
        }
    }
}

TEST(FileKind, aNameWithNoDotIsOtherAndExtensionsHaveNoCase)
{
    EXPECT_EQ(kindOfFile("README"), FileKind::other);
    EXPECT_EQ(kindOfFile("archive.TAR"), FileKind::archive);
    EXPECT_EQ(kindOfFile("Report.PDF"), FileKind::pdf);
}

TEST(FileKind, toolsAppIsAnApplicationAsADirectoryAndAsAFile)
{
    EXPECT_EQ(kindOfDirectory("Tools.APP"), FileKind::application);
    EXPECT_EQ(kindOfFile("Tools.app"), FileKind::application);
}

TEST(FileKind, anyOtherDirectoryIsAFolderWhateverItsExtension)
{
    for (const char* name : {"photos.png", "x.dmg", "app", "x.apps", "", "src"}) {
        EXPECT_EQ(kindOfDirectory(name), FileKind::folder) << name;
    }
    EXPECT_EQ(kindOfDirectory(".app"), FileKind::application);
}

TEST(FileKind, aDotFileWithAKnownExtensionHasItsKind)
{
    EXPECT_EQ(kindOfFile(".png"), FileKind::image);
}

TEST(FileKind, anEmptyExtensionIsOther)
{
    EXPECT_EQ(kindOfFile("notes."), FileKind::other);
    EXPECT_EQ(kindOfFile("."), FileKind::other);
    EXPECT_EQ(kindOfFile(""), FileKind::other);
}

TEST(FileKind, aScreenshotComesFirstAlsoForAFolder)
{
    EXPECT_EQ(classify("Screenshot 2024", true, true), FileKind::screenshot);
    EXPECT_EQ(classify("Tools.app", true, true), FileKind::screenshot);
    EXPECT_EQ(classify("x.pdf", false, true), FileKind::screenshot);
}

TEST(FileKind, bytesThatAreNotTextAreOther)
{
    EXPECT_EQ(kindOfFile("x.\xff\xfe"), FileKind::other);
    EXPECT_EQ(kindOfFile("\xff.png"), FileKind::image);
}

}  // namespace gruk
