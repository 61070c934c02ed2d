#include "app/screens/scan_node_text.h"

#include <cmath>

#include <QDateTime>
#include <QLocale>

#include "app/theme/text.h"

namespace gruk::ScanNodeText {

namespace {

/// A date of medium length, without the time. The words around it are English, so the month is too.
QString mediumDate(Date date)
{
    static const QLocale english(QLocale::English, QLocale::UnitedKingdom);
    const auto seconds = static_cast<qint64>(std::floor(date.secondsSince1970));
    return english.toString(QDateTime::fromSecsSinceEpoch(seconds).date(),
                            QStringLiteral("d MMM yyyy"));
}

/// What was found of something before the walk over it failed; empty for nothing.
QString leastText(Bytes bytes)
{
    return bytes > 0 ? QStringLiteral("at least %1").arg(bytesText(bytes)) : QString();
}

QString leastOrDash(Bytes bytes)
{
    const QString least = leastText(bytes);
    return least.isEmpty() ? QStringLiteral("–") : least;
}

}  // namespace

QString size(const ScanNode& node)
{
    if (node.hasFailed()) {
        return leastOrDash(node.displaySize());
    }
    const auto known = node.knownSize();
    return known ? bytesText(*known) : QString();
}

QString spokenSize(const ScanNode& node)
{
    if (node.hasFailed()) {
        const QString least = leastText(node.displaySize());
        return least.isEmpty() ? QStringLiteral("Unknown size") : least;
    }
    const auto known = node.knownSize();
    if (node.isComputing()) {
        if (const auto former = node.formerSize()) {
            return QStringLiteral("%1 when last measured").arg(bytesText(*former));
        }
        return known ? QStringLiteral("%1 so far").arg(bytesText(*known))
                     : QStringLiteral("Being measured");
    }
    return bytesText(node.displaySize());
}

QString lastOpened(const FileEntry& entry)
{
    return entry.dateLastOpened ? mediumDate(*entry.dateLastOpened)
                                : QStringLiteral("Not available");
}

QString restrictedNote(const ScanNode& node)
{
    const std::int64_t count = node.aggregate() ? node.aggregate()->restrictedCount : 0;
    if (count == 0) {
        return {};
    }
    return count == 1 ? QStringLiteral("One folder here is closed to the Gruk.")
                      : QStringLiteral("%1 folders here are closed to the Gruk.")
                            .arg(groupedNumber(count));
}

FolderSums sums(const ScanSession::Nodes& nodes)
{
    FolderSums sums;
    sums.items = static_cast<std::int64_t>(nodes.size());
    for (const auto& node : nodes) {
        sums.bytes = checkedAdd(sums.bytes, node->displaySize());
        if (node->aggregate()) {
            sums.restricted = checkedAdd(sums.restricted, node->aggregate()->restrictedCount);
        }
        sums.areGrowing = sums.areGrowing || node->isComputing();
        sums.areIncomplete = sums.areIncomplete || node->hasFailed();
    }
    return sums;
}

QString footer(const FolderSums& sums)
{
    return QStringLiteral("%1 items · %2 scanned · %3 restricted")
        .arg(groupedNumber(sums.items),
             sums.areIncomplete ? leastOrDash(sums.bytes) : bytesText(sums.bytes),
             groupedNumber(sums.restricted));
}

}  // namespace gruk::ScanNodeText
