#pragma once

#include <QListView>

#include "app/screens/unseen_places_model.h"
#include "app/theme/theme.h"

namespace gruk {

/// The places that a patrol could not see, a few of them in view and the others by scrolling; only
/// those in view are drawn. One on another disk offers to become a realm, by a click on the words
/// or Enter on its row.
class UnseenPlacesList : public QListView {
    Q_OBJECT
    Q_PROPERTY(bool showsFocusItself READ showsFocusItself)

public:
    static constexpr int mostRowsInView = 6;

    /// Borrows both.
    UnseenPlacesList(Theme& theme, UnseenPlacesModel& places, QWidget* parent = nullptr);

    /// The words of the row's offer, in the viewport; null for a row without one.
    [[nodiscard]] QRect offerRect(const QModelIndex& index) const;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }
    [[nodiscard]] bool showsFocusItself() const { return places_.rowCount() > 0; }

Q_SIGNALS:
    void grantRequested(int row);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

private:
    /// The row whose offer is there; none elsewhere.
    [[nodiscard]] QPersistentModelIndex offerAt(const QPoint& place) const;
    void request(const QModelIndex& index);

    UnseenPlacesModel& places_;
    QPersistentModelIndex pressed_;
};

}  // namespace gruk
