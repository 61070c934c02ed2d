#include "platform/linux/small_file.h"

#include <array>
#include <cerrno>
#include <string_view>
#include <utility>

#include "platform/linux/errno_error.h"
#include "platform/linux/guarded_move.h"
#include "platform/linux/persistently.h"
#include "platform/linux/place_facts.h"

namespace gruk {

namespace {

/// Closes a file that was read with the calls at hand.
class ReadFile {
public:
    ReadFile(int number, const MoveCalls& calls) : number_(number), calls_(calls) {}
    ~ReadFile() { calls_.close(number_); }
    ReadFile(const ReadFile&) = delete;
    ReadFile& operator=(const ReadFile&) = delete;

private:
    int number_;
    const MoveCalls& calls_;
};

int writeAll(int descriptor, std::string_view text, const MoveCalls& calls)
{
    while (!text.empty()) {
        const long count =
            persistently([&] { return calls.write(descriptor, text.data(), text.size()); });
        if (count <= 0) {
            // Nothing written and no reason given would repeat for ever.
            return count == 0 ? -EIO : static_cast<int>(count);
        }
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return 0;
}

}  // namespace

std::optional<SmallFile> readSmallFile(int directory, const std::string& name, std::size_t longest,
                                       const MoveCalls& calls)
{
    const int number = persistently([&] { return calls.openFile(directory, name.c_str()); });
    if (number < 0) {
        return std::nullopt;
    }
    const ReadFile file(number, calls);
    SmallFile result;
    if (readPlaceFacts(number, "", result.facts, calls) < 0
        || result.facts.item.type != ItemType::regularFile) {
        return std::nullopt;
    }
    std::array<char, 4'096> buffer{};
    for (;;) {
        const long count =
            persistently([&] { return calls.read(number, buffer.data(), buffer.size()); });
        if (count == 0) {
            return result;
        }
        if (count < 0 || result.text.size() + static_cast<std::size_t>(count) > longest) {
            return std::nullopt;
        }
        result.text.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

SmallFileInMaking::SmallFileInMaking(int directory, std::string name, std::string_view text,
                                     std::string path, const MoveCalls& calls)
    : directory_(directory), name_(std::move(name)), path_(std::move(path)), calls_(&calls)
{
    constexpr unsigned ownerOnly = 0600;
    number_ =
        persistently([&] { return calls.createExclusive(directory_, name_.c_str(), ownerOnly); });
    if (number_ < 0) {
        throwErrno(-number_, "create", path_);
    }
    learn();
    requireDone(writeAll(number_, text, calls));
    // A hint, whose failure the end tells.
    persistently([&] { return calls.startWriting(number_); });
}

SmallFileInMaking::~SmallFileInMaking()
{
    if (number_ >= 0) {
        close();
        removeSmallFile(directory_, name_, facts_, *calls_);
    }
}

SmallFileInMaking::SmallFileInMaking(SmallFileInMaking&& other) noexcept
    : directory_(other.directory_), name_(std::move(other.name_)), path_(std::move(other.path_)),
      calls_(other.calls_), facts_(other.facts_), number_(std::exchange(other.number_, -1))
{
}

void SmallFileInMaking::finish()
{
    int result = persistently([&] { return calls_->synchronize(number_); });
    const int closed = close();
    result = result < 0 ? result : closed;
    if (result < 0) {
        removeSmallFile(directory_, name_, facts_, *calls_);
        throwErrno(-result, "write", path_);
    }
}

void SmallFileInMaking::learn()
{
    int result = readPlaceFacts(number_, "", facts_, *calls_);
    if (result < 0) {
        // Without its identity it could never be told from another one that takes its place.
        result = readPlaceFacts(directory_, name_.c_str(), facts_, *calls_);
    }
    requireDone(result);
}

int SmallFileInMaking::close()
{
    const int result = calls_->close(std::exchange(number_, -1));
    return result == -EINTR ? 0 : result;
}

/// Of the constructor, whose object is then never destroyed.
void SmallFileInMaking::requireDone(int result)
{
    if (result < 0) {
        close();
        removeSmallFile(directory_, name_, facts_, *calls_);
        throwErrno(-result, "write", path_);
    }
}

void removeSmallFile(int directory, const std::string& name, const PlaceFacts& facts,
                     const MoveCalls& calls)
{
    PlaceFacts now;
    // A number that was freed is soon given to another file; the time of birth tells them apart.
    if (readPlaceFacts(directory, name.c_str(), now, calls) == 0
        && identityFrom(now.item) == identityFrom(facts.item)
        && now.item.created == facts.item.created) {
        persistently([&] { return calls.remove(directory, name.c_str()); });
    }
}

}  // namespace gruk
