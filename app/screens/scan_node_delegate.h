#pragma once

#include <QStyledItemDelegate>

#include "app/screens/scan_node_model.h"
#include "app/theme/theme.h"

namespace gruk {

/// Draws the cells of the table: the name with the icon of its kind, the size with a turning mark
/// while it is being measured, and the rest in quieter ink.
class ScanNodeDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    static constexpr int rowHeight = Measure::buttonHeight + Measure::hair;

    explicit ScanNodeDelegate(Theme& theme, QObject* parent = nullptr);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const override;

    /// How wide a column must be for every text that it may hold; of the names' none is asked.
    [[nodiscard]] int columnWidth(int column) const;

    /// Turns every mark a little further; who shows them paints them again.
    void turnMarks();

private:
    void paintName(QPainter& painter, const QRect& cell, const ScanNode& node) const;
    void paintSize(QPainter& painter, const QRect& cell, const ScanNode& node) const;
    void paintQuietText(QPainter& painter, const QRect& cell, const QString& text) const;
    void paintMark(QPainter& painter, const QRectF& bounds) const;

    Theme& theme_;
    QFont nameFont_;
    QFont sizeFont_;
    QFont quietFont_;
    int step_ = 0;
};

}  // namespace gruk
