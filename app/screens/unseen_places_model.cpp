#include "app/screens/unseen_places_model.h"

#include <utility>

#include "app/screens/patrol_text.h"
#include "app/theme/text.h"

namespace gruk {

UnseenPlacesModel::UnseenPlacesModel(AppModel& model, QObject* parent)
    : QAbstractListModel(parent), model_(model)
{
    showGrants();
    showSnapshot();
}

UnseenPlacesModel::~UnseenPlacesModel()
{
    model_.discard(std::move(snapshot_));
}

void UnseenPlacesModel::showSnapshot()
{
    const AppModel::Snapshot& latest = model_.latestSnapshot();
    AppModel::Snapshot next = latest && !latest->issues.empty() ? latest : nullptr;
    if (next == snapshot_) {
        return;
    }
    beginResetModel();
    AppModel::Snapshot former = std::exchange(snapshot_, std::move(next));
    endResetModel();
    model_.discard(std::move(former));
}

void UnseenPlacesModel::showGrants()
{
    granted_.clear();
    for (const Grant& grant : model_.grants()) {
        granted_.insert(FileURL(grant.path).standardized().path());
    }
    if (snapshot_) {
        Q_EMIT dataChanged(index(0), index(rowCount() - 1));
    }
}

FileURL UnseenPlacesModel::place(int row) const
{
    return FileURL::directory(snapshot_->rootPath)
        .appending(issue(row).relativePath, FileURL::Names::directory);
}

const ScanIssue& UnseenPlacesModel::issue(int row) const
{
    return snapshot_->issues[static_cast<std::size_t>(row)];
}

bool UnseenPlacesModel::isRealm(int row) const
{
    return issue(row).reason == ScanIssue::Reason::differentFilesystem
           && granted_.contains(place(row).path());
}

bool UnseenPlacesModel::offersGrant(int row) const
{
    return issue(row).reason == ScanIssue::Reason::differentFilesystem && !isRealm(row);
}

int UnseenPlacesModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() || !snapshot_ ? 0 : static_cast<int>(snapshot_->issues.size());
}

QVariant UnseenPlacesModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    const QString path = displayName(issue(index.row()).relativePath);
    const QString reason = PatrolText::unseenReason(issue(index.row()).reason);
    switch (role) {
    case Qt::DisplayRole:
        return path;
    case Qt::ToolTipRole:
        return toolTipText(path);
    case reasonRole:
        return isRealm(index.row()) ? PatrolText::unseenRealm() : reason;
    case offersGrantRole:
        return offersGrant(index.row());
    case Qt::AccessibleTextRole:
        return QStringLiteral("%1, %2").arg(path, data(index, reasonRole).toString());
    case Qt::AccessibleDescriptionRole:
        return offersGrant(index.row()) ? QStringLiteral("Enter grants it as its own realm")
                                        : QString();
    default:
        return {};
    }
}

}  // namespace gruk
