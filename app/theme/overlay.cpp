#include "app/theme/overlay.h"

#include <algorithm>

#include <QAbstractButton>
#include <QAccessibleWidget>
#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>

#include "app/theme/card.h"
#include "app/theme/card_painter.h"
#include "app/theme/key_press.h"

namespace gruk {

namespace {

/// The window under the card is out of reach, which assistive technology is told.
class AccessibleOverlay : public QAccessibleWidget {
public:
    explicit AccessibleOverlay(QWidget* widget) : QAccessibleWidget(widget, QAccessible::Dialog) {}

    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.modal = true;
        return state;
    }
};

QAccessibleInterface* makeAccessibleOverlay(const QString& className, QObject* object)
{
    auto* overlay = qobject_cast<Overlay*>(object);
    return overlay != nullptr && className == QLatin1String(Overlay::staticMetaObject.className())
               ? new AccessibleOverlay(overlay)
               : nullptr;
}

/// A card that hides what lies under it, which a card on paper lets through.
class OverlayCard : public Card {
public:
    OverlayCard(Theme& theme, QWidget* parent) : Card(theme, Measure::wide, parent) {}

protected:
    void paintEvent(QPaintEvent* event) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillPath(cutPath(cardBody(rect()), cardCorners), theme().colour(Role::paper));
        painter.end();
        Card::paintEvent(event);
    }
};

void announceDialog(QWidget* overlay, QAccessible::Event type)
{
    QAccessibleEvent event(overlay, type);
    QAccessible::updateAccessibility(&event);
}

}  // namespace

Overlay::Overlay(Theme& theme, const QString& accessibleName, QWidget* owner)
    : QWidget(owner->window()), theme_(theme), card_(new OverlayCard(theme, this)),
      column_(new QVBoxLayout(card_)), previousFocus_(owner->window()->focusWidget())
{
    static const bool hasFactory = [] {
        QAccessible::installFactory(makeAccessibleOverlay);
        return true;
    }();
    Q_UNUSED(hasFactory);
    hide();
    setAccessibleName(accessibleName);
    setContextMenuPolicy(Qt::DefaultContextMenu);
    column_->setContentsMargins(0, 0, 0, 0);
    column_->setSpacing(Measure::medium);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
    // Queued: to close gives the focus back, and not to what is being destroyed.
    connect(owner, &QObject::destroyed, this, &Overlay::reject, Qt::QueuedConnection);
}

void Overlay::open()
{
    if (isOpen_ || isClosed_) {
        return;
    }
    isOpen_ = true;
    qApp->installEventFilter(this);
    fitWindow();
    raise();
    show();
    QWidget* first = initialFocus_ != nullptr ? initialFocus_.data() : nextControl(this, true);
    (first != nullptr ? first : this)->setFocus(Qt::OtherFocusReason);
    announceDialog(this, QAccessible::DialogStart);
}

void Overlay::accept()
{
    close(Answer::yes);
}

void Overlay::reject()
{
    close(Answer::no);
}

void Overlay::close(Answer answer)
{
    if (!isOpen_) {
        return;
    }
    isOpen_ = false;
    isClosed_ = true;
    qApp->removeEventFilter(this);
    announceDialog(this, QAccessible::DialogEnd);
    hide();
    if (previousFocus_ != nullptr && previousFocus_->isVisible()) {
        previousFocus_->setFocus(Qt::OtherFocusReason);
    }
    deleteLater();
    if (answer == Answer::yes) {
        Q_EMIT accepted();
    } else {
        Q_EMIT rejected();
    }
    Q_EMIT finished();
}

QSize Overlay::cardSize() const
{
    const QSize room = rect().size();
    const QSize wished = card_->sizeHint().boundedTo(room);
    const int height =
        card_->hasHeightForWidth() ? card_->heightForWidth(wished.width()) : wished.height();
    return {wished.width(), std::min(height, room.height())};
}

