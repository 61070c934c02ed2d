#include "app/screens/scan_node_delegate.h"

#include <algorithm>

#include <QPainter>

#include "app/screens/file_kind_copy.h"
#include "app/screens/scan_node_text.h"
#include "app/theme/drawing.h"
#include "app/theme/icons.h"
#include "app/theme/text.h"
#include "app/theme/work_mark.h"

namespace gruk {

namespace {

constexpr double markWidth = 1.75;
constexpr int markSize = Measure::medium;

int widestKind(const QFontMetrics& metrics)
{
    int widest = 0;
    for (const FileKind kind : allFileKinds) {
        widest = std::max(widest, metrics.horizontalAdvance(nameOf(kind)));
    }
    return widest;
}

}  // namespace

ScanNodeDelegate::ScanNodeDelegate(Theme& theme, QObject* parent)
    : QStyledItemDelegate(parent), theme_(theme), nameFont_(theme.font(TextStyle::bodyStrong)),
      sizeFont_(theme.font(TextStyle::body)), quietFont_(theme.font(TextStyle::detail))
{
}

QSize ScanNodeDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex& index) const
{
    return {columnWidth(index.column()), rowHeight};
}

int ScanNodeDelegate::columnWidth(int column) const
{
    const QFontMetrics quiet(quietFont_);
    const int margins = 2 * Measure::medium;
    switch (column) {
    case ScanNodeModel::sizeColumn:
        return QFontMetrics(sizeFont_).horizontalAdvance(QStringLiteral("at least 8888.88 GB"))
               + markSize + Measure::small + margins;
    case ScanNodeModel::kindColumn:
        return widestKind(quiet) + margins;
    case ScanNodeModel::lastOpenedColumn:
        return std::max(quiet.horizontalAdvance(QStringLiteral("Not available")),
                        quiet.horizontalAdvance(QStringLiteral("28 Sept 2028")))
               + margins;
    default:
        return 0;
    }
}

void ScanNodeDelegate::turnMarks()
{
    step_ = (step_ + 1) % workMarkSteps;
}

void ScanNodeDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const
{
    const auto* model = qobject_cast<const ScanNodeModel*>(index.model());
    const ScanNode& node = model->node(index.row());
    const QRect cell = option.rect.adjusted(Measure::medium, 0, -Measure::medium, 0);
    switch (index.column()) {
    case ScanNodeModel::nameColumn:
        paintName(*painter, cell, node);
        break;
    case ScanNodeModel::sizeColumn:
        paintSize(*painter, cell, node);
        break;
    case ScanNodeModel::kindColumn:
        paintQuietText(*painter, cell, nameOf(node.entry().kind));
        break;
    default:
        paintQuietText(*painter, cell, ScanNodeText::lastOpened(node.entry()));
        break;
    }
}

void ScanNodeDelegate::paintName(QPainter& painter, const QRect& cell, const ScanNode& node) const
{
    const int size = Measure::iconSize;
    const QColor colour = node.entry().isDirectory ? theme_.colour(Role::accent)
                                                   : theme_.colour(Role::ink, Strength::quiet);
    drawIcon(painter, QPointF(cell.left(), cell.center().y() - size / 2.0 + 1),
             iconFor(node.entry().kind), colour, size);
    painter.setFont(nameFont_);
    painter.setPen(theme_.colour(Role::ink));
    const QRect words = cell.adjusted(size + Measure::small, 0, 0, 0);
    drawLine(painter, words,
             QFontMetrics(nameFont_).elidedText(displayName(node.entry().name()), Qt::ElideMiddle,
                                                words.width()));
}

void ScanNodeDelegate::paintSize(QPainter& painter, const QRect& cell, const ScanNode& node) const
{
    const QString text = ScanNodeText::size(node);
    const bool isFinal = !node.isComputing();
    painter.setFont(sizeFont_);
    painter.setPen(theme_.colour(Role::ink, isFinal ? Strength::full : Strength::quiet));
    painter.drawText(cell, Qt::AlignVCenter | Qt::AlignRight | Qt::TextSingleLine, text);
    // What stands before the number has a place of its own, so that no number ever moves.
    const int words =
        text.isEmpty() ? 0 : QFontMetrics(sizeFont_).horizontalAdvance(text) + Measure::small;
    const QRectF before(cell.right() + 1 - words - markSize, cell.center().y() - markSize / 2.0 + 1,
                        markSize, markSize);
    if (!isFinal) {
        paintMark(painter, before);
    } else if (node.aggregate() && node.aggregate()->restrictedCount > 0) {
        drawIcon(painter, before.topLeft(), Icon::lock, theme_.colour(Role::ink, Strength::quiet),
                 markSize);
    }
}

void ScanNodeDelegate::paintQuietText(QPainter& painter, const QRect& cell,
                                      const QString& text) const
{
    painter.setFont(quietFont_);
    painter.setPen(theme_.colour(Role::ink, Strength::quiet));
    painter.drawText(cell, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, text);
}

void ScanNodeDelegate::paintMark(QPainter& painter, const QRectF& bounds) const
{
    paintWorkMark(painter, bounds.adjusted(1, 1, -1, -1), step_, markWidth, theme_);
}

}  // namespace gruk
