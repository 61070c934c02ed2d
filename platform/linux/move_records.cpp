#include "platform/linux/move_records.h"

#include <algorithm>
#include <cerrno>
#include <memory>
#include <system_error>
#include <utility>

#include <fcntl.h>

#include "platform/foundation/errors.h"
#include "platform/linux/errno_error.h"
#include "platform/linux/guarded_move.h"
#include "platform/linux/guarded_path.h"
#include "platform/linux/persistently.h"
#include "platform/linux/place_facts.h"
#include "platform/linux/small_file.h"
#include "platform/linux/trash_info.h"
#include "platform/linux/volume_top.h"

namespace gruk {

namespace {

/// How many directories are held open before they are made durable in between: a process may have
/// a thousand descriptors, and others need some.
constexpr std::size_t mostNames = 64;

Descriptor another(int directory)
{
    return Descriptor(::fcntl(directory, F_DUPFD_CLOEXEC, 0));
}

std::string infoName(const std::string& name)
{
    return name + std::string(trashInfoSuffix);
}

/// Removes the info file of an item that has left, unless something took its name there meanwhile.
void forget(int files, int info, const std::string& name, const PlaceFacts& written,
            const MoveCalls& calls)
{
    PlaceFacts facts;
    const int result =
        persistently([&] { return calls.facts(files, name.c_str(), LastLink::refused, facts); });
    if (result == -ENOENT) {
        removeSmallFile(info, infoName(name), written, calls);
    }
}

}  // namespace

MoveBatch::MoveBatch(MoveCalls calls) : records_(std::make_unique<Records>(std::move(calls))) {}

MoveBatch::~MoveBatch()
{
    finish();
}

void MoveBatch::stayIn(const FileURL& root, const std::function<bool()>& isMeant)
{
    records_->stayIn(root, isMeant);
}

void MoveBatch::requireRoot() const
{
    records_->requireRoot();
}

void MoveBatch::finish() noexcept
{
    records_->finish();
}

MoveBatch::Records::Records(MoveCalls calls) : calls_(std::move(calls)) {}

void MoveBatch::Records::stayIn(const FileURL& root, const std::function<bool()>& isMeant)
{
    Root known{root, Descriptor(), 0, {}};
    OpenedDirectory opened = openDirectoryAt(root.path(), calls_);
    known.error = opened.error;
    if (opened.error == 0) {
        known.error = -readPlaceFacts(opened.directory.number(), "", known.facts, calls_);
    }
    // Asked when the directory is open: from here on no other one can be taken for it.
    if (known.error == 0 && isMeant && !isMeant()) {
        known.error = ENOENT;
    }
    known.directory = std::move(opened.directory);
    root_ = std::move(known);
}

void MoveBatch::Records::requireRoot() const
{
    constexpr const char* operation = "examine";
    if (root_) {
        const OpenedDirectory opened = openDirectoryAt(root_->place.path(), calls_);
        if (opened.error != 0) {
            throwErrno(opened.error, operation, root_->place.path());
        }
        requireRoot(opened.directory, root_->place, operation);
    }
}

void MoveBatch::Records::requireRoot(const Descriptor& opened, const FileURL& place,
                                     const char* operation) const
{
    if (!root_ || root_->place.path() != place.path()) {
        return;
    }
    PlaceFacts facts;
    const int error =
        root_->error != 0 ? root_->error : -readPlaceFacts(opened.number(), "", facts, calls_);
    if (error != 0) {
        throwErrno(error, operation, place.path());
    }
    const bool isSame = facts.item.inode == root_->facts.item.inode
                        && facts.item.deviceID == root_->facts.item.deviceID
                        && areOnOneMount(facts, root_->facts);
    if (!isSame) {
        throw FileError(std::make_error_code(std::errc::no_such_file_or_directory), operation,
                        place.path(), "another folder stands there now");
    }
}

std::optional<MoveBatch::Records::Key> MoveBatch::Records::keyOf(int directory) const
{
    PlaceFacts facts;
    const int result =
        persistently([&] { return calls_.facts(directory, "", LastLink::refused, facts); });
    return result < 0 ? std::nullopt : std::optional(Key{facts.item.deviceID, facts.item.inode});
}

void MoveBatch::Records::noteNames(int directory)
{
    const std::optional<Key> key = keyOf(directory);
    if (key && std::ranges::find(names_, *key, &Names::key) != names_.end()) {
        return;
    }
    if (names_.size() == mostNames) {
        synchronizeNames();
    }
    Descriptor kept = key ? another(directory) : Descriptor();
    if (kept.isOpen()) {
        names_.push_back({*key, std::move(kept)});
    } else {
        persistently([&] { return calls_.synchronizeDirectory(directory); });
    }
}

MoveBatch::Records::Trash* MoveBatch::Records::trashOf(const OpenTrash& trash)
{
    const std::optional<Key> key = keyOf(trash.info.number());
    if (!key) {
        return nullptr;
    }
    if (const auto found = std::ranges::find(trashes_, *key, &Trash::key);
        found != trashes_.end()) {
        return &*found;
    }
    Trash made;
    made.key = *key;
    made.base = another(trash.base.number());
    made.files = another(trash.files.number());
    made.info = another(trash.info.number());
    if (!made.base.isOpen() || !made.files.isOpen() || !made.info.isOpen()) {
        return nullptr;
    }
    return &trashes_.emplace_back(std::move(made));
}

void MoveBatch::Records::noteItemCame(const OpenTrash& trash, const std::string& name,
                                      std::string infoText)
{
    PlaceFacts facts;
    if (readPlaceFacts(trash.files.number(), name.c_str(), facts, calls_) < 0) {
        return;
    }
    if (Trash* const known = trashOf(trash)) {
        known->came.push_back({name, identityFrom(facts.item), std::move(infoText)});
    }
}

void MoveBatch::Records::noteFolderCame(const OpenTrash& trash, const std::string& name,
                                        std::int64_t written)
{
    // A size that is not noted costs nobody more than a walk of their own.
    if (Trash* const known = trashOf(trash)) {
        known->sizes.push_back({name, written});
    }
}

void MoveBatch::Records::noteItemLeft(const OpenTrash& trash, const std::string& name,
                                      const PlaceFacts& info)
{
    if (Trash* const known = trashOf(trash)) {
        known->left.push_back({name, info});
        known->sizes.push_back({name, std::nullopt});
    } else {
        synchronizeNames();
        forget(trash.files.number(), trash.info.number(), name, info, calls_);
    }
}

void MoveBatch::Records::keepPrepared(const OpenTrash& trash, const std::string& itemPath,
                                      PreparedInfo prepared)
{
    Trash* const known = trashOf(trash);
    if (known == nullptr || known->prepared.contains(itemPath)) {
        removeSmallFile(trash.info.number(), infoName(prepared.name), prepared.written, calls_);
    } else {
        known->prepared.emplace(itemPath, std::move(prepared));
    }
}

std::optional<PreparedInfo> MoveBatch::Records::takePrepared(const OpenTrash& trash,
                                                             const std::string& itemPath,
                                                             const std::string& infoPath)
{
    Trash* const known = trashes_.empty() ? nullptr : trashOf(trash);
    if (known == nullptr) {
        return std::nullopt;
    }
    const auto found = known->prepared.find(itemPath);
    if (found == known->prepared.end() || found->second.infoPath != infoPath) {
        return std::nullopt;
    }
    PreparedInfo prepared = std::move(found->second);
    known->prepared.erase(found);
    return prepared;
}

void MoveBatch::Records::synchronizeNames()
{
    for (const Names& names : names_) {
        persistently([&] { return calls_.synchronizeDirectory(names.directory.number()); });
    }
    names_.clear();
}

/// Writes the info file of an item that came, if it is missing: programs that tidy a Trash up take
/// one away whose item is not there yet. Failures are not told: the item has come all the same.
bool MoveBatch::Records::wroteAnew(const Trash& trash, const CameItem& item) const
{
    PlaceFacts facts;
    const std::string info = infoName(item.name);
    if (readPlaceFacts(trash.info.number(), info.c_str(), facts, calls_) != -ENOENT
        || readPlaceFacts(trash.files.number(), item.name.c_str(), facts, calls_) < 0
        || identityFrom(facts.item) != item.identity) {
        return false;
    }
    try {
        SmallFileInMaking file(trash.info.number(), info, item.infoText, info, calls_);
        file.finish();
    } catch (const FileError&) {
        return false;
    }
    return true;
}

void MoveBatch::Records::tidyUp(Trash& trash)
{
    bool isWritten = false;
    for (const CameItem& item : trash.came) {
        isWritten = wroteAnew(trash, item) || isWritten;
    }
    if (isWritten) {
        persistently([&] { return calls_.synchronizeDirectory(trash.info.number()); });
    }
    for (const auto& [path, prepared] : trash.prepared) {
        removeSmallFile(trash.info.number(), infoName(prepared.name), prepared.written, calls_);
    }
    for (const LeftItem& item : trash.left) {
        forget(trash.files.number(), trash.info.number(), item.name, item.info, calls_);
    }
    noteDirectorySizes(trash.base, trash.files, trash.sizes, calls_);
}

void MoveBatch::Records::finish()
{
    // First, so that an item that went back is surely back when its info file goes.
    synchronizeNames();
    for (Trash& trash : trashes_) {
        tidyUp(trash);
    }
    trashes_.clear();
}

}  // namespace gruk
