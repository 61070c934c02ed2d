#pragma once

#include <QPointer>

#include "app/model/app_model.h"
#include "app/screens/messages_section.h"
#include "app/theme/paper_backdrop.h"

namespace gruk {

/// The messages over a page that has no place of its own for them, or has it out of view, where
/// they stay while the page under them scrolls. Takes no room while there are none.
class MessageStrip : public PaperBackdrop {
    Q_OBJECT

public:
    MessageStrip(AppModel& model, Theme& theme, MessagesSection::Place place,
                 QWidget* parent = nullptr);

    /// Whether the page leaves the messages to it.
    void setWanted(bool isWanted);

    /// Gives the focus, which one of its controls had, back to what had it before; false where
    /// that cannot take it any more.
    bool giveFocusBack();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void noteFocus(QWidget* before, QWidget* now);
    void showState();

    Theme& theme_;
    /// Whether what lies under it goes on above its lower edge.
    bool coversPage_;
    bool isWanted_ = false;
    bool hasMessages_ = false;
    QPointer<QWidget> focusedBefore_;
};

}  // namespace gruk
