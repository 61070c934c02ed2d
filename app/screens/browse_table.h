#pragma once

#include <QBasicTimer>
#include <QTreeView>

#include "app/screens/browse_header.h"
#include "app/screens/scan_node_delegate.h"
#include "app/screens/scan_node_model.h"
#include "app/theme/theme.h"

namespace gruk {

/// The rows of the browsed folder. Says what the user wishes and does nothing about it. Draws only
/// what is in view; the marks of rows that are being measured turn together, while they are seen
/// and unless the desktop asks for reduced motion.
class BrowseTable : public QTreeView {
    Q_OBJECT
    Q_PROPERTY(bool showsFocusItself READ showsFocusItself)

public:
    /// Borrows `model`, which must live longer.
    BrowseTable(Theme& theme, ScanNodeModel& model, QWidget* parent = nullptr);

    [[nodiscard]] BrowseHeader& browseHeader() { return *header_; }

    /// The places of the selected items, in the order of the rows.
    [[nodiscard]] std::vector<FileURL> selectedURLs() const;
    [[nodiscard]] std::optional<FileURL> currentURL() const;
    /// Selects those of `urls` that are displayed, and only those.
    void select(const std::vector<FileURL>& urls, const std::optional<FileURL>& current);
    /// Selects one item and brings it into view.
    void selectAndShow(const FileURL& url);
    /// Scrolls down by that much, as far as there are rows.
    void scrollRowsTo(int value);

    /// Whether one of its rows stands for it when it has the focus.
    [[nodiscard]] bool showsFocusItself() const { return model_.rowCount() > 0; }
    /// Whether the marks turn.
    [[nodiscard]] bool isTurning() const { return timer_.isActive(); }

    void dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                     const QList<int>& roles) override;

Q_SIGNALS:
    /// A row is to be opened: by a double click or Return, a folder's by Right too.
    void opened(int row);
    /// To the folder that was left last; by the pointer's back button.
    void backPressed();
    /// To the folder above: by Backspace or Left.
    void upPressed();
    void menuAsked(const QPoint& globalPosition);

protected:
    void drawRow(QPainter* painter, const QStyleOptionViewItem& options,
                 const QModelIndex& index) const override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

private:
    void dress();
    void paintRowGround(QPainter& painter, const QRect& row, const QStyleOptionViewItem& options,
                        const QModelIndex& index) const;
    /// Tells the marks in view to be painted again; false when there are none.
    bool updateMarks();
    [[nodiscard]] bool openCurrent(bool foldersOnly);

    Theme& theme_;
    ScanNodeModel& model_;
    ScanNodeDelegate* delegate_;
    BrowseHeader* header_;
    QBasicTimer timer_;
};

}  // namespace gruk
