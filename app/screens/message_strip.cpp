#include "app/screens/message_strip.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QPainter>
#include <QStyle>

namespace gruk {

MessageStrip::MessageStrip(AppModel& model, Theme& theme, MessagesSection::Place place,
                           QWidget* parent)
    : PaperBackdrop(theme, parent), theme_(theme),
      coversPage_(place == MessagesSection::Place::echo)
{
    setObjectName(QStringLiteral("messageStrip"));
    auto* messages = new MessagesSection(model, theme, place);
    messages->setMaximumWidth(Measure::columnWidth);
    auto* centred = new QHBoxLayout(this);
    // In line with the column of the page under it, which may have to scroll.
    const int scrollBar = style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    centred->setContentsMargins(Measure::pageMargin, coversPage_ ? Measure::small : Measure::rowGap,
                                Measure::pageMargin + scrollBar, coversPage_ ? Measure::small : 0);
    centred->addStretch(1);
    centred->addWidget(messages, 1000);
    centred->addStretch(1);
    hasMessages_ = !messages->isEmpty();
    connect(messages, &MessagesSection::shown, this, [this, messages] {
        hasMessages_ = !messages->isEmpty();
        showState();
    });
    connect(qApp, &QApplication::focusChanged, this, &MessageStrip::noteFocus);
    showState();
}

void MessageStrip::noteFocus(QWidget* before, QWidget* now)
{
    if (isAncestorOf(now) && !isAncestorOf(before)) {
        focusedBefore_ = before;
    }
}

bool MessageStrip::giveFocusBack()
{
    if (!focusedBefore_ || !focusedBefore_->isVisible() || !focusedBefore_->isEnabled()) {
        return false;
    }
    focusedBefore_->setFocus(Qt::OtherFocusReason);
    return true;
}

void MessageStrip::paintEvent(QPaintEvent* event)
{
    PaperBackdrop::paintEvent(event);
    if (coversPage_) {
        QPainter(this).fillRect(0, height() - 1, width(), 1,
                                theme_.colour(Role::ink, Strength::edge));
    }
}

void MessageStrip::setWanted(bool isWanted)
{
    isWanted_ = isWanted;
    showState();
}

void MessageStrip::showState()
{
    setVisible(isWanted_ && hasMessages_);
}

}  // namespace gruk
