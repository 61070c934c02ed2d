#include "app/screens/file_kind_copy.h"

#include <array>

namespace gruk {

namespace {

/// In the order of the kinds.
constexpr std::array names = {"Screenshot", "Image",    "Video",       "Audio",  "PDF",  "Archive",
                              "Installer",  "Document", "Application", "Folder", "Other"};
static_assert(names.size() == allFileKinds.size());

}  // namespace

QString nameOf(FileKind kind)
{
    return QString::fromLatin1(names.at(static_cast<std::size_t>(kind)));
}

QString nameInSentence(FileKind kind)
{
    return kind == FileKind::pdf ? nameOf(kind) : nameOf(kind).toLower();
}

}  // namespace gruk
