#pragma once

#include <vector>

#include <QString>

#include "core/realm/realm_summary.h"

/// The words of the territories' page that depend on the realms.
namespace gruk::TerritoryCopy {

/// A realm's total.
[[nodiscard]] QString size(const RealmSummary& realm);

/// "{realm}, {size}": what a territory is called.
[[nodiscard]] QString nameAndSize(const RealmSummary& realm);

/// "{size} mapped, {n} findings".
[[nodiscard]] QString mappedAndFindings(const RealmSummary& realm);

/// One figure of the page: the value and what it counts.
struct Figure {
    QString value;
    QString detail;
};

/// All totals together. A sum beyond 64 bits is a programming error.
[[nodiscard]] Figure mapped(const std::vector<RealmSummary>& realms);
[[nodiscard]] Figure toReview(const std::vector<RealmSummary>& realms);
/// `overdue` is how many realms are.
[[nodiscard]] Figure status(std::size_t overdue);

}  // namespace gruk::TerritoryCopy
