#pragma once

#include <QWidget>

#include "app/theme/theme.h"
#include "core/realm/realm_identity.h"

namespace gruk {

/// A realm's land, faint, behind whatever lies in the widget. Decoration: it says nothing and takes
/// no input.
class RealmMapBackdrop : public QWidget {
    Q_OBJECT

public:
    RealmMapBackdrop(Theme& theme, const RealmIdentity& identity, QWidget* parent = nullptr);

    void setIdentity(const RealmIdentity& identity);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Theme& theme_;
    RealmIdentity identity_;
};

}  // namespace gruk
