#include "app/desktop/file_revealer.h"

#include <algorithm>
#include <utility>

#include <QDBusMessage>
#include <QDesktopServices>
#include <QStringList>
#include <QUrl>

#include "app/desktop/session_bus.h"

namespace gruk {

namespace {

/// An item among others, also when it is a folder: with a "/" behind it, some take it for the place
/// to show and not for the thing to mark.
QString itemText(const FileURL& item)
{
    return QString::fromStdString(FileURL(item.path()).fileURLText());
}

QStringList itemTexts(const std::vector<FileURL>& items)
{
    QStringList texts;
    std::transform(items.begin(), items.end(), std::back_inserter(texts), itemText);
    return texts;
}

/// Each folder that holds one of the items, once, in their order.
std::vector<FileURL> foldersOf(const std::vector<FileURL>& items)
{
    std::vector<FileURL> folders;
    for (const FileURL& item : items) {
        FileURL folder = item.deletingLastPathComponent();
        if (std::find(folders.begin(), folders.end(), folder) == folders.end()) {
            folders.push_back(std::move(folder));
        }
    }
    return folders;
}

/// Whether a file manager said that it does it. Waits.
bool isShownByFileManager(const QStringList& items, std::chrono::milliseconds limit)
{
    const QDeadlineTimer deadline(limit);
    const std::optional<QDBusConnection> bus = connectToSessionBus(deadline);
    if (!bus) {
        return false;
    }
    const QString name = QStringLiteral("org.freedesktop.FileManager1");
    QDBusMessage show = QDBusMessage::createMethodCall(
        name, QStringLiteral("/org/freedesktop/FileManager1"), name, QStringLiteral("ShowItems"));
    const QString startupID;
    show << items << startupID;
    const int patience = millisecondsUntil(deadline, static_cast<int>(limit.count()));
    const QDBusMessage answer = bus->call(show, QDBus::Block, patience);
    QDBusConnection::disconnectFromBus(bus->name());
    return answer.type() == QDBusMessage::ReplyMessage;
}

}  // namespace

void openFolderOnDesktop(const FileURL& folder)
{
    QDesktopServices::openUrl(
        QUrl::fromEncoded(QByteArray::fromStdString(folder.fileURLText()), QUrl::StrictMode));
}

FileRevealer::FileRevealer(std::shared_ptr<TaskPool> pool, std::shared_ptr<RunLoop> loop,
                           FolderOpener openFolder, std::chrono::milliseconds limit)
    : pool_(std::move(pool)), loop_(std::move(loop)), openFolder_(std::move(openFolder)),
      limit_(limit)
{
}

void FileRevealer::reveal(const std::vector<FileURL>& items) const
{
    if (items.empty()) {
        return;
    }
    pool_->start([items, loop = loop_, openFolder = openFolder_, limit = limit_] {
        if (isShownByFileManager(itemTexts(items), limit)) {
            return;
        }
        loop->post([folders = foldersOf(items), openFolder] {
            std::for_each(folders.begin(), folders.end(), openFolder);
        });
    });
}

}  // namespace gruk
