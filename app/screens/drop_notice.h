#pragma once

#include <vector>

#include <QWidget>

#include "app/theme/label.h"
#include "platform/foundation/file_url.h"

namespace gruk {

class Card;

/// What would come of letting go, over the window that something is dragged across: a frame around
/// all of it, and a sentence. Takes no input of its own.
class DropNotice : public QWidget {
    Q_OBJECT

public:
    DropNotice(Theme& theme, QWidget& window);

    /// Shows itself over the window for what was dragged onto it.
    void showFor(const std::vector<FileURL>& places);

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void place();

    Theme& theme_;
    Card* card_;
    IconLabel* symbol_;
    Label* words_;
};

}  // namespace gruk
