#pragma once

#include <vector>

#include <QVariantAnimation>

#include "app/theme/art.h"
#include "app/theme/sheet.h"

namespace gruk {

class Button;

/// One page of the walkthrough.
struct WalkthroughPage {
    Art image;
    QString heading;
    QString body;
};

/// What the Gruk does, in five pages: turned by its button and by the arrow keys. It keeps nothing
/// and changes nothing; who shows it remembers that.
class WalkthroughView : public Sheet {
    Q_OBJECT

public:
    /// Over the window of `anyWidget`.
    WalkthroughView(Theme& theme, QWidget* anyWidget);

    [[nodiscard]] static const std::vector<WalkthroughPage>& pages();

    [[nodiscard]] int page() const { return page_; }
    /// Turns to a page; one that there is not is left alone.
    void setPage(int page);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void goOn();
    /// Whether the key is one that turns pages; turns it then.
    bool turnBy(int key);
    void showPage();
    void layOutPages();
    [[nodiscard]] QWidget* makePage(const WalkthroughPage& page);

    int page_ = 0;
    QWidget* stage_;
    std::vector<QWidget*> pageViews_;
    QWidget* dots_;
    Button* skip_;
    Button* next_;
    /// From page to page; its value is the place between them.
    QVariantAnimation turn_;
};

}  // namespace gruk
