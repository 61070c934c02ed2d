#include "app/screens/browse_header.h"

#include <QKeyEvent>
#include <QPainter>

#include "app/theme/icons.h"
#include "app/theme/key_press.h"

namespace gruk {

namespace {

constexpr int headerHeight = Measure::buttonHeight;
constexpr int quarterTurn = 90;

/// The button over the head of one column, which the head itself draws.
class SortButton : public QAbstractButton {
public:
    SortButton(const QString& column, QWidget* parent) : QAbstractButton(parent)
    {
        setAccessibleName(QStringLiteral("Sort by %1").arg(column));
        setFocusPolicy(Qt::TabFocus);
        setCursor(Qt::PointingHandCursor);
    }

protected:
    void paintEvent(QPaintEvent*) override {}
    void keyPressEvent(QKeyEvent* event) override
    {
        if (!clickedByReturn(*this, *event)) {
            QAbstractButton::keyPressEvent(event);
        }
    }
};

}  // namespace

BrowseHeader::BrowseHeader(Theme& theme, QWidget* parent)
    : QHeaderView(Qt::Horizontal, parent), theme_(theme)
{
    setAccessibleName(QStringLiteral("Columns"));
    setFont(theme_.font(TextStyle::small));
    setSectionsMovable(false);
    setHighlightSections(false);
    setFrameShape(QFrame::NoFrame);
    connect(this, &QHeaderView::sectionResized, this, &BrowseHeader::placeButtons);
    connect(&theme_, &Theme::changed, viewport(), qOverload<>(&QWidget::update));
}

void BrowseHeader::setModel(QAbstractItemModel* newModel)
{
    QHeaderView::setModel(newModel);
    if (model() != nullptr && buttons_.empty()) {
        addButton(ScanNodeModel::nameColumn);
        addButton(ScanNodeModel::sizeColumn);
        placeButtons();
    }
}

void BrowseHeader::addButton(ScanNodeModel::Column column)
{
    auto* button = new SortButton(
        model()->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString(), viewport());
    connect(button, &QAbstractButton::clicked, this,
            [this, column] { Q_EMIT sortPressed(column); });
    buttons_.push_back(button);
}

void BrowseHeader::placeButtons()
{
    // Inside the column's head, with room for the ring around what has the focus.
    constexpr int room = Measure::focusRing + Measure::focusGap;
    constexpr ScanNodeModel::Column columns[] = {ScanNodeModel::nameColumn,
                                                 ScanNodeModel::sizeColumn};
    for (std::size_t i = 0; i < buttons_.size(); ++i) {
        buttons_[i]->setGeometry(sectionViewportPosition(columns[i]) + room, room,
                                 sectionSize(columns[i]) - 2 * room,
                                 viewport()->height() - 2 * room);
    }
}

void BrowseHeader::updateGeometries()
{
    QHeaderView::updateGeometries();
    placeButtons();
}

void BrowseHeader::setSort(const std::optional<TableSort>& sort)
{
    sort_ = sort;
    // Drawn here, but asked for by assistive technology.
    setSortIndicator(sort ? static_cast<int>(sort->key) : -1,
                     sort ? sort->direction : Qt::AscendingOrder);
    viewport()->update();
}

QSize BrowseHeader::sizeHint() const
{
    return {QHeaderView::sizeHint().width(), headerHeight};
}

void BrowseHeader::paintEvent(QPaintEvent* event)
{
    QHeaderView::paintEvent(event);
    QPainter painter(viewport());
    painter.fillRect(0, height() - 1, viewport()->width(), 1,
                     theme_.colour(Role::ink, Strength::outline));
}

void BrowseHeader::paintSection(QPainter* painter, const QRect& rect, int section) const
{
    const bool isSorted = sort_ && sort_->key == section;
    const bool isRight = section == ScanNodeModel::sizeColumn;
    const QColor ink = theme_.colour(Role::ink, isSorted ? Strength::full : Strength::quiet);
    const QString text = model()->headerData(section, Qt::Horizontal, Qt::DisplayRole).toString();
    const QRect inner = rect.adjusted(Measure::medium, 0, -Measure::medium, 0);
    painter->setFont(font());
    painter->setPen(ink);
    const Qt::Alignment side = isRight ? Qt::AlignRight : Qt::AlignLeft;
    painter->drawText(inner, static_cast<int>(side | Qt::AlignVCenter), text);
    if (!isSorted) {
        return;
    }
    const int size = Measure::medium;
    const int words = fontMetrics().horizontalAdvance(text);
    const int left = isRight ? inner.right() + 1 - words - Measure::hair - size
                             : inner.left() + words + Measure::hair;
    painter->translate(left + size / 2.0, rect.center().y() + 1);
    painter->rotate(sort_->direction == Qt::AscendingOrder ? -quarterTurn : quarterTurn);
    drawIcon(*painter, QPointF(-size / 2.0, -size / 2.0), Icon::chevronRight, ink, size);
}

}  // namespace gruk
