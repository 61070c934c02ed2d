#include "app/desktop/instance_socket.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <thread>

#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QLocalSocket>
#include <QTimer>

#include "platform/files/known_folders.h"
#include "platform/foundation/errors.h"

namespace gruk {

namespace {

using namespace std::chrono_literals;

/// How a message begins, in which the two tokens follow, a line each; and its answer.
constexpr const char* greeting = "gruk-activate 1\n";
constexpr const char* answer = "shown\n";
constexpr int linesOfMessage = 3;

/// Longer than any message is.
constexpr qint64 longestMessage = 16'384;
/// How long one that connects may take to say what it wants.
constexpr auto patienceWithMessage = 2s;
/// Between two attempts to reach an owner that does not listen yet.
constexpr auto betweenAttempts = 10ms;

/// Whether nobody but the user can reach into the folder.
bool isPrivateFolder(const std::string& path)
{
    constexpr mode_t forOthers = 077;
    struct stat facts {};
    return ::lstat(path.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode)
           && facts.st_uid == ::getuid() && (facts.st_mode & forOthers) == 0;
}

/// The folder for what lives as long as the session.
std::optional<FileURL> runtimeFolder()
{
    const std::string named = qgetenv("XDG_RUNTIME_DIR").toStdString();
    if (named.starts_with('/') && isPrivateFolder(named)) {
        return FileURL::directory(named);
    }
    const FileURL own = temporaryDirectory().appending("gruk-" + std::to_string(::getuid()),
                                                       FileURL::Names::directory);
    constexpr mode_t ownerOnly = 0700;
    ::mkdir(own.path().c_str(), ownerOnly);
    return isPrivateFolder(own.path()) ? std::optional(own) : std::nullopt;
}

QString socketPath(const FileURL& base)
{
    return QFile::decodeName((base.path() + ".socket").c_str());
}

/// A token in one line.
QByteArray lineOf(const QString& token)
{
    return token.toUtf8().replace('\n', "") + '\n';
}

QString textOf(QByteArray line)
{
    line.chop(1);
    return QString::fromUtf8(line);
}

int remaining(const QDeadlineTimer& deadline)
{
    return static_cast<int>(std::max<qint64>(deadline.remainingTime(), 1));
}

/// Sends the message over an open connection; whether it is answered.
bool isAnswered(QLocalSocket& socket, const ActivationTokens& tokens,
                const QDeadlineTimer& deadline)
{
    socket.write(greeting + lineOf(tokens.activationToken) + lineOf(tokens.startupID));
    while (!socket.canReadLine()) {
        if (!socket.waitForReadyRead(remaining(deadline))) {
            return false;
        }
    }
    return socket.readLine() == answer;
}

}  // namespace

InstanceSocket::InstanceSocket(const QString& applicationID)
{
    if (const std::optional<FileURL> folder = runtimeFolder()) {
        base_ = folder->appending(applicationID.toStdString());
    }
    connect(&server_, &QLocalServer::newConnection, this, &InstanceSocket::accept);
}

bool InstanceSocket::own()
{
    if (!base_) {
        return true;
    }
    try {
        lock_.emplace(FileURL(base_->path() + ".lock"), 0ms);
        return true;
    } catch (const FileError& error) {
        return error.code() != std::errc::resource_unavailable_try_again;
    }
}

void InstanceSocket::listen()
{
    if (lock_) {
        // One that is there was left by an owner that is gone.
        QLocalServer::removeServer(socketPath(*base_));
        server_.listen(socketPath(*base_));
    }
}

bool InstanceSocket::activateOwner(const ActivationTokens& tokens,
                                   const QDeadlineTimer& deadline) const
{
    while (base_ && !deadline.hasExpired()) {
        QLocalSocket socket;
        socket.connectToServer(socketPath(*base_));
        if (socket.waitForConnected(remaining(deadline))) {
            return isAnswered(socket, tokens, deadline);
        }
        std::this_thread::sleep_for(betweenAttempts);
    }
    return false;
}

void InstanceSocket::accept()
{
    while (QLocalSocket* const socket = server_.nextPendingConnection()) {
        socket->setReadBufferSize(longestMessage);
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        QTimer::singleShot(patienceWithMessage, socket, [socket] { socket->abort(); });
        const auto read = [this, socket] {
            const QByteArray message = socket->peek(longestMessage);
            if (message.count('\n') < linesOfMessage || socket->readLine() != greeting) {
                return;
            }
            const QString token = textOf(socket->readLine());
            const QString startupID = textOf(socket->readLine());
            Q_EMIT activated({token, startupID});
            socket->write(answer);
            socket->disconnectFromServer();
        };
        connect(socket, &QLocalSocket::readyRead, socket, read);
        read();
    }
}

}  // namespace gruk
