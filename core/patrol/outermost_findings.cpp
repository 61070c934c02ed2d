#include "core/patrol/outermost_findings.h"

#include <boost/unordered/unordered_flat_set.hpp>
#include <string>
#include <string_view>
#include <utility>

#include "core/patrol/review_rules.h"

namespace gruk::OutermostFindings {

namespace {

/// Places, asked whether a path lies in one. Views into the findings.
using Places = boost::unordered_flat_set<std::string_view>;

bool liesBelow(std::string_view path, const Places& folders)
{
    if (folders.empty()) {
        return false;
    }
    for (std::size_t slash = path.rfind('/'); slash != std::string_view::npos && slash > 0;
         slash = path.rfind('/', slash - 1)) {
        if (folders.contains(path.substr(0, slash))) {
            return true;
        }
    }
    return false;
}

/// Only a folder can hold others.
void addIfFolder(Places& folders, const ReviewFinding& finding)
{
    if (finding.url.namesDirectory()) {
        folders.insert(finding.url.path());
    }
}

/// `folders` may be views into the findings.
std::vector<ReviewFinding> without(std::vector<ReviewFinding> findings, const Places& folders)
{
    std::vector<bool> isBelow;
    isBelow.reserve(findings.size());
    for (const ReviewFinding& finding : findings) {
        isBelow.push_back(liesBelow(finding.url.path(), folders));
    }
    std::size_t kept = 0;
    for (std::size_t i = 0; i < findings.size(); ++i) {
        if (!isBelow[i]) {
            if (kept != i) {
                findings[kept] = std::move(findings[i]);
            }
            ++kept;
        }
    }
    findings.resize(kept);
    return findings;
}

}  // namespace

std::vector<ReviewFinding> among(std::vector<ReviewFinding> findings)
{
    Places folders;
    for (const ReviewFinding& finding : findings) {
        addIfFolder(folders, finding);
    }
    return without(std::move(findings), folders);
}

std::vector<ReviewFinding> outside(std::vector<ReviewFinding> findings,
                                   const std::vector<FileURL>& places)
{
    Places folders;
    for (const FileURL& place : places) {
        folders.insert(place.path());
    }
    return without(std::move(findings), folders);
}

FindingsSelection among(FindingsSelection selection, const std::vector<ReviewFinding>& findings)
{
    Places folders;
    for (const ReviewFinding& finding : findings) {
        if (selection.ids.contains(finding.id)) {
            addIfFolder(folders, finding);
        }
    }
    for (const ReviewFinding& finding : findings) {
        if (liesBelow(finding.url.path(), folders)) {
            selection.ids.erase(finding.id);
        }
    }
    return selection;
}

std::size_t filesWithoutACopyLeft(const std::vector<ReviewFinding>& findings)
{
    Places folders;
    Places items;
    Places duplicates;
    for (const ReviewFinding& finding : findings) {
        addIfFolder(folders, finding);
        items.insert(finding.url.path());
        if (finding.reason == ReviewFinding::Reason::duplicateDownload) {
            duplicates.insert(finding.url.path());
        }
    }
    boost::unordered_flat_set<std::string> originals;
    for (const ReviewFinding& finding : findings) {
        if (finding.reason != ReviewFinding::Reason::duplicateDownload) {
            continue;
        }
        const auto name = originalOfDuplicateName(finding.url.lastPathComponent());
        if (!name) {
            continue;
        }
        std::string original = finding.url.deletingLastPathComponent().appending(*name).path();
        // Of a copy of a copy, the one that the first was made of decides.
        if (!duplicates.contains(original)
            && (items.contains(original) || liesBelow(original, folders))) {
            originals.insert(std::move(original));
        }
    }
    return originals.size();
}

}  // namespace gruk::OutermostFindings