void Overlay::fitWindow()
{
    setGeometry(parentWidget()->rect());
    card_->ensurePolished();
    placeCard();
}

bool Overlay::holds(const QObject* object) const
{
    const auto* widget = qobject_cast<const QWidget*>(object);
    return widget != nullptr && (widget == this || isAncestorOf(widget));
}

bool Overlay::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize) {
        fitWindow();
    } else if (watched == card_ && event->type() == QEvent::LayoutRequest) {
        placeCard();
    } else if (holds(watched)) {
        return beganBefore(*event);
    }
    return QWidget::eventFilter(watched, event);
}

bool Overlay::beganBefore(const QEvent& event)
{
    switch (event.type()) {
    case QEvent::KeyPress: {
        const auto& key = static_cast<const QKeyEvent&>(event);
        if (!key.isAutoRepeat()) {
            keysDown_.insert(key.key());
        }
        return !keysDown_.contains(key.key());
    }
    case QEvent::KeyRelease:
        return !keysDown_.contains(static_cast<const QKeyEvent&>(event).key());
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: {
        const quint64 time = static_cast<const QMouseEvent&>(event).timestamp();
        const auto interval = static_cast<quint64>(QApplication::doubleClickInterval());
        const bool isSecond = event.type() == QEvent::MouseButtonDblClick && !wasPressed_;
        const bool isThird = strayClick_ > 0 && !wasPressed_ && time - strayClick_ <= interval;
        if (isSecond || isThird) {
            strayClick_ = time;
            return true;
        }
        wasPressed_ = true;
        return false;
    }
    default:
        return false;
    }
}

bool Overlay::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        const auto* key = static_cast<QKeyEvent*>(event);
        event->setAccepted(key->keyCombination() != (Qt::CTRL | Qt::Key_Q));
        return true;
    }
    return QWidget::event(event);
}

bool Overlay::canTakeFocus(const QWidget& widget) const
{
    return isAncestorOf(&widget) && widget.isEnabled() && widget.isVisibleTo(this)
           && (widget.focusPolicy() & Qt::TabFocus) == Qt::TabFocus
           && widget.focusProxy() == nullptr;
}

QWidget* Overlay::nextControl(QWidget* from, bool forwards) const
{
    QWidget* next = from;
    do {
        next = forwards ? next->nextInFocusChain() : next->previousInFocusChain();
        if (canTakeFocus(*next)) {
            return next;
        }
    } while (next != from);
    return nullptr;
}

bool Overlay::focusNextPrevChild(bool next)
{
    QWidget* current = focusWidget();
    QWidget* control = nextControl(current != nullptr ? current : this, next);
    if (control != nullptr) {
        control->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    }
    // Never what lies under it.
    return true;
}

void Overlay::keyPressEvent(QKeyEvent* event)
{
    event->accept();
    if (event->key() == Qt::Key_Escape) {
        if (!event->isAutoRepeat()) {
            reject();
        }
    } else if (defaultButton_ != nullptr) {
        (void)clickedByReturn(*defaultButton_, *event);
    }
}

void Overlay::mousePressEvent(QMouseEvent* event)
{
    event->accept();
    if (!card_->geometry().contains(event->position().toPoint())) {
        pressedOutside();
    }
}

void Overlay::mouseReleaseEvent(QMouseEvent* event)
{
    event->accept();
}

void Overlay::mouseDoubleClickEvent(QMouseEvent* event)
{
    event->accept();
}

void Overlay::contextMenuEvent(QContextMenuEvent* event)
{
    event->accept();
}

void Overlay::wheelEvent(QWheelEvent* event)
{
    event->accept();
}

void Overlay::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    // Ink is light on dark paper, and would make the window glow.
    painter.fillRect(rect(), theme_.scheme() == ColourScheme::dark
                                 ? theme_.colour(Role::paperInset, Strength::dimmingAtNight)
                                 : theme_.colour(Role::ink, Strength::dimming));
}

}  // namespace gruk
