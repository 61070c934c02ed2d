#pragma once

#include <optional>

#include <QObject>
#include <QSize>

#include "app/model/app_model.h"
#include "app/screens/detail_page.h"

class QWidget;

namespace gruk {

/// `wished`, or as much of it as a screen has room for when a window's frame takes its part.
[[nodiscard]] QSize sizeWithin(const QSize& wished, const QSize& screen);

/// What the main window comes back with the next time that the program starts: its size and place,
/// the page of a realm that it showed, and the realm. Kept in the settings whenever the window goes
/// from the screen, and when the program quits.
class WindowMemory : public QObject {
    Q_OBJECT

public:
    /// Borrows both, which must live longer.
    WindowMemory(AppModel& model, QWidget& window);

    /// As large as it was and where it was, else `usual`; never larger than its screen.
    void restorePlace(const QSize& usual);
    [[nodiscard]] DetailPage page() const;
    /// The realm that was open; none when it is no realm any more, or not there.
    [[nodiscard]] std::optional<FileURL> realm() const;

    void setPage(DetailPage page) { page_ = page; }
    void keep();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    AppModel& model_;
    QWidget& window_;
    DetailPage page_ = DetailPage::patrol;
};

}  // namespace gruk
