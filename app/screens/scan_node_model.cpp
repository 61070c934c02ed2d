#include "app/screens/scan_node_model.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "app/screens/file_kind_copy.h"
#include "app/screens/scan_node_text.h"
#include "app/theme/text.h"
#include "platform/foundation/require.h"

namespace gruk {

namespace {

using namespace std::chrono_literals;

/// Sizes move faster than anybody reads them.
constexpr auto shortestPause = 100ms;
/// Of the main thread's time, one part in so many goes into catching up.
constexpr int partOfTime = 20;

/// Where the nodes of `indexes` stand in `now`, in the order of `indexes`.
QModelIndexList placesOf(const QModelIndexList& indexes, const ScanSession::Rows& before,
                         const ScanSession::Rows& now, const ScanNodeModel& model)
{
    std::unordered_map<const ScanNode*, int> rows;
    for (const QModelIndex& index : indexes) {
        rows.emplace(before[static_cast<std::size_t>(index.row())], -1);
    }
    std::size_t missing = rows.size();
    for (std::size_t row = 0; row < now.size() && missing > 0; ++row) {
        if (const auto found = rows.find(now[row]); found != rows.end()) {
            found->second = static_cast<int>(row);
            --missing;
        }
    }
    QModelIndexList places;
    for (const QModelIndex& index : indexes) {
        const int row = rows[before[static_cast<std::size_t>(index.row())]];
        places.append(row < 0 ? QModelIndex() : model.index(row, index.column()));
    }
    return places;
}

}  // namespace

ScanNodeModel::ScanNodeModel(ScanSession& session, QObject* parent)
    : QAbstractTableModel(parent), session_(session), listing_(session.nodes()),
      rows_(session.displayedNodes()), filterText_(session.filterText()), pause_(shortestPause),
      subscription_(session.subscribe([this](ScanSession::Change change) { follow(change); }))
{
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, &ScanNodeModel::catchUp);
    sinceCaughtUp_.start();
}

int ScanNodeModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int ScanNodeModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : columns;
}

const ScanNode& ScanNodeModel::node(int row) const
{
    GRUK_REQUIRE(row >= 0 && row < rowCount(), "no such row");
    return *rows_[static_cast<std::size_t>(row)];
}

std::optional<int> ScanNodeModel::rowOf(const FileURL& url) const
{
    const auto found = std::find_if(rows_.begin(), rows_.end(), [&](const auto& node) {
        return node->id().path() == url.path();
    });
    return found == rows_.end() ? std::nullopt
                                : std::optional(static_cast<int>(found - rows_.begin()));
}

std::vector<int> ScanNodeModel::rowsOf(const std::vector<FileURL>& urls) const
{
    std::vector<int> rows;
    if (urls.empty()) {
        return rows;
    }
    std::unordered_set<std::string_view> paths;
    for (const FileURL& url : urls) {
        paths.insert(url.path());
    }
    for (int row = 0; row < rowCount(); ++row) {
        if (paths.contains(node(row).id().path())) {
            rows.push_back(row);
        }
    }
    return rows;
}

QVariant ScanNodeModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const ScanNode& node = this->node(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return shownText(node, index.column());
    case Qt::AccessibleTextRole:
        return spokenText(node, index.column());
    case Qt::ToolTipRole: {
        const QString note = index.column() == sizeColumn   ? ScanNodeText::restrictedNote(node)
                             : index.column() == nameColumn ? displayName(node.entry().name())
                                                            : QString();
        return note.isEmpty() ? QVariant() : toolTipText(note);
    }
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(
            Qt::AlignVCenter | (index.column() == sizeColumn ? Qt::AlignRight : Qt::AlignLeft));
    default:
        return {};
    }
}

QVariant ScanNodeModel::shownText(const ScanNode& node, int column) const
{
    switch (column) {
    case sizeColumn:
        return ScanNodeText::size(node);
    case kindColumn:
        return nameOf(node.entry().kind);
    case lastOpenedColumn:
        return ScanNodeText::lastOpened(node.entry());
    default:
        return displayName(node.entry().name());
    }
}

QVariant ScanNodeModel::spokenText(const ScanNode& node, int column) const
{
    return column == sizeColumn ? ScanNodeText::spokenSize(node) : shownText(node, column);
}

QVariant ScanNodeModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal
        || (role != Qt::DisplayRole && role != Qt::AccessibleTextRole)) {
        return {};
    }
    switch (section) {
    case nameColumn:
        return QStringLiteral("Name");
    case sizeColumn:
        return QStringLiteral("Size");
    case kindColumn:
        return QStringLiteral("Kind");
    case lastOpenedColumn:
        return QStringLiteral("Last Opened");
    default:
        return {};
    }
}

Qt::ItemFlags ScanNodeModel::flags(const QModelIndex& index) const
{
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren
                           : Qt::NoItemFlags;
}

void ScanNodeModel::follow(ScanSession::Change change)
{
    switch (change) {
    case ScanSession::Change::node:
        catchUpSoon();
        return;
    case ScanSession::Change::arrangement:
        if (session_.filterText() == filterText_) {
            catchUp();
            return;
        }
        break;
    case ScanSession::Change::folder:
        break;
    }
    show();
}

void ScanNodeModel::show()
{
    timer_.stop();
    beginResetModel();
    rows_ = session_.displayedNodes();
    listing_ = session_.nodes();
    filterText_ = session_.filterText();
    endResetModel();
    Q_EMIT sizesChanged();
}

void ScanNodeModel::catchUpSoon()
{
    if (!timer_.isActive()) {
        const std::chrono::milliseconds passed(sinceCaughtUp_.elapsed());
        timer_.start(std::max(0ms, pause_ - passed));
    }
}

void ScanNodeModel::catchUp()
{
    timer_.stop();
    QElapsedTimer cost;
    cost.start();
    const ScanSession::Rows& rows = session_.displayedNodes();
    if (rows != rows_) {
        rearrange(rows);
    } else if (!rows_.empty()) {
        Q_EMIT dataChanged(index(0, sizeColumn), index(rowCount() - 1, sizeColumn));
    }
    Q_EMIT sizesChanged();
    pause_ = std::max<std::chrono::milliseconds>(
        shortestPause, std::chrono::milliseconds(cost.elapsed()) * partOfTime);
    sinceCaughtUp_.start();
}

void ScanNodeModel::rearrange(const ScanSession::Rows& rows)
{
    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList held = persistentIndexList();
    const QModelIndexList moved = placesOf(held, rows_, rows, *this);
    rows_ = rows;
    changePersistentIndexList(held, moved);
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

}  // namespace gruk
