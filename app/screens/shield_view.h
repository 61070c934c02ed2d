#pragma once

#include <QWidget>

#include "app/theme/theme.h"
#include "core/realm/realm_identity.h"

namespace gruk {

/// The shield of a realm, over the whole of the widget, whatever its size. To assistive technology
/// a picture that is named by what it shows.
class RealmShieldView : public QWidget {
    Q_OBJECT

public:
    RealmShieldView(Theme& theme, const RealmIdentity& identity, QWidget* parent = nullptr);

    [[nodiscard]] const RealmIdentity& identity() const { return identity_; }
    void setIdentity(const RealmIdentity& identity);

    /// How strongly the whole shield stands out from its ground.
    void setOpacity(double opacity);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Theme& theme_;
    RealmIdentity identity_;
    double opacity_ = Strength::full;
};

}  // namespace gruk
