#pragma once

#include <QPushButton>

#include "app/theme/label.h"
#include "core/actions/grant.h"

namespace gruk {

/// A realm in the sidebar that can be opened: its name over its path.
class RealmRow : public QPushButton {
    Q_OBJECT

public:
    RealmRow(Theme& theme, const Grant& grant, QWidget* parent = nullptr);

    /// Marks the realm whose page shows.
    void setActive(bool isActive);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    Theme& theme_;
    QString name_;
    QString path_;
    bool isActive_ = false;
};

/// A realm whose directory is not at its place, with the way to bring it back.
class DisconnectedRealmRow : public QWidget {
    Q_OBJECT

public:
    DisconnectedRealmRow(Theme& theme, const Grant& grant, QWidget* parent = nullptr);

Q_SIGNALS:
    void regrantRequested();
};

}  // namespace gruk
