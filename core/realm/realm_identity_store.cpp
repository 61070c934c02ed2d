#include "core/realm/realm_identity_store.h"

#include <exception>
#include <string>
#include <utility>

namespace gruk {

namespace {

IdentityOverrides storedOverrides(const FileURL& url)
{
    try {
        return identityOverrides(readFile(url)).value_or(IdentityOverrides{});
    } catch (const std::exception&) {
        // Told to nobody: every realm still has a shield, the derived one.
        return {};
    }
}

}  // namespace

RealmIdentityStore::RealmIdentityStore(const FileURL& directory, FileCalls calls)
    : fileURL_(directory.appending("identities.json")), calls_(std::move(calls)),
      overrides_(storedOverrides(fileURL_))
{
}

RealmIdentity RealmIdentityStore::identity(std::string_view path) const
{
    const auto found = overrides_.find(path);
    return found != overrides_.end() ? found->second : RealmIdentity::derive(path);
}

void RealmIdentityStore::setOverride(const RealmIdentity& identity, std::string_view path)
{
    overrides_.insert_or_assign(std::string(path), identity);
    write();
}

void RealmIdentityStore::clearOverride(std::string_view path)
{
    if (const auto found = overrides_.find(path); found != overrides_.end()) {
        overrides_.erase(found);
    }
    write();
}

void RealmIdentityStore::moveOverride(std::string_view from, std::string_view to)
{
    const auto found = overrides_.find(from);
    if (found == overrides_.end()) {
        return;
    }
    IdentityOverrides moved = overrides_;
    moved.erase(moved.find(from));
    if (const auto there = moved.find(to); there != moved.end()) {
        // Its spelling goes with it.
        moved.erase(there);
    }
    moved.emplace(std::string(to), found->second);
    putBack(moved);
}

void RealmIdentityStore::putBack(const IdentityOverrides& former)
{
    IdentityOverrides current = std::exchange(overrides_, former);
    try {
        write();
    } catch (...) {
        overrides_ = std::move(current);
        throw;
    }
}

void RealmIdentityStore::write() const
{
    replaceFile(fileURL_, identityOverridesJSON(overrides_), calls_);
}

}  // namespace gruk
