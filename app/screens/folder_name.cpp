#include "app/screens/folder_name.h"

#include <algorithm>

namespace gruk::FolderName {

namespace {

/// What file systems take, in bytes of UTF-8.
constexpr qsizetype longestName = 255;

bool hasControlCharacter(const QString& name)
{
    return std::ranges::any_of(
        name, [](QChar character) { return character.category() == QChar::Other_Control; });
}

}  // namespace

QString trimmed(const QString& written)
{
    return written.trimmed();
}

QString refusal(const QString& name)
{
    if (name.isEmpty()) {
        return QStringLiteral("A folder needs a name.");
    }
    if (name.startsWith(QLatin1Char('.'))) {
        return QStringLiteral("A name that begins with “.” would hide the folder.");
    }
    if (name.contains(QLatin1Char('/'))) {
        return QStringLiteral("A folder's name can't have a “/” in it.");
    }
    if (hasControlCharacter(name)) {
        return QStringLiteral("A folder's name can't have a line break in it.");
    }
    if (name.toUtf8().size() > longestName) {
        return QStringLiteral("This name is too long for a folder.");
    }
    return {};
}

}  // namespace gruk::FolderName
