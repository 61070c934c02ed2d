#include "app/screens/browse_table.h"

#include <algorithm>

#include <QContextMenuEvent>
#include <QItemSelection>
#include <QPainter>
#include <QScrollBar>
#include <QTimerEvent>

#include "app/theme/card_painter.h"
#include "app/theme/key_press.h"

namespace gruk {

namespace {

constexpr int turnMilliseconds = 60;

/// One colour over another, as they look together.
QColor over(const QColor& top, const QColor& ground)
{
    const auto mix = [&](float a, float b) { return a * top.alphaF() + b * (1 - top.alphaF()); };
    return QColor::fromRgbF(mix(top.redF(), ground.redF()), mix(top.greenF(), ground.greenF()),
                            mix(top.blueF(), ground.blueF()));
}

}  // namespace

BrowseTable::BrowseTable(Theme& theme, ScanNodeModel& model, QWidget* parent)
    : QTreeView(parent), theme_(theme), model_(model), delegate_(new ScanNodeDelegate(theme, this)),
      header_(new BrowseHeader(theme, this))
{
    setAccessibleName(QStringLiteral("Items of this folder"));
    setFrameShape(QFrame::NoFrame);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setExpandsOnDoubleClick(false);
    setIndentation(0);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setTabKeyNavigation(false);
    setItemDelegate(delegate_);
    setHeader(header_);
    setModel(&model_);
    viewport()->setAttribute(Qt::WA_Hover);
    header_->setSectionResizeMode(QHeaderView::Fixed);
    header_->setSectionResizeMode(ScanNodeModel::nameColumn, QHeaderView::Stretch);
    header_->setMinimumSectionSize(Measure::smallestTarget);
    for (int column = ScanNodeModel::sizeColumn; column < ScanNodeModel::columns; ++column) {
        header_->resizeSection(column, delegate_->columnWidth(column));
    }
    dress();
    connect(&theme_, &Theme::changed, this, &BrowseTable::dress);
    connect(this, &QAbstractItemView::doubleClicked, this,
            [this](const QModelIndex& index) { Q_EMIT opened(index.row()); });
}

void BrowseTable::dress()
{
    // One flat colour, the card's as it looks on paper: what lies still is then moved as it is
    // when the rows scroll, and not painted again.
    QPalette colours = theme_.windowPalette();
    const QColor ground =
        over(theme_.colour(Role::paperCard, Strength::card), theme_.colour(Role::paper));
    colours.setColor(QPalette::Base, ground);
    colours.setColor(QPalette::Window, ground);
    colours.setColor(QPalette::Button, ground);
    setPalette(colours);
    header_->setPalette(colours);
    viewport()->update();
}

void BrowseTable::dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                              const QList<int>& roles)
{
    // The view would ask of each row where it lies; of very many only few are seen.
    const QModelIndex top = indexAt(QPoint(0, 0));
    const QModelIndex bottom = indexAt(QPoint(0, viewport()->height() - 1));
    const int first = std::max(topLeft.row(), top.row());
    const int last =
        bottom.isValid() ? std::min(bottomRight.row(), bottom.row()) : bottomRight.row();
    if (first <= last) {
        QTreeView::dataChanged(topLeft.siblingAtRow(first), bottomRight.siblingAtRow(last), roles);
    }
}

std::vector<FileURL> BrowseTable::selectedURLs() const
{
    std::vector<int> rows;
    for (const QItemSelectionRange& range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            rows.push_back(row);
        }
    }
    std::sort(rows.begin(), rows.end());
    std::vector<FileURL> urls;
    urls.reserve(rows.size());
    for (const int row : rows) {
        urls.push_back(model_.node(row).id());
    }
    return urls;
}

std::optional<FileURL> BrowseTable::currentURL() const
{
    const QModelIndex current = currentIndex();
    return current.isValid() ? std::optional(model_.node(current.row()).id()) : std::nullopt;
}

