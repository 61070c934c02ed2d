#include "core/actions/grant_store.h"

#include <algorithm>
#include <boost/json.hpp>
#include <optional>
#include <utility>

#include "core/actions/json_fields.h"
#include "platform/files/atomic_file.h"
#include "platform/foundation/base64.h"
#include "platform/foundation/errors.h"
#include "platform/foundation/json_path.h"
#include "platform/settings/bookmarks.h"

namespace gruk {

namespace {

namespace json = boost::json;

std::optional<Grant> decodedGrant(const json::value& value)
{
    const json::object* const object = value.if_object();
    if (object == nullptr) {
        return std::nullopt;
    }
    const auto idText = jsonTextField(*object, "id");
    const auto pathText = jsonTextField(*object, "path");
    const auto bookmarkText = jsonTextField(*object, "bookmark");
    const auto dateGranted = jsonDateField(*object, "dateGranted");
    if (!idText || !pathText || !bookmarkText || !dateGranted) {
        return std::nullopt;
    }
    const auto id = UUID::parse(*idText);
    auto path = pathFromJSONText(*pathText);
    auto bookmark = base64Decoded(*bookmarkText);
    if (!id || !path || !bookmark) {
        return std::nullopt;
    }
    return Grant{*id, *std::move(path), *std::move(bookmark), *dateGranted};
}

/// The grants of a whole file; one that is not right makes all of it wrong.
std::vector<Grant> decodedGrants(std::string_view bytes)
{
    const std::optional<json::value> root = jsonValue(bytes);
    const json::array* const array = root ? root->if_array() : nullptr;
    if (array == nullptr) {
        return {};
    }
    std::vector<Grant> grants;
    for (const json::value& value : *array) {
        std::optional<Grant> grant = decodedGrant(value);
        if (!grant) {
            return {};
        }
        grants.push_back(*std::move(grant));
    }
    return grants;
}

std::string encoded(const std::vector<Grant>& grants)
{
    json::array array;
    for (const Grant& grant : grants) {
        array.push_back(json::object{{"id", grant.id.text()},
                                     {"path", jsonPathText(grant.path)},
                                     {"bookmark", base64Encoded(grant.bookmark)},
                                     {"dateGranted", grant.dateGranted.secondsSince2001()}});
    }
    return compactJSON(array);
}

std::vector<Grant> storedGrants(const FileURL& url)
{
    try {
        return decodedGrants(readFile(url));
    } catch (const std::exception&) {
        return {};
    }
}

bool leadsTo(const FileURL& place, const std::function<FileURL(std::string_view)>& resolve,
             const std::string& bookmark)
{
    try {
        return resolve(bookmark) == place;
    } catch (const std::exception&) {
        return false;
    }
}

std::string standardizedPath(const FileURL& url)
{
    return url.standardized().path();
}

}  // namespace

BookmarkCalls BookmarkCalls::live()
{
    return {makeBookmark, resolveBookmark, gruk::startAccessing, gruk::stopAccessing,
            renewBookmark};
}

GrantStore::GrantStore(FileURL storageURL, BookmarkCalls calls, FileCalls files)
    : storageURL_(std::move(storageURL)), calls_(std::move(calls)), files_(std::move(files)),
      storedGrants_(gruk::storedGrants(storageURL_))
{
}

Grant GrantStore::addGrant(const FileURL& url)
{
    const std::string place = standardizedPath(url);
    const auto known =
        std::find_if(storedGrants_.begin(), storedGrants_.end(), [&](const Grant& grant) {
            return standardizedPath(FileURL(grant.path)) == place;
        });
    if (known != storedGrants_.end()) {
        return *known;
    }
    return appendGrant({UUID::random(), url.path(), calls_.make(url), atMicrosecond(Date::now())});
}

Grant GrantStore::replaceGrant(const UUID& former, const FileURL& url)
{
    Grant grant{UUID::random(), url.path(), calls_.make(url), atMicrosecond(Date::now())};
    // One save, so that no end of the program comes between the old and the new.
    std::erase_if(storedGrants_, [&](const Grant& stored) { return stored.id == former; });
    return appendGrant(std::move(grant));
}

void GrantStore::removeGrant(const UUID& id)
{
    std::erase_if(storedGrants_, [&](const Grant& grant) { return grant.id == id; });
    try {
        save();
    } catch (const std::exception&) {
        // Told to nobody: the grant comes back at the next start, where it can be removed again.
    }
}

std::shared_ptr<ScopedAccess> GrantStore::startAccess(const FileURL& url) const
{
    const Grant* const grant = bestGrant(url.path());
    if (grant == nullptr) {
        return nullptr;
    }
    try {
        const FileURL resolved = calls_.resolve(grant->bookmark);
        return std::make_shared<ScopedAccess>(
            resolved, calls_.startAccessing(resolved), calls_.stopAccessing,
            [resolved, resolve = calls_.resolve, bookmark = grant->bookmark] {
                return leadsTo(resolved, resolve, bookmark);
            });
    } catch (const std::exception&) {
        return nullptr;
    }
}

Grant GrantStore::refreshGrant(const Grant& grant)
{
    const FileURL resolved = calls_.resolve(grant.bookmark);
    const ScopedAccess access(resolved, calls_.startAccessing(resolved), calls_.stopAccessing);
    Grant renewed = grant;
    renewed.bookmark =
        calls_.renew ? calls_.renew(grant.bookmark, resolved) : calls_.make(resolved);
    const auto known =
        std::find_if(storedGrants_.begin(), storedGrants_.end(),
                     [&](const Grant& candidate) { return candidate.id == grant.id; });
    if (known != storedGrants_.end()) {
        *known = renewed;
    } else {
        storedGrants_.push_back(renewed);
    }
    save();
    return renewed;
}

std::optional<FileURL> GrantStore::whereabouts(const Grant& grant) const
{
    try {
        return calls_.resolve(grant.bookmark);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

std::string GrantStore::bookmarkAt(const Grant& grant, const FileURL& place) const
{
    if (calls_.renew) {
        return calls_.renew(grant.bookmark, place);
    }
    if (standardizedPath(calls_.resolve(grant.bookmark)) != standardizedPath(place)) {
        throw FileError(std::make_error_code(std::errc::no_such_file_or_directory), "resolve",
                        place.path());
    }
    return calls_.make(place);
}

void GrantStore::moveGrant(const UUID& id, const FileURL& place, const std::string& bookmark)
{
    std::vector<Grant> grants = storedGrants_;
    const auto moved = std::ranges::find(grants, id, &Grant::id);
    if (moved == grants.end()) {
        return;
    }
    moved->path = place.path();
    moved->bookmark = bookmark;
    std::erase_if(grants, [&](const Grant& other) {
        return other.id != id && standardizedPath(FileURL(other.path)) == standardizedPath(place);
    });
    putBack(grants);
}

void GrantStore::putBack(const std::vector<Grant>& former)
{
    std::vector<Grant> current = std::exchange(storedGrants_, former);
    try {
        save();
    } catch (...) {
        storedGrants_ = std::move(current);
        throw;
    }
}

Grant GrantStore::appendGrant(Grant grant)
{
    storedGrants_.push_back(grant);
    save();
    return grant;
}

const Grant* GrantStore::bestGrant(std::string_view path) const
{
    const Grant* best = nullptr;
    for (const Grant& grant : storedGrants_) {
        std::string_view base = grant.path;
        if (base.ends_with('/')) {
            base.remove_suffix(1);
        }
        const bool covers =
            path.starts_with(base) && (path.size() == base.size() || path[base.size()] == '/');
        if (covers && (best == nullptr || grant.path.size() > best->path.size())) {
            best = &grant;
        }
    }
    return best;
}

void GrantStore::save() const
{
    replaceFile(storageURL_, encoded(storedGrants_), files_);
}

}  // namespace gruk
