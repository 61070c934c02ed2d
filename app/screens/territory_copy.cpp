#include "app/screens/territory_copy.h"

#include "app/theme/text.h"

namespace gruk::TerritoryCopy {

namespace {

QString counted(std::size_t number)
{
    return groupedNumber(static_cast<qint64>(number));
}

}  // namespace

QString size(const RealmSummary& realm)
{
    return bytesText(realm.totalBytes);
}

QString nameAndSize(const RealmSummary& realm)
{
    return displayName(realm.displayName) + QStringLiteral(", ") + size(realm);
}

QString mappedAndFindings(const RealmSummary& realm)
{
    const QString findings = realm.findingsCount == 1
                                 ? QStringLiteral("1 finding")
                                 : counted(realm.findingsCount) + QStringLiteral(" findings");
    return QStringLiteral("%1 mapped, %2").arg(size(realm), findings);
}

Figure mapped(const std::vector<RealmSummary>& realms)
{
    Bytes total = 0;
    for (const RealmSummary& realm : realms) {
        total = checkedAdd(total, realm.totalBytes);
    }
    return {bytesText(total), QStringLiteral("allocated across every realm")};
}

Figure toReview(const std::vector<RealmSummary>& realms)
{
    std::size_t findings = 0;
    for (const RealmSummary& realm : realms) {
        findings += realm.findingsCount;
    }
    return {counted(findings), QStringLiteral("evidence-backed findings")};
}

Figure status(std::size_t overdue)
{
    if (overdue == 0) {
        return {QStringLiteral("All caught up"),
                QStringLiteral("every realm is within its cadence")};
    }
    return {counted(overdue) + QStringLiteral(" realms overdue"),
            QStringLiteral("past their patrol cadence")};
}

}  // namespace gruk::TerritoryCopy
