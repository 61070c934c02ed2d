#include "platform/linux/small_file.h"

#include <array>
#include <cerrno>
#include <string_view>
#include <utility>

#include "platform/linux/errno_error.h"
#include "platform/linux/guarded_move.h"
#include "platform/linux/persistently.h"

namespace gruk {

namespace {

/// An open file that the calls at hand close.
class OpenFile {
public:
    OpenFile(int number, const MoveCalls& calls) : number_(number), calls_(calls) {}
    ~OpenFile() { static_cast<void>(close()); }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    [[nodiscard]] int number() const { return number_; }

    /// The descriptor is gone even when a signal came between.
    int close()
    {
        const int number = std::exchange(number_, -1);
        const int result = number >= 0 ? calls_.close(number) : 0;
        return result == -EINTR ? 0 : result;
    }

private:
    int number_;
    const MoveCalls& calls_;
};

int describe(int directory, const std::string& name, PlaceFacts& facts, const MoveCalls& calls)
{
    return persistently(
        [&] { return calls.facts(directory, name.c_str(), LastLink::refused, facts); });
}

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

/// Writes, makes durable and closes; 0 or the negative error number.
int finish(OpenFile& file, std::string_view text, const MoveCalls& calls)
{
    int result = writeAll(file.number(), text, calls);
    if (result == 0) {
        result = persistently([&] { return calls.synchronize(file.number()); });
    }
    const int closed = file.close();
    return result < 0 ? result : closed;
}

}  // namespace

std::optional<SmallFile> readSmallFile(int directory, const std::string& name, std::size_t longest,
                                       const MoveCalls& calls)
{
    const int number = persistently([&] { return calls.openFile(directory, name.c_str()); });
    if (number < 0) {
        return std::nullopt;
    }
    const OpenFile file(number, calls);
    SmallFile result;
    if (describe(number, "", result.facts, calls) < 0
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

PlaceFacts makeSmallFile(int directory, const std::string& name, const std::string& text,
                         const std::string& path, const MoveCalls& calls)
{
    constexpr unsigned ownerOnly = 0600;
    const int number =
        persistently([&] { return calls.createExclusive(directory, name.c_str(), ownerOnly); });
    if (number < 0) {
        throwErrno(-number, "create", path);
    }
    OpenFile file(number, calls);
    PlaceFacts facts;
    int result = describe(number, "", facts, calls);
    if (result < 0) {
        // Without its identity it could never be told from another one that takes its place.
        result = describe(directory, name, facts, calls);
    }
    if (result == 0) {
        result = finish(file, text, calls);
    }
    if (result < 0) {
        removeSmallFile(directory, name, facts, calls);
        throwErrno(-result, "write", path);
    }
    return facts;
}

void removeSmallFile(int directory, const std::string& name, const PlaceFacts& facts,
                     const MoveCalls& calls)
{
    PlaceFacts now;
    // A number that was freed is soon given to another file; the time of birth tells them apart.
    if (describe(directory, name, now, calls) == 0
        && identityFrom(now.item) == identityFrom(facts.item)
        && now.item.created == facts.item.created) {
        persistently([&] { return calls.remove(directory, name.c_str()); });
    }
}

}  // namespace gruk
