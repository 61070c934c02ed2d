#include "app/screens/message_strip.h"

#include <QHBoxLayout>
#include <QStyle>

#include "app/screens/messages_section.h"

namespace gruk {

MessageStrip::MessageStrip(AppModel& model, Theme& theme, QWidget* parent)
    : PaperBackdrop(theme, parent)
{
    setObjectName(QStringLiteral("messageStrip"));
    auto* messages = new MessagesSection(model, theme, MessagesSection::Place::anyPage);
    messages->setMaximumWidth(Measure::columnWidth);
    auto* centred = new QHBoxLayout(this);
    // In line with the column of the page under it, which may have to scroll.
    const int scrollBar = style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    centred->setContentsMargins(Measure::pageMargin, Measure::rowGap,
                                Measure::pageMargin + scrollBar, 0);
    centred->addStretch(1);
    centred->addWidget(messages, 1000);
    centred->addStretch(1);
    hasMessages_ = !messages->isEmpty();
    connect(messages, &MessagesSection::shown, this, [this, messages] {
        hasMessages_ = !messages->isEmpty();
        showState();
    });
    showState();
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
