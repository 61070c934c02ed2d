#include "app/screens/unseen_places_list.h"

#include <algorithm>

#include <QKeyEvent>
#include <QPainter>
#include <QStyledItemDelegate>

#include "app/theme/card_painter.h"
#include "app/theme/drawing.h"
#include "app/theme/key_press.h"

namespace gruk {

namespace {

QString offerWords()
{
    return QStringLiteral("Grant it as its own realm");
}

/// Draws a row: the path over the reason, and at the right what is offered.
class UnseenPlaceDelegate : public QStyledItemDelegate {
public:
    UnseenPlaceDelegate(Theme& theme, QObject* parent)
        : QStyledItemDelegate(parent), theme_(theme), pathFont_(theme.font(TextStyle::bodyStrong)),
          quietFont_(theme.font(TextStyle::detail)), offerFont_(theme.font(TextStyle::bodyStrong))
    {
    }

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override
    {
        return {0, rowHeight()};
    }

    [[nodiscard]] int rowHeight() const
    {
        return QFontMetrics(pathFont_).height() + QFontMetrics(quietFont_).height()
               + 2 * Measure::small;
    }

    [[nodiscard]] QRect offerRect(const QRect& row, const QModelIndex& index) const
    {
        if (!index.data(UnseenPlacesModel::offersGrantRole).toBool()) {
            return {};
        }
        const int width = QFontMetrics(offerFont_).horizontalAdvance(offerWords());
        return {row.right() + 1 - Measure::medium - width, row.top(), width, row.height()};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override
    {
        const QRect& row = option.rect;
        painter->fillRect(row.left(), row.bottom(), row.width(), 1,
                          theme_.colour(Role::ink, Strength::divider));
        QRect words = row.adjusted(Measure::medium, Measure::small, -Measure::medium, 0);
        if (const QRect offer = offerRect(row, index); !offer.isNull()) {
            paintOffer(*painter, offer);
            words.setRight(offer.left() - Measure::medium);
        }
        const QFontMetrics path(pathFont_);
        const QFontMetrics quiet(quietFont_);
        words.setHeight(path.height());
        painter->setFont(pathFont_);
        painter->setPen(theme_.colour(Role::ink));
        drawLine(*painter, words,
                 path.elidedText(index.data().toString(), Qt::ElideMiddle, words.width()));
        words.translate(0, words.height());
        words.setHeight(quiet.height());
        painter->setFont(quietFont_);
        painter->setPen(theme_.colour(Role::ink, Strength::quiet));
        drawLine(*painter, words,
                 quiet.elidedText(index.data(UnseenPlacesModel::reasonRole).toString(),
                                  Qt::ElideRight, words.width()));
        if (option.state.testFlag(QStyle::State_HasFocus)) {
            paintFocus(*painter, row);
        }
    }

private:
    void paintOffer(QPainter& painter, const QRect& offer) const
    {
        QFont font = offerFont_;
        font.setUnderline(true);
        painter.setFont(font);
        painter.setPen(theme_.colour(textRole(Role::accent)));
        drawLine(painter, offer, offerWords());
    }

    void paintFocus(QPainter& painter, const QRect& row) const
    {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF ring = QRectF(row).adjusted(Measure::hair, 2, -Measure::hair, -2);
        painter.strokePath(cutPath(ring, buttonCorners),
                           QPen(theme_.colour(Role::blue), Measure::focusRing));
        painter.restore();
    }

    Theme& theme_;
    QFont pathFont_;
    QFont quietFont_;
    QFont offerFont_;
};

}  // namespace

UnseenPlacesList::UnseenPlacesList(Theme& theme, UnseenPlacesModel& places, QWidget* parent)
    : QListView(parent), places_(places)
{
    setAccessibleName(QStringLiteral("Places the Gruk couldn't see"));
    setFrameShape(QFrame::NoFrame);
    setUniformItemSizes(true);
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setTabKeyNavigation(false);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setItemDelegate(new UnseenPlaceDelegate(theme, this));
    setModel(&places_);
    viewport()->setAutoFillBackground(false);
    viewport()->setMouseTracking(true);
    connect(&theme, &Theme::changed, viewport(), qOverload<>(&QWidget::update));
    connect(&places_, &QAbstractItemModel::modelReset, this, [this] { updateGeometry(); });
}

QSize UnseenPlacesList::sizeHint() const
{
    const auto* delegate = static_cast<const UnseenPlaceDelegate*>(itemDelegate());
    return {Measure::dialogTextWidth,
            delegate->rowHeight() * std::min(places_.rowCount(), mostRowsInView)};
}

QRect UnseenPlacesList::offerRect(const QModelIndex& index) const
{
    const auto* delegate = static_cast<const UnseenPlaceDelegate*>(itemDelegate());
    return index.isValid() ? delegate->offerRect(visualRect(index), index) : QRect();
}

QPersistentModelIndex UnseenPlacesList::offerAt(const QPoint& place) const
{
    const QModelIndex index = indexAt(place);
    return offerRect(index).contains(place) ? index : QModelIndex();
}

void UnseenPlacesList::request(const QModelIndex& index)
{
    if (index.isValid() && index.data(UnseenPlacesModel::offersGrantRole).toBool()) {
        Q_EMIT grantRequested(index.row());
    }
}

void UnseenPlacesList::keyPressEvent(QKeyEvent* event)
{
    const KeyPress press = returnOrSpacePress(*event);
    if (press == KeyPress::press) {
        request(currentIndex());
    } else if (press == KeyPress::other) {
        QListView::keyPressEvent(event);
    }
}

void UnseenPlacesList::mousePressEvent(QMouseEvent* event)
{
    pressed_ = offerAt(event->pos());
    QListView::mousePressEvent(event);
}

void UnseenPlacesList::mouseMoveEvent(QMouseEvent* event)
{
    viewport()->setCursor(offerAt(event->pos()).isValid() ? Qt::PointingHandCursor
                                                          : Qt::ArrowCursor);
    QListView::mouseMoveEvent(event);
}

void UnseenPlacesList::mouseReleaseEvent(QMouseEvent* event)
{
    QListView::mouseReleaseEvent(event);
    const QPersistentModelIndex released = offerAt(event->pos());
    if (event->button() == Qt::LeftButton && released.isValid() && released == pressed_) {
        request(released);
    }
    pressed_ = QModelIndex();
}

void UnseenPlacesList::focusInEvent(QFocusEvent* event)
{
    QListView::focusInEvent(event);
    if (!currentIndex().isValid() && places_.rowCount() > 0) {
        setCurrentIndex(places_.index(0));
    }
}

}  // namespace gruk
