#include "app/screens/patrol_text.h"

#include <cmath>

#include <QDateTime>
#include <QLocale>

#include "app/theme/text.h"
#include "core/patrol/byte_format.h"

namespace gruk::PatrolText {

namespace {

constexpr std::int64_t longUntouchedDays = 90;
constexpr std::int64_t daysAMonth = 30;

QString signedText(Bytes bytes)
{
    return QString::fromStdString(ByteFormat::signedString(bytes));
}

QString count(const std::optional<PatrolProgress>& progress)
{
    return groupedNumber(progress ? progress->pathsScanned : 0);
}

}  // namespace

QString lastPatrolled(const ScanSnapshot* latest)
{
    if (latest == nullptr) {
        return QStringLiteral("No baseline yet");
    }
    const auto seconds = static_cast<qint64>(std::floor(latest->capturedAt.secondsSince1970));
    // The words around it are English, so the month is too.
    const QLocale english(QLocale::English, QLocale::UnitedKingdom);
    return QStringLiteral("Last patrolled %1")
        .arg(english.toString(QDateTime::fromSecsSinceEpoch(seconds),
                              QStringLiteral("d MMMM yyyy 'at' HH:mm")));
}

QString loadingHistory()
{
    return QStringLiteral("Loading…");
}

QString progress(const std::optional<PatrolProgress>& progress)
{
    const QString line = QStringLiteral("%1 paths checked so far").arg(count(progress));
    if (!progress || progress->currentFolderPath.empty()) {
        return line;
    }
    return line + QStringLiteral(" · ") + displayName(progress->currentFolderPath);
}

QString otherRealm(std::string_view name, const std::optional<PatrolProgress>& progress)
{
    return QStringLiteral("The Gruk is off patrolling %1 — %2 paths so far.")
        .arg(displayName(name), count(progress));
}

QString otherRealmNote(std::string_view name)
{
    return QStringLiteral("One patrol at a time — the Gruk finishes %1 first.")
        .arg(displayName(name));
}

QString unseenReason(ScanIssue::Reason reason)
{
    switch (reason) {
    case ScanIssue::Reason::permissionDenied:
        return QStringLiteral("No permission to look inside");
    case ScanIssue::Reason::unreadable:
        return QStringLiteral("Could not be read");
    case ScanIssue::Reason::disappeared:
        return QStringLiteral("Gone before the Gruk got there");
    case ScanIssue::Reason::differentFilesystem:
        return QStringLiteral("On another disk");
    }
    return {};
}

QString unseenRealm()
{
    return QStringLiteral("On another disk, a realm of its own");
}

QString reasonLabel(ReviewFinding::Reason reason)
{
    switch (reason) {
    case ReviewFinding::Reason::rapidGrowth:
        return QStringLiteral("Grew quickly");
    case ReviewFinding::Reason::duplicateDownload:
        return QStringLiteral("Likely duplicate");
    case ReviewFinding::Reason::oldInstaller:
        return QStringLiteral("Old installer");
    case ReviewFinding::Reason::regenerableCache:
        return QStringLiteral("Known cache");
    }
    return {};
}

QString heavyNote(const HeavyItem& item, bool hasPreviousSnapshot)
{
    const Bytes change = item.byteDeltaSincePrevious.value_or(0);
    if (change > 0) {
        return QStringLiteral("grew %1 since last patrol").arg(signedText(change));
    }
    if (change < 0) {
        return QStringLiteral("shrank %1 since last patrol").arg(signedText(change));
    }
    if (item.isNew) {
        return QStringLiteral("new since last patrol");
    }
    if (item.daysUntouched && *item.daysUntouched >= longUntouchedDays) {
        return QStringLiteral("untouched for %1 months").arg(*item.daysUntouched / daysAMonth);
    }
    return hasPreviousSnapshot && item.byteDeltaSincePrevious
               ? QStringLiteral("no change since last patrol")
               : QStringLiteral("first look — no comparison yet");
}

QString heavyIntroduction(Bytes total)
{
    return QStringLiteral("Findings need evidence to make this list. These are just your %1 "
                          "biggest items, and what's changed about them since the last patrol.")
        .arg(bytesText(total));
}

}  // namespace gruk::PatrolText
