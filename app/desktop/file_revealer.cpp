#include "app/desktop/file_revealer.h"

#include <algorithm>
#include <utility>

#include <QDBusMessage>
#include <QDesktopServices>
#include <QElapsedTimer>
#include <QProcess>
#include <QStandardPaths>
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

/// A start that found nothing to start is over by then; what ends later was a window.
constexpr qint64 longestFailure = 10'000;

/// Calls `onFailure` at its first call only.
std::function<void()> once(std::function<void()> onFailure)
{
    return [wasCalled = std::make_shared<bool>(false), onFailure = std::move(onFailure)] {
        if (!std::exchange(*wasCalled, true)) {
            onFailure();
        }
    };
}

/// Has the desktop's opener open it, which tells by its exit whether it could.
void openWith(const QString& opener, const FileURL& folder, const std::function<void()>& onFailure)
{
    // Never taken down while it runs: that would close what it opened.
    auto* process = new QProcess;
    process->setProcessChannelMode(QProcess::ForwardedChannels);
    QElapsedTimer time;
    time.start();
    QObject::connect(process, &QProcess::finished, process,
                     [process, time, onFailure](int code, QProcess::ExitStatus status) {
                         const bool failed = status != QProcess::NormalExit || code != 0;
                         process->deleteLater();
                         if (failed && time.elapsed() < longestFailure) {
                             onFailure();
                         }
                     });
    QObject::connect(process, &QProcess::errorOccurred, process,
                     [process, onFailure](QProcess::ProcessError error) {
                         if (error == QProcess::FailedToStart) {
                             process->deleteLater();
                             onFailure();
                         }
                     });
    process->start(opener, {QString::fromStdString(folder.fileURLText())});
}

}  // namespace

void openFolderOnDesktop(const FileURL& folder, const std::function<void()>& onFailure)
{
    // The toolkit would start it too, and not wait for its answer.
    const QString opener = QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
    if (!opener.isEmpty()) {
        openWith(opener, folder, onFailure);
        return;
    }
    if (!QDesktopServices::openUrl(
            QUrl::fromEncoded(QByteArray::fromStdString(folder.fileURLText()), QUrl::StrictMode))) {
        onFailure();
    }
}

FileRevealer::FileRevealer(std::shared_ptr<TaskPool> pool, std::shared_ptr<RunLoop> loop,
                           FolderOpener openFolder, std::chrono::milliseconds limit)
    : pool_(std::move(pool)), loop_(std::move(loop)), openFolder_(std::move(openFolder)),
      limit_(limit)
{
}

void FileRevealer::reveal(const std::vector<FileURL>& items, std::function<void()> onFailure) const
{
    if (items.empty()) {
        return;
    }
    pool_->start([items, loop = loop_, openFolder = openFolder_, limit = limit_,
                  onFailure = once(std::move(onFailure))] {
        if (isShownByFileManager(itemTexts(items), limit)) {
            return;
        }
        loop->post([folders = foldersOf(items), openFolder, onFailure] {
            for (const FileURL& folder : folders) {
                openFolder(folder, onFailure);
            }
        });
    });
}

}  // namespace gruk
