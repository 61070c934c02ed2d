#pragma once

#include <QPushButton>

#include "app/theme/tactile_press.h"
#include "app/theme/theme.h"
#include "core/realm/realm_identity.h"
#include "core/realm/realm_summary.h"

namespace gruk {

/// One realm as a card: its shield on its land, its name, and what was mapped and found. Pressed,
/// it is the wish to open the realm.
class RealmCard : public QPushButton {
    Q_OBJECT

public:
    explicit RealmCard(Theme& theme, QWidget* parent = nullptr);

    /// How tall each card is.
    [[nodiscard]] static int cardHeight();

    [[nodiscard]] const RealmSummary& realm() const { return realm_; }
    [[nodiscard]] const RealmIdentity& identity() const { return identity_; }
    void showRealm(const RealmSummary& realm, const RealmIdentity& identity);

    /// Lifts the card off the paper, as its land on the map is pointed at.
    void setLifted(bool isLifted);
    [[nodiscard]] bool isLifted() const { return isLifted_; }

    /// The two lines, whole.
    [[nodiscard]] const QString& nameText() const { return name_; }
    [[nodiscard]] const QString& detailText() const { return detail_; }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// The pointer or the keyboard came to the card, or left it.
    void pointedAt(bool isPointedAt);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void paintTexts(QPainter& painter, const QRectF& room) const;

    Theme& theme_;
    GrukTactileButtonStyle* press_;
    RealmSummary realm_;
    RealmIdentity identity_;
    QString name_;
    QString detail_;
    bool isLifted_ = false;
};

}  // namespace gruk
