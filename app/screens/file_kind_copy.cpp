#include "app/screens/file_kind_copy.h"

#include <array>

namespace gruk {

namespace {

/// In the order of the kinds.
constexpr std::array kindNames = {"Screenshot",  "Image",   "Video",     "Audio",
                                  "PDF",         "Archive", "Installer", "Document",
                                  "Application", "Folder",  "Other"};
static_assert(kindNames.size() == allFileKinds.size());

}  // namespace

QString nameOf(FileKind kind)
{
    return QString::fromLatin1(kindNames.at(static_cast<std::size_t>(kind)));
}

QString nameInSentence(FileKind kind)
{
    return kind == FileKind::pdf ? nameOf(kind) : nameOf(kind).toLower();
}

}  // namespace gruk
