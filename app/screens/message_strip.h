#pragma once

#include "app/model/app_model.h"
#include "app/theme/paper_backdrop.h"

namespace gruk {

/// The messages over a page that has no place of its own for them, where they stay while the page
/// under them scrolls. Takes no room while there are none.
class MessageStrip : public PaperBackdrop {
    Q_OBJECT

public:
    MessageStrip(AppModel& model, Theme& theme, QWidget* parent = nullptr);

    /// Whether the page leaves the messages to it.
    void setWanted(bool isWanted);

private:
    void showState();

    bool isWanted_ = false;
    bool hasMessages_ = false;
};

}  // namespace gruk
