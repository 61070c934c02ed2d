#pragma once

#include <chrono>
#include <optional>

#include <QAbstractTableModel>
#include <QElapsedTimer>
#include <QTimer>

#include "core/browse/scan_session.h"

namespace gruk {

/// The browsed folder as a table: one row a displayed node, in the order of the session, which
/// decides both. Borrows the session, which must live longer. Main thread only.
///
/// Another folder or arrangement shows at once. Sizes that arrive show a little later, many of them
/// together, and never take more than a small part of the main thread's time, however many rows
/// have to be put in order for them.
class ScanNodeModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { nameColumn, sizeColumn, kindColumn, lastOpenedColumn };
    static constexpr int columns = 4;

    explicit ScanNodeModel(ScanSession& session, QObject* parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

    /// A row's node; stays valid until the model changes.
    [[nodiscard]] const ScanNode& node(int row) const;
    /// Where the item at that place stands; none when it is not displayed.
    [[nodiscard]] std::optional<int> rowOf(const FileURL& url) const;
    /// The rows of those of `urls` that are displayed, from the top.
    [[nodiscard]] std::vector<int> rowsOf(const std::vector<FileURL>& urls) const;

    /// Whether something arrived that does not show yet.
    [[nodiscard]] bool isBehind() const { return timer_.isActive(); }
    /// Shows what has arrived now.
    void catchUp();

Q_SIGNALS:
    /// The sizes of the folder's children, shown or not, may be others now.
    void sizesChanged();

private:
    void follow(ScanSession::Change change);
    void show();
    void catchUpSoon();
    void rearrange(const ScanSession::Rows& rows);
    [[nodiscard]] QVariant shownText(const ScanNode& node, int column) const;
    [[nodiscard]] QVariant spokenText(const ScanNode& node, int column) const;

    ScanSession& session_;
    /// Keeps what `rows_` borrows until other rows show.
    ScanSession::Nodes listing_;
    ScanSession::Rows rows_;
    /// The filter that `rows_` came through.
    std::string filterText_;
    QTimer timer_;
    QElapsedTimer sinceCaughtUp_;
    std::chrono::milliseconds pause_;
    Subscription subscription_;
};

}  // namespace gruk