void BrowseTable::select(const std::vector<FileURL>& urls, const std::optional<FileURL>& current)
{
    QItemSelection selection;
    for (const int row : model_.rowsOf(urls)) {
        selection.select(model_.index(row, 0), model_.index(row, ScanNodeModel::columns - 1));
    }
    const std::optional<int> row = current ? model_.rowOf(*current) : std::nullopt;
    if (row) {
        selectionModel()->setCurrentIndex(model_.index(*row, 0), QItemSelectionModel::NoUpdate);
    }
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

void BrowseTable::selectAndShow(const FileURL& url)
{
    if (const std::optional<int> row = model_.rowOf(url)) {
        const QModelIndex index = model_.index(*row, 0);
        setCurrentIndex(index);
        scrollTo(index, QAbstractItemView::PositionAtCenter);
    }
}

void BrowseTable::scrollRowsTo(int value)
{
    // How far it goes is known only when the rows are laid out.
    executeDelayedItemsLayout();
    verticalScrollBar()->setValue(value);
}

void BrowseTable::drawRow(QPainter* painter, const QStyleOptionViewItem& options,
                          const QModelIndex& index) const
{
    paintRowGround(*painter, options.rect, options, index);
    QStyleOptionViewItem cell = options;
    for (int column = 0; column < ScanNodeModel::columns; ++column) {
        cell.rect = QRect(columnViewportPosition(column), options.rect.top(), columnWidth(column),
                          options.rect.height());
        delegate_->paint(painter, cell, index.siblingAtColumn(column));
    }
}

void BrowseTable::paintRowGround(QPainter& painter, const QRect& row,
                                 const QStyleOptionViewItem& options,
                                 const QModelIndex& index) const
{
    const bool isSelected = selectionModel()->isRowSelected(index.row());
    if (isSelected) {
        painter.fillRect(row, theme_.colour(Role::accent, Strength::outline));
        painter.fillRect(QRect(row.left(), row.top(), Measure::activeBar, row.height()),
                         theme_.colour(Role::accent));
    } else if (options.state.testFlag(QStyle::State_MouseOver)) {
        painter.fillRect(row, theme_.colour(Role::paperInset));
    }
    painter.fillRect(row.left(), row.bottom(), row.width(), 1,
                     theme_.colour(Role::ink, Strength::divider));
    if (hasFocus() && index.row() == currentIndex().row()) {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF ring = QRectF(row).adjusted(Measure::hair, 2, -Measure::hair, -2);
        painter.strokePath(cutPath(ring, buttonCorners),
                           QPen(theme_.colour(Role::blue), Measure::focusRing));
        painter.restore();
    }
}

bool BrowseTable::openCurrent(bool foldersOnly)
{
    const QModelIndex current = currentIndex();
    if (!current.isValid() || (foldersOnly && !model_.node(current.row()).entry().isDirectory)) {
        return false;
    }
    Q_EMIT opened(current.row());
    return true;
}

void BrowseTable::keyPressEvent(QKeyEvent* event)
{
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    switch (isPlain ? event->key() : 0) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (returnPress(*event) == KeyPress::press) {
            (void)openCurrent(false);
        }
        return;
    case Qt::Key_Right:
        (void)openCurrent(true);
        return;
    case Qt::Key_Left:
    case Qt::Key_Backspace:
        Q_EMIT upPressed();
        return;
    default:
        QTreeView::keyPressEvent(event);
    }
}

void BrowseTable::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::BackButton) {
        Q_EMIT backPressed();
        return;
    }
    QTreeView::mousePressEvent(event);
}

void BrowseTable::mouseDoubleClickEvent(QMouseEvent* event)
{
    // Pressed quickly twice, that button goes back twice; any other but the first opens nothing.
    if (event->button() == Qt::LeftButton) {
        QTreeView::mouseDoubleClickEvent(event);
    } else {
        mousePressEvent(event);
    }
}

void BrowseTable::contextMenuEvent(QContextMenuEvent* event)
{
    if (!selectionModel()->hasSelection()) {
        return;
    }
    QPoint at = event->globalPos();
    if (event->reason() == QContextMenuEvent::Keyboard && currentIndex().isValid()) {
        at = viewport()->mapToGlobal(visualRect(currentIndex()).center());
    }
    Q_EMIT menuAsked(at);
}

void BrowseTable::paintEvent(QPaintEvent* event)
{
    QTreeView::paintEvent(event);
    if (!timer_.isActive() && theme_.duration(turnMilliseconds) > 0 && updateMarks()) {
        timer_.start(turnMilliseconds, this);
    }
}

void BrowseTable::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != timer_.timerId()) {
        QTreeView::timerEvent(event);
        return;
    }
    delegate_->turnMarks();
    if (!updateMarks() || theme_.duration(turnMilliseconds) == 0) {
        timer_.stop();
    }
}

void BrowseTable::hideEvent(QHideEvent* event)
{
    timer_.stop();
    QTreeView::hideEvent(event);
}

void BrowseTable::focusInEvent(QFocusEvent* event)
{
    QTreeView::focusInEvent(event);
    if (!currentIndex().isValid() && model_.rowCount() > 0) {
        selectionModel()->setCurrentIndex(model_.index(0, 0), QItemSelectionModel::NoUpdate);
    }
}

bool BrowseTable::updateMarks()
{
    bool isAny = false;
    for (QModelIndex index = indexAt(QPoint(0, 0)); index.isValid(); index = indexBelow(index)) {
        const QRect cell = visualRect(index.siblingAtColumn(ScanNodeModel::sizeColumn));
        if (cell.top() >= viewport()->height()) {
            break;
        }
        if (model_.node(index.row()).isComputing()) {
            viewport()->update(cell);
            isAny = true;
        }
    }
    return isAny;
}

}  // namespace gruk
