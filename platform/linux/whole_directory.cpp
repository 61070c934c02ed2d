#include "platform/files/whole_directory.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <exception>
#include <mutex>
#include <string_view>
#include <system_error>
#include <thread>

#include "platform/linux/attribute_lister.h"
#include "platform/linux/child_description.h"
#include "platform/linux/directory_chain.h"
#include "platform/linux/directory_records.h"

namespace gruk {

namespace {

/// Fewer children are read faster than a thread begins.
constexpr std::size_t childrenWorthAThread = 2'000;
/// More threads than that wait for each other in the kernel.
constexpr std::size_t mostThreads = 4;
/// How many children a thread takes at a time.
constexpr std::size_t portion = 256;

/// The names in a directory, each ended by a NUL.
class Names {
public:
    explicit Names(int directory, const FileURL& url)
    {
        DirectoryRecords().list(
            directory,
            [this](const char* name, std::uint8_t type) {
                begins_.push_back(bytes_.size());
                types_.push_back(type);
                bytes_.append(name).push_back('\0');
            },
            [&] { return url.path(); });
    }

    [[nodiscard]] std::size_t count() const { return begins_.size(); }
    [[nodiscard]] const char* name(std::size_t number) const
    {
        return bytes_.data() + begins_[number];
    }
    [[nodiscard]] std::uint8_t type(std::size_t number) const { return types_[number]; }

private:
    std::string bytes_;
    std::vector<std::size_t> begins_;
    std::vector<std::uint8_t> types_;
};

/// The children of one directory, taken portion by portion by every thread that works.
class Reading {
public:
    Reading(int directory, const Names& names, const std::vector<std::string>& attributeNames,
            const DirectoryVisitor& visitor)
        : directory_(directory), volume_(directory), names_(names), attributeNames_(attributeNames),
          visitor_(visitor)
    {
    }

    /// Works until nothing is left; keeps what is thrown.
    void work() noexcept
    {
        try {
            AttributeLister attributes(attributeNames_, TreeReader::AttributeAccess::best,
                                       directory_);
            if (attributes.isNeeded()) {
                attributes.enter(directory_);
            }
            for (std::size_t first = next_.fetch_add(portion); first < names_.count();
                 first = next_.fetch_add(portion)) {
                const std::size_t last = std::min(first + portion, names_.count());
                for (std::size_t number = first; number < last; ++number) {
                    visit(number, attributes);
                }
            }
        } catch (...) {
            next_ = names_.count();
            const std::lock_guard guard(lock_);
            error_ = std::current_exception();
        }
    }

    /// After the last thread has ended.
    void rethrow() const
    {
        if (error_) {
            std::rethrow_exception(error_);
        }
    }

private:
    void visit(std::size_t number, AttributeLister& attributes) const
    {
        const char* const name = names_.name(number);
        const ListedChild child =
            describedChild(directory_, name, names_.type(number), volume_, attributes);
        const auto value = [&](std::size_t index) { return attributes.read(name, index); };
        visitor_.visit(number, child, value);
    }

    int directory_;
    WalkVolume volume_;
    const Names& names_;
    const std::vector<std::string>& attributeNames_;
    const DirectoryVisitor& visitor_;
    std::atomic<std::size_t> next_ = 0;
    /// Guards `error_`.
    std::mutex lock_;
    std::exception_ptr error_;
};

std::size_t threadsFor(std::size_t children)
{
    const std::size_t processors = std::max(1U, std::thread::hardware_concurrency());
    return std::clamp(children / childrenWorthAThread, std::size_t{1},
                      std::min(processors, mostThreads));
}

}  // namespace

void readWholeDirectory(const FileURL& directory, const std::vector<std::string>& attributeNames,
                        const DirectoryVisitor& visitor)
{
    DirectoryChain chain(directory);
    const int opened = chain.open(0, {});
    const Names names(opened, directory);
    visitor.begin(names.count());
    Reading reading(opened, names, attributeNames, visitor);
    {
        std::vector<std::jthread> others;
        try {
            for (std::size_t i = 1; i < threadsFor(names.count()); ++i) {
                others.emplace_back([&] { reading.work(); });
            }
        } catch (const std::system_error&) {  // NOLINT(bugprone-empty-catch): fewer do it, too
        }
        reading.work();
    }
    reading.rethrow();
}

}  // namespace gruk
