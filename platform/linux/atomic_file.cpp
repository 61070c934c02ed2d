#include "platform/files/atomic_file.h"

#include <cerrno>
#include <climits>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/descriptor.h"
#include "platform/linux/errno_error.h"
#include "platform/linux/left_overs.h"
#include "platform/linux/persistently.h"

namespace gruk {

namespace {

/// What is gathered before it is written; more in one call gains nothing.
constexpr std::size_t bufferSize = 1'048'576;
/// Smaller pieces are gathered, larger ones written as they come.
constexpr std::size_t copyingPays = 65'536;
/// How much is handed to the disk at once.
constexpr off_t diskPiece = 16'777'216;
constexpr int temporaryNameAttempts = 16;
/// As many as the system follows.
constexpr int linkLimit = 40;

/// The place that is to be replaced: the end of the chain if `target` is a symbolic link, so that
/// what a user has linked elsewhere stays there.
FileURL behindLinks(FileURL target)
{
    for (int i = 0; i < linkLimit; ++i) {
        std::string text(PATH_MAX, '\0');
        const ssize_t length = ::readlink(target.path().c_str(), text.data(), text.size());
        if (length <= 0) {
            return target;
        }
        text.resize(static_cast<std::size_t>(length));
        target =
            text[0] == '/' ? FileURL(text) : target.deletingLastPathComponent().appending(text);
    }
    throwErrno(ELOOP, "replace", target.path());
}

}  // namespace

class AtomicFile::Impl {
public:
    Impl(const FileURL& target, FileCalls calls, TargetLink link)
        : calls_(std::move(calls)),
          target_(link == TargetLink::followed ? behindLinks(target) : target),
          parent_(target_.deletingLastPathComponent())
    {
        makeDirectories(parent_);
        if (!toSynchronize_.empty()) {
            toSynchronize_.push_back(parent_.deletingLastPathComponent());
        }
        removeLeftOvers(parent_.path(), target_.lastPathComponent(), calls_);
        createTemporary();
    }

    ~Impl() { discard(); }

    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    void write(std::string_view bytes)
    {
        if (bytes.size() < copyingPays && buffer_.size() + bytes.size() < bufferSize) {
            buffer_ += bytes;
            return;
        }
        flush();
        if (bytes.size() < copyingPays) {
            buffer_ += bytes;
        } else {
            writeAll(bytes);
        }
    }

    void commit()
    {
        flush();
        require(persistently([this] { return calls_.synchronize(descriptor_); }), "synchronize");
        // The lock must outlive the descriptor: between closing and renaming, another replacement
        // would take the file for a left-over.
        const Descriptor lock(::fcntl(descriptor_, F_DUPFD_CLOEXEC, 0));
        require(closeDescriptor(), "close");
        require(persistently([this] {
                    return calls_.rename(temporary_.path().c_str(), target_.path().c_str());
                }),
                "rename");
        temporary_ = FileURL();
        for (const FileURL& directory : toSynchronize_) {
            persistently([&] { return calls_.synchronizeDirectory(directory.path().c_str()); });
        }
    }

private:
    /// Makes `directory` and what is missing above it, and notes in which directories the ones
    /// above may have appeared.
    void makeDirectories(const FileURL& directory)
    {
        const auto make = [&] {
            return persistently([&] { return calls_.makeDirectory(directory.path().c_str()); });
        };
        int result = make();
        const FileURL above = directory.deletingLastPathComponent();
        if (result == -ENOENT && above != directory) {
            makeDirectories(above);
            toSynchronize_.push_back(above.deletingLastPathComponent());
            result = make();
        }
        if (result < 0) {
            throwErrno(-result, "make directory", directory.path());
        }
    }

    void createTemporary()
    {
        for (int i = 0; i < temporaryNameAttempts; ++i) {
            temporary_ = parent_.appending(temporaryName(target_.lastPathComponent()));
            const int result =
                persistently([this] { return calls_.createExclusive(temporary_.path().c_str()); });
            if (result == -EEXIST) {
                continue;
            }
            if (result < 0) {
                throwErrno(-result, "create", temporary_.path());
            }
            descriptor_ = result;
            if (lockTemporaryFile(descriptor_) == Lock::held) {
                toSynchronize_.push_back(parent_);
                return;
            }
            discard();
        }
        throwErrno(EEXIST, "create", temporary_.path());
    }

    void flush()
    {
        writeAll(buffer_);
        buffer_.clear();
    }

    void writeAll(std::string_view bytes)
    {
        while (!bytes.empty()) {
            const long count =
                persistently([&] { return calls_.write(descriptor_, bytes.data(), bytes.size()); });
            // Nothing written and no reason given would repeat for ever.
            require(count == 0 ? -EIO : count, "write");
            bytes.remove_prefix(static_cast<std::size_t>(count));
            written_ += count;
        }
        startWritingBack();
    }

    /// Lets the disk begin with what has been written, so that it works while more is made, and
    /// the synchronising at the end finds little left to do. A hint: nothing depends on it.
    void startWritingBack()
    {
        if (written_ - handedToDisk_ >= diskPiece) {
            static_cast<void>(::sync_file_range(descriptor_, handedToDisk_,
                                                written_ - handedToDisk_, SYNC_FILE_RANGE_WRITE));
            handedToDisk_ = written_;
        }
    }

    long closeDescriptor()
    {
        const int result = calls_.close(std::exchange(descriptor_, -1));
        // The descriptor is gone even when a signal came between.
        return result == -EINTR ? 0 : result;
    }

    /// Throws, with nothing left behind, when `result` is an error.
    void require(long result, const char* operation)
    {
        if (result < 0) {
            discard();
            throwErrno(static_cast<int>(-result), operation, target_.path());
        }
    }

    /// Closes and removes the temporary file, if there is one.
    void discard() noexcept
    {
        if (descriptor_ >= 0) {
            calls_.close(std::exchange(descriptor_, -1));
        }
        if (const FileURL gone = std::exchange(temporary_, FileURL()); gone != FileURL()) {
            persistently([&] { return calls_.remove(gone.path().c_str()); });
        }
    }

    FileCalls calls_;
    FileURL target_;
    FileURL parent_;
    /// The root while there is no temporary file.
    FileURL temporary_;
    int descriptor_ = -1;
    off_t written_ = 0;
    off_t handedToDisk_ = 0;
    std::string buffer_;
    /// The directories in which names appeared, for these to be made durable.
    std::vector<FileURL> toSynchronize_;
};

AtomicFile::AtomicFile(const FileURL& target, FileCalls calls, TargetLink link)
    : impl_(std::make_unique<Impl>(target, std::move(calls), link))
{
}

AtomicFile::~AtomicFile() = default;

void AtomicFile::write(std::string_view bytes)
{
    impl_->write(bytes);
}

void AtomicFile::commit()
{
    impl_->commit();
}

void replaceFile(const FileURL& target, std::string_view bytes, const FileCalls& calls)
{
    AtomicFile file(target, calls);
    file.write(bytes);
    file.commit();
}

}  // namespace gruk
